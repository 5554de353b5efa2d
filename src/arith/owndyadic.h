/* SPDX-License-Identifier: BSD-2-Clause */
// What the operations of two images share: their argument checks and the way from a sample operation to the work.
#pragma once

#include "frame/ownblockrows.h"
#include "frame/owndepth.h"
#include "frame/ownwork.h"
#include "ownorders.h"

// The images of a call.
struct OwnDyadic {
    PxkImage* srcImageA;
    PxkImage* srcImageB;
    PxkImage* dstImage;
};

// Depths and data orders, or the numbers of processed channels. False: reported.
[[nodiscard]] bool ownGoodFormats(const OwnSite& site, const OwnDyadic& images, OwnOrders orders);
[[nodiscard]] bool ownGoodChannels(const OwnSite& site, const OwnDyadic& images);

// Masks and common size behind the checks. False: nothing to do, or reported.
[[nodiscard]] bool ownOpenDyadic(OwnWork& work, const OwnSite& site, const OwnDyadic& images);

// All of these, headers first.
[[nodiscard]] bool ownBeginDyadic(OwnWork& work, const OwnSite& site, const OwnDyadic& images, OwnOrders orders);

template <class T, class Op> inline void ownDyadicRow(uint8_t* const* rows, ptrdiff_t n, Op op)
{
    const T* const a = reinterpret_cast<const T*>(rows[0]);
    const T* const b = reinterpret_cast<const T*>(rows[1]);
    if constexpr (sizeof(T) < 4) {
        return ownMakeRow<T, ownBlockOf<T>>(rows[2], n, [=](ptrdiff_t i) { return op(a[i], b[i]); });
    }
    T* const d = reinterpret_cast<T*>(rows[2]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) d[i] = op(a[i], b[i]);
}

template <class T, class Op> void ownRunDyadicAs(const OwnWork& work, Op op)
{
    const auto row = [op](uint8_t* const* rows, ptrdiff_t n) { ownDyadicRow<T>(rows, n, op); };
    ownRunWork(work, OwnPadding::WORKED_ON, row);
}

// Runs an arithmetic operation on samples of the depth's own type.
template <class Op> void ownRunDyadic(const OwnWork& work, Op op)
{
    ownForDepth(work.depth(), [&](auto tag) { ownRunDyadicAs<typename decltype(tag)::Sample>(work, op); });
}

// Runs a logical operation: bits do not care for the width of the sample they are in.
template <class Op> void ownRunDyadicBits(const OwnWork& work, Op op)
{
    const int32_t bytes = ownSampleBytes(work.depth());
    ownForSampleBytes(bytes > 0 ? bytes : 1,
                      [&](auto tag) { ownRunDyadicAs<typename decltype(tag)::Sample>(work, op); });
}
