// SPDX-License-Identifier: BSD-2-Clause
#include "owndyadic.h"
#include "ownsamples.h"

void pxkAdd(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OWN_REFUSE_IF(srcImageA == nullptr, PXK_StsBadArg, "srcImageA==0");
    if (srcImageA->depth == PXK_DEPTH_1U)
        return pxkOr(srcImageA, srcImageB, dstImage); // on single bits 1 + 1 saturates to 1
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, { srcImageA, srcImageB, dstImage }, OwnOrders::MUST_AGREE)) return;
    ownRunDyadic(work, OwnAddSamples {});
}
