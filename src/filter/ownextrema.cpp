// SPDX-License-Identifier: BSD-2-Clause
#include "ownextrema.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/ownbits.h"
#include "frame/owndepth.h"

struct OwnLargest {
    template <class T> T operator()(T a, T b) const { return a > b ? a : b; }
};

struct OwnSmallest {
    template <class T> T operator()(T a, T b) const { return a < b ? a : b; }
};

// On bits, sixty-four in a word.
struct OwnAnyBit {
    uint64_t operator()(uint64_t a, uint64_t b) const { return a | b; }
};

struct OwnAllBits {
    uint64_t operator()(uint64_t a, uint64_t b) const { return a & b; }
};

// ---- windows along a row -------------------------------------------------------------------------------------------

// COUNT neighbours at once.
template <int32_t COUNT, class T, class Op>
static void ownJoinNeighbours(const T* from, T* to, ptrdiff_t n, ptrdiff_t step, Op op)
{
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
        T joined = from[i];
        for (int32_t k = 1; k < COUNT; ++k) joined = op(joined, from[i + k * step]);
        to[i] = joined;
    });
}

// Windows of `count` samples, which up to four windows of `reach` samples cover.
template <class T, class Op>
static void ownWiden(const T* from, T* to, ptrdiff_t n, ptrdiff_t step, int32_t reach, int32_t count, Op op)
{
    const ptrdiff_t last = (count - reach) * step;
    if (count <= 2 * static_cast<int64_t>(reach)) {
        return ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) { to[i] = op(from[i], from[i + last]); });
    }
    const ptrdiff_t second = reach * step;
    const ptrdiff_t third = std::min<ptrdiff_t>(2 * second, last);
    ownInBlocks<ownBlockOf<T>>(
        n, [&](ptrdiff_t i) { to[i] = op(op(from[i], from[i + second]), op(from[i + third], from[i + last])); });
}

// Windows of `count` samples: some neighbours in one pass, then up to four windows of the pass before. `spare` holds
// two rows of the source's length.
template <class T, class Op>
static void ownJoinAlong(const T* from, T* to, T* spare, ptrdiff_t stride, ptrdiff_t n, ptrdiff_t step, int32_t count,
                         Op op)
{
    switch (count) {
    case 1: return ownJoinNeighbours<1>(from, to, n, step, op);
    case 2: return ownJoinNeighbours<2>(from, to, n, step, op);
    case 3: return ownJoinNeighbours<3>(from, to, n, step, op);
    case 4: return ownJoinNeighbours<4>(from, to, n, step, op);
    case 5: return ownJoinNeighbours<5>(from, to, n, step, op);
    case 6: return ownJoinNeighbours<6>(from, to, n, step, op);
    case 7: return ownJoinNeighbours<7>(from, to, n, step, op);
    default: break;
    }
    int32_t reach = 4;
    T* made = spare;
    T* next = spare + stride;
    ownJoinNeighbours<4>(from, made, n + (count - reach) * step, step, op);
    for (; 4 * static_cast<int64_t>(reach) < count; reach *= 4) {
        ownWiden(made, next, n + (count - 4 * static_cast<ptrdiff_t>(reach)) * step, step, reach, 4 * reach, op);
        std::swap(made, next);
    }
    ownWiden(made, to, n, step, reach, count, op);
}

// ---- windows down the rows -----------------------------------------------------------------------------------------

template <class T, class Op> static void ownJoinPair(const T* a, const T* b, T* to, ptrdiff_t n, Op op)
{
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) { to[i] = op(a[i], b[i]); });
}

// ROWS output rows of COUNT source rows each: what all of them hold is joined once.
template <int32_t COUNT, int32_t ROWS, class T, class Op>
static void ownJoinRows(const uint8_t* const* rows, T* to, ptrdiff_t stride, ptrdiff_t n, Op op)
{
    const T* s[COUNT + ROWS - 1];
    T* d[ROWS];
    for (int32_t k = 0; k < COUNT + ROWS - 1; ++k) s[k] = reinterpret_cast<const T*>(rows[k]);
    for (int32_t k = 0; k < ROWS; ++k) d[k] = to + k * stride;
    ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
        T above[ROWS];
        above[ROWS - 1] = s[ROWS - 1][i];
        for (int32_t k = ROWS; k < COUNT; ++k) above[ROWS - 1] = op(above[ROWS - 1], s[k][i]);
        for (int32_t r = ROWS - 2; r >= 0; --r) above[r] = op(above[r + 1], s[r][i]);
        d[0][i] = above[0];
        if constexpr (ROWS > 1) {
            T below = s[COUNT][i];
            d[1][i] = op(above[1], below);
            for (int32_t r = 2; r < ROWS; ++r) {
                below = op(below, s[COUNT - 1 + r][i]);
                d[r][i] = op(above[r], below);
            }
        }
    });
}

