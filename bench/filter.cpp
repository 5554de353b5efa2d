// SPDX-License-Identifier: BSD-2-Clause
// Neighbourhood filters on 512 x 512 and 2048 x 2048 pixels: how time grows with the window.
#include <functional>

#include "benchsupport.h"

namespace {

using Filter = std::function<void(PxkImage*, PxkImage*)>;

void registerFilter(const std::string& name, int32_t depth, int32_t nChannels, const Filter& filter)
{
    for (const int32_t side : { 512, 2048 }) {
        const std::string full =
            name + "/" + benchDepthName(depth) + (nChannels > 1 ? "x3/" : "/") + std::to_string(side);
        benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
            const BenchImage a = benchImage(depth, side, side, nChannels), b = benchImage(depth, side, side, nChannels);
            pxkSetBorderMode(a.get(), PXK_EDGE_CLAMP, 15, 0);
            benchRun(state, int64_t(side) * side, int64_t(a->imageSize) * 2, [&] { filter(a.get(), b.get()); });
        });
    }
}

// Kernels live as long as the program.
template <class Value> std::vector<Value> coefficients(int32_t side, bool isBox)
{
    std::vector<Value> values;
    for (int32_t i = 0; i < side * side; ++i) values.push_back(static_cast<Value>(isBox ? 1 : 1 + i * 7 % 11));
    return values;
}

void registerConvolution(int32_t side, bool isBox)
{
    const std::string name = (isBox ? "convolveBox" : "convolve") + std::to_string(side);
    const int32_t anchor = side / 2;
    PxkConvKernel* const kernel =
        pxkCreateConvKernel(side, side, anchor, anchor, coefficients<int32_t>(side, isBox).data(), 8);
    const Filter integer = [kernel](PxkImage* a, PxkImage* b) {
        PxkConvKernel* list[1] = { kernel };
        pxkConvolve2D(a, b, list, 1, PXK_CONV_SUM);
    };
    registerFilter(name, PXK_DEPTH_8U, 1, integer);
    if (isBox) return;
    registerFilter(name, PXK_DEPTH_8U, 3, integer);
    registerFilter(name, PXK_DEPTH_16S, 1, integer);
    PxkConvKernelFP* const kernelFP =
        pxkCreateConvKernelFP(side, side, anchor, anchor, coefficients<float>(side, false).data());
    registerFilter(name, PXK_DEPTH_32F, 1, [kernelFP](PxkImage* a, PxkImage* b) {
        PxkConvKernelFP* list[1] = { kernelFP };
        pxkConvolve2DFP(a, b, list, 1, PXK_CONV_SUM);
    });
}

void registerAll()
{
    for (const int32_t side : { 3, 5, 15 }) registerConvolution(side, false);
    registerConvolution(15, true);
    for (const int32_t side : { 3, 5, 15, 31, 63 }) {
        const std::string text = std::to_string(side);
        const int32_t anchor = side / 2;
        const Filter median = [=](PxkImage* a, PxkImage* b) { pxkMedianFilter(a, b, side, side, anchor, anchor); };
        const Filter largest = [=](PxkImage* a, PxkImage* b) { pxkMaxFilter(a, b, side, side, anchor, anchor); };
        const Filter blur = [=](PxkImage* a, PxkImage* b) { pxkBlur(a, b, side, side, anchor, anchor); };
        const Filter erode = [=](PxkImage* a, PxkImage* b) { pxkErode(a, b, anchor); };
        if (side <= 15) registerFilter("median" + text, PXK_DEPTH_8U, 1, median);
        if (side <= 5) registerFilter("median" + text, PXK_DEPTH_16U, 1, median);
        if (side <= 5) registerFilter("median" + text, PXK_DEPTH_1U, 1, median);
        registerFilter("max" + text, PXK_DEPTH_8U, 1, largest);
        registerFilter("max" + text, PXK_DEPTH_16U, 1, largest);
        registerFilter("erode" + text, PXK_DEPTH_8U, 1, erode);
        registerFilter("erode" + text, PXK_DEPTH_1U, 1, erode);
        for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32F }) {
            registerFilter("blur" + text, depth, 1, blur);
        }
    }
    registerFilter("gauss5", PXK_DEPTH_8U, 1,
                   [](PxkImage* a, PxkImage* b) { pxkFixedFilter(a, b, PXK_FILTER_GAUSS_5x5); });
    registerFilter("open7", PXK_DEPTH_8U, 1, [](PxkImage* a, PxkImage* b) { pxkOpen(a, b, 3); });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
