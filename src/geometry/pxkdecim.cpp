#include <algorithm>

#include "frame/ownimage.h"
#include "owngeomchecks.h"
#include "ownrescale.h"

// ---- the work ------------------------------------------------------------------------------------------------------

// Pixels at whole steps; where these are not whole numbers, they count from the middle of the first pixel.
static OwnSampling ownStepSampling(OwnRatio ratio)
{
    return { ratio.from % ratio.to == 0 ? 0.0 : 0.5, ratio.step() };
}

static void ownRunDecimate(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnRatio across, OwnRatio down,
                           int32_t interpolate)
{
    const OwnSize size = ownRegionSize(srcImage);
    const bool isExact = across.from % across.to == 0 && down.from % down.to == 0;
    const bool isSmall = size.width < 4 || size.height < 4;
    const bool isNothing = ownFloorUp(size.width / across.step()) < 1 || ownFloorUp(size.height / down.step()) < 1;
    const bool isNearest = interpolate == PXK_INTER_NN || srcImage->depth == PXK_DEPTH_1U || isSmall || isNothing
        || (isExact && interpolate != PXK_INTER_SUPER);
    if (!isNearest && interpolate != PXK_INTER_SUPER) {
        return ownRunEndToEnd(site, srcImage, dstImage, across, down, static_cast<OwnInterpolation>(interpolate));
    }
    const OwnInterpolation interpolation = isNearest ? OwnInterpolation::NEAREST : OwnInterpolation::MEAN;
    ownRunRescale(
        { site, srcImage, dstImage, across, down, interpolation, ownStepSampling(across), ownStepSampling(down) });
}

// The source's region as an image of its own, each pixel the mean of a window.
struct OwnBlurred {
    PxkROI roi;
    PxkImage image;
    OwnBuffer<uint8_t> pixels;
};

// False: reported.
static bool ownBlurRegion(const OwnSite& site, PxkImage* srcImage, OwnSize window, OwnBlurred& blurred)
{
    const OwnRect region = ownRegionRect(srcImage);
    blurred.roi = { ownChannelOfInterest(srcImage), 0, 0, region.width, region.height };
    PxkImage& image = blurred.image;
    image = *srcImage;
    image.roi = &blurred.roi;
    image.maskROI = nullptr;
    image.tileInfo = nullptr;
    image.width = region.width;
    image.height = region.height;
    const int64_t step = ownRowStep(image.dataOrder, image.depth, image.align, image.nChannels, region.width);
    blurred.pixels = ownBuffer<uint8_t>(ownImageSize(image.dataOrder, image.nChannels, region.height, step));
    OwnScaling scaling;
    scaling.interpolation = OwnInterpolation::MEAN;
    if (blurred.pixels == nullptr || !ownMakeWindows(scaling.across, region.width, std::max(window.width, 1))
        || !ownMakeWindows(scaling.down, region.height, std::max(window.height, 1))) {
        ownReport(site, PXK_StsNoMem, "Out of memory");
        return false;
    }
    image.widthStep = static_cast<int32_t>(step);
    image.imageData = blurred.pixels.get();
    const bool isDone = ownRunScaling(site, srcImage, &image, { region.width, region.height }, nullptr, scaling);
    image.maskROI = srcImage->maskROI; // selects pixels of the result
    return isDone;
}

// ---- exports -------------------------------------------------------------------------------------------------------

