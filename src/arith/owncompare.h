// What the comparisons share: their argument checks, and the way from a relation of two samples to a one-bit image.
#pragma once

#include <limits>

#include "frame/owndepth.h"
#include "frame/ownwork.h"

// Headers, depths and channels, in the order of the arguments; a null srcImageB is no operand. False: reported.
[[nodiscard]] bool ownGoodComparison(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage);
[[nodiscard]] bool ownGoodComparison(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage);

// A row of nChannels channels of each source, one channel after the other, and last the row of results: bytes of 0 and
// 1, or bytes of eight pixels where the sources are one-bit. A further row keeps only what is 1 already.
struct OwnCompareRow {
    void (*call)(const void* self, uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther);
    const void* self;
};

// Behind the checks: joins the channels of the images and walks the work.
void ownRunComparison(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage,
                      const OwnCompareRow& row);
void ownRunComparison(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, const OwnCompareRow& row);

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
template <class T, class Test>
void ownCompareImages(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, Test test)
{
    const auto call = [](const void* self, uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther) {
        for (int32_t c = 0; c < nChannels; ++c) {
            ownTestRows(reinterpret_cast<const T*>(rows[c]), reinterpret_cast<const T*>(rows[nChannels + c]),
                        rows[2 * nChannels], n, isFurther || c > 0, *static_cast<const Test*>(self));
        }
    };
    ownRunComparison(site, srcImageA, srcImageB, dstImage, { call, &test });
}

// Stores test(a) of the samples of one image.
template <class T, class Test>
void ownCompareImage(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, Test test)
{
    const auto call = [](const void* self, uint8_t* const* rows, ptrdiff_t n, int32_t nChannels, bool isFurther) {
        for (int32_t c = 0; c < nChannels; ++c) {
            ownTestRow(reinterpret_cast<const T*>(rows[c]), rows[nChannels], n, isFurther || c > 0,
                       *static_cast<const Test*>(self));
        }
    };
    ownRunComparison(site, srcImage, dstImage, { call, &test });
}

// A relation of the samples of two images of one depth.
template <class Relation>
void ownCompare(const OwnSite& site, PxkImage* srcImageA, PxkImage* srcImageB, PxkImage* dstImage, Relation relation)
{
    const bool isWide = ownForDepth(srcImageA->depth, [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        ownCompareImages<T>(site, srcImageA, srcImageB, dstImage, relation);
    });
    if (isWide) return;
    const auto test = [relation](uint8_t a, uint8_t b) { return relation.ofBits(a, b); };
    ownCompareImages<uint8_t>(site, srcImageA, srcImageB, dstImage, test);
}

// A relation of the samples of an integer image with any value, which need not be one of the depth's.
template <class Relation>
void ownCompareWith(const OwnSite& site, PxkImage* srcImage, PxkImage* dstImage, int32_t value, Relation relation)
{
    const auto onBits = [&] {
        const uint8_t ofZeros = relation(0, value) ? 0xFF : 0;
        const uint8_t ofOnes = relation(1, value) ? 0xFF : 0;
        const auto test = [ofZeros, ofOnes](uint8_t a) { return (a & ofOnes) | (~a & ofZeros); };
        ownCompareImage<uint8_t>(site, srcImage, dstImage, test);
    };
    const auto onSamples = [&](auto tag) {
        using T = typename decltype(tag)::Sample;
        const OwnRange range = ownDepthRange(srcImage->depth);
        if (value < range.low || value > range.high) {
            const bool answer = relation(range.low, value); // the same for all samples
            return ownCompareImage<T>(site, srcImage, dstImage, [answer](T) { return answer; });
        }
        const T constant = static_cast<T>(value);
        ownCompareImage<T>(site, srcImage, dstImage, [relation, constant](T a) { return relation(a, constant); });
    };
    if (!ownForDepth(srcImage->depth, onSamples)) onBits();
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
