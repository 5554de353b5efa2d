// SPDX-License-Identifier: BSD-2-Clause
#include "ownbits.h"

#include <algorithm>
#include <cstring>

#include "ownivdep.h"

void ownAlignBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    const ptrdiff_t inBytes = ownBytesOfBits(fromBit, n);
    const ptrdiff_t outBytes = ownBytesOfBits(toBit, n);
    const int32_t shift = fromBit - toBit; // to the left when positive
    if (shift == 0) {
        memcpy(to, from, static_cast<size_t>(inBytes));
        return;
    }
    // Byte i of the result joins the neighbours i + lead and i + lead + 1. Lanes of a word are bytes here: bits that a
    // shift carries from one lane to the next are masked away, so the byte order of the machine does not matter.
    const ptrdiff_t lead = shift > 0 ? 0 : -1;
    const int32_t left = shift & 7;
    const int32_t right = 8 - left;
    const uint64_t highLanes = 0x0101010101010101u * ((0xFFu << left) & 0xFFu);
    const uint64_t lowLanes = 0x0101010101010101u * (0xFFu >> right);
    const auto joined = [&](ptrdiff_t i) {
        const ptrdiff_t first = i + lead;
        const uint32_t high = first >= 0 ? from[first] : 0u;
        const uint32_t low = first + 1 < inBytes ? from[first + 1] : 0u;
        return static_cast<uint8_t>(high << left | low >> right);
    };
    ptrdiff_t i = 0;
    if (lead < 0) to[i++] = joined(0);
    const ptrdiff_t wordEnd = std::min(outBytes - 7, inBytes - 8 - lead); // both loads of eight bytes stay inside
    const uint8_t* const source = from + lead;
    for (; i < wordEnd; i += 8) {
        uint64_t high;
        uint64_t low;
        memcpy(&high, source + i, 8);
        memcpy(&low, source + i + 1, 8);
        const uint64_t word = (high << left & highLanes) | (low >> right & lowLanes);
        memcpy(to + i, &word, 8);
    }
    for (; i < outBytes; ++i) to[i] = joined(i);
}

static inline void ownMergeByte(uint8_t* to, uint8_t value, uint8_t mask)
{
    *to = static_cast<uint8_t>((*to & ~mask) | (value & mask));
}

// Source bits stand at the destination's bit position already.
static void ownMergeBits(const uint8_t* from, uint8_t* to, int32_t bit, ptrdiff_t n)
{
    const ptrdiff_t last = ownBytesOfBits(bit, n) - 1;
    const int32_t end = static_cast<int32_t>(bit + n - 8 * last);
    if (last == 0) return ownMergeByte(to, from[0], ownByteMask(bit, end));
    ownMergeByte(to, from[0], ownByteMask(bit, 8));
    memcpy(to + 1, from + 1, static_cast<size_t>(last - 1));
    ownMergeByte(to + last, from[last], ownByteMask(0, end));
}

void ownStoreBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    if (fromBit == toBit) return ownMergeBits(from, to, toBit, n);
    uint8_t aligned[2048];
    const ptrdiff_t most = 8 * static_cast<ptrdiff_t>(sizeof aligned) - 8;
    while (n > 0) {
        const ptrdiff_t count = std::min(n, most - toBit); // ends at a byte of `to`
        ownAlignBits(from, fromBit, aligned, toBit, count);
        ownMergeBits(aligned, to, toBit, count);
        from += (fromBit + count) / 8;
        fromBit = static_cast<int32_t>((fromBit + count) % 8);
        to += (toBit + count) / 8;
        toBit = static_cast<int32_t>((toBit + count) % 8);
        n -= count;
    }
}

// All bits of a word, which is those of each byte and the order of the bytes: it serves either byte order.
static inline uint64_t ownReversedWord(uint64_t w)
{
    w = (w >> 1 & 0x5555555555555555u) | (w & 0x5555555555555555u) << 1;
    w = (w >> 2 & 0x3333333333333333u) | (w & 0x3333333333333333u) << 2;
    w = (w >> 4 & 0x0F0F0F0F0F0F0F0Fu) | (w & 0x0F0F0F0F0F0F0F0Fu) << 4;
    return __builtin_bswap64(w);
}

void ownStoreReversedBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    constexpr ptrdiff_t blockBytes = 2048;
    uint8_t aligned[blockBytes + 8];
    uint8_t reversed[blockBytes + 8];
    memset(aligned, 0, 8); // whole words are reversed, the last one reaches over the front
    while (n > 0) {
        const ptrdiff_t count = std::min<ptrdiff_t>(n, 8 * blockBytes - toBit);
        const ptrdiff_t bytes = ownBytesOfBits(toBit, count);
        // Placed so that reversing whole bytes leaves the run at the destination's bit position.
        const int32_t phase = static_cast<int32_t>(8 * bytes - toBit - count);
        const ptrdiff_t first = fromBit + n - count;
        ownAlignBits(from + first / 8, static_cast<int32_t>(first % 8), aligned + 8, phase, count);
        for (ptrdiff_t i = 0; i < bytes; i += 8) {
            uint64_t word;
            memcpy(&word, aligned + bytes - i, sizeof word);
            word = ownReversedWord(word);
            memcpy(reversed + i, &word, sizeof word);
        }
        ownMergeBits(reversed, to, toBit, count);
        to += (toBit + count) / 8;
        toBit = static_cast<int32_t>((toBit + count) % 8);
        n -= count;
    }
}

