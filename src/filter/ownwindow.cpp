// SPDX-License-Identifier: BSD-2-Clause
#include "ownwindow.h"

#include <algorithm>
#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownborder.h"
#include "frame/owndepth.h"
#include "frame/ownpixelcopy.h"
#include "frame/ownsource.h"

// Copied source rows of a band, and output rows that wait for a mask, stay in the second-level cache together.
static constexpr int64_t ownBandBytes = 128 * 1024;
// Bands that results depend on must never change.
static constexpr int64_t ownFixedBandBytes = 256 * 1024;

// One pass of an engine: all channels of pixel-ordered images together, or a single channel.
struct OwnWindowPass {
    const OwnWindowWork& work;
    OwnBandEngine engine;
    OwnScratch& scratch;
    OwnSource source;
    OwnView pixels;       // of the source, from the pass's first channel on
    int32_t channel;      // the first one, among the processed channels
    int32_t nChannels;    // processed channels in this pass
    int32_t step;         // samples from pixel to pixel in the engine's rows
    ptrdiff_t pixelBytes; // of a pixel there; 0 for rows of bits
    bool isPacked;        // pixels lie in the source as the engine wants them

    bool isBits() const { return work.source->depth == PXK_DEPTH_1U; }
    bool isBitRows() const { return isBits() && work.bitRows == OwnBitRows::AS_BITS; }
    ptrdiff_t rowBytes(int64_t n) const
    {
        return isBitRows() ? ownBytesOfBits(0, static_cast<ptrdiff_t>(n)) : static_cast<ptrdiff_t>(n) * pixelBytes;
    }
};

// ---- which pixels --------------------------------------------------------------------------------------------------

// A stretch of source pixels along one axis, in region coordinates; `before` and `behind` more repeat its ends.
struct OwnReach {
    int64_t first;
    int64_t count;
    int64_t before;
    int64_t behind;
};

static OwnReach ownReach(int32_t start, int32_t count, int32_t marginLow, int32_t marginHigh, int32_t extent,
                         int32_t ring)
{
    const int64_t low = static_cast<int64_t>(start) - marginLow;
    const int64_t high = static_cast<int64_t>(start) + count + marginHigh;
    if (ring == ownRingNone) return { low, high - low, 0, 0 };
    const int64_t cutLow = std::max<int64_t>(low, -ring);
    const int64_t cutHigh = std::min(high, static_cast<int64_t>(extent) + ring);
    return { cutLow, cutHigh - cutLow, cutLow - low, high - cutHigh };
}

struct OwnReaches {
    OwnReach columns;
    OwnReach rows;
};

static OwnReaches ownReaches(const OwnWindowWork& work, const OwnRect& output)
{
    const OwnMargins& margins = work.margins;
    return { ownReach(output.x, output.width, margins.left, margins.right, work.sourceRect.width, work.ring),
             ownReach(output.y, output.height, margins.top, margins.bottom, work.sourceRect.height, work.ring) };
}

// The rectangle of the image that these are; it may end past the largest coordinate. False when it fits no rectangle.
static bool ownImageRect(const OwnWindowWork& work, const OwnReaches& reaches, OwnRect* rect)
{
    const int64_t x = work.sourceRect.x + reaches.columns.first;
    const int64_t y = work.sourceRect.y + reaches.rows.first;
    if (x < INT32_MIN || y < INT32_MIN || reaches.columns.count > INT32_MAX || reaches.rows.count > INT32_MAX) {
        return false;
    }
    *rect = { static_cast<int32_t>(x), static_cast<int32_t>(y), static_cast<int32_t>(reaches.columns.count),
              static_cast<int32_t>(reaches.rows.count) };
    return true;
}

// Makes all source pixels readable that an output rectangle depends on.
static bool ownReadFor(const OwnWindowWork& work, const OwnRect& output, OwnReading reading, OwnSource& source)
{
    OwnRect rect;
    return ownImageRect(work, ownReaches(work, output), &rect) && ownReadSource(source, work.source, rect, reading);
}

OwnWindowWork ownWindowWork(PxkImage* source, PxkImage* destination, const OwnArea& area)
{
    OwnWindowWork work = {};
    work.source = source;
    work.destination = destination;
    work.sourceRect = ownRegionRect(source);
    work.sourceRect.width = area.size.width;
    work.sourceRect.height = area.size.height;
    work.size = area.size;
    work.mask = area.mask.bitsOrNull();
    work.ring = ownRingNone;
    return work;
}

