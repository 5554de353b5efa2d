// Sizes of images, tiles and rectangles, and the test of a header's fields.
#pragma once

#include "pxk/pxk.h"

// Bytes of a row of `width` pixels, rounded up to a multiple of `align`; INT64_MAX for what 64 bits can't hold.
int64_t ownRowStep(int32_t dataOrder, int32_t depth, int32_t align, int32_t nChannels, int32_t width);

// Bytes of all rows of all planes.
int64_t ownImageSize(int32_t dataOrder, int32_t nChannels, int32_t height, int64_t rowStep);

// The row step of one tile of an image whose header is known to be good.
ptrdiff_t ownTileStep(const PxkImage* image);

// The same, or 0 for a null image, a bad header, or an image without tiles.
ptrdiff_t ownCheckedTileStep(PxkImage* image);
