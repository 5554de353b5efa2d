// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>

#include "frame/ownlimit.h"
#include "ownscalar.h"

void pxkAddS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    if (srcImage->depth == PXK_DEPTH_1U) return pxkOrS(srcImage, dstImage, value);
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "For processing depth 32F use function pxkAddSFP");
    if (!ownGoodScalar(OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    if (srcImage->depth != PXK_DEPTH_32S) {
        // Subtracting 65535 takes every sample of up to 16 bits to its least value, as any larger constant would.
        return ownSubtractConstant(srcImage, dstImage, -std::max(value, -65535), false);
    }
    OwnWork work;
    if (!ownOpenScalar(work, OWN_HERE, srcImage, dstImage)) return;
    ownRunDifference<int32_t>(work, -static_cast<int64_t>(value), false);
}

void pxkAddSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "For processing this depth use function pxkAddS");
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    ownRunScalarAs<float>(work, [value](float a) { return ownOneNaN(a + value); });
}
