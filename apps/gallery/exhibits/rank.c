// SPDX-License-Identifier: BSD-2-Clause
// Rank filters
// Windows of any size; the last two arguments say which place of the window lies on the
// pixel.
#include "exhibit.h"

// The photo with about every tenth pixel black or white.
static PxkImage* withSpecks(void)
{
    PxkImage* image = newImage(3, PXK_DEPTH_8U, w, h);
    unsigned state = 1;
    int x, y;
    pxkCopy(photo, image);
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            unsigned char* pixel =
                (unsigned char*)image->imageData + y * image->widthStep + 3 * x;
            state = state * 1664525u + 1013904223u;
            if ((state >> 8) % 10 == 0) memset(pixel, state >> 31 ? 255 : 0, 3);
        }
    return image;
}

// Maximum
// The brightest sample of 9 by 9.
EXHIBIT(rank_max, PICTURE)
{
    START;
    pxkMaxFilter(photo, out, 9, 9, 4, 4);
    STOP;
}

// Minimum
// The darkest sample of 9 by 9.
EXHIBIT(rank_min, PICTURE)
{
    START;
    pxkMinFilter(photo, out, 9, 9, 4, 4);
    STOP;
}

// Beside the pixel
// The darkest of 25 samples that begin at the pixel and go to the right: shadows to the
// left.
EXHIBIT(rank_anchor, PICTURE)
{
    START;
    pxkMinFilter(photo, out, 25, 1, 0, 0);
    STOP;
}

// Black and white specks
// The photo with every tenth pixel spoilt, for the next one.
EXHIBIT(rank_specks, PAIR(photo))
{
    PxkImage* specks = withSpecks();
    START;
    pxkCopy(specks, out);
    STOP;
}

// Median
// The middle sample of 3 by 3 takes the specks away and keeps the edges.
EXHIBIT(rank_median, PAIR(rank_specks))
{
    PxkImage* specks = withSpecks();
    START;
    pxkMedianFilter(specks, out, 3, 3, 1, 1);
    STOP;
}

// A wide median
// 15 by 15.
EXHIBIT(rank_wide_median, PICTURE)
{
    START;
    pxkMedianFilter(photo, out, 15, 15, 7, 7);
    STOP;
}
