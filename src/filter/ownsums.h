/* SPDX-License-Identifier: BSD-2-Clause */
// Sums over rectangular windows of integer samples, at a cost that does not grow with the window's height and hardly
// with its width.
#pragma once

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

#include "ownwindow.h"

// ---- along a row ---------------------------------------------------------------------------------------------------

// A row of sums, with room for a block of the smallest samples behind its end.
template <class Sum> [[nodiscard]] inline Sum* ownTakeRow(const OwnBand& band, ptrdiff_t length)
{
    return band.scratch.take<Sum>(static_cast<int64_t>(length) + ownBlockBytes);
}

// to[i] = the sum of N rows at i.
template <int32_t N, class Sum> inline void ownAddRows(const Sum* const* rows, Sum* to, ptrdiff_t n)
{
    const Sum* row[N];
    for (int32_t k = 0; k < N; ++k) row[k] = rows[k];
    ownInBlocks<ownBlockOf<Sum>>(n, [&](ptrdiff_t i) {
        Sum sum = row[0][i];
        for (int32_t k = 1; k < N; ++k) sum = static_cast<Sum>(sum + row[k][i]);
        to[i] = sum;
    });
}

constexpr int32_t ownMostAtOnce = 8;

template <class Sum> inline void ownAddRows(const Sum* const* rows, int32_t count, Sum* to, ptrdiff_t n)
{
    switch (count) {
    case 1: return ownAddRows<1>(rows, to, n);
    case 2: return ownAddRows<2>(rows, to, n);
    case 3: return ownAddRows<3>(rows, to, n);
    case 4: return ownAddRows<4>(rows, to, n);
    case 5: return ownAddRows<5>(rows, to, n);
    case 6: return ownAddRows<6>(rows, to, n);
    case 7: return ownAddRows<7>(rows, to, n);
    default: return ownAddRows<8>(rows, to, n);
    }
}

// How many neighbours are summed first, so that windows of `count` take fewest loads: windows of so many samples, and
// the single samples that are left over.
inline int32_t ownBestRadix(int32_t count)
{
    const auto loads = [count](int32_t radix) { return radix + count / radix + count % radix; };
    int32_t best = 2;
    for (int32_t radix = 3; radix <= ownMostAtOnce; ++radix) best = loads(radix) < loads(best) ? radix : best;
    return best;
}

// Windows of up to 64 samples fit two levels: neighbours, and windows of those. The rows are shifted copies of one.
template <class Sum>
inline void ownSumFew(const Sum* from, Sum* spare, Sum* sums, ptrdiff_t width, ptrdiff_t step, int32_t count)
{
    const Sum* rows[2 * ownMostAtOnce];
    int32_t nRows = 0;
    const int32_t radix = count <= ownMostAtOnce ? 1 : ownBestRadix(count);
    const Sum* level = from;
    if (radix > 1) {
        for (int32_t k = 0; k < radix; ++k) rows[k] = from + k * step;
        ownAddRows(rows, radix, spare, width + (count - radix) * step);
        level = spare;
    }
    int32_t done = 0;
    Sum* const second = spare + width + count * step + 2 * ownBlockOf<Sum>;
    Sum* to = sums;
    while (done < count) {
        for (; nRows < ownMostAtOnce && done < count;) {
            const bool isWindow = done + radix <= count;
            rows[nRows++] = (isWindow ? level : from) + done * step;
            done += isWindow ? radix : 1;
        }
        to = done < count ? (to == sums ? second : sums) : sums;
        ownAddRows(rows, nRows, to, width);
        rows[0] = to;
        nRows = 1;
    }
}

