#include "gallery.h"

#include <algorithm>

namespace gallery {

// Every `period`-th pixel or so becomes black or white, in all channels. The same ones at each run.
static PxkImage* withSpecks(Stage& s, uint32_t period)
{
    PxkImage* image = s.clone(s.photo);
    uint32_t state = 1;
    for (int32_t y = 0; y < image->height; ++y) {
        uint8_t* row = static_cast<uint8_t*>(image->imageData) + static_cast<ptrdiff_t>(y) * image->widthStep;
        for (int32_t x = 0; x < image->width; ++x) {
            state = state * 1664525 + 1013904223;
            if ((state >> 8) % period == 0) std::fill_n(row + 3 * x, 3, static_cast<uint8_t>(state >> 31 ? 255 : 0));
        }
    }
    return image;
}

const Exhibit exhibits[] = {
    { "Maximum", "The brightest sample of 9 by 9.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMaxFilter(photo, out, 9, 9, 4, 4)); } },
    { "Minimum", "The darkest sample of 9 by 9.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMinFilter(photo, out, 9, 9, 4, 4)); } },
    { "Black and white specks", "The photo with every tenth pixel spoilt by this program.",
      [](Stage& s, PxkImage*, PxkImage*) {
          PxkImage *specks = withSpecks(s, 10), *out = s.like(specks);
          SHOW(s, out, pxkCopy(specks, out));
      } },
    { "Median", "The middle sample of 3 by 3 takes the specks away and keeps the edges.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* specks = withSpecks(s, 10);
          SHOW(s, out, pxkMedianFilter(specks, out, 3, 3, 1, 1));
      } },
    { "A wide median", "15 by 15.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkMedianFilter(photo, out, 15, 15, 7, 7)); } },
};

const Family rankFamily = { "rank", "Rank filters", "Windows of any size around, or beside, each pixel.", exhibits,
                            std::size(exhibits) };

} // namespace gallery
