// SPDX-License-Identifier: BSD-2-Clause
#include "owndyadic.h"
#include "ownscalar.h"
#include "ownscaled.h"

void pxkMultiplyScale(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OWN_REFUSE_BAD_HEADERS(srcImageA, srcImageB, dstImage);
    OWN_REFUSE_IF(srcImageA->depth != PXK_DEPTH_8U && srcImageA->depth != PXK_DEPTH_16U, PXK_StsBadArg,
                  "(srcImageA->depth != 8) && (srcImageA->depth != 16)");
    const OwnDyadic images = { srcImageA, srcImageB, dstImage };
    OwnWork work;
    if (!ownGoodFormats(OWN_HERE, images, OwnOrders::MUST_AGREE) || !ownGoodChannels(OWN_HERE, images)
        || !ownOpenDyadic(work, OWN_HERE, images))
        return;
    ownForScaled(srcImageA->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        ownRunWork(work, OwnPadding::KEPT,
                   [](uint8_t* const* rows, ptrdiff_t n) { ownDyadicRow<T>(rows, n, OwnMultiplyScaled {}); });
    });
}

void pxkMultiplySScale(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U, PXK_StsBadArg,
                  "(srcImage->depth != 8) && (srcImage->depth != 16)");
    OwnWork work;
    if (!ownGoodScalarFormats(OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)
        || !ownOpenScalar(work, OWN_HERE, srcImage, dstImage))
        return;
    ownForScaled(srcImage->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T constant = static_cast<T>(ownLimit(value, { 0, ownLargest<T> }));
        const auto scale = [constant](T a) { return OwnMultiplyScaled {}(a, constant); };
        ownRunWork(work, OwnPadding::KEPT,
                   [scale](uint8_t* const* rows, ptrdiff_t n) { ownScalarRow<T>(rows, n, scale); });
    });
}
