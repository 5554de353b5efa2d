// SPDX-License-Identifier: BSD-2-Clause
// YCrCb: the luma of red, green and blue, and blue and red less the luma, around half the range. Stored Y, Cb, Cr.
#include "ownbytesum.h"
#include "ownformula.h"

// The integer forms: weights of 14 fraction bits, rounded; no result leaves the range. 8U and 16U differ in the last
// places of their luma, and 8U takes its differences from the rounded luma.
struct OwnRgbToYcrcbBytes {
    OwnByteSum<4898, 9617, 1867, 8192, 14> luma;

    OwnColour<uint8_t> operator()(uint8_t r, uint8_t g, uint8_t b) const
    {
        const int16_t y = luma(r, g, b);
        return { static_cast<uint8_t>(y), difference<9246>(b, y), difference<11686>(r, y) };
    }

    // ((sample - luma) * WEIGHT + 2^21) / 2^14: the high half of a product of 16 bits is the product / 2^16.
    template <int32_t WEIGHT> static uint8_t difference(int16_t sample, int16_t luma)
    {
        const int16_t scaled = static_cast<int16_t>((sample - luma) * 4);
        return static_cast<uint8_t>(static_cast<int16_t>((scaled * WEIGHT) >> 16) + 128);
    }
};

struct OwnRgbToYcrcb {
    OwnColour<uint16_t> operator()(uint16_t r, uint16_t g, uint16_t b) const
    {
        return { static_cast<uint16_t>((4899 * r + 9617 * g + 1868 * b + 8192) >> 14),
                 static_cast<uint16_t>((0x20000000 - 2765 * r - 5427 * g + 8192 * b) >> 14),
                 static_cast<uint16_t>((8192 * r - 6860 * g + 0x20000000 - 1332 * b) >> 14) };
    }

    OwnColour<int32_t> operator()(int32_t r, int32_t g, int32_t b) const
    {
        return { ownTruncateSigned(0.299 * r + 0.587 * g + 0.114 * b),
                 ownTruncateSigned(-0.1687359 * r - 0.331264 * g + 0.5 * b + 1073741823.0),
                 ownTruncateSigned(0.5 * r - 0.41868759 * g - 0.08131241 * b + 1073741823.0) };
    }

    OwnColour<float> operator()(float r, float g, float b) const
    {
        return { 0.114f * b + 0.58700001f * g + 0.29899999f * r, -0.16873591f * r - 0.33126399f * g + 0.5f * b + 0.5f,
                 0.5f * r - 0.41868758f * g - 0.08131241f * b + 0.5f };
    }
};

struct OwnYcrcbToRgbBytes {
    OwnByteSum<22970, 0, 0, -2928675, 14> r;
    OwnByteSum<5638, 11700, 0, -2210595, 14> g;
    OwnByteSum<29032, 0, 0, -3701580, 14> b;

    OwnColour<uint8_t> operator()(uint8_t y, uint8_t cb, uint8_t cr) const
    {
        return { ownLimitByte(static_cast<int16_t>(y + r(cr, 0, 0))),
                 ownLimitByte(static_cast<int16_t>(y - g(cb, cr, 0))),
                 ownLimitByte(static_cast<int16_t>(y + b(cb, 0, 0))) };
    }
};

struct OwnYcrcbToRgb {
    OwnColour<uint16_t> operator()(uint16_t y, uint16_t cb, uint16_t cr) const
    {
        return { ownLimitWord(y + ((22970 * cr - 752669475) >> 14)),
                 ownLimitWord(y - ((5638 * cb + 11700 * cr - 568122915) >> 14)),
                 ownLimitWord(y + ((29032 * cb - 951306060) >> 14)) };
    }

    OwnColour<int32_t> operator()(int32_t y, int32_t cb, int32_t cr) const
    {
        return { ownTruncatePositive(y + 1.402 * cr - 1505386036.547 + 0.5),
                 ownTruncatePositive(y - 0.3441362862 * cb - 0.7141362862 * cr + 1136311521.6488118 + 0.5),
                 ownTruncatePositive(y + 1.772 * cb - 1902670511.242 + 0.5) };
    }

    OwnColour<float> operator()(float y, float cb, float cr) const
    {
        return { ownNotNegative(y + 1.40199995f * cr - 0.70099998f),
                 ownNotNegative(y - 0.3441363f * cb - 0.7141363f * cr + 0.5291363f),
                 ownNotNegative(y + 1.77199996f * cb - 0.88599998f) };
    }
};

const OwnColourModel ownYcrcbModel = { "YCr", ownDepthFault32F, ownColourRows<OwnRgbToYcrcb, OwnRgbToYcrcbBytes>(),
                                       ownColourRows<OwnYcrcbToRgb, OwnYcrcbToRgbBytes>() };
