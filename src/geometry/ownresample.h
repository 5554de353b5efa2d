/* SPDX-License-Identifier: BSD-2-Clause */
// The road of operations that make each piece of a destination from a rectangle of the source. Source tiles are asked
// for reading only, the tiles of one piece at a time; a source whose pixels the destination shares is read before
// anything is written.
#pragma once

#include "frame/ownpieces.h"
#include "frame/ownsource.h"

struct OwnResampling {
    OwnSite site;
    PxkImage* source;
    PxkImage* destination;
    OwnSize size;        // of the work in the destination
    const OwnBits* mask; // of the work; null: all pixels change
};

// Calls make for each piece, with a source that holds the rectangle that sourceOf tells for it (of the image's pixels).
// make returns false when it is out of memory. False: that, or a refused tile; reported.
bool ownResample(const OwnResampling& resampling, OwnFunction<OwnRect(const OwnRect& part)> sourceOf,
                 OwnFunction<bool(const OwnSource&, const OwnDestination&)> make);

enum class OwnBitForm { BYTES, BITS };

// Makes the rows of a view, which is the piece's or one channel of it, from the top down: makeRow(y, row) fills a row
// of pixels without gaps. Rows stay where they are until at least one more is made. False: out of memory.
[[nodiscard]] bool ownMakeRows(const OwnView& view, OwnBitForm oneBit, const OwnBits* mask,
                               OwnFunction<void(int32_t y, uint8_t* row)> makeRow);
