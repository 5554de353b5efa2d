// SPDX-License-Identifier: BSD-2-Clause
// Warps, rotation and remapping
// Pixels ask for their place in the source; what no place belongs to stays as it is.
#include "exhibit.h"

// Rotate
// By 30 degrees round the middle, cubic; what the picture does not cover stays black.
EXHIBIT(warp_rotate, PICTURE)
{
    double xShift, yShift;
    pxkGetRotateShift(w / 2, h / 2, 30, &xShift, &yShift);
    START;
    pxkRotate(photo, out, 30, xShift, yShift, PXK_INTER_CUBIC);
    STOP;
}

// Rotate by a right angle
// Pixels are only moved.
EXHIBIT(warp_right_angle, PICTURE)
{
    out = newImage(3, PXK_DEPTH_8U, h, w);
    START;
    pxkRotate(photo, out, 90, 0, w - 1, PXK_INTER_NN);
    STOP;
}

// Shear
// Rows slide to the right, the more the lower.
EXHIBIT(warp_shear, PICTURE)
{
    START;
    pxkShear(photo, out, 0.4, 0, 0, 0, PXK_INTER_LINEAR);
    STOP;
}

// Affine
// Shrunk, sheared and mirrored by one matrix.
EXHIBIT(warp_affine, PICTURE)
{
    double coeffs[2][3] = { { -0.7, 0.2, 0.8 * w }, { 0.1, 0.6, 0.1 * w } };
    START;
    pxkWarpAffine(photo, out, coeffs, PXK_INTER_LINEAR);
    STOP;
}

// A result that fits
// The bound of the transformed photo tells how large the result is, and how far to move it.
EXHIBIT(warp_bound, PICTURE)
{
    double coeffs[2][3] = { { 0.8, 0.5, 0 }, { -0.3, 0.6, 0 } }, bound[2][2];
    START;
    pxkGetAffineBound(photo, coeffs, bound);
    coeffs[0][2] = -bound[0][0];
    coeffs[1][2] = -bound[0][1];
    out = newImage(3, PXK_DEPTH_8U, (int)ceil(bound[1][0] - bound[0][0]) + 1,
                   (int)ceil(bound[1][1] - bound[0][1]) + 1);
    pxkWarpAffine(photo, out, coeffs, PXK_INTER_LINEAR);
    STOP;
}

// Perspective
// The whole photo on a quadrangle, like a picture on a wall.
EXHIBIT(warp_perspective, PICTURE)
{
    double quad[4][2] = { { 0.1 * w, 0.05 * h },
                          { 0.85 * w, 0.3 * h },
                          { 0.9 * w, 0.75 * h },
                          { 0.05 * w, 0.95 * h } };
    START;
    pxkWarpPerspectiveQ(photo, out, quad, 0, PXK_INTER_LINEAR);
    STOP;
}

// Perspective, straightened
// The other way: a quadrangle in the photo fills the result.
EXHIBIT(warp_straightened, PICTURE)
{
    double quad[4][2] = { { 0.3 * w, 0.1 * h },
                          { 0.7 * w, 0.2 * h },
                          { 0.8 * w, 0.9 * h },
                          { 0.2 * w, 0.7 * h } };
    START;
    pxkWarpPerspectiveQ(photo, out, quad, 1, PXK_INTER_CUBIC);
    STOP;
}

// Bilinear
// The same quadrangle as in perspective: lines along the sides keep their spacing,
// diagonals bend.
EXHIBIT(warp_bilinear, PICTURE)
{
    double quad[4][2] = { { 0.1 * w, 0.05 * h },
                          { 0.85 * w, 0.3 * h },
                          { 0.9 * w, 0.75 * h },
                          { 0.05 * w, 0.95 * h } };
    START;
    pxkWarpBilinearQ(photo, out, quad, 0, PXK_INTER_LINEAR);
    STOP;
}

// Transforms by their coefficients
// A quadrangle gives the coefficients of each transform, and coefficients give the warp;
// red, green and blue each take another one.
EXHIBIT(warp_transforms, PICTURE)
{
    double quad[4][2] = { { 0.1 * w, 0.1 * h },
                          { 0.7 * w, 0.1 * h },
                          { 0.9 * w, 0.9 * h },
                          { 0.1 * w, 0.8 * h } };
    double box[4][2] = { { 0.1 * w, 0.1 * h },
                         { 0.7 * w, 0.1 * h },
                         { 0.8 * w, 0.8 * h },
                         { 0.2 * w, 0.8 * h } };
    double affine[2][3], bilinear[2][4], perspective[3][3];
    PxkROI from = { 3, 0, 0, w, h }, to = { 3, 0, 0, w, h };
    pxkGetAffineTransform(photo, affine, box);
    pxkGetBilinearTransform(photo, bilinear, quad);
    pxkGetPerspectiveTransform(photo, perspective, quad);
    photo->roi = &from;
    out->roi = &to;
    START;
    pxkWarpAffine(photo, out, affine, PXK_INTER_LINEAR);
    from.coi = to.coi = 2;
    pxkWarpBilinear(photo, out, bilinear, 0, PXK_INTER_LINEAR);
    from.coi = to.coi = 1;
    pxkWarpPerspective(photo, out, perspective, 0, PXK_INTER_LINEAR);
    STOP;
}

