// SPDX-License-Identifier: BSD-2-Clause
#include "owncompare.h"

void pxkGreater(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    const OwnComparison images = { { srcImageA, srcImageB }, 2, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    ownCompare(OWN_HERE, images, OwnIsGreater {});
}

void pxkGreaterS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing depth 32F use function pxkGreaterSFP");
    ownCompareWith(OWN_HERE, images, value, OwnIsGreater {});
}

void pxkGreaterSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    const OwnComparison images = { { srcImage }, 1, dstImage };
    if (!ownGoodComparison(OWN_HERE, images)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing this depth use function pxkGreaterS");
    const auto test = [value](float a) { return OwnIsGreater {}(a, value); };
    ownCompareImage<float>(OWN_HERE, images, test);
}
