/* SPDX-License-Identifier: BSD-2-Clause */
// Rows of a linear and of a cubic change of scale: along a source row, then across the rows that this gives.
#pragma once

#include <algorithm>
#include <limits>

#include "frame/ownivdep.h"
#include "ownaxis.h"

// ---- taps ----------------------------------------------------------------------------------------------------------

// The taps of each sample as one word, the first in the lowest address.
template <class T, class Word> struct OwnTapWords {
    static constexpr int32_t taps = sizeof(Word) / sizeof(T);
    const Word* words;

    OwnTapWords from(ptrdiff_t start) const { return { words + start }; }
    template <int32_t TAP> Word tap(ptrdiff_t i) const
    {
        constexpr int32_t place = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? TAP : taps - 1 - TAP;
        constexpr Word mask = static_cast<Word>(~Word { 0 }) >> (8 * (sizeof(Word) - sizeof(T)));
        return static_cast<Word>(words[i] >> (8 * sizeof(T) * place) & mask);
    }
};

// The taps as rows.
template <class T> struct OwnTapRows {
    const T* rows[4];

    OwnTapRows from(ptrdiff_t start) const
    {
        return { { rows[0] + start, rows[1] + start, rows[2] + start, rows[3] + start } };
    }
    template <int32_t TAP> T tap(ptrdiff_t i) const { return rows[TAP][i]; }
};

// ---- linear --------------------------------------------------------------------------------------------------------

// The high half of a product, which compilers have an instruction for. The difference, from -32640 to 32640, is formed
// in 16 bits, so that its factor stays with it.
template <int32_t FACTOR> inline int16_t ownWeighted(int16_t a, int16_t b, int16_t weight)
{
    const int16_t difference = static_cast<int16_t>(static_cast<uint16_t>(a - b) * FACTOR);
    return static_cast<int16_t>(difference * weight >> 16);
}

template <class T> struct OwnLinear;

// The row pass keeps 14 bits, (a (16384 - w) + b w) >> 8; the column pass shifts by 20. With -2 w as the weight both
// are 16-bit arithmetic: a 64 + ((a - b) 128 (-2 w) >> 16), and (a + ((a - b) 2 (-2 w) >> 16)) >> 6, the same numbers.
template <> struct OwnLinear<uint8_t> {
    using Sample = uint8_t;
    using Middle = int16_t;
    static constexpr int32_t taps = 2;

    template <class Taps> static void along(Taps taps, const OwnAxis& axis, ptrdiff_t at, Middle* to, ptrdiff_t n)
    {
        const int16_t* const weight = axis.weight.get() + at;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int16_t a = static_cast<int16_t>(taps.template tap<0>(i));
            const int16_t b = static_cast<int16_t>(taps.template tap<1>(i));
            to[i] = static_cast<int16_t>(a * 64 + ownWeighted<128>(a, b, weight[i]));
        }
    }

    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* to, ptrdiff_t n)
    {
        const Middle* const first = rows[0];
        const Middle* const second = rows[1];
        const int16_t weight = axis.weight[static_cast<size_t>(at)];
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int16_t a = first[i];
            const int16_t b = second[i];
            to[i] = static_cast<uint8_t>(static_cast<uint16_t>(a + ownWeighted<2>(a, b, weight)) >> 6);
        }
    }
};

// Nothing is cut off before the end: rows keep the sum with its 14 fraction bits. Weighing them takes 45 bits, so the
// difference is split into a high part and 15 low bits.
template <> struct OwnLinear<uint16_t> {
    using Sample = uint16_t;
    using Middle = int32_t;
    static constexpr int32_t taps = 2;

    template <class Taps> static void along(Taps taps, const OwnAxis& axis, ptrdiff_t at, Middle* to, ptrdiff_t n)
    {
        const int16_t* const weight = axis.weight.get() + at;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int32_t a = static_cast<int32_t>(taps.template tap<0>(i));
            const int32_t b = static_cast<int32_t>(taps.template tap<1>(i));
            to[i] = a * 16384 + (a - b) * (weight[i] / 2);
        }
    }

    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* to, ptrdiff_t n)
    {
        const Middle* const first = rows[0];
        const Middle* const second = rows[1];
        const int32_t weight = axis.weight[static_cast<size_t>(at)] / -2;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int32_t difference = second[i] - first[i];
            const int32_t high = (difference >> 15) * weight * 2;
            const int32_t low = (difference & 0x7FFF) * weight >> 14;
            to[i] = static_cast<uint16_t>((first[i] + high + low) >> 14);
        }
    }
};

// ---- cubic ---------------------------------------------------------------------------------------------------------

// Newton's polynomial through four samples, in single precision and in this order of operations.
inline float ownCubic(float p0, float p1, float p2, float p3, float u, float second, float third)
{
    const float d1 = p1 - p0;
    const float d2 = (p2 - p1) - d1;
    const float d3 = p3 - 2.0f * p2 + p1 - d2;
    return p0 + u * d1 + second * d2 + third * d3;
}

// ownFloorUp, limited to the range of the samples. A fraction within 0.00001 of the next integer is lifted to it;
// 0.99999f is a little less than 0.99999, and no float lies between them. Values stay far inside 32 bits.
template <class T> inline T ownSampleFloorUp(float value)
{
    constexpr int32_t high = std::numeric_limits<T>::max();
    const int32_t towardZero = static_cast<int32_t>(value);
    const float fraction = value - static_cast<float>(towardZero);
    int32_t whole = towardZero + static_cast<int32_t>(fraction > 0.99999f);
    whole = whole < high ? whole : high;
    whole = whole > 0 ? whole : 0;
    return static_cast<T>(whole);
}

template <class T> struct OwnCubic {
    using Sample = T;
    using Middle = float;
    static constexpr int32_t taps = 4;

    template <class Taps> static void along(Taps taps, const OwnAxis& axis, ptrdiff_t at, Middle* to, ptrdiff_t n)
    {
        const float* const u = axis.factors[0].get() + at;
        const float* const second = axis.factors[1].get() + at;
        const float* const third = axis.factors[2].get() + at;
        const auto number = [](auto sample) { return static_cast<float>(static_cast<int32_t>(sample)); };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            to[i] =
                ownCubic(number(taps.template tap<0>(i)), number(taps.template tap<1>(i)),
                         number(taps.template tap<2>(i)), number(taps.template tap<3>(i)), u[i], second[i], third[i]);
        }
    }

    // Floats first, then samples: one loop for both would run as many floats at once as samples fit into a vector,
    // which takes more registers than there are and twice the time.
    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* to, ptrdiff_t n)
    {
        const float u = axis.factors[0][static_cast<size_t>(at)];
        const float second = axis.factors[1][static_cast<size_t>(at)];
        const float third = axis.factors[2][static_cast<size_t>(at)];
        alignas(64) float values[256];
        for (ptrdiff_t start = 0; start < n; start += 256) {
            const Middle *const p0 = rows[0] + start, *const p1 = rows[1] + start;
            const Middle *const p2 = rows[2] + start, *const p3 = rows[3] + start;
            Sample* const out = to + start;
            const ptrdiff_t count = std::min<ptrdiff_t>(n - start, 256);
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < count; ++i) values[i] = ownCubic(p0[i], p1[i], p2[i], p3[i], u, second, third);
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < count; ++i) out[i] = ownSampleFloorUp<T>(values[i]);
        }
    }
};