void ownLimitBits(const OwnBand& band)
{
    for (int32_t y = 0; y < band.height; ++y) {
        uint8_t* const out = band.out[y];
        for (ptrdiff_t x = 0; x < band.width; ++x) out[x] = out[x] != 0 ? 1 : 0;
    }
}

// ---- source rows ---------------------------------------------------------------------------------------------------

// Where rows come from: so many of the source's pixel rows that follow each other, or, for y = -1, the constant of a
// side. The side decides what lies left and right of a row.
struct OwnRowOrigin {
    int32_t side;
    int32_t y;
    int64_t count;
};

// The place of a row of the work and of those behind it. Only an image in memory has pixels outside what is held; then
// all of the image is.
static OwnRowOrigin ownPlaceRows(const OwnWindowPass& pass, int64_t row)
{
    const OwnSource& source = pass.source;
    const int64_t ring = pass.work.ring != ownRingNone ? pass.work.ring : INT32_MAX;
    const int64_t end = pass.work.sourceRect.height + ring;
    const int64_t read = std::clamp(row, -ring, end - 1);
    const int64_t y = pass.work.sourceRect.y + read;
    const int64_t inside = y - source.rect.y;
    if (inside >= 0 && inside < source.rect.height) {
        const int64_t count = read == row ? std::min(source.rect.height - inside, end - row) : 1;
        return { OWN_SIDE_NONE, static_cast<int32_t>(inside), count };
    }
    const int32_t side = y < 0 ? OWN_SIDE_TOP : OWN_SIDE_BOTTOM;
    const int32_t mode = ownSideMode(source.image, side);
    return { side, mode == PXK_EDGE_CONST ? -1 : ownBorderRun(mode, y, source.image->height, 1).from, 1 };
}

static const uint8_t* ownSourceRow(const OwnWindowPass& pass, int32_t y)
{
    return pass.pixels.first + y * pass.pixels.rowStep;
}

// One-bit pixels as bytes, in the form of OwnPixelCopy.
template <int32_t STEP>
static void ownCopyAsBytes(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    uint8_t* const first = to + toX;
    const ptrdiff_t start = STEP < 0 ? x - n + 1 : x;
    ownExpandBits(from + start / 8, static_cast<int32_t>(start % 8), first, STEP == 0 ? 1 : n, 1);
    if (STEP < 0) std::reverse(first, first + n);
    if (STEP == 0) memset(first, first[0], static_cast<size_t>(n));
}

// One channel of pixels that are pixelStep bytes apart.
template <class T, int32_t STEP>
static void ownCopyChannel(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                           ptrdiff_t pixelStep)
{
    constexpr ptrdiff_t bytes = sizeof(T);
    from += x * pixelStep;
    to += toX * bytes;
    for (ptrdiff_t i = 0; i < n; ++i) memcpy(to + i * bytes, from + i * STEP * pixelStep, sizeof(T));
}

// From the source's rows into the engine's. What the copies take as pixelBytes is `unit`.
struct OwnSourceCopies {
    OwnPixelCopies copies;
    ptrdiff_t unit;
};

static OwnSourceCopies ownSourceCopies(const OwnWindowPass& pass)
{
    if (pass.isBits() && !pass.isBitRows()) return { { ownCopyAsBytes<1>, ownCopyAsBytes<-1>, ownCopyAsBytes<0> }, 1 };
    if (pass.isBits() || pass.isPacked) {
        return { ownPixelCopies(static_cast<int32_t>(pass.pixelBytes)), pass.pixelBytes };
    }
    const OwnPixelCopies copies = ownForSampleBytes(pass.pixels.sampleBytes, [](auto tag) {
        using T = typename decltype(tag)::Sample;
        return OwnPixelCopies { ownCopyChannel<T, 1>, ownCopyChannel<T, -1>, ownCopyChannel<T, 0> };
    });
    return { copies, pass.pixels.pixelStep };
}

// Rows that are made together, all of them on one side of the image: `count` of them, `step` bytes apart.
struct OwnMadeBand {
    uint8_t* first;
    ptrdiff_t step;
    int64_t count;
    const uint8_t* source; // the pixel row that the first one comes from; null: only constants
    int32_t side;
    ptrdiff_t n; // pixels of each so far
};

