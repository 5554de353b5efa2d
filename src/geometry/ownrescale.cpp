// SPDX-License-Identifier: BSD-2-Clause
#include "ownrescale.h"

#include <algorithm>

#include "frame/owndepth.h"
#include "owngeomchecks.h"
#include "ownresample.h"
#include "ownscaleview.h"

// ---- the work ------------------------------------------------------------------------------------------------------

static bool ownMakeScaling(OwnScaling& scaling, const OwnRescale& rescale, OwnSize from, OwnSize to, int32_t unit)
{
    scaling.interpolation = rescale.interpolation;
    if (rescale.interpolation == OwnInterpolation::MEAN) {
        return ownMakeBoxes(scaling.across, from.width, rescale.across, to.width)
            && ownMakeBoxes(scaling.down, from.height, rescale.down, to.height);
    }
    return ownMakeAxis(scaling.across, rescale.interpolation, from.width, rescale.xSampling, to.width, unit)
        && ownMakeAxis(scaling.down, rescale.interpolation, from.height, rescale.ySampling, to.height, 1);
}

// A source's mask in the scale of the work.
struct OwnScaledMask {
    PxkImage image; // one-bit, in memory
    OwnBuffer<uint8_t> bits;
};

static OwnSampling ownNearestSampling(int32_t extent, OwnRatio ratio)
{
    return { 0.5, ownEndToEnd(extent, ratio).step };
}

// The nearest pixels of the mask's own region, its ends on the ends. False: out of memory.
static bool ownScaleMask(const PxkImage* mask, const OwnRescale& rescale, OwnSize most, OwnScaledMask& scaled)
{
    const OwnView source = ownRegionStart(mask);
    const OwnSize size = { ownScaledCount(source.width, rescale.across, most.width),
                           ownScaledCount(source.height, rescale.down, most.height) };
    OwnRescale nearest = rescale;
    nearest.interpolation = OwnInterpolation::NEAREST;
    nearest.xSampling = ownNearestSampling(source.width, rescale.across);
    nearest.ySampling = ownNearestSampling(source.height, rescale.down);
    OwnScaling scaling;
    if (!ownMakeScaling(scaling, nearest, { source.width, source.height }, size, 1)) return false;
    PxkImage& image = scaled.image;
    image.nChannels = 1;
    image.depth = PXK_DEPTH_1U;
    image.dataOrder = PXK_DATA_ORDER_PIXEL;
    image.width = size.width;
    image.height = size.height;
    image.widthStep = (size.width - 1) / 8 + 1;
    scaled.bits = ownBuffer<uint8_t>(static_cast<int64_t>(image.widthStep) * size.height);
    image.imageData = scaled.bits.get();
    return scaled.bits != nullptr && ownScaleView(scaling, {}, source, ownRegionStart(&image), nullptr);
}

// The area of the work: the source in its new scale, with its mask, and the destination.
static OwnStart ownFindScaledArea(const OwnRescale& rescale, OwnScaledMask& scaledMask, OwnArea& area)
{
    const OwnSize from = ownRegionSize(rescale.srcImage);
    const OwnSize to = ownRegionSize(rescale.dstImage);
    const PxkImage* const mask = rescale.srcImage->maskROI;
    if (from.isEmpty() || to.isEmpty() || (mask != nullptr && ownRegionSize(mask).isEmpty())) {
        return OwnStart::NOTHING_TO_DO;
    }
    PxkImage scaled = {};
    scaled.width = ownScaledCount(from.width, rescale.across, to.width);
    scaled.height = ownScaledCount(from.height, rescale.down, to.height);
    if (mask != nullptr) {
        if (!ownScaleMask(mask, rescale, to, scaledMask)) return OwnStart::NO_MEMORY;
        scaled.maskROI = &scaledMask.image;
    }
    return ownFindArea(area, { &scaled, rescale.dstImage });
}

// Channels that are planes one by one, those of packed pixels together.
static bool ownArePlanes(const PxkImage* image)
{
    return image->dataOrder == PXK_DATA_ORDER_PLANE;
}

static bool ownScalePiece(const OwnScaling& scaling, const OwnScalePlace& place, const OwnSource& pixels,
                          const OwnRect& rect, const OwnDestination& piece)
{
    const OwnView source = pixels.view(rect);
    if (!ownArePlanes(pixels.image)) return ownScaleView(scaling, place, source, piece.view, piece.mask);
    for (int32_t c = 0; c < source.nChannels; ++c) {
        const OwnView from = ownChannelView(source, c);
        if (!ownScaleView(scaling, place, from, ownChannelView(piece.view, c), piece.mask)) return false;
    }
    return true;
}

