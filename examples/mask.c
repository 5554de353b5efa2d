/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * A mask is a one-bit image hung on another one: pixels change where its bit is 1.
 *
 * The mask here is a checkerboard of 8 by 8 fields, written byte by byte: the first pixel is the highest bit.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

static PxkImage* makeImage(int depth, int fill)
{
    PxkImage* image =
        pxkCreateImageHeader(1, 0, depth, "GRAY", "G\0\0", PXK_DATA_ORDER_PIXEL, 0, 4, 32, 32, NULL, NULL, NULL, NULL);
    pxkAllocateImage(image, 1, fill);
    if (image && image->imageData) return image;
    fputs("out of memory\n", stderr);
    exit(EXIT_FAILURE);
}

static void drawBoard(PxkImage* mask)
{
    int x, y;
    for (y = 0; y < mask->height; ++y)
        for (x = 0; x < mask->width; x += 8)
            ((unsigned char*)mask->imageData)[y * mask->widthStep + x / 8] = (x / 8 + y / 8) % 2 ? 0xFF : 0;
}

int main(void)
{
    PxkImage *bright, *board, *picture;
    int x;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    bright = makeImage(PXK_DEPTH_8U, 200);
    picture = makeImage(PXK_DEPTH_8U, 50);
    board = makeImage(PXK_DEPTH_1U, 0);
    drawBoard(board);

    picture->maskROI = board;
    pxkCopy(bright, picture);

    for (x = 0; x < picture->width; x += 8) printf("%d ", ((unsigned char*)picture->imageData)[x]);
    printf("\n");

    /* The flag for the mask releases its header and pixels too. */
    pxkDeallocate(picture, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_MASK);
    pxkDeallocate(bright, PXK_FREE_HEADER | PXK_FREE_DATA);
    return pxkGetErrStatus() < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
