// The roads by which pixels reach a row kernel, each written once: memory, and the piece sweep over tiles.
#pragma once

#include <cstring>

#include "ownmask.h"
#include "ownreport.h"
#include "ownivdep.h"
#include "ownview.h"

// A row kernel: takes n contiguous samples of each image, sources first, destinations last, and never sees masks, gaps,
// bit offsets or strides. One-bit images beside others are presented as bytes of 0 and 1; where all images are one-bit,
// n counts bytes of eight pixels each. Destination samples hold their old values only for a kernel that says `updates`.
struct OwnRowFunction {
    void (*call)(const void* self, uint8_t* const* rows, ptrdiff_t n);
    const void* self;
    bool updates;
};

// Refers to the function object, which must live as long as the kernel is used.
template <class F> OwnRowFunction ownRowFunction(const F& rowFunction, bool updates = false)
{
    const auto call = [](const void* self, uint8_t* const* rows, ptrdiff_t n) {
        (*static_cast<const F*>(self))(rows, n);
    };
    return { call, &rowFunction, updates };
}

// The kernel that copies, source first; one-bit rows count bytes, which sampleBytes 0 stands for.
struct OwnCopyRow {
    int32_t sampleBytes;
    void operator()(uint8_t* const* rows, ptrdiff_t n) const
    {
        memmove(rows[1], rows[0], static_cast<size_t>(n * (sampleBytes > 0 ? sampleBytes : 1)));
    }
};

// Most images, or channels of images, that one kernel takes.
constexpr int32_t ownMostOperands = 12;

// Runs the kernel over views of one width, one height and one number of channels (one-bit views among others: one
// channel). Only pixels whose mask bit is 1 change. Channels of the same pixels that are operands of their own are
// moved together, whole pixels at a time, when they follow each other in the order of the channels.
void ownRunViews(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                 const OwnRowFunction& kernel);

// An image of a point-wise operation, and the words for a tile that its function refused.
struct OwnOperand {
    PxkImage* image;
    const char* refusedTile;
};

// A point-wise operation behind its checks: its images (sources first, one destination last), mask and size.
struct OwnWork {
    OwnSite site;
    OwnOperand operands[4];
    int32_t count;
    OwnMask mask;
    OwnSize size;
    bool turnsDestination = false; // its rows are taken from the last one upward
    int32_t status = PXK_StsOk;    // what ownBeginWork reported
};

// Joins the masks of all images and takes the common size. False: nothing to do, or out of memory, which was reported.
[[nodiscard]] bool ownBeginWork(OwnWork& work, const OwnSite& site, std::initializer_list<OwnOperand> operands);

// What a piece of the work looks like to the operation: one view for each image, and the mask's bits there.
struct OwnPiece {
    OwnView views[4];
    OwnBits maskBits;
    const OwnBits* mask; // null without a mask
    int32_t x;           // of the first pixel, in the work
    int32_t y;
};

// A function that handles one piece.
struct OwnPieceRunner {
    void (*call)(const void* self, const OwnPiece& piece);
    const void* self;
};

template <class F> OwnPieceRunner ownPieceRunner(const F& onPiece)
{
    return { [](const void* self, const OwnPiece& piece) { (*static_cast<const F*>(self))(piece); }, &onPiece };
}

// Cuts the work into the largest pieces that stay inside the current tile of every tiled image; images in memory alone
// are one piece. A tile is asked for before its pixels are touched and released once. False: a tile was refused,
// reported.
bool ownSweepPieces(const OwnWork& work, const OwnPieceRunner& runner);

// Runs a kernel that treats all channels alike: whole images of one shape in one run with their row padding, all else
// in pieces.
void ownRunWork(const OwnWork& work, const OwnRowFunction& kernel);
