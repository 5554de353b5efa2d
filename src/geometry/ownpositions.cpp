// SPDX-License-Identifier: BSD-2-Clause
#include "ownpositions.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "frame/ownivdep.h"

// ---- fixed point ---------------------------------------------------------------------------------------------------

// Nothing of use lies outside these limits: even a destination of one pixel has its source within 2^31 pixels.
static int64_t ownFixedOf(double value)
{
    constexpr double most = 0x1p62;
    return llrint(std::max(-most, std::min(value * 65536, most)));
}

static OwnFixedMap::Axis ownFixedAxis(const double* c, int32_t bias)
{
    return { static_cast<uint64_t>(ownFixedOf(c[0])), static_cast<uint64_t>(ownFixedOf(c[1])),
             static_cast<uint64_t>(ownFixedOf(c[2]) + bias) };
}

OwnFixedMap ownFixedMapOf(const OwnAffine& inverse, int32_t bias)
{
    OwnFixedMap map = { ownFixedAxis(inverse.c, bias), ownFixedAxis(inverse.c + 3, bias), 1 };
    const int64_t step =
        std::max(std::abs(static_cast<int64_t>(map.x.perColumn)), std::abs(static_cast<int64_t>(map.y.perColumn)));
    const int64_t most = (INT32_MAX - 65535) / std::max<int64_t>(step, 1);
    map.mostRun = static_cast<int32_t>(std::max<int64_t>(1, std::min<int64_t>(most, ownMostRun)));
    return map;
}

// The whole part of the first position is kept apart, so that the others need no more than 32 bits.
static void ownFixedLine(const OwnFixedMap::Axis& axis, int32_t x, int32_t y, int32_t n, int32_t* whole, int32_t* part)
{
    const uint64_t column = static_cast<uint64_t>(static_cast<int64_t>(x));
    const uint64_t row = static_cast<uint64_t>(static_cast<int64_t>(y));
    const int64_t start = static_cast<int64_t>(axis.perColumn * column + axis.perRow * row + axis.start);
    const int64_t base = std::max<int64_t>(INT32_MIN / 2, std::min<int64_t>(start >> 16, INT32_MAX));
    const uint32_t base32 = static_cast<uint32_t>(base);
    const uint32_t step = n > 1 ? static_cast<uint32_t>(axis.perColumn) : 0;
    uint32_t position = static_cast<uint32_t>(start & 0xFFFF);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t relative = static_cast<int32_t>(position);
        whole[i] = static_cast<int32_t>(base32 + static_cast<uint32_t>(relative >> 16));
        part[i] = relative & 0xFFFF;
        position += step;
    }
}

void ownFixedPositions(const OwnFixedMap& map, int32_t x, int32_t y, int32_t n, OwnFixedRun& run)
{
    ownFixedLine(map.x, x, y, n, run.x, run.xPart);
    ownFixedLine(map.y, x, y, n, run.y, run.yPart);
}

// ---- double precision ----------------------------------------------------------------------------------------------

// Positions are formed from the pixel's own coordinates, not step by step: they do not depend on where a run starts.

static void ownAffinePositions(const double* c, double x, double y, int32_t n, OwnRealRun& run)
{
    const double xStart = c[1] * y + c[2], yStart = c[4] * y + c[5];
    const double xStep = c[0], yStep = c[3];
    for (int32_t i = 0; i < n; ++i) {
        const double column = x + i;
        run.x[i] = xStep * column + xStart;
        run.y[i] = yStep * column + yStart;
    }
}

static void ownPerspectivePositions(const double* c, double x, double y, int32_t n, OwnRealRun& run)
{
    const double xStart = c[1] * y + c[2], yStart = c[4] * y + c[5], start = c[7] * y + c[8];
    const double xStep = c[0], yStep = c[3], step = c[6];
    for (int32_t i = 0; i < n; ++i) {
        const double column = x + i;
        const double inverse = 1 / (step * column + start);
        run.x[i] = (xStep * column + xStart) * inverse;
        run.y[i] = (yStep * column + yStart) * inverse;
    }
}

OwnRealMap ownRealMapOf(const OwnAffine& map)
{
    OwnRealMap real = { ownAffinePositions, {} };
    memcpy(real.c, map.c, sizeof map.c);
    return real;
}

OwnRealMap ownRealMapOf(const OwnPerspective& map)
{
    OwnRealMap real = { ownPerspectivePositions, {} };
    memcpy(real.c, map.c, sizeof map.c);
    return real;
}

