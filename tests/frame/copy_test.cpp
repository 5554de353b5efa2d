// SPDX-License-Identifier: BSD-2-Clause
// What copies and sets do beside their rows in the table.
#include "reference/frame.h"
#include "support/compare.h"
#include "support/reports.h"

// 2^31 pixels in rows that touch: more than a pointer difference of 32 bits can count.
TEST(Set, asManyBitsAsFitInMemory)
{
    PxkImage* const image = pxkCreateImageHeader(1, 0, PXK_DEPTH_1U, "GRAY", "G", 0, 0, 4, 65536, 32768, nullptr,
                                                 nullptr, nullptr, nullptr);
    pxkAllocateImage(image, 0, 0);
    if (image->imageData == nullptr) GTEST_SKIP() << "no 256 MiB of memory";
    startReports();
    pxkSet(image, 1);
    const uint8_t* const last = static_cast<uint8_t*>(image->imageData) + image->imageSize - 1;
    EXPECT_EQ(*last, 0xFF);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

// Behind good headers all faults are told, whatever status was stored.
TEST(Copy, reportsAllArgumentFaults)
{
    const PictureSpec rgb { PXK_DEPTH_8U, 9, 4, 3 };
    const PicturePtr src = Picture::make(rgb, 1), dst = Picture::make(rgb, 2);
    dst->header.depth = PXK_DEPTH_8S;
    dst->header.origin = 1;
    dst->header.dataOrder = PXK_DATA_ORDER_PLANE;
    startReports();
    pxkSetErrStatus(-50);
    pxkExchange(*src, *dst);
    expectReports({ { PXK_StsBadArg, "pxkExchange", "srcImage->depth != dstImage->depth" },
                    { PXK_StsBadArg, "pxkExchange", "srcImage->origin != dstImage->origin" },
                    { PXK_StsBadArg, "pxkExchange", "srcImage->dataOrder != dstImage->dataOrder" } });
    pxkAbs(nullptr, nullptr);
    expectReports({ { PXK_StsBadArg, "pxkAbs", "srcImage==0" }, { PXK_StsBadArg, "pxkAbs", "dstImage==0" } });
    pxkAbs(*src, *Picture::make({ PXK_DEPTH_16U }));
    expectReports({ { PXK_StsBadArg, "pxkCopy", "srcImage->depth != dstImage->depth" },
                    { PXK_StsBackTrace, "pxkAbs", "pxkCopy is failed" } });
    pxkSetErrStatus(3); // only negative ones stop it
    dst->header = src->header;
    dst->header.imageData = dst->row(0);
    pxkCopy(*src, *dst);
    EXPECT_EQ(pxkGetErrStatus(), 3);
    EXPECT_TRUE(sameSamples(*src, *dst));
}

// The image is one of integers of the same width while it works.
TEST(Set, floatTilesAreAskedForAsIntegers)
{
    const PicturePtr p = Picture::make(PictureSpec { PXK_DEPTH_32F, 24, 2 }.tiled(8, 8));
    p->storage->refuseAt = 2;
    startReports();
    pxkSetFP(*p, 1);
    EXPECT_EQ(p->storage->calls[0].depth, PXK_DEPTH_32S);
    EXPECT_EQ(p->header.depth, PXK_DEPTH_32F);
    startReports();
}
