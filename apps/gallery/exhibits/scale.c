// Zoom, resize, decimate, mirror
// The same picture in other sizes, and reversed.
#include "exhibit.h"

// Zoom, nearest pixels
// An eighth of the photo each way, eight times as large: each pixel becomes a square.
EXHIBIT(scale_zoom_nearest, PICTURE)
{
    PxkROI middle = { 0, w * 7 / 16, h * 7 / 16, w / 8, h / 8 };
    photo->roi = &middle;
    START;
    pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_NN);
    STOP;
}

// Zoom, linear
// The same part, two by two pixels weighed.
EXHIBIT(scale_zoom_linear, PICTURE)
{
    PxkROI middle = { 0, w * 7 / 16, h * 7 / 16, w / 8, h / 8 };
    photo->roi = &middle;
    START;
    pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_LINEAR);
    STOP;
}

// Zoom, cubic
// The same part, a curve through four by four pixels.
EXHIBIT(scale_zoom_cubic, PICTURE)
{
    PxkROI middle = { 0, w * 7 / 16, h * 7 / 16, w / 8, h / 8 };
    photo->roi = &middle;
    START;
    pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_CUBIC);
    STOP;
}

// Resize, each axis for itself
// Five quarters as wide and three quarters as high; what does not fit is cut off.
EXHIBIT(scale_resize, PICTURE)
{
    START;
    pxkResize(photo, out, 5, 4, 3, 4, PXK_INTER_CUBIC);
    STOP;
}

// Decimate fine circles
// Every fourth pixel: circles that are too narrow turn up as others that are not there.
EXHIBIT(scale_decimate, DETAIL)
{
    PxkImage* circles = pxkCreateImageJaehne(PXK_DEPTH_8U, w, h);
    out = newImage(1, PXK_DEPTH_8U, w / 4, h / 4);
    START;
    pxkDecimate(circles, out, 1, 4, 1, 4, PXK_INTER_NN);
    STOP;
    pxkDeallocate(circles, PXK_FREE_HEADER | PXK_FREE_DATA);
}

// The mean of each box
// The same size by super-sampling: most of what is too narrow becomes gray.
EXHIBIT(scale_boxes, PAIR(scale_decimate))
{
    PxkImage* circles = pxkCreateImageJaehne(PXK_DEPTH_8U, w, h);
    out = newImage(1, PXK_DEPTH_8U, w / 4, h / 4);
    START;
    pxkDecimate(circles, out, 1, 4, 1, 4, PXK_INTER_SUPER);
    STOP;
    pxkDeallocate(circles, PXK_FREE_HEADER | PXK_FREE_DATA);
}

// Blur, then decimate
// A window of 9 by 9 pixels in front of every fourth pixel.
EXHIBIT(scale_blurred, PAIR(scale_decimate))
{
    PxkImage* circles = pxkCreateImageJaehne(PXK_DEPTH_8U, w, h);
    out = newImage(1, PXK_DEPTH_8U, w / 4, h / 4);
    START;
    pxkDecimateExt(circles, out, 1, 4, 1, 4, PXK_INTER_NN, 9, 9);
    STOP;
    pxkDeallocate(circles, PXK_FREE_HEADER | PXK_FREE_DATA);
}

// Boxes with parts of pixels
// Three sevenths of the photo: pixels count by the area that a box covers of them.
EXHIBIT(scale_parts, DETAIL)
{
    out = newImage(3, PXK_DEPTH_8U, w * 3 / 7, h * 3 / 7);
    START;
    pxkResize(photo, out, 3, 7, 3, 7, PXK_INTER_SUPER);
    STOP;
}

// A mask that grows along
// The source's mask comes into the new scale with its pixels.
EXHIBIT(scale_mask, PICTURE)
{
    pxkCopy(other, out);
    photo->maskROI = ellipse;
    START;
    pxkResize(photo, out, 2, 3, 1, 1, PXK_INTER_LINEAR);
    STOP;
}

// Left and right
// Each row reversed.
EXHIBIT(scale_left_right, PICTURE)
{
    START;
    pxkMirror(photo, out, 1);
    STOP;
}

// Upside down
// The order of the rows reversed.
EXHIBIT(scale_upside_down, PICTURE)
{
    START;
    pxkMirror(photo, out, 0);
    STOP;
}

// Half a turn in place
// Both at once, inside a region of one picture.
EXHIBIT(scale_half_turn, PICTURE)
{
    PxkROI inner = { 0, w / 6, h / 6, w * 2 / 3, h * 2 / 3 };
    pxkCopy(photo, out);
    out->roi = &inner;
    START;
    pxkMirror(out, out, -1);
    STOP;
}

// Mirrored writing
// One-bit rows are reversed a machine word at a time.
EXHIBIT(scale_writing, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkMirror(writing, out, 1);
    STOP;
}
