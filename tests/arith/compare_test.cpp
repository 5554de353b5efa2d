// SPDX-License-Identifier: BSD-2-Clause
// Bounds of near floats, with and beyond what a float can tell.
#include <cfloat>
#include <cmath>

#include <gtest/gtest.h>

#include "support/picture.h"

TEST(Compare, nearFloats)
{
    const float infinity = HUGE_VALF, nan = std::nanf("");
    const struct {
        float a, b, epsilon;
        uint32_t bit;
    } rows[] = { { 0.75f, 0.5f, 0.25f, 1 },
                 { 16777216, -1, 16777216, 0 }, // a float would have lost the 1
                 { 1, -0x1p-54f, 1, 1 },        // a double is too short for the rest
                 { FLT_MAX, -FLT_MAX, infinity, 1 },
                 { infinity, infinity, infinity, 0 }, // their difference is no number
                 { nan, nan, infinity, 0 } };
    for (const auto& row : rows) {
        const PicturePtr x = Picture::make({ PXK_DEPTH_32F, 1, 1 }), y = x->copy(),
                         bits = Picture::make({ PXK_DEPTH_1U, 1, 1 });
        x->setAll(row.a);
        y->setAll(row.b);
        pxkEqualFPEps(*x, *y, *bits, row.epsilon);
        EXPECT_EQ(bits->bits(0, 0, 0), row.bit) << row.a << " and " << row.b;
    }
}
