// SPDX-License-Identifier: BSD-2-Clause
#include "ownturn.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "frame/ownpixelcopy.h"

bool ownTurnOf(const OwnAffine& transform, OwnRightTurn& turn)
{
    const double* const c = transform.c;
    const auto isUnit = [](double a, double b) { return (fabs(a) == 1 && b == 0) || (a == 0 && fabs(b) == 1); };
    const auto isShift = [](double shift) { return fabs(shift) <= 0x1p40 && shift == nearbyint(shift); };
    if (!isUnit(c[0], c[1]) || !isUnit(c[3], c[4]) || c[0] * c[4] == c[1] * c[3]) return false;
    if (!isShift(c[2]) || !isShift(c[5])) return false;
    turn = { static_cast<int32_t>(c[0]), static_cast<int32_t>(c[1]), static_cast<int32_t>(c[3]),
             static_cast<int32_t>(c[4]), static_cast<int64_t>(c[2]), static_cast<int64_t>(c[5]) };
    return true;
}

// Part of a view.
static OwnView ownPartOf(const OwnView& view, int32_t x, int32_t y, int32_t width, int32_t height)
{
    OwnView part = view;
    part.first += y * view.rowStep + x * view.pixelStep;
    part.width = width;
    part.height = height;
    if (view.sampleBytes == 0) {
        part.first += (view.bit + x) / 8;
        part.bit = (view.bit + x) % 8;
    }
    return part;
}

// ---- blocks --------------------------------------------------------------------------------------------------------

// Blocks of so many pixels a side are turned in a buffer: lines of the cache are read and written as a whole, and no
// row of the destination has to stay in the cache while others are read.
constexpr int32_t ownTurnSide = 64;
constexpr int32_t ownMostUnit = 8; // bytes of a pixel that is moved as one

// Loops that the compiler turns into straight lines of vectors.
#define OWN_UNROLL _Pragma("GCC unroll 8")

// Some squares side by side, 8 by 8 bytes or 4 by 4 pairs of bytes, a row of each in each word.
template <class T, int32_t SQUARES> struct OwnSquares {
    static constexpr int32_t side = 8 / sizeof(T);
    uint64_t rows[side][SQUARES];

    // Rows change parts across the diagonal: the high parts of the first of two and the low ones of the second.
    template <int32_t STEP> void swapRows(int32_t shift, uint64_t mask)
    {
        OWN_UNROLL
        for (int32_t pair = 0; pair < side / 2; ++pair) {
            const int32_t row = pair / STEP * 2 * STEP + pair % STEP;
            OWN_UNROLL
            for (int32_t k = 0; k < SQUARES; ++k) {
                const uint64_t change = ((rows[row][k] >> shift) ^ rows[row + STEP][k]) & mask;
                rows[row + STEP][k] ^= change;
                rows[row][k] ^= change << shift;
            }
        }
    }

    void transpose()
    {
        swapRows<side / 2>(32, 0x00000000FFFFFFFFu);
        swapRows<side / 4>(16, 0x0000FFFF0000FFFFu);
        if constexpr (side == 8) swapRows<1>(8, 0x00FF00FF00FF00FFu);
    }
};

// A block whose rows are columns of the source, `step` bytes from pixel to pixel; from row to row of the block the
// source goes on by a sample, forward or backward. Squares at the ends overlap, so that none is cut.
template <class T, int32_t SQUARES>
static void ownTurnSquares(const uint8_t* from, ptrdiff_t step, bool isBackward, OwnSize size, uint8_t* to)
{
    using Squares = OwnSquares<T, SQUARES>;
    constexpr int32_t side = Squares::side, length = side * SQUARES;
    constexpr ptrdiff_t bytes = sizeof(T);
    const ptrdiff_t next = isBackward ? -ownTurnSide * bytes : ownTurnSide * bytes; // in the block
    for (int32_t xNext = 0; xNext < size.width; xNext += side) {
        const int32_t x = std::min(xNext, size.width - side);
        for (int32_t yNext = 0; yNext < size.height; yNext += length) {
            const int32_t y = std::min(yNext, size.height - length);
            const uint8_t* const square = from + x * step + (isBackward ? -(y + length - 1) : y) * bytes;
            Squares squares;
            for (int32_t k = 0; k < side; ++k) memcpy(squares.rows[k], square + k * step, sizeof squares.rows[k]);
            squares.transpose();
            uint8_t* const first = to + ((isBackward ? y + length - 1 : y) * ownTurnSide + x) * bytes;
            for (int32_t k = 0; k < length; ++k) memcpy(first + k * next, &squares.rows[k % side][k / side], 8);
        }
    }
}

