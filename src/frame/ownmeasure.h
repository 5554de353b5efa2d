/* SPDX-License-Identifier: BSD-2-Clause */
// The road of measures: what an operation learns from samples without writing any. Tiles are asked for reading only.
#pragma once

#include "ownwork.h"

// Samples of one row and one channel. Where samples count alike: of all channels of the row's pixels, or of all rows.
struct OwnSampleStretch {
    const uint8_t* const* rows; // of each image, contiguous; one-bit: bytes of eight pixels, unselected bits 0
    ptrdiff_t n;                // samples; one-bit: bytes
    int32_t x;                  // of the first one's pixel, in the work
    int32_t y;
    int32_t channel;  // counted from the first processed one
    int64_t selected; // samples that are measured; others among them are 0, which adds nothing to a sum
};

// Whether a measure tells channels and places apart.
enum class OwnSamplesCount { EACH, ALIKE };

// Calls `measure` for all selected samples of the work, whose images are all sources. Stretches come in the order of
// the rows, within a row from the left; how rows are cut or joined depends on nothing but sizes, row steps, tiles and
// masks. False: a tile was refused, reported.
[[nodiscard]] bool ownMeasureSamples(const OwnWork& work, OwnSamplesCount samples,
                                     OwnFunction<void(const OwnSampleStretch&)> measure);
