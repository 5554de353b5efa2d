/* SPDX-License-Identifier: BSD-2-Clause */
// Geometry of a call: which pixels and channels of an image take part, and where they lie.
#pragma once

#include <initializer_list>

#include "ownview.h"
#include "pxk/pxk.h"

struct OwnSize {
    int32_t width;
    int32_t height;
    bool isEmpty() const { return width < 1 || height < 1; }
};

// A rectangle of an image's pixels.
struct OwnRect {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
};

// The region, cut at the image's edges; a negative offset shortens it and counts as 0. Empty when it has no pixels.
OwnRect ownRegionRect(const PxkImage* image);
OwnSize ownRegionSize(const PxkImage* image);

// The smallest width and the smallest height of the regions; null images do not count. Empty when any region is.
OwnSize ownCommonSize(std::initializer_list<const PxkImage*> images);

// The channel that the region names, counted from 1; 0 where it names none.
int32_t ownChannelOfInterest(const PxkImage* image);

// All channels but alpha, or 1 under a channel of interest. Can be 0.
int32_t ownProcessedChannels(const PxkImage* image);

// A block of pixels in the layout of an image: the image's own, a tile, or a fetched rectangle.
struct OwnBlock {
    uint8_t* data;
    ptrdiff_t rowStep;
    ptrdiff_t planeStep;
};

OwnBlock ownImageBlock(const PxkImage* image);
OwnBlock ownTileBlock(const PxkImage* image, void* tileData);

// The processed channels of a rectangle of the block, which holds pixels of `image`.
OwnView ownBlockView(const PxkImage* image, const OwnBlock& block, const OwnRect& rect);

// The processed channels of the region of an image in memory.
OwnView ownRegionStart(const PxkImage* image);

// One channel of a view, counted from the view's first one.
OwnView ownChannelView(const OwnView& view, int32_t channel);

// The alpha channel, counted from the first processed one, before which it may lie; the image has one.
int32_t ownAlphaPlace(const PxkImage* image);

// The region of a mask image.
OwnBits ownMaskStart(const PxkImage* mask);

// A row of one-bit pixels, further right and down.
OwnBits ownBitsAt(const OwnBits& bits, int32_t x, int32_t y);