bool ownRunScaling(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnSize size, const OwnBits* mask,
                   const OwnScaling& scaling)
{
    const OwnRect region = ownRegionRect(srcImage);
    // Source pixels of a part of the work, counted from the region's first one.
    const auto partOf = [&](const OwnRect& part) {
        const int32_t x = scaling.across.first[static_cast<size_t>(part.x)];
        const int32_t y = scaling.down.first[static_cast<size_t>(part.y)];
        return OwnRect { x, y, scaling.across.lastTap(part.x + part.width - 1) - x + 1,
                         scaling.down.lastTap(part.y + part.height - 1) - y + 1 };
    };
    const auto sourceOf = [&](const OwnRect& part) {
        const OwnRect rect = partOf(part);
        return OwnRect { region.x + rect.x, region.y + rect.y, rect.width, rect.height };
    };
    const auto make = [&](const OwnSource& source, const OwnDestination& piece) {
        const OwnRect from = partOf(piece.rect);
        const OwnScalePlace place = { piece.rect.x, piece.rect.y, from.x, from.y };
        return ownScalePiece(scaling, place, source, sourceOf(piece.rect), piece);
    };
    return ownResample({ site, srcImage, dstImage, size, mask }, sourceOf, make);
}

void ownRunRescale(const OwnRescale& rescale)
{
    const OwnSite& site = rescale.site;
    const int32_t nChannels = ownProcessedChannels(rescale.srcImage);
    if (nChannels != ownProcessedChannels(rescale.dstImage)) {
        // The number has no name, and no text of its own.
        return ownReport(site, -2, "Processed channels of srcImage != Processed channels of dstImage");
    }
    OwnScaledMask scaledMask = {};
    OwnArea area;
    const OwnStart start = ownFindScaledArea(rescale, scaledMask, area);
    if (start == OwnStart::NOTHING_TO_DO || nChannels == 0) return;
    const OwnSize from = ownRegionSize(rescale.srcImage);
    const int32_t unit = ownArePlanes(rescale.srcImage) ? 1 : nChannels;
    OwnScaling scaling;
    if (start == OwnStart::NO_MEMORY || !ownMakeScaling(scaling, rescale, from, area.size, unit)) {
        return ownReport(site, PXK_StsNoMem, "Out of memory");
    }
    ownRunScaling(site, rescale.srcImage, rescale.dstImage, area.size, area.mask.bitsOrNull(), scaling);
}

// ---- ends on ends --------------------------------------------------------------------------------------------------

bool ownIsScalable(int32_t depth)
{
    return depth == PXK_DEPTH_1U || depth == PXK_DEPTH_8U || depth == PXK_DEPTH_16U;
}

bool ownIsInterpolation(int32_t interpolate)
{
    return interpolate == PXK_INTER_NN || interpolate == PXK_INTER_LINEAR || interpolate == PXK_INTER_CUBIC;
}

void ownRunEndToEnd(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnRatio across, OwnRatio down,
                    OwnInterpolation interpolation)
{
    const OwnSize size = ownRegionSize(srcImage);
    const int32_t side = std::min(size.width, size.height);
    const bool isWhole = across.to == across.from && down.to == down.from; // every interpolation copies
    if (interpolation == OwnInterpolation::CUBIC && side < 4) interpolation = OwnInterpolation::LINEAR;
    if (side < 2 || isWhole || srcImage->depth == PXK_DEPTH_1U) interpolation = OwnInterpolation::NEAREST;
    const bool isNearest = interpolation == OwnInterpolation::NEAREST;
    const auto sampling = [&](int32_t extent, OwnRatio ratio) {
        return isNearest ? ownNearestSampling(extent, ratio) : ownEndToEnd(extent, ratio);
    };
    ownRunRescale({ site, srcImage, dstImage, across, down, interpolation, sampling(size.width, across),
                    sampling(size.height, down) });
}

void ownScaleEndToEnd(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnRatio across, OwnRatio down,
                      int32_t interpolate)
{
    if (!ownCheckedHeaders(site, { srcImage, dstImage })) return;
    static_cast<void>(ownEveryFault(
        site,
        { { !ownIsInterpolation(interpolate), PXK_StsBadArg, ownUnknownInterpolation },
          { srcImage->depth != dstImage->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
          { !ownIsScalable(srcImage->depth), PXK_StsBadArg, ownUnscalableDepth },
          { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg, "srcImage->dataOrder != dstImage->dataOrder" },
          { across.to <= 0 || across.from <= 0, PXK_StsBadArg, "xDst <= 0 || xSrc <= 0" },
          { down.to <= 0 || down.from <= 0, PXK_StsBadArg, "yDst <= 0 || ySrc <= 0" },
          { srcImage == dstImage, PXK_StsBadArg, "This function isn`t in-plase function" } }));
    if (pxkGetErrStatus() < 0) return;
    ownRunEndToEnd(site, srcImage, dstImage, across, down, static_cast<OwnInterpolation>(interpolate));
}
