/* SPDX-License-Identifier: BSD-2-Clause */
// Per-sample arithmetic, limited to the sample's range. Plain expressions in the sample's own width, or the next wider
// one, so that the compiler turns rows of them into vectors.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/ownlimit.h"

template <class T> constexpr bool ownIsFloat = std::is_floating_point<T>::value;

// Products of two samples fit it.
template <class T>
using OwnProduct = std::conditional_t<
    sizeof(T) == 1, std::conditional_t<std::is_signed<T>::value, int16_t, uint16_t>,
    std::conditional_t<sizeof(T) == 2, std::conditional_t<std::is_signed<T>::value, int32_t, uint32_t>, int64_t>>;

// Where a signed sum or difference left the range, the limit on the side of `a`.
template <class T> inline T ownLimitOnSideOf(T a)
{
    return static_cast<T>((a >> (8 * sizeof(T) - 1)) ^ std::numeric_limits<T>::max());
}

struct OwnAddSamples {
    template <class T> T operator()(T a, T b) const
    {
        if constexpr (ownIsFloat<T>) {
            return ownOneNaN(a + b);
        } else if constexpr (std::is_unsigned<T>::value) {
            const T room = static_cast<T>(~a);
            return static_cast<T>(a + (b < room ? b : room));
        } else {
            using U = std::make_unsigned_t<T>;
            const T sum = static_cast<T>(static_cast<U>(static_cast<U>(a) + static_cast<U>(b)));
            return static_cast<T>((a ^ sum) & (b ^ sum)) < 0 ? ownLimitOnSideOf(a) : sum;
        }
    }
};

struct OwnSubtractSamples {
    template <class T> T operator()(T a, T b) const
    {
        if constexpr (ownIsFloat<T>) {
            return ownOneNaN(a - b);
        } else if constexpr (std::is_unsigned<T>::value) {
            return static_cast<T>(a - (a < b ? a : b));
        } else {
            using U = std::make_unsigned_t<T>;
            const T difference = static_cast<T>(static_cast<U>(static_cast<U>(a) - static_cast<U>(b)));
            return static_cast<T>((a ^ b) & (a ^ difference)) < 0 ? ownLimitOnSideOf(a) : difference;
        }
    }
};

struct OwnMultiplySamples {
    template <class T> T operator()(T a, T b) const
    {
        if constexpr (ownIsFloat<T>) {
            return ownOneNaN(a * b);
        } else if constexpr (std::is_same<T, int16_t>::value) {
            // Both halves of the product are formed in 16 bits; in range, the upper one repeats the lower one's sign.
            const T upper = static_cast<T>((int32_t { a } * b) >> 16);
            const T lower = static_cast<T>(static_cast<uint16_t>(a) * uint32_t { static_cast<uint16_t>(b) });
            return upper == static_cast<T>(lower >> 15) ? lower : ownLimitOnSideOf(static_cast<T>(a ^ b));
        } else {
            using Wide = OwnProduct<T>;
            return ownLimitInteger<T>(static_cast<Wide>(static_cast<Wide>(a) * static_cast<Wide>(b)));
        }
    }
};

struct OwnAndSamples {
    template <class T> T operator()(T a, T b) const { return a & b; }
};

struct OwnOrSamples {
    template <class T> T operator()(T a, T b) const { return a | b; }
};

struct OwnXorSamples {
    template <class T> T operator()(T a, T b) const { return a ^ b; }
};

// The saturating difference of single bits: a and not b. Rows of bits come as bytes.
struct OwnSubtractBits {
    template <class T> T operator()(T a, T b) const { return a & ~b; }
};

// Of signed integers. The most negative number, whose magnitude the type can't hold, becomes the largest.
struct OwnAbsoluteSample {
    template <class T> T operator()(T a) const
    {
        constexpr T least = static_cast<T>(-std::numeric_limits<T>::max());
        const T limited = a > least ? a : least;
        return static_cast<T>(limited < 0 ? -limited : limited);
    }
};

// The largest number whose square type T can hold.
template <class T> constexpr T ownRoot()
{
    uint64_t root = 0;
    while ((root + 1) * (root + 1) <= static_cast<uint64_t>(std::numeric_limits<T>::max())) ++root;
    return static_cast<T>(root);
}

// The square wraps in the sample's own width; samples for which it does get the limit.
struct OwnSquareSample {
    template <class T> T operator()(T a) const
    {
        if constexpr (ownIsFloat<T>) {
            return ownOneNaN(a * a);
        } else {
            using U = std::make_unsigned_t<T>;
            constexpr T root = ownRoot<T>();
            const T square = static_cast<T>(static_cast<U>(uint32_t { static_cast<U>(a) } * static_cast<U>(a)));
            bool isBeyond = a > root;
            if constexpr (std::is_signed<T>::value) isBeyond = isBeyond | (a < -root);
            return isBeyond ? std::numeric_limits<T>::max() : square;
        }
    }
};
