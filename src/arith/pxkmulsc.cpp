#include "owndyadic.h"
#include "ownscalar.h"
#include "ownscaled.h"

// Products go piece by piece, not as one run over the whole block: the padding of rows stays as it is.
template <class Row> static void ownRunRows(const OwnWork& work, const Row& row)
{
    const auto onPiece = [&](const OwnPiece& piece) {
        ownRunViews(piece.views, work.count, 1, piece.mask, ownRowFunction(row));
    };
    ownSweepPieces(work, ownPieceRunner(onPiece));
}

void pxkMultiplyScale(PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    OWN_REFUSE_BAD_HEADERS(srcImageA, srcImageB, dstImage);
    OWN_REFUSE_IF(srcImageA->depth != PXK_DEPTH_8U && srcImageA->depth != PXK_DEPTH_16U, PXK_StsBadArg,
                  "(srcImageA->depth != 8) && (srcImageA->depth != 16)");
    OwnWork work;
    if (!ownBeginDyadic(work, OWN_HERE, srcImageA, srcImageB, dstImage, OwnOrders::MUST_AGREE)) return;
    ownForScaled(srcImageA->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        ownRunRows(work, [](uint8_t* const* rows, ptrdiff_t n) { ownDyadicRow<T>(rows, n, OwnMultiplyScaled {}); });
    });
}

void pxkMultiplySScale(PxkImage* srcImage, PxkImage* dstImage, int32_t value)
{
    OWN_REFUSE_BAD_HEADERS(srcImage, dstImage);
    OWN_REFUSE_IF(srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U, PXK_StsBadArg,
                  "(srcImage->depth != 8) && (srcImage->depth != 16)");
    OwnWork work;
    if (!ownBeginScalar(work, OWN_HERE, srcImage, dstImage, OwnOrders::MUST_AGREE)) return;
    ownForScaled(srcImage->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const T constant = static_cast<T>(ownLimit(value, { 0, ownLargest<T> }));
        const auto scale = [constant](T a) { return OwnMultiplyScaled {}(a, constant); };
        ownRunRows(work, [scale](uint8_t* const* rows, ptrdiff_t n) { ownScalarRow<T>(rows, n, scale); });
    });
}
