#include "owndyadic.h"
#include "ownsamples.h"

void pxkMultiply(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OWN_REFUSE_IF(srcImageA == nullptr, PXK_StsBadArg, "srcImageA==0");
    if (srcImageA->depth == PXK_DEPTH_1U) return pxkAnd(srcImageA, srcImageB, dstImage); // on single bits
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, srcImageA, srcImageB, dstImage, OwnOrders::MUST_AGREE)) return;
    ownRunDyadic(work, OwnMultiplySamples {});
}
