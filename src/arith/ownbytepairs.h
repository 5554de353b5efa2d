// Products of 8-bit samples, formed in 16 bits. A row is taken as pairs of samples in 16-bit words: every lane of a
// vector stays in its place, while widening the samples of a whole vector moves them there and back.
#pragma once

#include <cstring>

#include "frame/ownwork.h"
#include "ownsamples.h"

// Two samples as numbers. Which of them lies first in memory does not matter.
template <class T> struct OwnPair {
    OwnProduct<T> low;
    OwnProduct<T> high;
};

template <class T> inline OwnPair<T> ownPairOf(uint16_t word)
{
    using Wide = OwnProduct<T>;
    const Wide raised = static_cast<Wide>(static_cast<uint16_t>(word << 8));
    return { static_cast<Wide>(raised >> 8), static_cast<Wide>(static_cast<Wide>(word) >> 8) };
}

// The products limited to the samples' range.
template <class T> inline uint16_t ownProductWord(const OwnPair<T>& a, const OwnPair<T>& b)
{
    using Wide = OwnProduct<T>;
    constexpr Wide least = std::numeric_limits<T>::min();
    constexpr Wide most = std::numeric_limits<T>::max();
    const Wide low = std::min(std::max(static_cast<Wide>(a.low * b.low), least), most);
    const Wide high = std::min(std::max(static_cast<Wide>(a.high * b.high), least), most);
    return static_cast<uint16_t>((low & 0xFF) | static_cast<uint16_t>(high) << 8);
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
        const ptrdiff_t even = n & ~ptrdiff_t { 1 };
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < even; i += 2) {
            const uint16_t word = operation(ownLoadBytePair(a + i, 2), ownLoadBytePair(b + i, 2));
            memcpy(d + i, &word, 2);
        }
        if (even == n) return;
        const uint16_t word = operation(ownLoadBytePair(a + even, 1), ownLoadBytePair(b + even, 1));
        memcpy(d + even, &word, 1);
    };
    ownRunWork(work, OwnPadding::WORKED_ON, row);
}
