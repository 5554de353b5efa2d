/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * A bitmap in memory is a header of 40 bytes, a colour table and bits; a bitmap file has 14 bytes in front.
 *
 * The rings of pxkCreateImageJaehne are written as a file of 16 gray levels and read again. "example_bitmap name.bmp"
 * keeps the file.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { width = 200, height = 150, bitsAPixel = 4, fileHeader = 14, tableBytes = 4 << bitsAPixel };

static void put32(unsigned char* bytes, unsigned long value)
{
    int k;
    for (k = 0; k < 4; ++k) bytes[k] = (unsigned char)(value >> 8 * k);
}

/* The bits of a bitmap begin behind its header and table; its rows are multiples of four bytes. */
static size_t bitmapBytes(void)
{
    return sizeof(PxkBitmapInfoHeader) + tableBytes + (size_t)((width * bitsAPixel + 31) / 32 * 4) * height;
}

static int writeFile(const char* path, const PxkBitmapInfoHeader* dib)
{
    unsigned char head[fileHeader] = { 'B', 'M' };
    FILE* file = fopen(path, "wb");
    int isGood;
    if (!file) return 0;
    put32(head + 2, (unsigned long)(fileHeader + bitmapBytes()));
    put32(head + 10, fileHeader + sizeof *dib + tableBytes);
    isGood = fwrite(head, sizeof head, 1, file) == 1 && fwrite(dib, bitmapBytes(), 1, file) == 1;
    return fclose(file) == 0 && isGood;
}

static PxkBitmapInfoHeader* readFile(const char* path)
{
    PxkBitmapInfoHeader* dib = (PxkBitmapInfoHeader*)calloc(1, bitmapBytes());
    FILE* file = fopen(path, "rb");
    if (!file || !dib || fseek(file, fileHeader, SEEK_SET) != 0 || fread(dib, bitmapBytes(), 1, file) != 1) return NULL;
    fclose(file);
    return dib;
}

int main(int argc, char** argv)
{
    const char* path = argc > 1 ? argv[1] : "example_bitmap.bmp";
    PxkBitmapInfoHeader* dib = (PxkBitmapInfoHeader*)calloc(1, bitmapBytes());
    PxkImage *rings, *again;
    int32_t isClone = 0;
    unsigned char sample = 0;

    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);
    rings = pxkCreateImageJaehne(PXK_DEPTH_8U, width, height);
    if (!rings || !dib) return EXIT_FAILURE;

    /* The header says what is wanted. The fixed table of one channel is a gray ramp; errors are spread. */
    dib->biSize = sizeof *dib;
    dib->biWidth = width;
    dib->biHeight = height;
    dib->biPlanes = 1;
    dib->biBitCount = bitsAPixel;
    pxkConvertToDIB(rings, dib, PXK_DITHER_FS, PXK_PALETTE_FIXED);
    if (pxkGetErrStatus() < 0 || !writeFile(path, dib)) return EXIT_FAILURE;
    free(dib);

    /* Four bits a pixel are no image of the library, so this one is converted; isClone tells. */
    dib = readFile(path);
    if (!dib) return EXIT_FAILURE;
    again = pxkTranslateDIB(dib, &isClone);
    if (!again) return EXIT_FAILURE;
    pxkGetPixel(again, width / 2, height / 2, &sample);
    printf("%d by %d, %d channel, %s, middle %d\n", (int)again->width, (int)again->height, (int)again->nChannels,
           isClone ? "converted" : "shared", sample);

    pxkDeallocate(again, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(rings, PXK_FREE_HEADER | PXK_FREE_DATA);
    free(dib); /* last: an image that is not converted points into it */
    if (argc == 1) remove(path);
    return pxkGetErrStatus() < 0 || sample % 17 != 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
