// SPDX-License-Identifier: BSD-2-Clause
// The harness must see what it is there to see.
#include "support/cases.h"

TEST(Harness, seesChangedSamplesAndStrayBytes)
{
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_16S }) {
        const PicturePtr got = Picture::make(PictureSpec { depth, 13, 5 }.aligned(8)), want = got->copy();
        ASSERT_TRUE(samePicture(*want, *got));
        got->setBits(12, 4, 0, got->bits(12, 4, 0) ^ 1);
        EXPECT_FALSE(sameSamples(*want, *got, BITS));
        EXPECT_TRUE(nothingElseChanged(*want, *got));
        got->setBits(12, 4, 0, want->bits(12, 4, 0));
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
    const auto faultAfter = [](const std::vector<TileCall>& calls, bool isWritten = false) {
        const PicturePtr p = Picture::make(PictureSpec { PXK_DEPTH_8U, 21, 13 }.tiled(8, 8)), want = p->copy();
        PxkTileInfo& tiles = *p->header.tileInfo;
        for (const TileCall& call : calls) {
            tiles.callBack(*p, call.x, call.y, call.mode);
            if (isWritten && tiles.tileData != nullptr) static_cast<uint8_t*>(tiles.tileData)[6] ^= 1;
            isWritten = false;
        }
        return !nothingElseChanged(*want, *p);
    };
    const int32_t ask = PXK_TILE_READ, write = PXK_TILE_WRITE, release = PXK_TILE_RELEASE;
    EXPECT_FALSE(faultAfter({ { 1, 1, ask }, { 1, 1, release } }));
    EXPECT_TRUE(faultAfter({ { 1, 1, ask } })) << "not released";
    EXPECT_TRUE(faultAfter({ { 3, 0, ask } })) << "outside";
    EXPECT_TRUE(faultAfter({ { 0, 0, ask | write } })) << "mode";
    EXPECT_TRUE(faultAfter({ { 0, 0, ask }, { 1, 0, ask }, { 0, 0, release }, { 1, 0, release } })) << "wrong tileData";
    EXPECT_TRUE(faultAfter({ { 0, 0, ask }, { 0, 0, release }, { 0, 0, release } })) << "released twice";
    EXPECT_TRUE(faultAfter({ { 0, 0, ask }, { 0, 0, release } }, true)) << "written while read";
    EXPECT_FALSE(faultAfter({ { 0, 0, write }, { 0, 0, release } }, true));
    EXPECT_TRUE(faultAfter({ { 2, 0, write }, { 2, 0, release } }, true)) << "beyond the image";
}
