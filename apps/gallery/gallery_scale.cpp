#include "gallery.h"

namespace gallery {

// An eighth of the photo's width and height from its middle, which the exhibits enlarge to the whole size.
static PxkROI middleOf(const PxkImage* photo)
{
    const int32_t w = photo->width / 8, h = photo->height / 8;
    return { 0, (photo->width - w) / 2, (photo->height - h) / 2, w, h };
}

const Exhibit exhibits[] = {
    { "Zoom, nearest pixels", "An eighth of the photo each way, eight times as large: each pixel becomes a square.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkROI part = middleOf(photo);
          SHOW(s, out, photo->roi = &part; pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_NN));
      } },
    { "Zoom, linear", "The same part, two by two pixels weighed.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkROI part = middleOf(photo);
          SHOW(s, out, photo->roi = &part; pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_LINEAR));
      } },
    { "Zoom, cubic", "The same part, a curve through four by four pixels.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkROI part = middleOf(photo);
          SHOW(s, out, photo->roi = &part; pxkZoom(photo, out, 8, 1, 8, 1, PXK_INTER_CUBIC));
      } },
    { "Resize, each axis for itself", "Five quarters as wide and three quarters as high; what does not fit is cut off.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkResize(photo, out, 5, 4, 3, 4, PXK_INTER_CUBIC));
      } },
    { "Decimate fine rings", "Every fourth pixel: circles that are too narrow turn up as others that are not there.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *rings = s.rings, *out = s.blank(3, PXK_DEPTH_8U, rings->width / 4, rings->height / 4);
          SHOW(s, out, pxkDecimate(rings, out, 1, 4, 1, 4, PXK_INTER_NN));
      } },
    { "The mean of each box", "The same size by super-sampling: what is too narrow becomes gray.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *rings = s.rings, *out = s.blank(3, PXK_DEPTH_8U, rings->width / 4, rings->height / 4);
          SHOW(s, out, pxkDecimate(rings, out, 1, 4, 1, 4, PXK_INTER_SUPER));
      } },
    { "Boxes with parts of pixels", "Three sevenths of the photo: pixels count by the area that a box covers of them.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.blank(3, PXK_DEPTH_8U, photo->width * 3 / 7, photo->height * 3 / 7);
          SHOW(s, out, pxkResize(photo, out, 3, 7, 3, 7, PXK_INTER_SUPER));
      } },
    { "Blur, then decimate", "A window of 9 by 9 pixels in front of every fourth pixel.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *rings = s.rings, *out = s.blank(3, PXK_DEPTH_8U, rings->width / 4, rings->height / 4);
          SHOW(s, out, pxkDecimateExt(rings, out, 1, 4, 1, 4, PXK_INTER_NN, 9, 9));
      } },
    { "A mask that grows along", "The source's mask comes into the new scale with its pixels.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(s.other);
          SHOW(s, out, photo->maskROI = ellipse; pxkResize(photo, out, 2, 3, 1, 1, PXK_INTER_LINEAR));
      } },
    { "Left and right", "Each row reversed.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMirror(photo, out, 1)); } },
    { "Upside down", "The order of the rows reversed.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMirror(photo, out, 0)); } },
    { "Half a turn in place", "Both at once, inside a region of one picture.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* out = s.clone(photo);
          const int32_t w = photo->width, h = photo->height;
          SHOW(s, out, PxkROI inner = { 0, w / 6, h / 6, w * 2 / 3, h * 2 / 3 }; out->roi = &inner;
               pxkMirror(out, out, -1));
          s.worked(w * 2.0 / 3 * h * 2 / 3);
      } },
    { "Mirrored writing", "One-bit rows are reversed a machine word at a time.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *writing = s.writing, *out = s.like(writing);
          SHOW(s, out, pxkMirror(writing, out, 1));
      } },
};

const Family scaleFamily = { "scale", "Zoom, resize, decimate, mirror",
                             "The same picture in other sizes, and reversed.", exhibits, std::size(exhibits) };

} // namespace gallery
