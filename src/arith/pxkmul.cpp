// SPDX-License-Identifier: BSD-2-Clause
#include "ownbytepairs.h"
#include "owndyadic.h"
#include "ownsamples.h"

template <class T> static void ownRunProducts(const OwnWork& work)
{
    if constexpr (sizeof(T) == 1) {
        ownRunPairs<2>(work, [](uint16_t a, uint16_t b) { return ownProductWord<T>(a, b); });
    } else {
        ownRunDyadicAs<T>(work, OwnMultiplySamples {});
    }
}

void pxkMultiply(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OWN_REFUSE_IF(srcImageA == nullptr, PXK_StsBadArg, "srcImageA==0");
    if (srcImageA->depth == PXK_DEPTH_1U) return pxkAnd(srcImageA, srcImageB, dstImage); // on single bits
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, { srcImageA, srcImageB, dstImage }, OwnOrders::MUST_AGREE)) return;
    ownForDepth(srcImageA->depth, [&](auto tag) { ownRunProducts<typename decltype(tag)::Sample>(work); });
}
