// SPDX-License-Identifier: BSD-2-Clause
#include "owngray.h"

#include <cstring>

#include "ownformula.h"

// ---- colour to gray ------------------------------------------------------------------------------------------------

// The weighted sum of the colours, in a type that holds it for all of them. At 8U and 16U the weights add up to 255,
// not 256: so every sum fits, and white becomes 254.
static inline uint16_t ownGraySum(uint8_t r, uint8_t g, uint8_t b)
{
    return static_cast<uint16_t>(54 * r + 183 * g + 18 * b);
}

static inline uint32_t ownGraySum(uint16_t r, uint16_t g, uint16_t b)
{
    return 54u * r + 183u * g + 18u * b;
}

static inline int32_t ownGraySum(int32_t r, int32_t g, int32_t b)
{
    return 109 * (r >> 11) + 366 * (g >> 11) + 37 * (b >> 11);
}

template <class Colour, class Gray, int32_t SHIFT> static void ownGrayRow(uint8_t* const* rows, ptrdiff_t n)
{
    const Colour* const red = reinterpret_cast<const Colour*>(rows[0]);
    const Colour* const green = reinterpret_cast<const Colour*>(rows[1]);
    const Colour* const blue = reinterpret_cast<const Colour*>(rows[2]);
    Gray* const gray = reinterpret_cast<Gray*>(rows[3]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        gray[i] = static_cast<Gray>(ownGraySum(red[i], green[i], blue[i]) >> SHIFT);
    }
}

// Pairs of samples are split where they are: widening the samples of a vector moves them about, which costs more than
// the sums. The weights are no constants to compilers, which make sums and shifts of products with constants.
static void ownGrayByteRow(uint8_t* const* rows, ptrdiff_t n)
{
    const volatile uint16_t weights[3] = { 54, 183, 18 };
    const uint16_t ofRed = weights[0], ofGreen = weights[1], ofBlue = weights[2];
    ownRunBlocks<uint8_t, 3, 4>(rows, n, [=](uint8_t* const* of, ptrdiff_t count) {
        const uint8_t *const red = of[0], *const green = of[1], *const blue = of[2];
        uint8_t* const gray = of[3];
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < count; i += 2) {
            uint16_t r, g, b;
            memcpy(&r, red + i, 2);
            memcpy(&g, green + i, 2);
            memcpy(&b, blue + i, 2);
            const uint16_t low = static_cast<uint16_t>(ofRed * (r & 255) + ofGreen * (g & 255) + ofBlue * (b & 255));
            const uint16_t high = static_cast<uint16_t>(ofRed * (r >> 8) + ofGreen * (g >> 8) + ofBlue * (b >> 8));
            const uint16_t word = static_cast<uint16_t>(low >> 8 | (high & 0xFF00));
            memcpy(gray + i, &word, 2);
        }
    });
}

// The bit is decided one place finer than gray is.
static void ownGrayBitRow32S(uint8_t* const* rows, ptrdiff_t n)
{
    const int32_t* const red = reinterpret_cast<const int32_t*>(rows[0]);
    const int32_t* const green = reinterpret_cast<const int32_t*>(rows[1]);
    const int32_t* const blue = reinterpret_cast<const int32_t*>(rows[2]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const int32_t sum = 109 * (red[i] >> 10) + 366 * (green[i] >> 10) + 37 * (blue[i] >> 10);
        rows[3][i] = sum >= 0x20000000;
    }
}

struct OwnGrayPair {
    int32_t srcDepth;
    int32_t dstDepth;
    OwnColourRow row;
};

// From 8U and 16U, bits are the highest one of gray.
static constexpr OwnGrayPair ownGrayPairs[] = {
    { PXK_DEPTH_8U, PXK_DEPTH_16U, ownGrayRow<uint8_t, uint16_t, 0> },
    { PXK_DEPTH_8U, PXK_DEPTH_8U, ownGrayByteRow },
    { PXK_DEPTH_8U, PXK_DEPTH_1U, ownGrayRow<uint8_t, uint8_t, 15> },
    { PXK_DEPTH_16U, PXK_DEPTH_16U, ownGrayRow<uint16_t, uint16_t, 8> },
    { PXK_DEPTH_16U, PXK_DEPTH_8U, ownGrayRow<uint16_t, uint8_t, 16> },
    { PXK_DEPTH_16U, PXK_DEPTH_1U, ownGrayRow<uint16_t, uint8_t, 23> },
    { PXK_DEPTH_32S, PXK_DEPTH_16U, ownGrayRow<int32_t, uint16_t, 13> },
    { PXK_DEPTH_32S, PXK_DEPTH_8U, ownGrayRow<int32_t, uint8_t, 21> },
    { PXK_DEPTH_32S, PXK_DEPTH_1U, ownGrayBitRow32S },
};

