// SPDX-License-Identifier: BSD-2-Clause
// Arithmetic and logic of two images, of an image and a constant, and of one image: by depth, in cache and out of it,
// with and without mask; on tiles; one-bit images at unlike bit offsets.
#include "benchsupport.h"

namespace {

// Two sources for the dyadic operations; the others leave the second one alone.
using Call = void (*)(PxkImage* a, PxkImage* b, PxkImage* d);

enum Depths { INTEGERS, FLOATS, ALL };

struct Operation {
    const char* name;
    int32_t sources;
    Depths depths;
    Call call;
};

const Operation operations[] = {
    { "add", 2, ALL, pxkAdd },
    { "subtract", 2, ALL, pxkSubtract },
    { "multiply", 2, ALL, pxkMultiply },
    { "and", 2, INTEGERS, pxkAnd },
    { "or", 2, INTEGERS, pxkOr },
    { "xor", 2, INTEGERS, pxkXor },
    { "addS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAddS(a, d, 77); } },
    { "subtractS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkSubtractS(a, d, 77, 0); } },
    { "subtractFromS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkSubtractS(a, d, 77, 1); } },
    { "fillS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAndS(a, d, 0); } },
    { "copyS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkXorS(a, d, 0); } },
    { "multiplyS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMultiplyS(a, d, 3); } },
    { "andS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAndS(a, d, 0x5A5A5A5B); } },
    { "orS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkOrS(a, d, 0x5A5A5A5B); } },
    { "xorS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkXorS(a, d, 0x5A5A5A5B); } },
    { "lShiftS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkLShiftS(a, d, 3); } },
    { "rShiftS", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkRShiftS(a, d, 3); } },
    { "not", 1, INTEGERS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkNot(a, d); } },
    { "abs", 1, ALL, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAbs(a, d); } },
    { "square", 1, ALL, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkSquare(a, d); } },
    { "addSFP", 1, FLOATS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAddSFP(a, d, 0.25f); } },
    { "subtractSFP", 1, FLOATS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkSubtractSFP(a, d, 0.25f, 0); } },
    { "multiplySFP", 1, FLOATS, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMultiplySFP(a, d, 0.25f); } },
};

const int32_t depths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                           PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };

bool serves(const Operation& op, int32_t depth)
{
    return op.depths == ALL || (op.depths == FLOATS) == (depth == PXK_DEPTH_32F);
}

void runWhole(benchmark::State& state, const Operation& op, int32_t depth, int32_t side, BenchMask maskKind)
{
    const BenchImage a = benchImage(depth, side, side), b = benchImage(depth, side, side, 1, 0, 2);
    const BenchImage d = benchImage(depth, side, side), mask = benchMask(maskKind, side, side);
    d->maskROI = mask.get();
    benchRun(state, int64_t(side) * side, int64_t(d->imageSize) * (op.sources + 1),
             [&] { op.call(a.get(), b.get(), d.get()); });
}

// In pixel order with a channel of interest left alone, and in regions that begin inside the images.
void runRegion(benchmark::State& state, int32_t nChannels, int32_t coi)
{
    const int32_t side = 512;
    const BenchImage a = benchImage(PXK_DEPTH_8U, side, side, nChannels),
                     b = benchImage(PXK_DEPTH_8U, side, side, nChannels);
    const BenchImage d = benchImage(PXK_DEPTH_8U, side, side, nChannels);
    PxkROI regions[] = { { coi, 3, 1, side, side }, { coi, 0, 2, side - 8, side - 8 }, { coi, 5, 5, side, side } };
    a->roi = &regions[0];
    b->roi = &regions[1];
    d->roi = &regions[2];
    const int64_t pixels = int64_t(side - 8) * (side - 8);
    benchRun(state, pixels, pixels * (coi == 0 ? nChannels : 1) * 3, [&] { pxkAdd(a.get(), b.get(), d.get()); });
}

// Beside it the same work in memory: xMemory is the price of the tiles.
void runTiles(benchmark::State& state, int32_t depth, int32_t side, int32_t tileSide)
{
    const BenchTiles a(depth, side, side, tileSide), b(depth, side, side, tileSide), d(depth, side, side, tileSide);
    const BenchImage a2 = benchImage(depth, side, side), b2 = benchImage(depth, side, side);
    const BenchImage d2 = benchImage(depth, side, side);
    const double memorySeconds = benchSecondsOf([&] { pxkAdd(a2.get(), b2.get(), d2.get()); });
    benchRun(state, int64_t(side) * side, int64_t(d2->imageSize) * 3, [&] { pxkAdd(a.get(), b.get(), d.get()); });
    const double tileSeconds = benchSecondsOf([&] { pxkAdd(a.get(), b.get(), d.get()); });
    state.counters["xMemory"] = tileSeconds / memorySeconds;
}

// Regions at the given bit offsets; offsets of 0 are the byte-aligned case.
void runBits(benchmark::State& state, Call call, int32_t side, int32_t offsetA, int32_t offsetB, int32_t offsetD)
{
    const BenchImage a = benchImage(PXK_DEPTH_1U, side + 8, side), b = benchImage(PXK_DEPTH_1U, side + 8, side);
    const BenchImage d = benchImage(PXK_DEPTH_1U, side + 8, side);
    PxkROI regions[] = { { 0, offsetA, 0, side, side }, { 0, offsetB, 0, side, side }, { 0, offsetD, 0, side, side } };
    a->roi = &regions[0];
    b->roi = &regions[1];
    d->roi = &regions[2];
    const int64_t pixels = int64_t(side) * side;
    benchRun(state, pixels, pixels / 8 * 3, [&] { call(a.get(), b.get(), d.get()); });
}

void registerWhole(const Operation& op, int32_t depth, int32_t side)
{
    for (const BenchMask mask : { BenchMask::NONE, BenchMask::NOISE, BenchMask::ELLIPSE }) {
        const std::string name =
            std::string(op.name) + "/" + benchDepthName(depth) + "/" + std::to_string(side) + benchMaskName(mask);
        benchmark::RegisterBenchmark(name.c_str(),
                                     [=](benchmark::State& state) { runWhole(state, op, depth, side, mask); });
    }
}

void registerAll()
{
    for (const Operation& op : operations) {
        for (const int32_t depth : depths) {
            if (!serves(op, depth)) continue;
            registerWhole(op, depth, 512);
            registerWhole(op, depth, 4096);
        }
    }
    benchmark::RegisterBenchmark("addRegion/8U/512/1", [](benchmark::State& state) { runRegion(state, 1, 0); });
    benchmark::RegisterBenchmark("addRegion/8U/512/3", [](benchmark::State& state) { runRegion(state, 3, 0); });
    benchmark::RegisterBenchmark("addRegion/8U/512/3/coi", [](benchmark::State& state) { runRegion(state, 3, 2); });
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16S, PXK_DEPTH_32F }) {
        for (const int32_t side : { 512, 4096 }) {
            for (const int32_t tileSide : { 64, 256 }) {
                const std::string name = std::string("addTiles/") + benchDepthName(depth) + "/" + std::to_string(side)
                    + "/" + std::to_string(tileSide);
                benchmark::RegisterBenchmark(name.c_str(),
                                             [=](benchmark::State& state) { runTiles(state, depth, side, tileSide); });
            }
        }
    }
    for (const int32_t side : { 512, 4096 }) {
        const std::string end = "/" + std::to_string(side);
        const auto registerBits = [&](const char* name, Call call, int32_t a, int32_t b, int32_t d) {
            benchmark::RegisterBenchmark((name + end).c_str(),
                                         [=](benchmark::State& state) { runBits(state, call, side, a, b, d); });
        };
        const auto invert = [](PxkImage* a, PxkImage*, PxkImage* d) { pxkNot(a, d); };
        registerBits("andBits/aligned", pxkAnd, 0, 0, 0);
        registerBits("andBits/equal", pxkAnd, 3, 3, 3);
        registerBits("andBits/unlike", pxkAnd, 3, 6, 1);
        registerBits("notBits/aligned", invert, 0, 0, 0);
        registerBits("notBits/unlike", invert, 3, 0, 6);
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const int64_t side : { 512, 4096 }) benchMemcpySeconds(2 * side * side);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
