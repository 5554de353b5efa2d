// Sums over rectangular windows, at a cost that does not grow with the window's height and only with the logarithm of
// its width.
#pragma once

#include "frame/ownbuffer.h"
#include "frame/ownivdep.h"
#include "ownwindow.h"

// Sums of `count` neighbours along a row: sums of 1, 2, 4, ... neighbours are made in `powers`, which holds width +
// (count - 1) step entries and is destroyed; those whose lengths add up to count are added where the one before ended.
template <class Sum> inline void ownRowSums(Sum* powers, Sum* sums, ptrdiff_t width, ptrdiff_t step, int32_t count)
{
    ptrdiff_t length = width + (count - 1) * step;
    ptrdiff_t offset = 0;
    bool isFirst = true;
    for (int32_t power = 1;; power *= 2) {
        if ((count & power) != 0) {
            const Sum* const part = powers + offset;
            if (isFirst) {
                for (ptrdiff_t i = 0; i < width; ++i) sums[i] = part[i];
            } else {
                OWN_IVDEP
                for (ptrdiff_t i = 0; i < width; ++i) sums[i] += part[i];
            }
            isFirst = false;
            offset += power * step;
        }
        if (power > count / 2) return;
        length -= power * step;
        const Sum* const next = powers + power * step;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < length; ++i) powers[i] += next[i]; // reads run ahead of writes
    }
}

// Calls store(sums, output row, width), which may destroy the sums, for every output row of a band of integer samples.
// Sums must fit Sum.
template <class T, class Sum, class Store>
[[nodiscard]] bool ownWindowSums(const OwnBand& band, int32_t nCols, int32_t nRows, const Store& store)
{
    const ptrdiff_t length = band.width + static_cast<ptrdiff_t>(nCols - 1) * band.step;
    const ptrdiff_t stride = (length + 15) & ~static_cast<ptrdiff_t>(15);
    const OwnBuffer<Sum> buffer = ownBuffer<Sum>(3 * static_cast<int64_t>(stride));
    if (buffer == nullptr) return false;
    Sum* const columns = buffer.get();
    Sum* const powers = columns + stride;
    Sum* const sums = powers + stride;
    const auto row = [&](int32_t y) { return reinterpret_cast<const T*>(band.rows[y]); };
    for (ptrdiff_t i = 0; i < length; ++i) columns[i] = 0;
    for (int32_t y = 0; y < nRows - 1; ++y) {
        const T* const entering = row(y);
        for (ptrdiff_t i = 0; i < length; ++i) columns[i] += entering[i];
    }
    for (int32_t y = 0; y < band.height; ++y) {
        const T* const entering = row(y + nRows - 1);
        const T* const leaving = row(y);
        for (ptrdiff_t i = 0; i < length; ++i) {
            const Sum sum = columns[i] + entering[i];
            powers[i] = sum;
            columns[i] = sum - leaving[i];
        }
        ownRowSums<Sum>(powers, sums, band.width, band.step, nCols);
        store(sums, reinterpret_cast<T*>(band.out[y]), band.width);
    }
    return true;
}