static void ownAddConstant(const OwnWindowPass& pass, OwnMadeBand& made, int32_t side, ptrdiff_t n)
{
    const uint32_t value = ownBorderConstant(pass.work.source, side);
    const bool isByte = pass.isBits() && !pass.isBitRows();
    const OwnConstant constant =
        ownConstant(isByte ? PXK_DEPTH_8U : pass.work.source->depth, isByte ? value & 1 : value);
    const ptrdiff_t at = made.n * pass.step;
    const ptrdiff_t samples = n * pass.step;
    const ptrdiff_t bytes = samples * constant.sampleBytes;
    made.n += n;
    if (bytes > 0 && bytes <= ownConstantBytes) {
        uint8_t* const to = made.first + at * constant.sampleBytes;
        return ownCopyByteRows(constant.bytes, 0, to, made.step, bytes, made.count);
    }
    const OwnPixelCopy still = ownPixelCopies(constant.sampleBytes).still;
    for (int64_t row = 0; row < made.count; ++row) {
        still(constant.bytes, 0, made.first + row * made.step, at, samples, constant.sampleBytes);
    }
}

static void ownAddRun(const OwnWindowPass& pass, OwnMadeBand& made, const OwnBorderRun& run)
{
    constexpr int32_t few = 4; // pixels that are quicker moved one by one
    if (pass.isPacked && (run.step > 0 || run.count <= few)) {
        const int32_t n = run.step > 0 ? run.count : 1;
        for (int32_t k = 0; k < run.count; k += n, made.n += n) {
            const ptrdiff_t x = run.from + static_cast<ptrdiff_t>(k) * run.step;
            ownCopyByteRows(made.source + x * pass.pixelBytes, pass.pixels.rowStep,
                            made.first + made.n * pass.pixelBytes, made.step, n * pass.pixelBytes, made.count);
        }
        return;
    }
    const auto [copies, unit] = ownSourceCopies(pass);
    const OwnPixelCopy copy = run.step > 0 ? copies.forward : (run.step < 0 ? copies.backward : copies.still);
    const ptrdiff_t x = run.from + (pass.isBits() ? static_cast<ptrdiff_t>(pass.pixels.bit) : 0);
    for (int64_t row = 0; row < made.count; ++row) {
        copy(made.source + row * pass.pixels.rowStep, x, made.first + row * made.step, made.n, run.count, unit);
    }
    made.n += run.count;
}

// The image's columns from x to before `end`, inside it and outside.
static void ownAddColumns(const OwnWindowPass& pass, OwnMadeBand& made, int64_t x, int64_t end)
{
    const OwnSource& source = pass.source;
    const int64_t left = source.rect.x;
    const int64_t right = left + source.rect.width;
    const bool isRowOutside = made.side != OWN_SIDE_NONE;
    if (isRowOutside && ownSideMode(source.image, made.side) == PXK_EDGE_CONST) {
        return ownAddConstant(pass, made, made.side, static_cast<ptrdiff_t>(end - x));
    }
    while (x < end) {
        if (x >= left && x < right) {
            const int32_t n = static_cast<int32_t>(std::min(end, right) - x);
            ownAddRun(pass, made, { static_cast<int32_t>(x - left), 1, n });
            x += n;
            continue;
        }
        const int64_t stop = x < left ? std::min(end, left) : end;
        const int32_t side = isRowOutside ? made.side : (x < left ? OWN_SIDE_LEFT : OWN_SIDE_RIGHT);
        const int32_t mode = ownSideMode(source.image, side);
        if (mode == PXK_EDGE_CONST) {
            ownAddConstant(pass, made, side, static_cast<ptrdiff_t>(stop - x));
            x = stop;
        } else {
            const OwnBorderRun run = ownBorderRun(mode, x, source.image->width, stop - x);
            ownAddRun(pass, made, run);
            x += run.count;
        }
    }
}

