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
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_FS, 0));
      } },
    { "Jarvis, Judice and Ninke", "To twelve neighbours, which is smoother.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_JJN, 0));
      } },
    { "Stucki", "To the same twelve with other weights, which is sharper.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_STUCKI, 0));
      } },
    { "Ordered", "A fixed pattern of 4 by 4 thresholds.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 0, PXK_DITHER_BAYER, 0));
      } },
    { "Jitter", "Noise in front of the threshold.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkReduceBits(gray, bits, 6, PXK_DITHER_NONE, 1));
      } },
    { "Colour, Floyd and Steinberg", "0 bits kept: two levels a channel, eight colours.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_FS, 0)); } },
    { "Colour, ordered", "Two levels a channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_BAYER, 0));
      } },
    { "Colour, Jarvis, Judice and Ninke", "1 bit kept: the levels 0, 128 and 255.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_JJN, 1)); } },
    { "Colour, Stucki", "2 bits kept: five levels.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkReduceBits(photo, out, 0, PXK_DITHER_STUCKI, 2));
      } },
};

const Family ditherFamily = { "dither", "Bit reduction and dithering",
                              "Fewer bits a sample, and five ways to spread the error.", exhibits,
                              std::size(exhibits) };

} // namespace gallery
