// SPDX-License-Identifier: BSD-2-Clause
// Convolution and box blur
// Up to ten kernels at once, with integer or float coefficients.
#include "exhibit.h"

// Relief
// A 3 by 3 kernel, coefficients with a sum of 1.
EXHIBIT(convolution_relief, PAIR(photo))
{
    int values[9] = { -2, -1, 0, -1, 1, 1, 0, 1, 2 };
    PxkConvKernel* relief = pxkCreateConvKernel(3, 3, 1, 1, values, 0);
    START;
    pxkConvolve2D(photo, out, &relief, 1, PXK_CONV_SUM);
    STOP;
    pxkDeleteConvKernel(relief);
}

// Motion
// One row of 16 ones, shifted right by 4: the mean along the row.
EXHIBIT(convolution_motion, PAIR(photo))
{
    signed char values[16] = { 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1 };
    PxkConvKernel* motion = pxkCreateConvKernelChar(16, 1, 8, 0, values, 4);
    START;
    pxkConvolve2D(photo, out, &motion, 1, PXK_CONV_SUM);
    STOP;
    pxkDeleteConvKernel(motion);
}

// Two kernels
// Root of the sum of squares of a horizontal and a vertical difference: strength of edges.
EXHIBIT(convolution_edges, PICTURE)
{
    int across[9] = { -1, 0, 1, -2, 0, 2, -1, 0, 1 };
    int down[9] = { -1, -2, -1, 0, 0, 0, 1, 2, 1 };
    PxkConvKernel* edges[2];
    edges[0] = pxkCreateConvKernel(3, 3, 1, 1, across, 0);
    edges[1] = pxkCreateConvKernel(3, 3, 1, 1, down, 0);
    START;
    pxkConvolve2D(photo, out, edges, 2, PXK_CONV_SUMSQROOT);
    STOP;
    pxkDeleteConvKernel(edges[0]);
    pxkDeleteConvKernel(edges[1]);
}

// Separable
// A row of 15 bell-shaped weights and a column of them, in place of 225 products a sample.
EXHIBIT(convolution_separable, PAIR(photo))
{
    int values[15] = { 2, 4, 8, 14, 21, 28, 33, 36, 33, 28, 21, 14, 8, 4, 2 };
    PxkConvKernel* row = pxkCreateConvKernel(15, 1, 7, 0, values, 8);
    PxkConvKernel* column = pxkCreateConvKernel(1, 15, 0, 7, values, 8);
    START;
    pxkConvolveSep2D(photo, out, row, column);
    STOP;
    pxkDeleteConvKernel(row);
    pxkDeleteConvKernel(column);
}

// Convolution under a mask
// The relief inside the ellipse only.
EXHIBIT(convolution_mask, PICTURE)
{
    int values[9] = { -2, -1, 0, -1, 1, 1, 0, 1, 2 };
    PxkConvKernel* relief = pxkCreateConvKernel(3, 3, 1, 1, values, 0);
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    START;
    pxkConvolve2D(photo, out, &relief, 1, PXK_CONV_SUM);
    STOP;
    pxkDeleteConvKernel(relief);
}

// Unsharp mask in floats
// Twice the picture less its mean of 5 by 5: nothing is rounded or limited on the way.
EXHIBIT(convolution_floats, PAIR(photo))
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* sharp = newImage(3, PXK_DEPTH_32F, w, h);
    PxkConvKernelFP* kernel;
    float values[25];
    int i;
    for (i = 0; i < 25; i++) values[i] = i == 12 ? 1.96f : -0.04f;
    kernel = pxkCreateConvKernelFP(5, 5, 2, 2, values);
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    START;
    pxkConvolve2DFP(floats, sharp, &kernel, 1, PXK_CONV_SUM);
    STOP;
    pxkScaleFP(sharp, out, 0.0f, 1.0f);
    pxkDeleteConvKernelFP(kernel);
}

// Separable in floats
// A wide bell: 31 weights along the row, the same 31 down the column.
EXHIBIT(convolution_floats_separable, PAIR(photo))
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* soft = newImage(3, PXK_DEPTH_32F, w, h);
    PxkConvKernelFP *row, *column;
    float values[31], sum = 0;
    int i;
    for (i = 0; i < 31; i++) sum += values[i] = expf((float)(i - 15) * (15 - i) / 72);
    for (i = 0; i < 31; i++) values[i] /= sum;
    row = pxkCreateConvKernelFP(31, 1, 15, 0, values);
    column = pxkCreateConvKernelFP(1, 31, 0, 15, values);
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    START;
    pxkConvolveSep2DFP(floats, soft, row, column);
    STOP;
    pxkScaleFP(soft, out, 0.0f, 1.0f);
    pxkDeleteConvKernelFP(row);
    pxkDeleteConvKernelFP(column);
}

// What a kernel holds
// The coefficients come back as they were given; inside they stand in reverse.
EXHIBIT(convolution_kernel, TEXT)
{
    int values[3] = { 1, 2, 3 }, back[3], nCols, nRows, anchorX, anchorY, nShiftR;
    signed char bytes[3];
    float weights[3] = { 0.25f, 0.5f, 0.25f }, backFP[3];
    PxkConvKernel* kernel = pxkCreateConvKernel(3, 1, 0, 0, values, 4);
    PxkConvKernelFP* kernelFP = pxkCreateConvKernelFP(3, 1, 1, 0, weights);
    START;
    pxkGetConvKernel(kernel, &nCols, &nRows, &anchorX, &anchorY, back, &nShiftR);
    STOP;
    printf("%d x %d, anchor %d, %d, shift %d: %d %d %d\n", nCols, nRows, anchorX, anchorY,
           nShiftR, back[0], back[1], back[2]);
    pxkGetConvKernelChar(kernel, &nCols, &nRows, &anchorX, &anchorY, bytes, &nShiftR);
    printf("as bytes: %d %d %d; inside: %d %d %d\n", bytes[0], bytes[1], bytes[2],
           kernel->values[0], kernel->values[1], kernel->values[2]);
    pxkGetConvKernelFP(kernelFP, &nCols, &nRows, &anchorX, &anchorY, backFP);
    printf("floats, anchor %d, %d: %g %g %g\n", anchorX, anchorY, backFP[0], backFP[1],
           backFP[2]);
    pxkDeleteConvKernel(kernel);
    pxkDeleteConvKernelFP(kernelFP);
}

// Box blur
// The mean of 15 by 15.
EXHIBIT(convolution_blur, PAIR(photo))
{
    START;
    pxkBlur(photo, out, 15, 15, 7, 7);
    STOP;
}

// A wide box blur
// The mean of 101 by 101, at nearly the same cost.
EXHIBIT(convolution_wide_blur, PICTURE)
{
    START;
    pxkBlur(photo, out, 101, 101, 50, 50);
    STOP;
}