// Columns, and what repeats their ends.
static void ownAddReach(const OwnWindowPass& pass, OwnMadeBand& made, const OwnReach& columns)
{
    const ptrdiff_t start = made.n;
    const ptrdiff_t first = start + static_cast<ptrdiff_t>(columns.before);
    const int64_t x = pass.work.sourceRect.x + columns.first;
    made.n = first;
    ownAddColumns(pass, made, x, x + columns.count);
    if (columns.before + columns.behind == 0) return;
    const OwnPixelCopy still = ownPixelCopies(static_cast<int32_t>(pass.pixelBytes)).still;
    const ptrdiff_t behind = static_cast<ptrdiff_t>(columns.behind);
    for (int64_t k = 0; k < made.count; ++k) {
        uint8_t* const row = made.first + k * made.step;
        if (behind > 0) still(row, made.n - 1, row, made.n, behind, pass.pixelBytes);
        if (first > start) still(row, first, row, start, first - start, pass.pixelBytes);
    }
    made.n += behind;
}

// ---- parts of a piece ----------------------------------------------------------------------------------------------

// Some columns of a piece of output.
struct OwnColumns {
    int32_t first;
    int32_t count;
};

// What is computed together: columns whose windows lie in the source's pixels as the engine wants them; or others,
// whose source rows are made. Two stretches of such columns share a row, so that the frame of a piece costs one pass;
// what lies between their outputs is dropped.
struct OwnPart {
    OwnColumns columns[2];
    bool isInPlace;
};

static int32_t ownPartWidth(const OwnWindowPass& pass, const OwnPart& part)
{
    const OwnColumns& second = part.columns[1];
    const int32_t between = second.count > 0 ? pass.work.margins.left + pass.work.margins.right : 0;
    return part.columns[0].count + between + second.count;
}

static bool ownIsSmallWindow(const OwnMargins& margins)
{
    constexpr int32_t few = 8;
    return margins.left + margins.right <= few && margins.top + margins.bottom <= few;
}

// Cuts a piece into the columns that can be read in place and the others. Few columns in place are not worth a pass of
// their own.
static int32_t ownCutPiece(const OwnWindowPass& pass, const OwnRect& rect, OwnPart (&parts)[2])
{
    const OwnWindowWork& work = pass.work;
    const OwnRect& held = pass.source.rect;
    const int64_t origin = static_cast<int64_t>(work.sourceRect.x) + rect.x; // of the piece's first column
    int64_t low = held.x;
    int64_t high = low + held.width;
    if (work.ring != ownRingNone) {
        low = std::max<int64_t>(low, static_cast<int64_t>(work.sourceRect.x) - work.ring);
        high = std::min<int64_t>(high, static_cast<int64_t>(work.sourceRect.x) + work.sourceRect.width + work.ring);
    }
    const int64_t first = std::max<int64_t>(0, low + work.margins.left - origin);
    const int64_t end = std::min<int64_t>(rect.width, high - work.margins.right - origin);
    const int64_t overlap = static_cast<int64_t>(work.margins.left) + work.margins.right;
    const bool isSmall = ownIsSmallWindow(work.margins);
    const int64_t fewBytes = isSmall ? 128 : 1024; // chained rows of a frame cost little
    const bool isCut = !work.inFixedBands && (isSmall || !work.isCostly);
    const bool isWhole = first == 0 && end == rect.width && (end - first) * pass.pixelBytes >= ownBlockBytes;
    const bool isWorth = isWhole || (isCut && (end - first - 8 * overlap) * pass.pixelBytes >= fewBytes);
    if (!pass.isPacked || !isWorth) {
        parts[0] = { { { 0, rect.width }, { 0, 0 } }, false };
        return 1;
    }
    const int32_t from = static_cast<int32_t>(first);
    const int32_t to = static_cast<int32_t>(end);
    parts[0] = { { { from, to - from }, { 0, 0 } }, true };
    if (isWhole) return 1;
    parts[1] = { { { 0, from }, { to, rect.width - to } }, false };
    if (from == 0) parts[1] = { { { to, rect.width - to }, { 0, 0 } }, false };
    return 2;
}

// Output rows of a part.
struct OwnRows {
    int32_t first; // in the piece
    int32_t count;
};

// A part of a piece on its way through an engine.
struct OwnPartWork {
    const OwnDestination& piece;
    OwnPart part;
    int32_t width; // pixels of the engine's output rows
};

// Bytes of a row that is made.
static ptrdiff_t ownMadeRowStep(const OwnWindowPass& pass, int32_t width)
{
    const int64_t overlap = static_cast<int64_t>(pass.work.margins.left) + pass.work.margins.right;
    const ptrdiff_t bytes = pass.rowBytes(width + overlap);
    const ptrdiff_t room = std::max(bytes, ownBlockBytes + pass.rowBytes(overlap)); // for a block of output
    return (room + 63) & ~static_cast<ptrdiff_t>(63);
}

