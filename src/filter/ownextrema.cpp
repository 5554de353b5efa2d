#include "ownextrema.h"

#include "ownrowblocks.h"

#include <algorithm>
#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownbuffer.h"
#include "frame/owndepth.h"
#include "frame/ownivdep.h"

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

// Rows of samples: a window along the row is joined from windows of half its width, again and again.
template <class T, class Op> struct OwnSampleRows {
    using Source = T;
    using Value = T;
    ptrdiff_t width; // samples of an output row
    ptrdiff_t step;
    int32_t nCols;
    Op op;

    ptrdiff_t length() const { return width + (nCols - 1) * step; } // of a source row, in T

    // Reads run ahead of writes, so a pass may work in place.
    void reduce(T* row, uint8_t* to) const
    {
        T* const out = reinterpret_cast<T*>(to);
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
    using Source = uint8_t;
    using Value = uint8_t;
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

template <class SampleOp, class BitOp>
static bool ownRunDepth(const OwnBand& band, int32_t depth, int32_t nCols, int32_t nRows)
{
    if (depth == PXK_DEPTH_1U) return ownRunBlocks(band, OwnBitRowsOf<BitOp> { band.width, nCols, {} }, nRows);
    bool isGood = false;
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        isGood = ownRunBlocks(band, OwnSampleRows<T, SampleOp> { band.width, band.step, nCols, {} }, nRows);
    });
    return isGood;
}

bool ownExtremaBand(const OwnBand& band, int32_t depth, OwnExtremum kind, int32_t nCols, int32_t nRows)
{
    if (kind == OwnExtremum::LARGEST) return ownRunDepth<OwnLargest, OwnAnyBit>(band, depth, nCols, nRows);
    return ownRunDepth<OwnSmallest, OwnAllBits>(band, depth, nCols, nRows);
}
