// Operations under shortage of memory: what they say, and that nothing is lost.
#include "support/alloc_failure.h"
#include "support/cases.h"
#include "support/reports.h"

using Reports = std::vector<Report>;

TEST(Memory, headersAndBlocks)
{
    startReports();
    forEachFailingAllocation([](int64_t n) {
        PxkImage* const image =
            pxkCreateImageHeader(1, 0, PXK_DEPTH_8U, "GRAY", "G   ", 0, 0, 4, 8, 8, nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(image == nullptr, n == 1);
        if (image == nullptr) return;
        pxkAllocateImage(image, 1, 3);
        EXPECT_EQ(image->imageData == nullptr, n == 2);
        EXPECT_EQ(image->imageDataBase == nullptr, n == 2);
        pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    });
    expectNoReports();
}

TEST(Memory, clone)
{
    static const char* const texts[] = { "Not enough memory to allocate header for clone image",
                                         "Not enough memory to allocate roi for clone image",
                                         "Not enough memory to allocate imageData for clone image" };
    for (const int32_t depth : { PXK_DEPTH_16S, PXK_DEPTH_32F }) {
        const PicturePtr p = Picture::make(PictureSpec(depth).region(1, 1, 2, 2));
        const PicturePtr want = p->copy();
        forEachFailingAllocation([&](int64_t n) {
            startReports();
            PxkImage* const clone = pxkCloneImage(*p);
            EXPECT_EQ(recordedReports(),
                      n == 0 ? Reports() : Reports({ { PXK_StsNoMem, "pxkCloneImage", texts[n - 1] } }));
            EXPECT_EQ(clone == nullptr, n != 0);
            pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
        });
        EXPECT_TRUE(samePicture(*want, *p));
    }
}

// Two masks are joined in a temporary image, and two tiled images need fetched rectangles. Whatever fails, all else
// than the destination stays, and no tile stays held but where that is the rule.
TEST(Memory, pointwiseOperations)
{
    struct Row {
        std::function<void(const Scene&)> call;
        Report report;
        size_t images;
    };
    const Row rows[] = {
        { [](const Scene& s) { pxkXor(s[0], s[1], s[2]); }, { PXK_StsNoMem, "pxkXor", "Out of memory" }, 3 },
        { [](const Scene& s) { pxkCopy(s[0], s[1]); }, { PXK_StsBackTrace, "pxkCopy", "" }, 2 },
        { [](const Scene& s) { pxkExchange(s[0], s[1]); }, { PXK_StsBackTrace, "pxkExchange", "" }, 2 },
    };
    for (const Row& row : rows) {
        for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_16S }) {
            for (const ImageSet tiling : { ImageSet(0), ALL_IMAGES }) {
                SCOPED_TRACE(::testing::Message() << row.report << ' ' << depthName(depth) << " tiles " << tiling);
                Case c;
                c.depth = depth;
                c.masks = ALL_IMAGES;
                c.tiling = tiling;
                const Scene original = makeScene(c, row.images);
                Scene s;
                const auto callOnCopy = [&](int64_t n) {
                    failAllocation(0);
                    s = original.copy();
                    startReports();
                    failAllocation(n);
                    row.call(s);
                };
                callOnCopy(0);
                const int64_t count = allocationsSince();
                EXPECT_EQ(blocksLeft(), 0);
                expectNoReports();
                EXPECT_GT(count, 0);
                for (int64_t n = 1; n <= count; ++n) {
                    callOnCopy(n);
                    EXPECT_EQ(blocksLeft(), 0) << "allocation " << n;
                    failAllocation(0);
                    ASSERT_FALSE(recordedReports().empty()) << "allocation " << n;
                    EXPECT_EQ(recordedReports()[0], row.report) << "allocation " << n;
                    for (size_t k = 0; k + 1 < row.images && row.images == 3; ++k) {
                        EXPECT_TRUE(samePicture(original[k], s[k]));
                    }
                }
            }
        }
    }
}
