// SPDX-License-Identifier: BSD-2-Clause
// Copy, set and exchange, in cache and out of it, with and without a mask.
#include "benchsupport.h"

namespace {

struct Operation {
    const char* name;
    int32_t bytesMoved; // read and written, for each byte of a sample
    void (*call)(PxkImage* a, PxkImage* b);
};

void setImage(PxkImage*, PxkImage* b)
{
    if (b->depth == PXK_DEPTH_32F) return pxkSetFP(b, 1.5f);
    pxkSet(b, 77);
}

const Operation operations[] = { { "copy", 2, pxkCopy }, { "set", 1, setImage }, { "exchange", 4, pxkExchange } };

void run(benchmark::State& state, const Operation& op, int32_t depth, int32_t side, BenchMask mask)
{
    const BenchImage a = benchImage(depth, side, side), b = benchImage(depth, side, side);
    const BenchImage maskImage = benchMask(mask, side, side);
    b->maskROI = maskImage.get();
    const int64_t pixels = int64_t(side) * side;
    benchRun(state, pixels, int64_t(a->imageSize) * op.bytesMoved, [&] { op.call(a.get(), b.get()); });
}

// One channel of packed colour, and rows that start at odd pixels.
void runRegion(benchmark::State& state, int32_t nChannels, int32_t coi)
{
    const BenchImage a = benchImage(PXK_DEPTH_8U, 1024, 1024, nChannels),
                     b = benchImage(PXK_DEPTH_8U, 1024, 1024, nChannels);
    PxkROI from = { coi, 3, 1, 1000, 1000 }, to = { coi, 5, 2, 1000, 1000 };
    a->roi = &from;
    b->roi = &to;
    const int64_t samples = 1000000 * (coi > 0 ? 1 : nChannels);
    benchRun(state, 1000000, 2 * samples, [&] { pxkCopy(a.get(), b.get()); });
}

void registerAll()
{
    for (const Operation& op : operations) {
        for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32F }) {
            for (const int32_t side : { 512, 4096 }) {
                for (const BenchMask mask : { BenchMask::NONE, BenchMask::NOISE, BenchMask::ELLIPSE }) {
                    const std::string name = std::string(op.name) + "/" + benchDepthName(depth) + "/"
                        + std::to_string(side) + benchMaskName(mask);
                    benchmark::RegisterBenchmark(name.c_str(),
                                                 [=](benchmark::State& state) { run(state, op, depth, side, mask); });
                }
            }
        }
    }
    benchmark::RegisterBenchmark("copyRegion/8U", [](benchmark::State& state) { runRegion(state, 1, 0); });
    benchmark::RegisterBenchmark("copyRegion/8U/3", [](benchmark::State& state) { runRegion(state, 3, 0); });
    benchmark::RegisterBenchmark("copyRegion/8U/3/coi", [](benchmark::State& state) { runRegion(state, 3, 2); });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
