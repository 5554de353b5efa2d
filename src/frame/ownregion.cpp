// SPDX-License-Identifier: BSD-2-Clause
#include "ownregion.h"

#include <algorithm>

#include "owndepth.h"
#include "ownimage.h"

// One axis of a region. The end is formed in 64 bits: offset and extent may add up to more than 31.
static void ownCutAxis(int32_t offset, int32_t extent, int32_t limit, int32_t* start, int32_t* count)
{
    const int64_t end = std::min<int64_t>(static_cast<int64_t>(offset) + extent, limit);
    *start = std::max(offset, 0);
    *count = static_cast<int32_t>(std::max<int64_t>(end - *start, 0));
}

OwnRect ownRegionRect(const PxkImage* image)
{
    OwnRect rect = { 0, 0, image->width, image->height };
    if (const PxkROI* const roi = image->roi) {
        ownCutAxis(roi->xOffset, roi->width, image->width, &rect.x, &rect.width);
        ownCutAxis(roi->yOffset, roi->height, image->height, &rect.y, &rect.height);
    }
    return rect;
}

OwnSize ownRegionSize(const PxkImage* image)
{
    const OwnRect rect = ownRegionRect(image);
    return { rect.width, rect.height };
}

OwnSize ownCommonSize(std::initializer_list<const PxkImage*> images)
{
    OwnSize common = { INT32_MAX, INT32_MAX };
    for (const PxkImage* image : images) {
        if (image == nullptr) continue;
        const OwnSize size = ownRegionSize(image);
        common.width = std::min(common.width, size.width);
        common.height = std::min(common.height, size.height);
    }
    return common;
}

int32_t ownChannelOfInterest(const PxkImage* image)
{
    return image->roi != nullptr ? image->roi->coi : 0;
}

int32_t ownProcessedChannels(const PxkImage* image)
{
    if (ownChannelOfInterest(image) > 0) return 1;
    return image->nChannels - (image->alphaChannel != 0 ? 1 : 0);
}

OwnBlock ownImageBlock(const PxkImage* image)
{
    const ptrdiff_t step = image->widthStep;
    return { static_cast<uint8_t*>(image->imageData), step, step * image->height };
}

OwnBlock ownTileBlock(const PxkImage* image, void* tileData)
{
    const ptrdiff_t step = ownTileStep(image);
    return { static_cast<uint8_t*>(tileData), step, step * image->tileInfo->height };
}

OwnView ownBlockView(const PxkImage* image, const OwnBlock& block, const OwnRect& rect)
{
    const int32_t sampleBytes = ownSampleBytes(image->depth);
    const bool isPixelOrder = image->dataOrder == PXK_DATA_ORDER_PIXEL;
    OwnView view = {};
    view.rowStep = block.rowStep;
    view.pixelStep = static_cast<ptrdiff_t>(sampleBytes) * (isPixelOrder ? image->nChannels : 1);
    view.channelStep = isPixelOrder ? sampleBytes : block.planeStep;
    view.width = rect.width;
    view.height = rect.height;
    view.nChannels = ownProcessedChannels(image);
    view.sampleBytes = sampleBytes;
    const int32_t firstChannel = std::max(ownChannelOfInterest(image) - 1, 0);
    view.first = block.data + rect.y * block.rowStep + rect.x * view.pixelStep + firstChannel * view.channelStep;
    if (sampleBytes == 0) {
        view.first += rect.x / 8;
        view.bit = rect.x % 8;
    }
    return view;
}

OwnView ownRegionStart(const PxkImage* image)
{
    return ownBlockView(image, ownImageBlock(image), ownRegionRect(image));
}

OwnView ownChannelView(const OwnView& view, int32_t channel)
{
    OwnView one = view;
    one.first += channel * view.channelStep;
    one.nChannels = 1;
    return one;
}

int32_t ownAlphaPlace(const PxkImage* image)
{
    return image->alphaChannel - 1 - std::max(ownChannelOfInterest(image) - 1, 0);
}

OwnBits ownMaskStart(const PxkImage* mask)
{
    const OwnView view = ownRegionStart(mask);
    return { view.first, view.rowStep, view.bit };
}

OwnBits ownBitsAt(const OwnBits& bits, int32_t x, int32_t y)
{
    const int64_t position = static_cast<int64_t>(bits.bit) + x;
    return { bits.first + y * bits.rowStep + position / 8, bits.rowStep, static_cast<int32_t>(position % 8) };
}
