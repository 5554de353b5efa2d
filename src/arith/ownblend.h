/* SPDX-License-Identifier: BSD-2-Clause */
// Composition of two samples a and b under their alphas, after Porter and Duff, Compositing Digital Images, 1984. The
// whole result is exact until its one rounding, to nearest.
#pragma once

#include "ownscaled.h"
#include "pxk/pxk.h"

// What a and b are multiplied by, where the largest value M stands for 1.
template <int32_t TYPE, class F> inline F ownFactorA(F alphaB, F largest)
{
    switch (TYPE) {
    case PXK_COMPOSITE_IN:
    case PXK_COMPOSITE_ATOP: return alphaB;
    case PXK_COMPOSITE_OUT:
    case PXK_COMPOSITE_XOR: return static_cast<F>(largest - alphaB);
    default: return largest;
    }
}

template <int32_t TYPE, class F> inline F ownFactorB(F alphaA, F largest)
{
    switch (TYPE) {
    case PXK_COMPOSITE_IN:
    case PXK_COMPOSITE_OUT: return 0;
    case PXK_COMPOSITE_PLUS: return largest;
    default: return static_cast<F>(largest - alphaA);
    }
}

// Premultiplied samples, and alphas themselves: (a Fa + b Fb) / M, limited to M. The sum is formed saturating and
// limited to M M before it is divided, so it needs no wider type.
template <int32_t TYPE, class T> inline T ownBlendPremultiplied(T a, T b, T alphaA, T alphaB)
{
    using Wide = OwnProduct<T>;
    constexpr T largest = ownLargest<T>;
    constexpr Wide most = static_cast<Wide>(static_cast<Wide>(largest) * largest);
    const Wide x = static_cast<Wide>(static_cast<Wide>(a) * ownFactorA<TYPE>(alphaB, largest));
    const Wide y = static_cast<Wide>(static_cast<Wide>(b) * ownFactorB<TYPE>(alphaA, largest));
    const Wide room = static_cast<Wide>(most - x);
    return ownOverLargest<T>(static_cast<Wide>(x + (y < room ? y : room)));
}

// Integers up to M M M without rounding.
template <class T> using OwnExactReal = std::conditional_t<sizeof(T) == 1, float, double>;

// x / y rounded to nearest, half up, for integers x and 1 <= y <= M M with a result up to M. A quotient that is not a
// half is at least 1 / (2 y) away from one: more than 2^-17 at 8 bits and 2^-33 at 16, which is more than float and
// double lose below 256 and 65536. So the rounded quotient, and its sum with 1/2, stay on the right side of every half.
template <class Real> inline int32_t ownRoundQuotient(Real x, Real y)
{
    return static_cast<int32_t>(x / y + Real { 0.5f });
}

// Plain samples: the mean of a and b under the weights alphaA Fa and alphaB Fb, both taken without a common factor.
template <int32_t TYPE, class T> inline T ownBlendPlain(T a, T b, T alphaA, T alphaB)
{
    using Wide = OwnProduct<T>;
    using Real = OwnExactReal<T>;
    constexpr T largest = ownLargest<T>;
    if constexpr (TYPE == PXK_COMPOSITE_IN) {
        return alphaA != 0 && alphaB != 0 ? a : T { 0 };
    } else if constexpr (TYPE == PXK_COMPOSITE_OUT) {
        return alphaA != 0 && alphaB != largest ? a : T { 0 };
    } else if constexpr (TYPE == PXK_COMPOSITE_ATOP) {
        const Wide x = static_cast<Wide>(static_cast<Wide>(a) * alphaA);
        const Wide y = static_cast<Wide>(static_cast<Wide>(b) * static_cast<T>(largest - alphaA));
        const T mean = ownOverLargest<T>(static_cast<Wide>(x + y)); // at most M M: the weights add up to M
        return alphaB != 0 ? mean : T { 0 };
    } else if constexpr (TYPE == PXK_COMPOSITE_PLUS) {
        // Colour and alpha are limited to M each, before the one is divided by the other. Colour passes M only where
        // alpha does, so its quotient by the limited alpha can be limited instead.
        const Real colour = Real(a) * Real(alphaA) + Real(b) * Real(alphaB);
        const int32_t sum = alphaA + alphaB;
        const int32_t alpha = sum < largest ? sum : largest;
        const int32_t sample = ownRoundQuotient(colour, Real(alpha > 1 ? alpha : 1));
        return static_cast<T>(sample < largest ? sample : largest);
    } else {
        const Real weightA = Real(alphaA) * ownFactorA<TYPE>(Real(alphaB), Real(largest));
        const Real weightB = Real(alphaB) * ownFactorB<TYPE>(Real(alphaA), Real(largest));
        const Real weights = weightA + weightB; // 0 or at least 1; colour is 0 with them
        return static_cast<T>(ownRoundQuotient(Real(a) * weightA + Real(b) * weightB, weights < 1 ? Real(1) : weights));
    }
}
