#include "ownbits.h"

#include <algorithm>
#include <cstring>

#include "ownrows.h"

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

static inline uint8_t ownReversedByte(uint8_t bits)
{
    uint32_t b = bits;
    b = (b >> 4 | b << 4) & 0xFF;
    b = (b >> 2 & 0x33) | (b & 0x33) << 2;
    return static_cast<uint8_t>((b >> 1 & 0x55) | (b & 0x55) << 1);
}

void ownStoreReversedBits(const uint8_t* from, int32_t fromBit, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    constexpr ptrdiff_t blockBytes = 2048;
    uint8_t aligned[blockBytes];
    uint8_t reversed[blockBytes];
    while (n > 0) {
        const ptrdiff_t count = std::min<ptrdiff_t>(n, 8 * blockBytes - toBit);
        const ptrdiff_t bytes = ownBytesOfBits(toBit, count);
        // Placed so that reversing whole bytes leaves the run at the destination's bit position.
        const int32_t phase = static_cast<int32_t>(8 * bytes - toBit - count);
        const ptrdiff_t first = fromBit + n - count;
        ownAlignBits(from + first / 8, static_cast<int32_t>(first % 8), aligned, phase, count);
        for (ptrdiff_t i = 0; i < bytes; ++i) reversed[i] = ownReversedByte(aligned[bytes - 1 - i]);
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

// Eight pixels of a byte as eight bytes, the most significant bit in the first one. Each lane keeps the bit that is its
// own; adding 127 carries any bit of a lane to its top without reaching the next one.
static inline void ownSpreadByte(uint32_t bits, uint8_t* to, uint8_t one)
{
    const uint64_t own = bits * 0x0101010101010101u & 0x0102040810204080u;
    const uint64_t lanes = ((own + 0x7F7F7F7F7F7F7F7Fu) >> 7 & 0x0101010101010101u) * one;
    for (int32_t j = 0; j < 8; ++j) to[j] = static_cast<uint8_t>(lanes >> (8 * j));
}

void ownExpandBits(const uint8_t* from, int32_t fromBit, uint8_t* to, ptrdiff_t n, uint8_t one)
{
    ptrdiff_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const uint8_t* const byte = from + i / 8;
        // The second byte holds needed bits only when the row starts inside a byte.
        const uint32_t pair = static_cast<uint32_t>(byte[0]) << 8 | (fromBit != 0 ? byte[1] : 0u);
        ownSpreadByte(pair >> (8 - fromBit) & 0xFF, to + i, one);
    }
    for (; i < n; ++i) {
        const ptrdiff_t position = fromBit + i;
        to[i] = (from[position / 8] >> (7 - position % 8) & 1) != 0 ? one : uint8_t { 0 };
    }
}

// The lowest bits of eight bytes, the first one most significant. Lane j meets the constant's bit 63 - 9 j in the top
// byte, and no two of the 64 partial products meet in one bit, so nothing carries.
static inline uint8_t ownGatherByte(const uint8_t* from)
{
    uint64_t lanes = 0;
    for (int32_t j = 0; j < 8; ++j) lanes |= static_cast<uint64_t>(from[j]) << (8 * j);
    return static_cast<uint8_t>((lanes & 0x0101010101010101u) * 0x8040201008040201u >> 56);
}

void ownPackBits(const uint8_t* from, uint8_t* to, int32_t toBit, ptrdiff_t n)
{
    ptrdiff_t i = 0;
    const auto edge = [&](ptrdiff_t end) {
        for (; i < end; ++i) {
            const ptrdiff_t position = toBit + i;
            const uint8_t mask = static_cast<uint8_t>(128 >> (position % 8));
            ownMergeByte(to + position / 8, (from[i] & 1) != 0 ? mask : uint8_t { 0 }, mask);
        }
    };
    edge(std::min<ptrdiff_t>(n, (8 - toBit) % 8));
    for (; i + 8 <= n; i += 8) to[(toBit + i) / 8] = ownGatherByte(from + i);
    edge(n);
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
