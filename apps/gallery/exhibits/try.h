/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * What the gallery's pieces of code stand in: the pictures to start from, and the one to
 * leave behind.
 *
 * Every file in the folder `code` beside the page is a whole program:
 *
 *     cc arith-add.c $(pkg-config --cflags --libs pxk libpng) -lm && ./a.out
 *
 * reads the page's pictures in the folder above and writes out.png. A folder may be named:
 * ./a.out FOLDER.
 */
#ifndef PXK_TRY_H
#define PXK_TRY_H

#include <pxk/pxk.h>

#include <math.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

extern PxkImage* photo; /* the picture: 8 bits a channel, in the order blue, green, red */
extern PxkImage* gray;  /* the same with one channel */
extern PxkImage* other; /* a second picture, like photo */
extern PxkImage* ramp;  /* 0 at the left edge, 255 at the right one, like photo */
extern PxkImage*
    rings; /* circles round the middle that grow narrower outwards, like photo */
extern PxkImage* ellipse; /* one bit: 1 inside an ellipse in the middle */
extern PxkImage* writing; /* one bit: ink is 1; its size is its own */
extern int w, h;          /* the width and height of photo, and of all others but writing */
extern PxkImage* out;     /* black, like photo; or whatever the code stores there */

/* A black image of 1, 3 or 4 channels (the fourth is alpha), with the channels of a pixel
 * side by side. */
PxkImage* newImage(int nChannels, int depth, int width, int height);

/* The same with a plane for each channel. */
PxkImage* newPlanes(int nChannels, int depth, int width, int height);

/* Sample (x, y) of an image of one channel and depth 32F. */
static inline float* floatAt(const PxkImage* image, int x, int y)
{
    return (float*)((char*)image->imageData + (ptrdiff_t)y * image->widthStep) + x;
}

/* The code of the page. */
void show(void);

#ifndef TRY_PART /* the rest is in another file */

#include <png.h>

PxkImage *photo, *gray, *other, *ramp, *rings, *ellipse, *writing, *out;
int w, h;

static void endWith(const char* why, const char* what)
{
    fprintf(stderr, "%s: %s\n", why, what);
    exit(1);
}

static PxkImage* makeImage(int nChannels, int depth, int order, int width, int height)
{
    const char* model = nChannels == 1 ? "GRAY" : nChannels == 4 ? "RGBA" : "RGB";
    const char* letters = nChannels == 1 ? "G" : nChannels == 4 ? "BGRA" : "BGR";
    PxkImage* image =
        pxkCreateImageHeader(nChannels, nChannels == 4 ? 4 : 0, depth, model, letters,
                             order, 0, 32, width, height, NULL, NULL, NULL, NULL);
    if (depth == PXK_DEPTH_32F)
        pxkAllocateImageFP(image, 1, 0.0f);
    else
        pxkAllocateImage(image, 1, 0);
    if (!image || !image->imageData) endWith("no image", pxkErrorStr(pxkGetErrStatus()));
    pxkSetBorderMode(image, PXK_EDGE_CLAMP,
                     PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT, 0);
    return image;
}

PxkImage* newImage(int nChannels, int depth, int width, int height)
{
    return makeImage(nChannels, depth, PXK_DATA_ORDER_PIXEL, width, height);
}

PxkImage* newPlanes(int nChannels, int depth, int width, int height)
{
    return makeImage(nChannels, depth, PXK_DATA_ORDER_PLANE, width, height);
}

static PxkImage* readPng(const char* folder, const char* name, int nChannels)
{
    char path[1000];
    png_image png;
    PxkImage* image;

    snprintf(path, sizeof path, "%s/%s.png", folder, name);
    memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path)) endWith(path, png.message);
    png.format = nChannels == 1 ? PNG_FORMAT_GRAY : PNG_FORMAT_BGR;
    image = newImage(nChannels, PXK_DEPTH_8U, (int)png.width, (int)png.height);
    if (!png_image_finish_read(&png, NULL, image->imageData, image->widthStep, NULL))
        endWith(path, png.message);
    return image;
}

static PxkImage* readBits(const char* folder, const char* name)
{
    PxkImage* levels = readPng(folder, name, 1);
    PxkImage* bits = newImage(1, PXK_DEPTH_1U, levels->width, levels->height);
    pxkThreshold(levels, bits, 128);
    pxkDeallocate(levels, PXK_FREE_HEADER | PXK_FREE_DATA);
    return bits;
}

static void readPictures(const char* folder)
{
    photo = readPng(folder, "start-photo", 3);
    gray = readPng(folder, "start-gray", 1);
    other = readPng(folder, "start-other", 3);
    ramp = readPng(folder, "start-ramp", 3);
    rings = readPng(folder, "start-rings", 3);
    ellipse = readBits(folder, "start-ellipse");
    writing = readBits(folder, "start-writing");
    w = photo->width;
    h = photo->height;
    out = newImage(3, PXK_DEPTH_8U, w, h);
}

/* A sample of an image of 1 or 8 bits a channel, in either order. */
static unsigned char sampleOf(const PxkImage* image, int x, int y, int c)
{
    const ptrdiff_t line =
        image->dataOrder == PXK_DATA_ORDER_PLANE ? (ptrdiff_t)c * image->height + y : y;
    const unsigned char* row =
        (const unsigned char*)image->imageData + line * image->widthStep;
    if (image->depth == PXK_DEPTH_1U) return row[x / 8] & 0x80 >> x % 8 ? 255 : 0;
    return image->dataOrder == PXK_DATA_ORDER_PLANE ? row[x]
                                                    : row[x * image->nChannels + c];
}

static void writePng(const PxkImage* image, const char* path)
{
    png_image png;
    const int nChannels = image->nChannels == 1 ? 1 : 3;
    unsigned char* const pixels = malloc((size_t)image->width * image->height * nChannels);
    unsigned char* next = pixels;
    int x, y, c;

    if (!pixels) endWith(path, "out of memory");
    for (y = 0; y < image->height; y++)
        for (x = 0; x < image->width; x++)
            for (c = 0; c < nChannels; c++) *next++ = sampleOf(image, x, y, c);
    memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = (png_uint_32)image->width;
    png.height = (png_uint_32)image->height;
    png.format = nChannels == 1 ? PNG_FORMAT_GRAY : PNG_FORMAT_BGR;
    if (!png_image_write_to_file(&png, path, 0, pixels, 0, NULL))
        endWith(path, png.message);
    free(pixels);
}

int main(int argc, char** argv)
{
    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    readPictures(argc > 1 ? argv[1] : "..");
    show();
    writePng(out, "out.png");
    return 0;
}

#endif
#endif
