/* SPDX-License-Identifier: BSD-2-Clause */
// Which pixels of a destination a quadrangle covers, row by row.
#pragma once

#include "ownquad.h"

// Pixels first to end - 1 of a row.
struct OwnSpan {
    int32_t first;
    int32_t end;
    bool isEmpty() const { return first >= end; }
};

// A side of the shape as the half plane on its inner side. The normal's larger component is 1 or -1, so that the
// distance of a pixel from the side is measured along a row or a column, whichever crosses the side more steeply.
struct OwnEdge {
    OwnPoint corner;
    OwnPoint normal;
};

struct OwnShape {
    OwnEdge sides[4];
};

// Pixels whose distance from a side is less than this lie on it, so that rounding does not take a border away.
constexpr double ownOnSide = 1e-6;

// Of a quadrangle without fault, in either sense.
OwnShape ownShapeOf(const OwnQuad& quad);

// The pixels of row y between xFirst and xLast that lie in the shape or at most `margin` outside.
OwnSpan ownSpanOf(const OwnShape& shape, double y, double margin, double xFirst, double xLast);

// How much of a pixel the shape's pixels cover: 1 inside, and outside as much less as the pixel lies away from the
// sides, so that 0 is reached a pixel away.
double ownCoverage(const OwnShape& shape, double x, double y);
