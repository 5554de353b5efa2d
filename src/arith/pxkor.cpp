// SPDX-License-Identifier: BSD-2-Clause
#include "owndyadic.h"
#include "ownsamples.h"

void pxkOr(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, { srcImageA, srcImageB, dstImage }, OwnOrders::MAY_DIFFER)) return;
    // Behind the geometry, so that an empty region or mask is no error at any depth.
    OWN_REFUSE_IF(srcImageA->depth == PXK_DEPTH_32F, PXK_StsBadArg, "This function does not support depth 32F");
    ownRunDyadicBits(work, OwnOrSamples {});
}
