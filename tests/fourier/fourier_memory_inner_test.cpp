// SPDX-License-Identifier: BSD-2-Clause
// Transforms under shortage of memory: one failure is made good, more are reported, nothing is lost.
#include "frame/owncontext.h"
#include "support/alloc_failure.h"
#include "support/compare.h"
#include "support/reports.h"

static void releaseAll()
{
    ownReleaseTransform(ownContext().fourier);
    ownReleaseTransform(ownContext().cosine);
}

TEST(FourierMemory, failuresAreMadeGoodOnce)
{
    struct Row {
        void (*call)(PxkImage*, PxkImage*, int32_t);
        int32_t depth, flags;
        std::vector<Report> reports; // of lasting failures
    };
    const Row rows[] = {
        { pxkRealFft2D, PXK_DEPTH_32F, PXK_FFT_FORWARD, { { PXK_StsNoMem, "pxkRealFft2D", "No working memory" } } },
        { pxkCcsFft2D, PXK_DEPTH_16S, 2 | PXK_FFT_USE_INT, { { PXK_StsNoMem, "pxkCcsFft2D", "No working memory" } } },
        { pxkDCT2D, PXK_DEPTH_32F, PXK_DCT_FORWARD, {} },
    };
    for (const Row& row : rows) {
        const PicturePtr from = Picture::make(PictureSpec(row.depth, 262, 12)), old = Picture::make(from->spec, 2);
        Random random(3);
        fillRange(*from, random, 0, 9);
        const PicturePtr want = old->copy();
        row.call(*from, *want, row.flags);
        for (const bool laterToo : { false, true }) {
            int64_t count = 1;
            for (int64_t n = 0; n <= count; ++n) {
                const PicturePtr got = old->copy();
                releaseAll();
                startReports();
                failAllocation(n, laterToo && n > 0);
                row.call(*from, *got, row.flags);
                if (n == 0) count = allocationsSince();
                failAllocation(0);
                const bool isLost = laterToo && n > 0;
                EXPECT_TRUE(samePicture(isLost ? *old : *want, *got, BITS)) << "allocation " << n;
                expectReports(isLost ? row.reports : std::vector<Report>());
            }
        }
    }
    releaseAll();
}
