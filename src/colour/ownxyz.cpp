// SPDX-License-Identifier: BSD-2-Clause
// XYZ: the tristimulus values of the CIE.
#include "ownxyz.h"
#include "ownbytesum.h"

// The integer forms: the matrix with 14 fraction bits, rounded. Only Z leaves the range.
struct OwnRgbToXyzBytes {
    OwnByteSum<6758, 5859, 2956, 8192, 14> x;
    OwnByteSum<3484, 11717, 1182, 8192, 14> y;
    OwnByteSum<317, 1953, 15569, 8192, 14> z;

    OwnColour<uint8_t> operator()(uint8_t r, uint8_t g, uint8_t b) const
    {
        return { static_cast<uint8_t>(x(r, g, b)), static_cast<uint8_t>(y(r, g, b)), ownLimitByte(z(r, g, b)) };
    }
};

struct OwnRgbToXyz {
    OwnColour<uint16_t> operator()(uint16_t r, uint16_t g, uint16_t b) const
    {
        return { static_cast<uint16_t>((6758 * r + 5859 * g + 2956 * b + 8192) >> 14),
                 static_cast<uint16_t>((3484 * r + 11717 * g + 1182 * b + 8192) >> 14),
                 ownLimitWord((317 * r + 1953 * g + 15569 * b + 8192) >> 14) };
    }

    OwnColour<int32_t> operator()(int32_t r, int32_t g, int32_t b) const
    {
        const OwnColour<double> xyz = ownRgbToXyz<double>(r, g, b);
        return { ownTruncatePositive(xyz.first), ownTruncatePositive(xyz.second), ownTruncatePositive(xyz.third) };
    }

    OwnColour<float> operator()(float r, float g, float b) const { return ownRgbToXyz(r, g, b); }
};

struct OwnXyzToRgbBytes {
    OwnByteSum<53092, -25185, -8168, 8192, 14> r;
    OwnByteSum<-15880, 30736, 681, 8192, 14> g;
    OwnByteSum<912, -3343, 17323, 8192, 14> b;

    OwnColour<uint8_t> operator()(uint8_t x, uint8_t y, uint8_t z) const
    {
        return { ownLimitByte(r(x, y, z)), ownLimitByte(g(x, y, z)), ownLimitByte(b(x, y, z)) };
    }
};

struct OwnXyzToRgb {
    // 53092 = 3 * 2^14 + 3940 and -25185 = -2 * 2^14 + 7583: so the sum of red stays within 32 bits.
    OwnColour<uint16_t> operator()(uint16_t x, uint16_t y, uint16_t z) const
    {
        return { ownLimitWord(3 * x - 2 * y + ((3940 * x + 7583 * y - 8168 * z + 8192) >> 14)),
                 ownLimitWord((-15880 * x + 30736 * y + 681 * z + 8192) >> 14),
                 ownLimitWord((912 * x - 3343 * y + 17323 * z + 8192) >> 14) };
    }

    OwnColour<int32_t> operator()(int32_t x, int32_t y, int32_t z) const
    {
        const OwnColour<double> rgb = ownXyzToRgb<double>(x, y, z);
        return { ownTruncatePositive(rgb.first), ownTruncatePositive(rgb.second), ownTruncatePositive(rgb.third) };
    }

    OwnColour<float> operator()(float x, float y, float z) const { return ownXyzToRgb(x, y, z); }
};

const OwnColourModel ownXyzModel = { "XYZ", ownDepthFault32F, ownColourRows<OwnRgbToXyz, OwnRgbToXyzBytes>(),
                                     ownColourRows<OwnXyzToRgb, OwnXyzToRgbBytes>() };