uint64_t ownLoadBits(const uint8_t* from, int32_t fromBit, int32_t n)
{
    const ptrdiff_t bytes = ownBytesOfBits(fromBit, n);
    uint64_t word = 0;
    if (bytes >= 8) {
        for (int32_t i = 0; i < 8; ++i) word |= static_cast<uint64_t>(from[i]) << (56 - 8 * i); // one load
    } else {
        for (int32_t i = 0; i < bytes; ++i) word |= static_cast<uint64_t>(from[i]) << (56 - 8 * i);
    }
    word <<= fromBit;
    if (bytes > 8) word |= static_cast<uint64_t>(from[8]) >> (8 - fromBit);
    return n < 64 ? word & ~(UINT64_MAX >> n) : word;
}

// Eight bytes as a word whose lowest lane is the first one, in either byte order: one load or store.
static inline uint64_t ownLanesOf(uint64_t word)
{
    return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? word : __builtin_bswap64(word);
}

// Eight pixels of a byte as eight bytes of a pattern or 0, the most significant bit in the first one. Each lane keeps
// the bit that is its own; adding 127 carries any bit of a lane to its top without reaching the next one.
static inline void ownSpreadByte(uint32_t bits, uint64_t pattern, uint8_t* to)
{
    const uint64_t own = bits * 0x0101010101010101u & 0x0102040810204080u;
    const uint64_t ones = (own + 0x7F7F7F7F7F7F7F7Fu) >> 7 & 0x0101010101010101u;
    const uint64_t lanes = ownLanesOf(((ones << 8) - ones) & pattern);
    memcpy(to, &lanes, sizeof lanes);
}

void ownExpandBits(const uint8_t* from, int32_t fromBit, uint8_t* to, ptrdiff_t n, uint8_t one)
{
    const uint64_t pattern = one * 0x0101010101010101u;
    const ptrdiff_t bytes = n / 8;
    if (fromBit == 0) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < bytes; ++i) ownSpreadByte(from[i], pattern, to + 8 * i);
    } else {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < bytes; ++i) {
            const uint32_t pair = static_cast<uint32_t>(from[i]) << 8 | from[i + 1];
            ownSpreadByte(pair >> (8 - fromBit) & 0xFF, pattern, to + 8 * i);
        }
    }
    for (ptrdiff_t i = 8 * bytes; i < n; ++i) {
        const ptrdiff_t position = fromBit + i;
        to[i] = (from[position / 8] >> (7 - position % 8) & 1) != 0 ? one : uint8_t { 0 };
    }
}

// The lowest bits of eight bytes, the first one most significant. Lane j meets the constant's bit 63 - 9 j in the top
// byte, and no two of the 64 partial products meet in one bit, so nothing carries.
static inline uint8_t ownGatherByte(const uint8_t* from)
{
    uint64_t word;
    memcpy(&word, from, sizeof word);
    return static_cast<uint8_t>((ownLanesOf(word) & 0x0101010101010101u) * 0x8040201008040201u >> 56);
}

// Single pixels from `start` to `end`.
static void ownPackEdge(const uint8_t* from, uint8_t* to, int32_t toBit, ptrdiff_t start, ptrdiff_t end)
{
    for (ptrdiff_t i = start; i < end; ++i) {
        const ptrdiff_t position = toBit + i;
        const uint8_t mask = static_cast<uint8_t>(128 >> (position % 8));
        ownMergeByte(to + position / 8, (from[i] & 1) != 0 ? mask : uint8_t { 0 }, mask);
    }
}

void ownPackBits(const uint8_t* from, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    const ptrdiff_t head = std::min<ptrdiff_t>(n, (8 - toBit) % 8);
    const ptrdiff_t bytes = (n - head) / 8;
    const uint8_t* const source = from + head;
    uint8_t* const target = to + (toBit + head) / 8;
    ownPackEdge(from, to, toBit, 0, head);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < bytes; ++i) target[i] = ownGatherByte(source + 8 * i);
    ownPackEdge(from, to, toBit, head + 8 * bytes, n);
}

void ownFillBits(uint8_t* to, int32_t toBit, ptrdiff_t n, bool value)
{
    if (n < 1) return;
    const uint8_t fill = value ? 0xFF : 0;
    const ptrdiff_t last = ownBytesOfBits(toBit, n) - 1;
    const int32_t end = static_cast<int32_t>(toBit + n - 8 * last);
    if (last == 0) return ownMergeByte(to, fill, ownByteMask(toBit, end));
    ownMergeByte(to, fill, ownByteMask(toBit, 8));
    memset(to + 1, fill, static_cast<size_t>(last - 1));
    ownMergeByte(to + last, fill, ownByteMask(0, end));
}
