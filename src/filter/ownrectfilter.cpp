// SPDX-License-Identifier: BSD-2-Clause
#include "ownrectfilter.h"

static bool ownIsBadChannel(const PxkImage* image)
{
    return ownChannelOfInterest(image) > image->nChannels;
}

bool ownGoodRectFilter(const OwnSite& site, const OwnRectFilter& filter, const OwnRectRules& rules)
{
    PxkImage* const src = filter.srcImage;
    PxkImage* const dst = filter.dstImage;
    if (!ownGoodHeaders(site, { src, dst })) return false;
    const bool isOrdered = src->depth != PXK_DEPTH_1U;
    const bool isGood = ownPassed(
        site,
        { { filter.anchorX >= filter.nCols || filter.anchorX < 0, PXK_StsBadArg, "(anchorX>=nCols)||(anchorX<0)" },
          { filter.anchorY >= filter.nRows || filter.anchorY < 0, PXK_StsBadArg, "(anchorY>=nRows)||(anchorY<0)" },
          { !rules.allowsSameImage && src == dst, PXK_StsBadArg, "(srcImage==dstImage)" },
          { src->depth != dst->depth, PXK_StsBadArg, "srcImage->depth!=dstImage->depth" },
          { src->depth == rules.refusedDepth, PXK_StsBadArg, rules.refusal },
          { src->nChannels != dst->nChannels, PXK_StsBadArg, "srcImage->nChannels!=dstImage->nChannels" },
          { src->alphaChannel != dst->alphaChannel, PXK_StsBadArg, "srcImage->alphaChannel!=dstImage->alphaChannel" },
          { src->alphaChannel != 0 && src->alphaChannel != src->nChannels, PXK_StsBadArg,
            "(srcImage->alphaChannel!=0)&&(srcImage->alphaChannel!=srcImage->nChannels)" },
          { isOrdered && src->dataOrder != dst->dataOrder, PXK_StsBadArg,
            "srcImage->dataOrder!=dstImage->dataOrder" } });
    if (!isGood) return false;
    // The texts are spelt as users know them; the three checks all report.
    const int32_t nChannels = ownProcessedChannels(src);
    const int32_t fault = ownEveryFault(
        site,
        { { ownIsBadChannel(src), PXK_StsBadArg, "Interst Channel of input Image more number of channels." },
          { ownIsBadChannel(dst), PXK_StsBadArg, "Interst Channel of output Image more number of channels." },
          { nChannels != ownProcessedChannels(dst), PXK_StsBadArg,
            "Number of interset channel input and output Image is not equal." } });
    const bool isStale = rules.stopsOnStaleStatus && pxkGetErrStatus() < 0;
    return fault == PXK_StsOk && !isStale && nChannels > 0;
}

void ownRunRectFilter(const OwnRectFilter& filter, const OwnRectRows& rows, OwnBandEngine engine)
{
    OwnArea area;
    if (ownFindArea(area, { filter.srcImage, filter.dstImage }) != OwnStart::READY) return;
    OwnWindowWork work = ownWindowWork(filter.srcImage, filter.dstImage, area);
    work.margins = { filter.anchorX, filter.anchorY, filter.nCols - 1 - filter.anchorX,
                     filter.nRows - 1 - filter.anchorY };
    work.bitRows = rows.bitRows;
    work.inFixedBands = rows.inFixedBands;
    if (!ownRunWindow(work, engine)) return; // such an end is silent in this family
}
