/* SPDX-License-Identifier: BSD-2-Clause */
// Samples as fractions of the depth's largest value M.
#pragma once

#include "frame/owndepth.h"
#include "ownsamples.h"

template <class T> constexpr T ownLargest = std::numeric_limits<T>::max();

// x / M rounded to nearest, for x from 0 to M M; M is odd, so there are no halves. y / (2^n - 1) is
// (y + 1 + (y >> n)) >> n for y below (2^n - 1) 2^n, and every step here stays in the width of a product.
template <class T> inline T ownOverLargest(OwnProduct<T> x)
{
    using Wide = OwnProduct<T>;
    constexpr int bits = std::numeric_limits<T>::digits;
    const Wide y = static_cast<Wide>(x + ownLargest<T> / 2);
    return static_cast<T>(static_cast<Wide>(y + 1 + (y >> bits)) >> bits);
}

struct OwnMultiplyScaled {
    template <class T> T operator()(T a, T b) const
    {
        using Wide = OwnProduct<T>;
        return ownOverLargest<T>(static_cast<Wide>(static_cast<Wide>(a) * static_cast<Wide>(b)));
    }
};

// Calls onSample with the tag of an unsigned depth of 8 or 16 bits.
template <class F> inline void ownForScaled(int32_t depth, F&& onSample)
{
    if (depth == PXK_DEPTH_8U) return onSample(OwnSampleTag<uint8_t> {});
    onSample(OwnSampleTag<uint16_t> {});
}
