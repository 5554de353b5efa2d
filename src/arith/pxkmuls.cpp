// SPDX-License-Identifier: BSD-2-Clause
#include <algorithm>

#include "ownbytepairs.h"
#include "ownsamples.h"
#include "ownscalar.h"

// a times factor, limited to the range of the integer type T. Samples whose product would leave the range are known
// from two quotients, so that the product itself may wrap in the sample's own width.
template <class T> static void ownRunProduct(const OwnWork& work, int64_t factor)
{
    using U = std::make_unsigned_t<T>;
    constexpr int64_t low = std::numeric_limits<T>::min();
    constexpr int64_t high = std::numeric_limits<T>::max();
    if (factor == 0) return ownRunFill(work, 0);
    const T atLeast = static_cast<T>(factor > 0 ? low : high); // what the most negative samples become
    const T atMost = static_cast<T>(factor > 0 ? high : low);
    const T first = static_cast<T>(atLeast / factor); // quotients are cut toward 0, into the range
    const T last = static_cast<T>(std::min(atMost / factor, high));
    const U wrapping = static_cast<U>(factor);
    ownRunScalarAs<T>(work, [=](T a) {
        // 32 bits at least: products of 16-bit samples would be formed in signed integers, and overflow them.
        const T product = static_cast<T>(static_cast<U>(uint32_t { static_cast<U>(a) } * wrapping));
        const T limited = a < first ? atLeast : product;
        return a > last ? atMost : limited;
    });
}

// The same at 8 bits: any larger factor takes every sample but 0 beyond the range, as the ends of this interval do.
template <class T> static void ownRunSmallProduct(const OwnWork& work, int32_t factor)
{
    constexpr int32_t most = std::numeric_limits<T>::max() + (std::is_signed<T>::value ? 1 : 0);
    using Wide = OwnProduct<T>;
    const Wide cut = static_cast<Wide>(std::min(std::max(factor, -most), most));
    ownRunPairs<1>(work, [cut](uint16_t a, uint16_t) {
        return ownLimitedWord<T>(static_cast<Wide>(ownLowSample<T>(a) * cut),
                                 static_cast<Wide>(ownHighSample<T>(a) * cut));
    });
}

void pxkMultiplyS(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    const int32_t depth = srcImage->depth;
    if (depth == PXK_DEPTH_1U) return pxkAndS(srcImage, dstImage, value);
    OWN_REFUSE_IF(depth == PXK_DEPTH_32F, PXK_StsBadArg, "For processing depth 32F use function pxkMultiplySFP");
    if (!ownGoodScalar(OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    const bool isUnsigned = (depth & PXK_DEPTH_SIGN) == 0;
    if (isUnsigned && value <= 0) return pxkAndS(srcImage, dstImage, 0);
    OwnWork work;
    if (!ownOpenScalar(work, OWN_HERE, srcImage, dstImage)) return;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        if constexpr (sizeof(T) == 1) {
            ownRunSmallProduct<T>(work, value);
        } else if constexpr (!ownIsFloat<T>) {
            ownRunProduct<T>(work, value);
        }
    });
}

void pxkMultiplySFP(PxkImage* srcImage, PxkImage* dstImage, float value)
{
    OWN_REFUSE_IF(srcImage == nullptr, PXK_StsBadArg, "srcImage==0");
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_32F, PXK_StsBadArg,
                  "For processing this depth use function pxkMultiplyS");
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    ownRunScalarAs<float>(work, [value](float a) { return ownOneNaN(a * value); });
}
