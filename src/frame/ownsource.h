/* SPDX-License-Identifier: BSD-2-Clause */
// Pixels of an image that are read scattered, again and again, or beyond the image's edges.
#pragma once

#include "ownrect.h"

// Where pixels can be read, and which of the image's pixels these are.
struct OwnSource {
    PxkImage* image;
    OwnBlock block;
    OwnRect rect;
    OwnFetched fetched; // holds them where they are a copy

    bool holds(const OwnRect& inner) const;
    // The processed channels of some of the pixels, which are held.
    OwnView view(const OwnRect& part) const;
};

enum class OwnReading {
    IN_PLACE, // pixels in memory are read where they lie
    AS_COPY,  // before anything is written that may be the same pixels
};

// Makes a rectangle readable: all of the image where it lies in memory and holds the rectangle, otherwise a copy with
// the pixels beyond the edges by the image's border modes. False: out of memory, or a tile was refused; nothing
// reported.
[[nodiscard]] bool ownReadSource(OwnSource& source, PxkImage* image, const OwnRect& rect, OwnReading reading);

// True when writing one image may change what is read from the other: one record of tiles, or overlapping blocks.
bool ownSharePixels(const PxkImage* imageA, const PxkImage* imageB);
