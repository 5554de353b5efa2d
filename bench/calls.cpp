// SPDX-License-Identifier: BSD-2-Clause
// What a call costs before and after its pixels: one operation of each kind on 16 x 16 pixels, beside what as many
// pixels cost at 512 x 512; and on a region that misses its image.
#include "benchsupport.h"

namespace {

struct Operation {
    const char* name;
    int32_t depth, dstDepth, nChannels;
    void (*call)(PxkImage* a, PxkImage* b, PxkImage* d);
};

constexpr int32_t U1 = PXK_DEPTH_1U, U8 = PXK_DEPTH_8U, U16 = PXK_DEPTH_16U, F32 = PXK_DEPTH_32F;
constexpr int32_t linear = PXK_INTER_LINEAR;

void convolve(PxkImage* a, PxkImage*, PxkImage* d)
{
    int32_t values[9] = { 1, 2, 1, 2, 4, 2, 1, 2, 1 };
    PxkConvKernel kernel = {};
    kernel.nCols = kernel.nRows = 3;
    kernel.anchorX = kernel.anchorY = 1;
    kernel.values = values;
    kernel.nShiftR = 4;
    PxkConvKernel* kernels[] = { &kernel };
    pxkConvolve2D(a, d, kernels, 1, PXK_CONV_SUM);
}

void measureMoments(PxkImage* a, PxkImage*, PxkImage*)
{
    PxkMomentState state;
    pxkMoments(a, &state);
}

void toBitmap(PxkImage* a, PxkImage*, PxkImage*)
{
    static std::vector<uint8_t> block(sizeof(PxkBitmapInfoHeader) + 1024 + 512 * 512 * 3);
    PxkBitmapInfoHeader* const header = reinterpret_cast<PxkBitmapInfoHeader*>(block.data());
    *header = {};
    header->biSize = sizeof *header;
    header->biWidth = a->width;
    header->biHeight = a->height;
    header->biPlanes = 1;
    header->biBitCount = 24;
    pxkConvertToDIB(a, header, PXK_DITHER_NONE, 0);
}

const Operation operations[] = {
    { "add", U8, U8, 1, pxkAdd },
    { "addBits", U1, U1, 1, pxkAdd },
    { "addFloats", F32, F32, 1, pxkAdd },
    { "addS", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkAddS(a, d, 5); } },
    { "multiply", U16, U16, 1, pxkMultiply },
    { "greater", U8, U1, 1, pxkGreater },
    { "set", U8, U8, 1, [](PxkImage*, PxkImage*, PxkImage* d) { pxkSet(d, 5); } },
    { "copy", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkCopy(a, d); } },
    { "scale", U8, U16, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkScale(a, d); } },
    { "toBitmap", U8, U8, 1, toBitmap },
    { "reduceBits", U8, U8, 1,
      [](PxkImage* a, PxkImage*, PxkImage* d) { pxkReduceBits(a, d, 0, PXK_DITHER_NONE, 4); } },
    { "convolve3", U8, U8, 1, convolve },
    { "gauss3", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkFixedFilter(a, d, PXK_FILTER_GAUSS_3x3); } },
    { "blur3", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkBlur(a, d, 3, 3, 1, 1); } },
    { "median3", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMedianFilter(a, d, 3, 3, 1, 1); } },
    { "max3", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMaxFilter(a, d, 3, 3, 1, 1); } },
    { "erode", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkErode(a, d, 1); } },
    { "open", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkOpen(a, d, 1); } },
    { "fourier", F32, F32, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkRealFft2D(a, d, PXK_FFT_FORWARD); } },
    { "cosine", F32, F32, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkDCT2D(a, d, PXK_DCT_FORWARD); } },
    { "spectra", F32, F32, 1, pxkMpyRCPack2D },
    { "resize", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkResize(a, d, 9, 8, 9, 8, linear); } },
    { "mirror", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkMirror(a, d, 1); } },
    { "rotate", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkRotate(a, d, 30, 0, 0, linear); } },
    { "toHSV", U8, U8, 3, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkRGB2HSV(a, d); } },
    { "threshold", U8, U8, 1, [](PxkImage* a, PxkImage*, PxkImage* d) { pxkThreshold(a, d, 100); } },
    { "moments", U8, U8, 1, measureMoments },
    { "norm", U8, U8, 1,
      [](PxkImage* a, PxkImage*, PxkImage*) { benchmark::DoNotOptimize(pxkNorm(a, nullptr, PXK_NORM_L2)); } },
};

struct Images {
    Images(const Operation& op, int32_t side)
        : a(benchImage(op.depth, side, side, op.nChannels))
        , b(benchImage(op.depth, side, side, op.nChannels, PXK_DATA_ORDER_PIXEL, 2))
        , d(benchImage(op.dstDepth, side, side, op.nChannels))
        , operation(op)
    {
    }
    void operator()() const { operation.call(a.get(), b.get(), d.get()); }

    BenchImage a, b, d;
    const Operation& operation;
};

// Counters: nanoseconds a call on 16 x 16 pixels and where there is nothing to do, nanoseconds a pixel at 512 x 512,
// and the first as a multiple of what its pixels cost by the last.
void run(benchmark::State& state, const Operation& op)
{
    pxkSetErrMode(PXK_ErrModeSilent);
    const Images large(op, 512), small(op, 16), none(op, 16);
    PxkROI outside = { 0, 16, 0, 16, 16 };
    none.a->roi = none.b->roi = none.d->roi = &outside;
    const double largeSeconds = benchSecondsOf(large), noneSeconds = benchSecondsOf(none);
    pxkSetErrStatus(PXK_StsOk);
    small();
    if (pxkGetErrStatus() != PXK_StsOk) return state.SkipWithError("the call was refused");
    double least = 1;
    for (auto _ : state) {
        constexpr int32_t turns = 1000;
        const double start = benchSeconds();
        for (int32_t i = 0; i < turns; ++i) {
            small();
            benchmark::ClobberMemory();
        }
        least = std::min(least, (benchSeconds() - start) / turns);
    }
    state.counters["ns/call"] = least * 1e9;
    state.counters["ns/none"] = noneSeconds * 1e9;
    state.counters["ns/px512"] = largeSeconds * 1e9 / (512 * 512);
    state.counters["xPixels"] = least / (largeSeconds / 1024);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const Operation& op : operations) {
        benchmark::RegisterBenchmark(op.name, [&](benchmark::State& state) { run(state, op); });
    }
    benchmark::RunSpecifiedBenchmarks();
}