void pxkDecimate(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst, int32_t ySrc,
                 int32_t interpolate)
{
    const OwnSite site = OWN_HERE;
    if (!ownCheckedHeaders(site, { srcImage, dstImage })) return;
    const PxkROI *const src = srcImage->roi, *const dst = dstImage->roi;
    const bool hasSrcCoi = ownChannelOfInterest(srcImage) > 0, hasDstCoi = ownChannelOfInterest(dstImage) > 0;
    static_cast<void>(ownEveryFault(
        site,
        { { srcImage == dstImage, PXK_StsBadArg, "srcImage == dstImage" },
          { srcImage->depth != dstImage->depth, PXK_StsBadArg, "srcImage->depth != dstImage->depth" },
          { srcImage->origin != dstImage->origin, PXK_StsBadArg, "srcImage->origin != dstImage->origin" },
          { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg, "srcImage->dataOrder != dstImage->dataOrder" },
          { hasSrcCoi && dst != nullptr && dst->coi == 0, PXK_StsBadArg,
            "srcImage->roi->coi > 0 && dstImage->roi->coi == 0" },
          { hasSrcCoi && dst == nullptr, PXK_StsBadArg, "srcImage->roi->coi > 0 && dstImage->roi == ((void *)0)" },
          { hasDstCoi && src != nullptr && src->coi == 0, PXK_StsBadArg,
            "dstImage->roi->coi > 0 && srcImage->roi->coi == 0" },
          { hasDstCoi && src == nullptr, PXK_StsBadArg, "dstImage->roi->coi > 0 && srcImage->roi == ((void *)0)" },
          { interpolate < PXK_INTER_NN || interpolate > PXK_INTER_SUPER, PXK_StsBadArg,
            "interpolate != PXK_INTER_NN, PXK_INTER_LINEAR, PXK_INTER_CUBIC or PXK_INTER_SUPER" },
          { xDst <= 0, PXK_StsBadArg, "xDst <= 0" },
          { xSrc <= 0, PXK_StsBadArg, "xSrc <= 0" },
          { yDst <= 0, PXK_StsBadArg, "yDst <= 0" },
          { ySrc <= 0, PXK_StsBadArg, "ySrc <= 0" },
          { xDst > xSrc, PXK_StsBadArg, "xDst > xSrc" },
          { yDst > ySrc, PXK_StsBadArg, "yDst > ySrc" },
          { !ownIsScalable(srcImage->depth), PXK_StsBadArg, ownUnscalableDepth } }));
    if (pxkGetErrStatus() < 0) return;
    ownRunDecimate(site, srcImage, dstImage, { xDst, xSrc }, { yDst, ySrc }, interpolate);
}

void pxkDecimateExt(PxkImage* srcImage, PxkImage* dstImage, int32_t xDst, int32_t xSrc, int32_t yDst, int32_t ySrc,
                    int32_t interpolate, int32_t xMaskSize, int32_t yMaskSize)
{
    const OwnSite site = OWN_HERE;
    if (!ownCheckedHeaders(site, { srcImage, dstImage })) return;
    const PxkROI *const src = srcImage->roi, *const dst = dstImage->roi;
    static_cast<void>(ownEveryFault(
        site,
        { { xMaskSize < 0 || yMaskSize < 0, PXK_StsBadArg, "(xMaskSize<0||yMaskSize<0)" },
          { xDst <= 0 || yDst <= 0, PXK_StsBadArg, "((xDst <= 0)||(yDst<=0))" },
          { xSrc <= 0 || ySrc <= 0, PXK_StsBadArg, "((xSrc <= 0)||(ySrc<=0))" },
          { xDst > xSrc || yDst > ySrc, PXK_StsBadArg, "(xDst>xSrc||yDst>ySrc)" },
          { srcImage->depth != dstImage->depth, PXK_StsBadArg, "(srcImage->depth!=dstImage->depth)" },
          { srcImage->dataOrder != dstImage->dataOrder, PXK_StsBadArg, "(srcImage->dataOrder!=dstImage->dataOrder)" },
          { srcImage->alphaChannel != dstImage->alphaChannel, PXK_StsBadArg,
            "(srcImage->alphaChannel!=dstImage->alphaChannel)" },
          { src != nullptr && src->xOffset >= srcImage->width, PXK_StsBadArg,
            "srcImage->roi->xOffset >= srcImage->width" },
          { src != nullptr && src->yOffset >= srcImage->height, PXK_StsBadArg,
            "srcImage->roi->yOffset >= srcImage->height" },
          { dst != nullptr && dst->xOffset >= dstImage->width, PXK_StsBadArg,
            "dstImage->roi->xOffset >= dstImage->width" },
          { dst != nullptr && dst->yOffset >= dstImage->height, PXK_StsBadArg,
            "dstImage->roi->yOffset >= dstImage->height" },
          { !ownIsInterpolation(interpolate), PXK_StsBadArg, ownUnknownInterpolation },
          { !ownIsScalable(srcImage->depth), PXK_StsBadArg, ownUnscalableDepth } }));
    if (pxkGetErrStatus() < 0) return;
    const bool isBlurred =
        (xMaskSize > 1 || yMaskSize > 1) && srcImage->depth != PXK_DEPTH_1U && ownProcessedChannels(srcImage) > 0;
    OwnBlurred blurred = {};
    if (isBlurred && !ownBlurRegion(site, srcImage, { xMaskSize, yMaskSize }, blurred)) return;
    ownRunDecimate(site, isBlurred ? &blurred.image : srcImage, dstImage, { xDst, xSrc }, { yDst, ySrc }, interpolate);
}
