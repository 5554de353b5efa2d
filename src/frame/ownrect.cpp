// SPDX-License-Identifier: BSD-2-Clause
#include "ownrect.h"

#include <algorithm>
#include <cstring>

#include "ownborder.h"
#include "ownimage.h"
#include "ownpixelcopy.h"
#include "owntile.h"

// ---- tiles ---------------------------------------------------------------------------------------------------------

// A walk along one axis, forward or backward.
struct OwnWalk {
    int32_t from;
    int32_t count;
    int32_t step; // 1 or -1
};

static OwnWalk ownWalk(int32_t from, int32_t to)
{
    return to >= from ? OwnWalk { from, to - from + 1, 1 } : OwnWalk { from, from - to + 1, -1 };
}

// The part of the walk inside the tile that it is in, with a start counted from the tile's edge.
static OwnWalk ownWalkInTile(const OwnWalk& walk, int32_t tileExtent)
{
    const int32_t from = walk.from % tileExtent;
    return { from, std::min(walk.count, walk.step > 0 ? tileExtent - from : from + 1), walk.step };
}

static void ownAdvance(OwnWalk& walk, int32_t count)
{
    walk.from += walk.step * count;
    walk.count -= count;
}

static uint8_t* ownBufferRow(const OwnRectBuffer& buffer, int32_t plane, int32_t y)
{
    return buffer.block.data + plane * buffer.block.planeStep + y * buffer.block.rowStep;
}

static void ownCopyPart(const OwnBlock& source, const OwnWalk& columns, const OwnWalk& rows,
                        const OwnRectBuffer& buffer, int32_t bufX, int32_t bufY)
{
    const OwnPixelCopies copies = ownPixelCopies(buffer.pixelBytes);
    const OwnPixelCopy copy = columns.step > 0 ? copies.forward : copies.backward;
    for (int32_t plane = 0; plane < buffer.planes; ++plane) {
        const uint8_t* from = source.data + plane * source.planeStep + rows.from * source.rowStep;
        uint8_t* to = ownBufferRow(buffer, plane, bufY);
        for (int32_t i = 0; i < rows.count; ++i) {
            copy(from + i * rows.step * source.rowStep, columns.from, to + i * buffer.block.rowStep, bufX,
                 columns.count, buffer.pixelBytes);
        }
    }
}

// One row of tiles, all held together. `held` has an entry for each tile column of the walk.
static bool ownReadTileRow(PxkImage* image, int32_t tileRow, OwnWalk columns, const OwnWalk& rows, void** held,
                           const OwnRectBuffer& buffer, int32_t bufX, int32_t bufY)
{
    const int32_t tileWidth = image->tileInfo->width;
    const int32_t firstCol = columns.from / tileWidth;
    const int32_t lastCol = (columns.from + columns.step * (columns.count - 1)) / tileWidth;
    const OwnWalk cols = ownWalk(firstCol, lastCol);
    bool isGood = true;
    for (int32_t i = 0; i < cols.count; ++i) {
        held[i] = ownAskTile(image, cols.from + i * columns.step, tileRow, PXK_TILE_READ);
        isGood = isGood && held[i] != nullptr;
    }
    if (!isGood) return false;
    for (int32_t i = 0; i < cols.count; ++i) {
        const OwnWalk inTile = ownWalkInTile(columns, tileWidth);
        ownCopyPart(ownTileBlock(image, held[i]), inTile, rows, buffer, bufX, bufY);
        ownAdvance(columns, inTile.count);
        bufX += inTile.count;
    }
    for (int32_t i = cols.count - 1; i >= 0; --i) {
        ownReleaseTile(image, cols.from + i * columns.step, tileRow, held[i]);
    }
    return true;
}

