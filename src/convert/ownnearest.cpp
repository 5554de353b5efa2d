// SPDX-License-Identifier: BSD-2-Clause
#include "ownnearest.h"

#include <algorithm>
#include <cstring>

// Cells of 8 by 8 by 8 colours, listed from the list of the block of 32 by 32 by 32 colours around them.
static constexpr int32_t ownCellBits = 3, ownBlockBits = 5;
static constexpr int32_t ownCellCount = 1 << 3 * (8 - ownCellBits);
static constexpr int32_t ownBlockCount = 1 << 3 * (8 - ownBlockBits);

// What is known of a cube is a word: 0 before it is asked for; then a place in the pool, 20 bits, and above it the
// length of the list there, or a mark.
static constexpr int32_t ownPlaceBits = 20;
static constexpr int32_t ownPoolSize = 1 << ownPlaceBits;
static constexpr int32_t ownLongestList = 4080;  // a whole number of steps
static constexpr uint32_t ownShortMark = 0xFFF;  // an OwnShortList
static constexpr uint32_t ownHalvedMark = 0xFFE; // the words of its eight halves, and that of its own list
static constexpr int32_t ownHalvesWords = 12;
static constexpr int32_t ownShortWords = 20;

// The pool begins with halves that are not asked for yet, which stand for those of cells that are not; then the table.
static constexpr int32_t ownTablePlace = 16;

static int32_t ownPlaceOf(uint32_t word)
{
    return static_cast<int32_t>(word & ((1u << ownPlaceBits) - 1));
}

static void ownForgetLists(OwnNearest* nearest)
{
    memset(nearest->cells.get(), 0, (ownCellCount + ownBlockCount) * sizeof(uint32_t));
    nearest->poolUsed = ownTablePlace + nearest->listed;
}

static uint32_t ownEntry(const OwnNearest* nearest, int64_t index)
{
    const uint8_t* const entry = nearest->table + 4 * index;
    return entry[0] | static_cast<uint32_t>(entry[1]) << 8 | static_cast<uint32_t>(entry[2]) << 16
        | static_cast<uint32_t>(index) << 24;
}

// Lists are compared so many entries at a time; what is missing at their ends are copies of their first entry.
static constexpr int32_t ownListStep = 16;

static int32_t ownFillStep(uint32_t* list, int32_t length)
{
    while (length % ownListStep != 0) list[length++] = list[0];
    return length;
}

// Lists the entries, of equal ones the first, since no other is ever the nearest. The cells are lent as a hash table of
// the colours that were met: never more than an eighth of its slots is taken.
static void ownListEntries(OwnNearest* nearest)
{
    memset(nearest->cells.get(), 0, ownCellCount * sizeof(uint32_t));
    uint32_t* const listed = nearest->pool.get() + ownTablePlace;
    nearest->listed = 0;
    for (int32_t i = 0; i < nearest->count; ++i) {
        const uint32_t entry = ownEntry(nearest, i);
        const uint32_t met = (entry & 0xFFFFFF) | 1u << 24;
        uint32_t slot = met * 0x9E3779B1u / (UINT32_MAX / ownCellCount + 1); // 2^32 over the golden ratio
        while (nearest->cells[slot] != 0 && nearest->cells[slot] != met) slot = (slot + 1) % ownCellCount;
        if (nearest->cells[slot] == met) continue;
        nearest->cells[slot] = met;
        listed[nearest->listed++] = entry;
    }
    nearest->listed = ownFillStep(listed, nearest->listed);
    std::fill_n(nearest->pool.get(), ownTablePlace, 0u);
}

void ownPrepareNearest(OwnNearest* nearest, const uint8_t* table, int64_t count)
{
    nearest->table = table;
    nearest->count = count;
    for (uint32_t g = 0; g < 256; ++g)
        nearest->isGrayExact[g] = count == 256 && ownEntry(nearest, g) == (0x010101 * g | g << 24);
    nearest->cells.reset();
    if (count > ownLongestList) return;
    nearest->pool = ownBuffer<uint32_t>(ownPoolSize);
    if (nearest->pool) nearest->cells = ownBuffer<uint32_t>(ownCellCount + ownBlockCount);
    if (!nearest->cells) return;
    ownListEntries(nearest);
    ownForgetLists(nearest);
}

static int32_t ownChannel(uint32_t color, int32_t channel)
{
    return static_cast<int32_t>(color >> 8 * channel & 0xFF);
}