// Along a row a bilinear map is affine.
OwnRealMap ownRealMapOf(const OwnBilinear& map)
{
    const auto positions = [](const double* c, double x, double y, int32_t n, OwnRealRun& run) {
        const double row[6] = { c[0] * y + c[1], c[2], c[3], c[4] * y + c[5], c[6], c[7] };
        ownAffinePositions(row, x, y, n, run);
    };
    OwnRealMap real = { positions, {} };
    memcpy(real.c, map.c, sizeof map.c);
    return real;
}

// With the corner p, the sides e across and f down, and the rest g = p0 - p1 + p2 - p3, a pixel lies h = u e + v f +
// u v g away from p. Without u this is a v v + b v + c = 0, whose root has 2 a v + b above 0 where the sense is
// positive; mirroring the plane makes it so. Of its two forms the one is taken that subtracts nothing of its own kind:
// a may be next to nothing, or nothing in a parallelogram.
struct OwnBilinearSolver {
    double mirror; // 1 or -1, times all x
    OwnPoint p;
    OwnPoint e;
    OwnPoint f;
    OwnPoint g;
    double left;
    double width;
    double top;
    double height;
};
static_assert(sizeof(OwnBilinearSolver) == sizeof OwnRealMap::c, "as many numbers as a map has room for");

static void ownInverseBilinearPositions(const double* c, double x, double y, int32_t n, OwnRealRun& run)
{
    OwnBilinearSolver s;
    memcpy(&s, c, sizeof s);
    const double a = s.g.x * s.f.y - s.g.y * s.f.x;
    const double turn = s.e.x * s.f.y - s.e.y * s.f.x;
    const double hy = y - s.p.y;
    for (int32_t i = 0; i < n; ++i) {
        const double hx = (x + i) * s.mirror - s.p.x;
        const double b = turn + (hx * s.g.y - hy * s.g.x);
        const double rest = hx * s.e.y - hy * s.e.x;
        const double square = b * b - 4 * a * rest;
        const double root = sqrt(square > 0 ? square : 0);
        const double v = (b >= 0 ? -2 * rest : root - b) / (b >= 0 ? b + root : 2 * a);
        const double acrossX = s.e.x + v * s.g.x, acrossY = s.e.y + v * s.g.y;
        const double length = acrossX * acrossX + acrossY * acrossY;
        const double u = ((hx - v * s.f.x) * acrossX + (hy - v * s.f.y) * acrossY) / length;
        run.x[i] = s.left + u * s.width;
        run.y[i] = s.top + v * s.height;
    }
}

OwnRealMap ownInverseBilinear(const OwnBounds& bounds, const OwnQuad& quad)
{
    const double mirror = ownTurnAt(quad, 0) > 0 ? 1 : -1;
    OwnPoint p[4];
    for (int32_t k = 0; k < 4; ++k) p[k] = { quad.corners[k].x * mirror, quad.corners[k].y };
    const OwnPoint e = { p[1].x - p[0].x, p[1].y - p[0].y }, f = { p[3].x - p[0].x, p[3].y - p[0].y };
    const OwnPoint g = { (p[2].x - p[3].x) - e.x, (p[2].y - p[3].y) - e.y };
    const OwnBilinearSolver solver = {
        mirror, p[0], e, f, g, bounds.left, bounds.right - bounds.left, bounds.top, bounds.bottom - bounds.top
    };
    OwnRealMap real = { ownInverseBilinearPositions, {} };
    memcpy(real.c, &solver, sizeof solver);
    return real;
}

// ---- inverses ------------------------------------------------------------------------------------------------------

OwnAffine ownInverse(const OwnAffine& transform)
{
    const double* const c = transform.c;
    const double d = c[0] * c[4] - c[1] * c[3];
    return { { c[4] / d, -c[1] / d, (c[1] * c[5] - c[4] * c[2]) / d, -c[3] / d, c[0] / d,
               (c[3] * c[2] - c[0] * c[5]) / d } };
}

// The adjugate: a common factor of all coefficients does not matter.
OwnPerspective ownInverse(const OwnPerspective& transform)
{
    const double* const c = transform.c;
    return { { c[4] * c[8] - c[5] * c[7], c[2] * c[7] - c[1] * c[8], c[1] * c[5] - c[2] * c[4],
               c[5] * c[6] - c[3] * c[8], c[0] * c[8] - c[2] * c[6], c[2] * c[3] - c[0] * c[5],
               c[3] * c[7] - c[4] * c[6], c[1] * c[6] - c[0] * c[7], c[0] * c[4] - c[1] * c[3] } };
}
