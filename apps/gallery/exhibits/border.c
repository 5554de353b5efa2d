// SPDX-License-Identifier: BSD-2-Clause
// Beyond the edge
// What an operation reads outside the picture is set for each side. In the first five a
// small copy of the photo moves down and to the right by a third, and what comes in is what
// lies there; the result is shown four times as large.
#include "exhibit.h"

#define ALL_SIDES (PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT)

// The photo at a quarter of its size.
static PxkImage* newSmall(void)
{
    PxkImage* small = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkDecimate(photo, small, 1, 4, 1, 4, PXK_INTER_SUPER);
    return small;
}

// A kernel of one row or one column with a single 1, in the last place, and the anchor in
// the first: it moves a picture to the right, or down.
static PxkConvKernel* newMover(int nCols, int nRows)
{
    int* values = calloc((size_t)nCols * nRows, sizeof *values);
    PxkConvKernel* kernel;
    values[nCols * nRows - 1] = 1;
    kernel = pxkCreateConvKernel(nCols, nRows, 0, 0, values, 0);
    free(values);
    return kernel;
}

// Constant
// One value, here 90.
EXHIBIT(border_constant, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    PxkConvKernel* right = newMover(w / 12, 1);
    PxkConvKernel* down = newMover(1, h / 12);
    pxkSetBorderMode(small, PXK_EDGE_CONST, ALL_SIDES, 90);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
}

// Clamp
// The edge sample goes on for ever.
EXHIBIT(border_clamp, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    PxkConvKernel* right = newMover(w / 12, 1);
    PxkConvKernel* down = newMover(1, h / 12);
    pxkSetBorderMode(small, PXK_EDGE_CLAMP, ALL_SIDES, 0);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
}

// Mirror
// The picture turned over at its edge.
EXHIBIT(border_mirror, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    PxkConvKernel* right = newMover(w / 12, 1);
    PxkConvKernel* down = newMover(1, h / 12);
    pxkSetBorderMode(small, PXK_EDGE_MIRROR, ALL_SIDES, 0);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
}

// Wrap
// The picture begins again.
EXHIBIT(border_wrap, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    PxkConvKernel* right = newMover(w / 12, 1);
    PxkConvKernel* down = newMover(1, h / 12);
    pxkSetBorderMode(small, PXK_EDGE_WRAP, ALL_SIDES, 0);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
}

// A mode for each side
// The top mirrors and the left side wraps; the corner belongs to the top.
EXHIBIT(border_sides, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    PxkConvKernel* right = newMover(w / 12, 1);
    PxkConvKernel* down = newMover(1, h / 12);
    pxkSetBorderMode(small, PXK_EDGE_MIRROR, PXK_SIDE_TOP, 0);
    pxkSetBorderMode(small, PXK_EDGE_WRAP, PXK_SIDE_LEFT, 0);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
}

// A blur and the constant
// White flows in from all sides.
EXHIBIT(border_blur_constant, PICTURE)
{
    pxkSetBorderMode(photo, PXK_EDGE_CONST, ALL_SIDES, 255);
    START;
    pxkBlur(photo, out, 81, 81, 40, 40);
    STOP;
}

// A blur and clamp
// The usual choice for photographs.
EXHIBIT(border_blur_clamp, PICTURE)
{
    pxkSetBorderMode(photo, PXK_EDGE_CLAMP, ALL_SIDES, 0);
    START;
    pxkBlur(photo, out, 81, 81, 40, 40);
    STOP;
}
