/* SPDX-License-Identifier: BSD-2-Clause */
// What the operations of one image, alone or with a constant, share: their argument checks and the way from a sample
// operation to the work.
#pragma once

#include <algorithm>
#include <limits>
#include <type_traits>

#include "frame/ownblockrows.h"
#include "frame/owndepth.h"
#include "frame/ownwork.h"
#include "ownorders.h"

// Depths, data orders and processed channels, in this order. False: reported.
[[nodiscard]] bool ownGoodScalarFormats(const OwnSite& site, const PxkImage* srcImage, const PxkImage* dstImage,
                                        OwnOrders orders);

// The headers before them.
[[nodiscard]] bool ownGoodScalar(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, OwnOrders orders);

// Masks and common size behind them. False: nothing to do, or reported.
[[nodiscard]] bool ownOpenScalar(OwnWork& work, const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage);

// Both.
[[nodiscard]] bool ownBeginScalar(OwnWork& work, const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage,
                                  OwnOrders orders);

// pxkSubtractS behind its checks, and under its name.
void ownSubtractConstant(PxkImage* srcImage, PxkImage* dstImage, int32_t value, bool isReversed);

// Every sample becomes the low bits of `value`; at depth 1 its lowest bit.
void ownRunFill(const OwnWork& work, int32_t value);

void ownRunCopy(const OwnWork& work);

// Constants are captured by value in `op`, so that no store of samples can change them.
template <class T, class Op> inline void ownScalarRow(uint8_t* const* rows, ptrdiff_t n, Op op)
{
    const T* const a = reinterpret_cast<const T*>(rows[0]);
    if constexpr (sizeof(T) < 4) {
        return ownMakeRow<T, ownBlockOf<T>>(rows[1], n, [=](ptrdiff_t i) { return op(a[i]); });
    }
    T* const d = reinterpret_cast<T*>(rows[1]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) d[i] = op(a[i]);
}

template <class T, class Op> void ownRunScalarAs(const OwnWork& work, Op op)
{
    const auto row = [op](uint8_t* const* rows, ptrdiff_t n) { ownScalarRow<T>(rows, n, op); };
    ownRunWork(work, OwnPadding::WORKED_ON, row);
}

// A constant as samples of a depth see it: its low bits, and at depth 1 eight pixels of its lowest bit.
inline int32_t ownConstantBits(int32_t depth, int32_t value)
{
    return depth == PXK_DEPTH_1U ? -(value & 1) : value;
}

// Combines the bits of every sample with those of a constant.
template <class Op> void ownRunScalarBits(const OwnWork& work, int32_t value, Op op)
{
    const int32_t depth = work.depth();
    const int32_t bits = ownConstantBits(depth, value);
    ownForSampleBytes(std::max(ownSampleBytes(depth), 1), [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T constant = static_cast<T>(bits);
        ownRunScalarAs<T>(work, [op, constant](T a) { return op(a, constant); });
    });
}

// a - constant, or constant - a when reversed, limited to the range of the integer type T. A sample is first moved to
// the nearest one whose difference lies in the range; then the difference wraps nowhere, in the sample's own width. The
// samples with such differences are as many as the range has numbers, so only one end of them can cut.
template <class T> void ownRunDifference(const OwnWork& work, int64_t constant, bool isReversed)
{
    using U = std::make_unsigned_t<T>;
    constexpr int64_t low = std::numeric_limits<T>::min();
    constexpr int64_t high = std::numeric_limits<T>::max();
    const int64_t first = isReversed ? constant - high : constant + low;
    const int64_t last = isReversed ? constant - low : constant + high;
    if (first >= high) return ownRunFill(work, static_cast<int32_t>(isReversed ? high : low));
    if (last <= low) return ownRunFill(work, static_cast<int32_t>(isReversed ? low : high));
    const U amount = static_cast<U>(constant);
    const auto difference = [amount](T a) { return static_cast<T>(static_cast<U>(static_cast<U>(a) - amount)); };
    const auto reversed = [amount](T a) { return static_cast<T>(static_cast<U>(amount - static_cast<U>(a))); };
    if (first > low) {
        const T least = static_cast<T>(first);
        if (isReversed) return ownRunScalarAs<T>(work, [=](T a) { return reversed(a > least ? a : least); });
        return ownRunScalarAs<T>(work, [=](T a) { return difference(a > least ? a : least); });
    }
    const T most = static_cast<T>(last);
    if (isReversed) return ownRunScalarAs<T>(work, [=](T a) { return reversed(a < most ? a : most); });
    ownRunScalarAs<T>(work, [=](T a) { return difference(a < most ? a : most); });
}
