// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps to images and back.
#include "reference/dib.h"
#include "support/compare.h"
#include "support/reports.h"

// Clustered colours, noise, tables too long for lists, and so many long lists that they are begun anew.
TEST(DibTo, findsTheNearestColorOfManyColors)
{
    startReports();
    for (uint64_t seed = 1; seed <= 7; ++seed) {
        Random random(seed);
        const uint32_t colors = seed <= 4 ? 256 : seed <= 6 ? 5000 : 4000;
        const int32_t height = seed <= 4 ? 50 : seed <= 6 ? 2 : 82;
        Bitmap got(bitmapHeader(400, height, 8, 0, colors), true, random);
        for (int32_t i = 0; i < static_cast<int32_t>(colors); ++i) {
            const uint32_t color = static_cast<uint32_t>(random.next());
            const uint32_t plane = 0x80u | static_cast<uint32_t>(i % 64) << 10 | static_cast<uint32_t>(i / 64) << 18;
            got.setWord(i, seed == 7 ? plane : seed % 2 == 0 ? 0x80808080 + (color & 0x07070707) : color);
        }
        const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 400, height, 3 }, random);
        // Cubes of 8 levels within those of 32, so that the memory for lists is used up where one of 32 begins: entries
        // on a plane make long lists everywhere.
        for (int32_t i = 0; i < 400 * height && seed == 7; ++i)
            for (int32_t k = 0; k < 3; ++k)
                image->setNumber(i % 400, i / 400, k, (i >> (6 + 3 * k) & 7) * 32 + (i >> 2 * k & 3) * 8);
        const auto want = got.copy();
        model::convertTo(*image, *want);
        EXPECT_EQ(convertTo(*image, got), 0);
        EXPECT_TRUE(got.sameAs(*want)) << "seed " << seed;
    }
}

// ---- palettes ------------------------------------------------------------------------------------------------------

TEST(DibTo, storesTheFixedTables)
{
    startReports();
    Random random(1);
    const struct {
        int32_t bits;
        uint32_t colors;
        int32_t channels, entry;
        uint32_t color;
    } rows[] = { { 1, 0, 1, 1, 0xFFFFFF },     { 1, 0, 3, 1, 0xFFFFFF },    { 8, 2, 3, 0, 0 },
                 { 4, 0, 1, 5, 0x555555 },     { 4, 0, 3, 9, 0xFF0000 },    { 8, 16, 3, 3, 0x808000 },
                 { 8, 256, 1, 200, 0xC8C8C8 }, { 8, 0, 3, 0x27, 0x2020FF }, // red 1 of 7, green 1 of 7, blue 3 of 3
                 { 8, 3, 3, 1, 0x12345678 },   { 8, 7, 3, 1, 0x12345678 },  { 8, 100, 3, 1, 0x12345678 } };
    for (const auto& row : rows) {
        Bitmap bitmap(bitmapHeader(1, 1, row.bits, 0, row.colors), true, random);
        bitmap.setWord(row.entry, 0x12345678);
        const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 1, 1, row.channels }, random);
        if (row.channels == 1) memcpy(image->header.channelSeq, "G\0\0", 4);
        EXPECT_EQ(convertTo(*image, bitmap, 1, PXK_PALETTE_FIXED), 0);
        EXPECT_EQ(bitmap.header().biClrUsed, row.colors);
        EXPECT_EQ(bitmap.word(row.entry), row.color);
    }
}

// A median cut with few colours moves the bits of the plain form.
TEST(DibTo, countsTheTableAfterTheCut)
{
    Random random(1);
    Bitmap bitmap(bitmapHeader(2, 1, 8), false, random);
    const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 2, 1, 1 }, random);
    memcpy(image->header.channelSeq, "G\0\0", 4);
    image->setAll(7);
    EXPECT_EQ(convertTo(*image, bitmap, 1, PXK_PALETTE_MEDCUT), 0);
    EXPECT_EQ(bitmap.header().biClrUsed, 1u);
    EXPECT_EQ(bitmap.word(0), 0x070707u);
    EXPECT_EQ(bitmap.pixel(1, 0), 0u);
}

// ---- dithering -----------------------------------------------------------------------------------------------------

