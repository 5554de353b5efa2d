// SPDX-License-Identifier: BSD-2-Clause
#include "ownshape.h"

#include <algorithm>
#include <cmath>

OwnShape ownShapeOf(const OwnQuad& quad)
{
    OwnShape shape;
    const double sense = ownTurnAt(quad, 0) > 0 ? 1 : -1;
    for (int32_t k = 0; k < 4; ++k) {
        const OwnPoint from = quad.corners[k], to = quad.corners[(k + 1) % 4];
        const double dx = (to.x - from.x) * sense, dy = (to.y - from.y) * sense;
        const double length = std::max(fabs(dx), fabs(dy));
        shape.sides[k] = { from, { -dy / length, dx / length } };
    }
    return shape;
}

OwnSpan ownSpanOf(const OwnShape& shape, double y, double margin, double xFirst, double xLast)
{
    for (const OwnEdge& side : shape.sides) {
        const double inner = side.normal.y * (y - side.corner.y) + margin; // at the corner's column
        const double crossing = side.corner.x - inner / side.normal.x;
        if (side.normal.x > 0) {
            xFirst = std::max(xFirst, crossing);
        } else if (side.normal.x < 0) {
            xLast = std::min(xLast, crossing);
        } else if (!(inner >= 0)) {
            return { 0, 0 };
        }
    }
    xFirst = ceil(xFirst);
    xLast = floor(xLast);
    if (!(xFirst <= xLast)) return { 0, 0 };
    return { static_cast<int32_t>(xFirst), static_cast<int32_t>(xLast) + 1 };
}

double ownCoverage(const OwnShape& shape, double x, double y)
{
    double coverage = 1;
    for (const OwnEdge& side : shape.sides) {
        const double inner = side.normal.x * (x - side.corner.x) + side.normal.y * (y - side.corner.y);
        coverage *= inner >= -ownOnSide ? 1 : std::max(1 + inner, 0.0);
    }
    return coverage;
}
