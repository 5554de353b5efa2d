// SPDX-License-Identifier: BSD-2-Clause
// Histograms, maps of levels, threshold, moments, norms and extrema: by depth and layout, in cache and out of it, on
// 16 x 16 pixels for the cost of a call, with and without mask, and on tiles. What is only measured moves half of the
// bytes that the same memcpy moves.
#include "benchsupport.h"

#include <numeric>

namespace {

// A table with a bin for each level of a depth.
struct LevelTable {
    explicit LevelTable(int32_t depth)
        : keys((size_t(1) << (depth & 63)) + 1)
        , values(keys.size(), 1)
        , factors(keys.size(), 1)
    {
        std::iota(keys.begin(), keys.end(), 0);
        record = { int32_t(keys.size()), keys.data(), values.data(), factors.data(), 0 };
    }
    std::vector<int32_t> keys, values, factors;
    PxkLUT record;
};

using Call = void (*)(PxkImage* a, PxkImage* b, PxkLUT** tables);

struct Operation {
    const char* name;
    int32_t images;   // that are read or written
    int32_t dstDepth; // of the second image; 0: the first one's
    Call call;
};

void keep(double value)
{
    benchmark::DoNotOptimize(value);
}

const Operation histogram = { "histogram", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT** t) { pxkComputeHisto(a, t); } };
const Operation stretch = { "stretch", 2, 0,
                            [](PxkImage* a, PxkImage* b, PxkLUT** t) { pxkContrastStretch(a, b, t); } };
const Operation equalize = { "equalize", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT** t) {
                                pxkComputeHisto(a, t);
                                pxkHistoEqualize(a, b, t);
                            } };
const Operation threshold = { "threshold", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT**) { pxkThreshold(a, b, 100); } };
const Operation thresholdBits = { "thresholdBits", 2, PXK_DEPTH_1U,
                                  [](PxkImage* a, PxkImage* b, PxkLUT**) { pxkThreshold(a, b, 100); } };
const Operation thresholdBytes = { "thresholdBytes", 2, PXK_DEPTH_8U,
                                   [](PxkImage* a, PxkImage* b, PxkLUT**) { pxkThreshold(a, b, 100); } };
const Operation moments = { "moments", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT**) {
                               PxkMomentState state;
                               pxkMoments(a, &state);
                               benchmark::DoNotOptimize(&state);
                           } };
const Operation norms[] = {
    { "normInf", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT**) { keep(pxkNorm(a, nullptr, PXK_NORM_INF)); } },
    { "normL1", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT**) { keep(pxkNorm(a, nullptr, PXK_NORM_L1)); } },
    { "normL2", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT**) { keep(pxkNorm(a, nullptr, PXK_NORM_L2)); } },
    { "normInfOf2", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT**) { keep(pxkNorm(a, b, PXK_NORM_INF)); } },
    { "normL1Of2", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT**) { keep(pxkNorm(a, b, PXK_NORM_L1)); } },
    { "normL2Of2", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT**) { keep(pxkNorm(a, b, PXK_NORM_L2)); } },
    { "normL2Rel", 2, 0, [](PxkImage* a, PxkImage* b, PxkLUT**) { keep(pxkNorm(a, b, PXK_NORM_L2_REL)); } },
};
const Operation extrema = { "minMax", 1, 0, [](PxkImage* a, PxkImage*, PxkLUT**) {
                               float low, high;
                               pxkMinMaxFP(a, &low, &high);
                               keep(low + high);
                           } };

void run(benchmark::State& state, const Operation& op, int32_t depth, int32_t channels, int32_t side, BenchMask kind)
{
    const BenchImage a = benchImage(depth, side, side, channels);
    const BenchImage b =
        benchImage(op.dstDepth != 0 ? op.dstDepth : depth, side, side, channels, PXK_DATA_ORDER_PIXEL, 2);
    const BenchImage mask = benchMask(kind, side, side);
    a->maskROI = mask.get();
    std::vector<LevelTable> tables(size_t(channels), LevelTable((depth & 63) < 32 ? depth : PXK_DEPTH_1U));
    std::vector<PxkLUT*> pointers;
    for (LevelTable& table : tables) {
        table.record.key = table.keys.data();
        table.record.value = table.values.data();
        table.record.factor = table.factors.data();
        pointers.push_back(&table.record);
    }
    benchRun(state, int64_t(side) * side, int64_t(a->imageSize) + (op.images > 1 ? b->imageSize : 0),
             [&] { op.call(a.get(), b.get(), pointers.data()); });
}

void runTiles(benchmark::State& state, const Operation& op, int32_t side, int32_t tileSide)
{
    const BenchTiles a(PXK_DEPTH_8U, side, side, tileSide), b(PXK_DEPTH_8U, side, side, tileSide);
    LevelTable table(PXK_DEPTH_8U);
    PxkLUT* pointer = &table.record;
    benchRun(state, int64_t(side) * side, int64_t(side) * side * op.images,
             [&] { op.call(a.get(), b.get(), &pointer); });
}

void add(const Operation& op, std::initializer_list<int32_t> depths, int32_t channels = 1)
{
    for (const int32_t depth : depths) {
        for (const int32_t side : { 16, 512, 2048 }) {
            for (const BenchMask mask : { BenchMask::NONE, BenchMask::NOISE, BenchMask::ELLIPSE }) {
                if (mask != BenchMask::NONE && (side != 512 || channels != 1)) continue;
                const std::string name = std::string(op.name) + "/" + benchDepthName(depth)
                    + (channels > 1 ? "/RGB/" : "/") + std::to_string(side) + benchMaskName(mask);
                benchmark::RegisterBenchmark(name.c_str(), run, op, depth, channels, side, mask);
            }
        }
    }
}

void addAll()
{
    add(histogram, { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U });
    add(histogram, { PXK_DEPTH_8U }, 3);
    add(stretch, { PXK_DEPTH_8U, PXK_DEPTH_16U });
    add(stretch, { PXK_DEPTH_8U }, 3);
    add(equalize, { PXK_DEPTH_8U, PXK_DEPTH_16U });
    add(threshold, { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S });
    add(thresholdBits, { PXK_DEPTH_8U, PXK_DEPTH_16S, PXK_DEPTH_32S });
    add(thresholdBytes, { PXK_DEPTH_16U, PXK_DEPTH_32S });
    const auto everyDepth = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                              PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    add(moments, everyDepth);
    for (const Operation& op : norms) add(op, everyDepth);
    for (const Operation& op : norms) add(op, { PXK_DEPTH_8U }, 3);
    add(extrema, { PXK_DEPTH_32F });
    for (const Operation& op : { histogram, threshold, moments, norms[1] }) {
        const std::string name = std::string(op.name) + "/8U/2048/tiles256";
        benchmark::RegisterBenchmark(name.c_str(), runTiles, op, 2048, 256);
    }
}

} // namespace

int main(int argc, char** argv)
{
    addAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
