// Products of 8-bit samples, formed in 16 bits. A row is taken as pairs of samples in 16-bit words: all lanes of a vector
// stay where they are, while widening whole samples would move them twice.
#pragma once

#include <cstring>

#include "frame/ownroads.h"
#include "ownsamples.h"

// The two samples of a word, as numbers. Which of them lies first in memory does not matter.
template <class T> struct OwnPair {
    OwnProduct<T> low, high;
};

template <class T> inline OwnPair<T> ownLoadPair(const uint8_t* from)
{
    using Wide = OwnProduct<T>;
    uint16_t word;
    memcpy(&word, from, sizeof word);
    const Wide raised = static_cast<Wide>(static_cast<uint16_t>(word << 8));
    return { static_cast<Wide>(raised >> 8), static_cast<Wide>(static_cast<Wide>(word) >> 8) };
}

template <class T> inline void ownStorePair(OwnPair<T> pair, uint8_t* to)
{
    const uint16_t word = static_cast<uint16_t>((pair.low & 0xFF) | static_cast<uint16_t>(pair.high) << 8);
    memcpy(to, &word, sizeof word);
}

// Limited, still in 16 bits.
template <class T> inline OwnProduct<T> ownLimitedProduct(OwnProduct<T> a, OwnProduct<T> b)
{
    using Wide = OwnProduct<T>;
    constexpr Wide low = std::numeric_limits<T>::min();
    constexpr Wide high = std::numeric_limits<T>::max();
    return std::min(std::max(static_cast<Wide>(a * b), low), high);
}

// The products of two rows, or of one row and a constant where `constant` is given.
template <class T, class Factor> inline void ownPairRow(const uint8_t* a, uint8_t* d, ptrdiff_t n, Factor factor)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n / 2; ++i) {
        const OwnPair<T> pair = ownLoadPair<T>(a + 2 * i);
        const OwnPair<T> other = factor(pair, i);
        ownStorePair<T>({ ownLimitedProduct<T>(pair.low, other.low), ownLimitedProduct<T>(pair.high, other.high) },
                        d + 2 * i);
    }
}
