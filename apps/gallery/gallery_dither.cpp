#include "gallery.h"

namespace gallery {

const Exhibit exhibits[] = {
    { "Threshold", "One bit a pixel without dithering: 1 from 128 on.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_NONE, 1));
      } },
    { "Floyd and Steinberg", "The error of each pixel goes to four neighbours.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_FS, 1));
      } },
    { "Jarvis, Judice and Ninke", "To twelve neighbours, which is smoother.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_JJN, 1));
      } },
    { "Stucki", "To the same twelve with other weights, which is sharper.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_STUCKI, 1));
      } },
    { "Ordered", "A fixed pattern of 4 by 4 thresholds.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_BAYER, 1));
      } },
    { "Jitter", "Noise in front of the threshold.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 6, PXK_DITHER_NONE, 1));
      } },
    { "Colour, Floyd and Steinberg", "One bit a channel: eight colours.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_FS, 1)); } },
    { "Colour, Jarvis, Judice and Ninke", "Two bits a channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_JJN, 2)); } },
    { "Colour, Stucki", "Two bits a channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_STUCKI, 2));
      } },
    { "Colour, ordered", "Two bits a channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_BAYER, 2));
      } },
};

const Family ditherFamily = { "dither", "Bit reduction and dithering",
                              "Fewer bits a sample, and five ways to spread the error.", exhibits,
                              std::size(exhibits) };

} // namespace gallery
