// SPDX-License-Identifier: BSD-2-Clause
#include "ownconversion.h"

#include <algorithm>

#include "ownpixels.h"

// Pixels on one side and planes on the other: channels are rows of their own, so that whole pixels are split or joined
// in one pass.
static void ownRunChannels(const OwnPiece& piece, const OwnRowFunction& rowFunction)
{
    constexpr int32_t most = 4;
    const int32_t nChannels = piece.views[0].nChannels;
    for (int32_t start = 0; start < nChannels; start += most) {
        const int32_t count = std::min(most, nChannels - start);
        ownRunPixels({ ownSomeChannels(piece.views[0], start, count), ownSomeChannels(piece.views[1], start, count) },
                     1, piece.mask, [&](uint8_t* const* rows, ptrdiff_t n) {
                         for (int32_t c = 0; c < count; ++c) {
                             uint8_t* const pair[2] = { rows[c], rows[count + c] };
                             rowFunction(pair, n);
                         }
                     });
    }
}

int32_t ownRunDepths(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnRowFunction& rowFunction,
                     bool turnsDestination)
{
    const int32_t unequal = ownFirstFault(site,
                                          { { ownProcessedChannels(srcImage) != ownProcessedChannels(dstImage),
                                              PXK_StsBadArg, "(srcChannels != dstChannels)" } });
    if (unequal != PXK_StsOk) return unequal;
    OwnWork work;
    const int32_t status = ownOpenWork(work, site,
                                       { { srcImage, "(srcImage->tileInfo->tileData == NULL)" },
                                         { dstImage, "(dstImage->tileInfo->tileData == NULL)" } });
    if (status != PXK_StsOk) return status;
    work.turnsDestination = turnsDestination;
    const bool isSameOrder = srcImage->dataOrder == dstImage->dataOrder;
    const bool isComplete = ownSweepPieces(work, [&](const OwnPiece& piece) {
        if (isSameOrder || piece.views[0].nChannels == 1) {
            return ownRunViews(piece.views, 2, 1, piece.mask, rowFunction);
        }
        ownRunChannels(piece, rowFunction);
    });
    return isComplete ? PXK_StsOk : PXK_StsBadArg;
}
