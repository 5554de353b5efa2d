#include "ownwarp.h"

#include <algorithm>

#include "frame/ownlimit.h"
#include "frame/ownpieces.h"
#include "frame/ownsource.h"

OwnInterpolation ownInterpolationFor(int32_t interpolate, int32_t depth, OwnSize source)
{
    const int32_t smallest = std::min(source.width, source.height);
    if (interpolate == PXK_INTER_NN || depth == PXK_DEPTH_1U || smallest < 2) return OwnInterpolation::NEAREST;
    return interpolate == PXK_INTER_LINEAR || smallest < 4 ? OwnInterpolation::LINEAR : OwnInterpolation::CUBIC;
}

// ---- shared with remapping -----------------------------------------------------------------------------------------

void ownForChannels(const OwnSampler& sampler, const OwnDestination& piece,
                    OwnFunction<void(const OwnSampler& from, const OwnDestination& to)> onChannels)
{
    if (ownAreTakenTogether(sampler.source) && ownAreTakenTogether(piece.view)) return onChannels(sampler, piece);
    OwnSampler from = sampler;
    OwnDestination to = piece;
    for (int32_t c = 0; c < piece.view.nChannels; ++c) {
        from.source = ownChannelView(sampler.source, c);
        to.view = ownChannelView(piece.view, c);
        onChannels(from, to);
    }
}

OwnRunTarget::OwnRunTarget(const OwnDestination& destination)
    : piece(destination)
    , isDirect(piece.mask == nullptr && piece.view.sampleBytes > 0
               && piece.view.pixelStep == static_cast<ptrdiff_t>(piece.view.nChannels) * piece.view.sampleBytes)
{
}

// ---- runs ----------------------------------------------------------------------------------------------------------

// Rows that are worked on together, so that a block of the destination finds its source in the cache.
constexpr int32_t ownBandRows = 64;

struct OwnWarpPiece {
    const OwnWarp& warp;
    OwnSampler sampler;
    OwnRunTarget target;
    int32_t x; // of the piece's first pixel in the destination
    int32_t y;
    int32_t mostRun;

    int32_t width() const { return target.piece.rect.width; }
};

// Samples for n pixels of the piece from (column, row) on.
static void ownMakeRun(const OwnWarpPiece& p, int32_t column, int32_t row, int32_t n, uint8_t* to)
{
    const int32_t x = p.x + column, y = p.y + row;
    const bool isReal = p.sampler.source.sampleBytes == 2 && p.sampler.interpolation != OwnInterpolation::NEAREST;
    if (p.warp.isAffine && !isReal) {
        OwnFixedRun run;
        ownFixedPositions(p.warp.fixed, x, y, n, run);
        ownSampleFixed(p.sampler, run, n, to);
    } else {
        OwnRealRun run;
        p.warp.real.positions(p.warp.real.c, x, y, n, run);
        ownSampleReal(p.sampler, run, n, OwnTies::UP, to);
    }
}

static void ownWriteSpan(const OwnWarpPiece& p, int32_t row, OwnSpan span)
{
    for (int32_t x = span.first; x < span.end; x += p.mostRun) {
        const int32_t n = std::min(p.mostRun, span.end - x);
        p.target.write(x, row, n, nullptr, [&](uint8_t* to) { ownMakeRun(p, x, row, n, to); });
    }
}

// New samples are weighted by how much of their pixels the shape covers, the old ones by the rest.
template <class T> static void ownMixRun(const OwnWarpPiece& p, int32_t column, int32_t row, int32_t n, T* samples)
{
    const OwnView& view = p.target.piece.view;
    for (int32_t i = 0; i < n; ++i) {
        const double weight = ownCoverage(*p.warp.shape, p.x + column + i, p.y + row);
        const uint8_t* from = p.target.pixel(column + i, row);
        for (int32_t c = 0; c < view.nChannels; ++c, from += view.channelStep, ++samples) {
            const double old = *reinterpret_cast<const T*>(from);
            *samples = ownLimitReal<T>(old + (*samples - old) * weight);
        }
    }
}

static void ownMixSpan(const OwnWarpPiece& p, int32_t row, OwnSpan span)
{
    for (int32_t x = span.first; x < span.end; x += p.mostRun) {
        const int32_t n = std::min(p.mostRun, span.end - x);
        alignas(uint64_t) uint8_t samples[ownRunBytes];
        ownMakeRun(p, x, row, n, samples);
        if (p.target.piece.view.sampleBytes == 1) {
            ownMixRun(p, x, row, n, samples);
        } else {
            ownMixRun(p, x, row, n, reinterpret_cast<uint16_t*>(samples));
        }
        ownStorePixels(p.target.piece, x, row, n, samples, nullptr);
    }
}

