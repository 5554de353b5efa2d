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

// Loops that need no copy for each caller.
#define OWN_ONCE __attribute__((noinline))

// ---- linear --------------------------------------------------------------------------------------------------------

// The high half of a product, which compilers have an instruction for. The difference, from -32640 to 32640, is formed
// in 16 bits, so that its factor stays with it.
template <int32_t FACTOR> inline int16_t ownWeighted(int16_t a, int16_t b, int16_t weight)
{
    const int16_t difference = static_cast<int16_t>(static_cast<uint16_t>(a - b) * FACTOR);
    return static_cast<int16_t>(difference * weight >> 16);
}

// The row pass: between two neighbours, and, where two outputs have the same ones, both at once. Step has the samples,
// what rows keep of them, and the arithmetic.
template <class Step> struct OwnLinearRows {
    using Sample = typename Step::Sample;
    using Middle = typename Step::Middle;
    static constexpr int32_t taps = 2;

    template <class Taps> static void along(Taps taps, const OwnAxis& axis, ptrdiff_t at, Middle* to, ptrdiff_t n)
    {
        const int16_t* const weight = axis.weight.get() + at;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            to[i] = Step::between(static_cast<int32_t>(taps.template tap<0>(i)),
                                  static_cast<int32_t>(taps.template tap<1>(i)), weight[i]);
        }
    }

    static void alongPairs(const Sample* from, const OwnAxis& axis, ptrdiff_t at, ptrdiff_t apart, Middle* to,
                           ptrdiff_t n)
    {
        const int16_t* const weight = axis.weight.get() + at;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            to[i] = Step::between(from[i], from[i + 1], weight[i]);
            to[i + apart] = Step::between(from[i], from[i + 1], weight[i + apart]);
        }
    }
};

template <class T> struct OwnLinear;

// The row pass keeps 14 bits, (a (16384 - w) + b w) >> 8; the column pass shifts by 20. With -2 w as the weight both
// are 16-bit arithmetic: a 64 + ((a - b) 128 (-2 w) >> 16), and (a + ((a - b) 2 (-2 w) >> 16)) >> 6, the same numbers.
struct OwnByteStep {
    using Sample = uint8_t;
    using Middle = int16_t;
    static Middle between(int32_t a, int32_t b, int16_t weight)
    {
        return static_cast<int16_t>(a * 64
                                    + ownWeighted<128>(static_cast<int16_t>(a), static_cast<int16_t>(b), weight));
    }
};

template <> struct OwnLinear<uint8_t> : OwnLinearRows<OwnByteStep> {
    template <int32_t N>
    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* const* to, ptrdiff_t n)
    {
        const Middle* const first = rows[0];
        const Middle* const second = rows[1];
        int16_t weight[N];
        Sample* out[N];
        for (int32_t r = 0; r < N; ++r) {
            weight[r] = axis.weight[static_cast<size_t>(at + r)];
            out[r] = to[r];
        }
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int16_t a = first[i];
            const int16_t b = second[i];
            for (int32_t r = 0; r < N; ++r) {
                out[r][i] = static_cast<uint8_t>(static_cast<uint16_t>(a + ownWeighted<2>(a, b, weight[r])) >> 6);
            }
        }
    }
};

// Nothing is cut off before the end: rows keep the sum with its 14 fraction bits. Weighing them takes 45 bits, so the
// difference is split into a high part and 15 low bits.
struct OwnWordStep {
    using Sample = uint16_t;
    using Middle = int32_t;
    static Middle between(int32_t a, int32_t b, int16_t weight) { return a * 16384 + (a - b) * (weight / 2); }
};

template <> struct OwnLinear<uint16_t> : OwnLinearRows<OwnWordStep> {
    template <int32_t N>
    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* const* to, ptrdiff_t n)
    {
        const Middle* const first = rows[0];
        const Middle* const second = rows[1];
        int32_t weight[N];
        Sample* out[N];
        for (int32_t r = 0; r < N; ++r) {
            weight[r] = axis.weight[static_cast<size_t>(at + r)] / -2;
            out[r] = to[r];
        }
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const int32_t difference = second[i] - first[i];
            for (int32_t r = 0; r < N; ++r) {
                const int32_t high = (difference >> 15) * weight[r] * 2;
                const int32_t low = (difference & 0x7FFF) * weight[r] >> 14;
                out[r][i] = static_cast<uint16_t>((first[i] + high + low) >> 14);
            }
        }
    }
};

// ---- cubic ---------------------------------------------------------------------------------------------------------

