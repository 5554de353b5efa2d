/* SPDX-License-Identifier: BSD-2-Clause */
// Products of 8-bit samples, formed in 16 bits. A row is taken as pairs of samples in 16-bit words: every lane of a
// vector stays in its place, while widening the samples of a whole vector moves them there and back.
#pragma once

#include <cstring>

#include "frame/ownblockrows.h"
#include "frame/ownwork.h"
#include "ownsamples.h"

// The samples of a word as numbers. Which of them lies first in memory does not matter.
template <class T> inline OwnProduct<T> ownLowSample(uint16_t word)
{
    using Wide = OwnProduct<T>;
    if constexpr (std::is_unsigned<T>::value) {
        return word & 0xFF;
    } else {
        return static_cast<Wide>(static_cast<Wide>(static_cast<uint16_t>(word << 8)) >> 8);
    }
}

template <class T> inline OwnProduct<T> ownHighSample(uint16_t word)
{
    return static_cast<OwnProduct<T>>(static_cast<OwnProduct<T>>(word) >> 8);
}

// Products limited to the samples' range.
template <class T> inline uint16_t ownLimitedWord(OwnProduct<T> low, OwnProduct<T> high)
{
    using Wide = OwnProduct<T>;
    constexpr Wide least = std::numeric_limits<T>::min();
    constexpr Wide most = std::numeric_limits<T>::max();
    low = std::min(std::max(low, least), most);
    high = std::min(std::max(high, least), most);
    return static_cast<uint16_t>((low & 0xFF) | static_cast<uint16_t>(high) << 8);
}

template <class T> inline uint16_t ownProductWord(uint16_t a, uint16_t b)
{
    using Wide = OwnProduct<T>;
    return ownLimitedWord<T>(static_cast<Wide>(ownLowSample<T>(a) * ownLowSample<T>(b)),
                             static_cast<Wide>(ownHighSample<T>(a) * ownHighSample<T>(b)));
}

inline uint16_t ownLoadBytePair(const uint8_t* from, size_t bytes)
{
    uint16_t word = 0;
    memcpy(&word, from, bytes);
    return word;
}

// Runs word operations: `op` makes a word of the destination from one of each source, `nSources` being 1 or 2. The last
// sample of an odd row is half a word.
template <int nSources, class Op> void ownRunPairs(const OwnWork& work, Op op)
{
    const auto row = [op](uint8_t* const* rows, ptrdiff_t n) {
        const Op operation = op;
        const uint8_t* const a = rows[0];
        const uint8_t* const b = rows[nSources - 1];
        uint8_t* const d = rows[nSources];
        const auto make = [=](ptrdiff_t i, size_t bytes) {
            return operation(ownLoadBytePair(a + i, bytes), ownLoadBytePair(b + i, bytes));
        };
        // An odd row's last sample is made before those next to it are stored.
        const uint16_t last = n % 2 != 0 ? make(n - 1, 1) : uint16_t(0);
        ownMakeRow<uint16_t, ownBlockOf<uint16_t>>(d, n / 2, [=](ptrdiff_t i) { return make(2 * i, 2); });
        if (n % 2 != 0) memcpy(d + n - 1, &last, 1);
    };
    ownRunWork(work, OwnPadding::WORKED_ON, row);
}
