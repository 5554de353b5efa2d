#include "ownconversion.h"

#include <algorithm>

// Pixels on one side and planes on the other: channels are operands of their own, so that whole pixels are split or
// joined in one pass.
static void ownRunChannels(const OwnPiece& piece, const OwnRowFunction& kernel)
{
    constexpr int32_t most = 4;
    const int32_t nChannels = piece.views[0].nChannels;
    for (int32_t start = 0; start < nChannels; start += most) {
        const int32_t count = std::min(most, nChannels - start);
        OwnView views[2 * most];
        for (int32_t c = 0; c < count; ++c) {
            views[c] = ownChannelView(piece.views[0], start + c);
            views[count + c] = ownChannelView(piece.views[1], start + c);
        }
        const auto row = [&](uint8_t* const* rows, ptrdiff_t n) {
            for (int32_t c = 0; c < count; ++c) {
                uint8_t* const pair[2] = { rows[c], rows[count + c] };
                kernel.call(kernel.self, pair, n);
            }
        };
        ownRunViews(views, 2 * count, count, piece.mask, ownRowFunction(row));
    }
}

int32_t ownRunDepths(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnRowFunction& kernel,
                     bool turnsDestination)
{
    if (ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage)) {
        ownReport(site, PXK_StsBadArg, "(srcChannels != dstChannels)");
        return PXK_StsBadArg;
    }
    OwnWork work;
    if (!ownBeginWork(work, site,
                      { { srcImage, "(srcImage->tileInfo->tileData == NULL)" },
                        { dstImage, "(dstImage->tileInfo->tileData == NULL)" } })) {
        return work.status;
    }
    work.turnsDestination = turnsDestination;
    const bool isSameOrder = srcImage->dataOrder == dstImage->dataOrder;
    const auto onPiece = [&](const OwnPiece& piece) {
        if (isSameOrder || piece.views[0].nChannels == 1) return ownRunViews(piece.views, 2, 1, piece.mask, kernel);
        ownRunChannels(piece, kernel);
    };
    return ownSweepPieces(work, ownPieceRunner(onPiece)) ? PXK_StsOk : PXK_StsBadArg;
}
