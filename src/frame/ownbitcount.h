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

// Three bits of every place added: the sum's higher bit is the result, the lower one takes the place of `sum`.
inline uint64_t ownAddBits(uint64_t& sum, uint64_t a, uint64_t b)
{
    const uint64_t higher = (sum & a) | (sum & b) | (a & b);
    sum ^= a ^ b;
    return higher;
}

// The ones of n bytes, a multiple of ownOnesBlock. Four words at a time are added place by place, so that only one of
// four sums is counted.
constexpr ptrdiff_t ownOnesLanes = 8, ownOnesBlock = 4 * 8 * ownOnesLanes;
template <class WordAt> inline uint64_t ownCountBlocks(ptrdiff_t n, const WordAt& wordAt)
{
    uint64_t ones[ownOnesLanes] = {}, twos[ownOnesLanes] = {}, fours[ownOnesLanes] = {};
    for (ptrdiff_t i = 0; i < n; i += ownOnesBlock) {
        for (ptrdiff_t j = 0; j < ownOnesLanes; ++j) {
            const auto word = [=](ptrdiff_t k) { return wordAt(i + 8 * (k * ownOnesLanes + j), size_t { 8 }); };
            const uint64_t first = ownAddBits(ones[j], word(0), word(1));
            const uint64_t second = ownAddBits(ones[j], word(2), word(3));
            fours[j] += ownOnesOfWord(ownAddBits(twos[j], first, second));
        }
    }
    uint64_t count = 0;
    for (ptrdiff_t j = 0; j < ownOnesLanes; ++j)
        count += 4 * fours[j] + 2 * ownOnesOfWord(twos[j]) + ownOnesOfWord(ones[j]);
    return count;
}

// The ones of n bytes, which wordAt(offset, bytes) loads eight at a time.
template <class WordAt> inline uint64_t ownCountOnes(ptrdiff_t n, WordAt wordAt)
{
    const ptrdiff_t blocks = n & -ownOnesBlock, whole = n & ~static_cast<ptrdiff_t>(7);
    uint64_t count = blocks > 0 ? ownCountBlocks(blocks, wordAt) : 0;
    for (ptrdiff_t i = blocks; i < whole; i += 8) count += ownOnesOfWord(wordAt(i, size_t { 8 }));
    return count + ownOnesOfWord(wordAt(whole, static_cast<size_t>(n - whole)));
}

inline uint64_t ownCountOnes(const uint8_t* bytes, ptrdiff_t n)
{
    return ownCountOnes(n, [bytes](ptrdiff_t i, size_t count) { return ownLoadWord(bytes + i, count); });
}
