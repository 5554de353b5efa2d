#include "ownconvwork.h"

#include <algorithm>

#include "pxkborde.h"

static bool ownStartsInside(const PxkImage* image)
{
    const PxkROI* const roi = image->roi;
    return roi == nullptr
        || (roi->xOffset >= 0 && roi->yOffset >= 0 && roi->xOffset < image->width && roi->yOffset < image->height);
}

bool ownGoodConvHeaders(const OwnSite& site, const OwnConvImages& images)
{
    if (!ownGoodHeaders(site, { images.srcImage, images.dstImage })) return false;
    if (ownStartsInside(images.srcImage) && ownStartsInside(images.dstImage)) return true;
    ownReport(site, PXK_StsBadRoiOffset, "Bad ROI offsets");
    return false;
}

const char* ownConvImagesFault(const OwnConvImages& images, bool isFloat)
{
    const PxkImage* const srcImage = images.srcImage;
    const PxkImage* const dstImage = images.dstImage;
    if (srcImage->depth != dstImage->depth || srcImage->dataOrder != dstImage->dataOrder) return "Uncompatible images";
    if (!isFloat && srcImage->depth == PXK_DEPTH_32F) return "32F images can be processed only with FP kernel";
    if (isFloat && srcImage->depth != PXK_DEPTH_32F) return "FP kernel can be used only for 32F image";
    return nullptr;
}

// The first fault of the channels, as the text to report, or null.
static const char* ownChannelsFault(const OwnConvImages& images)
{
    const auto hasInterest = [](const PxkImage* image) { return image->roi != nullptr && image->roi->coi > 0; };
    if (hasInterest(images.srcImage) != hasInterest(images.dstImage)) return "One of the COI is not defined";
    const int32_t nSource = ownProcessedChannels(images.srcImage);
    const int32_t nDestination = ownProcessedChannels(images.dstImage);
    if (nSource == 0 || nDestination == 0) return "No channel to operate";
    return nSource != nDestination ? "Uncompatible images" : nullptr;
}

bool ownBeginConvWork(const OwnSite& site, const OwnConvImages& images, OwnConvWork& work)
{
    const OwnMaskCode code = ownCombineMasks({ images.srcImage->maskROI, images.dstImage->maskROI }, work.mask);
    const OwnSize common = ownCommonSize({ images.srcImage, images.dstImage });
    const OwnSize size = { std::min(common.width, work.mask.size.width),
                           std::min(common.height, work.mask.size.height) };
    if (code == OWN_MASK_EMPTY || size.isEmpty()) return false; // before the channels are looked at
    const char* const fault = ownChannelsFault(images);
    if (fault != nullptr || code == OWN_MASK_NO_MEMORY) {
        ownReport(site, fault != nullptr ? PXK_StsBadArg : PXK_StsNoMem,
                  fault != nullptr ? fault : "Allocation failure");
        return false;
    }
    work.source = *images.srcImage;
    ownNormalizeBorderConsts(&work.source);
    OwnWindowWork& window = work.window;
    window = {};
    ownPlaceWindow(window, &work.source, images.dstImage, size);
    window.mask = work.mask.bitsOrNull();
    window.bitRows = OwnBitRows::AS_BYTES;
    window.ring = ownRingNone;
    return true;
}

void ownRunConvWork(const OwnSite& site, OwnConvWork& work, const OwnMargins& margins, const OwnBandEngine& engine)
{
    work.window.margins = margins;
    if (!ownRunWindow(work.window, engine)) ownReport(site, PXK_StsNoMem, "Allocation failure");
}
