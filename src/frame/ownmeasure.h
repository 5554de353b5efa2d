// The road of measures: what an operation learns from samples without writing any. Tiles are asked for reading only.
#pragma once

#include "ownwork.h"

// Samples of one row and one channel, or of all channels of the row's pixels where channels count alike.
struct OwnSampleStretch {
    const uint8_t* const* rows; // of each image, contiguous; one-bit: bytes of eight pixels, unselected bits 0
    ptrdiff_t n;                // samples; one-bit: bytes
    int32_t x;                  // of the first one's pixel, in the work
    int32_t y;
    int32_t channel;  // counted from the first processed one
    int32_t selected; // samples that are measured; all n but for one-bit rows and where others are zeroed
};

// What happens to samples that the mask leaves out, where single ones lie among others.
enum class OwnUnselected {
    ZEROED,  // they keep their places as samples of 0, which add nothing to a sum
    DROPPED, // the others close up, and x is not known
};

enum class OwnChannelUse { EACH, ALIKE };

// Calls `measure` for all selected samples of the work, whose images are all sources. Stretches come in the order of
// the rows, within a row from the left; how rows are cut depends on nothing but sizes, tiles and masks. False: a tile
// was refused, reported.
[[nodiscard]] bool ownMeasureSamples(const OwnWork& work, OwnUnselected unselected, OwnChannelUse channels,
                                     OwnFunction<void(const OwnSampleStretch&)> measure);
