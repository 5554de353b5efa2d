// SPDX-License-Identifier: BSD-2-Clause
#include "ownsamples.h"
#include "ownscalar.h"

void pxkXorS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    // Behind the geometry, so that an empty region or mask is no error at any depth.
    OWN_REFUSE_IF(srcImage->depth == PXK_DEPTH_32F, PXK_StsBadArg, "This function does not support depth 32F");
    if (value == 0) return ownRunCopy(work);
    ownRunScalarBits(work, value, OwnXorSamples {});
}