// Short rows of small windows are made one behind the other, without gaps, and computed as a single long one: what
// comes out between their ends is dropped.
static bool ownIsChained(const OwnWindowPass& pass, const OwnPartWork& work)
{
    return ownIsSmallWindow(pass.work.margins) && !work.part.isInPlace && !pass.isBitRows() && !pass.work.inFixedBands
        && pass.rowBytes(work.width) < ownBlockBytes;
}

// Most different rows that a band of so many rows can hold.
static int64_t ownMostRows(const OwnWindowWork& work, int64_t total)
{
    if (work.ring == ownRingNone) return total;
    return std::min<int64_t>(total, static_cast<int64_t>(work.sourceRect.height) + 2 * work.ring);
}

// Zeros behind the `made` bytes of each row.
static void ownClearGaps(uint8_t* first, const uint8_t* end, ptrdiff_t made, ptrdiff_t step, ptrdiff_t room)
{
    for (uint8_t* row = first; row < end; row += step) memset(row + made, 0, static_cast<size_t>(step - made));
    if (step == made) memset(const_cast<uint8_t*>(end), 0, static_cast<size_t>(room - made));
}

// The source rows of a band, in place or made; rows that follow each other and are the same are one, unless rows are
// chained. Null: out of memory.
static const uint8_t* const* ownBandRows(OwnWindowPass& pass, const OwnPartWork& work, const OwnRows& rows)
{
    const OwnMargins& margins = pass.work.margins;
    const OwnRect& rect = work.piece.rect;
    const auto reachOf = [&](const OwnColumns& columns) {
        return ownReach(rect.x + columns.first, columns.count, margins.left, margins.right, pass.work.sourceRect.width,
                        pass.work.ring);
    };
    const bool isInPlace = work.part.isInPlace;
    const OwnReach reaches[2] = { reachOf(work.part.columns[0]), reachOf(work.part.columns[1]) };
    const int64_t y = static_cast<int64_t>(rect.y) + rows.first;
    const int64_t total = static_cast<int64_t>(margins.top) + rows.count + margins.bottom;
    const ptrdiff_t room = ownMadeRowStep(pass, work.width);
    const ptrdiff_t made = pass.rowBytes(static_cast<int64_t>(work.width) + margins.left + margins.right);
    const bool isChained = ownIsChained(pass, work);
    const ptrdiff_t step = isChained ? made : room;
    const uint8_t** const pointers = pass.scratch.take<const uint8_t*>(total);
    // In place only two rows of constants are made.
    const int64_t most = isInPlace ? 2 : (isChained ? total : ownMostRows(pass.work, total));
    uint8_t* const first = pass.scratch.take<uint8_t>(most * step + (isChained ? room : 0));
    uint8_t* next = first;
    if (pointers == nullptr || first == nullptr) return nullptr;
    const ptrdiff_t column = static_cast<ptrdiff_t>(pass.work.sourceRect.x + reaches[0].first - pass.source.rect.x);
    OwnRowOrigin last = { -1, -1, 0 };
    for (int64_t k = 0; k < total;) {
        const OwnRowOrigin place = ownPlaceRows(pass, y - margins.top + k);
        if (place.side == last.side && place.y == last.y && !isChained) {
            pointers[k] = pointers[k - 1];
            ++k;
            continue;
        }
        const int64_t count = std::min(place.count, total - k);
        last = { place.side, place.y + static_cast<int32_t>(count) - 1, 0 };
        const uint8_t* const source = place.y >= 0 ? ownSourceRow(pass, place.y) : nullptr;
        const bool isMade = !isInPlace || source == nullptr;
        const uint8_t* row = isMade ? next : source + column * pass.pixels.pixelStep;
        const ptrdiff_t rowStep = isMade ? step : pass.pixels.rowStep;
        if (isMade) {
            OwnMadeBand band = { next, step, count, source, place.side, 0 };
            ownAddReach(pass, band, reaches[0]);
            if (work.part.columns[1].count > 0) ownAddReach(pass, band, reaches[1]);
            next += count * step;
        }
        for (const int64_t end = k + count; k < end; ++k, row += rowStep) pointers[k] = row;
    }
    // What fills up a block is computed too: left as it was, it might be numbers that processors are slow on.
    if (pass.work.source->depth == PXK_DEPTH_32F) ownClearGaps(first, next, made, step, room);
    return pointers;
}

