// SPDX-License-Identifier: BSD-2-Clause
#include "ownnearest.h"

#include <cstring>

// Cells of 8 by 8 by 8 colours, listed from the list of the block of 32 by 32 by 32 colours around them.
static constexpr int32_t ownCellBits = 3, ownBlockBits = 5;
static constexpr int32_t ownCellCount = 1 << 3 * (8 - ownCellBits);
static constexpr int32_t ownBlockCount = 1 << 3 * (8 - ownBlockBits);

// A list is its first place in the pool, 20 bits, and its length in the 12 bits above.
static constexpr int32_t ownPlaceBits = 20;
static constexpr int32_t ownLongestList = 4080; // a whole number of steps
static constexpr int32_t ownPoolSize = 1 << 18;

static void ownForgetLists(OwnNearest* nearest)
{
    memset(nearest->cells.get(), 0, (ownCellCount + ownBlockCount) * sizeof(uint32_t));
    nearest->poolUsed = nearest->listed; // behind the whole table
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
    nearest->listed = 0;
    for (int32_t i = 0; i < nearest->count; ++i) {
        const uint32_t entry = ownEntry(nearest, i);
        const uint32_t met = (entry & 0xFFFFFF) | 1u << 24;
        uint32_t slot = met * 0x9E3779B1u / (UINT32_MAX / ownCellCount + 1); // 2^32 over the golden ratio
        while (nearest->cells[slot] != 0 && nearest->cells[slot] != met) slot = (slot + 1) % ownCellCount;
        if (nearest->cells[slot] == met) continue;
        nearest->cells[slot] = met;
        nearest->pool[nearest->listed++] = entry;
    }
    nearest->listed = ownFillStep(nearest->pool.get(), nearest->listed);
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

// By how much the entry's distance is above the rival's where it is so least, over all colours from `first` to `last`.
// The difference of two squared distances is linear in each channel, so a corner has it.
static int32_t ownLeastLead(uint32_t entry, uint32_t rival, uint32_t first, uint32_t last)
{
    int32_t lead = 0;
    for (int32_t c = 0; c < 3; ++c) {
        const int32_t a = ownChannel(entry, c), b = ownChannel(rival, c);
        const int32_t corner = a > b ? ownChannel(last, c) : ownChannel(first, c);
        lead += (a - b) * (a + b - 2 * corner);
    }
    return lead;
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

// What of a list may be nearest to a colour in the cube of the given first colour and size: all but the entries that
// are everywhere farther than the one nearest to the middle. 0: the pool is full.
static uint32_t ownListCube(OwnNearest* nearest, uint32_t from, uint32_t first, int32_t bits)
{
    const uint32_t last = first + 0x010101u * ((1u << bits) - 1);
    const uint32_t* const source = nearest->pool.get() + (from & ((1u << ownPlaceBits) - 1));
    const int32_t count = static_cast<int32_t>(from >> ownPlaceBits);
    if (ownPoolSize - nearest->poolUsed < count) return 0; // a whole number of steps, as all lists are
    const uint32_t rival = ownNearestInList(source, count, first + 0x010101u * (1u << (bits - 1)));
    uint32_t* const list = nearest->pool.get() + nearest->poolUsed;
    int32_t length = 0;
    for (int32_t i = 0; i < count; ++i) {
        list[length] = source[i];
        length += ownLeastLead(source[i], rival, first, last) <= 0;
    }
    length = ownFillStep(list, length);
    const uint32_t place = static_cast<uint32_t>(nearest->poolUsed) | static_cast<uint32_t>(length) << ownPlaceBits;
    nearest->poolUsed += length;
    return place;
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

static bool ownListCell(OwnNearest* nearest, uint32_t color)
{
    uint32_t* const block = &nearest->cells[ownCellCount + ownCubeOf(color, ownBlockBits)];
    const uint32_t table = static_cast<uint32_t>(nearest->listed) << ownPlaceBits;
    if (*block == 0) *block = ownListCube(nearest, table, ownFirstOfCube(color, ownBlockBits), ownBlockBits);
    if (*block == 0) return false;
    uint32_t* const cell = &nearest->cells[ownCubeOf(color, ownCellBits)];
    *cell = ownListCube(nearest, *block, ownFirstOfCube(color, ownCellBits), ownCellBits);
    return *cell != 0;
}

// ---- searches ------------------------------------------------------------------------------------------------------

static uint8_t ownFindNearestColor(OwnNearest* nearest, uint32_t color)
{
    const int32_t blue = ownChannel(color, 0), green = ownChannel(color, 1), red = ownChannel(color, 2);
    if (blue == green && green == red && nearest->isGrayExact[blue]) return static_cast<uint8_t>(blue);
    if (!nearest->cells) return ownSearchTable(nearest, color);
    const int32_t cell = ownCubeOf(color, ownCellBits);
    if (nearest->cells[cell] == 0 && !ownListCell(nearest, color)) {
        // Begun anew: what the picture asks for next is likelier than what it asked for long ago. There is room now.
        ownForgetLists(nearest);
        if (!ownListCell(nearest, color)) return ownSearchTable(nearest, color);
    }
    const uint32_t place = nearest->cells[cell];
    const uint32_t* const list = nearest->pool.get() + (place & ((1u << ownPlaceBits) - 1));
    return static_cast<uint8_t>(ownNearestInList(list, static_cast<int32_t>(place >> ownPlaceBits), color) >> 24);
}

void ownFindNearestColors(OwnNearest* nearest, const uint32_t* colors, int32_t count, uint8_t* indices)
{
    for (int32_t i = 0; i < count; ++i) indices[i] = ownFindNearestColor(nearest, colors[i]);
}
