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

// Moves a picture to the right and down by a third of its width and height, by kernels with
// a single 1.
static void moveByThird(PxkImage* small, PxkImage* moved)
{
    int* values = calloc((size_t)(small->width + small->height), sizeof *values);
    PxkConvKernel *right, *down;
    values[small->width / 3] = 1;
    right = pxkCreateConvKernel(small->width / 3 + 1, 1, 0, 0, values, 0);
    values[small->width / 3] = 0;
    values[small->height / 3] = 1;
    down = pxkCreateConvKernel(1, small->height / 3 + 1, 0, 0, values, 0);
    START;
    pxkConvolveSep2D(small, moved, right, down);
    STOP;
    pxkDeleteConvKernel(right);
    pxkDeleteConvKernel(down);
    free(values);
}

// Constant
// One value, here 90.
EXHIBIT(border_constant, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkSetBorderMode(small, PXK_EDGE_CONST, ALL_SIDES, 90);
    moveByThird(small, moved);
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
}

// Clamp
// The edge sample goes on for ever.
EXHIBIT(border_clamp, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkSetBorderMode(small, PXK_EDGE_CLAMP, ALL_SIDES, 0);
    moveByThird(small, moved);
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
}

// Mirror
// The picture turned over at its edge.
EXHIBIT(border_mirror, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkSetBorderMode(small, PXK_EDGE_MIRROR, ALL_SIDES, 0);
    moveByThird(small, moved);
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
}

// Wrap
// The picture begins again.
EXHIBIT(border_wrap, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkSetBorderMode(small, PXK_EDGE_WRAP, ALL_SIDES, 0);
    moveByThird(small, moved);
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
}

// A mode for each side
// The top mirrors and the left side wraps; the corner belongs to the top.
EXHIBIT(border_sides, PICTURE)
{
    PxkImage* small = newSmall();
    PxkImage* moved = newImage(3, PXK_DEPTH_8U, w / 4, h / 4);
    pxkSetBorderMode(small, PXK_EDGE_MIRROR, PXK_SIDE_TOP, 0);
    pxkSetBorderMode(small, PXK_EDGE_WRAP, PXK_SIDE_LEFT, 0);
    moveByThird(small, moved);
    pxkZoom(moved, out, 4, 1, 4, 1, PXK_INTER_NN);
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
