/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * Dithering keeps the tone of a picture that gets fewer levels.
 *
 * A row of gray fields becomes black and white in each way, and the white pixels of each field are counted: without
 * dithering all or none, otherwise as many as the field was bright. A text picture of a field shows the patterns.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

enum { side = 64, fields = 7 };

static const struct Way {
    const char* name;
    int type;
} ways[] = { { "none", PXK_DITHER_NONE },
             { "Floyd, Steinberg", PXK_DITHER_FS },
             { "Jarvis, Judice, Ninke", PXK_DITHER_JJN },
             { "Stucki", PXK_DITHER_STUCKI },
             { "Bayer", PXK_DITHER_BAYER } };

static PxkImage* makeImage(int depth)
{
    PxkImage* image = pxkCreateImageHeader(1, 0, depth, "GRAY", "G", PXK_DATA_ORDER_PIXEL, 0, 8, side * fields, side,
                                           NULL, NULL, NULL, NULL);
    pxkAllocateImage(image, 1, 0);
    if (image && image->imageData) return image;
    exit(EXIT_FAILURE);
}

static int isWhite(const PxkImage* bits, int x, int y)
{
    return ((const unsigned char*)bits->imageData)[y * bits->widthStep + x / 8] >> (7 - x % 8) & 1;
}

static int percentWhite(const PxkImage* bits, int field)
{
    int x, y, count = 0;
    for (y = 0; y < side; ++y)
        for (x = 0; x < side; ++x) count += isWhite(bits, field * side + x, y);
    return (100 * count + side * side / 2) / (side * side);
}

static void showField(const PxkImage* bits, int field)
{
    int x, y;
    for (y = side / 2; y < side / 2 + 6; ++y) {
        for (x = 0; x < 48; ++x) putchar(isWhite(bits, field * side + x, y) ? '#' : '.');
        putchar('\n');
    }
}

int main(void)
{
    PxkImage *gray, *bits;
    PxkROI field = { 0, 0, 0, side, side };
    int k, way, percent, isKept = 1;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    gray = makeImage(PXK_DEPTH_8U);
    bits = makeImage(PXK_DEPTH_1U);
    gray->roi = &field;
    for (k = 0; k < fields; ++k) {
        field.xOffset = k * side;
        pxkSet(gray, 32 * (k + 1));
    }
    gray->roi = NULL; /* pxkReduceBits takes whole images */

    for (way = 0; way < (int)(sizeof ways / sizeof ways[0]); ++way) {
        pxkReduceBits(gray, bits, 0, ways[way].type, 0);
        printf("%-22s white:", ways[way].name);
        for (k = 0; k < fields; ++k) {
            percent = percentWhite(bits, k);
            printf(" %3d%%", percent);
            if (ways[way].type != PXK_DITHER_NONE && abs(percent - 100 * 32 * (k + 1) / 255) > 8) isKept = 0;
        }
        printf("\n");
        showField(bits, 1);
    }

    pxkDeallocate(gray, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(bits, PXK_FREE_HEADER | PXK_FREE_DATA);
    return pxkGetErrStatus() < 0 || !isKept ? EXIT_FAILURE : EXIT_SUCCESS;
}
