// SPDX-License-Identifier: BSD-2-Clause
#include "ownplane.h"

#include "owndepth.h"
#include "ownivdep.h"
#include "ownlimit.h"

// Sample (x, y) of a channel.
static uint8_t* ownSampleAt(const OwnView& view, int32_t channel, int32_t x, int32_t y)
{
    return view.first + channel * view.channelStep + y * view.rowStep + x * view.pixelStep;
}

template <class From, class To, class Op>
static inline void ownConvertSamples(const From* from, ptrdiff_t fromStep, To* to, ptrdiff_t toStep, ptrdiff_t n, Op op)
{
    if (fromStep == 1 && toStep == 1) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) to[i] = op(from[i]);
    } else {
        for (ptrdiff_t i = 0; i < n; ++i) to[i * toStep] = op(from[i * fromStep]);
    }
}

template <class Work>
void ownLoadPlaneRow(const OwnView& view, int32_t depth, int32_t channel, int32_t x, int32_t y, int32_t n, Work* to)
{
    const uint8_t* const first = ownSampleAt(view, channel, x, y);
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const ptrdiff_t step = view.pixelStep / static_cast<ptrdiff_t>(sizeof(T));
        ownConvertSamples(reinterpret_cast<const T*>(first), step, to, 1, n,
                          [](T sample) { return static_cast<Work>(sample); });
    });
}

template <class Work>
void ownStorePlaneRow(const OwnView& view, int32_t depth, int32_t channel, int32_t x, int32_t y, int32_t n,
                      const Work* from)
{
    uint8_t* const first = ownSampleAt(view, channel, x, y);
    ownForDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const ptrdiff_t step = view.pixelStep / static_cast<ptrdiff_t>(sizeof(T));
        ownConvertSamples(from, 1, reinterpret_cast<T*>(first), step, n,
                          [](Work value) { return ownLimitTo<T>(value); });
    });
}

#define OWN_PLANE_ROWS(WORK)                                                                                           \
    template void ownLoadPlaneRow(const OwnView&, int32_t, int32_t, int32_t, int32_t, int32_t, WORK*);                 \
    template void ownStorePlaneRow(const OwnView&, int32_t, int32_t, int32_t, int32_t, int32_t, const WORK*);

OWN_PLANE_ROWS(float)
OWN_PLANE_ROWS(double)
OWN_PLANE_ROWS(int32_t)
