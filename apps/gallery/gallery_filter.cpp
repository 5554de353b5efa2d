#include "gallery.h"

#include <algorithm>
#include <array>

namespace gallery {

// A convolution kernel that dies with its exhibit.
struct ReleaseKernel {
    void operator()(PxkConvKernel* kernel) const { pxkDeleteConvKernel(kernel); }
};
using Kernel = std::unique_ptr<PxkConvKernel, ReleaseKernel>;

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

const Exhibit convolutionExhibits[] = {
    { "Relief", "A 3 by 3 kernel of your own, coefficients with a sum of 1.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const std::array<int32_t, 9> values = { -2, -1, 0, -1, 1, 1, 0, 1, 2 };
          const Kernel kernel(pxkCreateConvKernel(3, 3, 1, 1, const_cast<int32_t*>(values.data()), 0));
          PxkConvKernel* relief = kernel.get();
          SHOW(s, out, pxkConvolve2D(photo, out, &relief, 1, PXK_CONV_SUM));
      } },
    { "Motion", "One row of 16 ones, shifted right by 4: the mean along the row.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          std::array<int32_t, 16> values;
          values.fill(1);
          const Kernel kernel(pxkCreateConvKernel(16, 1, 8, 0, values.data(), 4));
          PxkConvKernel* motion = kernel.get();
          SHOW(s, out, pxkConvolve2D(photo, out, &motion, 1, PXK_CONV_SUM));
      } },
    { "Two kernels", "Root of the sum of squares of a horizontal and a vertical difference: strength of edges.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          std::array<int32_t, 9> across = { -1, 0, 1, -2, 0, 2, -1, 0, 1 }, down = { -1, -2, -1, 0, 0, 0, 1, 2, 1 };
          const Kernel kernelX(pxkCreateConvKernel(3, 3, 1, 1, across.data(), 0));
          const Kernel kernelY(pxkCreateConvKernel(3, 3, 1, 1, down.data(), 0));
          PxkConvKernel* edges[] = { kernelX.get(), kernelY.get() };
          SHOW(s, out, pxkConvolve2D(photo, out, edges, 2, PXK_CONV_SUMSQROOT));
      } },
    { "Separable", "A row of 15 binomial-like weights and a column of them, in place of 225 products a sample.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          std::array<int32_t, 15> values = { 1, 3, 6, 10, 15, 20, 24, 98, 24, 20, 15, 10, 6, 3, 1 };
          const Kernel row(pxkCreateConvKernel(15, 1, 7, 0, values.data(), 8));
          const Kernel column(pxkCreateConvKernel(1, 15, 0, 7, values.data(), 8));
          PxkConvKernel *x = row.get(), *y = column.get();
          SHOW(s, out, pxkConvolveSep2D(photo, out, x, y));
      } },
    { "Convolution under a mask", "The relief inside the ellipse only.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage *ellipse = s.ellipse, *out = s.clone(photo);
          std::array<int32_t, 9> values = { -2, -1, 0, -1, 1, 1, 0, 1, 2 };
          const Kernel kernel(pxkCreateConvKernel(3, 3, 1, 1, values.data(), 0));
          PxkConvKernel* relief = kernel.get();
          SHOW(s, out, out->maskROI = ellipse; pxkConvolve2D(photo, out, &relief, 1, PXK_CONV_SUM));
      } },
};

const Exhibit fixedExhibits[] = {
    { "Sobel, x", "Edges that run down the picture, dark to bright.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_SOBEL_X_3x3));
      } },
    { "Sobel, y", "Edges that run across.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_SOBEL_Y_3x3));
      } },
    { "Prewitt, x", "Equal weights along the edge.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_PREWITT_X_3x3));
      } },
    { "Laplace", "5 by 5: lines and spots.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_LAPLACE_5x5));
      } },
    { "High pass", "What differs from its surroundings.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_HIGHPASS_5x5));
      } },
    { "Gauss", "5 by 5.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_GAUSS_5x5));
      } },
    { "Sharpen", "The opposite of Gauss.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkFixedFilter(photo, out, PXK_FILTER_SHARPEN_3x3));
      } },
};

const Exhibit rankExhibits[] = {
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
    { "Box blur", "The mean of 15 by 15.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkBlur(photo, out, 15, 15, 7, 7)); } },
    { "A wide box blur", "The mean of 101 by 101, at the same cost.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkBlur(photo, out, 101, 101, 50, 50)); } },
};

const Exhibit morphologyExhibits[] = {
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

// A window of 121 shows well what a filter meets beyond the edge.
const Exhibit borderExhibits[] = {
    { "Constant", "Beyond the edge lies one value, here white.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const int32_t all = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CONST, all, 255); pxkBlur(photo, out, 121, 121, 60, 60));
      } },
    { "Clamp", "The edge sample goes on for ever.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const int32_t all = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CLAMP, all, 0); pxkBlur(photo, out, 121, 121, 60, 60));
      } },
    { "Mirror", "The picture is turned over at its edge.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const int32_t all = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_MIRROR, all, 0); pxkBlur(photo, out, 121, 121, 60, 60));
      } },
    { "Wrap", "The picture begins again, so each edge takes colour from the opposite one.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const int32_t all = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_WRAP, all, 0); pxkBlur(photo, out, 121, 121, 60, 60));
      } },
};

const Family convolutionFamily = { "convolution", "Convolution",
                                   "Up to ten kernels at once, with integer or float coefficients.",
                                   convolutionExhibits, std::size(convolutionExhibits) };
const Family fixedFamily = { "fixed", "Fixed filters", "Common kernels by name.", fixedExhibits,
                             std::size(fixedExhibits) };
const Family rankFamily = { "rank", "Rank filters and box blur", "Windows of any size around, or beside, each pixel.",
                            rankExhibits, std::size(rankExhibits) };
const Family morphologyFamily = { "morphology", "Morphology",
                                  "Square windows on bits, gray and colour; the last argument is the reach in pixels.",
                                  morphologyExhibits, std::size(morphologyExhibits) };
const Family borderFamily = {
    "border", "Beyond the edge",
    "What a filter sees outside the picture is set for each side: the same wide blur with the "
    "four border modes.",
    borderExhibits, std::size(borderExhibits)
};

} // namespace gallery
