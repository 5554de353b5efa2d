// SPDX-License-Identifier: BSD-2-Clause
// Arithmetic and logic of two pictures
// Sample by sample, limited to the depth's range, on regions and channels, under masks, in
// place. pxkAdd, pxkSubtract and pxkMultiply work at all seven depths, pxkAnd, pxkOr and
// pxkXor at six: floats have no bits to combine.
#include "exhibit.h"

// Add a gradient
// Sums above 255 stay at 255: the right side saturates to white.
EXHIBIT(arith_add, PICTURE)
{
    START;
    pxkAdd(photo, ramp, out);
    STOP;
}

// Subtract a gradient
// Differences below 0 stay at 0.
EXHIBIT(arith_subtract, PICTURE)
{
    START;
    pxkSubtract(photo, ramp, out);
    STOP;
}

// Add a second picture
// Saturation again, wherever both are bright.
EXHIBIT(arith_add_other, PICTURE)
{
    START;
    pxkAdd(photo, other, out);
    STOP;
}

// Subtract the rings
// Destination and source may be one image: here a copy of the photo is changed in place.
EXHIBIT(arith_in_place, PICTURE)
{
    pxkCopy(photo, out);
    START;
    pxkSubtract(out, rings, out);
    STOP;
}

// Multiply by 0 to 4
// Five stripes of the factors 0, 1, 2, 3 and 4, with products limited to 255.
EXHIBIT(arith_multiply, PICTURE)
{
    PxkImage* factors = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI stripe = { 0, 0, 0, w / 5, h };
    int i;
    factors->roi = &stripe;
    for (i = 0; i < 5; i++) {
        stripe.xOffset = w * i / 5;
        pxkSet(factors, i);
    }
    factors->roi = NULL;
    START;
    pxkMultiply(photo, factors, out);
    STOP;
}

// And
// Bit by bit with the gradient, whose high bits open from left to right.
EXHIBIT(arith_and, PICTURE)
{
    START;
    pxkAnd(photo, ramp, out);
    STOP;
}

// Or
// Bit by bit with the rings.
EXHIBIT(arith_or, PICTURE)
{
    START;
    pxkOr(photo, rings, out);
    STOP;
}

// Exclusive or
// With the gradient; the same call again would bring the photo back.
EXHIBIT(arith_xor, PICTURE)
{
    START;
    pxkXor(photo, ramp, out);
    STOP;
}

// Add under a mask
// Only the pixels inside the ellipse become brighter.
EXHIBIT(arith_mask, PICTURE)
{
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    START;
    pxkAdd(photo, photo, out);
    STOP;
}

// Add to one channel
// Channel of interest 1 in all three images: the gradient reaches blue only.
EXHIBIT(arith_channel, PICTURE)
{
    PxkROI blue = { 1, 0, 0, w, h };
    pxkCopy(photo, out);
    photo->roi = ramp->roi = out->roi = &blue;
    START;
    pxkAdd(photo, ramp, out);
    STOP;
}

// Two masks
// Masks of the images of one call are combined: left half of one, ellipse of the other.
EXHIBIT(arith_two_masks, PICTURE)
{
    PxkImage* left = newImage(1, PXK_DEPTH_1U, w, h);
    PxkROI half = { 0, 0, 0, w / 2, h };
    left->roi = &half;
    pxkSet(left, 1);
    left->roi = NULL;
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    rings->maskROI = left;
    START;
    pxkSubtract(photo, rings, out);
    STOP;
}

// Add in 16 bits
// With twice the room nothing saturates: the mean of both pictures, by a shift.
EXHIBIT(arith_wide, PICTURE)
{
    PxkImage* a = newImage(3, PXK_DEPTH_16U, w, h);
    PxkImage* b = newImage(3, PXK_DEPTH_16U, w, h);
    pxkConvert(photo, a);
    pxkConvert(other, b);
    START;
    pxkAdd(a, b, a);
    pxkRShiftS(a, a, 1);
    STOP;
    pxkConvert(a, out);
}
