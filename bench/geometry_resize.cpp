// SPDX-License-Identifier: BSD-2-Clause
// Changes of scale by each interpolation, on gray and on colour in both data orders, and mirrors.
#include "benchsupport.h"

namespace {

struct Layout {
    const char* name;
    int32_t depth;
    int32_t nChannels;
    int32_t dataOrder;
};

const Layout layouts[] = { { "8U", PXK_DEPTH_8U, 1, PXK_DATA_ORDER_PIXEL },
                           { "RGB", PXK_DEPTH_8U, 3, PXK_DATA_ORDER_PIXEL },
                           { "RGBplanes", PXK_DEPTH_8U, 3, PXK_DATA_ORDER_PLANE },
                           { "16U", PXK_DEPTH_16U, 1, PXK_DATA_ORDER_PIXEL },
                           { "1U", PXK_DEPTH_1U, 1, PXK_DATA_ORDER_PIXEL } };

const char* const interpolations[] = { "nearest", "linear", "cubic", "mean" };

// Pixels are those of the destination, whose sides are given.
void runResize(benchmark::State& state, const Layout& l, int32_t side, int32_t to, int32_t from, int32_t interpolate)
{
    const int32_t sourceSide = side * from / to;
    const BenchImage s = benchImage(l.depth, sourceSide, sourceSide, l.nChannels, l.dataOrder);
    const BenchImage d = benchImage(l.depth, side, side, l.nChannels, l.dataOrder);
    benchRun(state, int64_t(side) * side, int64_t(s->imageSize) + d->imageSize,
             [&] { pxkResize(s.get(), d.get(), to, from, to, from, interpolate); });
}

void runMirror(benchmark::State& state, const Layout& l, int32_t side, int32_t flipAxis, bool isInPlace)
{
    const BenchImage s = benchImage(l.depth, side, side, l.nChannels, l.dataOrder);
    const BenchImage d = benchImage(l.depth, side, side, l.nChannels, l.dataOrder);
    benchRun(state, int64_t(side) * side, int64_t(s->imageSize) * 2,
             [&] { pxkMirror(s.get(), isInPlace ? s.get() : d.get(), flipAxis); });
}

struct Factor {
    const char* name;
    int32_t to;
    int32_t from;
};

void registerLayout(const Layout& l, int32_t side)
{
    const std::string end = std::string("/") + l.name + "/" + std::to_string(side);
    for (const Factor& f : { Factor { "up2", 2, 1 }, Factor { "down2.5", 2, 5 }, Factor { "up1.25", 5, 4 } }) {
        for (int32_t k = 0; k < (l.depth == PXK_DEPTH_1U ? 1 : f.to < f.from ? 4 : 3); ++k) {
            benchmark::RegisterBenchmark((std::string(f.name) + "/" + interpolations[k] + end).c_str(),
                                         [=](benchmark::State& state) { runResize(state, l, side, f.to, f.from, k); });
        }
    }
    for (int32_t flipAxis = -1; flipAxis < 2; ++flipAxis) {
        for (const bool isInPlace : { false, true }) {
            const std::string name = "mirror" + std::to_string(flipAxis) + (isInPlace ? "/inPlace" : "");
            benchmark::RegisterBenchmark(
                (name + end).c_str(), [=](benchmark::State& state) { runMirror(state, l, side, flipAxis, isInPlace); });
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const Layout& l : layouts) {
        for (const int32_t side : { 512, 2048 }) registerLayout(l, side);
    }
    benchmark::RunSpecifiedBenchmarks();
}
