#include "owncompare.h"

void pxkLess(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    if (!ownGoodComparison(OWN_HERE, srcImageA, srcImageB, dstImage)) return;
    ownCompare(OWN_HERE, srcImageA, srcImageB, dstImage, OwnIsLess {});
}

void pxkLessS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    if (!ownGoodComparison(OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "For processing depth 32F use function pxkLessSFP");
    ownCompareWith(OWN_HERE, srcImage, dstImage, value, OwnIsLess {});
}

void pxkLessSFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    if (!ownGoodComparison(OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg, "For processing this depth use function pxkLessS");
    const auto test = [value](float a) { return OwnIsLess {}(a, value); };
    ownCompareImage<float>(OWN_HERE, srcImage, dstImage, test);
}
