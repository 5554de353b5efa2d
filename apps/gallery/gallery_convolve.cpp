#include "gallery.h"

#include <array>
#include <vector>

namespace gallery {

// A convolution kernel that dies with its exhibit.
struct ReleaseKernel {
    void operator()(PxkConvKernel* kernel) const { pxkDeleteConvKernel(kernel); }
};
using Kernel = std::unique_ptr<PxkConvKernel, ReleaseKernel>;

const Exhibit convolutionExhibits[] = {
    { "Relief", "A 3 by 3 kernel of your own, coefficients with a sum of 1.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          std::array<int32_t, 9> values = { -2, -1, 0, -1, 1, 1, 0, 1, 2 };
          const Kernel kernel(pxkCreateConvKernel(3, 3, 1, 1, values.data(), 0));
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
    { "Separable", "A row of 15 bell-shaped weights and a column of them, in place of 225 products a sample.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          std::array<int32_t, 15> values = { 2, 4, 8, 14, 21, 28, 33, 36, 33, 28, 21, 14, 8, 4, 2 };
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
    { "Box blur", "The mean of 15 by 15.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkBlur(photo, out, 15, 15, 7, 7)); } },
    { "A wide box blur", "The mean of 101 by 101, at nearly the same cost.",
      [](Stage& s, PxkImage* photo, PxkImage* out) { SHOW(s, out, pxkBlur(photo, out, 101, 101, 50, 50)); } },
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

constexpr int32_t allSides = PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT;

// A kernel of one row, or of one column, that moves a picture to the right, or down: a single 1 in the last place, and
// the anchor at the first.
static Kernel mover(int32_t nCols, int32_t nRows)
{
    std::vector<int32_t> values(static_cast<size_t>(nCols) * nRows, 0);
    values.back() = 1;
    return Kernel(pxkCreateConvKernel(nCols, nRows, 0, 0, values.data(), 0));
}

const Exhibit borderExhibits[] = {
    { "Constant", "One value, here 90.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Kernel row = mover(photo->width / 3, 1), column = mover(1, photo->height / 3);
          PxkConvKernel *right = row.get(), *down = column.get();
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CONST, allSides, 90);
               pxkConvolveSep2D(photo, out, right, down));
      } },
    { "Clamp", "The edge sample goes on for ever.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Kernel row = mover(photo->width / 3, 1), column = mover(1, photo->height / 3);
          PxkConvKernel *right = row.get(), *down = column.get();
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CLAMP, allSides, 0); pxkConvolveSep2D(photo, out, right, down));
      } },
    { "Mirror", "The picture turned over at its edge.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Kernel row = mover(photo->width / 3, 1), column = mover(1, photo->height / 3);
          PxkConvKernel *right = row.get(), *down = column.get();
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_MIRROR, allSides, 0);
               pxkConvolveSep2D(photo, out, right, down));
      } },
    { "Wrap", "The picture begins again.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Kernel row = mover(photo->width / 3, 1), column = mover(1, photo->height / 3);
          PxkConvKernel *right = row.get(), *down = column.get();
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_WRAP, allSides, 0); pxkConvolveSep2D(photo, out, right, down));
      } },
    { "A mode for each side", "The top mirrors and the left side wraps; the corner belongs to the top.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Kernel row = mover(photo->width / 3, 1), column = mover(1, photo->height / 3);
          PxkConvKernel *right = row.get(), *down = column.get();
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_MIRROR, PXK_SIDE_TOP, 0);
               pxkSetBorderMode(photo, PXK_EDGE_WRAP, PXK_SIDE_LEFT, 0); pxkConvolveSep2D(photo, out, right, down));
      } },
    { "A blur and the constant", "White flows in from all sides.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CONST, allSides, 255); pxkBlur(photo, out, 81, 81, 40, 40));
      } },
    { "A blur and clamp", "The usual choice for photographs.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkSetBorderMode(photo, PXK_EDGE_CLAMP, allSides, 0); pxkBlur(photo, out, 81, 81, 40, 40));
      } },
};

const Family convolutionFamily = { "convolution", "Convolution and box blur",
                                   "Up to ten kernels at once, with integer or float coefficients.",
                                   convolutionExhibits, std::size(convolutionExhibits) };

const Family fixedFamily = { "fixed", "Fixed filters", "Common kernels by name.", fixedExhibits,
                             std::size(fixedExhibits) };

const Family borderFamily = {
    "border", "Beyond the edge",
    "What an operation reads outside the picture is set for each side. Kernels with a single 1 "
    "move the photo by a third, and what comes in is what lies there.",
    borderExhibits, std::size(borderExhibits)
};

} // namespace gallery
