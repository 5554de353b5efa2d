#include "gallery.h"

#include <algorithm>
#include <cmath>

namespace gallery {

// A picture with alpha, from a colour picture and the alpha at (u, v), both from 0 to 1.
template <class AlphaAt> static PxkImage* withAlpha(Stage& s, const PxkImage* colour, AlphaAt alphaAt)
{
    PxkImage* image = s.blank(4, PXK_DEPTH_8U, colour->width, colour->height, 0, PXK_DATA_ORDER_PIXEL, 4);
    for (int32_t y = 0; y < image->height; ++y) {
        const uint8_t* in =
            static_cast<const uint8_t*>(colour->imageData) + static_cast<ptrdiff_t>(y) * colour->widthStep;
        uint8_t* out = static_cast<uint8_t*>(image->imageData) + static_cast<ptrdiff_t>(y) * image->widthStep;
        for (int32_t x = 0; x < image->width; ++x, in += 3, out += 4) {
            std::copy_n(in, 3, out);
            const double alpha = alphaAt((x + 0.5) / image->width, (y + 0.5) / image->height);
            out[3] = static_cast<uint8_t>(std::lround(255 * std::clamp(alpha, 0.0, 1.0)));
        }
    }
    return image;
}

// Solid in the middle, with an edge that fades out.
static PxkImage* softDisc(Stage& s, const PxkImage* colour, double centre)
{
    return withAlpha(s, colour, [=](double u, double v) { return 6 * (0.36 - std::hypot(u - centre, v - 0.5)) + 0.5; });
}

// Premultiplied pictures on both sides, so what the page shows is the result over black.
static void compose(Stage& s, PxkImage*& a, PxkImage*& b, PxkImage*& out)
{
    a = softDisc(s, s.photo, 0.4);
    b = softDisc(s, s.other, 0.6);
    pxkPreMultiplyAlpha(a, -1);
    pxkPreMultiplyAlpha(b, -1);
    out = s.like(a);
}

const Exhibit exhibits[] = {
    { "Premultiply by alpha", "Each colour is multiplied by its pixel's alpha, here a disc that fades at its edge.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage* a = softDisc(s, s.photo, 0.4);
          SHOW(s, a, pxkPreMultiplyAlpha(a, -1));
      } },
    { "Over", "The photo's disc in front of the second picture's.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_OVER, 1));
      } },
    { "In", "The first where the second is.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_IN, 1));
      } },
    { "Out", "The first where the second is not.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_OUT, 1));
      } },
    { "Atop", "The first inside the shape of the second, and the rest of the second.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_ATOP, 1));
      } },
    { "Xor", "Each where the other is not.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_XOR, 1));
      } },
    { "Plus", "The sum of both.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *a, *b, *out;
          compose(s, a, b, out);
          SHOW(s, out, pxkAlphaComposite(a, b, out, PXK_COMPOSITE_PLUS, 1));
      } },
    { "A quarter of the photo", "One alpha for the whole picture blends without any alpha channel.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* other = s.other;
          SHOW(s, out, pxkAlphaCompositeC(photo, other, out, PXK_COMPOSITE_OVER, 64, 255, 0));
      } },
    { "Half of it", "128 of 255 for the photo.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* other = s.other;
          SHOW(s, out, pxkAlphaCompositeC(photo, other, out, PXK_COMPOSITE_OVER, 128, 255, 0));
      } },
    { "Product of pictures", "Scaled so that 255 times 255 is 255: the gradient shades the photo.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ramp = s.ramp;
          SHOW(s, out, pxkMultiplyScale(photo, ramp, out));
      } },
    { "Product with a constant", "128 of 255: half as bright.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMultiplySScale(photo, out, 128)); } },
};

const Family alphaFamily = { "alpha", "Alpha and scaled products",
                             "The compositions of Porter and Duff, on pictures premultiplied by their alpha and shown "
                             "over black.",
                             exhibits, std::size(exhibits) };

} // namespace gallery
