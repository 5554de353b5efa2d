// The harness must see what it is there to see.
#include <cmath>
#include <cstdlib>
#include <set>

#include "reference/border.h"
#include "reference/frame.h"
#include "support/cases.h"
#include "support/reports.h"

static PicturePtr tiledPicture(int32_t depth = PXK_DEPTH_8U)
{
    return Picture::make(PictureSpec(depth, 21, 13, 1).tiled(8, 8));
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

TEST(Harness, toleranceAndNaN)
{
    const PicturePtr got = Picture::make(PictureSpec(PXK_DEPTH_32F, 3, 1));
    got->setAll(100);
    const PicturePtr want = got->copy();
    want->setBits(1, 0, 0, 0x7FC00001);
    got->setBits(1, 0, 0, 0xFFC00000);
    EXPECT_TRUE(sameSamples(*want, *got));
    EXPECT_FALSE(sameSamples(*want, *got, BITS));
    got->setNumber(2, 0, 0, 101);
    EXPECT_FALSE(sameSamples(*want, *got));
    EXPECT_TRUE(sameSamples(*want, *got, { 1, 0, false }));
    EXPECT_FALSE(sameSamples(*want, *got, { 0, 0.009, false }));
    got->setNumber(2, 0, 0, std::nan(""));
    EXPECT_FALSE(sameSamples(*want, *got, { 1e9, 1e9, false }));
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

TEST(Harness, borderModel)
{
    const PicturePtr p = Picture::make(PictureSpec(PXK_DEPTH_8U, 3, 3));
    for (int32_t y = 0; y < 3; ++y) {
        for (int32_t x = 0; x < 3; ++x) p->setNumber(x, y, 0, 10 * y + x);
    }
    const auto at = [&](int32_t x, int32_t y) { return modelBorderBits(*p, x, y, 0); };
    const auto setModes = [&](int32_t topAndBottom, int32_t sides) {
        p->header.borderMode[0] = p->header.borderMode[1] = topAndBottom;
        p->header.borderMode[2] = p->header.borderMode[3] = sides;
    };
    setModes(PXK_EDGE_MIRROR, PXK_EDGE_WRAP);
    EXPECT_EQ(at(1, -1), 1u);
    EXPECT_EQ(at(1, -4), 21u);
    EXPECT_EQ(at(1, -7), 1u);
    EXPECT_EQ(at(-1, -1), 0u) << "a corner follows the top";
    EXPECT_EQ(at(-1, 1), 12u);
    EXPECT_EQ(at(3, 1), 10u);
    EXPECT_EQ(at(3, 3), 22u);
    setModes(PXK_EDGE_CLAMP, PXK_EDGE_CONST);
    p->header.borderConst[3] = 0x1FF;
    EXPECT_EQ(at(7, -5), 2u);
    EXPECT_EQ(at(7, 0), 255u);
}

// Each case of a product is run once, and each value of an axis is met when only some are run.
TEST(Harness, spreadsTheProduct)
{
    Axes axes;
    axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
    axes.tilings = { 0, 1 };
    axes.count = 240;
    std::set<size_t> met;
    std::set<std::pair<Region, ImageSet>> regionsAndMasks;
    size_t runs = 0;
    forEachCase(axes, [&](const Case& c) {
        met.insert(c.index);
        regionsAndMasks.insert({ c.region, c.masks });
        ++runs;
    });
    EXPECT_EQ(met.size(), runs);
    EXPECT_EQ(regionsAndMasks.size(), std::min<size_t>(runs, 5 * 6));
    if (getenv("PXK_CASES") != nullptr || getenv("PXK_CASE") != nullptr) return;
    axes.count = 100000;
    forEachCase(axes, [&](const Case& c) { met.insert(c.index); });
    EXPECT_EQ(met.size(), 2u * 2 * 5 * 5 * 6 * 2);
}
