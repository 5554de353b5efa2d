#include "ownextrema.h"

#include <algorithm>
#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownbuffer.h"
#include "frame/owndepth.h"
#include "frame/ownrows.h"

struct OwnLargest {
    template <class T> T operator()(T a, T b) const { return a > b ? a : b; }
};

struct OwnSmallest {
    template <class T> T operator()(T a, T b) const { return a < b ? a : b; }
};

// On bits, eight in a byte.
struct OwnAnyBit {
    template <class T> T operator()(T a, T b) const { return static_cast<T>(a | b); }
};

struct OwnAllBits {
    template <class T> T operator()(T a, T b) const { return static_cast<T>(a & b); }
};

template <class T, class Op> static void ownJoinRows(const T* a, const T* b, T* to, ptrdiff_t n, Op op)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) to[i] = op(a[i], b[i]);
}

// Rows of samples: a window along the row is joined from windows of half its width, again and again.
template <class T, class Op> struct OwnSampleRows {
    using Sample = T;
    ptrdiff_t width; // samples of an output row
    ptrdiff_t step;
    int32_t nCols;
    Op op;

    ptrdiff_t length() const { return width + (nCols - 1) * step; } // of a source row, in T

    // Destroys `row`. Reads run ahead of writes, so a pass may work in place.
    void reduce(T* row, T* out) const
    {
        ptrdiff_t reach = 1;
        ptrdiff_t n = length();
        for (; 2 * reach < nCols; reach *= 2) {
            n -= reach * step;
            ownJoinRows(row, row + reach * step, row, n, op);
        }
        ownJoinRows(row, row + (nCols - reach) * step, out, width, op);
    }
};

// Rows of bits: the same with bit offsets; the shifted row goes through a second buffer behind the first.
template <class Op> struct OwnBitRowsOf {
    using Sample = uint8_t;
    ptrdiff_t width; // pixels of an output row
    int32_t nCols;
    Op op;

    ptrdiff_t pixels() const { return width + nCols - 1; }
    ptrdiff_t length() const { return ownBytesOfBits(0, pixels()); }

    void reduce(uint8_t* row, uint8_t* out) const
    {
        uint8_t* const shifted = row + length();
        ptrdiff_t reach = 1;
        ptrdiff_t n = pixels();
        const auto join = [&](ptrdiff_t offset, ptrdiff_t bits, uint8_t* to) {
            ownAlignBits(row + offset / 8, static_cast<int32_t>(offset % 8), shifted, 0, bits);
            ownJoinRows(row, shifted, to, ownBytesOfBits(0, bits), op);
        };
        for (; 2 * reach < nCols; reach *= 2) {
            n -= reach;
            join(reach, n, row);
        }
        join(nCols - reach, width, out);
    }
};

// Windows down the rows, in blocks of nRows output rows. What such a window holds is the end of one block of source
// rows and the start of the next: ends are kept for a block, starts grow with each output row.
template <class Rows> static bool ownRunExtrema(const OwnBand& band, const Rows& rows, int32_t nRows)
{
    using T = typename Rows::Sample;
    const ptrdiff_t n = rows.length();
    const ptrdiff_t stride = (n + 63) & ~static_cast<ptrdiff_t>(63);
    const int32_t block = std::min(nRows, band.height);
    const OwnBuffer<T> buffer = ownBuffer<T>((static_cast<int64_t>(block) + 3) * stride);
    if (buffer == nullptr) return false;
    T* const start = buffer.get();
    T* const window = start + stride; // and a spare row behind it
    T* const ends = window + 2 * stride;
    const auto source = [&](int64_t y) { return reinterpret_cast<const T*>(band.rows[y]); };
    const auto put = [&](const T* whole, int32_t y) {
        if (whole != window) memcpy(window, whole, static_cast<size_t>(n) * sizeof(T));
        T* const out = reinterpret_cast<T*>(band.out[y]);
        rows.reduce(window, out);
    };
    for (int32_t y = 0; y < band.height; y += nRows) {
        const int32_t count = std::min(nRows, band.height - y);
        // Rows that every window of the block holds are joined without being kept apart.
        T* end = ends + (count - 1) * stride;
        memcpy(end, source(static_cast<int64_t>(y) + nRows - 1), static_cast<size_t>(n) * sizeof(T));
        for (int32_t k = nRows - 2; k >= 0; --k) {
            T* const next = ends + std::min(k, count - 1) * stride;
            ownJoinRows(source(static_cast<int64_t>(y) + k), end, next, n, rows.op);
            end = next;
        }
        put(ends, y);
        for (int32_t k = 1; k < count; ++k) {
            const T* const entering = source(static_cast<int64_t>(y) + nRows + k - 1);
            if (k == 1) {
                memcpy(start, entering, static_cast<size_t>(n) * sizeof(T));
            } else {
                ownJoinRows(start, entering, start, n, rows.op);
            }
            ownJoinRows(ends + k * stride, start, window, n, rows.op);
            put(window, y + k);
        }
    }
    return true;
}

template <class SampleOp, class BitOp>
static bool ownRunDepth(const OwnBand& band, int32_t depth, int32_t nCols, int32_t nRows)
{
    if (depth == PXK_DEPTH_1U) return ownRunExtrema(band, OwnBitRowsOf<BitOp> { band.width, nCols, {} }, nRows);
    bool isGood = false;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        isGood = ownRunExtrema(band, OwnSampleRows<T, SampleOp> { band.width, band.step, nCols, {} }, nRows);
    });
    return isGood;
}

bool ownExtremaBand(const OwnBand& band, int32_t depth, OwnExtremum kind, int32_t nCols, int32_t nRows)
{
    if (kind == OwnExtremum::LARGEST) return ownRunDepth<OwnLargest, OwnAnyBit>(band, depth, nCols, nRows);
    return ownRunDepth<OwnSmallest, OwnAllBits>(band, depth, nCols, nRows);
}
