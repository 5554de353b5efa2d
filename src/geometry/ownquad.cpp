// SPDX-License-Identifier: BSD-2-Clause
#include "ownquad.h"

#include <algorithm>
#include <cmath>

#include "frame/ownregion.h"

static OwnPoint operator-(OwnPoint a, OwnPoint b)
{
    return { a.x - b.x, a.y - b.y };
}

static double ownCross(OwnPoint a, OwnPoint b)
{
    return a.x * b.y - a.y * b.x;
}

// The edge that leaves a corner.
static OwnPoint ownEdge(const OwnQuad& quad, int32_t corner)
{
    return quad.corners[(corner + 1) % 4] - quad.corners[corner];
}

void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnAffine& transform)
{
    const OwnPoint origin = to.corners[0], across = ownEdge(to, 0), down = ownEdge(to, 1);
    const double width = from.right - from.left, height = from.bottom - from.top;
    double* const c = transform.c;
    c[0] = across.x / width;
    c[3] = across.y / width;
    c[1] = down.x / height;
    c[4] = down.y / height;
    c[2] = origin.x - c[0] * from.left - c[1] * from.top;
    c[5] = origin.y - c[3] * from.left - c[4] * from.top;
}

void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnBilinear& transform)
{
    const double d = 1 / ((from.right - from.left) * (from.bottom - from.top));
    const auto fit = [&](double p0, double p1, double p2, double p3, double* c) {
        const double top = p1 - p0, right = p2 - p1, bottom = p3 - p2, left = p0 - p3;
        c[0] = (-top - bottom) * d;
        c[1] = (bottom * from.top + top * from.bottom) * d;
        c[2] = (-left * from.right - right * from.left) * d;
        c[3] = p0 - c[0] * from.left * from.top - c[1] * from.left - c[2] * from.top;
    };
    const OwnPoint* const p = to.corners;
    fit(p[0].x, p[1].x, p[2].x, p[3].x, transform.c);
    fit(p[0].y, p[1].y, p[2].y, p[3].y, transform.c + 4);
}

void ownFitQuad(const OwnBounds& from, const OwnQuad& to, OwnPerspective& transform)
{
    const OwnPoint* const p = to.corners;
    const OwnPoint top = ownEdge(to, 0), right = ownEdge(to, 1), bottom = ownEdge(to, 2), left = ownEdge(to, 3);
    const double sumX = right.x + p[0].x - p[3].x, sumY = right.y + p[0].y - p[3].y;
    const double d = 1 / ownCross(bottom, right);
    const double k = (right.y * sumX - right.x * sumY) * d;
    const double g = (sumX * bottom.y - sumY * bottom.x) * d;
    const double width = from.right - from.left, height = from.bottom - from.top;
    double* const c = transform.c;
    c[0] = (p[1].x * g + top.x) / width;
    c[3] = (p[1].y * g + top.y) / width;
    c[1] = (p[3].x * k - left.x) / height;
    c[4] = (p[3].y * k - left.y) / height;
    c[6] = g / width;
    c[7] = k / height;
    c[2] = p[0].x - c[0] * from.left - c[1] * from.top;
    c[5] = p[0].y - c[3] * from.left - c[4] * from.top;
    c[8] = 1 - c[6] * from.left - c[7] * from.top;
}

OwnBounds ownBoundsOf(const OwnQuad& quad)
{
    const OwnPoint first = quad.corners[0];
    OwnBounds bounds = { first.x, first.y, first.x, first.y };
    for (const OwnPoint& corner : quad.corners) {
        bounds.left = std::min(bounds.left, corner.x);
        bounds.top = std::min(bounds.top, corner.y);
        bounds.right = std::max(bounds.right, corner.x);
        bounds.bottom = std::max(bounds.bottom, corner.y);
    }
    return bounds;
}

double ownTurnAt(const OwnQuad& quad, int32_t corner)
{
    return ownCross(ownEdge(quad, (corner + 3) % 4), ownEdge(quad, corner));
}

const char* ownQuadFault(const OwnQuad& quad)
{
    int32_t nPositive = 0;
    for (int32_t k = 0; k < 4; ++k) {
        const double turn = ownTurnAt(quad, k);
        if (!(fabs(turn) > 0) || std::isinf(turn)) return "Quadrangle is degenerate to triangle or length or point";
        nPositive += turn > 0 ? 1 : 0;
    }
    return nPositive % 4 != 0 ? "Quadrangle is concave" : nullptr;
}

bool ownIsParallelogram(const OwnQuad& quad)
{
    constexpr double tolerance = 0.0000001;
    return fabs(ownCross(ownEdge(quad, 0), ownEdge(quad, 2))) <= tolerance
        && fabs(ownCross(ownEdge(quad, 1), ownEdge(quad, 3))) <= tolerance;
}

bool ownRegionBounds(const PxkImage* image, OwnBounds& bounds)
{
    const OwnRect rect = ownRegionRect(image);
    if (rect.width < 1 || rect.height < 1) return false;
    bounds = { static_cast<double>(rect.x), static_cast<double>(rect.y), rect.x + (rect.width - 1.0),
               rect.y + (rect.height - 1.0) };
    return true;
}
