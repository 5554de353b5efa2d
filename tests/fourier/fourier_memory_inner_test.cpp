// Transforms under shortage of memory: one failure is made good, more are reported, nothing is lost.
#include "support/alloc_failure.h"
#include "support/compare.h"
#include "support/reports.h"

#include "frame/owncontext.h"

TEST(FourierMemory, failuresAreMadeGood)
{
    struct Row {
        const char* name;
        void (*call)(PxkImage*, PxkImage*, int32_t);
        int32_t depth, flags;
    };
    for (const Row& row : { Row { "pxkRealFft2D", pxkRealFft2D, PXK_DEPTH_32F, PXK_FFT_FORWARD },
                            { "pxkCcsFft2D", pxkCcsFft2D, PXK_DEPTH_16S, PXK_FFT_INVERSE | PXK_FFT_USE_INT },
                            { "pxkDCT2D", pxkDCT2D, PXK_DEPTH_32F, PXK_DCT_FORWARD } }) {
        const PicturePtr from = Picture::make(PictureSpec(row.depth, 262, 12)), to = Picture::make(from->spec, 2);
        Random random(3);
        fillRange(*from, random, 0, 9);
        const PicturePtr want = to->copy(), untouched = to->copy();
        row.call(*from, *want, row.flags);
        for (const bool isLasting : { false, true })
            forEachFailingAllocation([&](int64_t n) {
                ownReleaseTransform(ownContext().fourier);
                ownReleaseTransform(ownContext().cosine);
                failAllocation(n, isLasting);
                startReports();
                const PicturePtr got = untouched;
            });
    }
}
