// SPDX-License-Identifier: BSD-2-Clause
// The harness must see what it is there to see.
#include "support/cases.h"

static PicturePtr tiledPicture()
{
    return Picture::make(PictureSpec(PXK_DEPTH_8U, 21, 13, 1).tiled(8, 8));
}

static int32_t callTiles(Picture& p, int32_t x, int32_t y, int32_t mode)
{
    return p.header.tileInfo->callBack(p, x, y, mode);
}

static uint8_t* askTile(Picture& p, int32_t x, int32_t y, int32_t mode)
{
    callTiles(p, x, y, mode);
    return static_cast<uint8_t*>(p.header.tileInfo->tileData);
}

TEST(Harness, seesChangedSamples)
{
    Axes axes;
    axes.count = 400;
    forEachCase(axes, [](const Case& c) {
        const Scene got = makeScene(c, 1);
        const Scene want = got.copy();
        EXPECT_TRUE(sameScene(want, got));
        Random random(c.seed);
        const PictureSpec& spec = got[0].spec;
        const int32_t x = random.below(spec.width), y = random.below(spec.height),
                      channel = random.below(spec.channels);
        got[0].setBits(x, y, channel, got[0].bits(x, y, channel) ^ 1);
        EXPECT_FALSE(sameSamples(want[0], got[0], BITS));
        EXPECT_TRUE(nothingElseChanged(want[0], got[0]));
    });
}

TEST(Harness, seesStrayBytes)
{
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_16S }) {
        const PicturePtr got = Picture::make(PictureSpec(depth, 13, 5).aligned(8));
        const PicturePtr want = got->copy();
        ASSERT_TRUE(samePicture(*want, *got));
        got->row(0)[-1] ^= 1;
        EXPECT_FALSE(nothingElseChanged(*want, *got));
        got->row(0)[-1] ^= 1;
        got->setRowBits(0, 2, 13, got->rowBits(0, 2, 13) ^ 1); // the first sample behind the row
        EXPECT_TRUE(sameSamples(*want, *got));
        EXPECT_FALSE(nothingElseChanged(*want, *got));
    }
}

TEST(Harness, seesTileFaults)
{
    const auto faultAfter = [](auto offend) {
        const PicturePtr p = tiledPicture();
        offend(*p);
        return !p->tileFault().empty();
    };
    EXPECT_TRUE(faultAfter([](Picture& p) { askTile(p, 1, 1, PXK_TILE_READ); })) << "not released";
    EXPECT_TRUE(faultAfter([](Picture& p) { askTile(p, 3, 0, PXK_TILE_READ); })) << "outside";
    EXPECT_TRUE(faultAfter([](Picture& p) { askTile(p, 0, 0, PXK_TILE_READ | PXK_TILE_WRITE); })) << "mode";
    EXPECT_TRUE(faultAfter([](Picture& p) {
        askTile(p, 0, 0, PXK_TILE_READ);
        askTile(p, 1, 0, PXK_TILE_READ);
        callTiles(p, 0, 0, PXK_TILE_RELEASE);
        callTiles(p, 1, 0, PXK_TILE_RELEASE);
    })) << "tileData of another tile";
    EXPECT_TRUE(faultAfter([](Picture& p) {
        askTile(p, 0, 0, PXK_TILE_READ);
        callTiles(p, 0, 0, PXK_TILE_RELEASE);
        callTiles(p, 0, 0, PXK_TILE_RELEASE);
    })) << "released twice";
    EXPECT_TRUE(faultAfter([](Picture& p) {
        askTile(p, 0, 0, PXK_TILE_READ)[5] ^= 1;
        callTiles(p, 0, 0, PXK_TILE_RELEASE);
    })) << "written while read";

    const PicturePtr got = tiledPicture(); // columns 21 to 23 of the last tile are beyond the image
    const PicturePtr want = got->copy();
    askTile(*got, 2, 0, PXK_TILE_WRITE)[6] ^= 1;
    callTiles(*got, 2, 0, PXK_TILE_RELEASE);
    EXPECT_TRUE(sameSamples(*want, *got));
    EXPECT_FALSE(nothingElseChanged(*want, *got));
}
