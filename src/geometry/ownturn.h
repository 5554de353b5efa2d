/* SPDX-License-Identifier: BSD-2-Clause */
// Turns by right angles that take every pixel to a pixel.
#pragma once

#include "frame/ownpieces.h"
#include "frame/ownsource.h"
#include "ownquad.h"

// x' = xx x + xy y + xShift, y' = yx x + yy y + yShift, where one of each pair is 1 or -1 and the other one 0.
struct OwnRightTurn {
    int32_t xx;
    int32_t xy;
    int32_t yx;
    int32_t yy;
    int64_t xShift;
    int64_t yShift;
};

// False: the transform is none.
[[nodiscard]] bool ownTurnOf(const OwnAffine& transform, OwnRightTurn& turn);

// True where ownTurnPiece serves the depth: one-bit rows can only be moved.
inline bool ownCanTurn(const OwnRightTurn& turn, int32_t depth)
{
    return depth != PXK_DEPTH_1U || (turn.xx == 1 && turn.yy == 1);
}

// Brings the turned pixels of `taps` to a piece, whose first pixel has the coordinates (x, y).
void ownTurnPiece(const OwnRightTurn& turn, const OwnSource& source, const OwnRect& taps, const OwnDestination& piece,
                  int32_t x, int32_t y);
