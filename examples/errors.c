/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * Failures are status codes, and every one is handed to a report handler. This program installs its own.
 *
 * A thread starts in the mode PXK_ErrModeLeaf with pxkGuiBoxReport, which asks the user whether to end the program.
 * A program that handles failures itself says so with PXK_ErrModeParent, or silences the library's handlers with
 * PXK_ErrModeSilent. Status, mode and handler are the thread's own.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>

static int nReports;

static int32_t logReport(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    (void)file;
    (void)line;
    ++nReports;
    printf("%s: %s [%d, %s]\n", func, context, (int)status, pxkErrorStr(status));
    return status;
}

static PxkImage* makeImage(int depth)
{
    PxkImage* image =
        pxkCreateImageHeader(1, 0, depth, "GRAY", "G\0\0", PXK_DATA_ORDER_PIXEL, 0, 4, 16, 16, NULL, NULL, NULL, NULL);
    pxkAllocateImage(image, 1, 0);
    if (image && image->imageData) return image;
    exit(EXIT_FAILURE);
}

int main(void)
{
    PxkImage *bytes, *words;
    PxkErrorCallBack before;

    pxkSetErrMode(PXK_ErrModeParent);
    before = pxkRedirectError(logReport);
    bytes = makeImage(PXK_DEPTH_8U);
    words = makeImage(PXK_DEPTH_16U);

    /* Unlike depths: refused before a pixel is touched, and the status tells it. */
    pxkAdd(bytes, words, bytes);
    printf("status %d\n", (int)pxkGetErrStatus());

    /* The status stays until it is cleared. Copy, set and exchange do not start while it is negative, so a row of calls
       does not go on with a picture that could not be made. */
    pxkSet(bytes, 7);
    printf("sample %d\n", *(unsigned char*)bytes->imageData);
    pxkSetErrStatus(PXK_StsOk);
    pxkSet(bytes, 7);
    printf("sample %d, %d report\n", *(unsigned char*)bytes->imageData, nReports);

    pxkDeallocate(bytes, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(words, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkRedirectError(before);
    return nReports == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
