/* SPDX-License-Identifier: BSD-2-Clause */
// Rows in whole blocks that may be worked on in place.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "ownblocks.h"

// Calls each(rows, count) for n samples of T in every row, sources first, with a count of whole blocks; what is left
// over goes through a block of its own. So the compiler makes no code for remainders, which a long formula has much of.
template <class T, int32_t SOURCES, int32_t ROWS, class F>
__attribute__((always_inline)) inline void ownRunBlocks(uint8_t* const* rows, ptrdiff_t n, const F& each)
{
    constexpr ptrdiff_t block = ownBlockOf<T>, size = sizeof(T);
    const ptrdiff_t whole = n & -block, left = n - whole;
    T ends[ROWS][block];
    T* now[ROWS];
    for (int32_t k = 0; k < ROWS; ++k) now[k] = reinterpret_cast<T*>(rows[k]);
    for (ptrdiff_t count = whole;;) {
        each(now, count);
        if (left == 0) return;
        if (now[0] == ends[0]) break;
        for (int32_t k = 0; k < ROWS; ++k) {
            now[k] = ends[k];
            if (k >= SOURCES) continue;
            std::fill_n(ends[k], block, T(0));
            memcpy(ends[k], rows[k] + whole * size, static_cast<size_t>(left * size));
        }
        count = block;
    }
    for (int32_t k = SOURCES; k < ROWS; ++k) memcpy(rows[k] + whole * size, ends[k], static_cast<size_t>(left * size));
}

// Stores make(i), a T, as sample i of n at `to`, in whole blocks of B as well, but rows may be worked on in place: the
// last block, which begins inside the others where n is no multiple of B, is made before anything is stored.
template <class T, ptrdiff_t B, class F>
__attribute__((always_inline)) inline void ownMakeRow(uint8_t* to, ptrdiff_t n, const F& make)
{
    const auto makeRun = [&](ptrdiff_t first, ptrdiff_t count, uint8_t* run) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; ++i) {
            const T sample = make(first + i);
            memcpy(run + i * static_cast<ptrdiff_t>(sizeof sample), &sample, sizeof sample);
        }
    };
    if (n < B) return makeRun(0, n, to);
    uint8_t last[B * sizeof(T)];
    makeRun(n - B, B, last);
    makeRun(0, n & -B, to);
    memcpy(to + (n - B) * static_cast<ptrdiff_t>(sizeof(T)), last, sizeof last);
}
