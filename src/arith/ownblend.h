// Composition of two samples a and b under their alphas, after Porter and Duff, Compositing Digital Images, 1984. The
// whole result is exact until its one rounding, to nearest.
#pragma once

#include "ownscaled.h"
#include "pxk/pxk.h"

// What a and b are multiplied by, as fractions of the largest value M.
template <int32_t TYPE, class T> inline T ownFactorA(T alphaB)
{
    switch (TYPE) {
    case PXK_COMPOSITE_IN:
    case PXK_COMPOSITE_ATOP: return alphaB;
    case PXK_COMPOSITE_OUT:
    case PXK_COMPOSITE_XOR: return static_cast<T>(ownLargest<T> - alphaB);
    default: return ownLargest<T>;
    }
}

template <int32_t TYPE, class T> inline T ownFactorB(T alphaA)
{
    switch (TYPE) {
    case PXK_COMPOSITE_IN:
    case PXK_COMPOSITE_OUT: return 0;
    case PXK_COMPOSITE_PLUS: return ownLargest<T>;
    default: return static_cast<T>(ownLargest<T> - alphaA);
    }
}

// Premultiplied samples, and alphas themselves: (a Fa + b Fb) / M, limited to M. The sum is formed saturating and
// limited to M M before it is divided, so it needs no wider type.
template <int32_t TYPE, class T> inline T ownBlendPremultiplied(T a, T b, T alphaA, T alphaB)
{
    using Wide = OwnProduct<T>;
    constexpr Wide most = static_cast<Wide>(static_cast<Wide>(ownLargest<T>) * ownLargest<T>);
    const Wide x = static_cast<Wide>(static_cast<Wide>(a) * ownFactorA<TYPE, T>(alphaB));
    const Wide y = static_cast<Wide>(static_cast<Wide>(b) * ownFactorB<TYPE, T>(alphaA));
    const Wide room = static_cast<Wide>(most - x);
    return ownOverLargest<T>(static_cast<Wide>(x + (y < room ? y : room)));
}

// Integers up to M M M without rounding.
template <class T> using OwnExactReal = std::conditional_t<sizeof(T) == 1, float, double>;

// x / y rounded to nearest, half up, for integers x <= M y with y <= M M, and 0 / 0 = 0. A quotient that is not a half
// is at least 1 / (2 y) away from one: more than 2^-17 at 8 bits and 2^-33 at 16, which is more than float and double
// lose below 256 and 65536. So the rounded quotient, and its sum with 1/2, stay on the right side of every half.
template <class T> inline T ownRoundQuotient(OwnExactReal<T> x, OwnExactReal<T> y)
{
    using Real = OwnExactReal<T>;
    const Real quotient = x / (y < 1 ? Real { 1 } : y);
    return static_cast<T>(static_cast<int32_t>(quotient + Real { 0.5f }));
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
        // Colour and alpha are limited to M each, before the one is divided by the other.
        constexpr Real most = static_cast<Real>(largest) * static_cast<Real>(largest);
        const Real colour = Real(a) * Real(alphaA) + Real(b) * Real(alphaB);
        const Real alpha = Real(alphaA) + Real(alphaB);
        return ownRoundQuotient<T>(colour < most ? colour : most, alpha < Real(largest) ? alpha : Real(largest));
    } else {
        const Real weightA = Real(alphaA) * Real(ownFactorA<TYPE, T>(alphaB));
        const Real weightB = Real(alphaB) * Real(ownFactorB<TYPE, T>(alphaA));
        return ownRoundQuotient<T>(Real(a) * weightA + Real(b) * weightB, weightA + weightB);
    }
}
