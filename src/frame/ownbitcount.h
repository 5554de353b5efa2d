/* SPDX-License-Identifier: BSD-2-Clause */
// How many bits of a row are 1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Up to eight bytes; the rest of the word is 0.
inline uint64_t ownLoadWord(const uint8_t* from, size_t bytes)
{
    uint64_t word = 0;
    memcpy(&word, from, bytes);
    return word;
}

// Sums of neighbouring bits, then of pairs, halves of bytes, and so on: unlike the processor's own instruction, which
// not all have, compilers turn it into vectors.
inline uint64_t ownOnesOfWord(uint64_t w)
{
    w -= w >> 1 & 0x5555555555555555u;
    w = (w & 0x3333333333333333u) + (w >> 2 & 0x3333333333333333u);
    w = (w + (w >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    w += w >> 8;
    w += w >> 16;
    return (w + (w >> 32)) & 0x7F;
}

// The ones of n bytes, which wordAt(offset, bytes) loads eight at a time.
template <class WordAt> inline uint64_t ownCountOnes(ptrdiff_t n, WordAt wordAt)
{
    const ptrdiff_t whole = n & ~static_cast<ptrdiff_t>(7);
    uint64_t count = 0;
    for (ptrdiff_t i = 0; i < whole; i += 8) count += ownOnesOfWord(wordAt(i, size_t { 8 }));
    return count + ownOnesOfWord(wordAt(whole, static_cast<size_t>(n - whole)));
}

inline uint64_t ownCountOnes(const uint8_t* bytes, ptrdiff_t n)
{
    return ownCountOnes(n, [bytes](ptrdiff_t i, size_t count) { return ownLoadWord(bytes + i, count); });
}
