// SPDX-License-Identifier: BSD-2-Clause
// Fourier transforms, products of packed spectra and cosine transforms: sizes that are powers of two, that have small
// factors, and that have none; float and fixed point.
#include "benchsupport.h"

namespace {

using Transform = void (*)(PxkImage* source, PxkImage* destination, int32_t flags);

struct Case {
    const char* name;
    Transform call;
    int32_t flags;
};

const Case cases[] = {
    { "realFft", pxkRealFft2D, PXK_FFT_FORWARD },
    { "ccsFft", pxkCcsFft2D, PXK_FFT_INVERSE },
    { "dct", pxkDCT2D, PXK_DCT_FORWARD },
    { "inverseDct", pxkDCT2D, PXK_DCT_INVERSE },
};

struct Size {
    int32_t width;
    int32_t height;
};

const Size sizes[] = { { 256, 256 }, { 512, 512 }, { 1024, 1024 }, { 2048, 2048 }, { 1000, 1000 }, { 1021, 1021 },
                       { 640, 480 }, { 97, 101 },  { 1 << 16, 1 }, { 1, 1 << 16 }, { 1 << 16, 8 }, { 8, 1 << 16 } };

void runTransform(benchmark::State& state, const Case& c, int32_t depth, const Size& size)
{
    const BenchImage source = benchImage(depth, size.width, size.height);
    const BenchImage destination = benchImage(PXK_DEPTH_32F, size.width, size.height);
    benchRun(state, int64_t(size.width) * size.height, int64_t(source->imageSize) + destination->imageSize,
             [&] { c.call(source.get(), destination.get(), c.flags); });
}

void runFixed(benchmark::State& state, const Case& c, const Size& size)
{
    const BenchImage source = benchImage(PXK_DEPTH_16S, size.width, size.height);
    const BenchImage destination = benchImage(PXK_DEPTH_32S, size.width, size.height);
    benchRun(state, int64_t(size.width) * size.height, int64_t(source->imageSize) + destination->imageSize,
             [&] { c.call(source.get(), destination.get(), c.flags | PXK_FFT_USE_INT); });
}

// Blocks of 8 by 8 one after the other, as a codec takes them: the price of a call.
void runBlocks(benchmark::State& state, const Case& c)
{
    const int32_t side = 512;
    const BenchImage source = benchImage(PXK_DEPTH_32F, side, side),
                     destination = benchImage(PXK_DEPTH_32F, side, side);
    PxkROI region = { 0, 0, 0, 8, 8 };
    source->roi = destination->roi = &region;
    benchRun(state, int64_t(side) * side, int64_t(source->imageSize) * 2, [&] {
        for (region.yOffset = 0; region.yOffset < side; region.yOffset += 8)
            for (region.xOffset = 0; region.xOffset < side; region.xOffset += 8)
                c.call(source.get(), destination.get(), c.flags);
    });
}

void runProduct(benchmark::State& state, int32_t depth, int32_t side)
{
    const BenchImage a = benchImage(depth, side, side), b = benchImage(depth, side, side),
                     d = benchImage(depth, side, side);
    benchRun(state, int64_t(side) * side, int64_t(a->imageSize) * 3,
             [&] { pxkMpyRCPack2D(a.get(), b.get(), d.get()); });
}

std::string sizeName(const Size& size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

void registerAll()
{
    for (const Case& c : cases) {
        for (const Size& size : sizes) {
            benchmark::RegisterBenchmark((std::string(c.name) + "/32F/" + sizeName(size)).c_str(),
                                         [=](benchmark::State& state) { runTransform(state, c, PXK_DEPTH_32F, size); });
        }
        benchmark::RegisterBenchmark((std::string(c.name) + "/8U/512x512").c_str(),
                                     [=](benchmark::State& state) { runTransform(state, c, PXK_DEPTH_8U, sizes[1]); });
        if (c.call == pxkDCT2D) {
            benchmark::RegisterBenchmark((std::string(c.name) + "/32F/blocks8x8").c_str(),
                                         [=](benchmark::State& state) { runBlocks(state, c); });
        } else {
            benchmark::RegisterBenchmark((std::string(c.name) + "/fixed/512x512").c_str(),
                                         [=](benchmark::State& state) { runFixed(state, c, sizes[1]); });
            benchmark::RegisterBenchmark((std::string(c.name) + "/fixed/97x101").c_str(),
                                         [=](benchmark::State& state) { runFixed(state, c, sizes[7]); });
        }
    }
    for (const int32_t depth : { PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F }) {
        benchmark::RegisterBenchmark((std::string("product/") + benchDepthName(depth) + "/512x512").c_str(),
                                     [=](benchmark::State& state) { runProduct(state, depth, 512); });
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
