// SPDX-License-Identifier: BSD-2-Clause
// Colour model conversions, gray and colour, colour twists: packed pixels and planes.
#include "benchsupport.h"

namespace {

struct Conversion {
    const char* name;
    void (*call)(PxkImage* src, PxkImage* dst);
    char from[5]; // the words of the headers
    char to[5];
    int32_t fromChannels, toChannels;
    std::vector<int32_t> depths;
};

const std::vector<int32_t> wholeDepths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S };
const std::vector<int32_t> allDepths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S, PXK_DEPTH_32F };
const std::vector<int32_t> twistDepths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
const std::vector<int32_t> floats = { PXK_DEPTH_32F };

// A turn of the colours around gray, with 14 fraction bits; and with weights that don't fit 32-bit sums.
template <int32_t SCALING, int32_t OFFSET> void twist(PxkImage* src, PxkImage* dst)
{
    const double turn[12] = { 0.6, 0.6, -0.2, 3, -0.2, 0.6, 0.6, -2, 0.6, -0.2, 0.6, 1 };
    int32_t data[16] = {};
    for (int32_t k = 0; k < 12; ++k) data[k] = static_cast<int32_t>(turn[k] * (1 << SCALING));
    PxkColorTwist* const record = pxkCreateColorTwist(data, SCALING);
    pxkApplyColorTwist(src, dst, record, OFFSET);
    pxkDeleteColorTwist(record);
}

void twistFP(PxkImage* src, PxkImage* dst)
{
    const float turn[12] = { 0.6f, 0.6f, -0.2f, 0, -0.2f, 0.6f, 0.6f, 0, 0.6f, -0.2f, 0.6f, 0 };
    pxkColorTwistFP(src, dst, turn);
}

void grayToColor(PxkImage* src, PxkImage* dst)
{
    pxkGrayToColor(src, dst, 0.3f, 0.6f, 0.1f);
}

const Conversion conversions[] = {
    { "RGB2HSV", pxkRGB2HSV, "RGB", "HSV", 3, 3, wholeDepths },
    { "HSV2RGB", pxkHSV2RGB, "HSV", "RGB", 3, 3, wholeDepths },
    { "RGB2HLS", pxkRGB2HLS, "RGB", "HLS", 3, 3, wholeDepths },
    { "HLS2RGB", pxkHLS2RGB, "HLS", "RGB", 3, 3, wholeDepths },
    { "RGB2XYZ", pxkRGB2XYZ, "RGB", "XYZ", 3, 3, allDepths },
    { "XYZ2RGB", pxkXYZ2RGB, "XYZ", "RGB", 3, 3, allDepths },
    { "RGB2LUV", pxkRGB2LUV, "RGB", "LUV", 3, 3, floats },
    { "LUV2RGB", pxkLUV2RGB, "LUV", "RGB", 3, 3, floats },
    { "RGB2YUV", pxkRGB2YUV, "RGB", "YUV", 3, 3, allDepths },
    { "YUV2RGB", pxkYUV2RGB, "YUV", "RGB", 3, 3, allDepths },
    { "RGB2YCrCb", pxkRGB2YCrCb, "RGB", "YCr", 3, 3, allDepths },
    { "YCrCb2RGB", pxkYCrCb2RGB, "YCr", "RGB", 3, 3, allDepths },
    { "YCC2RGB", pxkYCC2RGB, "YCC", "RGB", 3, 3, { PXK_DEPTH_8U } },
    { "ColorToGray", pxkColorToGray, "RGB", "GRAY", 3, 1, wholeDepths },
    { "GrayToColor", grayToColor, "GRAY", "RGB", 1, 3, wholeDepths },
    { "twist", twist<14, 0>, "RGB", "RGB", 3, 3, twistDepths },
    { "twist-offset", twist<14, 10>, "RGB", "RGB", 3, 3, twistDepths },
    { "twist-wide", twist<29, 0>, "RGB", "RGB", 3, 3, { PXK_DEPTH_8U } },
    { "twistFP", twistFP, "RGB", "RGB", 3, 3, floats },
};

void name(PxkImage* image, const char (&word)[5])
{
    memcpy(image->colorModel, word, 4);
    memcpy(image->channelSeq, word, 4);
}

void runConversion(benchmark::State& state, const Conversion& of, int32_t depth, int32_t order, int32_t side)
{
    const BenchImage src = benchImage(depth, side, side, of.fromChannels, order);
    const BenchImage dst = benchImage(depth, side, side, of.toChannels, order);
    name(src.get(), of.from);
    name(dst.get(), of.to);
    if (of.to[0] == 'G' && depth == PXK_DEPTH_32S) dst->depth = PXK_DEPTH_8U; // in a part of its rows
    benchRun(state, int64_t(side) * side, int64_t(src->imageSize) + dst->imageSize,
             [&] { of.call(src.get(), dst.get()); });
}

void addConversions()
{
    for (const Conversion& of : conversions) {
        for (const int32_t depth : of.depths) {
            for (const int32_t order : { PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE }) {
                for (const int32_t side : { 512, 2048 }) {
                    const std::string title = std::string(of.name) + "/" + benchDepthName(depth)
                        + (order == PXK_DATA_ORDER_PIXEL ? "/packed/" : "/planes/") + std::to_string(side);
                    benchmark::RegisterBenchmark(title.c_str(), runConversion, of, depth, order, side);
                }
            }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    addConversions();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