// ---- pieces --------------------------------------------------------------------------------------------------------

// The columns of a row of the piece that lie in the shape or at most `margin` outside.
static OwnSpan ownColumnsOf(const OwnWarpPiece& p, int32_t row, double margin)
{
    if (p.warp.shape == nullptr) return { 0, p.width() };
    const OwnSpan span = ownSpanOf(*p.warp.shape, static_cast<double>(p.y) + row, margin, p.x,
                                   static_cast<double>(p.x) + (p.width() - 1));
    return span.isEmpty() ? OwnSpan { 0, 0 } : OwnSpan { span.first - p.x, span.end - p.x };
}

static OwnSpan ownCut(OwnSpan span, int32_t first, int32_t end)
{
    return { std::max(span.first, first), std::min(span.end, end) };
}

static void ownWarpBand(const OwnWarpPiece& p, int32_t firstRow, int32_t nRows)
{
    OwnSpan spans[ownBandRows];
    for (int32_t k = 0; k < nRows; ++k) spans[k] = ownColumnsOf(p, firstRow + k, ownOnSide);
    for (int32_t x = 0; x < p.width(); x += ownMostRun) {
        const int32_t end = x + std::min(ownMostRun, p.width() - x);
        for (int32_t k = 0; k < nRows; ++k) ownWriteSpan(p, firstRow + k, ownCut(spans[k], x, end));
    }
    if (!p.warp.isSmooth) return;
    for (int32_t k = 0; k < nRows; ++k) {
        const OwnSpan ring = ownColumnsOf(p, firstRow + k, 1);
        const int32_t inner = spans[k].isEmpty() ? ring.end : spans[k].first;
        ownMixSpan(p, firstRow + k, { ring.first, inner });
        ownMixSpan(p, firstRow + k, { std::max(inner, spans[k].end), ring.end });
    }
}

static void ownWarpPiece(const OwnWarp& warp, const OwnSampler& sampler, const OwnDestination& piece, int32_t x,
                         int32_t y)
{
    const int32_t mostRun = warp.isAffine ? warp.fixed.mostRun : ownMostRun;
    ownForChannels(sampler, piece, [&](const OwnSampler& from, const OwnDestination& to) {
        const OwnWarpPiece p = { warp, from, OwnRunTarget(to), x, y, mostRun };
        for (int32_t row = 0; row < piece.rect.height; row += ownBandRows) {
            ownWarpBand(p, row, std::min(ownBandRows, piece.rect.height - row));
        }
    });
}

// True when a pixel of the work may change.
static bool ownMeets(const OwnWarp& warp, OwnSize size)
{
    if (warp.shape == nullptr) return true;
    const OwnRect region = ownRegionRect(warp.dstImage);
    const double last = static_cast<double>(region.x) + (size.width - 1);
    for (int32_t y = 0; y < size.height; ++y) {
        const double margin = warp.isSmooth ? 1 : ownOnSide;
        if (!ownSpanOf(*warp.shape, static_cast<double>(region.y) + y, margin, region.x, last).isEmpty()) return true;
    }
    return false;
}

void ownRunWarp(const OwnWarp& warp)
{
    OwnArea area;
    const OwnStart start = ownFindArea(area, { warp.dstImage });
    if (start == OwnStart::NO_MEMORY) return ownReport(warp.site, PXK_StsNoMem, "Out of memory");
    if (start == OwnStart::NOTHING_TO_DO || ownProcessedChannels(warp.dstImage) == 0) return;
    if (ownRegionSize(warp.srcImage).isEmpty() || !ownMeets(warp, area.size)) return;
    OwnSource source;
    const bool isShared = ownSharePixels(warp.srcImage, warp.dstImage);
    if (!ownReadSource(source, warp.srcImage, warp.taps, isShared ? OwnReading::AS_COPY : OwnReading::IN_PLACE)) {
        return ownReport(warp.site, PXK_StsNoMem, "Out of memory");
    }
    const OwnSampler sampler = { source.view(warp.taps), warp.taps.x, warp.taps.y, warp.interpolation };
    const OwnRect region = ownRegionRect(warp.dstImage);
    const OwnWritten written =
        ownForPieces(warp.dstImage, area.size, area.mask.bitsOrNull(), [&](const OwnDestination& piece) {
            const int32_t x = region.x + piece.rect.x, y = region.y + piece.rect.y;
            if (warp.turn != nullptr) {
                ownTurnPiece(*warp.turn, source, warp.taps, piece, x, y);
            } else {
                ownWarpPiece(warp, sampler, piece, x, y);
            }
            return true;
        });
    if (written != OwnWritten::ALL) ownReport(warp.site, PXK_StsBadArg, "Error get tile to write");
}
