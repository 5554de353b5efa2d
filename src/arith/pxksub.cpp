// SPDX-License-Identifier: BSD-2-Clause
#include "owndyadic.h"
#include "ownsamples.h"

void pxkSubtract(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, { srcImageA, srcImageB, dstImage }, OwnOrders::MAY_DIFFER)) return;
    if (srcImageA->depth == PXK_DEPTH_1U) return ownRunDyadicBits(work, OwnSubtractBits {});
    ownRunDyadic(work, OwnSubtractSamples {});
}
