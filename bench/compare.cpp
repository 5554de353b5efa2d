// SPDX-License-Identifier: BSD-2-Clause
// Comparisons, scaled products and alpha operations: by depth and layout, in cache and out of it, on 16 x 16 pixels for
// the cost of a call, with and without mask, and on tiles.
#include "benchsupport.h"

namespace {

struct Layout {
    const char* name;
    int32_t channels, order;
    bool hasAlpha;
};

const Layout gray = { "", 1, PXK_DATA_ORDER_PIXEL, false };
const Layout rgb = { "/RGB", 3, PXK_DATA_ORDER_PIXEL, false };
const Layout rgbPlanes = { "/RGBplanes", 3, PXK_DATA_ORDER_PLANE, false };
const Layout rgba = { "/RGBA", 4, PXK_DATA_ORDER_PIXEL, true };
const Layout rgbaPlanes = { "/RGBAplanes", 4, PXK_DATA_ORDER_PLANE, true };

BenchImage layoutImage(const Layout& layout, int32_t depth, int32_t side, uint32_t seed = 1)
{
    BenchImage image = benchImage(depth, side, side, layout.channels, layout.order, seed);
    image->alphaChannel = layout.hasAlpha ? layout.channels : 0;
    return image;
}

using Call = void (*)(PxkImage* a, PxkImage* b, PxkImage* d);

// The destination is a one-bit image, or of the sources' depth and layout.
struct Operation {
    const char* name;
    int32_t sources;
    bool toBits;
    Call call;
};

void runWhole(benchmark::State& state, const Operation& op, int32_t depth, const Layout& layout, int32_t side,
              BenchMask maskKind)
{
    const BenchImage a = layoutImage(layout, depth, side), b = layoutImage(layout, depth, side, 2);
    const BenchImage d = op.toBits ? layoutImage(gray, PXK_DEPTH_1U, side) : layoutImage(layout, depth, side, 3);
    const BenchImage mask = benchMask(maskKind, side, side);
    d->maskROI = mask.get();
    // Without a source the destination is read and written.
    const int64_t bytes = int64_t(a->imageSize) * (op.sources == 0 ? 1 : op.sources) + d->imageSize;
    benchRun(state, int64_t(side) * side, bytes, [&] { op.call(a.get(), b.get(), d.get()); });
}

void runTiles(benchmark::State& state, int32_t depth, int32_t side, int32_t tileSide)
{
    const BenchTiles a(depth, side, side, tileSide), b(depth, side, side, tileSide);
    const BenchTiles d(PXK_DEPTH_1U, side, side, tileSide);
    const int64_t pixels = int64_t(side) * side;
    benchRun(state, pixels, pixels * 2 * (depth & 63) / 8 + pixels / 8, [&] { pxkLess(a.get(), b.get(), d.get()); });
}

void add(const Operation& op, int32_t depth, const Layout& layout, bool withMasks = false)
{
    for (const BenchMask mask : { BenchMask::NONE, BenchMask::NOISE, BenchMask::ELLIPSE }) {
        if (mask != BenchMask::NONE && !withMasks) continue;
        for (const int32_t side : { 16, 512, 2048 }) {
            const std::string name = std::string(op.name) + "/" + benchDepthName(depth) + layout.name + "/"
                + std::to_string(side) + benchMaskName(mask);
            benchmark::RegisterBenchmark(name.c_str(), runWhole, op, depth, layout, side, mask);
        }
    }
}

void addComparisons()
{
    const Operation less = { "less", 2, true, pxkLess };
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F }) {
        add(less, depth, gray, true);
    }
    add(less, PXK_DEPTH_8U, rgb);
    add(less, PXK_DEPTH_8U, rgbPlanes);
    const Operation lessS = { "lessS", 1, true, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkLessS(a, d, 100); } };
    add(lessS, PXK_DEPTH_8U, gray);
    add(lessS, PXK_DEPTH_8U, rgb);
    add({ "greaterSFP", 1, true, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkGreaterSFP(a, d, 0.5f); } },
        PXK_DEPTH_32F, gray);
    add({ "equalFPEps", 2, true, [](PxkImage* a, PxkImage* b, PxkImage* d) { pxkEqualFPEps(a, b, d, 0.1f); } },
        PXK_DEPTH_32F, gray);
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_32F }) {
        const std::string name = std::string("less/") + benchDepthName(depth) + "/2048/tiles256";
        benchmark::RegisterBenchmark(name.c_str(), runTiles, depth, 2048, 256);
    }
}

void addScaled()
{
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        add({ "multiplyScale", 2, false, pxkMultiplyScale }, depth, gray, true);
        add({ "multiplySScale", 1, false, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMultiplySScale(a, d, 200); } },
            depth, gray);
    }
    const Operation own = { "preMultiply", 0, false,
                            [](PxkImage*, PxkImage*, PxkImage* d) { pxkPreMultiplyAlpha(d, -1); } };
    const Operation constant = { "preMultiplyConstant", 0, false,
                                 [](PxkImage*, PxkImage*, PxkImage* d) { pxkPreMultiplyAlpha(d, 254); } };
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32F }) {
        for (const Layout& layout : { rgba, rgbaPlanes }) {
            add(own, depth, layout);
            add(constant, depth, layout);
        }
    }
}

template <int32_t TYPE, int32_t PREMULTIPLIED> void addComposition(const char* name)
{
    const Call call = [](PxkImage* a, PxkImage* b, PxkImage* d) { pxkAlphaComposite(a, b, d, TYPE, PREMULTIPLIED); };
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        for (const Layout& layout : { rgba, rgbaPlanes }) add({ name, 2, false, call }, depth, layout);
    }
}

void addCompositions()
{
    addComposition<PXK_COMPOSITE_OVER, 1>("over");
    addComposition<PXK_COMPOSITE_OVER, 0>("overPlain");
    addComposition<PXK_COMPOSITE_IN, 0>("inPlain");
    addComposition<PXK_COMPOSITE_ATOP, 1>("atop");
    addComposition<PXK_COMPOSITE_ATOP, 0>("atopPlain");
    addComposition<PXK_COMPOSITE_XOR, 0>("xorPlain");
    addComposition<PXK_COMPOSITE_PLUS, 1>("plus");
    addComposition<PXK_COMPOSITE_PLUS, 0>("plusPlain");
    const Call constant = [](PxkImage* a, PxkImage* b, PxkImage* d) {
        pxkAlphaCompositeC(a, b, d, PXK_COMPOSITE_OVER, 100, 200, 0);
    };
    add({ "overConstants", 2, false, constant }, PXK_DEPTH_8U, rgb);
}

} // namespace

int main(int argc, char** argv)
{
    addComparisons();
    addScaled();
    addCompositions();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
