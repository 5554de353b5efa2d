#include "owncompare.h"

void pxkGreater(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    if (!ownGoodComparison(OWN_HERE, srcImageA, srcImageB, dstImage)) return;
    ownCompare(OWN_HERE, srcImageA, srcImageB, dstImage, OwnIsGreater {});
}

void pxkGreaterS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    if (!ownGoodComparison(OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing depth 32F use function pxkGreaterSFP");
    ownCompareWith(OWN_HERE, srcImage, dstImage, value, OwnIsGreater {});
}

void pxkGreaterSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    if (!ownGoodComparison(OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing this depth use function pxkGreaterS");
    const auto test = [value](float a) { return OwnIsGreater {}(a, value); };
    ownCompareImage<float>(OWN_HERE, srcImage, dstImage, test);
}
