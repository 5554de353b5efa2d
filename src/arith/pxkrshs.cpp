// SPDX-License-Identifier: BSD-2-Clause
#include "ownshift.h"

// Toward minus infinity: a signed sample is raised by half its range, shifted as an unsigned one, and lowered again.
template <class U> static void ownRunSignedShift(const OwnWork& work, uint32_t shift)
{
    constexpr U signBit = static_cast<U>(~(static_cast<U>(~U { 0 }) >> 1));
    const uint64_t signs = ownInEverySample(signBit);
    const uint64_t kept = ownInEverySample(static_cast<U>(static_cast<U>(~U { 0 }) >> shift));
    const uint64_t lowered = signs >> shift;
    ownRunWords(work, [=](uint64_t word) {
        const uint64_t shifted = (word ^ signs) >> shift & kept;
        return ((shifted | signs) - lowered) ^ signs; // the sign bit lends to its own sample alone
    });
}

void pxkRShiftS(PxkImage* srcImage, PxkImage* dstImage, int32_t nShift)
{
    if (!ownGoodScalar(OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    const int32_t depth = srcImage->depth;
    const uint32_t width = static_cast<uint32_t>(ownDepthBits(depth));
    const uint32_t shift = static_cast<uint32_t>(nShift); // negative ones lie far past the width
    const bool isSigned = (depth & PXK_DEPTH_SIGN) != 0;
    if (shift == 0) return pxkXorS(srcImage, dstImage, 0);
    if (shift >= width && !isSigned && depth != PXK_DEPTH_32F) return pxkAndS(srcImage, dstImage, 0);
    OwnWork work;
    if (!ownOpenScalar(work, OWN_HERE, srcImage, dstImage)) return;
    OWN_REFUSE_IF(depth == PXK_DEPTH_32F, PXK_StsBadArg, "This function does not support depth 32F");
    ownForSampleBytes(ownSampleBytes(depth), [&](auto tag) {
        using U = typename decltype(tag)::Sample;
        if (isSigned) return ownRunSignedShift<U>(work, std::min(shift, width - 1)); // past the width only signs remain
        const uint64_t kept = ownInEverySample(static_cast<U>(static_cast<U>(~U { 0 }) >> shift));
        ownRunWords(work, [shift, kept](uint64_t word) { return word >> shift & kept; });
    });
}
