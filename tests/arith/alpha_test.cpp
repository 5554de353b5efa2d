// SPDX-License-Identifier: BSD-2-Clause
// Products next to the middle between two results.
#include "reference/alpha.h"

#include <cmath>

#include "support/compare.h"

// At 8 bits all products; at 16 those next to the middle between two results.
TEST(MultiplyScale, rounds)
{
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        const PicturePtr a = Picture::make(PictureSpec(depth, 256, 256)), b = Picture::make(a->spec);
        const PicturePtr got = Picture::make(a->spec);
        Random random(7);
        for (int32_t y = 0; y < 256; ++y) {
            for (int32_t x = 0; x < 256; ++x) {
                const double second = depth == PXK_DEPTH_8U ? y : random.between(1, 65535);
                const double middle = random.between(0, 65534) + 0.5;
                const double first = std::floor(middle * 65535 / second) + random.below(2);
                a->setNumber(x, y, 0, depth == PXK_DEPTH_8U ? x : std::min(first, 65535.0));
                b->setNumber(x, y, 0, second);
            }
        }
        const PicturePtr want = got->copy();
        modelMultiplyScale(*a, *b, *want);
        pxkMultiplyScale(*a, *b, *got);
        EXPECT_TRUE(samePicture(*want, *got));
    }
}
