#include "filter/pxkborde.h"

#include <algorithm>

#include "frame/ownborder.h"
#include "frame/ownregion.h"
#include "frame/ownpixelcopy.h"

// What a pixel is in the caller's buffer: a sample, or the samples of all channels.
static int32_t ownRowPixelBytes(const PxkImage* image, int32_t channel)
{
    return ownSampleBytes(image->depth) * (channel == ownAllChannels ? image->nChannels : 1);
}

// n samples with gaps between them. Steps are in bytes.
static void ownCopySamples(const uint8_t* from, ptrdiff_t fromStep, uint8_t* to, ptrdiff_t toStep, ptrdiff_t n,
                           int32_t sampleBytes)
{
    ownForSampleBytes(sampleBytes, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        for (ptrdiff_t i = 0; i < n; ++i) memcpy(to + i * toStep, from + i * fromStep, sizeof(T));
    });
}

// A run inside a block, which is the image or one of its tiles.
static void ownCopyBlockRun(const PxkImage* image, const OwnBlock& block, int32_t x, int32_t y, int32_t channel,
                            uint8_t* buffer, int32_t position, int32_t count, bool isForward)
{
    const uint8_t* const row = block.data + y * block.rowStep;
    const int32_t toBytes = ownRowPixelBytes(image, channel);
    const bool isPixelOrder = image->dataOrder == PXK_DATA_ORDER_PIXEL;
    if (image->nChannels == 1 || (isPixelOrder && channel == ownAllChannels)) {
        const OwnPixelCopies copies = ownPixelCopies(toBytes);
        return (isForward ? copies.forward : copies.backward)(row, x, buffer, position, count, toBytes);
    }
    const int32_t sampleBytes = ownSampleBytes(image->depth);
    const ptrdiff_t channelStep = isPixelOrder ? sampleBytes : block.planeStep;
    const ptrdiff_t pixelStep = static_cast<ptrdiff_t>(sampleBytes) * (isPixelOrder ? image->nChannels : 1);
    const int32_t first = channel == ownAllChannels ? 0 : channel - 1;
    const int32_t last = channel == ownAllChannels ? image->nChannels - 1 : first;
    for (int32_t c = first; c <= last; ++c) {
        const uint8_t* const from = row + c * channelStep + x * pixelStep;
        uint8_t* const to = buffer + static_cast<ptrdiff_t>(position) * toBytes + (c - first) * sampleBytes;
        ownCopySamples(from, isForward ? pixelStep : -pixelStep, to, toBytes, count, sampleBytes);
    }
}

bool ownCopyRowRun(PxkImage* image, int32_t x, int32_t y, int32_t channel, uint8_t* buffer, int32_t position,
                   int32_t count, bool isForward)
{
    PxkTileInfo* const tiles = image->tileInfo;
    if (tiles == nullptr) {
        ownCopyBlockRun(image, ownImageBlock(image), x, y, channel, buffer, position, count, isForward);
        return true;
    }
    const int32_t tileRow = y / tiles->height;
    while (count > 0) {
        const int32_t tileCol = x / tiles->width;
        const int32_t inTile = x % tiles->width;
        const int32_t n = std::min(count, isForward ? tiles->width - inTile : inTile + 1);
        tiles->callBack(image, tileCol, tileRow, PXK_TILE_READ);
        void* const data = tiles->tileData;
        if (data == nullptr) return false;
        ownCopyBlockRun(image, ownTileBlock(image, data), inTile, y % tiles->height, channel, buffer, position, n,
                        isForward);
        tiles->callBack(image, tileCol, tileRow, PXK_TILE_RELEASE);
        x += isForward ? n : -n;
        position += n;
        count -= n;
    }
    return true;
}

static void ownFillRun(const PxkImage* image, int32_t side, int32_t channel, uint8_t* buffer, int32_t position,
                       int32_t count)
{
    const OwnConstant constant = ownConstant(image->depth, ownBorderConstant(image, side));
    const ptrdiff_t pixelSamples = channel == ownAllChannels ? image->nChannels : 1;
    ownPixelCopies(constant.sampleBytes)
        .still(constant.bytes, 0, buffer, position * pixelSamples, count * pixelSamples, constant.sampleBytes);
}

bool ownBorderRow(PxkImage* image, int32_t x, int32_t y, int32_t channel, uint8_t* buffer, int32_t count)
{
    const int32_t pixelBytes = ownRowPixelBytes(image, channel);
    const OwnPixelCopy spread = ownPixelCopies(pixelBytes).still;
    for (int32_t position = 0; position < count;) {
        const int64_t column = static_cast<int64_t>(x) + position;
        const int32_t rest = static_cast<int32_t>(column % image->width);
        const int32_t toPeriod = rest < 0 ? -rest : image->width - rest;
        const int32_t n = std::min(toPeriod, count - position);
        const int32_t side = ownBorderSide(ownRegionCode(image, column, y));
        const int32_t mode = ownSideMode(image, side);
        if (mode == PXK_EDGE_CONST) {
            ownFillRun(image, side, channel, buffer, position, n);
        } else {
            const OwnBorderRun run = ownBorderRun(mode, column, image->width, n);
            const int32_t row = ownMapBorderCoord(mode, y, image->height);
            const int32_t copied = run.step != 0 ? n : 1;
            if (!ownCopyRowRun(image, run.from, row, channel, buffer, position, copied, run.step >= 0)) return false;
            if (copied < n) spread(buffer, position, buffer, position + 1, n - copied, pixelBytes);
        }
        position += n;
    }
    return true;
}

void ownNormalizeBorderConsts(PxkImage* header)
{
    const OwnRange range = ownDepthRange(header->depth);
    for (int32_t& constant : header->borderConst) constant = ownLimit(constant, range);
}
