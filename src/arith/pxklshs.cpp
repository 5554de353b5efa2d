// SPDX-License-Identifier: BSD-2-Clause
#include "ownshift.h"

void pxkLShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    if (!ownGoodScalar(OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    const int32_t depth = srcImage->depth;
    const uint32_t shift = static_cast<uint32_t>(nShift); // negative ones lie far past the width
    if (shift == 0) return pxkXorS(srcImage, dstImage, 0);
    if (depth != PXK_DEPTH_32F && shift >= static_cast<uint32_t>(ownDepthBits(depth)))
        return pxkAndS(srcImage, dstImage, 0);
    OwnWork work;
    if (!ownOpenScalar(work, OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(depth == PXK_DEPTH_32F, PXK_StsBadArg, "This function does not support depth 32F");
    ownForSampleBytes(ownSampleBytes(depth), [&](auto tag) {
        using U = typename decltype(tag)::Sample;
        const uint64_t kept = ownInEverySample(static_cast<U>(uint32_t { static_cast<U>(~U { 0 }) } << shift));
        ownRunWords(work, [shift, kept](uint64_t word) { return word << shift & kept; });
    });
}
