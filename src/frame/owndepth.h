// The jump from a depth known at run time to a sample type known at compile time.
#pragma once

#include "pxk/pxk.h"

template <class T> struct OwnSampleTag {
    using Sample = T;
};

// Calls onSample with the tag of the depth's sample type. False: one-bit or no depth at all, nothing called.
template <class F> inline bool ownForDepth(int32_t depth, F&& onSample)
{
    switch (depth) {
    case PXK_DEPTH_8U: onSample(OwnSampleTag<uint8_t> {}); return true;
    case PXK_DEPTH_8S: onSample(OwnSampleTag<int8_t> {}); return true;
    case PXK_DEPTH_16U: onSample(OwnSampleTag<uint16_t> {}); return true;
    case PXK_DEPTH_16S: onSample(OwnSampleTag<int16_t> {}); return true;
    case PXK_DEPTH_32S: onSample(OwnSampleTag<int32_t> {}); return true;
    case PXK_DEPTH_32F: onSample(OwnSampleTag<float> {}); return true;
    default: return false;
    }
}

// The same for operations on bit patterns, where only the width of a sample counts.
template <class F> inline bool ownForSampleBytes(int32_t sampleBytes, F&& onSample)
{
    switch (sampleBytes) {
    case 1: onSample(OwnSampleTag<uint8_t> {}); return true;
    case 2: onSample(OwnSampleTag<uint16_t> {}); return true;
    case 4: onSample(OwnSampleTag<uint32_t> {}); return true;
    default: return false;
    }
}

inline bool ownIsDepth(int32_t depth)
{
    return depth == PXK_DEPTH_1U || ownForDepth(depth, [](auto) {});
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
