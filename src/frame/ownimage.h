/* SPDX-License-Identifier: BSD-2-Clause */
// Sizes of images, tiles and rectangles.
#pragma once

#include "owndepth.h"

// Bytes of a row of `width` pixels, rounded up to a multiple of `align`, a power of two; INT64_MAX for what 64 bits
// can't hold.
inline int64_t ownRowStep(int32_t dataOrder, int32_t depth, int32_t align, int32_t nChannels, int32_t width)
{
    const int64_t samples = static_cast<int64_t>(width) * (dataOrder == PXK_DATA_ORDER_PIXEL ? nChannels : 1);
    if (samples > INT64_MAX / 64) return INT64_MAX;
    const int64_t bytes = (samples * ownDepthBits(depth) + 7) / 8;
    return (bytes + align - 1) & -static_cast<int64_t>(align);
}

// Bytes of all rows of all planes; INT64_MAX where they exceed 31 bits.
inline int64_t ownImageSize(int32_t dataOrder, int32_t nChannels, int32_t height, int64_t rowStep)
{
    const int64_t planes = dataOrder == PXK_DATA_ORDER_PLANE ? nChannels : 1;
    const int64_t rows = planes * height;
    if (rowStep > INT32_MAX || rows > INT32_MAX || rowStep * rows > INT32_MAX) return INT64_MAX;
    return rowStep * rows;
}

// The row step of one tile of an image whose header is known to be good.
inline ptrdiff_t ownTileStep(const PxkImage* image)
{
    return static_cast<ptrdiff_t>(
        ownRowStep(image->dataOrder, image->depth, image->align, image->nChannels, image->tileInfo->width));
}
