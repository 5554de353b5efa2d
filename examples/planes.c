/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * Channels lie side by side in a row (pixel order) or each in a plane of its own (plane order).
 *
 * Operations take both but not mixed, except with one channel. So a picture goes from one order to the other channel by
 * channel, here through gray headers over the planes, without a copy in between.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

enum { width = 20, height = 10 };

static PxkImage* makeImage(int dataOrder)
{
    PxkImage* image =
        pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", dataOrder, 0, 4, width, height, NULL, NULL, NULL, NULL);
    pxkAllocateImage(image, 1, 0);
    if (image && image->imageData) return image;
    exit(EXIT_FAILURE);
}

/* A gray header whose pixels are plane c, counted from 0. The pixels stay those of `planes`. One channel lies
   the same way in both orders; the header names the order of the picture that its samples come from. */
static PxkImage* planeOf(const PxkImage* planes, int c)
{
    PxkImage* gray = pxkCreateImageHeader(1, 0, planes->depth, "GRAY", "G\0\0", PXK_DATA_ORDER_PIXEL, planes->origin,
                                          planes->align, planes->width, planes->height, NULL, NULL, NULL, NULL);
    if (!gray) exit(EXIT_FAILURE);
    gray->imageData = (char*)planes->imageData + c * planes->height * planes->widthStep;
    return gray;
}

int main(void)
{
    PxkImage *pixels, *planes;
    PxkROI channel = { 0, 0, 0, width, height };
    const unsigned char* samples;
    int c;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    pixels = makeImage(PXK_DATA_ORDER_PIXEL);
    planes = makeImage(PXK_DATA_ORDER_PLANE);

    pixels->roi = &channel;
    for (c = 0; c < 3; ++c) {
        PxkImage* plane = planeOf(planes, c);
        channel.coi = c + 1;
        pxkSet(pixels, 10 * (c + 1));
        pxkCopy(pixels, plane);
        pxkDeallocateHeader(plane);
    }

    samples = planes->imageData;
    for (c = 0; c < 3; ++c) printf("plane %d begins with %d\n", c + 1, samples[c * height * planes->widthStep]);
    c = samples[2 * height * planes->widthStep];

    pxkDeallocate(pixels, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(planes, PXK_FREE_HEADER | PXK_FREE_DATA);
    return pxkGetErrStatus() < 0 || c != 30 ? EXIT_FAILURE : EXIT_SUCCESS;
}
