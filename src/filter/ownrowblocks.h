// Windows down the rows of a band, joined at a cost that does not grow with their height.
#pragma once

#include <algorithm>
#include <cstring>

#include "frame/ownbuffer.h"
#include "frame/ownivdep.h"
#include "ownwindow.h"

template <class A, class B, class To, class Op>
inline void ownJoinRows(const A* a, const B* b, To* to, ptrdiff_t n, Op op)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) to[i] = op(static_cast<To>(a[i]), static_cast<To>(b[i]));
}

template <class From, class To> inline void ownConvertRow(const From* from, To* to, ptrdiff_t n)
{
    for (ptrdiff_t i = 0; i < n; ++i) to[i] = static_cast<To>(from[i]);
}

// Output rows are taken in blocks of nRows. What a window holds is the end of one block of source rows and the start of
// the next: the ends are kept for a block, the start grows with each output row. `rows` tells
// - Source and Value, the types of source samples and of joined ones, and op, which joins two values;
// - length(), the values of a row;
// - reduce(Value* row, uint8_t* out), which turns a row of windows one column wide into an output row and destroys it;
// there
//   is room for twice its length.
template <class Rows> [[nodiscard]] bool ownRunBlocks(const OwnBand& band, const Rows& rows, int32_t nRows)
{
    using Value = typename Rows::Value;
    const ptrdiff_t n = rows.length();
    const ptrdiff_t stride = (n + 63) & ~static_cast<ptrdiff_t>(63);
    const int32_t block = std::min(nRows, band.height);
    const OwnBuffer<Value> buffer = ownBuffer<Value>((static_cast<int64_t>(block) + 3) * stride);
    if (buffer == nullptr) return false;
    Value* const start = buffer.get();
    Value* const window = start + stride; // and a spare row behind it
    Value* const ends = window + 2 * stride;
    const auto source = [&](int64_t y) { return reinterpret_cast<const typename Rows::Source*>(band.rows[y]); };
    for (int64_t y = 0; y < band.height; y += nRows) {
        const int32_t count = static_cast<int32_t>(std::min<int64_t>(nRows, band.height - y));
        // Rows that every window of the block holds are joined without being kept apart.
        Value* end = ends + (count - 1) * stride;
        ownConvertRow(source(y + nRows - 1), end, n);
        for (int32_t k = nRows - 2; k >= 0; --k) {
            Value* const next = ends + std::min(k, count - 1) * stride;
            ownJoinRows(source(y + k), end, next, n, rows.op);
            end = next;
        }
        for (int32_t k = 0; k < count; ++k) {
            if (k == 1) ownConvertRow(source(y + nRows), start, n);
            if (k > 1) ownJoinRows(start, source(y + nRows + k - 1), start, n, rows.op);
            if (k == 0) {
                memcpy(window, ends, static_cast<size_t>(n) * sizeof(Value));
            } else {
                ownJoinRows(ends + k * stride, start, window, n, rows.op);
            }
            rows.reduce(window, band.out[y + k]);
        }
    }
    return true;
}
