// SPDX-License-Identifier: BSD-2-Clause
// YUV: the luma of red, green and blue, and two differences around half the range.
#include "ownbytesum.h"
#include "ownformula.h"

// The integer forms: weights of 15 fraction bits. U never leaves the range; V does.
struct OwnRgbToYuvBytes {
    OwnByteSum<9798, 19235, 3736, 0, 15> y;
    OwnByteSum<-4784, -9437, 14221, 127 << 15, 15> u;
    OwnByteSum<20218, -16941, -3277, 127 << 15, 15> v;

    OwnColour<uint8_t> operator()(uint8_t r, uint8_t g, uint8_t b) const
    {
        return { static_cast<uint8_t>(y(r, g, b)), static_cast<uint8_t>(u(r, g, b)), ownLimitByte(v(r, g, b)) };
    }
};

struct OwnRgbToYuv {
    OwnColour<uint16_t> operator()(uint16_t r, uint16_t g, uint16_t b) const
    {
        const uint32_t y = (9798u * r + 19235u * g + 3736u * b) >> 15; // white takes 32 bits
        const int32_t u = (-4784 * r - 9437 * g + 14221 * b) >> 15;
        const int32_t v = (20218 * r - 16941 * g - 3277 * b) >> 15;
        return { ownLimitWord(static_cast<int32_t>(y)), static_cast<uint16_t>(u + 32767), ownLimitWord(v + 32767) };
    }

    OwnColour<int32_t> operator()(int32_t r, int32_t g, int32_t b) const
    {
        return { ownTruncateSigned(0.299 * r + 0.587 * g + 0.114 * b),
                 ownTruncateSigned(-0.146 * r - 0.288 * g + 0.434 * b),
                 ownTruncateSigned(0.617 * r - 0.517 * g - 0.1 * b) };
    }

    OwnColour<float> operator()(float r, float g, float b) const
    {
        const double red = r, green = g, blue = b;
        return { 0.299f * r + 0.587f * g + 0.114f * b, static_cast<float>(-0.146 * red - 0.288 * green + 0.434 * blue),
                 static_cast<float>(0.617 * red - 0.517 * green - 0.1 * blue) };
    }
};

struct OwnYuvToRgbBytes {
    OwnByteSum<-31, 37222, 0, 0, 15, -127, 128> r;
    OwnByteSum<-12974, -18949, 0, 0, 15, -127, 128> g;
    OwnByteSum<66883, -53, 0, 0, 15, -127, 128> b;

    OwnColour<uint8_t> operator()(uint8_t y, uint8_t storedU, uint8_t storedV) const
    {
        const int16_t u = static_cast<int16_t>(storedU - 127), v = static_cast<int16_t>(storedV - 127);
        return { ownLimitByte(static_cast<int16_t>(y + r(u, v, 0))), ownLimitByte(static_cast<int16_t>(y + g(u, v, 0))),
                 ownLimitByte(static_cast<int16_t>(y + b(u, v, 0))) };
    }
};

struct OwnYuvToRgb {
    OwnColour<uint16_t> operator()(uint16_t y, uint16_t storedU, uint16_t storedV) const
    {
        const int32_t u = storedU - 32767, v = storedV - 32767;
        return { ownLimitWord(y + ((37222 * v - 31 * u) >> 15)), ownLimitWord(y + ((-12974 * u - 18949 * v) >> 15)),
                 ownLimitWord(y + 2 * u + ((1347 * u - 53 * v) >> 15)) }; // 66883 u takes 33 bits: 2 * 2^15 + 1347
    }

    OwnColour<int32_t> operator()(int32_t y, int32_t u, int32_t v) const
    {
        const OwnColour<double> rgb = ofReals(y, u, v);
        return { ownTruncatePositive(rgb.first), ownTruncatePositive(rgb.second), ownTruncatePositive(rgb.third) };
    }

    OwnColour<float> operator()(float y, float u, float v) const
    {
        const OwnColour<double> rgb = ofReals(y, u, v);
        return { static_cast<float>(rgb.first), static_cast<float>(rgb.second), static_cast<float>(rgb.third) };
    }

    static OwnColour<double> ofReals(double y, double u, double v)
    {
        return { y - 0.0009400501 * u + 1.135920183 * v, y - 0.3959190767 * u - 0.5782887929 * v,
                 y + 2.041101518 * u - 0.001619414 * v };
    }
};

const OwnColourModel ownYuvModel = { "YUV", ownDepthFault32F, ownColourRows<OwnRgbToYuv, OwnRgbToYuvBytes>(),
                                     ownColourRows<OwnYuvToRgb, OwnYuvToRgbBytes>(), true };
