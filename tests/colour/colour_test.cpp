// SPDX-License-Identifier: BSD-2-Clause
// Every byte colour through the conversions; what the table of operations has no room for.
#include "colour_cases.h"
#include "support/reports.h"

// All 16,777,216 of them, 65536 a call.
TEST(Colour, everyByteColourMatchesModel)
{
    for (const Conversion& of : conversions()) {
        if (of.depths[0] != PXK_DEPTH_8U) continue;
        const PicturePtr src = Picture::make({ PXK_DEPTH_8U, 65536, 1, 3, PXK_DATA_ORDER_PLANE });
        const PicturePtr dst = Picture::make(src->spec);
        setWords(of.isToRgb ? *dst : *src, "RGB", "RGB");
        setWords(of.isToRgb ? *src : *dst, of.word, of.word);
        int64_t wrong = 0;
        for (int32_t first = 0; first < 256; ++first) {
            for (int32_t i = 0; i < 65536; ++i) {
                src->row(0, 0)[i] = uint8_t(first);
                src->row(0, 1)[i] = uint8_t(i >> 8);
                src->row(0, 2)[i] = uint8_t(i);
            }
            of.run(*src, *dst);
            for (int32_t i = 0; i < 65536; ++i) {
                const model::Pixel q = of.model(PXK_DEPTH_8U, { double(first), double(i >> 8), double(i & 255) });
                for (int32_t k = 0; k < 3; ++k) wrong += dst->row(0, k)[i] != q[size_t(k)];
            }
        }
        EXPECT_EQ(wrong, 0) << of.name;
    }
}

// The word is written once words and regions are right, whatever follows; masks do not count.
TEST(Colour, wordsAreWrittenBeforeTheDepthIsLookedAt)
{
    const PicturePtr src = Picture::make({ PXK_DEPTH_8S, 20, 5, 4 }), dst = Picture::make(src->spec);
    setWords(*src, "RGBA", "BGRA");
    for (const Conversion& of : conversions()) {
        if (of.isToRgb) continue;
        setWords(*dst, "Gray", "G");
        startReports();
        of.run(*src, *dst);
        EXPECT_EQ(recordedReports().size(), 1u);
        EXPECT_EQ(std::string(dst->header.colorModel, 4), std::string(of.word, 4)) << of.name;
        EXPECT_EQ(std::string(dst->header.channelSeq, 4), std::string(of.word, 4)) << of.name;
        setWords(*dst, "Gray", "G");
        dst->setRegion(0, 0, 20, 5);
        of.run(*src, *dst);
        EXPECT_EQ(std::string(dst->header.colorModel, 4), "Gray") << of.name;
        dst->header.roi = nullptr;
    }
    startReports();
}

// In place the word goes over the one that names red.
TEST(Colour, convertsInPlaceWithoutItsMask)
{
    const Conversion& toHsv = conversions()[0];
    const PicturePtr got = Picture::make({ PXK_DEPTH_8U, 100, 3, 3 });
    got->setMask(Picture::make({ PXK_DEPTH_1U, 9, 2 }));
    setWords(*got, "RGB", "RGB");
    const PicturePtr src = got->copy(), want = got->copy();
    modelConversion(toHsv, *src, *want);
    toHsv.run(*got, *got);
    EXPECT_EQ(std::string(got->header.channelSeq), "HSV");
    got->freeze();
    EXPECT_TRUE(samePicture(*want, *got));
}

// The lightness of the largest floats is one, too.
TEST(Colour, luvOfLargeNumbers)
{
    for (const double y : { 1e20, 1e30, 1e31, 1e38, 3e38, HUGE_VAL }) {
        const PicturePtr src = Picture::make({ PXK_DEPTH_32F, 1, 1, 3 }), dst = src->copy();
        setWords(*src, "RGB", "RGB");
        for (int32_t c = 0; c < 3; ++c) src->setNumber(0, 0, c, y);
        pxkRGB2LUV(*src, *dst);
        const double want = 116 * std::cbrt(float(y) / 0.329) - 16;
        EXPECT_TRUE(dst->number(0, 0, 0) == want || std::fabs(dst->number(0, 0, 0) / want - 1) < 1e-5) << y;
    }
}

// Worked by hand.
TEST(Colour, fromYcc)
{
    for (const uint8_t first : { 0, 255 }) {
        const PicturePtr src = Picture::make({ PXK_DEPTH_8U, 1, 1, 3 }), dst = src->copy(), want = src->copy();
        setWords(*src, "YCC", "YCC");
        const uint8_t in[3] = { first, first, 0 },
                      out[3] = { uint8_t(first | 247), uint8_t(first != 0 ? 249 : 0), 255 };
        for (int32_t c = 0; c < 3; ++c) src->setBits(0, 0, c, in[c]);
        for (int32_t c = 0; c < 3; ++c) want->setBits(0, 0, c, out[c]);
        setWords(*dst, "RGB", "RGB");
        pxkYCC2RGB(*src, *dst);
        EXPECT_TRUE(sameSamples(*want, *dst));
    }
}

TEST(Twist, recordHoldsItsValues)
{
    const int32_t data[16] = { 1, -2, 3, INT32_MAX, 5, 6, 7, INT32_MIN, 9, 10, 11, 12, 13, 14, 15, 16 };
    PxkColorTwist* const twist = pxkCreateColorTwist(data, 31);
    ASSERT_NE(twist, nullptr);
    EXPECT_TRUE(twist->scalingValue == 31 && std::equal(data, data + 16, twist->data));
    pxkDeleteColorTwist(twist);
}
