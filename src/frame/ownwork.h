/* SPDX-License-Identifier: BSD-2-Clause */
// Work areas: the one way in for all operations behind their checks; and the road of the point-wise ones.
#pragma once

#include "ownmask.h"
#include "ownreport.h"
#include "owntile.h"
#include "ownviews.h"

// ---- the area ------------------------------------------------------------------------------------------------------

// Which pixels a call works on: the smallest width and height of the images' regions, each at its own offset, and of
// the masks, which are joined.
struct OwnArea {
    OwnSize regions; // of the regions alone
    OwnSize size;
    OwnMask mask;
};

enum class OwnStart { READY, NOTHING_TO_DO, NO_MEMORY };

// Takes the masks of the images with them. Nothing is reported.
[[nodiscard]] OwnStart ownFindArea(OwnArea& area, std::initializer_list<const PxkImage*> images);

// ---- point-wise work -----------------------------------------------------------------------------------------------

// An image of a point-wise operation, and the words for a tile that its function refused.
struct OwnOperand {
    PxkImage* image;
    const char* refusedTile;
};

// A point-wise operation behind its checks: its images, sources first, destinations last.
struct OwnWork {
    OwnSite site;
    OwnOperand operands[4];
    int32_t count;
    int32_t nDestinations = 1; // their tiles are asked for writing; a measure has none
    OwnArea area;
    bool turnsDestination = false;       // its rows are taken from the last one upward
    int32_t refusedTile = PXK_StsBadArg; // the status of that report

    PxkImage* image(int32_t k) const { return operands[k].image; }
    int32_t depth() const { return operands[0].image->depth; }
};

// An image whose only channel is alpha has no processed channel: as a rule there is nothing to do then.
enum class OwnLoneAlpha { LEFT, WORKED_ON };

// Takes the area. PXK_StsOk with an empty size where there is nothing to do; PXK_StsNoMem: reported.
[[nodiscard]] int32_t ownOpenWork(OwnWork& work, const OwnSite& site, std::initializer_list<OwnOperand> operands,
                                  OwnLoneAlpha loneAlpha = OwnLoneAlpha::LEFT);

// The same where no status is wanted. False: nothing to do, or reported.
[[nodiscard]] inline bool ownBeginWork(OwnWork& work, const OwnSite& site, std::initializer_list<OwnOperand> operands)
{
    return ownOpenWork(work, site, operands) == PXK_StsOk && !work.area.size.isEmpty();
}

// A piece of the work: one view for each image, and the mask's bits there.
struct OwnPiece {
    OwnView views[4];
    OwnBits maskBits;
    const OwnBits* mask; // null without a mask
    int32_t x;           // of the first pixel, in the work
    int32_t y;
};

// Cuts the work into the largest pieces that stay inside the current tile of every tiled image; images in memory alone
// are one piece. A tile is asked for before its pixels are touched and released once. False: a tile was refused,
// reported.
bool ownSweepPieces(const OwnWork& work, OwnFunction<void(const OwnPiece&)> onPiece);

// What becomes of the padding behind the rows when whole images of one shape are worked on.
enum class OwnPadding {
    KEPT,
    WORKED_ON, // like samples: the images are one long row
};

// Runs a row function that treats all channels alike. The last operand is the one destination.
void ownRunWork(const OwnWork& work, OwnPadding padding, const OwnRowFunction& rowFunction);
