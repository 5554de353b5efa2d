/* SPDX-License-Identifier: BSD-2-Clause */
// Rounding to the nearest integer, ties to even, in a form that each compiler turns into vectors.
#pragma once

#include <cstdint>

// Limits and NaN are the caller's: the value must lie inside the range of the result.
inline int32_t ownRoundEven(float value)
{
#if defined(__clang__)
    return static_cast<int32_t>(__builtin_nearbyintf(value));
#else
    return __builtin_irintf(value);
#endif
}

inline int32_t ownRoundEven(double value)
{
#if defined(__clang__)
    return static_cast<int32_t>(__builtin_nearbyint(value));
#else
    return __builtin_irint(value);
#endif
}