template <class T>
static void ownTurnAcross(const uint8_t* from, ptrdiff_t step, bool isBackward, OwnSize size, uint8_t* to)
{
    constexpr int32_t most = 4; // words of the widest vectors that all processors share
    if (size.height >= most * OwnSquares<T, most>::side) {
        return ownTurnSquares<T, most>(from, step, isBackward, size, to);
    }
    ownTurnSquares<T, 1>(from, step, isBackward, size, to);
}

// Any unit and any steps.
template <int32_t UNIT>
static void ownTurnUnits(const uint8_t* from, ptrdiff_t step, ptrdiff_t rowStep, OwnSize size, uint8_t* to)
{
    for (int32_t y = 0; y < size.height; ++y, from += rowStep, to += ownTurnSide * UNIT) {
        for (int32_t x = 0; x < size.width; ++x) memcpy(to + x * UNIT, from + x * step, UNIT);
    }
}

static void ownTurnBlock(const OwnView& from, int32_t unit, OwnSize size, uint8_t* to)
{
    const bool isAcross = from.rowStep == unit || from.rowStep == -unit;
    if (unit == 1 && isAcross && size.width >= 8 && size.height >= 8) {
        return ownTurnAcross<uint8_t>(from.first, from.pixelStep, from.rowStep < 0, size, to);
    }
    if (unit == 2 && isAcross && size.width >= 4 && size.height >= 4) {
        return ownTurnAcross<uint16_t>(from.first, from.pixelStep, from.rowStep < 0, size, to);
    }
    switch (unit) {
    case 1: return ownTurnUnits<1>(from.first, from.pixelStep, from.rowStep, size, to);
    case 2: return ownTurnUnits<2>(from.first, from.pixelStep, from.rowStep, size, to);
    case 3: return ownTurnUnits<3>(from.first, from.pixelStep, from.rowStep, size, to);
    case 4: return ownTurnUnits<4>(from.first, from.pixelStep, from.rowStep, size, to);
    case 6: return ownTurnUnits<6>(from.first, from.pixelStep, from.rowStep, size, to);
    default: return ownTurnUnits<8>(from.first, from.pixelStep, from.rowStep, size, to);
    }
}

// Copies pixels of at most 4 adjacent channels from a view whose steps are turned.
static void ownCopyTurned(const OwnView& from, const OwnView& to, const OwnBits* mask)
{
    const int32_t unit = from.nChannels * from.sampleBytes;
    const bool isDirect = mask == nullptr && to.pixelStep == unit;
    uint8_t pixels[ownTurnSide * ownTurnSide * ownMostUnit];
    // Squares of small pixels in higher blocks: rows of the source are read for longer, so that processors see what
    // comes next.
    const int32_t most = unit <= 2 ? ownTurnSide * ownMostUnit / unit : ownTurnSide;
    for (int32_t y = 0; y < to.height; y += most) {
        for (int32_t x = 0; x < to.width; x += ownTurnSide) {
            const OwnSize size = { std::min(ownTurnSide, to.width - x), std::min(most, to.height - y) };
            ownTurnBlock(ownPartOf(from, x, y, size.width, size.height), unit, size, pixels);
            const OwnView part = ownPartOf(to, x, y, size.width, size.height);
            const ptrdiff_t rowBytes = static_cast<ptrdiff_t>(ownTurnSide) * unit;
            if (isDirect) {
                for (int32_t k = 0; k < size.height; ++k) {
                    memcpy(part.first + k * part.rowStep, pixels + k * rowBytes,
                           static_cast<size_t>(size.width * unit));
                }
                continue;
            }
            OwnView turned = part;
            turned.first = pixels;
            turned.rowStep = rowBytes;
            turned.pixelStep = unit;
            turned.channelStep = from.sampleBytes;
            OwnBits maskBits;
            if (mask != nullptr) maskBits = ownBitsAt(*mask, x, y);
            ownCopyView(turned, part, mask != nullptr ? &maskBits : nullptr);
        }
    }
}

