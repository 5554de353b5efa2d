// SPDX-License-Identifier: BSD-2-Clause
#include <cfloat>
#include <cmath>

#include "owncompare.h"

void pxkEqual(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    const OwnComparison images = { { srcImageA, srcImageB }, 2, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    ownCompare(OWN_HERE, images, OwnIsEqual {});
}

void pxkEqualS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "For processing depth 32F use function pxkEqualSFP");
    ownCompareWith(OWN_HERE, images, value, OwnIsEqual {});
}

void pxkEqualSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "For processing this depth use function pxkEqualS");
    const auto test = [value](float a) { return OwnIsEqual {}(a, value); };
    ownCompareImage<float>(OWN_HERE, images, test);
}

// The difference is formed in double: there it is exact unless one sample is 2^29 times the other, while a difference
// rounded to float could reach the bound from either side. A unit that keeps more digits rounds it on its way through
// memory.
#if FLT_EVAL_METHOD == 0
using OwnDifference = double;
#else
using OwnDifference = volatile double;
#endif

static bool ownIsNear(float a, float b, float epsilon)
{
    const OwnDifference difference = static_cast<double>(a) - static_cast<double>(b);
    return std::fabs(difference) <= static_cast<double>(epsilon);
}

void pxkEqualFPEps(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, float epsilon)
{
    const OwnComparison images = { { srcImageA, srcImageB }, 2, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImageA->depth != PXK_DEPTH_32F, PXK_StsBadArg, "(srcImageA->depth != 32)");
    OWN_REFUSE_IF(epsilon < 0, PXK_StsBadArg, "(epsilon < 0)");
    const auto test = [epsilon](float a, float b) { return ownIsNear(a, b, epsilon); };
    ownCompareImages<float>(OWN_HERE, images, test);
}

void pxkEqualSFPEps(PxkImage* srcImage, PxkImage* dstImage, float value, float epsilon)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "(srcImage->depth != 32)");
    OWN_REFUSE_IF(epsilon < 0, PXK_StsBadArg, "(epsilon < 0)");
    const auto test = [value, epsilon](float a) { return ownIsNear(a, value, epsilon); };
    ownCompareImage<float>(OWN_HERE, images, test);
}
