#include "ownwindow.h"

#include <algorithm>
#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownbuffer.h"
#include "frame/owndepth.h"
#include "frame/ownsource.h"

// Source rows of a band stay in the second-level cache together.
static constexpr int64_t ownBandBytes = 256 * 1024;

// One pass of an engine: all channels of pixel-ordered images together, or a single channel.
struct OwnPass {
    const OwnWindowWork& work;
    OwnBandEngine engine;
    OwnSource source;
    int32_t channel;   // the first one, among the processed channels
    int32_t nChannels; // processed channels in this pass
    int32_t step;      // samples from pixel to pixel in the engine's rows

    bool isBits() const { return work.source->depth == PXK_DEPTH_1U; }
    bool isBitRows() const { return isBits() && work.bitRows == OwnBitRows::AS_BITS; }
    ptrdiff_t pixelBytes(const OwnView& view) const { return isBits() ? 1 : step * view.sampleBytes; }
    ptrdiff_t rowBytes(const OwnView& view, ptrdiff_t n) const
    {
        return isBitRows() ? ownBytesOfBits(0, n) : n * pixelBytes(view);
    }
};

// Buffer rows start at multiples of this many bytes.
static ptrdiff_t ownBufferStep(ptrdiff_t rowBytes)
{
    return (rowBytes + 63) & ~static_cast<ptrdiff_t>(63);
}

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

