// SPDX-License-Identifier: BSD-2-Clause
// YCC: luma and two chromas, whose sums are places in a table of samples.
#include "ownformula.h"

// What the sums from 0 to 361 stand for.
// clang-format off
static constexpr uint8_t ownYccSamples[362] = {
    0, 1, 1, 2, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 22, 23, 24, 25, 26, 28, 29, 30, 31,
    33, 34, 35, 36, 38, 39, 40, 41, 43, 44, 45, 47, 48, 49, 51, 52, 53, 55, 56, 57, 59, 60, 61, 63, 64, 65, 67, 68, 70,
    71, 72, 74, 75, 76, 78, 79, 81, 82, 83, 85, 86, 88, 89, 91, 92, 93, 95, 96, 98, 99, 101, 102, 103, 105, 106, 108,
    109, 111, 112, 113, 115, 116, 118, 119, 121, 122, 123, 125, 126, 128, 129, 130, 132, 133, 134, 136, 137, 138, 140,
    141, 142, 144, 145, 146, 148, 149, 150, 152, 153, 154, 155, 157, 158, 159, 160, 162, 163, 164, 165, 166, 168, 169,
    170, 171, 172, 174, 175, 176, 177, 178, 179, 180, 182, 183, 184, 185, 186, 187, 188, 189, 190, 191, 192, 194, 195,
    196, 197, 198, 199, 200, 201, 202, 203, 204, 204, 205, 206, 207, 208, 209, 210, 211, 212, 213, 213, 214, 215, 216,
    217, 217, 218, 219, 220, 221, 221, 222, 223, 223, 224, 225, 225, 226, 227, 227, 228, 229, 229, 230, 230, 231, 231,
    232, 233, 233, 234, 234, 235, 235, 236, 236, 236, 237, 237, 238, 238, 238, 239, 239, 240, 240, 240, 241, 241, 241,
    242, 242, 242, 242, 243, 243, 243, 244, 244, 244, 244, 245, 245, 245, 245, 245, 246, 246, 246, 246, 246, 247, 247,
    247, 247, 247, 247, 248, 248, 248, 248, 248, 248, 249, 249, 249, 249, 249, 249, 249, 249, 249, 250, 250, 250, 250,
    250, 250, 250, 250, 250, 250, 251, 251, 251, 251, 251, 251, 251, 251, 251, 251, 251, 251, 251, 251, 252, 252, 252,
    252, 252, 252, 252, 252, 252, 252, 252, 252, 252, 252, 252, 252, 252, 253, 253, 253, 253, 253, 253, 253, 253, 253,
    253, 253, 253, 253, 253, 253, 253, 253, 253, 254, 254, 254, 254, 254, 254, 254, 254, 254, 254, 254, 254, 254, 254,
    254, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
};
// clang-format on

// Places in the table. The constants of red and blue are added, so both lie near its end whatever the luma.
static OwnColour<uint16_t> ownYccPlaces(int32_t y, int32_t c1, int32_t c2)
{
    const int32_t r = (22256 * y + 29844 * c2 + 4088627) >> 14;
    const int32_t g = (22256 * y + 7050 * c1 - 15190 * c2 - 3180790) >> 14;
    const int32_t b = (22256 * y + 36338 * c1 + 5668700) >> 14;
    return { static_cast<uint16_t>(std::min(r, 361)), static_cast<uint16_t>(std::min(std::max(g, 0), 361)),
             static_cast<uint16_t>(std::min(b, 361)) };
}

// Places first, which becomes vectors, then the table, which does not.
static void ownYccRow(uint8_t* const* rows, ptrdiff_t n)
{
    constexpr ptrdiff_t block = 512;
    uint16_t places[3][block];
    for (ptrdiff_t start = 0; start < n; start += block) {
        const ptrdiff_t count = std::min(block, n - start);
        const uint8_t* const y = rows[0] + start;
        const uint8_t* const c1 = rows[1] + start;
        const uint8_t* const c2 = rows[2] + start;
        for (ptrdiff_t i = 0; i < count; ++i) {
            const OwnColour<uint16_t> of = ownYccPlaces(y[i], c1[i], c2[i]);
            places[0][i] = of.first;
            places[1][i] = of.second;
            places[2][i] = of.third;
        }
        for (int32_t k = 0; k < 3; ++k) {
            uint8_t* const result = rows[3 + k] + start;
            for (ptrdiff_t i = 0; i < count; ++i) result[i] = ownYccSamples[places[k][i]];
        }
    }
}

const OwnColourModel ownYccModel = { "YCC", "Error input depth. 8U is valid now", {}, { ownYccRow } };
