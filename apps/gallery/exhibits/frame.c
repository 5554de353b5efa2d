// SPDX-License-Identifier: BSD-2-Clause
// Regions, channels and masks
// Copy, set and exchange, and the three ways to say which pixels an operation touches. All
// other operations understand them too.
#include "exhibit.h"

// Copy a region
// Each image has its own region: a part of the photo lands elsewhere in the result.
EXHIBIT(frame_copy_region, PICTURE)
{
    PxkROI from = { 0, w / 4, 0, w / 2, h / 2 };
    PxkROI to = { 0, w / 2, h / 2, w / 2, h / 2 };
    photo->roi = &from;
    out->roi = &to;
    START;
    pxkCopy(photo, out);
    STOP;
}

// Copy under a mask
// Pixels change where the one-bit mask holds a 1, here inside an ellipse.
EXHIBIT(frame_copy_mask, PICTURE)
{
    out->maskROI = ellipse;
    START;
    pxkCopy(photo, out);
    STOP;
}

// Another picture behind the mask
// What the mask does not select keeps its old value.
EXHIBIT(frame_copy_over, PICTURE)
{
    pxkCopy(other, out);
    out->maskROI = ellipse;
    START;
    pxkCopy(photo, out);
    STOP;
}

// Set a region
// One value for all channels of a rectangle; 255 is white.
EXHIBIT(frame_set_region, PICTURE)
{
    PxkROI bar = { 0, 0, h / 2, w, h / 8 };
    pxkCopy(photo, out);
    out->roi = &bar;
    START;
    pxkSet(out, 255);
    STOP;
}

// Set one channel
// The region names a channel of interest: 3 is red, in a picture of blue, green and red.
EXHIBIT(frame_set_channel, PICTURE)
{
    PxkROI* red = pxkCreateROI(0, 0, 0, w, h);
    pxkCopy(photo, out);
    pxkSetROI(red, 3, 0, 0, w / 2, h);
    out->roi = red;
    START;
    pxkSet(out, 255);
    STOP;
    out->roi = NULL;
    pxkDeleteROI(red);
}

// Set under a mask
// Mask and channel of interest together: the blue channel inside the ellipse.
EXHIBIT(frame_set_mask, PICTURE)
{
    PxkROI blue = { 1, 0, 0, w, h };
    pxkCopy(photo, out);
    out->roi = &blue;
    out->maskROI = ellipse;
    START;
    pxkSet(out, 255);
    STOP;
}

// Exchange the halves
// Two headers over the same pixels, each with a region of its own.
EXHIBIT(frame_exchange_halves, PICTURE)
{
    PxkROI left = { 0, 0, 0, w / 2, h };
    PxkROI right = { 0, w / 2, 0, w / 2, h };
    PxkImage again = *out;
    pxkCopy(photo, out);
    out->roi = &left;
    again.roi = &right;
    START;
    pxkExchange(out, &again);
    STOP;
}

// Exchange two channels
// Red and blue change places.
EXHIBIT(frame_exchange_channels, PICTURE)
{
    PxkROI blue = { 1, 0, 0, w, h };
    PxkROI red = { 3, 0, 0, w, h };
    PxkImage again = *out;
    pxkCopy(photo, out);
    out->roi = &blue;
    again.roi = &red;
    START;
    pxkExchange(out, &again);
    STOP;
}

// Exchange under a mask
// The photo and the second picture trade what lies inside the ellipse; this is the photo's
// part.
EXHIBIT(frame_exchange_mask, PICTURE)
{
    PxkImage* theirs = newImage(3, PXK_DEPTH_8U, w, h);
    pxkCopy(other, theirs);
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    START;
    pxkExchange(out, theirs);
    STOP;
}

