/* SPDX-License-Identifier: BSD-2-Clause */
// Rectangles of an image, tiled or in memory, also where they stick out of it. Nothing here reports: the calling
// operation decides on the words.
#pragma once

#include "ownbuffer.h"
#include "ownregion.h"

// A rectangle of an image as its first and its last pixel; `to` below `from` means walking backward.
struct OwnCorners {
    int32_t xFrom;
    int32_t yFrom;
    int32_t xTo;
    int32_t yTo;
};

// Where a rectangle is read to: all channels, in the image's own data order.
struct OwnRectBuffer {
    OwnBlock block;
    int32_t pixelBytes; // 0 for one-bit rows
    int32_t planes;
};

// Reads a rectangle inside the image, walking forward in the buffer from its pixel (bufX, bufY) on whatever the
// direction in the image. Tiles are asked for a row at a time. False: no memory, or a tile was refused; tiles of its
// row stay unreleased then.
[[nodiscard]] bool ownReadRect(PxkImage* image, const OwnCorners& corners, const OwnRectBuffer& buffer, int32_t bufX,
                               int32_t bufY);

// A copy of a rectangle: all channels, in the image's data order, rows rounded up to its alignment. What row padding
// holds is undefined, but for one-bit images is always initialised.
struct OwnFetched {
    OwnBuffer<uint8_t> pixels; // null when memory was short or a tile was refused
    OwnBlock block;
    OwnRect rect; // in the image's coordinates
};

// The rectangle may lie anywhere: pixels outside the image follow its border modes and constants.
[[nodiscard]] OwnFetched ownFetch(PxkImage* image, int32_t x, int32_t y, int32_t width, int32_t height);
