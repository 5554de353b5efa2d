// Rows that reach beyond an image: the same values as in rectangles, one channel or all, and the order of tile calls.
#include "filter/pxkborde.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "reference/border.h"
#include "support/picture.h"

namespace {

const int32_t depths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                           PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };

PicturePtr randomPicture(Random& random, int32_t depth)
{
    const int32_t extents[] = { 1, 2, 3, 8, 9, 21, 40 };
    PictureSpec spec(depth, random.oneOf(extents), random.oneOf(extents), 1, random.below(2));
    if (depth != PXK_DEPTH_1U) spec.channels = random.between(1, 4);
    if (random.oneIn(2)) spec.tiled(8 * random.between(1, 2), 8);
    const PicturePtr picture = Picture::make(spec, random);
    for (int32_t side = 0; side < 4; ++side) {
        picture->header.borderMode[side] = random.below(4);
        picture->header.borderConst[side] = static_cast<int32_t>(random.next());
    }
    return picture;
}

uint32_t sampleAt(const std::vector<uint8_t>& row, int32_t depth, size_t index)
{
    if (depth == PXK_DEPTH_1U) return row[index / 8] >> (7 - index % 8) & 1;
    const size_t bytes = static_cast<size_t>(depthBits(depth)) / 8;
    uint32_t bits = 0;
    memcpy(&bits, &row[index * bytes], bytes);
    return bits;
}

} // namespace

TEST(BorderRow, matchesModel)
{
    Random random(21);
    for (int32_t i = 0; i < 1400; ++i) {
        const int32_t depth = depths[i % 7];
        const PicturePtr picture = randomPicture(random, depth);
        const PxkImage& image = picture->header;
        const int32_t x = random.between(-2 * image.width - 9, 2 * image.width + 9);
        const int32_t y = random.between(-2 * image.height - 9, 2 * image.height + 9);
        const int32_t count = random.between(1, 4 * image.width + 20);
        const int32_t channel = random.between(0, image.nChannels);
        const int32_t samples = channel == ownAllChannels ? image.nChannels : 1;
        std::vector<uint8_t> row(static_cast<size_t>(count) * samples * 4 + 1, 0xA5);
        const size_t used = (static_cast<size_t>(count) * samples * depthBits(depth) + 7) / 8;
        picture->freeze();
        ASSERT_TRUE(ownBorderRow(*picture, x, y, channel, row.data(), count));
        for (int32_t p = 0; p < count * samples; ++p) {
            const int32_t c = channel == ownAllChannels ? p % samples : channel - 1;
            ASSERT_EQ(sampleAt(row, depth, static_cast<size_t>(p)), modelBorderBits(*picture, x + p / samples, y, c))
                << depthName(depth) << " " << image.width << "x" << image.height << " at " << x << "," << y << " pixel "
                << p / samples << " channel " << c;
        }
        EXPECT_EQ(row[used], 0xA5);
        if (depth == PXK_DEPTH_1U && count % 8 != 0) {
            EXPECT_EQ((row[used - 1] ^ 0xA5) & (0xFF >> count % 8), 0); // bits behind the last pixel
        }
        EXPECT_EQ(picture->headerFault(), "");
        EXPECT_EQ(picture->tileFault(), "");
    }
}

// One tile at a time, each given back before the next one, backward where the border mirrors.
TEST(BorderRow, tileCalls)
{
    const PicturePtr picture = Picture::make(PictureSpec(PXK_DEPTH_8U, 20, 20).tiled(16, 8));
    pxkSetBorderMode(*picture, PXK_EDGE_MIRROR, 15, 0);
    uint8_t row[60];
    ASSERT_TRUE(ownBorderRow(*picture, -18, 9, 1, row, 30));
    const int32_t columns[] = { 1, 0, 0 };
    ASSERT_EQ(picture->storage->calls.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        const TileCall& call = picture->storage->calls[i];
        EXPECT_TRUE(call.x == columns[i / 2] && call.y == 1 && call.mode == (i % 2 == 0 ? 1 : 4)) << i;
    }
    picture->storage->refuseAt = 2;
    EXPECT_FALSE(ownBorderRow(*picture, -18, 9, 1, row, 30));
    EXPECT_EQ(picture->storage->calls.size(), 6u + 3u);
    EXPECT_EQ(picture->tileFault(), "");
}

TEST(BorderConstants, limitedToTheDepth)
{
    const auto limited = [](int32_t depth, int32_t constant) {
        PxkImage header = {};
        header.depth = depth;
        header.borderConst[2] = constant;
        ownNormalizeBorderConsts(&header);
        EXPECT_EQ(header.borderConst[0], 0);
        return header.borderConst[2];
    };
    EXPECT_EQ(limited(PXK_DEPTH_1U, 2), 1);
    EXPECT_EQ(limited(PXK_DEPTH_1U, -3), 0);
    EXPECT_EQ(limited(PXK_DEPTH_8U, 300), 255);
    EXPECT_EQ(limited(PXK_DEPTH_8S, -129), -128);
    EXPECT_EQ(limited(PXK_DEPTH_16U, -1), 0);
    EXPECT_EQ(limited(PXK_DEPTH_16S, 32768), 32767);
    EXPECT_EQ(limited(PXK_DEPTH_32S, INT32_MIN), INT32_MIN);
    EXPECT_EQ(limited(PXK_DEPTH_32F, INT32_MAX), INT32_MAX);
}
