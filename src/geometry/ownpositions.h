/* SPDX-License-Identifier: BSD-2-Clause */
// Where the pixels of a destination row lie in the source.
#pragma once

#include "ownquad.h"

// Destination pixels that are handled together: what is known of them stays in the first-level cache.
constexpr int32_t ownMostRun = 256;

// Source positions in pixels and 65536ths of a pixel.
struct OwnFixedRun {
    int32_t x[ownMostRun];
    int32_t y[ownMostRun];
    int32_t xPart[ownMostRun];
    int32_t yPart[ownMostRun];
};

struct OwnRealRun {
    double x[ownMostRun];
    double y[ownMostRun];
};

// An affine map from destination to source, rounded to 16 fraction bits. All sums are taken modulo 2^64: intermediate
// ones may leave the range where the position does not.
struct OwnFixedMap {
    struct Axis {
        uint64_t perColumn;
        uint64_t perRow;
        uint64_t start; // of pixel (0, 0)
    };
    Axis x;
    Axis y;
    int32_t mostRun; // pixels whose positions differ by less than 2^31
};

// `bias`, in 65536ths, is added to both coordinates.
OwnFixedMap ownFixedMapOf(const OwnAffine& inverse, int32_t bias);
void ownFixedPositions(const OwnFixedMap& map, int32_t x, int32_t y, int32_t n, OwnFixedRun& run);

// Any map from destination to source, in double precision.
struct OwnRealMap {
    void (*positions)(const double* c, double x, double y, int32_t n, OwnRealRun& run); // of n pixels from (x, y) on
    double c[13];
};

OwnRealMap ownRealMapOf(const OwnAffine& map);
OwnRealMap ownRealMapOf(const OwnBilinear& map);
OwnRealMap ownRealMapOf(const OwnPerspective& map);

// The reverse of the bilinear map of a rectangle to a quadrangle, which has one sense everywhere.
OwnRealMap ownInverseBilinear(const OwnBounds& bounds, const OwnQuad& quad);

OwnAffine ownInverse(const OwnAffine& transform);
OwnPerspective ownInverse(const OwnPerspective& transform);
