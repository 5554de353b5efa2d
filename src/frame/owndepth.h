/* SPDX-License-Identifier: BSD-2-Clause */
// The jump from a depth known at run time to a sample type known at compile time.
#pragma once

#include <type_traits>

#include "pxk/pxk.h"

template <class T> struct OwnSampleTag {
    using Sample = T;
};

// What onSample returns for the tag of the depth's sample type; zero, false or nothing, and not called, for one-bit and
// for what is no depth.
template <class F> inline auto ownForDepth(int32_t depth, F&& onSample) -> decltype(onSample(OwnSampleTag<uint8_t> {}))
{
    switch (depth) {
    case PXK_DEPTH_8U: return onSample(OwnSampleTag<uint8_t> {});
    case PXK_DEPTH_8S: return onSample(OwnSampleTag<int8_t> {});
    case PXK_DEPTH_16U: return onSample(OwnSampleTag<uint16_t> {});
    case PXK_DEPTH_16S: return onSample(OwnSampleTag<int16_t> {});
    case PXK_DEPTH_32S: return onSample(OwnSampleTag<int32_t> {});
    case PXK_DEPTH_32F: return onSample(OwnSampleTag<float> {});
    default: return decltype(onSample(OwnSampleTag<uint8_t> {}))();
    }
}

// The same for integer depths alone.
template <class F>
inline auto ownForIntegerDepth(int32_t depth, F&& onSample) -> decltype(onSample(OwnSampleTag<uint8_t> {}))
{
    return ownForDepth(depth, [&](auto tag) -> decltype(onSample(OwnSampleTag<uint8_t> {})) {
        if constexpr (std::is_integral<typename decltype(tag)::Sample>::value) {
            return onSample(tag);
        } else {
            return decltype(onSample(OwnSampleTag<uint8_t> {}))();
        }
    });
}

// The same for operations on bit patterns, where only the width of a sample counts.
template <class F>
inline auto ownForSampleBytes(int32_t sampleBytes, F&& onSample) -> decltype(onSample(OwnSampleTag<uint8_t> {}))
{
    switch (sampleBytes) {
    case 1: return onSample(OwnSampleTag<uint8_t> {});
    case 2: return onSample(OwnSampleTag<uint16_t> {});
    case 4: return onSample(OwnSampleTag<uint32_t> {});
    default: return decltype(onSample(OwnSampleTag<uint8_t> {}))();
    }
}

inline bool ownIsDepth(int32_t depth)
{
    return depth == PXK_DEPTH_1U || ownForDepth(depth, [](auto) { return true; });
}

inline int32_t ownDepthBits(int32_t depth)
{
    return depth & ~PXK_DEPTH_SIGN;
}

// 0 for one-bit samples, which have no address of their own.
inline int32_t ownSampleBytes(int32_t depth)
{
    return ownDepthBits(depth) / 8;
}

// The ends of an integer depth's range.
struct OwnRange {
    int32_t low;
    int32_t high;
};

inline OwnRange ownDepthRange(int32_t depth)
{
    switch (depth) {
    case PXK_DEPTH_1U: return { 0, 1 };
    case PXK_DEPTH_8U: return { 0, 255 };
    case PXK_DEPTH_8S: return { -128, 127 };
    case PXK_DEPTH_16U: return { 0, 65535 };
    case PXK_DEPTH_16S: return { -32768, 32767 };
    default: return { INT32_MIN, INT32_MAX };
    }
}

inline int32_t ownLimit(int64_t value, OwnRange range)
{
    if (value < range.low) return range.low;
    return value > range.high ? range.high : static_cast<int32_t>(value);
}
