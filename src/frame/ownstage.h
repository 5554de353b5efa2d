/* SPDX-License-Identifier: BSD-2-Clause */
// How views reach a row function: in place, or through blocks on the stack where they do not lie as a row function
// wants them.
#pragma once

#include "ownmask.h"
#include "ownviews.h"

// Samples are staged in blocks of this many bytes an operand, which stay in the first-level cache together.
constexpr ptrdiff_t ownStageBytes = 4096;

// Bytes whose mask is 0xFF come from `result`, the others stay. The choice is made on bit patterns: moving an
// unselected float through a floating-point register could change a NaN.
inline void ownBlend(uint8_t* target, const uint8_t* result, const uint8_t* mask, ptrdiff_t n)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const uint8_t old = target[i];
        target[i] = static_cast<uint8_t>(old ^ ((old ^ result[i]) & mask[i]));
    }
}

// The two halves of ownRunViews: samples, with one-bit views among them as bytes; and one-bit views alone.
void ownRunSamples(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                   const OwnRowFunction& rowFunction);
void ownRunBits(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                const OwnRowFunction& rowFunction);
