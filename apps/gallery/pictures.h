/* SPDX-License-Identifier: BSD-2-Clause */
// Pictures that the program makes itself.
#pragma once

#include "gallery.h"

namespace gallery {

// A header with pixels, all 0. Null when out of memory.
ImagePtr makeImage(int32_t nChannels, int32_t depth, int32_t width, int32_t height,
                   int32_t dataOrder = PXK_DATA_ORDER_PIXEL);

// What lies beyond the edges are the samples at the edges.
void clearEdges(PxkImage* image);

// A colour picture as gray.
ImagePtr toGray(const PxkImage& colour);

// A colour picture at another size, the middle of it when the shapes differ.
ImagePtr fitTo(PxkImage& colour, int32_t width, int32_t height);

ImagePtr makeRamp(int32_t width, int32_t height);
ImagePtr makeRings(int32_t width, int32_t height);
ImagePtr makeEllipse(int32_t width, int32_t height);

// One bit: 1 where a gray picture is below `level`.
ImagePtr makeInk(const PxkImage& gray, int32_t level);

// The middle of the part with the most to see, from 0 to 1 across and down.
struct Detail {
    double x, y;
};
Detail findDetail(const PxkImage& gray);

} // namespace gallery
