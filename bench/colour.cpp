// SPDX-License-Identifier: BSD-2-Clause
// Bit reduction: each dither type on gray, RGB and planes, to one bit (gray), to four bits of 8U, from 16U, with noise,
// and from tiles to tiles.
#include "benchsupport.h"

namespace {

struct Dither {
    const char* name;
    int32_t type;
};

const Dither dithers[] = { { "none", PXK_DITHER_NONE },
                           { "floyd", PXK_DITHER_FS },
                           { "jarvis", PXK_DITHER_JJN },
                           { "stucki", PXK_DITHER_STUCKI },
                           { "ordered", PXK_DITHER_BAYER } };

struct Reduction {
    const char* name;
    int32_t from, to, bitCount;
    int32_t channels, order;
    int32_t jitterType;
};

// What a photograph is to error diffusion: a slope with some noise on it.
void fillLikePhoto(PxkImage* image)
{
    benchFill(image);
    const int32_t rows = image->dataOrder == PXK_DATA_ORDER_PLANE ? image->nChannels * image->height : image->height;
    for (int32_t y = 0; y < rows; ++y) {
        uint8_t* const row = static_cast<uint8_t*>(image->imageData) + static_cast<ptrdiff_t>(y) * image->widthStep;
        const int32_t sampleBytes = (image->depth & 63) / 8;
        for (int32_t i = sampleBytes - 1; i < image->widthStep; i += sampleBytes) {
            row[i] = static_cast<uint8_t>((row[i] >> 4) + (i + y) * 239 / (image->widthStep + rows));
        }
    }
}

void runReduction(benchmark::State& state, const Reduction& reduction, const Dither& dither, int32_t side)
{
    const BenchImage from = benchImage(reduction.from, side, side, reduction.channels, reduction.order);
    const BenchImage to = benchImage(reduction.to, side, side, reduction.channels, reduction.order);
    fillLikePhoto(from.get());
    benchRun(state, int64_t(side) * side, int64_t(from->imageSize) + to->imageSize,
             [&] { pxkReduceBits(from.get(), to.get(), reduction.jitterType, dither.type, reduction.bitCount); });
}

void runTiles(benchmark::State& state, const Dither& dither, int32_t side, int32_t tileSide)
{
    const BenchTiles from(PXK_DEPTH_8U, side, side, tileSide), to(PXK_DEPTH_8U, side, side, tileSide);
    const int64_t pixels = int64_t(side) * side;
    benchRun(state, pixels, 2 * pixels, [&] { pxkReduceBits(from.get(), to.get(), 0, dither.type, 4); });
}

const Reduction reductions[] = {
    { "8U-1U/gray", PXK_DEPTH_8U, PXK_DEPTH_1U, 1, 1, PXK_DATA_ORDER_PIXEL, 0 },
    { "16U-1U/gray", PXK_DEPTH_16U, PXK_DEPTH_1U, 1, 1, PXK_DATA_ORDER_PIXEL, 0 },
    { "8U-4bits/gray", PXK_DEPTH_8U, PXK_DEPTH_8U, 4, 1, PXK_DATA_ORDER_PIXEL, 0 },
    { "8U-4bits/RGB", PXK_DEPTH_8U, PXK_DEPTH_8U, 4, 3, PXK_DATA_ORDER_PIXEL, 0 },
    { "8U-4bits/RGBplanes", PXK_DEPTH_8U, PXK_DEPTH_8U, 4, 3, PXK_DATA_ORDER_PLANE, 0 },
    { "16U-8U/RGB", PXK_DEPTH_16U, PXK_DEPTH_8U, 6, 3, PXK_DATA_ORDER_PIXEL, 0 },
    { "32S-16U/gray", PXK_DEPTH_32S, PXK_DEPTH_16U, 10, 1, PXK_DATA_ORDER_PIXEL, 0 },
    { "16U-8U/gray/jitter", PXK_DEPTH_16U, PXK_DEPTH_8U, 6, 1, PXK_DATA_ORDER_PIXEL, 3 },
};

void addReductions()
{
    for (const Dither& dither : dithers) {
        for (const Reduction& reduction : reductions) {
            for (const int32_t side : { 16, 512, 2048 }) {
                const std::string name =
                    std::string("reduce/") + dither.name + "/" + reduction.name + "/" + std::to_string(side);
                benchmark::RegisterBenchmark(name.c_str(), runReduction, reduction, dither, side);
            }
        }
        const std::string name = std::string("reduce/") + dither.name + "/8U-4bits/tiles/2048";
        benchmark::RegisterBenchmark(name.c_str(), runTiles, dither, 2048, 128);
    }
}

} // namespace

int main(int argc, char** argv)
{
    addReductions();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
