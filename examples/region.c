/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * A region limits an operation to part of an image, and to one channel when it names one.
 *
 * Here the middle of a gray-blue picture turns red: channel 3 of a picture in the order blue, green, red.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

static void printPixel(const char* what, const PxkImage* image, int x, int y)
{
    const unsigned char* pixel = (const unsigned char*)image->imageData + y * image->widthStep + x * image->nChannels;
    printf("%s: blue %d, green %d, red %d\n", what, pixel[0], pixel[1], pixel[2]);
}

int main(void)
{
    PxkImage* image;
    PxkROI* middle;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);

    image = pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 8, 100, 60, NULL, NULL,
                                 NULL, NULL);
    pxkAllocateImage(image, 1, 90);
    middle = pxkCreateROI(3, 25, 15, 50, 30);
    if (pxkGetErrStatus() < 0 || !image->imageData || !middle) return EXIT_FAILURE;

    image->roi = middle;
    pxkSet(image, 255);
    printPixel("in the middle", image, 50, 30);
    printPixel("in a corner", image, 0, 0);

    /* The record is the caller's: it can be changed between calls, shared by images, and is released on its own or with
       an image. Channel 0 means all of them. */
    pxkSetROI(middle, 0, 0, 0, 100, 1);
    pxkSet(image, 0);
    printPixel("in the top row", image, 50, 0);

    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
    return pxkGetErrStatus() < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