// At most 3 * 255 * 255.
static int32_t ownDistance(uint32_t a, uint32_t b)
{
    int32_t sum = 0;
    for (int32_t c = 0; c < 3; ++c) {
        const int32_t difference = ownChannel(a, c) - ownChannel(b, c);
        sum += difference * difference;
    }
    return sum;
}

static uint8_t ownSearchTable(const OwnNearest* nearest, uint32_t color)
{
    uint32_t best = ownEntry(nearest, 0);
    int32_t bestDistance = ownDistance(best, color);
    for (int64_t i = 1; i < nearest->count && bestDistance != 0; ++i) {
        const uint32_t entry = ownEntry(nearest, i);
        const int32_t distance = ownDistance(entry, color);
        if (distance >= bestDistance) continue;
        bestDistance = distance;
        best = entry;
    }
    return static_cast<uint8_t>(best >> 24);
}

// ---- lists of cells ------------------------------------------------------------------------------------------------

// By how much an entry's distance is above the rival's where it is so least, over all colours from `first` to `last`.
// The difference of two squared distances is linear in each channel, so a corner has it. For a step of a list.
static void ownFindLeads(const uint32_t* entries, uint32_t rival, uint32_t first, uint32_t last, int32_t* leads)
{
    int32_t rivals[3], firsts[3], lasts[3];
    for (int32_t c = 0; c < 3; ++c) {
        rivals[c] = ownChannel(rival, c);
        firsts[c] = 2 * ownChannel(first, c);
        lasts[c] = 2 * ownChannel(last, c);
    }
    for (int32_t i = 0; i < ownListStep; ++i) {
        int32_t lead = 0;
        for (int32_t c = 0; c < 3; ++c) {
            const int32_t a = ownChannel(entries[i], c), b = rivals[c];
            lead += (a - b) * (a + b - (a > b ? lasts[c] : firsts[c]));
        }
        leads[i] = lead;
    }
}

// The first of the nearest ones: distances take 18 bits, places 12.
static uint32_t ownNearestInList(const uint32_t* list, int32_t count, uint32_t color)
{
    const int32_t blue = ownChannel(color, 0), green = ownChannel(color, 1), red = ownChannel(color, 2);
    int32_t least = INT32_MAX;
    for (int32_t start = 0; start < count; start += ownListStep) {
        for (int32_t i = 0; i < ownListStep; ++i) {
            const uint32_t entry = list[start + i];
            const int32_t b = ownChannel(entry, 0) - blue, g = ownChannel(entry, 1) - green;
            const int32_t r = ownChannel(entry, 2) - red;
            const int32_t key = (b * b + g * g + r * r) << 12 | (start + i);
            least = key < least ? key : least;
        }
    }
    return list[least & 0xFFF];
}

// A list of up to eight entries for a cell or less. Within a cell distances are linear in a colour's place, which is
// from 0 to 7 in each channel, but for what they have in common. Less that they fit 16 bits, as a rule, together with
// an entry's place.
struct OwnShortList {
    uint16_t keys[8];     // at the cell's first colour: differences of distances times 8, plus the place
    uint16_t steps[3][8]; // by how much keys grow with the colour's blue, green, red
    uint8_t indices[8];
};

// Rows of one number, since a vector is read quicker than it is made of a number.
struct OwnSpreadNumbers {
    uint16_t of[8][8] = {};
    constexpr OwnSpreadNumbers()
    {
        for (int32_t k = 0; k < 64; ++k) of[k / 8][k % 8] = static_cast<uint16_t>(k / 8);
    }
};
static constexpr OwnSpreadNumbers ownSpread;

static inline uint8_t ownNearestInShort(const uint32_t* place, uint32_t color)
{
    const OwnShortList& list = *reinterpret_cast<const OwnShortList*>(place);
    const uint16_t *const blue = ownSpread.of[color & 7], *const green = ownSpread.of[color >> 8 & 7],
                          *const red = ownSpread.of[color >> 16 & 7];
    uint16_t least = UINT16_MAX;
    for (int32_t i = 0; i < 8; ++i) {
        const uint16_t key = static_cast<uint16_t>(list.keys[i] + list.steps[0][i] * blue[i]
                                                   + list.steps[1][i] * green[i] + list.steps[2][i] * red[i]);
        least = key < least ? key : least;
    }
    return list.indices[least & 7];
}