bool ownReadRect(PxkImage* image, const OwnCorners& corners, const OwnRectBuffer& buffer, int32_t bufX, int32_t bufY)
{
    const OwnWalk columns = ownWalk(corners.xFrom, corners.xTo);
    OwnWalk rows = ownWalk(corners.yFrom, corners.yTo);
    if (image->tileInfo == nullptr) {
        ownCopyPart(ownImageBlock(image), columns, rows, buffer, bufX, bufY);
        return true;
    }
    const int32_t tileWidth = image->tileInfo->width;
    const int32_t tileHeight = image->tileInfo->height;
    const OwnBuffer<void*> held = ownBuffer<void*>(ownWalk(corners.xFrom / tileWidth, corners.xTo / tileWidth).count);
    if (held == nullptr) return false;
    while (rows.count > 0) {
        const int32_t tileRow = rows.from / tileHeight;
        const OwnWalk inTile = ownWalkInTile(rows, tileHeight);
        if (!ownReadTileRow(image, tileRow, columns, inTile, held.get(), buffer, bufX, bufY)) return false;
        ownAdvance(rows, inTile.count);
        bufY += inTile.count;
    }
    return true;
}

// ---- rectangles ----------------------------------------------------------------------------------------------------

// Coordinates from `start` to before `end`, all on one side of an edge of the image.
struct OwnEdgePart {
    int64_t start;
    int64_t end;
    int64_t count() const { return end - start; }
};

// A rectangle's columns or rows: those before the image, inside and behind it. Some of the three may be empty.
struct OwnEdgeParts {
    OwnEdgePart before;
    OwnEdgePart inside;
    OwnEdgePart behind;
};

static OwnEdgeParts ownEdgeParts(int32_t start, int32_t extent, int32_t imageExtent)
{
    const int64_t end = static_cast<int64_t>(start) + extent;
    const int64_t low = std::clamp<int64_t>(0, start, end);
    const int64_t high = std::clamp<int64_t>(imageExtent, start, end);
    return { { start, low }, { low, high }, { high, end } };
}

// A rectangle on its way into its buffer.
struct OwnFetch {
    PxkImage* image;
    OwnRectBuffer buffer;
    OwnRect rect;
    OwnEdgeParts columns;
};

// Rows of the image that the same rows of the buffer come from.
struct OwnFetchRows {
    OwnBorderRun run;
    int32_t bufY;
    int32_t count() const { return run.step != 0 ? run.count : 1; } // the edge row is read once and spread afterwards
};

template <class F> static void ownForBufferRows(const OwnFetch& fetch, int32_t bufY, int32_t count, const F& onRow)
{
    for (int32_t plane = 0; plane < fetch.buffer.planes; ++plane) {
        uint8_t* const first = ownBufferRow(fetch.buffer, plane, bufY);
        for (int32_t i = 0; i < count; ++i) onRow(first + i * fetch.buffer.block.rowStep);
    }
}

// Columns of the side's constant; all channels of a pixel get it.
static void ownFillPart(const OwnFetch& fetch, const OwnEdgePart& columns, const OwnFetchRows& rows, int32_t side)
{
    const OwnConstant constant = ownConstant(fetch.image->depth, ownBorderConstant(fetch.image, side));
    const int32_t unitSamples = fetch.buffer.pixelBytes != 0 ? fetch.buffer.pixelBytes / constant.sampleBytes : 1;
    const ptrdiff_t first = static_cast<ptrdiff_t>(columns.start - fetch.rect.x) * unitSamples;
    const ptrdiff_t count = static_cast<ptrdiff_t>(columns.count()) * unitSamples;
    const OwnPixelCopy fill = ownPixelCopies(constant.sampleBytes).still;
    ownForBufferRows(fetch, rows.bufY, rows.count(),
                     [&](uint8_t* row) { fill(constant.bytes, 0, row, first, count, constant.sampleBytes); });
}

// Columns after the first `period` ones repeat them. Each copy doubles what there is.
static void ownRepeatColumns(const OwnFetch& fetch, const OwnEdgePart& columns, int64_t period,
                             const OwnFetchRows& rows)
{
    const OwnPixelCopy copy = ownPixelCopies(fetch.buffer.pixelBytes).forward;
    const ptrdiff_t first = static_cast<ptrdiff_t>(columns.start - fetch.rect.x);
    const ptrdiff_t count = static_cast<ptrdiff_t>(columns.count());
    ownForBufferRows(fetch, rows.bufY, rows.count(), [&](uint8_t* row) {
        for (ptrdiff_t made = static_cast<ptrdiff_t>(period); made < count; made *= 2) {
            copy(row, first, row, first + made, std::min(made, count - made), fetch.buffer.pixelBytes);
        }
    });
}

