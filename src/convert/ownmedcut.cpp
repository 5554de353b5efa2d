// SPDX-License-Identifier: BSD-2-Clause
#include "ownmedcut.h"

#include <cstring>

#include "frame/ownbuffer.h"
#include "frame/ownpixelorder.h"
#include "owndib.h"

// A colour, or a level, that occurs, cut to the bits that are told apart. Gray has its level in the first channel.
struct OwnColorCell {
    uint8_t at[3]; // red, green, blue
    uint32_t count;
};

// A box of the colour space, and the cells in it, which stand together in the list of cells.
struct OwnColorBox {
    uint32_t generation; // a box marked ownUndivided is not split
    uint8_t low[3];
    uint8_t high[3];
    int64_t count; // pixels
    int32_t first; // in the list of cells
    int32_t cells;
};

static constexpr uint32_t ownUndivided = 255;
static constexpr int32_t ownMostBoxes = 256;
static constexpr int32_t ownColorCells = 64 * 64 * 64; // six bits a channel

struct OwnColorBoxes {
    OwnColorCell* cells;
    OwnColorBox boxes[ownMostBoxes];
    int32_t count;
    int32_t wanted;
    bool isGray;
};

// ---- counting ------------------------------------------------------------------------------------------------------

// Where the bytes of the samples stand that count: at 16 bits the high ones.
struct OwnCountedRows {
    const uint8_t* first;
    ptrdiff_t rowStep, pixelStep, channelStep;
    int32_t width, height;
};

static OwnCountedRows ownCountedRows(const PxkImage* image)
{
    const int32_t sampleBytes = image->depth == PXK_DEPTH_16U ? 2 : 1;
    const bool isPixelOrder = image->dataOrder == PXK_DATA_ORDER_PIXEL;
    OwnCountedRows rows = {};
    rows.first = static_cast<const uint8_t*>(image->imageData);
    if (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__) rows.first += sampleBytes - 1;
    rows.rowStep = image->widthStep;
    rows.pixelStep = isPixelOrder ? sampleBytes * image->nChannels : sampleBytes;
    rows.channelStep = isPixelOrder ? sampleBytes : static_cast<ptrdiff_t>(image->widthStep) * image->height;
    rows.width = image->width;
    rows.height = image->height;
    return rows;
}

// Four histograms at once, because equal neighbours would wait for each other's sum.
static void ownCountLevels(const OwnCountedRows& rows, uint32_t (*counts)[256])
{
    memset(counts, 0, 4 * sizeof *counts);
    for (int32_t y = 0; y < rows.height; ++y) {
        const uint8_t* const row = rows.first + y * rows.rowStep;
        for (int32_t x = 0; x < rows.width; ++x) ++counts[x & 3][row[x * rows.pixelStep]];
    }
    for (int32_t i = 0; i < 256; ++i) counts[0][i] += counts[1][i] + counts[2][i] + counts[3][i];
}

// Equal neighbours are counted together.
static void ownCountColors(const OwnCountedRows& rows, int32_t redChannel, uint32_t* counts)
{
    memset(counts, 0, ownColorCells * sizeof *counts);
    const ptrdiff_t red = redChannel * rows.channelStep, green = rows.channelStep, blue = 2 * green - red;
    for (int32_t y = 0; y < rows.height; ++y) {
        const uint8_t* pixel = rows.first + y * rows.rowStep;
        uint32_t index = 0, run = 0;
        for (int32_t x = 0; x < rows.width; ++x, pixel += rows.pixelStep) {
            const uint32_t next = pixel[red] >> 2 | (pixel[green] >> 2) << 6 | (pixel[blue] >> 2) << 12;
            if (next != index) {
                counts[index] += run;
                index = next;
                run = 0;
            }
            ++run;
        }
        counts[index] += run;
    }
}

static int32_t ownCountUsed(const uint32_t* counts, int32_t count)
{
    int32_t used = 0;
    for (int32_t i = 0; i < count; ++i) used += counts[i] != 0;
    return used;
}

static void ownListUsed(const uint32_t* counts, int32_t count, bool isGray, OwnColorCell* cells)
{
    for (int32_t i = 0; i < count; ++i) {
        if (counts[i] == 0) continue;
        const auto part = [i](int32_t shift) { return static_cast<uint8_t>(i >> shift & 63); };
        if (isGray)
            *cells++ = { { static_cast<uint8_t>(i), 0, 0 }, counts[i] };
        else
            *cells++ = { { part(0), part(6), part(12) }, counts[i] };
    }
}

