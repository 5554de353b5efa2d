// The harness must see what it is there to see.
#include <cmath>

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

TEST(Harness, seesChangedRecordsAndMasks)
{
    const PicturePtr got = Picture::make(PictureSpec().region(1, 1, 3, 3));
    got->setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 5, 5)));
    const PicturePtr want = got->copy();
    got->header.depth = PXK_DEPTH_8S;
    EXPECT_FALSE(nothingElseChanged(*want, *got));
    got->header.depth = PXK_DEPTH_8U;
    got->header.maskROI->roi = &got->roi;
    EXPECT_FALSE(nothingElseChanged(*want, *got));
    got->header.maskROI->roi = nullptr;
    got->roi.width = 4;
    EXPECT_FALSE(nothingElseChanged(*want, *got));
    got->roi.width = 3;
    EXPECT_TRUE(nothingElseChanged(*want, *got));
    got->mask->setBits(4, 4, 0, got->mask->bits(4, 4, 0) ^ 1);
    EXPECT_FALSE(nothingElseChanged(*want, *got));
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

TEST(Harness, keepsTileProtocol)
{
    const PicturePtr got = tiledPicture();
    const PicturePtr want = got->copy();
    uint8_t* const read = askTile(*got, 2, 1, PXK_TILE_READ);
    uint8_t* const write = askTile(*got, 0, 0, PXK_TILE_WRITE);
    EXPECT_EQ(read[4], got->bits(20, 8, 0));
    write[8 + 3] = static_cast<uint8_t>(want->bits(3, 1, 0) + 1);
    callTiles(*got, 0, 0, PXK_TILE_RELEASE);
    got->header.tileInfo->tileData = read;
    callTiles(*got, 2, 1, PXK_TILE_RELEASE);
    EXPECT_EQ(got->tileFault(), "");
    EXPECT_EQ(got->bits(3, 1, 0), static_cast<uint8_t>(want->bits(3, 1, 0) + 1));
    EXPECT_TRUE(got->askedOnlyInside(7, 7, 10, 2));
    EXPECT_FALSE(got->askedOnlyInside(8, 8, 10, 2));
    got->storage->refuseAt = 2;
    EXPECT_NE(askTile(*got, 0, 0, PXK_TILE_READ), nullptr);
    EXPECT_EQ(askTile(*got, 1, 0, PXK_TILE_READ), nullptr);
    EXPECT_FALSE(nothingElseChanged(*want, *got)); // one is still held
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

// A layout is only a layout: the same samples, however they are stored.
TEST(Harness, samplesOfAllLayouts)
{
    for (const int32_t order : { PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE }) {
        for (const int32_t depth : { PXK_DEPTH_8S, PXK_DEPTH_32F }) {
            const PicturePtr memory = Picture::make(PictureSpec(depth, 19, 9, 3, order).aligned(16));
            const PicturePtr tiles = Picture::make(PictureSpec(depth, 19, 9, 3, order).tiled(16, 8));
            const PicturePtr window = Picture::make(PictureSpec(depth, 19, 9, 3, order));
            modelCopy(*memory, *tiles);
            modelCopy(*tiles, *window);
            EXPECT_TRUE(sameSamples(*memory, *window, BITS));
        }
    }
    const PicturePtr bits = Picture::make(PictureSpec(PXK_DEPTH_1U, 11, 1));
    bits->setAll(0);
    bits->setBits(9, 0, 0, 1);
    EXPECT_EQ(bits->row(0)[0], 0);
    EXPECT_EQ(bits->row(0)[1] >> 5, 2);
    const PicturePtr pixels = Picture::make(PictureSpec(PXK_DEPTH_16S, 3, 2, 3, PXK_DATA_ORDER_PIXEL));
    pixels->setNumber(2, 1, 1, -2);
    EXPECT_EQ(pixels->row(1)[(2 * 3 + 1) * 2], 0xFE);
    const PicturePtr planes = Picture::make(PictureSpec(PXK_DEPTH_8U, 3, 2, 3, PXK_DATA_ORDER_PLANE));
    planes->setNumber(2, 1, 1, 77);
    EXPECT_EQ(planes->row(0)[(2 + 1) * 4 + 2], 77);
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

TEST(Harness, recordsReports)
{
    startReports();
    pxkError(PXK_StsBadArg, "f", "text", "file", 3);
    pxkError(PXK_StsBackTrace, "g", "", "file", 4);
    expectReports({ { PXK_StsBadArg, "f", "text" }, { PXK_StsBackTrace, "g", "" } });
    expectNoReports();
}

// Every case of a product is run once when all are run, and each value of an axis is met when only some are.
TEST(Harness, spreadsTheProduct)
{
    Axes axes;
    axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
    axes.tilings = { 0, 1 };
    std::map<size_t, int32_t> met;
    axes.count = 100000;
    forEachCase(axes, [&](const Case& c) { ++met[c.index]; });
    EXPECT_EQ(met.size(), 2u * 2 * 5 * 5 * 6 * 2);
    for (const auto& entry : met) EXPECT_EQ(entry.second, 1);
    std::map<std::pair<int32_t, int32_t>, int32_t> regionsAndMasks;
    axes.count = 240;
    forEachCase(axes, [&](const Case& c) { ++regionsAndMasks[{ int32_t(c.region), int32_t(c.masks) }]; });
    EXPECT_EQ(regionsAndMasks.size(), 5u * 6);
}
