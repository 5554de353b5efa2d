// SPDX-License-Identifier: BSD-2-Clause
// Alpha and scaled products
// The compositions of Porter and Duff, on pictures premultiplied by their alpha and shown
// over black.
#include "exhibit.h"

// A picture with a disc for its alpha: 255 inside, and less and less towards the edge.
static PxkImage* discOf(const PxkImage* picture, double centre)
{
    PxkImage* image = newImage(4, PXK_DEPTH_8U, w, h);
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            const double u = (x + 0.5) / w - centre, v = (y + 0.5) / h - 0.5;
            const double alpha = 6 * (0.36 - sqrt(u * u + v * v)) + 0.5;
            unsigned char* pixel =
                (unsigned char*)image->imageData + y * image->widthStep + 4 * x;
            memcpy(pixel,
                   (unsigned char*)picture->imageData + y * picture->widthStep + 3 * x, 3);
            pixel[3] = (unsigned char)(alpha < 0 ? 0 : alpha > 1 ? 255 : 255 * alpha);
        }
    return image;
}

// Premultiply by alpha
// Each colour is multiplied by its pixel's alpha, here a disc that fades at its edge.
EXHIBIT(alpha_premultiply, PICTURE)
{
    out = discOf(photo, 0.4);
    START;
    pxkPreMultiplyAlpha(out, -1);
    STOP;
}

// Over
// The photo's disc in front of the second picture's.
EXHIBIT(alpha_over, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_OVER, 1);
    STOP;
}

// In
// The first where the second is.
EXHIBIT(alpha_in, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_IN, 1);
    STOP;
}

// Out
// The first where the second is not.
EXHIBIT(alpha_out, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_OUT, 1);
    STOP;
}

// Atop
// The first inside the shape of the second, and the rest of the second.
EXHIBIT(alpha_atop, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_ATOP, 1);
    STOP;
}

// Xor
// Each where the other is not.
EXHIBIT(alpha_xor, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_XOR, 1);
    STOP;
}

// Plus
// The sum of both.
EXHIBIT(alpha_plus, PICTURE)
{
    PxkImage* a = discOf(photo, 0.4);
    PxkImage* b = discOf(other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = newImage(4, PXK_DEPTH_8U, w, h);
    START;
    pxkAlphaComposite(a, b, out, PXK_COMPOSITE_PLUS, 1);
    STOP;
}

// A quarter of the photo
// One alpha for the whole picture blends without any alpha channel.
EXHIBIT(alpha_quarter, PICTURE)
{
    START;
    pxkAlphaCompositeC(photo, other, out, PXK_COMPOSITE_OVER, 64, 255, 0);
    STOP;
}

// Half of it
// 128 of 255 for the photo.
EXHIBIT(alpha_half, PICTURE)
{
    START;
    pxkAlphaCompositeC(photo, other, out, PXK_COMPOSITE_OVER, 128, 255, 0);
    STOP;
}

// Product of pictures
// Scaled so that 255 times 255 is 255: the gradient shades the photo.
EXHIBIT(alpha_product, PICTURE)
{
    START;
    pxkMultiplyScale(photo, ramp, out);
    STOP;
}

// Product with a constant
// 128 of 255: half as bright.
EXHIBIT(alpha_product_constant, PICTURE)
{
    START;
    pxkMultiplySScale(photo, out, 128);
    STOP;
}
