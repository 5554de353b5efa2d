// SPDX-License-Identifier: BSD-2-Clause
// One-bit pictures
// Logic on bits, and pictures of bits as masks.
#include "exhibit.h"

// Bits like writing, 1 inside an ellipse.
static PxkImage* oval(void)
{
    PxkImage* bits = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    unsigned char* row = bits->imageData;
    int x, y;
    for (y = 0; y < bits->height; y++, row += bits->widthStep)
        for (x = 0; x < bits->width; x++) {
            const double u = (2 * x + 1.0) / bits->width - 1,
                         v = (2 * y + 1.0) / bits->height - 1;
            if (u * u / 0.52 + v * v / 0.81 <= 1) row[x / 8] |= 0x80 >> x % 8;
        }
    return bits;
}

// Or on single bits
// At depth 1 a row is a string of bits; any of the images may begin in the middle of a
// byte.
EXHIBIT(bits_or, PICTURE)
{
    PxkImage* shape = oval();
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkOr(writing, shape, out);
    STOP;
}

// And
// Ink inside the ellipse.
EXHIBIT(bits_and, PICTURE)
{
    PxkImage* shape = oval();
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkAnd(writing, shape, out);
    STOP;
}

// Exclusive or
// Ink turns to paper inside the ellipse.
EXHIBIT(bits_xor, PICTURE)
{
    PxkImage* shape = oval();
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkXor(writing, shape, out);
    STOP;
}

// Subtract
// On single bits a - b is a and not b: ink outside the ellipse.
EXHIBIT(bits_subtract, PICTURE)
{
    PxkImage* shape = oval();
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    START;
    pxkSubtract(writing, shape, out);
    STOP;
}

// Shifted against itself
// Regions that begin at bits 0 and 3: what differs is the edges of the strokes.
EXHIBIT(bits_shifted, DETAIL)
{
    PxkImage moved = *writing;
    PxkROI at0 = { 0, 0, 0, writing->width - 3, writing->height };
    PxkROI at3 = { 0, 3, 0, writing->width - 3, writing->height };
    out = newImage(1, PXK_DEPTH_1U, writing->width, writing->height);
    writing->roi = &at0;
    moved.roi = &at3;
    START;
    pxkXor(writing, &moved, out);
    STOP;
}

// Writing as a mask
// A one-bit picture can be hung on any image of another depth.
EXHIBIT(bits_mask, PICTURE)
{
    pxkCopy(photo, out);
    out->maskROI = writing;
    START;
    pxkSet(out, 255);
    STOP;
}
