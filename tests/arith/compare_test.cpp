// SPDX-License-Identifier: BSD-2-Clause
// Bounds of near floats, with and beyond what a float can tell.
#include <cfloat>
#include <cmath>
#include <limits>

#include "support/picture.h"

#include <gtest/gtest.h>

TEST(Compare, nearFloats)
{
    const auto bitOf = [](float a, float b, float epsilon) {
        const PicturePtr x = Picture::make(PictureSpec(PXK_DEPTH_32F, 1, 1)), y = Picture::make(x->spec);
        const PicturePtr bits = Picture::make(PictureSpec(PXK_DEPTH_1U, 1, 1));
        x->setNumber(0, 0, 0, a);
        y->setNumber(0, 0, 0, b);
        pxkEqualFPEps(*x, *y, *bits, epsilon);
        return bits->bits(0, 0, 0);
    };
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(bitOf(0.75f, 0.5f, 0.25f), 1u);
    EXPECT_EQ(bitOf(16777216, -1, 16777216), 0u); // a float would have lost the 1
    EXPECT_EQ(bitOf(1, -0x1p-54f, 1), 1u);        // a double is too short for the rest
    EXPECT_EQ(bitOf(FLT_MAX, -FLT_MAX, infinity), 1u);
    EXPECT_EQ(bitOf(infinity, infinity, infinity), 0u); // their difference is no number
    EXPECT_EQ(bitOf(std::nanf(""), std::nanf(""), infinity), 0u);
}
