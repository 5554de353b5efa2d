/* SPDX-License-Identifier: BSD-2-Clause */
// Between rows of samples and lines side by side: squares of sixteen values turned over.
#pragma once

#include <cstddef>

constexpr ptrdiff_t OWN_TILE = 16;

// GCC makes two instructions of four steps that are left as a loop, Clang of the straight code.
#if defined(__clang__)
#define OWN_NOT_UNROLLED
#else
#define OWN_NOT_UNROLLED _Pragma("GCC unroll 1")
#endif

// Two times four values in turn.
template <class T> inline void ownInterleaveFour(const T* a, const T* b, T* to)
{
    OWN_NOT_UNROLLED
    for (ptrdiff_t i = 0; i < 4; ++i) {
        to[2 * i] = a[i];
        to[2 * i + 1] = b[i];
    }
}

// Four by four values: rows 0 and 2 in turn, 1 and 3 in turn, then both in turn, which compilers do in vectors.
template <class T> inline void ownTransposeFour(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    T even[8], odd[8], all[16];
    ownInterleaveFour(from, from + 2 * fromStep, even);
    ownInterleaveFour(from + fromStep, from + 3 * fromStep, odd);
    ownInterleaveFour(even, odd, all);
    ownInterleaveFour(even + 4, odd + 4, all + 8);
    for (ptrdiff_t x = 0; x < 4; ++x)
        for (ptrdiff_t y = 0; y < 4; ++y) to[x * toStep + y] = all[4 * x + y];
}

// Column x of `from` becomes row x of `to`. The rows of one side may lie a power of two apart, where few of them fit
// into the cache at once: each one is finished soon, the source's rows here, the destination's rows below.
template <class T> inline void ownTransposeFrom(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    for (ptrdiff_t y = 0; y < OWN_TILE; y += 4)
        for (ptrdiff_t x = 0; x < OWN_TILE; x += 4)
            ownTransposeFour(from + y * fromStep + x, fromStep, to + x * toStep + y, toStep);
}

template <class T> inline void ownTransposeTo(const T* from, ptrdiff_t fromStep, T* to, ptrdiff_t toStep)
{
    for (ptrdiff_t x = 0; x < OWN_TILE; x += 4)
        for (ptrdiff_t y = 0; y < OWN_TILE; y += 4)
            ownTransposeFour(from + y * fromStep + x, fromStep, to + x * toStep + y, toStep);
}
