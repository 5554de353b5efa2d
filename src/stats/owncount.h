/* SPDX-License-Identifier: BSD-2-Clause */
// Counting of levels: samples go into counters, one for each level, and counters into the bins of a table.
#pragma once

#include "frame/ownbuffer.h"
#include "ownlut.h"

// The counters of some channels of depth 8U or 16U, in several parts a channel: equal neighbours are counted in
// different ones and need not wait for each other. A few 16-bit samples are brought to their bins one by one.
class OwnLevelCounts {
public:
    // For about so many samples a channel; the bins are empty. False: out of memory.
    [[nodiscard]] bool open(int32_t depth, PxkLUT* const* lut, int32_t nChannels, int64_t samples);
    void add(int32_t channel, const uint8_t* samples, ptrdiff_t n);
    // Takes back samples of level 0.
    void takeZeros(int32_t channel, ptrdiff_t n);
    // Adds the counts of all channels to the bins, and starts anew.
    void store();

private:
    uint32_t* counters(int32_t channel) const;

    int32_t depth_ = 0;
    int32_t nChannels_ = 0;
    PxkLUT* const* lut_ = nullptr;
    int64_t counted_ = 0;
    OwnBuffer<uint32_t> counters_;
};
