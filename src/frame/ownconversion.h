// What the conversions between depths share: the way from a row kernel to the work, and the shape of their kernels.
#pragma once

#include <type_traits>

#include "owndepth.h"
#include "ownwork.h"

// Behind the checks of the arguments: compares the processed channels, then runs a kernel of one source row and one
// destination row over the work. Gives the operation's status; what is not 0 was reported.
[[nodiscard]] int32_t ownRunDepths(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage,
                                   const OwnRowFunction& kernel, bool turnsDestination = false);

// Calls onSample with the tag of an integer depth; other depths call nothing.
template <class F> inline void ownForIntegerDepth(int32_t depth, F&& onSample)
{
    ownForDepth(depth, [&](auto tag) {
        if constexpr (std::is_integral<typename decltype(tag)::Sample>::value) onSample(tag);
    });
}

// The same with the tags of a pair of depths.
template <class F> inline void ownForIntegerDepths(int32_t srcDepth, int32_t dstDepth, F&& onSamples)
{
    ownForIntegerDepth(srcDepth, [&](auto src) {
        using SourceTag = decltype(src);
        ownForIntegerDepth(dstDepth, [&](auto dst) { onSamples(SourceTag {}, dst); });
    });
}

// A kernel's row. Constants are captured by value in `op`, so that no store of samples can change them.
template <class S, class D, class Op> inline void ownDepthRow(uint8_t* const* rows, ptrdiff_t n, Op op)
{
    const S* const a = reinterpret_cast<const S*>(rows[0]);
    D* const d = reinterpret_cast<D*>(rows[1]);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) d[i] = op(a[i]);
}

template <class S, class D, class Op>
[[nodiscard]] int32_t ownRunDepthsAs(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, Op op,
                                     bool turnsDestination = false)
{
    const auto row = [op](uint8_t* const* rows, ptrdiff_t n) { ownDepthRow<S, D>(rows, n, op); };
    return ownRunDepths(site, srcImage, dstImage, ownRowFunction(row), turnsDestination);
}
