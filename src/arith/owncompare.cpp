#include "owncompare.h"

#include <algorithm>

bool ownGoodComparison(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage)
{
    if (!ownGoodHeaders(site, { srcImageA, srcImageB, dstImage })) return false;
    const char* fault = nullptr;
    if (srcImageA->depth != srcImageB->depth) {
        fault = "(srcImageA->depth != srcImageB->depth)";
    } else if (dstImage->depth != PXK_DEPTH_1U) {
        fault = "(dstImage->depth != 1)";
    } else if (ownProcessedChannels(srcImageA) != ownProcessedChannels(srcImageB)) {
        fault = "(nChSrcA != nChSrcB)";
    }
    if (fault != nullptr) ownReport(site, PXK_StsBadArg, fault);
    return fault == nullptr;
}

bool ownGoodComparison(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage)
{
    if (!ownGoodHeaders(site, { srcImage, dstImage })) return false;
    const bool isGood = dstImage->depth == PXK_DEPTH_1U;
    if (!isGood) ownReport(site, PXK_StsBadArg, "(dstImage->depth != 1)");
    return isGood;
}

// Channels are operands of their own here, as many at a time as a kernel takes; a bit stays 1 while all of them agree.
static void ownComparePiece(const OwnPiece& piece, int32_t nSources, const OwnCompareRow& row)
{
    const int32_t nChannels = piece.views[0].nChannels;
    const int32_t most = (ownMostOperands - 1) / nSources;
    for (int32_t start = 0; start < nChannels; start += most) {
        const int32_t count = std::min(most, nChannels - start);
        OwnView views[ownMostOperands];
        for (int32_t k = 0; k < nSources * count; ++k) {
            views[k] = ownChannelView(piece.views[k / count], start + k % count);
        }
        views[nSources * count] = piece.views[nSources];
        const bool isFurther = start > 0;
        const auto call = [&](uint8_t* const* rows, ptrdiff_t n) { row.call(row.self, rows, n, count, isFurther); };
        ownRunViews(views, nSources * count + 1, 1, piece.mask, ownRowFunction(call, isFurther));
    }
}

static void ownRunComparison(const OwnSite& site, std::initializer_list<OwnOperand> operands, const OwnCompareRow& row)
{
    OwnWork work;
    if (!ownBeginWork(work, site, operands)) return;
    const auto onPiece = [&](const OwnPiece& piece) { ownComparePiece(piece, work.count - 1, row); };
    ownSweepPieces(work, ownPieceRunner(onPiece));
}

void ownRunComparison(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage,
                      const OwnCompareRow& row)
{
    ownRunComparison(site,
                     { { srcImageA, "(srcImageA->tileInfo->tileData == ((void*)(0)))" },
                       { srcImageB, "(srcImageB->tileInfo->tileData == ((void*)(0)))" },
                       { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } },
                     row);
}

void ownRunComparison(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnCompareRow& row)
{
    ownRunComparison(site,
                     { { srcImage, "(srcImage->tileInfo->tileData == ((void*)(0)))" },
                       { dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" } },
                     row);
}