// The short list of the entries listed for the cube of 2^bits colours a side from `first` on; its end is filled with
// copies of the first one. Steps are told from those of the rival, which lies among them. False: too many, or keys
// beyond 16 bits.
static bool ownMakeShort(const uint32_t* list, int32_t length, uint32_t rival, uint32_t first, int32_t bits,
                         OwnShortList* made)
{
    if (length > 8) return false;
    const int32_t side = (1 << bits) - 1;
    int32_t keys[8], low[8], high[8], origin[8];
    for (int32_t i = 0; i < 8; ++i) {
        const int32_t place = i < length ? i : 0;
        keys[i] = 8 * ownDistance(list[place], first) + place;
        low[i] = high[i] = origin[i] = keys[i];
        made->indices[i] = static_cast<uint8_t>(list[place] >> 24);
        for (int32_t c = 0; c < 3; ++c) {
            const int32_t step = 16 * (ownChannel(rival, c) - ownChannel(list[place], c));
            low[i] += side * std::min(step, 0);
            high[i] += side * std::max(step, 0);
            origin[i] -= step * (ownChannel(first, c) & 7);
            made->steps[c][i] = static_cast<uint16_t>(step);
        }
    }
    const int32_t lowest = *std::min_element(low, low + 8) & ~7;
    for (int32_t i = 0; i < 8; ++i) made->keys[i] = static_cast<uint16_t>(origin[i] - lowest);
    return *std::max_element(high, high + 8) - lowest <= UINT16_MAX;
}

// Lists what of a list may be nearest to a colour in the cube of the given first colour and size: all but the entries
// that are everywhere farther than the one nearest to the middle. The word of the cube; 0: the pool is full.
static uint32_t ownListCube(OwnNearest* nearest, uint32_t from, uint32_t first, int32_t bits)
{
    const uint32_t last = first + 0x010101u * ((1u << bits) - 1);
    const uint32_t* const source = nearest->pool.get() + ownPlaceOf(from);
    const int32_t count = static_cast<int32_t>(from >> ownPlaceBits);
    if (ownPoolSize - nearest->poolUsed < count + ownShortWords + ownHalvesWords) return 0;
    const uint32_t rival = ownNearestInList(source, count, first + 0x010101u * (1u << bits >> 1));
    uint32_t* const list = nearest->pool.get() + nearest->poolUsed;
    int32_t length = 0;
    for (int32_t start = 0; start < count; start += ownListStep) {
        int32_t leads[ownListStep];
        ownFindLeads(source + start, rival, first, last, leads);
        for (int32_t i = 0; i < ownListStep; ++i) {
            const bool isFilling = source[start + i] == source[0] && start + i > 0;
            list[length] = source[start + i];
            length += leads[i] <= 0 && !isFilling;
        }
    }
    const uint32_t place = static_cast<uint32_t>(nearest->poolUsed);
    OwnShortList made;
    if (bits <= ownCellBits && ownMakeShort(list, length, rival, first, bits, &made)) {
        memcpy(list, &made, sizeof made);
        nearest->poolUsed += ownShortWords;
        return place | ownShortMark << ownPlaceBits;
    }
    length = ownFillStep(list, length);
    nearest->poolUsed += length;
    return place | static_cast<uint32_t>(length) << ownPlaceBits;
}

// What becomes of a cube's list when its halves get lists of their own. A short one serves them all. There is room.
static uint32_t ownHalve(OwnNearest* nearest, uint32_t word)
{
    const uint32_t place = static_cast<uint32_t>(nearest->poolUsed);
    uint32_t* const halves = nearest->pool.get() + place;
    nearest->poolUsed += ownHalvesWords;
    std::fill_n(halves, 8, word >> ownPlaceBits == ownShortMark ? word : 0);
    halves[8] = word;
    return place | ownHalvedMark << ownPlaceBits;
}

// The number of the cube of 2^bits colours a side that a colour lies in.
static int32_t ownCubeOf(uint32_t color, int32_t bits)
{
    const int32_t each = 8 - bits;
    return (ownChannel(color, 2) >> bits) << 2 * each | (ownChannel(color, 1) >> bits) << each
        | ownChannel(color, 0) >> bits;
}

static uint32_t ownFirstOfCube(uint32_t color, int32_t bits)
{
    return color & 0x010101u * (0xFFu << bits & 0xFF);
}

// Which half of a cube of twice 2^bits colours a side a colour lies in.
static int32_t ownHalfOf(uint32_t color, int32_t bits)
{
    const uint32_t each = color >> bits & 0x010101;
    return static_cast<int32_t>((each | each >> 7 | each >> 14) & 7);
}

