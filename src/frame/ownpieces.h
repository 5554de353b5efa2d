/* SPDX-License-Identifier: BSD-2-Clause */
// Destinations that are written piece by piece, from rows that an operation makes itself: one piece in memory,
// otherwise one a tile. A piece is staged, masked and stored here.
#pragma once

#include "ownbuffer.h"
#include "ownwork.h"

// Part of a destination inside memory or one tile.
struct OwnDestination {
    OwnRect rect; // in the work: (0, 0) is the first pixel of the destination's region
    OwnView view; // the processed channels of these pixels
    OwnBits maskBits;
    const OwnBits* mask; // null without a mask
};

enum class OwnWritten { ALL, TILE_REFUSED, STOPPED };

// Calls onPiece for each piece of the work in the destination, row by row of tiles. It returns false to stop, which
// ends the walk; the tile is given back in any case. Nothing is reported.
[[nodiscard]] OwnWritten ownForPieces(PxkImage* destination, OwnSize size, const OwnBits* mask,
                                      OwnFunction<bool(const OwnDestination&)> onPiece);

// Rows as an operation makes them: pixels of `unitSamples` samples without gaps, of which the view's processed channels
// are the first; one-bit pixels as bytes of 0 and 1, or as bits from the highest one on.
struct OwnRowForm {
    int32_t unitSamples;
    bool isBits;
};

// True where a view's pixels lie as they are made.
bool ownLieAsMade(const OwnView& view, const OwnRowForm& form);

// A view of as many rows as they are made, which start at multiples of 64 bytes of a buffer that is still to be had.
OwnView ownMadeRows(const OwnView& view, const OwnRowForm& form);

// Room for some rows of a piece: the destination itself where rows lie there as they are made, otherwise a buffer.
class OwnOutput {
public:
    // For the first `height` rows of the view. False: out of memory.
    [[nodiscard]] bool open(const OwnView& view, const OwnRowForm& form, int32_t height, const OwnBits* mask);
    uint8_t* row(int32_t y) const { return rows_.first + y * rows_.rowStep; }
    bool isDirect() const { return buffer_ == nullptr; }
    // Brings `height` finished rows to the view's rows from `y` on; what lies there directly is stored already.
    void store(const OwnView& view, int32_t y, int32_t height, const OwnBits* mask) const;

private:
    OwnView rows_ = {};
    OwnBuffer<uint8_t> buffer_;
};

// Stores n pixels of a piece from (x, y) on out of a packed row of the processed channels (`unitSamples` of them;
// one-bit pixels as bytes). Pixels whose byte in `selected` is 0 stay as they are; null: all change.
void ownStorePixels(const OwnDestination& piece, int32_t x, int32_t y, int32_t n, const uint8_t* samples,
                    const uint8_t* selected);
