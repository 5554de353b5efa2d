#include "ownnearest.h"

#include <cstring>

static constexpr int32_t ownCellBits = 3; // a cell spans 2^3 values of each channel
static constexpr int32_t ownCellSide = 1 << ownCellBits;
static constexpr int32_t ownCellsEach = 256 / ownCellSide;
static constexpr int32_t ownCellCount = ownCellsEach * ownCellsEach * ownCellsEach;
static constexpr int32_t ownPoolSize = 0xFFFF; // first candidate and their number are 16 bits each

void ownPrepareNearest(OwnNearest* nearest, const uint8_t* table, int64_t count)
{
    nearest->table = table;
    nearest->count = count;
    for (int32_t g = 0; g < 256; ++g) {
        const uint8_t* const entry = table + 4 * g;
        nearest->isGrayExact[g] = count == 256 && entry[0] == g && entry[1] == g && entry[2] == g;
    }
    nearest->candidateCount = 0;
    nearest->cells = ownBuffer<uint32_t>(ownCellCount);
    nearest->candidates = ownBuffer<uint32_t>(ownPoolSize);
    if (nearest->cells && nearest->candidates && count <= ownPoolSize)
        memset(nearest->cells.get(), 0, ownCellCount * sizeof(uint32_t));
    else
        nearest->cells.reset();
}

static int32_t ownChannel(uint32_t color, int32_t channel)
{
    return static_cast<int32_t>(color >> 8 * channel & 0xFF);
}

static int32_t ownSquare(int32_t value)
{
    return value * value;
}

// At most 3 * 255 * 255.
static int32_t ownDistance(uint32_t a, uint32_t b)
{
    return ownSquare(ownChannel(a, 0) - ownChannel(b, 0)) + ownSquare(ownChannel(a, 1) - ownChannel(b, 1))
        + ownSquare(ownChannel(a, 2) - ownChannel(b, 2));
}

static uint32_t ownEntry(const OwnNearest* nearest, int64_t index)
{
    uint32_t color;
    memcpy(&color, nearest->table + 4 * index, sizeof color);
    return (color & 0x00FFFFFF) | static_cast<uint32_t>(index) << 24;
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

// Squared distances from an entry to the nearest and the farthest colour of the cell with the given first colour.
static int32_t ownLeastDistance(uint32_t entry, uint32_t first)
{
    int32_t sum = 0;
    for (int32_t c = 0; c < 3; ++c) {
        const int32_t below = ownChannel(first, c) - ownChannel(entry, c);
        const int32_t above = 1 - ownCellSide - below;
        const int32_t outside = below > above ? below : above;
        sum += outside > 0 ? outside * outside : 0;
    }
    return sum;
}

static int32_t ownGreatestDistance(uint32_t entry, uint32_t first)
{
    int32_t sum = 0;
    for (int32_t c = 0; c < 3; ++c) {
        const int32_t toFirst = ownSquare(ownChannel(entry, c) - ownChannel(first, c));
        const int32_t toLast = ownSquare(ownChannel(entry, c) - ownChannel(first, c) - (ownCellSide - 1));
        sum += toFirst > toLast ? toFirst : toLast;
    }
    return sum;
}

// An entry farther from the whole cell than another one is at worst is nearest to none of the cell's colours.
// False: no room left.
static bool ownListCandidates(OwnNearest* nearest, int32_t cell, uint32_t first)
{
    int32_t limit = INT32_MAX;
    for (int64_t i = 0; i < nearest->count; ++i) {
        const int32_t distance = ownGreatestDistance(ownEntry(nearest, i), first);
        limit = distance < limit ? distance : limit;
    }
    uint32_t* const list = nearest->candidates.get();
    const int32_t start = nearest->candidateCount;
    int32_t end = start;
    for (int64_t i = 0; i < nearest->count; ++i) {
        const uint32_t entry = ownEntry(nearest, i);
        if (ownLeastDistance(entry, first) > limit) continue;
        if (end == ownPoolSize) return false;
        list[end++] = entry;
    }
    nearest->cells[cell] = static_cast<uint32_t>(start) | static_cast<uint32_t>(end - start) << 16;
    nearest->candidateCount = end;
    return true;
}

// A full pool is begun anew: what the picture asks for next is likelier than what it asked for long ago. The pool has
// room for a whole table.
static void ownListCell(OwnNearest* nearest, int32_t cell, uint32_t first)
{
    if (ownListCandidates(nearest, cell, first)) return;
    memset(nearest->cells.get(), 0, ownCellCount * sizeof(uint32_t));
    nearest->candidateCount = 0;
    static_cast<void>(ownListCandidates(nearest, cell, first));
}

uint8_t ownFindNearestColor(OwnNearest* nearest, uint32_t color)
{
    const int32_t blue = ownChannel(color, 0), green = ownChannel(color, 1), red = ownChannel(color, 2);
    if (blue == green && green == red && nearest->isGrayExact[blue]) return static_cast<uint8_t>(blue);
    if (!nearest->cells) return ownSearchTable(nearest, color);
    const int32_t cell =
        ((red >> ownCellBits) * ownCellsEach + (green >> ownCellBits)) * ownCellsEach + (blue >> ownCellBits);
    if (nearest->cells[cell] == 0) ownListCell(nearest, cell, color & 0x00F8F8F8);
    const uint32_t place = nearest->cells[cell];
    const uint32_t* const list = nearest->candidates.get() + (place & 0xFFFF);
    const int32_t count = static_cast<int32_t>(place >> 16);
    uint32_t best = list[0];
    int32_t bestDistance = ownDistance(best, color);
    for (int32_t i = 1; i < count; ++i) {
        const int32_t distance = ownDistance(list[i], color);
        best = distance < bestDistance ? list[i] : best;
        bestDistance = distance < bestDistance ? distance : bestDistance;
    }
    return static_cast<uint8_t>(best >> 24);
}
