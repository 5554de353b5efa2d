// Products next to the middle between two results, and all pairs of alphas.
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
                const double first = std::floor((random.between(0, 65534) + 0.5) * 65535 / second) + random.below(2);
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

// Every pair of 8-bit alphas, and the same in the high bytes of 16-bit ones, under colours of all kinds; rows longer
// than any block that is taken at a time.
static void testAllPairsOfAlphas(int32_t depth, int32_t order)
{
    const PictureSpec spec = PictureSpec(depth, 2048, 32, 4, order).withAlpha();
    const PicturePtr a = Picture::make(spec, 1), b = Picture::make(spec, 2);
    Random random(3);
    for (int32_t i = 0; i < 65536; ++i) {
        const int32_t x = i % 2048, y = i / 2048, alphaA = i % 256, alphaB = i / 256;
        a->setNumber(x, y, 3, depth == PXK_DEPTH_8U ? alphaA : 256 * alphaA + random.below(256));
        b->setNumber(x, y, 3, depth == PXK_DEPTH_8U ? alphaB : 256 * alphaB + random.below(256));
    }
    for (int32_t type = 0; type < 6; ++type) {
        const PicturePtr got = Picture::make(spec, 4), want = got->copy();
        modelAlphaComposite(*a, *b, *want, { type, false, false, 0, 0 });
        pxkAlphaComposite(*a, *b, *got, type, 0);
        ASSERT_TRUE(samePicture(*want, *got)) << "type " << type;
        modelAlphaComposite(*a, *b, *want, { type, false, true, 100, 77 });
        pxkAlphaCompositeC(*a, *b, *got, type, 100, 77, 0);
        ASSERT_TRUE(samePicture(*want, *got)) << "constants, type " << type;
    }
}

TEST(AlphaComposite, allPairsOfAlphas)
{
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        for (const int32_t order : { PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE }) testAllPairsOfAlphas(depth, order);
    }
}