// Three channels apart
// Each channel is copied into a gray picture: blue, green and red from left to right.
EXHIBIT(frame_channels, PICTURE)
{
    PxkROI from = { 1, 0, 0, w, h };
    PxkROI to = { 0, 0, 0, w, h };
    out = newImage(1, PXK_DEPTH_8U, 3 * w, h);
    photo->roi = &from;
    out->roi = &to;
    START;
    for (; from.coi <= 3; from.coi++, to.xOffset += w) pxkCopy(photo, out);
    STOP;
}

// Plane order
// The same calls on a picture whose channels are planes: the red one moves to the left.
EXHIBIT(frame_planes, PICTURE)
{
    PxkImage* planes = newPlanes(3, PXK_DEPTH_8U, w, h);
    PxkROI from = { 3, w / 40, 0, w - w / 40, h };
    PxkROI to = { 3, 0, 0, w - w / 40, h };
    unsigned char pixel[4];
    int x, y;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            pxkGetPixel(photo, x, y, pixel);
            pxkPutPixel(planes, x, y, pixel);
        }
    out = newPlanes(3, PXK_DEPTH_8U, w, h);
    pxkCopy(planes, out);
    planes->roi = &from;
    out->roi = &to;
    START;
    pxkCopy(planes, out);
    STOP;
}

// A header over a part
// Rows of one picture are a picture of their own: no pixel is copied, and the other rows
// don't exist for it.
EXHIBIT(frame_header, PICTURE)
{
    PxkImage* band =
        pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 32,
                             w, h / 3, NULL, NULL, NULL, NULL);
    pxkCopy(photo, out);
    band->imageData = (unsigned char*)out->imageData + h / 3 * out->widthStep;
    band->widthStep = out->widthStep;
    START;
    pxkMirror(band, band, 1);
    STOP;
    printf("pxkCheckImageHeader: %d\n", (int)pxkCheckImageHeader(band));
    pxkDeallocateHeader(band);
}

// A clone
// A copy of header and pixels, with rows, region and border modes as they are; here its
// mask is its own.
EXHIBIT(frame_clone, PICTURE)
{
    photo->maskROI = ellipse;
    START;
    out = pxkCloneImage(photo);
    STOP;
    pxkSubtractS(out, out, 255, 1);
    pxkDeallocate(out->maskROI, PXK_FREE_HEADER | PXK_FREE_DATA);
    out->maskROI = NULL;
    photo->maskROI = NULL;
}

// Pixel by pixel
// For the odd pixel; a whole picture this way, here mirrored, takes much longer than an
// operation.
EXHIBIT(frame_pixels, PICTURE)
{
    unsigned char pixel[4];
    int x, y;
    START;
    for (y = 0; y < h; y++)
        for (x = 0; x < w; x++) {
            pxkGetPixel(photo, x, y, pixel);
            pxkPutPixel(out, w - 1 - x, y, pixel);
        }
    STOP;
}

// A generated test image
// Rings that grow finer outwards, for looking at what a resampling or a filter does.
EXHIBIT(frame_rings, DETAIL)
{
    START;
    out = pxkCreateImageJaehne(PXK_DEPTH_8U, w, h);
    STOP;
}

// A refused call
// Every failure reaches the handler of pxkRedirectError, with the condition that failed.
EXHIBIT(frame_refused, REPORTS)
{
    PxkImage* missing = NULL;
    START;
    pxkCopy(gray, out);
    pxkAdd(photo, gray, out);
    pxkAdd(photo, missing, out);
    STOP;
}

// Silent, and asked
// Without a handler's word a program asks for the status, which stays until it stores 0.
EXHIBIT(frame_status, TEXT)
{
    PxkErrorCallBack before = pxkRedirectError(pxkNulDevReport);
    pxkSetErrStatus(PXK_StsOk);
    START;
    pxkAdd(photo, gray, out);
    STOP;
    printf("status %d: %s\n", (int)pxkGetErrStatus(), pxkErrorStr(pxkGetErrStatus()));
    pxkSetErrStatus(PXK_StsOk);
    pxkRedirectError(before);
}