// ---- splitting -----------------------------------------------------------------------------------------------------

// Draws the bounds in to the cells that the box has.
static void ownTrimBox(const OwnColorCell* cells, OwnColorBox* box)
{
    for (int32_t axis = 0; axis < 3; ++axis) {
        uint8_t low = 255, high = 0;
        for (int32_t i = box->first; i < box->first + box->cells; ++i) {
            const uint8_t at = cells[i].at[axis];
            low = at < low ? at : low;
            high = at > high ? at : high;
        }
        box->low[axis] = low;
        box->high[axis] = high;
    }
}

static bool ownIsSingle(const OwnColorBox& box)
{
    return box.low[0] == box.high[0] && box.low[1] == box.high[1] && box.low[2] == box.high[2];
}

// The longest axis; of equal ones red before green before blue.
static int32_t ownSplitAxis(const OwnColorBox& box)
{
    const int32_t red = box.high[0] - box.low[0], green = box.high[1] - box.low[1], blue = box.high[2] - box.low[2];
    if (red < green || red < blue) return green < blue ? 2 : 1;
    return 0;
}

// The last slice of the lower part, and the pixels up to it: the slice that passes half of the pixels, or the one
// before when that comes closer.
static int32_t ownSplitSlice(const OwnColorCell* cells, const OwnColorBox& box, int32_t axis, int64_t* lowerCount)
{
    int64_t slices[256] = {};
    for (int32_t i = box.first; i < box.first + box.cells; ++i) slices[cells[i].at[axis]] += cells[i].count;
    const int64_t half = box.count >> 1;
    int32_t slice = box.low[axis];
    int64_t before = 0, sum = slices[slice];
    while (sum <= half) {
        before = sum;
        sum += slices[++slice];
    }
    const bool movesBack = half - before < sum - half;
    *lowerCount = movesBack ? before : sum;
    return movesBack ? slice - 1 : slice;
}

// Brings the cells up to the slice to the front and returns their number.
static int32_t ownPartCells(OwnColorCell* cells, const OwnColorBox& box, int32_t axis, int32_t slice)
{
    int32_t lower = box.first;
    for (int32_t i = box.first; i < box.first + box.cells; ++i) {
        if (cells[i].at[axis] > slice) continue;
        const OwnColorCell cell = cells[i];
        cells[i] = cells[lower];
        cells[lower++] = cell;
    }
    return lower - box.first;
}

// In a gray table a part of a single level leaves the other part's generation alone. In a colour table a lower part of
// a single cell hands its mark on to the upper part, which is then never split either.
static void ownMarkParts(OwnColorBox* lower, OwnColorBox* upper, bool isGray)
{
    const bool isUpperSingle = ownIsSingle(*upper);
    if (isGray) {
        if (!isUpperSingle) ++lower->generation;
        upper->generation = isUpperSingle ? ownUndivided : lower->generation;
        if (ownIsSingle(*lower)) lower->generation = ownUndivided;
        return;
    }
    lower->generation = ownIsSingle(*lower) ? ownUndivided : lower->generation + 1;
    upper->generation = isUpperSingle ? ownUndivided : lower->generation;
}

static void ownSplitBox(OwnColorBoxes* all, OwnColorBox* box)
{
    const int32_t axis = all->isGray ? 0 : ownSplitAxis(*box);
    int64_t lowerCount;
    const int32_t slice = ownSplitSlice(all->cells, *box, axis, &lowerCount);
    const int32_t lowerCells = ownPartCells(all->cells, *box, axis, slice);
    OwnColorBox upper = *box;
    upper.first += lowerCells;
    upper.cells -= lowerCells;
    upper.count -= lowerCount;
    box->cells = lowerCells;
    box->count = lowerCount;
    ownTrimBox(all->cells, box);
    ownTrimBox(all->cells, &upper);
    ownMarkParts(box, &upper, all->isGray);
    all->boxes[all->count++] = upper;
}

// Each pass visits the boxes that it found. The passes end as well when all boxes are marked.
static void ownSplitBoxes(OwnColorBoxes* all)
{
    bool hasSplit = true;
    while (hasSplit && all->count < all->wanted) {
        hasSplit = false;
        const int32_t visited = all->count;
        for (int32_t i = 0; i < visited && all->count < all->wanted; ++i) {
            if (all->boxes[i].generation == ownUndivided) continue;
            ownSplitBox(all, &all->boxes[i]);
            hasSplit = true;
        }
    }
}

// ---- the table -----------------------------------------------------------------------------------------------------