OwnColourRow ownColourToGrayRow(int32_t srcDepth, int32_t dstDepth)
{
    for (const OwnGrayPair& pair : ownGrayPairs) {
        if (pair.srcDepth == srcDepth && pair.dstDepth == dstDepth) return pair.row;
    }
    return nullptr;
}

// ---- gray to colour ------------------------------------------------------------------------------------------------

OwnGrayWeights ownGrayWeights(int32_t srcDepth, float red, float green, float blue)
{
    const bool isByte = srcDepth == PXK_DEPTH_1U || srcDepth == PXK_DEPTH_8U;
    const double scale = isByte ? 256.0 : 32768.0;
    const OwnGrayWeights given = { ownTruncateSigned(red * scale), ownTruncateSigned(green * scale),
                                   ownTruncateSigned(blue * scale), isByte ? 8 : 15 };
    if (given.red != 0 || given.green != 0 || given.blue != 0) return given;
    if (isByte) return { 54, 183, 18, 8 };
    return srcDepth == PXK_DEPTH_16U ? OwnGrayWeights { 109, 366, 37, 9 } : OwnGrayWeights { 6968, 23434, 2364, 15 };
}

// Results keep their low bits whatever the weight, so a product needs no more bits than the shift and a sample take.
template <class Sample, class Product>
static void ownWeighRow(uint8_t* const* rows, ptrdiff_t n, OwnGrayWeights weights)
{
    const Sample* const gray = reinterpret_cast<const Sample*>(rows[0]);
    Sample* const red = reinterpret_cast<Sample*>(rows[1]);
    Sample* const green = reinterpret_cast<Sample*>(rows[2]);
    Sample* const blue = reinterpret_cast<Sample*>(rows[3]);
    const Product redWeight = static_cast<Product>(weights.red);
    const Product greenWeight = static_cast<Product>(weights.green);
    const Product blueWeight = static_cast<Product>(weights.blue);
    const int32_t shift = weights.shift & 15;
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const Product sample = static_cast<Product>(gray[i]);
        red[i] = static_cast<Sample>(static_cast<Product>(sample * redWeight) >> shift);
        green[i] = static_cast<Sample>(static_cast<Product>(sample * greenWeight) >> shift);
        blue[i] = static_cast<Sample>(static_cast<Product>(sample * blueWeight) >> shift);
    }
}

static void ownWeighBitRow(uint8_t* const* rows, ptrdiff_t n, const OwnGrayWeights& weights)
{
    const int32_t given[3] = { weights.red, weights.green, weights.blue };
    for (int32_t k = 0; k < 3; ++k) {
        const uint8_t set = static_cast<uint8_t>(static_cast<uint32_t>(given[k]) * 255u >> weights.shift);
        const uint8_t* const gray = rows[0];
        uint8_t* const result = rows[1 + k];
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) result[i] = static_cast<uint8_t>(gray[i] * set);
    }
}

bool ownIsGrayDepth(int32_t srcDepth)
{
    return srcDepth == PXK_DEPTH_1U || srcDepth == PXK_DEPTH_8U || srcDepth == PXK_DEPTH_16U
        || srcDepth == PXK_DEPTH_32S;
}

void ownGrayToColourRow(int32_t srcDepth, const OwnGrayWeights& weights, uint8_t* const* rows, ptrdiff_t n)
{
    switch (srcDepth) {
    case PXK_DEPTH_1U: return ownWeighBitRow(rows, n, weights);
    case PXK_DEPTH_8U: return ownWeighRow<uint8_t, uint16_t>(rows, n, weights);
    case PXK_DEPTH_16U: return ownWeighRow<uint16_t, uint32_t>(rows, n, weights);
    default: return ownWeighRow<int32_t, int64_t>(rows, n, weights);
    }
}
