// SPDX-License-Identifier: BSD-2-Clause
#include "owncompare.h"

void pxkLess(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    const OwnComparison images = { { srcImageA, srcImageB }, 2, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    ownCompare(OWN_HERE, images, OwnIsLess {});
}

void pxkLessS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "For processing depth 32F use function pxkLessSFP");
    ownCompareWith(OWN_HERE, images, value, OwnIsLess {});
}

void pxkLessSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "For processing this depth use function pxkLessS");
    const auto test = [value](float a) { return OwnIsLess {}(a, value); };
    ownCompareImage<float>(OWN_HERE, images, test);
}
