// SPDX-License-Identifier: BSD-2-Clause
// Fixed filters
// Common kernels by name, at every depth.
#include "exhibit.h"

// Sobel, x
// Edges that run down the picture, dark to bright.
EXHIBIT(fixed_sobel_x, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_SOBEL_X_3x3);
    STOP;
}

// Sobel, y
// Edges that run across.
EXHIBIT(fixed_sobel_y, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_SOBEL_Y_3x3);
    STOP;
}

// Prewitt, x
// Equal weights along the edge.
EXHIBIT(fixed_prewitt_x, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_PREWITT_X_3x3);
    STOP;
}

// Prewitt, y
// The same across.
EXHIBIT(fixed_prewitt_y, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_PREWITT_Y_3x3);
    STOP;
}

// Laplace, 3 by 3
// Four neighbours less the pixel: lines and spots.
EXHIBIT(fixed_laplace3, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_LAPLACE_3x3);
    STOP;
}

// Laplace, 5 by 5
// Twelve neighbours, some of them twice.
EXHIBIT(fixed_laplace5, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_LAPLACE_5x5);
    STOP;
}

// High pass, 3 by 3
// What differs from its nearest neighbours.
EXHIBIT(fixed_highpass3, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_HIGHPASS_3x3);
    STOP;
}

// High pass, 5 by 5
// What differs from its surroundings.
EXHIBIT(fixed_highpass5, PICTURE)
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_HIGHPASS_5x5);
    STOP;
}

// Gauss, 3 by 3
// A little softer.
EXHIBIT(fixed_gauss3, PAIR(photo))
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_GAUSS_3x3);
    STOP;
}

// Gauss, 5 by 5
// Softer: 1 4 6 4 1 in both directions.
EXHIBIT(fixed_gauss5, PAIR(photo))
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_GAUSS_5x5);
    STOP;
}

// Sharpen
// Twice the sample less the mean of its neighbours.
EXHIBIT(fixed_sharpen, PAIR(photo))
{
    START;
    pxkFixedFilter(photo, out, PXK_FILTER_SHARPEN_3x3);
    STOP;
}
