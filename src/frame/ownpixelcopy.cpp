// SPDX-License-Identifier: BSD-2-Clause
#include "ownpixelcopy.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "ownbits.h"
#include "owndepth.h"
#include "ownivdep.h"

// ---- whole bytes ---------------------------------------------------------------------------------------------------

static void ownForwardBytes(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                            ptrdiff_t pixelBytes)
{
    memcpy(to + toX * pixelBytes, from + x * pixelBytes, static_cast<size_t>(n * pixelBytes));
}

// True where compilers reverse the bytes of a vector by one instruction.
#if defined(__SSSE3__) || defined(__aarch64__)
static constexpr bool ownReversesVectors = true;
#else
static constexpr bool ownReversesVectors = false;
#endif

// Pixels of three samples are reversed as blocks of samples, in which the outer two of each pixel have changed places.
static constexpr ptrdiff_t ownThirdsPixels = 64;

// For each of a pixel's three samples, ones in every lane of a block that holds it.
template <class T> struct OwnThirds {
    T lanes[3][3 * ownThirdsPixels] = {};
    constexpr OwnThirds()
    {
        for (ptrdiff_t j = 0; j < 3 * ownThirdsPixels; ++j) lanes[j % 3][j] = static_cast<T>(~T { 0 });
    }
};

// Whole blocks of n pixels, with a pixel of the row before the first and behind the last one, which are read but not
// moved. `from` is the pixel read last. Tells how many pixels were moved.
template <class T> static ptrdiff_t ownBackwardThirds(const uint8_t* from, uint8_t* to, ptrdiff_t n)
{
    static constexpr OwnThirds<T> thirds;
    const T* const source = reinterpret_cast<const T*>(from);
    T* const target = reinterpret_cast<T*>(to);
    constexpr ptrdiff_t samples = 3 * ownThirdsPixels;
    ptrdiff_t moved = 0;
    for (; moved + ownThirdsPixels <= n; moved += ownThirdsPixels) {
        const T* const in = source - 3 * (moved + ownThirdsPixels - 1);
        T* const out = target + 3 * moved;
        OWN_IVDEP
        for (ptrdiff_t j = 0; j < samples; ++j) {
            const T first = in[j + 2] & thirds.lanes[0][j];
            const T middle = in[j] & thirds.lanes[1][j];
            const T last = in[j - 2] & thirds.lanes[2][j];
            out[samples - 1 - j] = static_cast<T>(first | middle | last);
        }
    }
    return moved;
}

// BYTES is the size of a pixel; 0: only pixelBytes tells.
template <ptrdiff_t BYTES>
static void ownBackwardBytes(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                             ptrdiff_t pixelBytes)
{
    const ptrdiff_t bytes = BYTES != 0 ? BYTES : pixelBytes;
    const uint8_t* __restrict const source = from + x * bytes;
    uint8_t* __restrict const target = to + toX * bytes;
    ptrdiff_t i = 0;
    if constexpr (BYTES % 3 == 0 && BYTES != 0) {
        // Moves of a power of two are half as many. What they bring along belongs to the pixel before, and the next
        // move overwrites it; so neither the first nor the last pixel is moved this way.
        constexpr size_t wideBytes = BYTES / 3 * 4;
        if (n > 0) memcpy(target, source, BYTES);
        i = 1;
        if constexpr (ownReversesVectors && BYTES == 3) {
            i += ownBackwardThirds<uint8_t>(source - BYTES, target + BYTES, n - 2);
        } else if constexpr (ownReversesVectors && BYTES == 6) {
            i += ownBackwardThirds<uint16_t>(source - BYTES, target + BYTES, n - 2);
        }
        for (; i < n - 1; ++i) memcpy(target + i * bytes, source - i * bytes, wideBytes);
    }
    for (; i < n; ++i) memcpy(target + i * bytes, source - i * bytes, static_cast<size_t>(bytes));
}

template <>
void ownBackwardBytes<1>(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    const uint8_t* __restrict const source = from + x;
    uint8_t* __restrict const target = to + toX;
    ptrdiff_t i = 0;
    for (; !ownReversesVectors && i + 8 <= n; i += 8) {
        uint64_t word;
        memcpy(&word, source - i - 7, sizeof word);
        word = __builtin_bswap64(word);
        memcpy(target + i, &word, sizeof word);
    }
    for (; i < n; ++i) target[i] = source[-i];
}

