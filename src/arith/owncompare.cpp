// SPDX-License-Identifier: BSD-2-Clause
#include "owncompare.h"

#include <algorithm>

bool ownGoodComparison(const OwnSite& site, const OwnComparison& images)
{
    PxkImage* const a = images.sources[0];
    PxkImage* const b = images.sources[1];
    PxkImage* const d = images.dstImage;
    if (images.nSources == 1) {
        return ownGoodHeaders(site, { a, d })
            && ownPassed(site, { { d->depth != PXK_DEPTH_1U, PXK_StsBadArg, "(dstImage->depth != 1)" } });
    }
    return ownGoodHeaders(site, { a, b, d })
        && ownPassed(site,
                     { { a->depth != b->depth, PXK_StsBadArg, "(srcImageA->depth != srcImageB->depth)" },
                       { d->depth != PXK_DEPTH_1U, PXK_StsBadArg, "(dstImage->depth != 1)" },
                       { ownProcessedChannels(a) != ownProcessedChannels(b), PXK_StsBadArg, "(nChSrcA != nChSrcB)" } });
}

// As many channels at a time as a row function takes; a bit stays 1 while all of them agree.
static void ownComparePiece(const OwnPiece& piece, int32_t nSources, const OwnCompareRows& compareRows)
{
    const int32_t nChannels = piece.views[0].nChannels;
    const int32_t most = (ownMostViews - 1) / nSources;
    for (int32_t start = 0; start < nChannels; start += most) {
        const int32_t count = std::min(most, nChannels - start);
        const bool isFurther = start > 0;
        const auto rowFunction = [&](uint8_t* const* rows, ptrdiff_t n) { compareRows(rows, n, count, isFurther); };
        ownRunPixels({ ownSomeChannels(piece.views[0], start, count),
                       ownSomeChannels(piece.views[1], start, nSources == 2 ? count : 0),
                       ownSomeChannels(piece.views[nSources], 0, 1) },
                     1, piece.mask, OwnRowFunction(rowFunction, isFurther));
    }
}

void ownRunComparison(const OwnSite& site, const OwnComparison& images, const OwnCompareRows& compareRows)
{
    const OwnOperand destination = { images.dstImage, "(dstImage->tileInfo->tileData == ((void*)(0)))" };
    OwnWork work;
    const bool isReady = images.nSources == 2
        ? ownBeginWork(work, site,
                       { { images.sources[0], "(srcImageA->tileInfo->tileData == ((void*)(0)))" },
                         { images.sources[1], "(srcImageB->tileInfo->tileData == ((void*)(0)))" },
                         destination })
        : ownBeginWork(work, site,
                       { { images.sources[0], "(srcImage->tileInfo->tileData == ((void*)(0)))" }, destination });
    if (!isReady) return;
    ownSweepPieces(work, [&](const OwnPiece& piece) { ownComparePiece(piece, images.nSources, compareRows); });
}
