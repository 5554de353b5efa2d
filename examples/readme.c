/* SPDX-License-Identifier: BSD-2-Clause */
#include <pxk/pxk.h>
#include <stdio.h>

int main(void)
{
    PxkROI corner = { 0, 0, 0, 320, 240 }; /* all channels; x, y, width, height */
    PxkImage *photo, *sum;
    const unsigned char* row;

    pxkSetErrMode(PXK_ErrModeParent);  /* failures are for this program to handle: nothing ends it */
    pxkRedirectError(pxkStdErrReport); /* and their reports go to standard error */

    photo = pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 32, 640, 480, NULL, NULL,
                                 NULL, NULL);
    pxkAllocateImage(photo, 1, 200); /* every sample is 200 */
    sum = pxkCloneImage(photo);
    if (!sum) return 1;

    sum->roi = &corner;
    pxkAdd(photo, photo, sum); /* 400 does not fit 8 bits and becomes 255 */

    row = (const unsigned char*)sum->imageData;
    printf("inside %d, outside %d, status %d\n", row[0], row[3 * 639], (int)pxkGetErrStatus());
    pxkDeallocate(sum, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(photo, PXK_FREE_HEADER | PXK_FREE_DATA);
    return 0;
}