// The table comes from the image as it is, the indices from the image reduced to the bitmap's bits. A region on the
// image does not count.
TEST(DibTo, reducesTheImageFirst)
{
    startReports();
    for (uint64_t seed = 1; seed <= 200 && !::testing::Test::HasFailure(); ++seed) {
        Random random(seed);
        const int32_t bits = random.oneOf({ 1, 4, 8, 16, 24 }), channels = bits == 1 ? 1 : random.oneOf({ 1, 3 });
        const int32_t depth = random.oneOf({ PXK_DEPTH_8U, PXK_DEPTH_16U }), dither = random.oneOf({ 2, 4, 8, 16 });
        const int32_t palette = random.oneOf({ PXK_PALETTE_FIXED, PXK_PALETTE_MEDCUT });
        const PictureSpec spec { bits == 1 ? PXK_DEPTH_1U : PXK_DEPTH_8U, 37, 9, channels };
        const PicturePtr image = Picture::make({ depth, 37, 9, channels }, random);
        const PicturePtr reduced = Picture::make(spec, random);
        for (const PicturePtr& p : { image, reduced }) {
            memcpy(p->header.colorModel, channels == 1 ? "GRAY" : "RGB", 4);
            memcpy(p->header.channelSeq, channels == 1 ? "G\0\0" : "BGR", 4);
        }
        Bitmap got(bitmapHeader(37, 9, bits), true, random);
        const auto want = got.copy();
        pxkReduceBits(*image, *reduced, 0, dither, bits > 8 ? 8 : bits);
        EXPECT_EQ(convertTo(*image, *want, 1, palette), 0);
        EXPECT_EQ(convertTo(*reduced, *want), 0);
        image->setRegion(3, 2, 5, 4);
        EXPECT_EQ(convertTo(*image, got, dither, palette), 0);
        EXPECT_TRUE(got.sameAs(*want)) << "seed " << seed;
        expectNoReports();
    }
}

// ---- images of bitmaps ---------------------------------------------------------------------------------------------

TEST(DibTranslate, sharesWhatItCan)
{
    startReports();
    const struct {
        PxkBitmapInfoHeader header;
        bool isRamp;
        int32_t nChannels, depth, bitsOffset; // 0: a copy
    } cases[] = {
        { bitmapHeader(13, 5, 1), true, 1, 1, 48 },          { bitmapHeader(13, 5, 1), false, 3, 8, 0 },
        { bitmapHeader(13, 5, 1, 0, 1), true, 3, 8, 0 },     { bitmapHeader(13, -5, 4), true, 1, 8, 0 },
        { bitmapHeader(13, 5, 4), false, 3, 8, 0 },          { bitmapHeader(13, -5, 8), true, 1, 8, 40 + 1024 },
        { bitmapHeader(13, 5, 8, 0, 100), true, 1, 8, 440 }, { bitmapHeader(13, 5, 8), false, 3, 8, 0 },
        { bitmapHeader(13, 5, 16), false, 3, 8, 0 },         { bitmapHeader(13, 5, 24, 0, 7), false, 3, 8, 40 },
        { bitmapHeader(13, -5, 32), false, 4, 8, 40 },       { bitmapHeader(13, 5, 32, 3), false, 4, 8, 0 },
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(&t - cases);
        const bool isShared = t.bitsOffset != 0;
        Random random(7);
        Bitmap bitmap(t.header, false, random);
        const int32_t count = Bitmap::tableWords(t.header);
        for (int32_t i = 0; i < count; ++i) {
            const uint32_t gray = t.isRamp && count > 1 ? static_cast<uint32_t>(i * 255 / (count - 1)) : 0;
            const uint32_t other = t.header.biBitCount > 8 ? 0xFF00u << i : i == 0 ? 0xFFFFFF : uint32_t(i);
            bitmap.setWord(i, t.isRamp ? 0xA5000000 | gray * 0x010101 : other);
        }
        int32_t isCloned = -1;
        PxkImage* const image = pxkTranslateDIB(bitmap.dib(), &isCloned);
        expectNoReports();
        ASSERT_NE(image, nullptr);
        const PicturePtr want =
            Picture::make({ t.depth, 13, 5, t.nChannels, isShared ? PXK_DATA_ORDER_PIXEL : PXK_DATA_ORDER_PLANE,
                            t.nChannels == 4, isShared ? 4 : 32, t.header.biHeight < 0 ? 0 : 1 });
        PxkImage expected = want->header; // with words that name what it holds
        memcpy(expected.colorModel, t.nChannels == 1 ? "GRAY" : t.nChannels == 4 ? "RGBA" : "RGB", 4);
        memcpy(expected.channelSeq, t.nChannels == 1 ? "G\0\0" : t.nChannels == 4 ? "BGRA" : "BGR", 4);
        expected.userTag = nullptr;
        expected.imageData = image->imageData;
        expected.imageDataBase = image->imageDataBase;
        EXPECT_EQ(memcmp(&expected, image, sizeof expected), 0);
        EXPECT_EQ(isCloned, isShared ? 0 : 1);
        EXPECT_EQ(image->imageDataBase == nullptr, isShared);
        const ptrdiff_t offset = static_cast<uint8_t*>(image->imageData) - reinterpret_cast<uint8_t*>(bitmap.dib());
        EXPECT_TRUE(!isShared || offset == t.bitsOffset);
        memcpy(want->header.channelSeq, image->channelSeq, 4);
        model::convertFrom(bitmap, *want);
        EXPECT_TRUE(isShared || sameSamples(*want, *Picture::of(*image)));
        pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    }
}
