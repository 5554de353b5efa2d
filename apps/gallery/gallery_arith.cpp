#include "gallery.h"
#include "pictures.h"

namespace gallery {

// Vertical stripes of one value each: 0, 1, 2, ... from left to right, in all channels.
static PxkImage* stripes(Stage& s, int32_t n)
{
    PxkImage* image = s.like(s.photo);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t x = image->width * i / n;
        PxkROI stripe = { 0, x, 0, image->width * (i + 1) / n - x, image->height };
        image->roi = &stripe;
        pxkSet(image, i);
        image->roi = nullptr;
    }
    return image;
}

const Exhibit exhibits[] = {
    { "Add a gradient", "Sums above 255 stay at 255: the right side saturates to white.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ramp = s.ramp;
          SHOW(s, out, pxkAdd(photo, ramp, out));
      } },
    { "Subtract a gradient", "Differences below 0 stay at 0.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ramp = s.ramp;
          SHOW(s, out, pxkSubtract(photo, ramp, out));
      } },
    { "Add a second picture", "Saturation again, wherever both are bright.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* other = s.other;
          SHOW(s, out, pxkAdd(photo, other, out));
      } },
    { "Subtract the rings", "Destination and source may be one image: here the photo's copy is changed in place.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *rings = s.rings, *out = s.clone(photo);
          SHOW(s, out, pxkSubtract(out, rings, out));
      } },
    { "Multiply by 0 to 4", "Five stripes of the factors 0, 1, 2, 3 and 4, with products limited to 255.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* factors = stripes(s, 5);
          SHOW(s, out, pxkMultiply(photo, factors, out));
      } },
    { "And", "Bit by bit with the gradient, whose high bits open from left to right.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ramp = s.ramp;
          SHOW(s, out, pxkAnd(photo, ramp, out));
      } },
    { "Or", "Bit by bit with the rings.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* rings = s.rings;
          SHOW(s, out, pxkOr(photo, rings, out));
      } },
    { "Exclusive or", "With the gradient; the same call again would bring the photo back.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ramp = s.ramp;
          SHOW(s, out, pxkXor(photo, ramp, out));
      } },
    { "Add under a mask", "Only the pixels inside the ellipse become brighter.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(photo);
          SHOW(s, out, out->maskROI = ellipse; pxkAdd(photo, photo, out));
      } },
    { "Add to one channel", "Channel of interest 1 in all three images: the gradient reaches blue only.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ramp = s.ramp, *out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkROI blue = { 1, 0, 0, w, h }; photo->roi = &blue; ramp->roi = &blue; out->roi = &blue;
               pxkAdd(photo, ramp, out));
      } },
    { "Planes", "The same sum on pictures in plane order.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *photoPlanes = s.adopt(toPlanes(*s.photo)), *ringPlanes = s.adopt(toPlanes(*s.rings));
          PxkImage* out = s.like(photoPlanes);
          SHOW(s, out, pxkAdd(photoPlanes, ringPlanes, out));
      } },
    { "Two masks", "Masks of the images of one call are combined: left half of one, ellipse of the other.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *rings = s.rings, *out = s.clone(photo);
          PxkImage* left = s.like(ellipse);
          PxkROI half = { 0, 0, 0, left->width / 2, left->height };
          left->roi = &half;
          pxkSet(left, 1);
          left->roi = nullptr;
          SHOW(s, out, out->maskROI = ellipse; rings->maskROI = left; pxkSubtract(photo, rings, out));
      } },
};

const Exhibit bitExhibits[] = {
    { "Or on single bits", "At depth 1 a row is a string of bits; any of the images may begin in the middle of a byte.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *oval = s.adopt(makeEllipse(writing->width, writing->height));
          PxkImage* bits = s.like(writing);
          SHOW(s, bits, pxkOr(writing, oval, bits));
      } },
    { "And", "Ink inside the ellipse.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *oval = s.adopt(makeEllipse(writing->width, writing->height));
          PxkImage* bits = s.like(writing);
          SHOW(s, bits, pxkAnd(writing, oval, bits));
      } },
    { "Exclusive or", "Ink turns to paper inside the ellipse.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *oval = s.adopt(makeEllipse(writing->width, writing->height));
          PxkImage* bits = s.like(writing);
          SHOW(s, bits, pxkXor(writing, oval, bits));
      } },
    { "Subtract", "On single bits a - b is a and not b: ink outside the ellipse.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *oval = s.adopt(makeEllipse(writing->width, writing->height));
          PxkImage* bits = s.like(writing);
          SHOW(s, bits, pxkSubtract(writing, oval, bits));
      } },
    { "Shifted against itself", "Regions that begin at bits 0 and 3: what differs is the edges of the strokes.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *bits = s.like(writing);
          const int32_t w = writing->width - 3, h = writing->height;
          SHOW(s, bits, PxkImage moved = *writing; PxkROI at0 = { 0, 0, 0, w, h }; PxkROI at3 = { 0, 3, 0, w, h };
               writing->roi = &at0; moved.roi = &at3; pxkXor(writing, &moved, bits));
      } },
    { "Writing as a mask", "A one-bit picture can be hung on any image of another depth.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *writing = s.writing, *out = s.clone(photo);
          SHOW(s, out, out->maskROI = writing; pxkSet(out, 255));
          s.worked(static_cast<double>(writing->width) * writing->height);
      } },
};

const Family arithFamily = { "arith", "Arithmetic and logic of two pictures",
                             "Sample by sample, limited to the depth's range. Each works at seven depths, on regions "
                             "and channels, under masks, in place.",
                             exhibits, std::size(exhibits) };

const Family bitFamily = { "bits", "One-bit pictures", "Logic on bits, and pictures of bits as masks.", bitExhibits,
                           std::size(bitExhibits) };

} // namespace gallery
