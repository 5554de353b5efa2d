/* SPDX-License-Identifier: BSD-2-Clause */
// What the comparisons share: their argument checks, and the way from a relation of two samples to a one-bit image.
#pragma once

#include <limits>

#include "frame/owndepth.h"
#include "frame/ownpixels.h"

// The images of a comparison, of two images or of one with a constant.
struct OwnComparison {
    PxkImage* sources[2];
    int32_t nSources;
    PxkImage* dstImage;
};

// Headers, depths and channels, in the order of the arguments. False: reported.
[[nodiscard]] bool ownGoodComparison(const OwnSite& site, const OwnComparison& images);

// What becomes of nChannels rows of each source, one channel after the other, and last the row of results: bytes of 0
// and 1, or bytes of eight pixels where the sources are one-bit. A further call keeps only what is 1 already.
using OwnCompareRows = OwnFunction<void(uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther)>;

// Behind the checks: joins the channels of the images and walks the work.
void ownRunComparison(const OwnSite& site, const OwnComparison& images, const OwnCompareRows& compareRows);

template <class T, class Test> inline void ownTestRow(const T* a, uint8_t* d, ptrdiff_t n, bool isFurther, Test test)
{
    if (isFurther) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = static_cast<uint8_t>(d[i] & test(a[i]));
    } else {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = static_cast<uint8_t>(test(a[i]));
    }
}

template <class T, class Test>
inline void ownTestRows(const T* a, const T* b, uint8_t* d, ptrdiff_t n, bool isFurther, Test test)
{
    if (isFurther) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = static_cast<uint8_t>(d[i] & test(a[i], b[i]));
    } else {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) d[i] = static_cast<uint8_t>(test(a[i], b[i]));
    }
}

// Stores test(a, b) of the samples of two images.
template <class T, class Test> void ownCompareImages(const OwnSite& site, const OwnComparison& images, Test test)
{
    ownRunComparison(site, images, [test](uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther) {
        for (int32_t c = 0; c < nChannels; ++c) {
            ownTestRows(reinterpret_cast<const T*>(rows[c]), reinterpret_cast<const T*>(rows[nChannels + c]),
                        rows[2 * nChannels], n, isFurther || c > 0, test);
        }
    });
}

// Stores test(a) of the samples of one image.
template <class T, class Test> void ownCompareImage(const OwnSite& site, const OwnComparison& images, Test test)
{
    ownRunComparison(site, images, [test](uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther) {
        for (int32_t c = 0; c < nChannels; ++c) {
            ownTestRow(reinterpret_cast<const T*>(rows[c]), rows[nChannels], n, isFurther || c > 0, test);
        }
    });
}

// A relation of the samples of two images of one depth.
template <class Relation> void ownCompare(const OwnSite& site, const OwnComparison& images, Relation relation)
{
    if (images.sources[0]->depth == PXK_DEPTH_1U) {
        const auto test = [relation](uint8_t a, uint8_t b) { return relation.ofBits(a, b); };
        return ownCompareImages<uint8_t>(site, images, test);
    }
    ownForDepth(images.sources[0]->depth,
                [&](auto tag) { ownCompareImages<typename decltype(tag)::Sample>(site, images, relation); });
}

// A relation of the samples of an integer image with any value, which need not be one of the depth's.
template <class Relation>
void ownCompareWith(const OwnSite& site, const OwnComparison& images, int32_t value, Relation relation)
{
    const int32_t depth = images.sources[0]->depth;
    if (depth == PXK_DEPTH_1U) {
        const uint8_t ofZeros = relation(0, value) ? 0xFF : 0;
        const uint8_t ofOnes = relation(1, value) ? 0xFF : 0;
        const auto test = [ofZeros, ofOnes](uint8_t a) { return (a & ofOnes) | (~a & ofZeros); };
        return ownCompareImage<uint8_t>(site, images, test);
    }
    ownForIntegerDepth(depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const OwnRange range = ownDepthRange(depth);
        if (value < range.low || value > range.high) {
            const bool answer = relation(range.low, value); // the same for all samples
            return ownCompareImage<T>(site, images, [answer](T) { return answer; });
        }
        const T constant = static_cast<T>(value);
        ownCompareImage<T>(site, images, [relation, constant](T a) { return relation(a, constant); });
    });
}

struct OwnIsLess {
    template <class T> bool operator()(T a, T b) const { return a < b; }
    uint8_t ofBits(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(~a & b); }
};

struct OwnIsGreater {
    template <class T> bool operator()(T a, T b) const { return a > b; }
    uint8_t ofBits(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(a & ~b); }
};

struct OwnIsEqual {
    template <class T> bool operator()(T a, T b) const { return a == b; }
    uint8_t ofBits(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(~(a ^ b)); }
};
