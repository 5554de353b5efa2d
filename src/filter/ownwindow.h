// The road of the neighbourhood filters: an engine sees bands of source rows that already reach beyond the output on
// all sides, and writes output rows. It never tests a coordinate and knows nothing of borders, tiles, masks or
// channels.
#pragma once

#include "frame/ownregion.h"

// How many pixels a window reaches beyond the pixel it belongs to.
struct OwnMargins {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

struct OwnBand {
    // top + height + bottom rows: output row y depends on rows[y] to rows[y + top + bottom]. Each row starts `left`
    // pixels before the first output pixel and ends `right` pixels behind the last one.
    const uint8_t* const* rows;
    uint8_t* const* out; // height rows; they overlap no source row
    ptrdiff_t width;     // samples of an output row: pixels times step; for rows of bits: pixels
    int32_t height;
    int32_t step; // samples from a pixel to its neighbour
};

// One-bit output as bytes: every value but 0 becomes 1.
void ownLimitBits(const OwnBand& band);

// Computes all output rows of a band. False: out of memory.
struct OwnBandEngine {
    bool (*call)(const void* self, const OwnBand& band);
    const void* self;
};

template <class F> OwnBandEngine ownBandEngine(const F& engine)
{
    return { [](const void* self, const OwnBand& band) { return (*static_cast<const F*>(self))(band); }, &engine };
}

enum class OwnBitRows {
    AS_BYTES, // a one-bit pixel is a byte of 0 or 1, in source and output rows
    AS_BITS,  // rows stay bits and start at the most significant bit of their first byte
};

// Read outside the region by the image's border modes, as far as a window reaches.
constexpr int32_t ownRingNone = -1;

struct OwnWindowWork {
    PxkImage* source; // a private copy of the header where border constants had to be limited
    PxkImage* destination;
    bool isInPlace;     // both are one image of the caller
    OwnRect sourceRect; // of the size of destinationRect
    OwnRect destinationRect;
    const OwnBits* mask; // null, or the bits of the work
    OwnMargins margins;
    OwnBitRows bitRows;
    // ownRingNone: real samples wherever the image has them, beyond it by its border modes. Otherwise only a ring of so
    // many samples round the region is read in that way, and beyond the ring its samples repeat.
    int32_t ring;
};

// True when writing one image may change what is read from the other: one record of tiles, or overlapping blocks.
bool ownSharePixels(const PxkImage* imageA, const PxkImage* imageB);

// Images, rectangles of this size at each image's region, and whether pixels are shared.
void ownPlaceWindow(OwnWindowWork& work, PxkImage* source, PxkImage* destination, OwnSize size);

// Brings source rows to the engine and its output to the processed channels of the destination. A tiled destination is
// walked tile by tile; a tiled source is fetched, for each destination tile if the destination is tiled too, otherwise
// at once; in place all is fetched before the first write. False: out of memory, or a tile was refused; nothing was
// reported.
[[nodiscard]] bool ownRunWindow(const OwnWindowWork& work, const OwnBandEngine& engine);