template <class T, class Op> struct OwnSampleWindows {
    const OwnBand& band;
    int32_t nCols;
    int32_t nRows;
    Op op;

    ptrdiff_t length() const { return band.width + static_cast<ptrdiff_t>(nCols - 1) * band.step; }
    // Of the engine's own rows, which have room for a block behind their end.
    ptrdiff_t stride() const { return ((length() + ownBlockOf<T> - 1) & -ownBlockOf<T>)+ownBlockOf<T>; }
    const T* source(int64_t y) const { return reinterpret_cast<const T*>(band.rows[y]); }

    void joinAlong(const T* row, int32_t y, T* spare) const
    {
        ownJoinAlong(row, reinterpret_cast<T*>(band.out[y]), spare, stride(), band.width, band.step, nCols, op);
    }

    bool oneRow() const
    {
        T* const spare = band.scratch.take<T>(2 * static_cast<int64_t>(stride()));
        if (spare == nullptr) return false;
        for (int32_t y = 0; y < band.height; ++y) joinAlong(source(y), y, spare);
        return true;
    }

    template <int32_t COUNT> bool fewRows() const
    {
        constexpr int32_t ROWS = COUNT > 4 ? 4 : 2;
        T* const joined = band.scratch.take<T>((ROWS + 2) * static_cast<int64_t>(stride()));
        if (joined == nullptr) return false;
        for (int32_t y = 0; y < band.height;) {
            const int32_t count = band.height - y >= ROWS ? ROWS : 1;
            if (count == ROWS) {
                ownJoinRows<COUNT, ROWS>(band.rows + y, joined, stride(), length(), op);
            } else {
                ownJoinRows<COUNT, 1>(band.rows + y, joined, stride(), length(), op);
            }
            for (int32_t k = 0; k < count; ++k) joinAlong(joined + k * stride(), y + k, joined + ROWS * stride());
            y += count;
        }
        return true;
    }

    // Output rows in blocks of nRows. What a window holds is the end of one block of source rows and the start of the
    // next: ends are kept for a block, the start grows with each output row. Rows that are one row are joined once.
    bool manyRows() const
    {
        const int32_t block = std::min(nRows, band.height);
        T* const start = band.scratch.take<T>((static_cast<int64_t>(block) + 4) * stride());
        const T** const ends = band.scratch.take<const T*>(block);
        if (start == nullptr || ends == nullptr) return false;
        for (int64_t y = 0; y < band.height; y += nRows) {
            const int32_t count = static_cast<int32_t>(std::min<int64_t>(nRows, band.height - y));
            joinEnds(y, count, start + 4 * stride(), ends);
            joinBlock(static_cast<int32_t>(y), count, start, ends);
        }
        return true;
    }

    // ends[k]: rows y + k to y + nRows - 1. Rows that every window of the block holds are joined without being kept.
    void joinEnds(int64_t y, int32_t count, T* buffer, const T** ends) const
    {
        const T* end = source(y + nRows - 1);
        if (count == nRows) ends[nRows - 1] = end;
        for (int32_t k = nRows - 2; k >= 0; --k) {
            if (source(y + k) != source(y + k + 1)) {
                T* const next = buffer + std::min(k, count - 1) * stride();
                ownJoinPair(source(y + k), end, next, length(), op);
                end = next;
            }
            if (k < count) ends[k] = end;
        }
    }

    void joinBlock(int32_t y, int32_t count, T* start, const T* const* ends) const
    {
        T* const window = start + stride();
        const T* begun = nullptr;
        for (int32_t k = 0; k < count; ++k) {
            const T* const entering = k > 0 ? source(static_cast<int64_t>(y) + nRows + k - 1) : nullptr;
            const bool isSame = k > 1 && entering == source(static_cast<int64_t>(y) + nRows + k - 2);
            if (isSame && ends[k] == ends[k - 1]) {
                memcpy(band.out[y + k], band.out[y + k - 1], static_cast<size_t>(band.width) * sizeof(T));
                continue;
            }
            if (k == 1) begun = entering;
            if (k > 1 && !isSame) {
                ownJoinPair(begun, entering, start, length(), op);
                begun = start;
            }
            if (k > 0) ownJoinPair(ends[k], begun, window, length(), op);
            joinAlong(k > 0 ? window : ends[0], y + k, window + stride());
        }
    }

    bool run() const
    {
        switch (nRows) {
        case 1: return oneRow();
        case 2: return fewRows<2>();
        case 3: return fewRows<3>();
        case 4: return fewRows<4>();
        case 5: return fewRows<5>();
        case 6: return fewRows<6>();
        case 7: return fewRows<7>();
        default: return manyRows();
        }
    }
};

// ---- bits ----------------------------------------------------------------------------------------------------------

static inline uint64_t ownLoadWord(const uint8_t* from)
{
    uint64_t word;
    memcpy(&word, from, sizeof word);
    return word;
}

