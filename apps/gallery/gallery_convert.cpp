#include "gallery.h"

namespace gallery {

const Exhibit exhibits[] = {
    { "Absolute difference", "Through signed 16 bits: difference, absolute value, and back with saturation.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* other = s.other;
          PxkImage* a = s.blank(3, PXK_DEPTH_16S, photo->width, photo->height);
          PxkImage* b = s.like(a);
          SHOW(s, out, pxkConvert(photo, a); pxkConvert(other, b); pxkSubtract(a, b, a); pxkAbs(a, a);
               pxkConvert(a, out));
      } },
    { "Wider and back", "8 bits to the full range of 16 and back: nothing is lost.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* words = s.blank(3, PXK_DEPTH_16U, photo->width, photo->height);
          SHOW(s, out, pxkScale(photo, words); pxkScale(words, out));
      } },
    { "Stretched contrast", "Through floats: 60 becomes black and 180 white.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* floats = s.blank(3, PXK_DEPTH_32F, photo->width, photo->height);
          SHOW(s, out, pxkScaleFP(photo, floats, 0.0f, 255.0f); pxkScaleFP(floats, out, 60.0f, 180.0f));
      } },
    { "A gamma of 2 in floats", "Samples from 0 to 1, multiplied by themselves.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* floats = s.blank(3, PXK_DEPTH_32F, photo->width, photo->height);
          SHOW(s, out, pxkScaleFP(photo, floats, 0.0f, 1.0f); pxkMultiply(floats, floats, floats);
               pxkScaleFP(floats, out, 0.0f, 1.0f));
      } },
    { "Bits to gray", "Two levels of choice for 0 and 1.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *levels = s.blank(1, PXK_DEPTH_8U, writing->width, writing->height);
          SHOW(s, levels, pxkBitonalToGray(writing, levels, 225, 40));
      } },
};

const Family convertFamily = { "convert", "Depth conversion",
                               "pxkConvert keeps values and saturates, pxkScale maps range onto range, pxkScaleFP goes "
                               "to floats and back.",
                               exhibits, std::size(exhibits) };

} // namespace gallery