// The rectangle of the image that these are. False when it does not fit in 31 bits.
static bool ownImageRect(const OwnWindowWork& work, const OwnReaches& reaches, OwnRect* rect)
{
    const int64_t x = work.sourceRect.x + reaches.columns.first;
    const int64_t y = work.sourceRect.y + reaches.rows.first;
    if (x < INT32_MIN || y < INT32_MIN || x + reaches.columns.count > INT32_MAX || y + reaches.rows.count > INT32_MAX
        || reaches.columns.count > INT32_MAX || reaches.rows.count > INT32_MAX) {
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

// ---- source rows of a band -----------------------------------------------------------------------------------------

struct OwnBandRows {
    OwnSource source; // where the pass's own does not hold them
    OwnBuffer<uint8_t> built;
    OwnBuffer<const uint8_t*> rows;
};

// A row as the engine wants it: n pixels, with copies of the first one in front and of the last one behind them.
static void ownBuildRow(const OwnPass& pass, OwnView view, int32_t y, const OwnReach& columns, uint8_t* to)
{
    view.first += y * view.rowStep;
    view.width = static_cast<int32_t>(columns.count);
    view.height = 1;
    const ptrdiff_t before = static_cast<ptrdiff_t>(columns.before);
    const ptrdiff_t behind = static_cast<ptrdiff_t>(columns.behind);
    const ptrdiff_t n = view.width;
    if (pass.isBitRows()) {
        const auto bitAt = [&](ptrdiff_t i) {
            return (view.first[(view.bit + i) / 8] >> (7 - (view.bit + i) % 8) & 1) != 0;
        };
        ownFillBits(to, 0, before, bitAt(0));
        ownStoreBits(view.first, view.bit, to + before / 8, static_cast<int32_t>(before % 8), n);
        ownFillBits(to + (before + n) / 8, static_cast<int32_t>((before + n) % 8), behind, bitAt(n - 1));
        return;
    }
    const ptrdiff_t pixelBytes = pass.pixelBytes(view);
    uint8_t* const middle = to + before * pixelBytes;
    if (pass.isBits()) {
        ownExpandBits(view.first, view.bit, middle, n, 1);
    } else {
        OwnView packed = view;
        packed.first = middle;
        packed.pixelStep = pixelBytes;
        ownCopyView(view, packed, nullptr);
    }
    const size_t size = static_cast<size_t>(pixelBytes);
    for (ptrdiff_t i = 0; i < before; ++i) memcpy(to + i * pixelBytes, middle, size);
    for (ptrdiff_t i = n; i < n + behind; ++i) memcpy(middle + i * pixelBytes, middle + (n - 1) * pixelBytes, size);
}

static bool ownBuildRows(const OwnPass& pass, const OwnView& view, const OwnReaches& reaches, OwnBandRows& band)
{
    const OwnReach& columns = reaches.columns;
    const int64_t n = columns.before + columns.count + columns.behind;
    const ptrdiff_t step = ownBufferStep(pass.rowBytes(view, static_cast<ptrdiff_t>(n)));
    band.built = ownBuffer<uint8_t>(reaches.rows.count * step);
    if (band.built == nullptr) return false;
    for (int32_t y = 0; y < reaches.rows.count; ++y) {
        ownBuildRow(pass, view, y, columns, band.built.get() + y * step);
    }
    return true;
}

// Finds or makes the rows that the output rectangle depends on.
static bool ownLoadBand(const OwnPass& pass, const OwnRect& output, OwnBandRows& band)
{
    const OwnReaches reaches = ownReaches(pass.work, output);
    const OwnReach& rows = reaches.rows;
    const OwnReach& columns = reaches.columns;
    OwnRect rect;
    if (!ownImageRect(pass.work, reaches, &rect)) return false;
    const bool isHeld = pass.source.holds(rect);
    if (!isHeld && !ownReadSource(band.source, pass.work.source, rect, OwnReading::AS_COPY)) return false;
    OwnView view = (isHeld ? pass.source : band.source).view(rect);
    view.first += pass.channel * view.channelStep;
    view.nChannels = pass.nChannels;
    const bool isReady = pass.isBits() ? pass.isBitRows() && view.bit == 0 : view.pixelStep == pass.pixelBytes(view);
    const bool isBuilt = !isReady || columns.before > 0 || columns.behind > 0;
    if (isBuilt && !ownBuildRows(pass, view, reaches, band)) return false;
    const int64_t n = columns.before + columns.count + columns.behind;
    const ptrdiff_t step = isBuilt ? ownBufferStep(pass.rowBytes(view, static_cast<ptrdiff_t>(n))) : view.rowStep;
    const uint8_t* const first = isBuilt ? band.built.get() : view.first;
    const int64_t total = rows.before + rows.count + rows.behind;
    band.rows = ownBuffer<const uint8_t*>(total);
    if (band.rows == nullptr) return false;
    for (int64_t k = 0; k < total; ++k) {
        const int64_t row = std::min(std::max<int64_t>(k - rows.before, 0), rows.count - 1);
        band.rows[static_cast<size_t>(k)] = first + static_cast<ptrdiff_t>(row) * step;
    }
    return true;
}

// ---- output --------------------------------------------------------------------------------------------------------

static bool ownRunBand(const OwnPass& pass, const OwnRect& output, const OwnView& destination, const OwnBits* mask)
{
    OwnBandRows source;
    OwnOutput rows;
    if (!ownLoadBand(pass, output, source)) return false;
    if (!rows.open(destination, { pass.step, pass.isBitRows() }, output.height, mask)) return false;
    OwnBuffer<uint8_t*> out = ownBuffer<uint8_t*>(output.height);
    if (out == nullptr) return false;
    for (int32_t y = 0; y < output.height; ++y) out[static_cast<size_t>(y)] = rows.row(y);
    const ptrdiff_t width = static_cast<ptrdiff_t>(output.width) * pass.step;
    if (!pass.engine({ source.rows.get(), out.get(), width, output.height, pass.step })) return false;
    rows.store(destination, 0, output.height, mask);
    return true;
}

// Output rows of a band: enough of them that the rows which bands share weigh little, few enough to stay in cache.
static int32_t ownBandHeight(const OwnWindowWork& work, const OwnRect& rect)
{
    const int64_t overlap = static_cast<int64_t>(work.margins.top) + work.margins.bottom;
    const int64_t pixelBytes = std::max<int64_t>(ownDepthBits(work.source->depth) * work.source->nChannels / 8, 1);
    const int64_t rowBytes = (static_cast<int64_t>(rect.width) + work.margins.left + work.margins.right) * pixelBytes;
    const int64_t height = std::max({ ownBandBytes / rowBytes, overlap, static_cast<int64_t>(16) });
    return static_cast<int32_t>(std::min<int64_t>(height, rect.height));
}

static bool ownHasChannelOfInterest(const PxkImage* image)
{
    return image->roi != nullptr && image->roi->coi > 0;
}

static bool ownRunPiece(OwnPass& pass, const OwnDestination& piece)
{
    const OwnWindowWork& work = pass.work;
    const OwnRect& rect = piece.rect;
    const bool isPixelOrder = work.source->dataOrder == PXK_DATA_ORDER_PIXEL;
    const OwnView& whole = piece.view;
    // Without a channel of interest rows start at the first channel and may carry an alpha channel along.
    const bool isTogether = work.source->nChannels == 1
        || (isPixelOrder && !ownHasChannelOfInterest(work.source) && !ownHasChannelOfInterest(work.destination));
    pass.nChannels = isTogether ? whole.nChannels : 1;
    pass.step = isTogether ? work.source->nChannels : 1;
    const int32_t bandHeight = ownBandHeight(work, rect);
    for (pass.channel = 0; pass.channel < whole.nChannels; pass.channel += pass.nChannels) {
        for (int32_t y = 0; y < rect.height; y += bandHeight) {
            const OwnRect output = { rect.x, rect.y + y, rect.width, std::min(bandHeight, rect.height - y) };
            OwnView destination = whole;
            destination.first += y * whole.rowStep + pass.channel * whole.channelStep;
            destination.height = output.height;
            destination.nChannels = pass.nChannels;
            OwnBits maskBits;
            if (piece.mask != nullptr) maskBits = ownBitsAt(*piece.mask, 0, y);
            if (!ownRunBand(pass, output, destination, piece.mask != nullptr ? &maskBits : nullptr)) return false;
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
    OwnPass pass = { work, engine, {}, 0, 0, 0 };
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
