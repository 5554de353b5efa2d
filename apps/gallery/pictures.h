// Pictures that the program makes itself, and the two ways in and out of the library's image header.
#pragma once

#include "gallery.h"

namespace gallery {

// A header with pixels, filled. Null when out of memory.
Image makeImage(int32_t nChannels, int32_t depth, int32_t width, int32_t height, int32_t fill,
                int32_t dataOrder = PXK_DATA_ORDER_PIXEL, int32_t alphaChannel = 0);

// Sample (x, y, c) of an image of depth 1U (as 0 or 255) or 8U, in any order; y counts from the picture's top row.
uint8_t sampleAt(const PxkImage& image, int32_t x, int32_t y, int32_t c);

// A copy with three channels, BGR in pixel order, top row first: what the page shows.
Image toColour(const PxkImage& image);

// A colour picture in plane order.
Image toPlanes(const PxkImage& colour);

// A colour picture as gray.
Image toGray(const PxkImage& colour);

// A colour picture at another size, the middle of it when the shapes differ: boxes are averaged when it shrinks, pixels
// repeated when it grows.
Image fitTo(const PxkImage& colour, int32_t width, int32_t height);

Image makeRamp(int32_t width, int32_t height);
Image makeRings(int32_t width, int32_t height);
Image makeEllipse(int32_t width, int32_t height);

// One bit: 1 where a gray picture is below `level`.
Image makeInk(const PxkImage& gray, int32_t level);

} // namespace gallery