static void ownStoreEntry(uint8_t* entry, int64_t red, int64_t green, int64_t blue)
{
    entry[0] = static_cast<uint8_t>(blue);
    entry[1] = static_cast<uint8_t>(green);
    entry[2] = static_cast<uint8_t>(red);
    entry[3] = 0;
}

static void ownStoreCell(uint8_t* entry, const OwnColorCell& cell, bool isGray)
{
    if (isGray)
        ownStoreEntry(entry, cell.at[0], cell.at[0], cell.at[0]);
    else
        ownStoreEntry(entry, cell.at[0] << 2, cell.at[1] << 2, cell.at[2] << 2);
}

static void ownStoreMean(uint8_t* entry, const OwnColorBoxes& all, const OwnColorBox& box)
{
    int64_t sums[3] = {};
    for (int32_t i = box.first; i < box.first + box.cells; ++i) {
        const OwnColorCell& cell = all.cells[i];
        for (int32_t axis = 0; axis < 3; ++axis) {
            const int64_t level = all.isGray ? cell.at[0] : cell.at[axis] << 2;
            sums[axis] += level * cell.count;
        }
    }
    ownStoreEntry(entry, sums[0] / box.count, sums[1] / box.count, sums[2] / box.count);
}

// Box 0 has all cells. Entries without a box are black.
static void ownStoreMeans(uint8_t* table, OwnColorBoxes* all, int32_t used)
{
    OwnColorBox& whole = all->boxes[0];
    whole = {};
    whole.cells = used;
    for (int32_t i = 0; i < used; ++i) whole.count += all->cells[i].count;
    ownTrimBox(all->cells, &whole);
    all->count = 1;
    ownSplitBoxes(all);
    memset(table, 0, static_cast<size_t>(4 * all->wanted));
    for (int32_t i = 0; i < all->count; ++i) ownStoreMean(table + 4 * i, *all, all->boxes[i]);
}

// Returns the number of entries, or 0 when out of memory.
static int32_t ownTableFromCounts(uint8_t* table, const uint32_t* counts, int32_t count, int32_t wanted, bool isGray)
{
    const int32_t used = ownCountUsed(counts, count);
    const OwnBuffer<OwnColorCell> cells = ownBuffer<OwnColorCell>(used);
    if (!cells) return 0;
    ownListUsed(counts, count, isGray, cells.get());
    if (used <= wanted) {
        for (int32_t i = 0; i < used; ++i) ownStoreCell(table + 4 * i, cells[i], isGray);
        return used;
    }
    OwnColorBoxes all = {};
    all.cells = cells.get();
    all.wanted = wanted;
    all.isGray = isGray;
    ownStoreMeans(table, &all, used);
    return wanted;
}

static int32_t ownTableOfGrays(uint8_t* table, const PxkImage* image, int32_t wanted)
{
    uint32_t counts[4][256];
    ownCountLevels(ownCountedRows(image), counts);
    return ownTableFromCounts(table, counts[0], 256, wanted, true);
}

static int32_t ownTableOfColors(uint8_t* table, const PxkImage* image, int32_t wanted)
{
    const OwnSequence sequence = ownSequenceOf(image);
    if (sequence == OwnSequence::GRAY || sequence == OwnSequence::OTHER) return 0;
    const OwnBuffer<uint32_t> counts = ownBuffer<uint32_t>(ownColorCells);
    if (!counts) return 0;
    ownCountColors(ownCountedRows(image), ownColourPlaces(image).red, counts.get());
    return ownTableFromCounts(table, counts.get(), ownColorCells, wanted, false);
}

static int32_t ownTableOfBits(uint8_t* table)
{
    ownStoreEntry(table, 0, 0, 0);
    ownStoreEntry(table + 4, 255, 255, 255);
    return 2;
}

int32_t ownMedcutPalette(PxkBitmapInfoHeader* dib, const PxkImage* image)
{
    PxkBitmapInfoHeader header = ownLoadDib(dib);
    if (header.biBitCount > 8) return 0;
    const int32_t wanted = 1 << header.biBitCount;
    uint8_t* const table = ownDibTable(dib);
    int32_t entries = 0;
    if (image->depth == PXK_DEPTH_1U)
        entries = ownTableOfBits(table);
    else if (image->nChannels == 1)
        entries = ownTableOfGrays(table, image, wanted);
    else if (image->nChannels == 3 || image->nChannels == 4)
        entries = ownTableOfColors(table, image, wanted);
    if (entries == 0) return 0;
    header.biClrUsed = static_cast<uint32_t>(entries);
    ownStoreDib(dib, header);
    return 1;
}
