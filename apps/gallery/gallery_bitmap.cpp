#include "gallery.h"

#include <string>
#include <vector>

namespace gallery {

// A bitmap in one block of memory: header, colour table, bits.
using Bitmap = std::vector<uint32_t>;

static PxkBitmapInfoHeader* headerOf(Bitmap& bitmap)
{
    return reinterpret_cast<PxkBitmapInfoHeader*>(bitmap.data());
}

// A bitmap for a picture: header, a full table of black entries, and room for the uncompressed bits.
static Bitmap makeBitmap(const PxkImage* image, uint16_t bitCount, uint32_t compression = PXK_BI_RGB)
{
    const size_t nColours = bitCount <= 8 ? static_cast<size_t>(1) << bitCount : 0;
    const size_t rowWords = (static_cast<size_t>(image->width) * bitCount + 31) / 32;
    Bitmap bitmap(sizeof(PxkBitmapInfoHeader) / 4 + nColours + rowWords * static_cast<size_t>(image->height));
    PxkBitmapInfoHeader* header = headerOf(bitmap);
    header->biSize = sizeof(PxkBitmapInfoHeader);
    header->biWidth = image->width;
    header->biHeight = image->height;
    header->biPlanes = 1;
    header->biBitCount = bitCount;
    header->biCompression = compression;
    return bitmap;
}

// Converts the photo to the bitmap, measured, and shows the bitmap as read back.
#define SHOW_BITMAP(...)                                                                                               \
    do {                                                                                                               \
        s.measure(#__VA_ARGS__, [&] { __VA_ARGS__; });                                                                 \
        pxkConvertFromDIB(dib, out);                                                                                   \
        s.picture(out);                                                                                                \
    } while (false)

const Exhibit exhibits[] = {
    { "16 fixed colours", "The nearest of 16 standard colours for each pixel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 4);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED));
      } },
    { "16 fixed colours, dithered", "After a reduction to four bits a channel by Floyd and Steinberg.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 4);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_FS, PXK_PALETTE_FIXED));
      } },
    { "16 colours of the picture", "The colours are chosen by median cut.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 4);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_MEDCUT));
      } },
    { "16 colours of the picture, dithered", "Median cut after a reduction by Stucki.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 4);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_STUCKI, PXK_PALETTE_MEDCUT));
      } },
    { "256 fixed colours", "Eight levels of red and green, four of blue.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 8);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED));
      } },
    { "256 colours of the picture", "Median cut again.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 8);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_MEDCUT));
      } },
    { "Black and white", "The picture reduced to bits first, then a bitmap of one bit a pixel.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse), *out = s.like(gray);
          Bitmap bitmap = makeBitmap(gray, 1);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkReduceBits(gray, bits, 0, PXK_DITHER_FS, 0);
                      pxkConvertToDIB(bits, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED));
      } },
    { "16 bits a pixel", "Five bits a channel; read back, the low bits are 0.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          Bitmap bitmap = makeBitmap(photo, 16);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(photo, dib, PXK_DITHER_NONE, PXK_PALETTE_KEEP));
      } },
    { "Run-length coded", "Four levels of gray, coded in place.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *coarse = s.like(gray), *out = s.like(gray);
          pxkAndS(gray, coarse, 0xC0);
          Bitmap bitmap = makeBitmap(coarse, 8, PXK_BI_RLE8);
          PxkBitmapInfoHeader* dib = headerOf(bitmap);
          SHOW_BITMAP(pxkConvertToDIB(coarse, dib, PXK_DITHER_NONE, PXK_PALETTE_FIXED));
          const int64_t plain = static_cast<int64_t>(gray->height) * ((gray->width + 3) / 4 * 4);
          const bool isShorter = dib->biCompression == PXK_BI_RLE8;
          s.result.text = isShorter ? std::to_string(dib->biSizeImage) + " bytes in place of " + std::to_string(plain)
                                    : "not shorter when coded: left as it was";
      } },
};

const Family bitmapFamily = {
    "bitmap", "Bitmaps and palettes",
    "Device-independent bitmaps of 1 to 32 bits, with the colour table kept, fixed, or chosen "
    "for the picture. Each bitmap is shown as it is read back.",
    exhibits, std::size(exhibits)
};

} // namespace gallery
