#include "gallery.h"

namespace gallery {

const Exhibit exhibits[] = {
    { "Add a constant", "Brighter by 60, with white as the limit.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkAddS(photo, out, 60)); } },
    { "Subtract a constant", "Darker by 60, with black as the limit.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkSubtractS(photo, out, 60, 0)); } },
    { "Subtract from a constant", "The last argument turns the difference round: 255 less the sample is the negative.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkSubtractS(photo, out, 255, 1)); } },
    { "Multiply by a constant", "Twice the value, limited to 255.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMultiplyS(photo, out, 2)); } },
    { "And with a constant", "The two highest bits of each sample remain: four levels a channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkAndS(photo, out, 0xC0)); } },
    { "Or with a constant", "The six lowest bits are set.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkOrS(photo, out, 0x3F)); } },
    { "Exclusive or with a constant", "The highest bit turns over: dark and bright change places.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkXorS(photo, out, 0x80)); } },
    { "Not", "Every bit turns over, here inside the ellipse.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(photo);
          SHOW(s, out, out->maskROI = ellipse; pxkNot(photo, out));
      } },
    { "Shift left", "Bits pushed past the eighth are lost: values from 128 on begin again at 0.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkLShiftS(photo, out, 1)); } },
    { "Shift right", "A quarter of the value.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkRShiftS(photo, out, 2)); } },
    { "Square", "Samples from 0 to 15 squared are 0 to 225: a gamma of 2.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkRShiftS(photo, out, 4); pxkSquare(out, out)); } },
};

const Family scalarFamily = { "scalar", "Arithmetic and logic with a constant",
                              "One picture and one number, in the forms S for integers and SFP for floats.", exhibits,
                              std::size(exhibits) };

} // namespace gallery