// ---- output --------------------------------------------------------------------------------------------------------

// Some pixels of a view.
static OwnView ownViewPart(OwnView view, const OwnRows& rows, const OwnColumns& columns)
{
    const ptrdiff_t bit = view.sampleBytes == 0 ? view.bit + static_cast<ptrdiff_t>(columns.first) : 0;
    view.first += rows.first * view.rowStep + columns.first * view.pixelStep + bit / 8;
    view.bit = static_cast<int32_t>(bit % 8);
    view.width = columns.count;
    view.height = rows.count;
    return view;
}

// The pass's channels of the piece.
static OwnView ownPassView(const OwnWindowPass& pass, const OwnDestination& piece)
{
    OwnView view = piece.view;
    view.first += pass.channel * view.channelStep;
    view.nChannels = pass.nChannels;
    return view;
}

// Output rows are made where they belong, or are staged: under a mask, with gaps between samples or stretches, and
// where a row has less than a block.
static bool ownIsStaged(const OwnWindowPass& pass, const OwnPartWork& work)
{
    const OwnRowForm form = { pass.step, pass.isBitRows() };
    return work.piece.mask != nullptr || work.part.columns[1].count > 0 || pass.rowBytes(work.width) < ownBlockBytes
        || !ownLieAsMade(ownPassView(pass, work.piece), form);
}

static void ownStoreStaged(const OwnWindowPass& pass, const OwnPartWork& work, const OwnRows& rows,
                           const OwnView& staged)
{
    const OwnView all = ownPassView(pass, work.piece);
    const bool isPlain = work.piece.mask == nullptr && ownLieAsMade(all, { pass.step, pass.isBitRows() });
    int32_t at = 0;
    for (const OwnColumns& columns : work.part.columns) {
        if (columns.count == 0) continue;
        const OwnRows allRows = { 0, rows.count };
        const OwnView views[2] = { ownViewPart(staged, allRows, { at, columns.count }),
                                   ownViewPart(all, rows, columns) };
        at += columns.count + pass.work.margins.left + pass.work.margins.right;
        if (isPlain) {
            ownCopyByteRows(views[0].first, views[0].rowStep, views[1].first, views[1].rowStep,
                            columns.count * views[1].pixelStep, rows.count);
            continue;
        }
        OwnBits mask;
        if (work.piece.mask != nullptr) mask = ownBitsAt(*work.piece.mask, columns.first, rows.first);
        ownCopyView(views[0], views[1], work.piece.mask != nullptr ? &mask : nullptr);
    }
}

static bool ownRunBand(OwnWindowPass& pass, const OwnPartWork& work, const OwnRows& rows)
{
    pass.scratch.restart();
    const uint8_t* const* const sources = ownBandRows(pass, work, rows);
    uint8_t** const out = pass.scratch.take<uint8_t*>(rows.count);
    if (sources == nullptr || out == nullptr) return false;
    const bool isStaged = ownIsStaged(pass, work);
    const bool isChained = rows.count > 1 && ownIsChained(pass, work);
    OwnView made = ownViewPart(ownPassView(pass, work.piece), rows, work.part.columns[0]);
    if (isStaged) {
        made.width = work.width;
        made = ownMadeRows(made, { pass.step, pass.isBitRows() });
        if (isChained) made.rowStep = sources[1] - sources[0];
        made.first = pass.scratch.take<uint8_t>(static_cast<int64_t>(made.rowStep) * rows.count + ownBlockBytes);
        if (made.first == nullptr) return false;
    }
    for (int32_t y = 0; y < rows.count; ++y) out[y] = made.first + y * made.rowStep;
    ptrdiff_t width = static_cast<ptrdiff_t>(work.width) * pass.step;
    if (isChained) width += (rows.count - 1) * made.rowStep / std::max(made.sampleBytes, 1);
    if (!pass.engine({ sources, out, width, isChained ? 1 : rows.count, pass.step, pass.scratch })) return false;
    if (isStaged) ownStoreStaged(pass, work, rows, made);
    return true;
}

