// SPDX-License-Identifier: BSD-2-Clause
// Bit reduction and dithering
// Fewer bits a sample: three ways to spread the error of a pixel over its neighbours, one
// fixed pattern, and noise.
#include "exhibit.h"

// Threshold
// One bit a pixel without dithering: 1 from 128 on.
EXHIBIT(dither_none, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkReduceBits(gray, out, 0, PXK_DITHER_NONE, 1);
    STOP;
}

// Floyd and Steinberg
// The error of each pixel goes to four neighbours.
EXHIBIT(dither_fs, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkReduceBits(gray, out, 0, PXK_DITHER_FS, 0);
    STOP;
}

// Jarvis, Judice and Ninke
// To twelve neighbours, which is smoother.
EXHIBIT(dither_jjn, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkReduceBits(gray, out, 0, PXK_DITHER_JJN, 0);
    STOP;
}

// Stucki
// To the same twelve with other weights, which is sharper.
EXHIBIT(dither_stucki, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkReduceBits(gray, out, 0, PXK_DITHER_STUCKI, 0);
    STOP;
}

// Ordered
// A fixed pattern of 4 by 4 thresholds; no error is spread.
EXHIBIT(dither_ordered, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkReduceBits(gray, out, 0, PXK_DITHER_BAYER, 0);
    STOP;
}

// Jitter
// Noise in front of the threshold, drawn from rand.
EXHIBIT(dither_jitter, DETAIL)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    srand(1);
    START;
    pxkReduceBits(gray, out, 6, PXK_DITHER_NONE, 1);
    STOP;
}

// Colour, Floyd and Steinberg
// 0 bits kept: two levels a channel, eight colours.
EXHIBIT(dither_colour_fs, PAIR(photo))
{
    START;
    pxkReduceBits(photo, out, 0, PXK_DITHER_FS, 0);
    STOP;
}

// Colour, ordered
// Two levels a channel.
EXHIBIT(dither_colour_ordered, PAIR(photo))
{
    START;
    pxkReduceBits(photo, out, 0, PXK_DITHER_BAYER, 0);
    STOP;
}

// Colour, Jarvis, Judice and Ninke
// 1 bit kept: the levels 0, 128 and 255.
EXHIBIT(dither_colour_jjn, PAIR(photo))
{
    START;
    pxkReduceBits(photo, out, 0, PXK_DITHER_JJN, 1);
    STOP;
}

// Colour, Stucki
// 2 bits kept: five levels.
EXHIBIT(dither_colour_stucki, PAIR(photo))
{
    START;
    pxkReduceBits(photo, out, 0, PXK_DITHER_STUCKI, 2);
    STOP;
}
