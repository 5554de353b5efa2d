// SPDX-License-Identifier: BSD-2-Clause
// Arithmetic and logic with a constant
// One picture and one number, in the forms S for integers and SFP for floats.
#include "exhibit.h"

// Add a constant
// Brighter by 60, with white as the limit.
EXHIBIT(scalar_add, PICTURE)
{
    START;
    pxkAddS(photo, out, 60);
    STOP;
}

// Subtract a constant
// Darker by 60, with black as the limit.
EXHIBIT(scalar_subtract, PICTURE)
{
    START;
    pxkSubtractS(photo, out, 60, 0);
    STOP;
}

// Subtract from a constant
// The last argument turns the difference round: 255 less the sample is the negative.
EXHIBIT(scalar_negative, PICTURE)
{
    START;
    pxkSubtractS(photo, out, 255, 1);
    STOP;
}

// Multiply by a constant
// Twice the value, limited to 255.
EXHIBIT(scalar_multiply, PICTURE)
{
    START;
    pxkMultiplyS(photo, out, 2);
    STOP;
}

// And with a constant
// The two highest bits of each sample remain: four levels a channel.
EXHIBIT(scalar_and, PICTURE)
{
    START;
    pxkAndS(photo, out, 0xC0);
    STOP;
}

// Or with a constant
// The six lowest bits are set.
EXHIBIT(scalar_or, PICTURE)
{
    START;
    pxkOrS(photo, out, 0x3F);
    STOP;
}

// Exclusive or with a constant
// The highest bit turns over: dark and bright change places.
EXHIBIT(scalar_xor, PICTURE)
{
    START;
    pxkXorS(photo, out, 0x80);
    STOP;
}

// Not
// Every bit turns over, here inside the ellipse.
EXHIBIT(scalar_not, PICTURE)
{
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    START;
    pxkNot(photo, out);
    STOP;
}

// Shift left
// Bits pushed past the eighth are lost: values from 128 on begin again at 0.
EXHIBIT(scalar_left, PICTURE)
{
    START;
    pxkLShiftS(photo, out, 1);
    STOP;
}

// Shift right
// A quarter of the value.
EXHIBIT(scalar_right, PICTURE)
{
    START;
    pxkRShiftS(photo, out, 2);
    STOP;
}

// Square
// Samples from 0 to 15 squared are 0 to 225: a gamma of 2.
EXHIBIT(scalar_square, PICTURE)
{
    START;
    pxkRShiftS(photo, out, 4);
    pxkSquare(out, out);
    STOP;
}

// Floats
// A line through the levels: 1.6 times the sample less 0.3, where 0 is black and 1 is
// white.
EXHIBIT(scalar_floats, PICTURE)
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    START;
    pxkMultiplySFP(floats, floats, 1.6f);
    pxkAddSFP(floats, floats, -0.3f);
    STOP;
    pxkScaleFP(floats, out, 0.0f, 1.0f);
}

// A float less the picture
// 0.8 less the sample: a negative that begins below white.
EXHIBIT(scalar_float_negative, PICTURE)
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    START;
    pxkSubtractSFP(floats, floats, 0.8f, 1);
    STOP;
    pxkScaleFP(floats, out, 0.0f, 1.0f);
}

// Set to a float
// Middle gray in floats, and the rings a little on top.
EXHIBIT(scalar_float_set, PICTURE)
{
    PxkImage* ground = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    pxkScaleFP(rings, floats, -0.2f, 0.2f);
    START;
    pxkSetFP(ground, 0.5f);
    pxkAdd(ground, floats, ground);
    STOP;
    pxkScaleFP(ground, out, 0.0f, 1.0f);
}
