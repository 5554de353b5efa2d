// SPDX-License-Identifier: BSD-2-Clause
// The colour table that the median cut makes.
#include "convert/ownmedcut.h"

#include "reference/medcut.h"
#include "support/bitmap.h"

namespace {

void expectTable(const Picture& image, int32_t bits)
{
    Random random(1);
    Bitmap bitmap(bitmapHeader(1, 1, bits), true, random, false, 256);
    EXPECT_EQ(ownMedcutPalette(bitmap.dib(), &image.header), 1);
    std::vector<uint32_t> table;
    for (uint32_t i = 0; i < bitmap.header().biClrUsed; ++i) table.push_back(bitmap.word(static_cast<int32_t>(i)));
    EXPECT_EQ(table, model::medcutTable(image, size_t(1) << bits));
}

PicturePtr colorPicture(const PictureSpec& spec, const char* word, Random& random)
{
    const PicturePtr image = Picture::make(spec, random);
    memcpy(image->header.channelSeq, word, 4);
    return image;
}

// Colours around a few centres, some of them much more frequent than others.
void cluster(Picture& image, int32_t centres, int32_t spread, Random& random)
{
    int32_t centre = 0;
    image.forEachSample([&](int32_t x, int32_t y, int32_t c) {
        if (c == 0) centre = random.below(random.between(1, centres));
        const int32_t level = std::min((centre * 97 + c * 53) % 256 + random.below(spread), 255);
        image.setNumber(x, y, c, image.spec.depth == PXK_DEPTH_16U ? level * 256 + random.below(256) : level);
    });
}

} // namespace

TEST(Medcut, matchesModel)
{
    for (uint64_t seed = 1; seed <= 60; ++seed) {
        Random random(seed);
        const int32_t channels = random.oneOf({ 1, 3, 4 }), bits = random.oneOf({ 1, 4, channels == 1 ? 4 : 8 });
        PictureSpec spec { random.oneOf({ PXK_DEPTH_8U, PXK_DEPTH_16U }), random.between(1, 60), random.between(1, 40),
                           channels, random.below(2) };
        spec.hasAlpha = channels == 4;
        spec.extraStep = random.oneOf({ 0, 8 });
        const PicturePtr image = colorPicture(spec, channels == 1 ? "G\0\0" : random.oneIn(2) ? "BGR" : "RGBA", random);
        const int32_t centres = random.between(1, 40), spread = random.between(1, 60);
        if (!random.oneIn(4)) cluster(*image, centres, spread, random);
        SCOPED_TRACE("seed " + std::to_string(seed));
        expectTable(*image, bits);
    }
}

// Black is most of the picture, so the first split parts it off alone, and its mark goes on to the rest: nothing may be
// split any more, with 2 boxes of 16.
TEST(Medcut, endsWhenNoBoxMayBeSplit)
{
    Random random(1);
    const PicturePtr image = colorPicture({ PXK_DEPTH_8U, 100, 100, 3 }, "BGR", random);
    image->setAll(0);
    for (int32_t x = 0; x < 60; ++x) image->setNumber(x, 0, 2, 4 * (x % 60) + 4);
    expectTable(*image, 4);
}

TEST(Medcut, refuses)
{
    Random random(1);
    const struct {
        int32_t bits, channels;
        const char* word;
        bool isMade;
    } rows[] = { { 8, 3, "BGR", true },   { 9, 3, "BGR", false },  { 8, 2, "BGR", false },
                 { 8, 3, "GRAY", false }, { 8, 3, "BGR ", false }, { 8, 1, "XYZ", true } };
    for (const auto& row : rows) {
        const PicturePtr image = colorPicture({ PXK_DEPTH_8U, 3, 3, row.channels }, row.word, random);
        Bitmap bitmap(bitmapHeader(1, 1, row.bits), true, random, false, 256);
        const auto before = bitmap.copy();
        EXPECT_EQ(ownMedcutPalette(bitmap.dib(), &image->header), row.isMade ? 1 : 0) << row.word;
        EXPECT_EQ(!bitmap.sameAs(*before), row.isMade) << row.word;
    }
}
