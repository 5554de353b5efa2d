/* SPDX-License-Identifier: BSD-2-Clause */
// Transforms of the plane, and the quadrangles that they make of rectangles.
#pragma once

#include "frame/ownreport.h"

struct OwnPoint {
    double x;
    double y;
};

// Corners in the order (left, top), (right, top), (right, bottom), (left, bottom) of the rectangle they belong to.
struct OwnQuad {
    OwnPoint corners[4];
};

// A region by its first and last pixels.
struct OwnBounds {
    double left;
    double top;
    double right;
    double bottom;
};

// x' = c0 x + c1 y + c2, y' = c3 x + c4 y + c5.
struct OwnAffine {
    double c[6];
    OwnPoint at(OwnPoint p) const { return { c[0] * p.x + c[1] * p.y + c[2], c[3] * p.x + c[4] * p.y + c[5] }; }
};

// x' = c0 x y + c1 x + c2 y + c3, y' the same from c4 on.
struct OwnBilinear {
    double c[8];
    OwnPoint at(OwnPoint p) const
    {
        const double product = p.x * p.y;
        return { c[0] * product + c[1] * p.x + c[2] * p.y + c[3], c[4] * product + c[5] * p.x + c[6] * p.y + c[7] };
    }
};

// x' = (c0 x + c1 y + c2) / (c6 x + c7 y + c8), y' = (c3 x + c4 y + c5) / (c6 x + c7 y + c8).
struct OwnPerspective {
    double c[9];
    OwnPoint at(OwnPoint p) const
    {
        const double divisor = c[6] * p.x + c[7] * p.y + c[8];
        return { (c[0] * p.x + c[1] * p.y + c[2]) / divisor, (c[3] * p.x + c[4] * p.y + c[5]) / divisor };
    }
};

// The transform that takes a rectangle, more than a point on both axes, to a quadrangle; an affine one to a
// parallelogram.
void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnAffine& transform);
void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnBilinear& transform);
void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnPerspective& transform);

inline OwnQuad ownCornersOf(const OwnBounds& bounds)
{
    return { { { bounds.left, bounds.top },
               { bounds.right, bounds.top },
               { bounds.right, bounds.bottom },
               { bounds.left, bounds.bottom } } };
}

template <class Transform> inline OwnQuad ownQuadOf(const Transform& transform, const OwnBounds& bounds)
{
    OwnQuad quad = ownCornersOf(bounds);
    for (OwnPoint& corner : quad.corners) corner = transform.at(corner);
    return quad;
}

OwnBounds ownBoundsOf(const OwnQuad& quad);

// The cross product of the edge that leads to a corner and the one that leaves it: its sign tells the sense of turning.
double ownTurnAt(const OwnQuad& quad, int32_t corner);

// The fault of a quadrangle that is not strictly convex, as the text to report, or null. Corners that are no numbers
// make it degenerate.
const char* ownQuadFault(const OwnQuad& quad);
bool ownIsParallelogram(const OwnQuad& quad);

// The clipped region of an image. False: it has no pixels.
[[nodiscard]] bool ownRegionBounds(const PxkImage* image, OwnBounds& bounds);
