// SPDX-License-Identifier: BSD-2-Clause
// Depth conversion
// pxkConvert keeps values and saturates, pxkScale maps range onto range, pxkScaleFP goes to
// floats and back.
#include "exhibit.h"

// Absolute difference
// Through signed 16 bits: difference, absolute value, and back with saturation.
EXHIBIT(convert_difference, PICTURE)
{
    PxkImage* a = newImage(3, PXK_DEPTH_16S, w, h);
    PxkImage* b = newImage(3, PXK_DEPTH_16S, w, h);
    START;
    pxkConvert(photo, a);
    pxkConvert(other, b);
    pxkSubtract(a, b, a);
    pxkAbs(a, a);
    pxkConvert(a, out);
    STOP;
}

// Wider and back
// 8 bits to the full range of 16 and back: nothing is lost.
EXHIBIT(convert_scale, PAIR(photo))
{
    PxkImage* words = newImage(3, PXK_DEPTH_16U, w, h);
    START;
    pxkScale(photo, words);
    pxkScale(words, out);
    STOP;
    printf("largest difference %.0f\n", pxkNorm(photo, out, PXK_NORM_INF));
}

// Stretched contrast
// Through floats: 60 becomes black and 180 white.
EXHIBIT(convert_stretch, PICTURE)
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    START;
    pxkScaleFP(photo, floats, 0.0f, 255.0f);
    pxkScaleFP(floats, out, 60.0f, 180.0f);
    STOP;
}

// A gamma of 2 in floats
// Samples from 0 to 1, multiplied by themselves.
EXHIBIT(convert_gamma, PICTURE)
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    START;
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    pxkMultiply(floats, floats, floats);
    pxkScaleFP(floats, out, 0.0f, 1.0f);
    STOP;
}

// Bits to gray
// Two levels of choice for 0 and 1.
EXHIBIT(convert_bits, PICTURE)
{
    out = newImage(1, PXK_DEPTH_8U, writing->width, writing->height);
    START;
    pxkBitonalToGray(writing, out, 225, 40);
    STOP;
}
