/* SPDX-License-Identifier: BSD-2-Clause */
// Shifts of samples, all of one image by the same number of bits.
#pragma once

#include <cstring>

#include "ownscalar.h"

// A 64-bit word whose samples of type U all are `sample`.
template <class U> constexpr uint64_t ownInEverySample(U sample)
{
    return ~uint64_t { 0 } / static_cast<U>(~U { 0 }) * sample;
}

// Runs an operation on rows of samples that are taken as 64-bit words, whatever samples lie in them. There are no
// vector shifts of bytes, and shifts of 16-bit samples would be formed in 32 bits.
template <class Op> void ownRunWords(const OwnWork& work, Op op)
{
    const ptrdiff_t sampleBytes = std::max(ownSampleBytes(work.depth()), 1);
    const auto row = [op, sampleBytes](uint8_t* const* rows, ptrdiff_t n) {
        const uint8_t* const a = rows[0];
        uint8_t* const d = rows[1];
        const Op operation = op;
        const ptrdiff_t bytes = n * sampleBytes;
        const ptrdiff_t words = bytes / 8;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < words; ++i) {
            uint64_t word;
            memcpy(&word, a + 8 * i, 8);
            word = operation(word);
            memcpy(d + 8 * i, &word, 8);
        }
        uint64_t word = 0;
        const size_t rest = static_cast<size_t>(bytes % 8);
        memcpy(&word, a + 8 * words, rest);
        word = operation(word);
        memcpy(d + 8 * words, &word, rest);
    };
    ownRunWork(work, OwnPadding::WORKED_ON, row);
}
