/* SPDX-License-Identifier: BSD-2-Clause */
// Numbers as samples: limited to the sample's range, and rounded to the nearest integer, halves to the even one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "ownround.h"

// An integer; the limits are those ends of both ranges that lie inside. The limited value exists in the wide type
// before it is narrowed; narrowing within the choice costs half the speed.
template <class T, class Wide> inline T ownLimitInteger(Wide value)
{
    using To = std::numeric_limits<T>;
    using From = std::numeric_limits<Wide>;
    constexpr Wide low = static_cast<Wide>(std::max<int64_t>(To::min(), From::min()));
    constexpr Wide high = static_cast<Wide>(std::min<int64_t>(To::max(), From::max()));
    value = value > low ? value : low; // one name: with two, compilers compare 16-bit values in 32 bits
    value = value < high ? value : high;
    return static_cast<T>(value);
}

// A float or double. A NaN counts as the lowest sample: comparisons with it are false.
template <class T, class Real> inline T ownLimitReal(Real value)
{
    constexpr Real low = static_cast<Real>(std::numeric_limits<T>::min());
    constexpr Real high = static_cast<Real>(std::numeric_limits<T>::max());
    const Real above = value > low ? value : low;
    if constexpr (sizeof(T) == 4 && sizeof(Real) == 4) { // the largest 32-bit integer is no float
        return above >= high ? std::numeric_limits<T>::max() : ownRoundEven(above >= high ? Real(0) : above);
    } else {
        return static_cast<T>(ownRoundEven(above < high ? above : high));
    }
}

// Any number as a sample of T; float samples take it as it is.
template <class T, class Value> inline T ownLimitTo(Value value)
{
    if constexpr (std::is_floating_point<T>::value) {
        return static_cast<T>(value);
    } else if constexpr (std::is_floating_point<Value>::value) {
        return ownLimitReal<T>(value);
    } else {
        return ownLimitInteger<T>(value);
    }
}

// The result of float arithmetic as it is stored. Which NaN comes out of two, and with which sign, differs between
// processors and between the orders that compilers choose, so there is one.
template <class Real> inline Real ownOneNaN(Real value)
{
    return value == value ? value : std::numeric_limits<Real>::quiet_NaN();
}
