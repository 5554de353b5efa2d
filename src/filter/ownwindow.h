/* SPDX-License-Identifier: BSD-2-Clause */
// The road of the neighbourhood filters: an engine sees bands of source rows that already reach beyond the output on
// all sides, and writes output rows. It never tests a coordinate and knows nothing of borders, tiles, masks or
// channels.
#pragma once

#include "frame/ownblocks.h"
#include "frame/ownpieces.h"
#include "frame/ownscratch.h"

// How many pixels a window reaches beyond the pixel it belongs to.
struct OwnMargins {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

struct OwnBand {
    // top + height + bottom rows: output row y depends on rows[y] to rows[y + top + bottom]. Each row starts `left`
    // pixels before the first output pixel and ends `right` pixels behind the last one. Rows that follow each other and
    // hold the same are mostly one row.
    const uint8_t* const* rows;
    // height rows; they overlap no source row. All rows have room for a block of ownBlockBytes of output at least, so a
    // row may be computed in whole blocks.
    uint8_t* const* out;
    ptrdiff_t width; // samples of an output row: pixels times step; for rows of bits: pixels
    int32_t height;
    int32_t step;        // samples from a pixel to its neighbour
    OwnScratch& scratch; // for the engine's own rows; what it takes is free again after the band
};

// One-bit output as bytes: every value but 0 becomes 1.
void ownLimitBits(const OwnBand& band);

// Computes all output rows of a band. False: out of memory.
using OwnBandEngine = OwnFunction<bool(const OwnBand&)>;

enum class OwnBitRows {
    AS_BYTES, // a one-bit pixel is a byte of 0 or 1, in source and output rows
    AS_BITS,  // rows stay bits and start at the most significant bit of their first byte
};

// Read outside the region by the image's border modes, as far as a window reaches.
constexpr int32_t ownRingNone = -1;

struct OwnWindowWork {
    PxkImage* source; // a private copy of the header where border constants had to be limited
    PxkImage* destination;
    OwnRect sourceRect;  // the part of the source's region that windows belong to
    OwnSize size;        // of the output, which starts at the destination's region
    const OwnBits* mask; // null, or the bits of the work
    OwnMargins margins;
    OwnBitRows bitRows;
    // ownRingNone: real samples wherever the image has them, beyond it by its border modes. Otherwise only a ring of so
    // many samples round the source rectangle is read in that way, and beyond the ring its samples repeat.
    int32_t ring;
    // The last bit of a result depends on which rows and columns are computed together: whole rows, in bands whose
    // height follows from the image alone.
    bool inFixedBands;
    // Computing the ends of rows by themselves takes longer than copying rows that could be read in place.
    bool isCostly;
};

// A window over the images' regions, of this size at each.
OwnWindowWork ownWindowWork(PxkImage* source, PxkImage* destination, const OwnArea& area);

// Brings source rows to the engine and its output to the processed channels of the destination. A tiled destination is
// walked tile by tile; a tiled source is fetched, for each destination tile if the destination is tiled too, otherwise
// at once; where both share pixels, all is fetched before the first write. False: out of memory, or a tile was refused;
// nothing was reported.
[[nodiscard]] bool ownRunWindow(const OwnWindowWork& work, OwnBandEngine engine);
