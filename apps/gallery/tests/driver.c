/* SPDX-License-Identifier: BSD-2-Clause */
/* Runs the code of every program beside a page, and compares what it leaves with the page's pictures. */
#define main runOne
#include "try.h"
#undef main

#include "rows.h"

/* What runOne wants: a program beside the page has one. */
void show(void) { }

static int isPicture(const PxkImage* shown, const char* name)
{
    const int nChannels = out->nChannels == 1 ? 1 : 3;
    int x, y, c;
    if (shown->width != out->width || shown->height != out->height) {
        printf("%s: %d x %d pixels, not %d x %d\n", name, out->width, out->height, shown->width, shown->height);
        return 0;
    }
    for (y = 0; y < out->height; y++)
        for (x = 0; x < out->width; x++)
            for (c = 0; c < nChannels; c++)
                if (sampleOf(out, x, y, c) != sampleOf(shown, x, y, c)) {
                    printf("%s: pixel %d, %d differs from the page\n", name, x, y);
                    return 0;
                }
    return 1;
}

/* Everything as a program of its own finds it. */
static void restore(void)
{
    PxkImage* const images[] = { photo, gray, other, ramp, rings, ellipse, writing };
    size_t i;
    for (i = 0; i < sizeof images / sizeof images[0]; i++) {
        images[i]->roi = NULL;
        images[i]->maskROI = NULL;
        pxkSetBorderMode(images[i], PXK_EDGE_CLAMP, PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT, 0);
    }
    out = newImage(3, PXK_DEPTH_8U, w, h);
    pxkSetErrStatus(PXK_StsOk);
}

int main(int argc, char** argv)
{
    const char* const folder = argc > 1 ? argv[1] : ".";
    size_t i, nWrong = 0, nCompared = 0;
    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkNulDevReport);
    readPictures(folder);
    for (i = 0; i < sizeof rows / sizeof rows[0]; i++) {
        char path[1000];
        FILE* file;
        restore();
        rows[i].run();
        snprintf(path, sizeof path, "%s/%s.png", folder, rows[i].name);
        file = fopen(path, "rb");
        if (!file) continue; /* its result is a text */
        fclose(file);
        nCompared++;
        nWrong += !isPicture(readPng(folder, rows[i].name, out->nChannels == 1 ? 1 : 3), rows[i].name);
    }
    printf("%u pictures compared\n", (unsigned)nCompared);
    return nWrong != 0 || nCompared == 0;
}
