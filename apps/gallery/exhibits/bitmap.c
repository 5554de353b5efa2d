// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps and palettes
// Device-independent bitmaps of 1 to 32 bits, with the colour table kept, fixed, or chosen
// for the picture. Each bitmap is shown as it is read back.
#include "exhibit.h"

// A bitmap for the photo in one block: header, colour table of black, bits.
static PxkBitmapInfoHeader* newBitmap(int bitCount, int compression)
{
    const size_t table = bitCount <= 8 ? (size_t)4 << bitCount : 0;
    const size_t bits = ((size_t)w * bitCount + 31) / 32 * 4 * h;
    PxkBitmapInfoHeader* dib = pxkMalloc((int32_t)(sizeof *dib + table + bits));
    memset(dib, 0, sizeof *dib + table + bits);
    dib->biSize = sizeof *dib;
    dib->biWidth = w;
    dib->biHeight = h;
    dib->biPlanes = 1;
    dib->biBitCount = (uint16_t)bitCount;
    dib->biCompression = (uint32_t)compression;
    return dib;
}

// 16 fixed colours
// The nearest of 16 standard colours for each pixel.
EXHIBIT(bitmap_fixed16, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(4, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 16 fixed colours, dithered
// After a reduction to four bits a channel by Floyd and Steinberg.
EXHIBIT(bitmap_fixed16_fs, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(4, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_FS, PXK_PALETTE_FIXED);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 16 colours of the picture
// The colours are chosen by median cut.
EXHIBIT(bitmap_cut16, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(4, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_MEDCUT);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 16 colours of the picture, dithered
// Median cut after a reduction by Stucki.
EXHIBIT(bitmap_cut16_stucki, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(4, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_STUCKI, PXK_PALETTE_MEDCUT);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 256 fixed colours
// Eight levels of red and green, four of blue.
EXHIBIT(bitmap_fixed256, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(8, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 256 colours of the picture
// Median cut again.
EXHIBIT(bitmap_cut256, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(8, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_MEDCUT);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// Black and white
// The picture reduced to bits first, then a bitmap of one bit a pixel.
EXHIBIT(bitmap_bits, DETAIL)
{
    PxkBitmapInfoHeader* dib = newBitmap(1, PXK_BI_RGB);
    PxkImage* bits = newImage(1, PXK_DEPTH_1U, w, h);
    out = newImage(1, PXK_DEPTH_8U, w, h);
    START;
    pxkReduceBits(gray, bits, 0, PXK_DITHER_FS, 0);
    pxkConvertToDIB(bits, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// 16 bits a pixel
// Five bits a channel; read back, the low bits are 0.
EXHIBIT(bitmap_16, PAIR(photo))
{
    PxkBitmapInfoHeader* dib = newBitmap(16, PXK_BI_RGB);
    START;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_KEEP);
    STOP;
    pxkConvertFromDIB(dib, out);
    pxkFree(dib);
}

// Header and bits apart
// The Sep forms take them from two places; the bits are read back upside down by a negative
// height.
EXHIBIT(bitmap_sep, PICTURE)
{
    PxkBitmapInfoHeader* dib = newBitmap(24, PXK_BI_RGB);
    void* bits = pxkMalloc((w * 3 + 3) / 4 * 4 * h);
    START;
    pxkConvertToDIBSep(photo, dib, bits, PXK_DITHER_NONE, PXK_PALETTE_KEEP);
    dib->biHeight = -h;
    pxkConvertFromDIBSep(dib, bits, out);
    STOP;
    pxkFree(bits);
    pxkFree(dib);
}

// An image over a bitmap
// pxkTranslateDIB makes a header over the bitmap's own bits where it can, so a mirrored
// image is a mirrored bitmap.
EXHIBIT(bitmap_translate, PICTURE)
{
    PxkBitmapInfoHeader* dib = newBitmap(24, PXK_BI_RGB);
    PxkImage* image;
    int32_t cloned;
    pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_KEEP);
    START;
    image = pxkTranslateDIB(dib, &cloned);
    pxkMirror(image, image, 1);
    STOP;
    pxkConvertFromDIB(dib, out);
    printf("the pixels are %s\n", cloned ? "a copy" : "the bitmap's");
    pxkDeallocate(image, PXK_FREE_HEADER | (cloned ? PXK_FREE_DATA : 0));
    pxkFree(dib);
}

// Run-length coded
// Four levels of gray, coded in place.
EXHIBIT(bitmap_coded, PICTURE)
{
    PxkBitmapInfoHeader* dib = newBitmap(8, PXK_BI_RLE8);
    PxkImage* coarse = newImage(1, PXK_DEPTH_8U, w, h);
    pxkAndS(gray, coarse, 0xC0);
    out = newImage(1, PXK_DEPTH_8U, w, h);
    START;
    pxkConvertToDIB(coarse, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED);
    STOP;
    pxkConvertFromDIB(dib, out);
    if (dib->biCompression == PXK_BI_RLE8)
        printf("%u bytes in place of %d\n", (unsigned)dib->biSizeImage,
               (w + 3) / 4 * 4 * h);
    else
        printf("not shorter when coded: left as it was\n");
    pxkFree(dib);
}
