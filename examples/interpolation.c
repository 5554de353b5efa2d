/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * Interpolations, told by what they make of an edge: a dark and a bright half, eight pixels wide, enlarged four times.
 *
 * The nearest pixel keeps the step, the linear one makes a ramp, the cubic one a smoother ramp that passes a little
 * beyond both sides; limits keep it inside the depth's range.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

enum { width = 8, height = 4, factor = 4 };

static const char* const names[] = { "nearest", "linear", "cubic" }; /* PXK_INTER_NN, _LINEAR, _CUBIC */

static PxkImage* makeImage(int w, int h)
{
    PxkImage* image =
        pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G", PXK_DATA_ORDER_PIXEL, 0, 4, w, h, NULL, NULL, NULL, NULL);
    pxkAllocateImage(image, 1, 40);
    if (image && image->imageData) return image;
    exit(EXIT_FAILURE);
}

int main(void)
{
    PxkImage *edge, *large;
    PxkROI bright = { 0, width / 2, 0, width / 2, height };
    const unsigned char* row;
    int way, x, falls, isExpected = 1;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    edge = makeImage(width, height);
    large = makeImage(width * factor, height * factor);
    edge->roi = &bright;
    pxkSet(edge, 200);
    edge->roi = NULL;

    for (way = PXK_INTER_NN; way <= PXK_INTER_CUBIC; ++way) {
        pxkResize(edge, large, factor, 1, factor, 1, way);
        row = (const unsigned char*)large->imageData + height * factor / 2 * large->widthStep;
        printf("%-8s", names[way]);
        for (x = 8, falls = 0; x < 24; ++x) {
            printf(" %3d", row[x]);
            falls += row[x] > row[x + 1];
        }
        printf("\n");
        if ((way == PXK_INTER_CUBIC) != (falls > 0)) isExpected = 0; /* only the cubic one overshoots */
    }

    pxkDeallocate(edge, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(large, PXK_FREE_HEADER | PXK_FREE_DATA);
    return pxkGetErrStatus() < 0 || !isExpected ? EXIT_FAILURE : EXIT_SUCCESS;
}
