/* SPDX-License-Identifier: BSD-2-Clause */
// The road from a source of one depth to a destination of another: each channel of the destination from that of the
// source, whatever the data orders.
#pragma once

#include "ownblockrows.h"
#include "owndepth.h"
#include "ownwork.h"

// Behind the checks of the arguments: compares the processed channels, then runs a row function of one source row and
// one destination row over the work. Gives the operation's status; what is not 0 was reported.
[[nodiscard]] int32_t ownRunDepths(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage,
                                   const OwnRowFunction& rowFunction, bool turnsDestination = false);

// Gives what onSamples returns for the tags of a pair of integer depths.
template <class F> inline auto ownForIntegerDepths(int32_t srcDepth, int32_t dstDepth, F&& onSamples)
{
    return ownForIntegerDepth(srcDepth, [&](auto src) {
        using SourceTag = decltype(src);
        return ownForIntegerDepth(dstDepth, [&](auto dst) { return onSamples(SourceTag {}, dst); });
    });
}

// One row. Constants are captured by value in `op`, so that no store of samples can change them.
template <class S, class D, class Op> inline void ownDepthRow(uint8_t* const* rows, ptrdiff_t n, Op op)
{
    const S* const a = reinterpret_cast<const S*>(rows[0]);
    if constexpr (sizeof(S) < 4 && sizeof(D) < 4) {
        constexpr ptrdiff_t block = sizeof(S) < sizeof(D) ? ownBlockOf<S> : ownBlockOf<D>;
        return ownMakeRow<D, block>(rows[1], n, [=](ptrdiff_t i) { return op(a[i]); });
    }
    D* const d = reinterpret_cast<D*>(rows[1]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) d[i] = op(a[i]);
}

template <class S, class D, class Op>
[[nodiscard]] int32_t ownRunDepthsAs(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, Op op,
                                     bool turnsDestination = false)
{
    const auto row = [op](uint8_t* const* rows, ptrdiff_t n) { ownDepthRow<S, D>(rows, n, op); };
    return ownRunDepths(site, srcImage, dstImage, row, turnsDestination);
}
