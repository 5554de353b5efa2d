// SPDX-License-Identifier: BSD-2-Clause
// Conversion between depths: every pair, in cache and out of it, on 16 x 16 pixels for the cost of a call, and some
// pairs with other layouts, masks, tiles and turned rows.
#include "benchsupport.h"

namespace {

using Call = void (*)(PxkImage* s, PxkImage* d);

const Call convert = [](PxkImage* s, PxkImage* d) { pxkConvert(s, d); };
const Call scale = [](PxkImage* s, PxkImage* d) { pxkScale(s, d); };
const Call scaleFP = [](PxkImage* s, PxkImage* d) { pxkScaleFP(s, d, 0.0f, 1.0f); };
const Call bitonal = [](PxkImage* s, PxkImage* d) { pxkBitonalToGray(s, d, 17, 100); };

struct Layout {
    const char* name;
    int32_t channels, srcOrder, dstOrder;
    BenchMask mask;
    bool isTurned;
};

const Layout gray = { "", 1, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PIXEL, BenchMask::NONE, false };
const Layout turned = { "/turned", 1, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PIXEL, BenchMask::NONE, true };
const Layout rgb = { "/RGB", 3, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PIXEL, BenchMask::NONE, false };
const Layout toPlanes = { "/RGBtoPlanes", 3, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE, BenchMask::NONE, false };
const Layout toPixels = { "/RGBtoPixels", 3, PXK_DATA_ORDER_PLANE, PXK_DATA_ORDER_PIXEL, BenchMask::NONE, false };
const Layout noise = { "/noise", 1, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PIXEL, BenchMask::NOISE, false };
const Layout ellipse = { "/ellipse", 1, PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PIXEL, BenchMask::ELLIPSE, false };

void run(benchmark::State& state, Call call, int32_t from, int32_t to, const Layout& layout, int32_t side)
{
    const BenchImage s = benchImage(from, side, side, layout.channels, layout.srcOrder);
    const BenchImage d = benchImage(to, side, side, layout.channels, layout.dstOrder, 2);
    const BenchImage mask = benchMask(layout.mask, side, side);
    d->maskROI = mask.get();
    d->origin = layout.isTurned ? 1 : 0;
    benchRun(state, int64_t(side) * side, int64_t(s->imageSize) + d->imageSize, [&] { call(s.get(), d.get()); });
}

void runTiles(benchmark::State& state, Call call, int32_t from, int32_t to, int32_t side)
{
    const BenchTiles s(from, side, side, 256), d(to, side, side, 256);
    const int64_t pixels = int64_t(side) * side;
    benchRun(state, pixels, pixels * ((from & 63) + (to & 63)) / 8, [&] { call(s.get(), d.get()); });
}

void add(const char* name, Call call, int32_t from, int32_t to, const Layout& layout = gray)
{
    const std::string pair =
        std::string(name) + "/" + benchDepthName(from) + "to" + benchDepthName(to) + layout.name + "/";
    for (const int32_t side : { 16, 512, 2048 }) {
        if (side == 16 && layout.name[0] != 0) continue;
        benchmark::RegisterBenchmark((pair + std::to_string(side)).c_str(), run, call, from, to, layout, side);
    }
}

void addPairs()
{
    const int32_t depths[] = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };
    for (const int32_t from : depths) {
        for (const int32_t to : depths) {
            add("convert", convert, from, to);
            if (from != to) add("scale", scale, from, to);
        }
        add("convert", convert, from, PXK_DEPTH_1U);
        add("scaleFP", scaleFP, from, PXK_DEPTH_32F);
        add("scaleFP", scaleFP, PXK_DEPTH_32F, from);
        add("bitonal", bitonal, PXK_DEPTH_1U, from);
    }
    add("convert", convert, PXK_DEPTH_1U, PXK_DEPTH_1U);
}

void addLayouts()
{
    for (const Layout& layout : { turned, rgb, toPlanes, toPixels, noise, ellipse }) {
        add("convert", convert, PXK_DEPTH_8U, PXK_DEPTH_16U, layout);
        add("convert", convert, PXK_DEPTH_16U, PXK_DEPTH_8U, layout);
    }
    for (const Layout& layout : { noise, ellipse }) add("scaleFP", scaleFP, PXK_DEPTH_32F, PXK_DEPTH_8U, layout);
    benchmark::RegisterBenchmark("convert/16Uto8U/2048/tiles256", runTiles, convert, PXK_DEPTH_16U, PXK_DEPTH_8U, 2048);
}

} // namespace

int main(int argc, char** argv)
{
    addPairs();
    addLayouts();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
