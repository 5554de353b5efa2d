/* SPDX-License-Identifier: BSD-2-Clause */
// What the formulas of the colour models are written with.
#pragma once

#include <algorithm>
#include <limits>
#include <type_traits>

#include "frame/ownblockrows.h"
#include "frame/ownlimit.h"
#include "owncolor.h"

template <class T> struct OwnColour {
    T first;
    T second;
    T third;
};

template <class T> inline T ownStored(T value)
{
    if constexpr (std::is_floating_point<T>::value) {
        return ownOneNaN(value);
    } else {
        return value;
    }
}

// The row of a formula: an object whose call turns the three samples of a pixel into three others.
template <class T, class Formula> void ownColourRow(uint8_t* const* rows, ptrdiff_t n)
{
    const Formula formula {};
    ownRunBlocks<T, 3, 6>(rows, n, [&](T* const* of, ptrdiff_t count) {
        const T *const first = of[0], *const second = of[1], *const third = of[2];
        T *const firstResult = of[3], *const secondResult = of[4], *const thirdResult = of[5];
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) {
            const OwnColour<T> result = formula(first[i], second[i], third[i]);
            firstResult[i] = ownStored(result.first);
            secondResult[i] = ownStored(result.second);
            thirdResult[i] = ownStored(result.third);
        }
    });
}

template <class T, class Formula, class = void> struct OwnTakes : std::false_type {
};
template <class T, class Formula>
struct OwnTakes<T, Formula, std::void_t<decltype(Formula {}(T {}, T {}, T {}))>>
    : std::is_same<decltype(Formula {}(T {}, T {}, T {})), OwnColour<T>> {
};

template <class T, class Formula> constexpr OwnColourRow ownColourRowOrNull()
{
    if constexpr (OwnTakes<T, Formula>::value) {
        return ownColourRow<T, Formula>;
    } else {
        return nullptr;
    }
}

// The rows of a formula that takes some depths: its call is overloaded for their sample types. 8U may have a formula or
// a row of its own.
template <class Formula, class ByteFormula = Formula>
constexpr OwnColourRows ownColourRows(OwnColourRow of8U = ownColourRowOrNull<uint8_t, ByteFormula>())
{
    return { of8U, ownColourRowOrNull<uint16_t, Formula>(), ownColourRowOrNull<int32_t, Formula>(),
             ownColourRowOrNull<float, Formula>() };
}

template <class T> constexpr T ownTop = std::numeric_limits<T>::max();

// A double as a sample of 32 bits: limited, then truncated toward zero. A NaN counts as the lower limit.
inline int32_t ownTruncate(double value, double low)
{
    const double above = value > low ? value : low;
    return static_cast<int32_t>(above < 2147483647.0 ? above : 2147483647.0);
}

inline int32_t ownTruncateSigned(double value)
{
    return ownTruncate(value, -2147483648.0);
}

inline int32_t ownTruncatePositive(double value)
{
    return ownTruncate(value, 0.0);
}

inline float ownNotNegative(float value)
{
    return value < 0.0f ? 0.0f : value;
}

// The high half of a product: with factors scaled by powers of two, a product and its shift in lanes of 16 bits.
inline uint16_t ownHigh16(uint16_t a, uint16_t b)
{
    return static_cast<uint16_t>(static_cast<uint32_t>(a) * b >> 16);
}

inline uint8_t ownLimitByte(int16_t value)
{
    const int16_t above = value > 0 ? value : int16_t(0);
    return static_cast<uint8_t>(above < 255 ? above : int16_t(255));
}

inline uint16_t ownLimitWord(int32_t value)
{
    const int32_t above = value > 0 ? value : 0;
    return static_cast<uint16_t>(above < 65535 ? above : 65535);
}
