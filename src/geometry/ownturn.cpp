#include "ownturn.h"

#include <algorithm>
#include <cmath>

bool ownTurnOf(const OwnAffine& transform, OwnTurn& turn)
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

void ownTurnPiece(const OwnTurn& turn, const OwnSource& source, const OwnRect& taps, const OwnDestination& piece,
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
    ownCopyView(from, to, piece.mask != nullptr ? &mask : nullptr);
}