// Where corners go
// The quadrangle that a transform makes of a picture, and the rectangle round it.
EXHIBIT(warp_corners, TEXT)
{
    double wanted[4][2] = { { 0.1 * w, 0.1 * h },
                            { 0.7 * w, 0.1 * h },
                            { 0.9 * w, 0.9 * h },
                            { 0.1 * w, 0.8 * h } };
    double turn[2][3] = { { 0.8, 0.6, 0 }, { -0.6, 0.8, 0 } };
    double bilinear[2][4], perspective[3][3], quad[4][2], bound[2][2];
    pxkGetBilinearTransform(photo, bilinear, wanted);
    pxkGetPerspectiveTransform(photo, perspective, wanted);
    START;
    pxkGetPerspectiveQuad(photo, perspective, quad);
    pxkGetPerspectiveBound(photo, perspective, bound);
    STOP;
    printf("perspective: last corner %6.1f, %6.1f; from %6.1f, %6.1f\n", quad[3][0],
           quad[3][1], bound[0][0], bound[0][1]);
    pxkGetBilinearQuad(photo, bilinear, quad);
    pxkGetBilinearBound(photo, bilinear, bound);
    printf("bilinear:    last corner %6.1f, %6.1f; from %6.1f, %6.1f\n", quad[3][0],
           quad[3][1], bound[0][0], bound[0][1]);
    pxkGetAffineQuad(photo, turn, quad);
    pxkGetAffineBound(photo, turn, bound);
    printf("affine:      last corner %6.1f, %6.1f; from %6.1f, %6.1f\n", quad[3][0],
           quad[3][1], bound[0][0], bound[0][1]);
}

// Stairs
// A small copy with hard edges, enlarged.
EXHIBIT(warp_stairs, PICTURE)
{
    PxkImage* small = newImage(3, PXK_DEPTH_8U, 64, 64);
    double coeffs[2][3] = { { 50.0 / w, 0.03, 4 }, { -0.02, 50.0 / h, 10 } };
    pxkSet(small, 255);
    START;
    pxkWarpAffine(photo, small, coeffs, PXK_INTER_LINEAR);
    STOP;
    pxkResize(small, out, w, 64, h, 64, PXK_INTER_NN);
}

// Smooth edges
// The same with PXK_WARP_SMOOTH_EDGE: pixels at the edge are mixed with the ground.
EXHIBIT(warp_smooth, PICTURE)
{
    PxkImage* small = newImage(3, PXK_DEPTH_8U, 64, 64);
    double coeffs[2][3] = { { 50.0 / w, 0.03, 4 }, { -0.02, 50.0 / h, 10 } };
    pxkSet(small, 255);
    START;
    pxkWarpAffine(photo, small, coeffs, PXK_INTER_LINEAR | PXK_WARP_SMOOTH_EDGE);
    STOP;
    pxkResize(small, out, w, 64, h, 64, PXK_INTER_NN);
}

// Remap
// A swirl: positions turn the more the nearer they are to the middle.
EXHIBIT(warp_swirl, PICTURE)
{
    PxkImage* xMap = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* yMap = newImage(1, PXK_DEPTH_32F, w, h);
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            const double u = 2.0 * x / (w - 1) - 1, v = 2.0 * y / (h - 1) - 1;
            const double turn = 3 * exp(-4 * (u * u + v * v));
            *floatAt(xMap, x, y) =
                (float)((u * cos(turn) + v * sin(turn) + 1) * (w - 1) / 2);
            *floatAt(yMap, x, y) =
                (float)((v * cos(turn) - u * sin(turn) + 1) * (h - 1) / 2);
        }
    START;
    pxkRemap(photo, xMap, yMap, out, PXK_INTER_LINEAR);
    STOP;
}

// Remap to a barrel
// Positions outside the photo leave the ground as it is.
EXHIBIT(warp_barrel, PICTURE)
{
    PxkImage* xMap = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* yMap = newImage(1, PXK_DEPTH_32F, w, h);
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            const double u = 2.0 * x / (w - 1) - 1, v = 2.0 * y / (h - 1) - 1;
            const double stretch = 0.8 + 0.35 * (u * u + v * v);
            *floatAt(xMap, x, y) = (float)((u * stretch + 1) * (w - 1) / 2);
            *floatAt(yMap, x, y) = (float)((v * stretch + 1) * (h - 1) / 2);
        }
    START;
    pxkRemap(photo, xMap, yMap, out, PXK_INTER_CUBIC);
    STOP;
}