// Wide windows: the sums of all samples in front, of which windows are differences. One chain of additions would wait
// for itself; so rows are cut into four parts, which take turns, as the channels do.
template <int32_t STEP, class Column, class Sum> inline void ownSumInFrontBy(const Column* from, Sum* to, ptrdiff_t n)
{
    constexpr int32_t parts = 4;
    const ptrdiff_t part = n / (parts * STEP) * STEP;
    Sum sum[parts][STEP] = {};
    Sum* const sums = to + STEP;
    for (ptrdiff_t i = 0; i < STEP; ++i) to[i] = 0;
    for (ptrdiff_t i = 0; i < part; i += STEP) {
        for (int32_t k = 0; k < parts; ++k) {
            for (int32_t c = 0; c < STEP; ++c) {
                const ptrdiff_t at = k * part + i + c;
                sums[at] = sum[k][c] = static_cast<Sum>(sum[k][c] + from[at]);
            }
        }
    }
    for (int32_t k = 1; k < parts && part > 0; ++k) {
        Sum* const own = sums + k * part;
        Sum base[STEP];
        for (int32_t c = 0; c < STEP; ++c) base[c] = own[c - STEP];
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < part; i += STEP) {
            for (int32_t c = 0; c < STEP; ++c) own[i + c] = static_cast<Sum>(own[i + c] + base[c]);
        }
    }
    for (ptrdiff_t i = parts * part; i < n; ++i) sums[i] = static_cast<Sum>(to[i] + from[i]);
}

template <class Column, class Sum> inline void ownSumInFront(const Column* from, Sum* to, ptrdiff_t n, ptrdiff_t step)
{
    switch (step) {
    case 1: return ownSumInFrontBy<1>(from, to, n);
    case 2: return ownSumInFrontBy<2>(from, to, n);
    case 3: return ownSumInFrontBy<3>(from, to, n);
    case 4: return ownSumInFrontBy<4>(from, to, n);
    default: break;
    }
    for (ptrdiff_t i = 0; i < step; ++i) to[i] = 0;
    for (ptrdiff_t i = 0; i < n; ++i) to[i + step] = static_cast<Sum>(to[i] + from[i]);
}

// Windows of so many columns are summed by their neighbours.
template <class Sum> constexpr int32_t ownFewColumns = sizeof(Sum) == 2 ? 64 : 32;

// Sums of `count` neighbours; `spare` holds two rows of the source's length.
template <class Column, class Sum>
inline void ownRowSums(const Column* from, Sum* spare, Sum* sums, ptrdiff_t width, ptrdiff_t step, int32_t count)
{
    if constexpr (std::is_same<Column, Sum>::value) {
        if (count <= ownFewColumns<Sum>) return ownSumFew(from, spare, sums, width, step, count);
    }
    ownSumInFront(from, spare, width + (count - 1) * step, step);
    const Sum* const behind = spare + count * step;
    ownInBlocks<ownBlockOf<Sum>>(width, [&](ptrdiff_t i) { sums[i] = static_cast<Sum>(behind[i] - spare[i]); });
}

// ---- windows -------------------------------------------------------------------------------------------------------

// Samples counted from the lowest one, so that sums are not negative.
template <class T> inline std::make_unsigned_t<T> ownFromLowest(T sample)
{
    using Word = std::make_unsigned_t<T>;
    return static_cast<Word>(static_cast<Word>(sample) - static_cast<Word>(std::numeric_limits<T>::min()));
}

// Column sums of one row after another. Not inlined: the loops need no copy for each kind of window.
template <class T, class Column>
__attribute__((noinline)) inline void ownAddToColumns(const Column* columns, const T* entering, int32_t times,
                                                      Column* next, ptrdiff_t n)
{
    const Column factor = static_cast<Column>(times);
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
        next[i] = static_cast<Column>(columns[i] + static_cast<Column>(factor * ownFromLowest(entering[i])));
    });
}

template <class T, class Column>
__attribute__((noinline)) inline void ownChangeColumns(const Column* columns, const T* entering, const T* leaving,
                                                       int32_t times, Column* next, ptrdiff_t n)
{
    const Column factor = static_cast<Column>(times);
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
        const Column in = static_cast<Column>(ownFromLowest(entering[i]));
        const Column out = static_cast<Column>(ownFromLowest(leaving[i]));
        next[i] = static_cast<Column>(columns[i] + static_cast<Column>(factor * static_cast<Column>(in - out)));
    });
}

