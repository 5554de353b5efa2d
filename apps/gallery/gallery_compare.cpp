#include "gallery.h"

namespace gallery {

const Exhibit exhibits[] = {
    { "Greater than a constant", "A bit is 1 where the gray picture is above 128.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkGreaterS(gray, bits, 128));
      } },
    { "Less than a constant, in colour", "With three channels the relation must hold in every one of them.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* bits = s.like(s.ellipse);
          SHOW(s, bits, pxkLessS(photo, bits, 128));
      } },
    { "Greater than another picture", "Against the gradient: a threshold that rises from left to right.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ramp = s.ramp, *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkGreater(photo, ramp, bits));
      } },
    { "One channel compared", "Red above 150, by the channel of interest.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* bits = s.like(s.ellipse);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, bits, PxkROI red = { 3, 0, 0, w, h }; photo->roi = &red; pxkGreaterS(photo, bits, 150));
      } },
    { "Equal to a constant", "One of four levels of gray.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *gray = s.gray, *levels = s.like(gray), *bits = s.like(s.ellipse);
          SHOW(s, bits, pxkAndS(gray, levels, 0xC0); pxkEqualS(levels, bits, 0x80));
      } },
    { "From comparison to mask", "The result is ready to be a mask: what is bright shows the second picture.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *gray = s.gray, *other = s.other, *bits = s.like(s.ellipse), *out = s.clone(photo);
          SHOW(s, out, pxkGreaterS(gray, bits, 170); out->maskROI = bits; pxkCopy(other, out));
      } },
};

const Family compareFamily = { "compare", "Comparison", "Pictures in, one bit a pixel out: masks are made this way.",
                               exhibits, std::size(exhibits) };

} // namespace gallery