// Copies whole pixels row by row, from the last one of each source row to the first.
static void ownCopyBackward(const OwnView& from, const OwnView& to)
{
    const int32_t unit = from.nChannels * from.sampleBytes;
    const OwnPixelCopy copy = ownPixelCopies(unit).backward;
    for (int32_t y = 0; y < to.height; ++y) {
        copy(from.first + y * from.rowStep, 0, to.first + y * to.rowStep, 0, to.width, unit);
    }
}

// The way of a turned view to the destination.
static void ownMoveTurned(const OwnRightTurn& turn, const OwnView& from, const OwnView& to, const OwnBits* mask)
{
    if (turn.xx == 1) return ownCopyView(from, to, mask);
    const auto isAdjacent = [](const OwnView& view) {
        return view.nChannels == 1 || (view.nChannels <= 4 && view.channelStep == view.sampleBytes);
    };
    if (!isAdjacent(from) || !isAdjacent(to)) {
        for (int32_t c = 0; c < to.nChannels; ++c) {
            ownMoveTurned(turn, ownChannelView(from, c), ownChannelView(to, c), mask);
        }
        return;
    }
    const int32_t unit = from.nChannels * from.sampleBytes;
    const bool isPacked = from.pixelStep == -unit && to.pixelStep == unit;
    if (turn.xx == -1 && isPacked && mask == nullptr) return ownCopyBackward(from, to);
    ownCopyTurned(from, to, mask);
}

// ---- pieces --------------------------------------------------------------------------------------------------------

// Pixels first to end - 1 along one axis.
struct OwnRange64 {
    int64_t first;
    int64_t end;
};

// Where an axis of n pixels from `first` on comes to lie, cut to a piece.
static OwnRange64 ownTurnedRange(int32_t sense, int64_t shift, int64_t first, int64_t n, int64_t from, int64_t count)
{
    const int64_t start = sense > 0 ? first + shift : shift - (first + n - 1);
    return { std::max(start, from), std::min(start + n, from + count) };
}

void ownTurnPiece(const OwnRightTurn& turn, const OwnSource& source, const OwnRect& taps, const OwnDestination& piece,
                  int32_t x, int32_t y)
{
    const bool isAcross = turn.xx == 0; // rows become columns
    const OwnRange64 columns = isAcross ? ownTurnedRange(turn.xy, turn.xShift, taps.y, taps.height, x, piece.rect.width)
                                        : ownTurnedRange(turn.xx, turn.xShift, taps.x, taps.width, x, piece.rect.width);
    const OwnRange64 rows = isAcross ? ownTurnedRange(turn.yx, turn.yShift, taps.x, taps.width, y, piece.rect.height)
                                     : ownTurnedRange(turn.yy, turn.yShift, taps.y, taps.height, y, piece.rect.height);
    if (columns.first >= columns.end || rows.first >= rows.end) return;
    const int32_t column = static_cast<int32_t>(columns.first - x), row = static_cast<int32_t>(rows.first - y);
    const OwnView to = ownPartOf(piece.view, column, row, static_cast<int32_t>(columns.end - columns.first),
                                 static_cast<int32_t>(rows.end - rows.first));
    // The inverse of a turn is its transpose.
    const int64_t dx = columns.first - turn.xShift, dy = rows.first - turn.yShift;
    OwnView from = source.view({ static_cast<int32_t>(turn.xx * dx + turn.yx * dy),
                                 static_cast<int32_t>(turn.xy * dx + turn.yy * dy), to.width, to.height });
    const ptrdiff_t pixelStep = from.pixelStep, rowStep = from.rowStep;
    from.pixelStep = turn.xx * pixelStep + turn.xy * rowStep;
    from.rowStep = turn.yx * pixelStep + turn.yy * rowStep;
    OwnBits mask;
    if (piece.mask != nullptr) mask = ownBitsAt(*piece.mask, column, row);
    ownMoveTurned(turn, from, to, piece.mask != nullptr ? &mask : nullptr);
}
