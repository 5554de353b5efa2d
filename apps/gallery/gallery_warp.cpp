#include "gallery.h"

#include <cmath>

namespace gallery {

struct Maps {
    PxkImage* x;
    PxkImage* y;
};

// Source positions for each pixel of an image: `place` takes and gives coordinates from -1 to 1 round the middle.
template <class Place> static Maps makeMaps(Stage& s, const PxkImage* image, Place place)
{
    const int32_t width = image->width, height = image->height;
    const Maps maps = { s.blank(1, PXK_DEPTH_32F, width, height), s.blank(1, PXK_DEPTH_32F, width, height) };
    const auto row = [](PxkImage* map, int32_t y) {
        return reinterpret_cast<float*>(static_cast<uint8_t*>(map->imageData)
                                        + static_cast<ptrdiff_t>(y) * map->widthStep);
    };
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            double u = 2.0 * x / (width - 1) - 1, v = 2.0 * y / (height - 1) - 1;
            place(u, v);
            row(maps.x, y)[x] = static_cast<float>((u + 1) * (width - 1) / 2);
            row(maps.y, y)[x] = static_cast<float>((v + 1) * (height - 1) / 2);
        }
    }
    return maps;
}

const Exhibit exhibits[] = {
    { "Rotate", "By 30 degrees round the middle, cubic; what the picture does not cover stays black.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          double xShift = 0, yShift = 0;
          SHOW(s, out, pxkGetRotateShift(photo->width / 2, photo->height / 2, 30, &xShift, &yShift);
               pxkRotate(photo, out, 30, xShift, yShift, PXK_INTER_CUBIC));
      } },
    { "Rotate by a right angle", "Pixels are only moved.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* turned = s.blank(3, PXK_DEPTH_8U, photo->height, photo->width);
          SHOW(s, turned, pxkRotate(photo, turned, 90, 0, photo->width - 1, PXK_INTER_NN));
      } },
    { "Shear", "Rows slide to the right, the more the lower.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          SHOW(s, out, pxkShear(photo, out, 0.4, 0, 0, 0, PXK_INTER_LINEAR));
      } },
    { "Affine", "Shrunk, sheared and mirrored by one matrix.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const double w = photo->width;
          double coeffs[2][3] = { { -0.7, 0.2, 0.8 * w }, { 0.1, 0.6, 0.1 * w } };
          SHOW(s, out, pxkWarpAffine(photo, out, coeffs, PXK_INTER_LINEAR));
      } },
    { "Perspective", "The whole photo on a quadrangle, like a picture on a wall.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const double w = photo->width, h = photo->height;
          double quad[4][2] = {
              { 0.1 * w, 0.05 * h }, { 0.85 * w, 0.3 * h }, { 0.9 * w, 0.75 * h }, { 0.05 * w, 0.95 * h }
          };
          SHOW(s, out, pxkWarpPerspectiveQ(photo, out, quad, 0, PXK_INTER_LINEAR));
      } },
    { "Perspective, straightened", "The other way: a quadrangle in the photo fills the result.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const double w = photo->width, h = photo->height;
          double quad[4][2] = {
              { 0.3 * w, 0.1 * h }, { 0.7 * w, 0.2 * h }, { 0.8 * w, 0.9 * h }, { 0.2 * w, 0.7 * h }
          };
          SHOW(s, out, pxkWarpPerspectiveQ(photo, out, quad, 1, PXK_INTER_CUBIC));
      } },
    { "Bilinear", "The same quadrangle as in perspective: lines along the sides keep their spacing, diagonals bend.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const double w = photo->width, h = photo->height;
          double quad[4][2] = {
              { 0.1 * w, 0.05 * h }, { 0.85 * w, 0.3 * h }, { 0.9 * w, 0.75 * h }, { 0.05 * w, 0.95 * h }
          };
          SHOW(s, out, pxkWarpBilinearQ(photo, out, quad, 0, PXK_INTER_LINEAR));
      } },
    { "Stairs", "A small copy with hard edges, enlarged.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* small = s.blank(3, PXK_DEPTH_8U, 64, 64, 255);
          double coeffs[2][3] = { { 50.0 / photo->width, 0.03, 4 }, { -0.02, 50.0 / photo->height, 10 } };
          SHOW(s, out, pxkWarpAffine(photo, small, coeffs, PXK_INTER_LINEAR);
               pxkResize(small, out, out->width, 64, out->height, 64, PXK_INTER_NN));
      } },
    { "Smooth edges", "The same with PXK_WARP_SMOOTH_EDGE: pixels at the edge are mixed with the ground.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* small = s.blank(3, PXK_DEPTH_8U, 64, 64, 255);
          double coeffs[2][3] = { { 50.0 / photo->width, 0.03, 4 }, { -0.02, 50.0 / photo->height, 10 } };
          SHOW(s, out, pxkWarpAffine(photo, small, coeffs, PXK_INTER_LINEAR | PXK_WARP_SMOOTH_EDGE);
               pxkResize(small, out, out->width, 64, out->height, 64, PXK_INTER_NN));
      } },
    { "Remap", "A swirl: positions turn the more the nearer they are to the middle.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Maps maps = makeMaps(s, photo, [](double& u, double& v) {
              const double turn = 3 * std::exp(-4 * (u * u + v * v)), x = u;
              u = u * std::cos(turn) + v * std::sin(turn);
              v = v * std::cos(turn) - x * std::sin(turn);
          });
          PxkImage *xMap = maps.x, *yMap = maps.y;
          SHOW(s, out, pxkRemap(photo, xMap, yMap, out, PXK_INTER_LINEAR));
      } },
    { "Remap to a barrel", "Positions outside the photo leave the ground as it is.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Maps maps = makeMaps(s, photo, [](double& u, double& v) {
              const double stretch = 0.8 + 0.35 * (u * u + v * v);
              u *= stretch;
              v *= stretch;
          });
          PxkImage *xMap = maps.x, *yMap = maps.y;
          SHOW(s, out, pxkRemap(photo, xMap, yMap, out, PXK_INTER_CUBIC));
      } },
};

const Family warpFamily = { "warp", "Warps, rotation and remapping",
                            "Pixels ask for their place in the source; what no place belongs to stays as it is.",
                            exhibits, std::size(exhibits) };

} // namespace gallery
