// SPDX-License-Identifier: BSD-2-Clause
// Bitmap interchange under shortage of memory: every allocation fails once.
#include "support/alloc_failure.h"
#include "support/bitmap.h"
#include "support/compare.h"
#include "support/reports.h"

using Reports = std::vector<Report>;

// One level but for a noisy corner, so that both codings pay.
static PicturePtr coloredPicture()
{
    const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 64, 20, 3 });
    image->forEachSample([&](int32_t x, int32_t y, int32_t c) {
        if (x >= 16) image->setNumber(x, y, c, 50);
    });
    return image;
}

TEST(DibMemory, toBitmap)
{
    const PicturePtr image = coloredPicture();
    for (const bool isRle8 : { false, true })
        for (const int32_t palette : { PXK_PALETTE_KEEP, PXK_PALETTE_MEDCUT }) {
            Random random(1);
            const Bitmap fresh(bitmapHeader(64, 20, isRle8 ? 8 : 4, isRle8 ? 1 : 2), false, random);
            std::shared_ptr<Bitmap> done;
            const std::string text =
                std::string("Not enough memory to compress DIB at BI_RLE") + (isRle8 ? "8 DIB" : "4 DIB");
            const Reports noPalette = { { -3, "pxkConvertToDIB", "Error of creating medcut palette" } };
            const Reports notCoded = { { -4, "ownCompressRLE", text } };
            int32_t unmade = 0, uncoded = 0;
            const auto convert = [&](int64_t n) {
                const auto bitmap = fresh.copy();
                startReports();
                pxkConvertToDIB(*image, bitmap->dib(), 1, palette);
                if (n == 0) done = bitmap;
                const Reports reports = recordedReports();
                unmade += reports == noPalette;
                uncoded += reports == notCoded;
                EXPECT_TRUE(!reports.empty() || bitmap->sameAs(*done)); // without lists the nearest colour is slow
                expectReports(n == 0 || reports.empty() ? Reports() : reports == noPalette ? noPalette : notCoded);
            };
            forEachFailingAllocation(convert);
            forEachFailingAllocation(convert, true);
            EXPECT_EQ(unmade > 0, palette == PXK_PALETTE_MEDCUT);
            EXPECT_GT(uncoded, 0);
        }
}

TEST(DibMemory, fromBitmap)
{
    Random random(1);
    const Bitmap coded(bitmapHeader(64, 20, 8, PXK_BI_RLE8), false, random);
    startReports();
    pxkConvertToDIB(*coloredPicture(), coded.dib(), 1, PXK_PALETTE_MEDCUT);
    expectNoReports();
    forEachFailingAllocation([&](int64_t n) {
        const Reports expected[] = {
            {},
            { { -4, "pxkTranslateDIB", "Not enough memory to allocate header for destination image" } },
            { { -4, "pxkTranslateDIB", "Not enough memory to allocate data for destination image" } },
            { { -4, "ownDecompressRLE", "Not enough memory to decompress BI_RLE8 DIB at DIB" },
              { -3, "pxkConvertFromDIB", "Impossible to decompress RLE DIB" },
              { -1, "pxkTranslateDIB", "" } },
        };
        startReports();
        int32_t isCloned;
        PxkImage* const image = pxkTranslateDIB(coded.dib(), &isCloned);
        EXPECT_EQ(image != nullptr, n == 0);
        ASSERT_LT(n, 4);
        expectReports(expected[n]);
        pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    });
}
