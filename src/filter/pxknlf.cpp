// SPDX-License-Identifier: BSD-2-Clause
// Rank filters: maximum, minimum and median of a rectangular window.
#include <algorithm>

#include "ownextrema.h"
#include "ownmedian.h"
#include "ownrectfilter.h"

enum class OwnRankFilter { MAXIMUM, MINIMUM, MEDIAN };

static void ownRankFilter(const OwnSite& site, const OwnRectFilter& filter, OwnRankFilter rank)
{
    if (!ownGoodRectFilter(site, filter, { false, true, PXK_DEPTH_32F, "srcImage->depth==32" })) return;
    const int32_t depth = filter.srcImage->depth;
    const auto engine = [&](const OwnBand& band) {
        if (rank == OwnRankFilter::MAXIMUM) {
            return ownExtremaBand(band, depth, OwnExtremum::LARGEST, filter.nCols, filter.nRows);
        }
        if (rank == OwnRankFilter::MINIMUM) {
            return ownExtremaBand(band, depth, OwnExtremum::SMALLEST, filter.nCols, filter.nRows);
        }
        if (depth == PXK_DEPTH_1U) return ownMajorityBand(band, filter.nCols, filter.nRows);
        return ownMedianBand(band, depth, filter.nCols, filter.nRows);
    };
    const OwnBitRows bitRows = rank == OwnRankFilter::MEDIAN ? OwnBitRows::AS_BYTES : OwnBitRows::AS_BITS;
    ownRunRectFilter(filter, { bitRows, false }, engine);
}

void pxkMaxFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                  int32_t anchorY)
{
    ownRankFilter(OWN_HERE, { srcImage, dstImage, nCols, nRows, anchorX, anchorY }, OwnRankFilter::MAXIMUM);
}

void pxkMinFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                  int32_t anchorY)
{
    ownRankFilter(OWN_HERE, { srcImage, dstImage, nCols, nRows, anchorX, anchorY }, OwnRankFilter::MINIMUM);
}

void pxkMedianFilter(PxkImage* srcImage, PxkImage* dstImage, int32_t nCols, int32_t nRows, int32_t anchorX,
                     int32_t anchorY)
{
    ownRankFilter(OWN_HERE, { srcImage, dstImage, nCols, nRows, anchorX, anchorY }, OwnRankFilter::MEDIAN);
}
