// SPDX-License-Identifier: BSD-2-Clause
#include "ownbytepairs.h"
#include "ownsamples.h"
#include "ownscalar.h"

template <class T> static void ownRunSquares(const OwnWork& work)
{
    if constexpr (sizeof(T) == 1) {
        ownRunPairs<1>(work, [](uint16_t a, uint16_t) { return ownProductWord<T>(a, a); });
    } else {
        ownRunScalarAs<T>(work, OwnSquareSample {});
    }
}

void pxkSquare(PxkImage* srcImage, PxkImage* dstImage)
{
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    if (srcImage->depth == PXK_DEPTH_1U) return ownRunCopy(work); // 0 and 1 are their own squares
    ownForDepth(srcImage->depth, [&](auto tag) { ownRunSquares<typename decltype(tag)::Sample>(work); });
}
