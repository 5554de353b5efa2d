// SPDX-License-Identifier: BSD-2-Clause
// A 2048 x 2048 image with a frame of seven pixels, fetched in each border mode, beside memcpy of as many bytes.
// Arguments: border mode, depth, channels; the one-bit image has as many pixels as the others. Both sides take a fresh
// block in each turn.
#include <cstring>

#include <benchmark/benchmark.h>

#include "frame/ownrect.h"

namespace {

constexpr int32_t side = 2048;
constexpr int32_t frameWidth = 7;

PxkImage* makeImage(int32_t depth, int32_t nChannels)
{
    PxkImage* const image = pxkCreateImageHeader(nChannels, 0, depth, "GRAY", "GRAY", PXK_DATA_ORDER_PIXEL, 0, 4, side,
                                                 side, nullptr, nullptr, nullptr, nullptr);
    pxkAllocateImage(image, 1, 0x5A3C);
    return image;
}

void fetchFrame(benchmark::State& state)
{
    PxkImage* const image = makeImage(static_cast<int32_t>(state.range(1)), static_cast<int32_t>(state.range(2)));
    pxkSetBorderMode(image, static_cast<int32_t>(state.range(0)), 15, 1);
    int64_t bytes = 0;
    for (auto _ : state) {
        const OwnFetched fetched =
            ownFetch(image, -frameWidth, -frameWidth, side + 2 * frameWidth, side + 2 * frameWidth);
        benchmark::DoNotOptimize(fetched.block.data);
        benchmark::ClobberMemory();
        bytes += fetched.block.planeStep;
    }
    state.SetBytesProcessed(bytes);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

void copyBlock(benchmark::State& state)
{
    PxkImage* const image = makeImage(static_cast<int32_t>(state.range(1)), static_cast<int32_t>(state.range(2)));
    int64_t bytes = 0;
    for (auto _ : state) {
        const OwnBuffer<uint8_t> block = ownBuffer<uint8_t>(image->imageSize);
        memcpy(block.get(), image->imageData, static_cast<size_t>(image->imageSize));
        benchmark::DoNotOptimize(block.get());
        benchmark::ClobberMemory();
        bytes += image->imageSize;
    }
    state.SetBytesProcessed(bytes);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

void formats(benchmark::internal::Benchmark* bench, bool withModes)
{
    const int64_t depths[][2] = { { PXK_DEPTH_8U, 1 }, { PXK_DEPTH_8U, 3 }, { PXK_DEPTH_16U, 1 }, { PXK_DEPTH_1U, 1 } };
    for (const auto& depth : depths) {
        for (int64_t mode = 0; mode < (withModes ? 4 : 1); ++mode) bench->Args({ mode, depth[0], depth[1] });
    }
}

BENCHMARK(copyBlock)->Apply([](benchmark::internal::Benchmark* bench) { formats(bench, false); });
BENCHMARK(fetchFrame)->Apply([](benchmark::internal::Benchmark* bench) { formats(bench, true); });

// Mirrored all over: the rectangle lies one image further left.
void fetchMirrored(benchmark::State& state)
{
    PxkImage* const image = makeImage(static_cast<int32_t>(state.range(1)), static_cast<int32_t>(state.range(2)));
    pxkSetBorderMode(image, PXK_EDGE_MIRROR, 15, 0);
    int64_t bytes = 0;
    for (auto _ : state) {
        const OwnFetched fetched = ownFetch(image, -side, 0, side, side);
        benchmark::DoNotOptimize(fetched.block.data);
        benchmark::ClobberMemory();
        bytes += fetched.block.planeStep;
    }
    state.SetBytesProcessed(bytes);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

BENCHMARK(fetchMirrored)->Apply([](benchmark::internal::Benchmark* bench) { formats(bench, false); });

} // namespace

BENCHMARK_MAIN();