// Sums that change from row to row as they did before.
template <class Sum>
__attribute__((noinline)) inline void ownRepeatChange(const Sum* last, const Sum* beforeLast, Sum* sums, ptrdiff_t n)
{
    ownInBlocks<ownBlockOf<Sum>>(n, [&](ptrdiff_t i) { sums[i] = static_cast<Sum>(2 * last[i] - beforeLast[i]); });
}

// The sums of a column must fit Column.
template <class T, class Column, class Sum, class Store>
[[nodiscard]] bool ownWindowSumsBy(const OwnBand& band, int32_t nCols, int32_t nRows, const Store& store)
{
    const ptrdiff_t length = band.width + static_cast<ptrdiff_t>(nCols - 1) * band.step;
    Column* columns = ownTakeRow<Column>(band, length);
    Column* next = ownTakeRow<Column>(band, length);
    Sum* const spare = ownTakeRow<Sum>(band, 2 * (length + band.step) + 2 * ownBlockOf<Sum>);
    Sum* sums = ownTakeRow<Sum>(band, band.width); // of an output row, of the one before, and room for the next
    Sum* before = ownTakeRow<Sum>(band, band.width);
    Sum* room = ownTakeRow<Sum>(band, band.width);
    if (columns == nullptr || next == nullptr || spare == nullptr || sums == nullptr || before == nullptr
        || room == nullptr)
        return false;
    const auto row = [&](int64_t y) { return reinterpret_cast<const T*>(band.rows[y]); };
    std::fill(columns, columns + length + ownBlockBytes, Column { 0 });
    for (int64_t y = 0; y < nRows;) {
        const T* const entering = row(y);
        int32_t times = 0;
        for (; y < nRows && row(y) == entering; ++y) ++times;
        ownAddToColumns(columns, entering, times, next, length);
        std::swap(columns, next);
    }
    const T* entered = nullptr;
    const T* left = nullptr;
    int32_t pending = 0; // changes that the columns have not seen: all by the same two rows
    for (int32_t y = 0; y < band.height; ++y) {
        const T* const entering = row(static_cast<int64_t>(y) + nRows - 1);
        const T* const leaving = y > 0 ? row(y - 1) : nullptr;
        std::swap(before, room);
        std::swap(sums, before);
        const bool isRepeated = y > 1 && entering == entered && leaving == left;
        if (!isRepeated && pending > 0) {
            ownChangeColumns(columns, entered, left, pending, next, length);
            std::swap(columns, next);
            pending = 0;
        }
        if (isRepeated) {
            ownRepeatChange<Sum>(before, room, sums, band.width);
            ++pending;
        } else {
            if (y > 0) {
                ownChangeColumns(columns, entering, leaving, 1, next, length);
                std::swap(columns, next);
            }
            ownRowSums(columns, spare, sums, band.width, band.step, nCols);
        }
        entered = entering;
        left = leaving;
        store(static_cast<const Sum*>(sums), reinterpret_cast<T*>(band.out[y]), band.width);
    }
    return true;
}

// Calls store(sums, output row, width) for every output row of a band of integer samples, counted from the lowest one;
// rows may be stored twice. Sums must fit Sum, which is unsigned.
template <class T, class Sum, class Store>
[[nodiscard]] bool ownWindowSums(const OwnBand& band, int32_t nCols, int32_t nRows, const Store& store)
{
    if constexpr (sizeof(T) == 1 && sizeof(Sum) == 4) { // half the work down the columns
        const bool fits = nCols > ownFewColumns<Sum> && nRows <= UINT16_MAX / UINT8_MAX;
        if (fits) return ownWindowSumsBy<T, uint16_t, Sum>(band, nCols, nRows, store);
    }
    return ownWindowSumsBy<T, Sum, Sum>(band, nCols, nRows, store);
}
