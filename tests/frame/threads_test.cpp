// SPDX-License-Identifier: BSD-2-Clause
// Two threads on headers of their own never meet: the same results as one thread, and nothing for ThreadSanitizer.
#include <cstring>
#include <thread>

#include "support/compare.h"

static int32_t passStatusOn(int32_t status, const char*, const char*, const char*, int32_t)
{
    return status;
}

// A call of every family that keeps working memory or state, on tiles and in memory.
static std::vector<PicturePtr> runAll(uint64_t seed)
{
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkRedirectError(passStatusOn);
    pxkSetErrStatus(PXK_StsOk);
    Random random(seed);
    const PictureSpec spec { PXK_DEPTH_8U, 61, 37, 3 };
    const PicturePtr a = Picture::make(spec, random), b = Picture::make(spec.tiled(16, 24), random);
    const PicturePtr sum = Picture::make(spec, random), median = Picture::make(spec, random);
    const PicturePtr gray = Picture::make({ PXK_DEPTH_8U, 61, 37 }, random),
                     bits = Picture::make({ PXK_DEPTH_1U, 61, 37 }, random);
    memcpy(gray->header.colorModel, "GRAY", 4);
    memcpy(gray->header.channelSeq, "G\0\0", 4);
    sum->setMask(Picture::make({ PXK_DEPTH_1U, 70, 40 }, random));
    for (int32_t turn = 0; turn < 20; ++turn) {
        pxkAdd(*a, *b, *sum);
        pxkExchange(*a, *b);
        pxkMedianFilter(*a, *median, 5, 3, 2, 1);
        pxkReduceBits(*gray, *bits, 0, PXK_DITHER_FS, 0);
        pxkErode(*bits, *bits, 2);
        EXPECT_EQ(pxkGetErrStatus(), PXK_StsOk);
        EXPECT_EQ(pxkError(-turn - 2, "here", "each thread has its own", "file", turn), -turn - 2);
        EXPECT_EQ(pxkGetErrStatus(), turn == 6 ? PXK_StsOk : -turn - 2); // -8 is not stored
        pxkSetErrStatus(PXK_StsOk);
    }
    return { sum, median, bits };
}

TEST(Threads, haveNothingInCommon)
{
    std::vector<PicturePtr> got[2];
    std::thread first([&] { got[0] = runAll(1); });
    std::thread second([&] { got[1] = runAll(2); });
    first.join();
    second.join();
    for (uint64_t seed = 1; seed <= 2; ++seed) {
        const std::vector<PicturePtr> want = runAll(seed);
        for (size_t k = 0; k < want.size(); ++k) EXPECT_TRUE(sameSamples(*want[k], *got[seed - 1][k]));
    }
}
