#include "ownsamples.h"
#include "ownscalar.h"

void pxkSquare(PxkImage* srcImage, PxkImage* dstImage)
{
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    if (srcImage->depth == PXK_DEPTH_1U) return ownRunCopy(work); // 0 and 1 are their own squares
    ownForDepth(srcImage->depth,
                [&](auto tag) { ownRunScalarAs<typename decltype(tag)::Sample>(work, OwnSquareSample {}); });
}
