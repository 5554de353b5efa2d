// SPDX-License-Identifier: BSD-2-Clause
// Error diffusion under shortage of memory: it says so, writes nothing and keeps nothing.
#include <cstring>

#include "support/alloc_failure.h"
#include "support/compare.h"
#include "support/reports.h"

TEST(ReduceBitsMemory, diffusion)
{
    struct Row {
        int32_t depth, channels, ditherType;
        const char* func;
        const char* model;
    };
    const Row rows[] = {
        { PXK_DEPTH_8U, 1, PXK_DITHER_FS, "owncbDither_Gray_Floyd_PX", "GRAY" },
        { PXK_DEPTH_8U, 1, PXK_DITHER_JJN, "owncbDither_Gray_S_J_PX", "GRAY" },
        { PXK_DEPTH_16U, 1, PXK_DITHER_FS, "ownwbDither_Gray_Floyd_PX", "GRAY" },
        { PXK_DEPTH_16U, 1, PXK_DITHER_STUCKI, "ownwbDither_Gray_S_J_PX", "GRAY" },
        { PXK_DEPTH_8U, 3, PXK_DITHER_FS, "owncbDither_Floyd_PX", "RGB" },
        { PXK_DEPTH_8U, 3, PXK_DITHER_STUCKI, "owncbDither_S_J_PX", "RGB" },
        { PXK_DEPTH_16U, 3, PXK_DITHER_FS, "ownwbDither_Floyd_PX", "RGB" },
        { PXK_DEPTH_16U, 3, PXK_DITHER_JJN, "ownwbDither_S_J_PX", "RGB" },
    };
    for (const Row& row : rows) {
        for (const bool isTiled : { false, true }) {
            PictureSpec spec(row.depth, 20, 9, row.channels);
            if (isTiled) spec.tiled(8, 8);
            const PicturePtr original = Picture::make(spec, 1), old = Picture::make(spec, 2);
            PicturePtr src;
            memcpy(original->header.colorModel, row.model, strlen(row.model));
            if (row.channels == 1) memcpy(original->header.channelSeq, "GRAY", 4);
            original->freeze();
            PicturePtr dst;
            const auto call = [&](int64_t n) {
                failAllocation(0);
                src = original->copy();
                dst = old->copy();
                startReports();
                failAllocation(n);
                pxkReduceBits(*src, *dst, 0, row.ditherType, 4);
            };
            call(0);
            expectNoReports();
            EXPECT_TRUE(isTiled || allocationsSince() == 1);
            // With tiles there is an image to hold them, too; what is allocated later is the tile function's.
            for (int64_t n = 1; n <= (isTiled ? 2 : 1); ++n) {
                call(n);
                EXPECT_EQ(blocksLeft(), 0);
                expectReports({ { PXK_StsNoMem, isTiled ? "pxkReduceBits" : row.func,
                                  isTiled ? "no memory for error propagation dithering errors array"
                                          : "no memory for errr array" } });
                EXPECT_TRUE(samePicture(*old, *dst));
                EXPECT_TRUE(src->storage->calls.empty());
            }
        }
    }
}
