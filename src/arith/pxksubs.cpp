// SPDX-License-Identifier: BSD-2-Clause
#include "ownsamples.h"
#include "ownscalar.h"

// On single bits a - 0 is a, 1 - a is not a, and the other two differences are 0.
static void ownRunBitDifference(const OwnWork& work, int32_t value, bool isReversed)
{
    const bool isOne = (value & 1) != 0;
    if (isOne != isReversed) return ownRunFill(work, 0);
    if (!isOne) return ownRunCopy(work);
    ownRunScalarBits(work, 1, OwnXorSamples {});
}

void ownSubtractConstant(PxkImage* srcImage, PxkImage* dstImage, int32_t value, bool isReversed)
{
    const OwnSite site = { "pxkSubtractS", OWN_FILE, __LINE__ };
    OwnWork work;
    if (!ownOpenScalar(work, site, srcImage, dstImage)) return;
    if (srcImage->depth == PXK_DEPTH_1U) return ownRunBitDifference(work, value, isReversed);
    ownForIntegerDepth(srcImage->depth,
                       [&](auto tag) { ownRunDifference<typename decltype(tag)::Sample>(work, value, isReversed); });
}

void pxkSubtractS(PxkImage* srcImage, PxkImage* dstImage, int32_t value, int32_t flip)
{
    OWN_REFUSE_IF(srcImage != nullptr && srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing depth 32F use function pxkSubtractSFP");
    if (!ownGoodScalar(OWN_HERE, srcImage, dstImage, OwnOrders::MAY_DIFFER)) return;
    ownSubtractConstant(srcImage, dstImage, value, flip != 0);
}

void pxkSubtractSFP(PxkImage* srcImage, PxkImage* dstImage, float value, int32_t flip)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing this depth use function pxkSubtractS");
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    if (flip != 0) return ownRunScalarAs<float>(work, [value](float a) { return ownOneNaN(value - a); });
    ownRunScalarAs<float>(work, [value](float a) { return ownOneNaN(a - value); });
}
