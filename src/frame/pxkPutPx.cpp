// SPDX-License-Identifier: BSD-2-Clause
#include "ownpixel.h"

int32_t pxkPutPixel(PxkImage* image, int32_t x, int32_t y, void* pixel)
{
    return ownAccessPixel({ OWN_HERE, PXK_TILE_WRITE, "Error get tile to write" }, image, x, y,
                          static_cast<uint8_t*>(pixel));
}