// Output rows of a band: all of them where nothing is copied; otherwise enough that the rows which bands share weigh
// little, few enough that what one part brings into the cache is there for the next.
static int32_t ownBandHeight(const OwnWindowPass& pass, const OwnPartWork* parts, int32_t nParts)
{
    const OwnWindowWork& work = pass.work;
    const OwnRect& rect = parts[0].piece.rect;
    if (nParts == 1 && parts[0].part.isInPlace && !work.inFixedBands && !ownIsStaged(pass, parts[0]))
        return rect.height;
    const int64_t overlap = static_cast<int64_t>(work.margins.top) + work.margins.bottom;
    int64_t rowBytes = ownMadeRowStep(pass, rect.width);
    int64_t bandBytes = ownBandBytes;
    if (work.inFixedBands) {
        const int64_t pixelBytes = std::max(ownDepthBits(work.source->depth) * work.source->nChannels / 8, 1);
        rowBytes = (static_cast<int64_t>(rect.width) + work.margins.left + work.margins.right) * pixelBytes;
        bandBytes = ownFixedBandBytes;
    }
    const int64_t height = std::max({ bandBytes / rowBytes, overlap, int64_t { 16 } });
    return static_cast<int32_t>(std::min<int64_t>(rect.height, height));
}

static bool ownRunPiece(OwnWindowPass& pass, const OwnDestination& piece)
{
    const OwnWindowWork& work = pass.work;
    const bool isPixelOrder = work.source->dataOrder == PXK_DATA_ORDER_PIXEL;
    // Without a channel of interest rows start at the first channel and may carry an alpha channel along.
    const bool isTogether = work.source->nChannels == 1
        || (isPixelOrder && ownChannelOfInterest(work.source) == 0 && ownChannelOfInterest(work.destination) == 0);
    pass.nChannels = isTogether ? piece.view.nChannels : 1;
    pass.step = isTogether ? work.source->nChannels : 1;
    const OwnView source = pass.source.view(pass.source.rect);
    for (pass.channel = 0; pass.channel < piece.view.nChannels; pass.channel += pass.nChannels) {
        pass.pixels = source;
        pass.pixels.first += pass.channel * source.channelStep;
        pass.pixelBytes = pass.isBits() ? (pass.isBitRows() ? 0 : 1) : pass.step * source.sampleBytes;
        pass.isPacked = !pass.isBits() && source.pixelStep == pass.pixelBytes;
        OwnPart parts[2] = {};
        const int32_t nParts = ownCutPiece(pass, piece.rect, parts);
        const OwnPartWork works[2] = { { piece, parts[0], ownPartWidth(pass, parts[0]) },
                                       { piece, parts[1], ownPartWidth(pass, parts[1]) } };
        const int32_t height = ownBandHeight(pass, works, nParts);
        for (int32_t y = 0; y < piece.rect.height; y += height) {
            const OwnRows rows = { y, std::min(height, piece.rect.height - y) };
            for (int32_t k = 0; k < nParts; ++k) {
                if (!ownRunBand(pass, works[k], rows)) return false;
            }
        }
    }
    return true;
}

bool ownRunWindow(const OwnWindowWork& work, OwnBandEngine engine)
{
    const OwnRect all = { 0, 0, work.size.width, work.size.height };
    const bool isInPlace = ownSharePixels(work.source, work.destination);
    const bool isSourceTiled = work.source->tileInfo != nullptr;
    const bool isReadByPiece = isSourceTiled && work.destination->tileInfo != nullptr && !isInPlace;
    OwnScratch scratch;
    OwnWindowPass pass = { work, engine, scratch, {}, {}, 0, 0, 0, 0, false };
    if (isInPlace || (isSourceTiled && !isReadByPiece)) {
        if (!ownReadFor(work, all, OwnReading::AS_COPY, pass.source)) return false;
    } else if (!isSourceTiled) {
        const OwnRect none = {};
        if (!ownReadSource(pass.source, work.source, none, OwnReading::IN_PLACE)) return false;
    }
    const OwnWritten written = ownForPieces(work.destination, work.size, work.mask, [&](const OwnDestination& piece) {
        if (isReadByPiece && !ownReadFor(work, piece.rect, OwnReading::AS_COPY, pass.source)) return false;
        return ownRunPiece(pass, piece);
    });
    return written == OwnWritten::ALL;
}
