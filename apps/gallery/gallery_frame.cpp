#include "gallery.h"
#include "pictures.h"

#include <algorithm>

namespace gallery {

const Exhibit exhibits[] = {
    { "Copy a region", "Each image has its own region: a part of the photo lands elsewhere in the result.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const int32_t w = photo->width / 2, h = photo->height / 2;
          SHOW(s, out, PxkROI from = { 0, w / 2, 0, w, h }; PxkROI to = { 0, w, h, w, h }; photo->roi = &from;
               out->roi = &to; pxkCopy(photo, out));
          s.worked(static_cast<double>(w) * h);
      } },
    { "Copy under a mask", "Pixels change where the one-bit mask holds a 1, here inside an ellipse.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* ellipse = s.ellipse;
          SHOW(s, out, out->maskROI = ellipse; pxkCopy(photo, out));
      } },
    { "Another picture behind the mask", "What the mask does not select keeps its old value.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(s.other);
          SHOW(s, out, out->maskROI = ellipse; pxkCopy(photo, out));
      } },
    { "Set a region", "One value for all channels of a rectangle; 255 is white.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkROI bar = { 0, 0, h / 2, w, h / 8 }; out->roi = &bar; pxkSet(out, 255));
          s.worked(static_cast<double>(w) * (h / 8));
      } },
    { "Set one channel", "The region names a channel of interest: 3 is red, in a picture of blue, green and red.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkROI red = { 3, 0, 0, w / 2, h }; out->roi = &red; pxkSet(out, 255));
          s.worked(w / 2.0 * h);
      } },
    { "Set under a mask", "Mask and channel of interest together: the blue channel inside the ellipse.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkROI blue = { 1, 0, 0, w, h }; out->roi = &blue; out->maskROI = ellipse; pxkSet(out, 255));
      } },
    { "Exchange the halves", "Two headers over the same pixels, each with a region of its own.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.clone(photo);
          const int32_t w = photo->width / 2, h = photo->height;
          SHOW(s, out, PxkImage again = *out; PxkROI left = { 0, 0, 0, w, h }; PxkROI right = { 0, w, 0, w, h };
               out->roi = &left; again.roi = &right; pxkExchange(out, &again));
      } },
    { "Exchange two channels", "Red and blue change places.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkImage again = *out; PxkROI blue = { 1, 0, 0, w, h }; PxkROI red = { 3, 0, 0, w, h };
               out->roi = &blue; again.roi = &red; pxkExchange(out, &again));
      } },
    { "Exchange under a mask",
      "The photo and the second picture trade what lies inside the ellipse; this is the photo's part.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *mine = s.clone(photo), *theirs = s.clone(s.other);
          SHOW(s, mine, mine->maskROI = ellipse; pxkExchange(mine, theirs));
      } },
    { "Three channels apart", "Each channel is copied into a gray picture: blue, green and red from left to right.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          const int32_t w = photo->width, h = photo->height;
          PxkImage* out = s.blank(1, PXK_DEPTH_8U, 3 * w, h);
          SHOW(s, out, PxkROI from = { 0, 0, 0, w, h }; PxkROI to = from; photo->roi = &from; out->roi = &to;
               for (from.coi = 1; from.coi <= 3; from.coi++, to.xOffset += w) pxkCopy(photo, out));
      } },
    { "Plane order", "The same calls on a picture whose channels are planes: the red one moves to the left.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *planes = s.adopt(toPlanes(*s.photo)), *out = s.clone(planes);
          const int32_t step = std::max(1, planes->width / 40), w = planes->width - step, h = planes->height;
          SHOW(s, out, PxkROI from = { 3, step, 0, w, h }; PxkROI to = { 3, 0, 0, w, h }; planes->roi = &from;
               out->roi = &to; pxkCopy(planes, out));
      } },
    { "Pixel by pixel",
      "For the odd pixel; a whole picture this way, here mirrored, takes much longer than an operation.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          uint8_t pixel[4];
          const int32_t w = photo->width, h = photo->height;
          SHOW(
              s, out, for (int y = 0; y < h; y++) for (int x = 0; x < w; x++) {
                  pxkGetPixel(photo, x, y, pixel);
                  pxkPutPixel(out, w - 1 - x, y, pixel);
              });
      } },
    { "A generated test image", "Rings that grow finer outwards, for looking at what a resampling or a filter does.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          const int32_t w = photo->width, h = photo->height;
          PxkImage* out = nullptr;
          MEASURE(s, out = pxkCreateImageJaehne(PXK_DEPTH_8U, w, h));
          s.picture(s.adopt(Image(out)));
      } },
    { "A refused call", "Every failure reaches the handler of pxkRedirectError, with the condition that failed.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage *gray = s.gray, *missing = nullptr;
          MEASURE(s, pxkCopy(gray, out); pxkAdd(photo, gray, out); pxkAdd(photo, missing, out));
          s.result.text = takeReports();
      } },
};

const Family frameFamily = { "frame", "Regions, channels and masks",
                             "Copy, set and exchange, and the three ways to say which pixels an operation touches. All "
                             "other operations understand them too.",
                             exhibits, std::size(exhibits) };

} // namespace gallery