// The word of the smallest cube around a colour that is listed, then. 0: the pool is full.
static uint32_t ownListColor(OwnNearest* nearest, uint32_t color)
{
    uint32_t* const block = &nearest->cells[ownCellCount + ownCubeOf(color, ownBlockBits)];
    const uint32_t table = ownTablePlace | static_cast<uint32_t>(nearest->listed) << ownPlaceBits;
    if (*block == 0) *block = ownListCube(nearest, table, ownFirstOfCube(color, ownBlockBits), ownBlockBits);
    if (*block == 0) return 0;
    uint32_t from = *block;
    uint32_t* word = &nearest->cells[ownCubeOf(color, ownCellBits)];
    for (int32_t bits = ownCellBits;; --bits) {
        if (*word == 0) {
            uint32_t made = ownListCube(nearest, from, ownFirstOfCube(color, bits), bits);
            if (made == 0) return 0;
            const bool isLong = made >> ownPlaceBits != ownShortMark;
            if (bits == ownCellBits || (isLong && bits > 0)) made = ownHalve(nearest, made);
            *word = made;
        }
        if (*word >> ownPlaceBits != ownHalvedMark) return *word;
        uint32_t* const halves = nearest->pool.get() + ownPlaceOf(*word);
        from = halves[8];
        word = halves + ownHalfOf(color, bits - 1);
    }
}

// ---- searches ------------------------------------------------------------------------------------------------------

static bool ownIsExactGray(const OwnNearest* nearest, uint32_t color)
{
    return (color & 0xFFFFFF) == 0x010101 * (color & 0xFF) && nearest->isGrayExact[color & 0xFF];
}

__attribute__((noinline)) static uint8_t ownFindNearestColor(OwnNearest* nearest, uint32_t color)
{
    if (ownIsExactGray(nearest, color)) return static_cast<uint8_t>(color);
    if (!nearest->cells) return ownSearchTable(nearest, color);
    uint32_t word = ownListColor(nearest, color);
    if (word == 0) {
        // Begun anew: what the picture asks for next is likelier than what it asked for long ago. There is room now.
        ownForgetLists(nearest);
        word = ownListColor(nearest, color);
    }
    if (word == 0) return ownSearchTable(nearest, color);
    const uint32_t* const list = nearest->pool.get() + ownPlaceOf(word);
    const uint32_t length = word >> ownPlaceBits;
    if (length == ownShortMark) return ownNearestInShort(list, color);
    return static_cast<uint8_t>(ownNearestInList(list, static_cast<int32_t>(length), color) >> 24);
}

// Of each colour the number of its cell times 8 plus that of the half; a gray is told by the highest bit.
static void ownLocateColors(const uint32_t* colors, int32_t count, uint32_t* places)
{
    for (int32_t i = 0; i < count; ++i) {
        const uint32_t color = colors[i];
        const uint32_t isGray = ((color ^ color >> 8) & 0xFFFF) == 0 ? 1u << 31 : 0u;
        const int32_t cell = ownCubeOf(color, ownCellBits), half = ownHalfOf(color, ownCellBits - 1);
        places[i] = isGray | static_cast<uint32_t>(8 * cell + half);
    }
}

void ownFindNearestColors(OwnNearest* nearest, const uint32_t* colors, int32_t count, uint8_t* indices)
{
    constexpr int32_t most = 256;
    const uint32_t *const cells = nearest->cells.get(), *const pool = nearest->pool.get();
    for (int32_t start = 0; start < count; start += most) {
        const int32_t n = std::min(most, count - start);
        uint32_t places[most];
        ownLocateColors(colors + start, n, places);
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t color = colors[start + i];
            const uint32_t place = places[i];
            uint32_t word = 0;
            // Cells are halved whether they need it or not, which saves a branch.
            if (cells != nullptr && place >> 31 == 0) word = pool[ownPlaceOf(cells[place / 8]) + (place & 7)];
            for (int32_t bits = ownCellBits - 2; word >> ownPlaceBits == ownHalvedMark; --bits)
                word = pool[ownPlaceOf(word) + ownHalfOf(color, bits)];
            const bool isShort = word >> ownPlaceBits == ownShortMark;
            indices[start + i] =
                isShort ? ownNearestInShort(pool + ownPlaceOf(word), color) : ownFindNearestColor(nearest, color);
        }
    }
}