// Eight bytes of a row of bits from a bit on. Lanes of a word are bytes: what a shift carries from one to the next is
// masked away, so the byte order of the machine does not matter.
struct OwnBitsFrom {
    ptrdiff_t offset;
    int32_t left;
    uint64_t high;
    uint64_t low;
    explicit OwnBitsFrom(int64_t bit)
        : offset(static_cast<ptrdiff_t>(bit / 8))
        , left(static_cast<int32_t>(bit % 8))
        , high(0x0101010101010101u * ((0xFFu << left) & 0xFFu))
        , low(0x0101010101010101u * (0xFFu >> (8 - left)))
    {
    }
    uint64_t operator()(const uint8_t* row) const
    {
        const uint8_t* const from = row + offset;
        return (ownLoadWord(from) << left & high) | (ownLoadWord(from + 1) >> (8 - left) & low);
    }
};

// All rows of a band lie at one stride, so that every join is one loop over the band.
template <class Op> struct OwnBitWindows {
    const OwnBand& band;
    int32_t nCols;
    int32_t nRows;
    Op op;

    ptrdiff_t sourceBytes() const { return ownBytesOfBits(0, band.width + nCols - 1); }
    ptrdiff_t stride() const { return (sourceBytes() + 8) & ~static_cast<ptrdiff_t>(7); }

    // Windows of `count` bits of each row, of which there are windows of `reach`.
    void widen(const uint8_t* from, uint8_t* to, ptrdiff_t n, int32_t reach, int32_t count) const
    {
        const int64_t last = count - reach;
        const OwnBitsFrom second(std::min<int64_t>(reach, last));
        const OwnBitsFrom third(std::min<int64_t>(2 * static_cast<int64_t>(reach), last));
        const OwnBitsFrom fourth(last);
        const bool isPair = count <= 2 * static_cast<int64_t>(reach);
        const Op join = op;
        if (isPair) {
            OWN_IVDEP
            for (ptrdiff_t i = 0; i < n; i += 8) {
                const uint64_t joined = join(ownLoadWord(from + i), fourth(from + i));
                memcpy(to + i, &joined, sizeof joined);
            }
            return;
        }
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; i += 8) {
            const uint8_t* const at = from + i;
            const uint64_t joined = join(join(ownLoadWord(at), second(at)), join(third(at), fourth(at)));
            memcpy(to + i, &joined, sizeof joined);
        }
    }

    bool run() const
    {
        const int64_t words = stride() / 8;
        const int64_t rows = static_cast<int64_t>(band.height) + nRows - 1;
        // Loads reach beyond the last row by the width of a window and a block.
        const int64_t room = rows * words + nCols / 64 + 2 + 2 * ownBlockOf<uint64_t>;
        uint64_t* made = band.scratch.take<uint64_t>(room);
        uint64_t* next = band.scratch.take<uint64_t>(room);
        if (made == nullptr || next == nullptr) return false;
        for (int64_t y = 0; y < rows; ++y) memcpy(made + y * words, band.rows[y], static_cast<size_t>(sourceBytes()));
        for (int32_t reach = 1; reach < nRows;) {
            const int32_t count = static_cast<int32_t>(std::min<int64_t>(4 * static_cast<int64_t>(reach), nRows));
            const ptrdiff_t n = static_cast<ptrdiff_t>((rows - count + 1) * words);
            ownWiden(made, next, n, static_cast<ptrdiff_t>(words), reach, count, op);
            std::swap(made, next);
            reach = count;
        }
        for (int32_t reach = 1; reach < nCols;) {
            const int32_t count = static_cast<int32_t>(std::min<int64_t>(4 * static_cast<int64_t>(reach), nCols));
            widen(reinterpret_cast<const uint8_t*>(made), reinterpret_cast<uint8_t*>(next), band.height * stride(),
                  reach, count);
            std::swap(made, next);
            reach = count;
        }
        for (int32_t y = 0; y < band.height; ++y) {
            memcpy(band.out[y], made + y * words, static_cast<size_t>(ownBytesOfBits(0, band.width)));
        }
        return true;
    }
};

template <class SampleOp, class BitOp>
static bool ownExtremaOf(const OwnBand& band, int32_t depth, int32_t nCols, int32_t nRows)
{
    if (depth == PXK_DEPTH_1U) return OwnBitWindows<BitOp> { band, nCols, nRows, {} }.run();
    return ownForIntegerDepth(depth, [&](auto tag) {
        return OwnSampleWindows<typename decltype(tag)::Sample, SampleOp> { band, nCols, nRows, {} }.run();
    });
}

bool ownExtremaBand(const OwnBand& band, int32_t depth, OwnExtremum kind, int32_t nCols, int32_t nRows)
{
    if (kind == OwnExtremum::LARGEST) return ownExtremaOf<OwnLargest, OwnAnyBit>(band, depth, nCols, nRows);
    return ownExtremaOf<OwnSmallest, OwnAllBits>(band, depth, nCols, nRows);
}
