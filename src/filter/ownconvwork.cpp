// SPDX-License-Identifier: BSD-2-Clause
#include "ownconvwork.h"

#include "frame/owndepth.h"

static bool ownStartsInside(const PxkImage* image)
{
    const PxkROI* const roi = image->roi;
    return roi == nullptr
        || (roi->xOffset >= 0 && roi->yOffset >= 0 && roi->xOffset < image->width && roi->yOffset < image->height);
}

bool ownGoodConvHeaders(const OwnSite& site, const OwnConvImages& images)
{
    return ownGoodHeaders(site, { images.srcImage, images.dstImage })
        && ownPassed(site,
                     { { !ownStartsInside(images.srcImage) || !ownStartsInside(images.dstImage), PXK_StsBadRoiOffset,
                         "Bad ROI offsets" } });
}

bool ownGoodConvImages(const OwnSite& site, const OwnConvImages& images, bool isFloat)
{
    const PxkImage* const src = images.srcImage;
    const PxkImage* const dst = images.dstImage;
    const bool isFloatImage = src->depth == PXK_DEPTH_32F;
    return ownPassed(
        site,
        { { src->depth != dst->depth || src->dataOrder != dst->dataOrder, PXK_StsBadArg, "Uncompatible images" },
          { !isFloat && isFloatImage, PXK_StsBadArg, "32F images can be processed only with FP kernel" },
          { isFloat && !isFloatImage, PXK_StsBadArg, "FP kernel can be used only for 32F image" } });
}

static bool ownGoodConvChannels(const OwnSite& site, const OwnConvImages& images)
{
    const auto hasInterest = [](const PxkImage* image) { return ownChannelOfInterest(image) > 0; };
    const int32_t nSource = ownProcessedChannels(images.srcImage);
    const int32_t nDestination = ownProcessedChannels(images.dstImage);
    return ownPassed(site,
                     { { hasInterest(images.srcImage) != hasInterest(images.dstImage), PXK_StsBadArg,
                         "One of the COI is not defined" },
                       { nSource == 0 || nDestination == 0, PXK_StsBadArg, "No channel to operate" },
                       { nSource != nDestination, PXK_StsBadArg, "Uncompatible images" } });
}

// A caller may have written any constants by hand.
static void ownLimitBorderConstants(PxkImage* header)
{
    const OwnRange range = ownDepthRange(header->depth);
    for (int32_t& constant : header->borderConst) constant = ownLimit(constant, range);
}

bool ownBeginConvWork(const OwnSite& site, const OwnConvImages& images, OwnConvWork& work)
{
    const OwnStart start = ownFindArea(work.area, { images.srcImage, images.dstImage });
    if (start == OwnStart::NOTHING_TO_DO || !ownGoodConvChannels(site, images)) return false;
    if (!ownPassed(site, { { start == OwnStart::NO_MEMORY, PXK_StsNoMem, "Allocation failure" } })) return false;
    work.source = *images.srcImage;
    ownLimitBorderConstants(&work.source);
    work.window = ownWindowWork(&work.source, images.dstImage, work.area);
    work.window.bitRows = OwnBitRows::AS_BYTES;
    return true;
}

void ownRunConvWork(const OwnSite& site, OwnConvWork& work, const OwnMargins& margins, OwnBandEngine engine)
{
    work.window.margins = margins;
    if (!ownRunWindow(work.window, engine)) ownReport(site, PXK_StsNoMem, "Allocation failure");
}