// Newton's polynomial through four samples, in single precision and in this order of operations.
struct OwnCubicTaps {
    float first;
    float difference[3];
    OwnCubicTaps(float p0, float p1, float p2, float p3)
        : first(p0)
    {
        difference[0] = p1 - p0;
        difference[1] = (p2 - p1) - difference[0];
        difference[2] = p3 - 2.0f * p2 + p1 - difference[1];
    }
    float at(float u, float second, float third) const
    {
        return first + u * difference[0] + second * difference[1] + third * difference[2];
    }
};

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

// What one position on an axis multiplies the differences of its taps by.
struct OwnCubicFactors {
    const float* u;
    const float* second;
    const float* third;
    OwnCubicFactors(const OwnAxis& axis, ptrdiff_t at)
        : u(axis.factors[0].get() + at)
        , second(axis.factors[1].get() + at)
        , third(axis.factors[2].get() + at)
    {
    }
    float of(const OwnCubicTaps& taps, ptrdiff_t i) const { return taps.at(u[i], second[i], third[i]); }
};

// Samples that are made at once.
constexpr ptrdiff_t ownCubicMost = 256;

// Two positions between each tap and its three neighbours; the second ones lie `apart`.
OWN_ONCE inline void ownCubicPairs(const float* taps, OwnCubicFactors factors, ptrdiff_t apart, float* to, ptrdiff_t n)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnCubicTaps p(taps[i], taps[i + 1], taps[i + 2], taps[i + 3]);
        to[i] = factors.of(p, i);
        to[i + apart] = factors.of(p, i + apart);
    }
}

// N positions between the same four rows.
template <int32_t N>
OWN_ONCE inline void ownCubicAcross(const float* const* rows, const OwnCubicFactors& factors,
                                    float (&to)[N][ownCubicMost], ptrdiff_t n)
{
    const float *const p0 = rows[0], *const p1 = rows[1], *const p2 = rows[2], *const p3 = rows[3];
    float u[N], second[N], third[N];
    std::copy_n(factors.u, N, u);
    std::copy_n(factors.second, N, second);
    std::copy_n(factors.third, N, third);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const OwnCubicTaps p(p0[i], p1[i], p2[i], p3[i]);
        for (int32_t r = 0; r < N; ++r) to[r][i] = p.at(u[r], second[r], third[r]);
    }
}

template <class T> OWN_ONCE inline void ownFloorSamples(const float* from, T* to, ptrdiff_t n)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) to[i] = ownSampleFloorUp<T>(from[i]);
}

template <class T> struct OwnCubic {
    using Sample = T;
    using Middle = float;
    static constexpr int32_t taps = 4;

    template <class Taps> static void along(Taps taps, const OwnAxis& axis, ptrdiff_t at, Middle* to, ptrdiff_t n)
    {
        const OwnCubicFactors factors(axis, at);
        const auto number = [](auto sample) { return static_cast<float>(static_cast<int32_t>(sample)); };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            const OwnCubicTaps p(number(taps.template tap<0>(i)), number(taps.template tap<1>(i)),
                                 number(taps.template tap<2>(i)), number(taps.template tap<3>(i)));
            to[i] = factors.of(p, i);
        }
    }

    static void alongPairs(const Sample* from, const OwnAxis& axis, ptrdiff_t at, ptrdiff_t apart, Middle* to,
                           ptrdiff_t n)
    {
        alignas(64) float tap[ownCubicMost + taps];
        for (ptrdiff_t start = 0; start < n; start += ownCubicMost) {
            const ptrdiff_t count = std::min(n - start, ownCubicMost);
            for (ptrdiff_t i = 0; i < count; ++i) tap[i] = from[start + i];
            for (ptrdiff_t i = 0; i < taps - 1; ++i) tap[count + i] = from[start + count + i];
            ownCubicPairs(tap, OwnCubicFactors(axis, at + start), apart, to + start, count);
        }
    }

    // Floats first, then samples: one loop for both would run as many floats at once as samples fit into a vector,
    // which takes more registers than there are and twice the time.
    template <int32_t N>
    static void across(const Middle* const* rows, const OwnAxis& axis, ptrdiff_t at, Sample* const* to, ptrdiff_t n)
    {
        alignas(64) float values[N][ownCubicMost];
        for (ptrdiff_t start = 0; start < n; start += ownCubicMost) {
            const Middle* const from[taps] = { rows[0] + start, rows[1] + start, rows[2] + start, rows[3] + start };
            const ptrdiff_t count = std::min(n - start, ownCubicMost);
            ownCubicAcross<N>(from, OwnCubicFactors(axis, at), values, count);
            for (int32_t r = 0; r < N; ++r) ownFloorSamples<T>(values[r], to[r] + start, count);
        }
    }
};
