// SPDX-License-Identifier: BSD-2-Clause
// Comparison
// Pictures in, one bit a pixel out: masks are made this way.
#include "exhibit.h"

// Greater than a constant
// A bit is 1 where the gray picture is above 128.
EXHIBIT(compare_greater_constant, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkGreaterS(gray, out, 128);
    STOP;
}

// Less than a constant, in colour
// With three channels the relation must hold in every one of them.
EXHIBIT(compare_less_constant, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkLessS(photo, out, 128);
    STOP;
}

// Greater than another picture
// Against the gradient: a threshold that rises from left to right.
EXHIBIT(compare_greater, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkGreater(photo, ramp, out);
    STOP;
}

// Less than another picture
// Where the photo is darker than the second picture in all channels.
EXHIBIT(compare_less, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkLess(photo, other, out);
    STOP;
}

// Equal pictures
// Where a median of 3 by 3 leaves the pixel as it is.
EXHIBIT(compare_equal, PICTURE)
{
    PxkImage* smooth = newImage(1, PXK_DEPTH_8U, w, h);
    pxkMedianFilter(gray, smooth, 3, 3, 1, 1);
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkEqual(gray, smooth, out);
    STOP;
}

// One channel compared
// Red above 150, by the channel of interest.
EXHIBIT(compare_channel, PICTURE)
{
    PxkROI red = { 3, 0, 0, w, h };
    out = newImage(1, PXK_DEPTH_1U, w, h);
    photo->roi = &red;
    START;
    pxkGreaterS(photo, out, 150);
    STOP;
}

// Equal to a constant
// One of four levels of gray.
EXHIBIT(compare_equal_constant, PICTURE)
{
    PxkImage* levels = newImage(1, PXK_DEPTH_8U, w, h);
    pxkAndS(gray, levels, 0xC0);
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkEqualS(levels, out, 0x80);
    STOP;
}

// Floats between two bounds
// Above 0.3 and below 0.6 of white.
EXHIBIT(compare_floats, PICTURE)
{
    PxkImage* floats = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* below = newImage(1, PXK_DEPTH_1U, w, h);
    pxkScaleFP(gray, floats, 0.0f, 1.0f);
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkGreaterSFP(floats, out, 0.3f);
    pxkLessSFP(floats, below, 0.6f);
    pxkAnd(out, below, out);
    STOP;
}

// Equal floats, nearly
// Within 0.05 of one half; the plain comparison finds no sample that is exactly 0.5.
EXHIBIT(compare_float_near, PICTURE)
{
    PxkImage* floats = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* exactly = newImage(1, PXK_DEPTH_1U, w, h);
    pxkScaleFP(gray, floats, 0.0f, 1.0f);
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkEqualSFPEps(floats, out, 0.5f, 0.05f);
    STOP;
    pxkEqualSFP(floats, exactly, 0.5f);
    printf("%.0f pixels near it, %.0f equal\n", pxkNorm(out, NULL, PXK_NORM_L1),
           pxkNorm(exactly, NULL, PXK_NORM_L1));
}

// Flat places
// Floats that a blur of 9 by 9 moves by less than 0.01.
EXHIBIT(compare_float_pictures, PICTURE)
{
    PxkImage* floats = newImage(1, PXK_DEPTH_32F, w, h);
    PxkImage* smooth = newImage(1, PXK_DEPTH_32F, w, h);
    pxkScaleFP(gray, floats, 0.0f, 1.0f);
    pxkBlur(floats, smooth, 9, 9, 4, 4);
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkEqualFPEps(floats, smooth, out, 0.01f);
    STOP;
}

// From comparison to mask
// The result is ready to be a mask: what is bright shows the second picture.
EXHIBIT(compare_mask, PICTURE)
{
    PxkImage* bright = newImage(1, PXK_DEPTH_1U, w, h);
    pxkCopy(photo, out);
    START;
    pxkGreaterS(gray, bright, 170);
    out->maskROI = bright;
    pxkCopy(other, out);
    STOP;
}