template <ptrdiff_t BYTES>
static void ownStillBytes(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                          ptrdiff_t pixelBytes)
{
    const ptrdiff_t bytes = BYTES != 0 ? BYTES : pixelBytes;
    const uint8_t* __restrict const source = from + x * bytes;
    uint8_t* __restrict const target = to + toX * bytes;
    for (ptrdiff_t i = 0; i < n; ++i) memcpy(target + i * bytes, source, static_cast<size_t>(bytes));
}

template <> void ownStillBytes<1>(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    memset(to + toX, from[x], static_cast<size_t>(n));
}

// Short rows as two moves of a fixed size, which may overlap: a call for each would cost more.
template <ptrdiff_t HALF>
static void ownCopyHalves(const uint8_t* from, ptrdiff_t fromStep, uint8_t* to, ptrdiff_t toStep, ptrdiff_t n,
                          int64_t count)
{
    for (; count > 0; --count, from += fromStep, to += toStep) {
        uint8_t first[HALF];
        uint8_t last[HALF];
        memcpy(first, from, HALF);
        memcpy(last, from + n - HALF, HALF);
        memcpy(to, first, HALF);
        memcpy(to + n - HALF, last, HALF);
    }
}

void ownCopyByteRows(const uint8_t* from, ptrdiff_t fromStep, uint8_t* to, ptrdiff_t toStep, ptrdiff_t n, int64_t count)
{
    if (n == 1) return ownCopyHalves<1>(from, fromStep, to, toStep, n, count);
    if (n < 4) return ownCopyHalves<2>(from, fromStep, to, toStep, n, count);
    if (n < 8) return ownCopyHalves<4>(from, fromStep, to, toStep, n, count);
    if (n < 16) return ownCopyHalves<8>(from, fromStep, to, toStep, n, count);
    if (n < 32) return ownCopyHalves<16>(from, fromStep, to, toStep, n, count);
    if (n < 64) return ownCopyHalves<32>(from, fromStep, to, toStep, n, count);
    for (; count > 0; --count, from += fromStep, to += toStep) memcpy(to, from, static_cast<size_t>(n));
}

template <ptrdiff_t BYTES> static OwnPixelCopies ownByteCopies()
{
    return { ownForwardBytes, ownBackwardBytes<BYTES>, ownStillBytes<BYTES> };
}

// ---- bits ----------------------------------------------------------------------------------------------------------

static void ownForwardBits(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    ownStoreBits(from + x / 8, static_cast<int32_t>(x % 8), to + toX / 8, static_cast<int32_t>(toX % 8), n);
}

static void ownBackwardBits(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    const ptrdiff_t last = x - n + 1;
    ownStoreReversedBits(from + last / 8, static_cast<int32_t>(last % 8), to + toX / 8, static_cast<int32_t>(toX % 8),
                         n);
}

static void ownStillBits(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    const bool value = (from[x / 8] >> (7 - x % 8) & 1) != 0;
    ownFillBits(to + toX / 8, static_cast<int32_t>(toX % 8), n, value);
}

// ---- the choice ----------------------------------------------------------------------------------------------------

OwnPixelCopies ownPixelCopies(int32_t pixelBytes)
{
    switch (pixelBytes) {
    case 0: return { ownForwardBits, ownBackwardBits, ownStillBits };
    case 1: return ownByteCopies<1>();
    case 2: return ownByteCopies<2>();
    case 3: return ownByteCopies<3>();
    case 4: return ownByteCopies<4>();
    case 6: return ownByteCopies<6>();
    case 8: return ownByteCopies<8>();
    case 12: return ownByteCopies<12>();
    case 16: return ownByteCopies<16>();
    default: return ownByteCopies<0>();
    }
}

OwnConstant ownConstant(int32_t depth, uint32_t value)
{
    OwnConstant constant = { {}, ownSampleBytes(depth) };
    if (constant.sampleBytes == 0) value = (value & 1) != 0 ? 0xFFFFFFFFu : 0;
    ownForSampleBytes(std::max(constant.sampleBytes, 1), [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        T samples[ownConstantBytes / sizeof(T)];
        std::fill(std::begin(samples), std::end(samples), static_cast<T>(value));
        memcpy(constant.bytes, samples, sizeof samples);
    });
    return constant;
}