// Reads what one run of columns stands for; the edge column is read once and spread to the right.
static bool ownReadRun(const OwnFetch& fetch, const OwnBorderRun& columns, int32_t bufX, const OwnFetchRows& rows)
{
    const OwnBorderRun& down = rows.run;
    const OwnCorners corners = { columns.from, down.from, columns.from + columns.step * (columns.count - 1),
                                 down.from + down.step * (down.count - 1) };
    if (!ownReadRect(fetch.image, corners, fetch.buffer, bufX, rows.bufY)) return false;
    if (columns.step != 0 || columns.count == 1) return true;
    const OwnPixelCopy spread = ownPixelCopies(fetch.buffer.pixelBytes).still;
    ownForBufferRows(fetch, rows.bufY, rows.count(), [&](uint8_t* row) {
        spread(row, bufX, row, static_cast<ptrdiff_t>(bufX) + 1, columns.count - 1, fetch.buffer.pixelBytes);
    });
    return true;
}

// The columns of a stretch by their mode. Tiles are asked for again in each period; memory is read for the first one.
static bool ownReadPart(const OwnFetch& fetch, const OwnEdgePart& columns, const OwnFetchRows& rows, int32_t mode)
{
    const int64_t period = static_cast<int64_t>(fetch.image->width) * (mode == PXK_EDGE_MIRROR ? 2 : 1);
    const bool isRepeated = mode != PXK_EDGE_CLAMP && fetch.image->tileInfo == nullptr && columns.count() > period;
    const int64_t end = isRepeated ? columns.start + period : columns.end;
    for (int64_t x = columns.start; x < end;) {
        const OwnBorderRun run = ownBorderRun(mode, x, fetch.image->width, end - x);
        if (!ownReadRun(fetch, run, static_cast<int32_t>(x - fetch.rect.x), rows)) return false;
        x += run.count;
    }
    if (isRepeated) ownRepeatColumns(fetch, columns, period, rows);
    return true;
}

static bool ownReadAcross(const OwnFetch& fetch, const OwnFetchRows& rows, int32_t leftMode, int32_t rightMode)
{
    const OwnEdgeParts& columns = fetch.columns;
    const auto outside = [&](const OwnEdgePart& stretch, int32_t mode, int32_t side) {
        if (stretch.count() == 0) return true;
        if (mode != PXK_EDGE_CONST) return ownReadPart(fetch, stretch, rows, mode);
        ownFillPart(fetch, stretch, rows, side);
        return true;
    };
    if (!outside(columns.before, leftMode, OWN_SIDE_LEFT)) return false;
    if (columns.inside.count() > 0 && !ownReadPart(fetch, columns.inside, rows, OWN_EDGE_NONE)) return false;
    return outside(columns.behind, rightMode, OWN_SIDE_RIGHT);
}

// A band of rows above or below the image. Its mode serves both coordinates.
static bool ownFetchBand(const OwnFetch& fetch, const OwnEdgePart& band, int32_t side)
{
    if (band.count() == 0) return true;
    const int32_t mode = ownSideMode(fetch.image, side);
    const int32_t bandY = static_cast<int32_t>(band.start - fetch.rect.y);
    const int32_t height = static_cast<int32_t>(band.count());
    if (mode == PXK_EDGE_CONST) {
        const OwnEdgePart all = { fetch.rect.x, fetch.columns.behind.end };
        ownFillPart(fetch, all, { { 0, 1, height }, bandY }, side);
        return true;
    }
    for (int64_t y = band.start; y < band.end;) {
        const OwnBorderRun run = ownBorderRun(mode, y, fetch.image->height, band.end - y);
        if (!ownReadAcross(fetch, { run, static_cast<int32_t>(y - fetch.rect.y) }, mode, mode)) return false;
        y += run.count;
    }
    if (mode != PXK_EDGE_CLAMP) return true;
    const size_t rowBytes = static_cast<size_t>(fetch.buffer.block.rowStep);
    for (int32_t plane = 0; plane < fetch.buffer.planes; ++plane) {
        uint8_t* const first = ownBufferRow(fetch.buffer, plane, bandY);
        for (int32_t i = 1; i < height; ++i) memcpy(first + i * rowBytes, first, rowBytes);
    }
    return true;
}

