#include "gallery.h"

namespace gallery {

const Exhibit exhibits[] = {
    { "Dilate", "On bits: ink grows by two pixels.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *bits = s.like(writing);
          SHOW(s, bits, pxkDilate(writing, bits, 2));
      } },
    { "Erode", "Ink shrinks by one pixel: only the middle of thick strokes stays.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *bits = s.like(writing);
          SHOW(s, bits, pxkErode(writing, bits, 1));
      } },
    { "Open", "Erode, then dilate: specks and thin lines go.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *bits = s.like(writing);
          SHOW(s, bits, pxkOpen(writing, bits, 1));
      } },
    { "Close", "Dilate, then erode: gaps fill.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *bits = s.like(writing);
          SHOW(s, bits, pxkClose(writing, bits, 3));
      } },
    { "Erode in colour", "Minimum of 7 by 7.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkErode(photo, out, 3)); } },
    { "Open in colour", "Bright details smaller than 7 by 7 go, the rest stays.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkOpen(photo, out, 3)); } },
    { "Edges by morphology", "Dilated less eroded.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* low = s.like(photo);
          SHOW(s, out, pxkDilate(photo, out, 1); pxkErode(photo, low, 1); pxkSubtract(out, low, out));
      } },
};

const Family morphologyFamily = { "morphology", "Morphology",
                                  "Square windows on bits, gray and colour; the last argument is the reach in pixels.",
                                  exhibits, std::size(exhibits) };

} // namespace gallery
