#include "ownrectfilter.h"

#include <algorithm>

#include "frame/ownmask.h"

static bool ownIsBadChannel(const PxkImage* image)
{
    return image->roi != nullptr && image->roi->coi > image->nChannels;
}

// The first argument fault, as the text to report, or null.
static const char* ownRectFilterFault(const OwnRectFilter& filter, OwnSameImage sameImage, int32_t refusedDepth,
                                      const char* refusal)
{
    const PxkImage* const srcImage = filter.srcImage;
    const PxkImage* const dstImage = filter.dstImage;
    if (filter.anchorX >= filter.nCols || filter.anchorX < 0) return "(anchorX>=nCols)||(anchorX<0)";
    if (filter.anchorY >= filter.nRows || filter.anchorY < 0) return "(anchorY>=nRows)||(anchorY<0)";
    if (sameImage == OwnSameImage::REFUSED && srcImage == dstImage) return "(srcImage==dstImage)";
    if (srcImage->depth != dstImage->depth) return "srcImage->depth!=dstImage->depth";
    if (srcImage->depth == refusedDepth) return refusal;
    if (srcImage->nChannels != dstImage->nChannels) return "srcImage->nChannels!=dstImage->nChannels";
    if (srcImage->alphaChannel != dstImage->alphaChannel) return "srcImage->alphaChannel!=dstImage->alphaChannel";
    if (srcImage->alphaChannel != 0 && srcImage->alphaChannel != srcImage->nChannels) {
        return "(srcImage->alphaChannel!=0)&&(srcImage->alphaChannel!=srcImage->nChannels)";
    }
    if (srcImage->depth != PXK_DEPTH_1U && srcImage->dataOrder != dstImage->dataOrder) {
        return "srcImage->dataOrder!=dstImage->dataOrder";
    }
    return nullptr;
}

bool ownGoodRectFilter(const OwnSite& site, const OwnRectFilter& filter, OwnSameImage sameImage, int32_t refusedDepth,
                       const char* refusal)
{
    if (!ownGoodHeaders(site, { filter.srcImage, filter.dstImage })) return false;
    const char* const fault = ownRectFilterFault(filter, sameImage, refusedDepth, refusal);
    if (fault != nullptr) {
        ownReport(site, PXK_StsBadArg, fault);
        return false;
    }
    // The texts are spelt as users know them; the three checks all report.
    const int32_t nChannels = ownProcessedChannels(filter.srcImage);
    const bool isBadSource = ownIsBadChannel(filter.srcImage);
    const bool isBadDestination = ownIsBadChannel(filter.dstImage);
    const bool isUnequal = nChannels != ownProcessedChannels(filter.dstImage);
    if (isBadSource) {
        ownReport(site, PXK_StsBadArg, "Interst Channel of input Image more number of channels.");
    }
    if (isBadDestination) {
        ownReport(site, PXK_StsBadArg, "Interst Channel of output Image more number of channels.");
    }
    if (isUnequal) {
        ownReport(site, PXK_StsBadArg, "Number of interset channel input and output Image is not equal.");
    }
    return !isBadSource && !isBadDestination && !isUnequal && pxkGetErrStatus() >= 0 && nChannels > 0;
}

void ownRunRectFilter(const OwnRectFilter& filter, OwnBitRows bitRows, const OwnBandEngine& engine)
{
    OwnMask mask;
    const OwnMaskCode code = ownCombineMasks({ filter.srcImage->maskROI, filter.dstImage->maskROI }, mask);
    if (code == OWN_MASK_NO_MEMORY || code == OWN_MASK_EMPTY) return;
    const OwnSize common = ownCommonSize({ filter.srcImage, filter.dstImage });
    const OwnSize size = { std::min(common.width, mask.size.width), std::min(common.height, mask.size.height) };
    if (size.isEmpty()) return;
    OwnWindowWork work = {};
    ownPlaceWindow(work, filter.srcImage, filter.dstImage, size);
    work.mask = mask.bitsOrNull();
    work.margins = { filter.anchorX, filter.anchorY, filter.nCols - 1 - filter.anchorX,
                     filter.nRows - 1 - filter.anchorY };
    work.bitRows = bitRows;
    work.ring = ownRingNone;
    if (!ownRunWindow(work, engine)) return; // such an end is silent in this family
}
