#include "ownpixelcopy.h"

#include <cstring>

#include "ownbits.h"
#include "owndepth.h"

// ---- whole bytes ---------------------------------------------------------------------------------------------------

static void ownForwardBytes(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n,
                            ptrdiff_t pixelBytes)
{
    memcpy(to + toX * pixelBytes, from + x * pixelBytes, static_cast<size_t>(n * pixelBytes));
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
        for (i = 1; i < n - 1; ++i) memcpy(target + i * bytes, source - i * bytes, wideBytes);
    }
    for (; i < n; ++i) memcpy(target + i * bytes, source - i * bytes, static_cast<size_t>(bytes));
}

// Single bytes, eight at a time.
template <>
void ownBackwardBytes<1>(const uint8_t* from, ptrdiff_t x, uint8_t* to, ptrdiff_t toX, ptrdiff_t n, ptrdiff_t)
{
    const uint8_t* __restrict const source = from + x;
    uint8_t* __restrict const target = to + toX;
    ptrdiff_t i = 0;
    for (; i + 8 <= n; i += 8) {
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
    const bool isStored = ownForSampleBytes(constant.sampleBytes, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T sample = static_cast<T>(value);
        memcpy(constant.bytes, &sample, sizeof sample);
        return true;
    });
    if (!isStored) constant.bytes[0] = (value & 1) != 0 ? 0xFF : 0;
    return constant;
}
