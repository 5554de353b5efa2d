/* SPDX-License-Identifier: BSD-2-Clause */
// Row functions, and the way from views to them: in place, or through blocks on the stack where rows do not lie as a
// row function wants them.
#pragma once

#include <cstring>

#include "ownfunction.h"
#include "ownivdep.h"
#include "ownview.h"

// Takes n contiguous samples of each view, sources first, destinations last, and never sees masks, gaps, bit offsets or
// strides. One-bit views beside others are presented as bytes of 0 and 1; where all views are one-bit, n counts bytes
// of eight pixels each. Destination samples hold their old values only for a row function that says `updates`.
struct OwnRowFunction : OwnFunction<void(uint8_t* const* rows, ptrdiff_t n)> {
    template <class F, class = std::enable_if_t<!std::is_base_of<OwnRowFunction, F>::value>>
    OwnRowFunction(const F& rowFunction, bool updatesRows = false)
        : OwnFunction(rowFunction)
        , updates(updatesRows)
    {
    }

    bool updates;
};

// The row function that copies, source first; one-bit rows count bytes, which sampleBytes 0 stands for.
struct OwnCopyRow {
    int32_t sampleBytes;
    void operator()(uint8_t* const* rows, ptrdiff_t n) const
    {
        memmove(rows[1], rows[0], static_cast<size_t>(n * (sampleBytes > 0 ? sampleBytes : 1)));
    }
};

// Most views that one row function takes.
constexpr int32_t ownMostViews = 12;

// Runs the row function over views of one width, one height and one number of channels (one-bit views among others: one
// channel). Only pixels whose mask bit is 1 change. Channels of the same pixels that are views of their own are moved
// together, whole pixels at a time, when they follow each other in the order of the channels.
void ownRunViews(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                 const OwnRowFunction& rowFunction);

// Copies one view to another one of the same samples under a mask.
inline void ownCopyView(const OwnView& from, const OwnView& to, const OwnBits* mask)
{
    const OwnView views[2] = { from, to };
    ownRunViews(views, 2, 1, mask, OwnCopyRow { to.sampleBytes });
}