static bool ownFetchMiddle(const OwnFetch& fetch, const OwnEdgePart& rows)
{
    // Rows of an image in memory are finished in groups that stay in the cache; tiles are read once.
    constexpr int64_t memoryGroup = 16;
    const int64_t most = fetch.image->tileInfo != nullptr ? rows.count() : memoryGroup;
    const int32_t leftMode = ownSideMode(fetch.image, OWN_SIDE_LEFT);
    const int32_t rightMode = ownSideMode(fetch.image, OWN_SIDE_RIGHT);
    for (int64_t y = rows.start; y < rows.end; y += most) {
        const OwnBorderRun run = ownBorderRun(OWN_EDGE_NONE, y, fetch.image->height, std::min(most, rows.end - y));
        if (!ownReadAcross(fetch, { run, static_cast<int32_t>(y - fetch.rect.y) }, leftMode, rightMode)) return false;
    }
    return true;
}

static bool ownIsFetchable(const PxkImage* image, const OwnRect& rect)
{
    if (image == nullptr || rect.width < 0 || rect.height < 0) return false;
    if (image->dataOrder != PXK_DATA_ORDER_PIXEL && image->dataOrder != PXK_DATA_ORDER_PLANE) return false;
    return ownIsDepth(image->depth)
        && (image->align == 4 || image->align == 8 || image->align == 16 || image->align == 32);
}

// An empty buffer for the rectangle; without pixels when it does not fit in 31 bits or memory is short.
static OwnFetched ownMakeRect(const PxkImage* image, const OwnRect& rect)
{
    OwnFetched made = {};
    made.rect = rect;
    const bool isPlanes = image->dataOrder == PXK_DATA_ORDER_PLANE;
    const int64_t planes = isPlanes ? image->nChannels : 1;
    const int64_t units = static_cast<int64_t>(rect.width) * (isPlanes ? 1 : image->nChannels);
    if (units > INT32_MAX) return made;
    const int64_t step = ownRowStep(image->dataOrder, image->depth, image->align, image->nChannels, rect.width);
    if (step > INT32_MAX) return made;
    made.block.rowStep = static_cast<ptrdiff_t>(step);
    const int64_t planeStep = step * rect.height;
    if (planeStep > INT32_MAX / planes) return made;
    made.block.planeStep = static_cast<ptrdiff_t>(planeStep);
    made.pixels = ownBuffer<uint8_t>(planeStep * planes);
    made.block.data = made.pixels.get();
    return made;
}

OwnFetched ownFetch(PxkImage* image, int32_t x, int32_t y, int32_t width, int32_t height)
{
    const OwnRect rect = { x, y, width, height };
    if (!ownIsFetchable(image, rect)) return {};
    OwnFetched fetched = ownMakeRect(image, rect);
    if (fetched.pixels == nullptr) return fetched;
    const bool isPlanes = image->dataOrder == PXK_DATA_ORDER_PLANE;
    OwnFetch fetch = {};
    fetch.image = image;
    fetch.rect = rect;
    fetch.columns = ownEdgeParts(x, width, image->width);
    fetch.buffer.block = fetched.block;
    fetch.buffer.pixelBytes = ownSampleBytes(image->depth) * (isPlanes ? 1 : image->nChannels);
    fetch.buffer.planes = isPlanes ? image->nChannels : 1;
    if (fetch.buffer.pixelBytes == 0) { // bits are merged into bytes
        memset(fetched.block.data, 0, static_cast<size_t>(fetched.block.planeStep));
    }
    const OwnEdgeParts rows = ownEdgeParts(y, height, image->height);
    const bool isGood = ownFetchBand(fetch, rows.before, OWN_SIDE_TOP) && ownFetchMiddle(fetch, rows.inside)
        && ownFetchBand(fetch, rows.behind, OWN_SIDE_BOTTOM);
    if (!isGood) fetched.pixels.reset();
    return fetched;
}
