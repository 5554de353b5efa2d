#include "reference/window.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "support/cases.h"
#include "support/reports.h"

static const std::vector<int32_t> integerDepths = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S,
                                                    PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };

static Axes filterAxes(std::vector<int32_t> depths, size_t count)
{
    Axes axes;
    axes.depths = std::move(depths);
    axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    axes.masks = { 0, 1, 2, ALL_IMAGES };
    axes.tilings = { 0, 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.count = count;
    return axes;
}

// Source and destination with the same channels, and borders of all modes and constants on the source.
static Scene makeFilterScene(const Case& c, Random& random)
{
    const auto adjust = [&](PictureSpec& spec, size_t) {
        if (c.channels != Channels::COI) return;
        spec.channels = 3;
        spec.roi.coi = spec.roi.coi % 3 + 1;
    };
    const Scene scene = makeScene(c, 2, adjust, false);
    for (size_t k = 0; k < 2; ++k) {
        for (int32_t side = 0; side < 4; ++side) {
            const int32_t constant = random.oneOf({ 0, 1, 100, 255, -7 });
            pxkSetBorderMode(&scene[k].header, random.below(4), 1 << side, constant);
        }
        scene[k].freeze();
    }
    return scene;
}

static WindowShape randomShape(Random& random, int32_t most)
{
    const int32_t nCols = random.oneIn(6) ? random.between(1, 3 * most) : random.between(1, most);
    const int32_t nRows = random.oneIn(6) ? random.between(1, 2 * most) : random.between(1, most);
    return { nCols, nRows, random.below(nCols), random.below(nRows) };
}

// Runs call(source, destination) and compares with result(read, place) at every selected sample.
template <class Call, class Result>
static void expectFilter(const Scene& scene, const Call& call, const Result& result, const Tolerance& tolerance = EXACT)
{
    const Scene want = scene.copy();
    const Scene old = scene.copy();
    const Reader read = borderReader(old[0]);
    modelFilter(want[0], want[1], [&](const Place& at) { return result(read, at); });
    startReports();
    call(scene[0], scene[1]);
    expectNoReports();
    EXPECT_TRUE(sameScene(want, scene, tolerance));
}

// ---- rank filters --------------------------------------------------------------------------------------------------

TEST(RankFilter, matchesModel)
{
    forEachCase(filterAxes(integerDepths, 400), [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        const WindowShape shape = randomShape(random, 7);
        const Rank rank = random.oneOf({ Rank::LARGEST, Rank::SMALLEST, Rank::MIDDLE });
        const auto call = rank == Rank::LARGEST ? pxkMaxFilter
            : rank == Rank::SMALLEST            ? pxkMinFilter
                                                : pxkMedianFilter;
        SCOPED_TRACE(::testing::Message()
                     << "window " << shape.nCols << " x " << shape.nRows << ", rank " << int(rank));
        expectFilter(
            scene,
            [&](PxkImage* src, PxkImage* dst) {
                call(src, dst, shape.nCols, shape.nRows, shape.anchorX, shape.anchorY);
            },
            [&](const Reader& read, const Place& at) { return modelRank(gather(read, shape, at), rank, c.depth); });
    });
}

// The histograms of larger windows, on samples that crowd and on samples that spread, in strips of any width.
TEST(RankFilter, medianOfLargeWindows)
{
    Random random(5);
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S }) {
        for (const WindowShape& shape : { WindowShape { 15, 9, 7, 4 },
                                          { 40, 3, 0, 2 },
                                          { 9, 17, 8, 0 },
                                          { 7, 7, 3, 3 },
                                          { 6, 5, 0, 1 },
                                          { 3, 13, 1, 2 } }) {
            PictureSpec spec(depth, 300, 12, random.oneOf({ 1, 3 }));
            const Scene scene = { { Picture::make(spec, random), Picture::make(spec, random) } };
            if (random.oneIn(2)) fillRange(scene[0], random, 90, 100);
            expectFilter(
                scene,
                [&](PxkImage* src, PxkImage* dst) {
                    pxkMedianFilter(src, dst, shape.nCols, shape.nRows, shape.anchorX, shape.anchorY);
                },
                [&](const Reader& read, const Place& at) {
                    return modelRank(gather(read, shape, at), Rank::MIDDLE, depth);
                });
        }
    }
}

TEST(RankFilter, refusals)
{
    Random random(1);
    const PicturePtr a = Picture::make({ PXK_DEPTH_8U, 9, 5, 3 }, random), b = a->copy();
    const auto refuse = [&](PxkImage* src, PxkImage* dst, WindowShape s, int32_t status, const char* text) {
        startReports();
        pxkMedianFilter(src, dst, s.nCols, s.nRows, s.anchorX, s.anchorY);
        expectReports({ { status, "pxkMedianFilter", text } });
    };
    const WindowShape good = { 3, 3, 1, 1 };
    refuse(nullptr, *b, good, -9, "Incorrect Image");
    refuse(*a, *b, { 3, 3, 3, 1 }, -5, "(anchorX>=nCols)||(anchorX<0)");
    refuse(*a, *b, { 3, 3, 1, -1 }, -5, "(anchorY>=nRows)||(anchorY<0)");
    refuse(*a, *a, good, -5, "(srcImage==dstImage)");
    refuse(*a, *Picture::make({ PXK_DEPTH_8S, 9, 5, 3 }), good, -5, "srcImage->depth!=dstImage->depth");
    const PicturePtr f = Picture::make({ PXK_DEPTH_32F, 9, 5 });
    refuse(*f, *f->copy(), good, -5, "srcImage->depth==32");
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 2 }), good, -5, "srcImage->nChannels!=dstImage->nChannels");
    refuse(*a, *Picture::make(PictureSpec(PXK_DEPTH_8U, 9, 5, 3).withAlpha()), good, -5,
           "srcImage->alphaChannel!=dstImage->alphaChannel");
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 3, PXK_DATA_ORDER_PLANE }), good, -5,
           "srcImage->dataOrder!=dstImage->dataOrder");
    const PicturePtr one = a->copy();
    one->setRegion(0, 0, 9, 5, 2);
    refuse(*a, *one, good, -5, "Number of interset channel input and output Image is not equal.");

    // A stale status stops the filter behind its checks.
    const PicturePtr want = b->copy();
    pxkSetErrStatus(PXK_StsNoMem);
    pxkMaxFilter(*a, *b, 3, 3, 1, 1);
    EXPECT_TRUE(samePicture(*want, *b));
}

// ---- morphology ----------------------------------------------------------------------------------------------------

struct MorphCall {
    void (*call)(PxkImage*, PxkImage*, int32_t);
    std::vector<Rank> passes;
};

static const MorphCall morphCalls[] = { { pxkDilate, { Rank::LARGEST } },
                                        { pxkErode, { Rank::SMALLEST } },
                                        { pxkOpen, { Rank::SMALLEST, Rank::LARGEST } },
                                        { pxkClose, { Rank::LARGEST, Rank::SMALLEST } } };

TEST(Morphology, matchesModel)
{
    Axes axes = filterAxes({ PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U }, 300);
    axes.places = { InPlace::NO, InPlace::FIRST, InPlace::OTHER_HEADER };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        const MorphCall& morph = random.oneOf(morphCalls);
        const int32_t reach = morph.passes.size() == 1 ? random.oneOf({ 1, 2, 3, 9 }) : random.between(1, 2);
        const WindowShape shape = { 2 * reach + 1, 2 * reach + 1, reach, reach };
        SCOPED_TRACE(::testing::Message() << "reach " << reach << ", passes " << morph.passes.size());

        // The ring lies round the common size of the regions, whatever a mask cuts off.
        const Scene unmasked = scene.copy();
        unmasked[0].setMask(nullptr);
        unmasked[1].setMask(nullptr);
        const CommonSize size = commonSize({ &unmasked[0], &unmasked[1] });
        const Window region = windowOf(unmasked[0]);
        const Reader first = ringReader(borderReader(unmasked[0]), region, size, 1);
        const Reader passed = [&](int64_t x, int64_t y, int32_t channel) {
            const Place at = { nullptr, int32_t(x), int32_t(y), channel };
            return modelRank(gather(first, shape, at), morph.passes[0], PXK_DEPTH_8U);
        };
        const Reader second = ringReader(passed, region, size, 0);
        expectFilter(
            scene, [&](PxkImage* src, PxkImage* dst) { morph.call(src, dst, reach); },
            [&](const Reader&, const Place& at) {
                if (morph.passes.size() == 1) return passed(at.x, at.y, at.c);
                return modelRank(gather(second, shape, at), morph.passes[1], PXK_DEPTH_8U);
            });
    });
}

TEST(Morphology, refusals)
{
    Random random(1);
    const PicturePtr a = Picture::make({ PXK_DEPTH_8U, 9, 5, 3 }, random), b = a->copy();
    const auto refuse = [&](PxkImage* src, PxkImage* dst, int32_t n, int32_t status, const char* text) {
        startReports();
        pxkSetErrStatus(PXK_StsNoMem); // cleared on entry
        pxkOpen(src, dst, n);
        expectReports({ { status, "ownMorph", text } });
    };
    refuse(nullptr, *b, 1, -9, "Incorrect Image");
    refuse(*a, *b, 0, -5, "Illegal number of of iterations");
    const PicturePtr s = Picture::make({ PXK_DEPTH_8S, 9, 5 });
    refuse(*s, *s, 1, -5, "Illegal image depth");
    refuse(*a, *Picture::make({ PXK_DEPTH_16U, 9, 5, 3 }), 1, -5, "SRC and DST depth are different");
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 3, PXK_DATA_ORDER_PLANE }), 1, -5,
           "SRC and DST order are different");
    const PicturePtr turned = b->copy();
    turned->header.origin = 1;
    refuse(*a, *turned, 1, -5, "SRC and DST orign are different");
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 2 }), 1, -5, "SRC and DST number of channels are different");
}

// ---- convolution ---------------------------------------------------------------------------------------------------

// Kernels as both sides want them.
struct Kernels {
    std::vector<ModelKernel> models;
    std::vector<PxkConvKernel*> integers;
    std::vector<PxkConvKernelFP*> floats;

    ~Kernels()
    {
        for (PxkConvKernel* kernel : integers) pxkDeleteConvKernel(kernel);
        for (PxkConvKernelFP* kernel : floats) pxkDeleteConvKernelFP(kernel);
    }
    void add(const WindowShape& s, const std::vector<double>& values, int32_t shift, bool isFloat)
    {
        models.push_back({ s, values, shift });
        if (isFloat) {
            const std::vector<float> given(values.begin(), values.end());
            floats.push_back(pxkCreateConvKernelFP(s.nCols, s.nRows, s.anchorX, s.anchorY, given.data()));
        } else {
            const std::vector<int32_t> given(values.begin(), values.end());
            integers.push_back(pxkCreateConvKernel(s.nCols, s.nRows, s.anchorX, s.anchorY, given.data(), shift));
        }
    }
    bool isExact(int32_t depth) const
    {
        return std::all_of(models.begin(), models.end(), [&](const ModelKernel& m) { return modelKind(m, depth) < 2; });
    }
};

static void addRandomKernels(Kernels& kernels, Random& random, bool isFloat, int32_t most)
{
    const int32_t count = random.oneOf({ 1, 1, 1, 2, 3, 10 });
    const int32_t reach = random.oneOf({ 1, 3, 30, most });
    const bool isBox = random.oneIn(5);
    for (int32_t k = 0; k < count; ++k) {
        const WindowShape shape = randomShape(random, count == 1 ? 5 : 3);
        std::vector<double> values;
        for (int32_t i = 0; i < shape.nCols * shape.nRows; ++i) {
            values.push_back(isBox ? reach : random.oneIn(4) ? 0 : random.between(-reach, reach));
        }
        kernels.add(shape, values, isFloat ? 0 : random.oneOf({ 0, 1, 4, 8, 31 }), isFloat);
    }
}

TEST(Convolution, integersMatchModel)
{
    Axes axes = filterAxes({ PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S }, 400);
    axes.places = { InPlace::NO, InPlace::FIRST, InPlace::OTHER_HEADER };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        Kernels kernels;
        addRandomKernels(kernels, random, false, depthBits(c.depth) == 16 ? 200 : 2000);
        const int32_t count = int32_t(kernels.models.size());
        const int32_t method = random.below(5);
        // Several kernels beyond 16 bits are combined in single precision, exact up to 24 bits.
        const bool isSingle = std::any_of(kernels.models.begin(), kernels.models.end(),
                                          [&](const ModelKernel& m) { return modelKind(m, c.depth) > 0; });
        const bool isRounded = isSingle && (count > 1 || method == PXK_CONV_SUMSQ);
        const double step = isRounded && depthBits(c.depth) == 16 ? 1 : 0;
        SCOPED_TRACE(::testing::Message() << count << " kernels, method " << method);
        ASSERT_TRUE(kernels.isExact(c.depth));
        expectFilter(
            scene,
            [&](PxkImage* src, PxkImage* dst) { pxkConvolve2D(src, dst, kernels.integers.data(), count, method); },
            [&](const Reader& read, const Place& at) {
                return modelLimited(modelConvolve(read, kernels.models, method, c.depth, at), c.depth);
            },
            { step });
    });
}

// Sums of single precision come within its rounding; 32-bit samples and wide coefficients take this way.
TEST(Convolution, singlePrecisionMatchesModel)
{
    Axes axes = filterAxes({ PXK_DEPTH_32F, PXK_DEPTH_32S, PXK_DEPTH_16U }, 250);
    axes.places = { InPlace::NO, InPlace::FIRST };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        const bool isFloat = c.depth == PXK_DEPTH_32F;
        const double range = c.depth == PXK_DEPTH_16U ? 65535 : 1e6;
        fillRange(scene[0], random, c.depth == PXK_DEPTH_16U ? 0 : -range, range);
        Kernels kernels;
        addRandomKernels(kernels, random, isFloat, isFloat ? 5 : 40000);
        const int32_t count = int32_t(kernels.models.size());
        const int32_t method = random.oneOf({ PXK_CONV_SUM, PXK_CONV_MAX, PXK_CONV_MIN });
        double terms = 0; // what the rounding errors are a part of
        for (const ModelKernel& kernel : kernels.models) {
            for (const double value : kernel.values) terms += std::fabs(value) * range / std::exp2(kernel.shift);
        }
        SCOPED_TRACE(::testing::Message() << count << " kernels, method " << method);
        expectFilter(
            scene,
            [&](PxkImage* src, PxkImage* dst) {
                if (isFloat) return pxkConvolve2DFP(src, dst, kernels.floats.data(), count, method);
                pxkConvolve2D(src, dst, kernels.integers.data(), count, method);
            },
            [&](const Reader& read, const Place& at) {
                return modelLimited(modelConvolve(read, kernels.models, method, c.depth, at), c.depth);
            },
            { terms * 2e-6 + (isFloat ? 1e-30 : 1.0) });
    });
}

TEST(Convolution, workedNumbers)
{
    const auto convolve = [](int32_t depth, double sample, const std::vector<double>& values, int32_t shift,
                             int32_t method) {
        const PicturePtr a = Picture::make({ depth, 3, 3 }), b = Picture::make({ depth, 3, 3 });
        a->setAll(sample);
        pxkSetBorderMode(*a, PXK_EDGE_CLAMP, 15, 0);
        Kernels kernels;
        const int32_t side = int32_t(std::lround(std::sqrt(double(values.size()))));
        kernels.add({ side, side, side / 2, side / 2 }, values, shift, false);
        startReports();
        pxkConvolve2D(*a, *b, kernels.integers.data(), 1, method);
        return b->value(1, 1);
    };
    EXPECT_EQ(convolve(PXK_DEPTH_8U, 10, { 100 }, 0, 0), 255);
    EXPECT_EQ(convolve(PXK_DEPTH_8S, 1, { -1 }, 1, 0), -1); // to minus infinity
    EXPECT_EQ(convolve(PXK_DEPTH_8U, 1, { -1 }, 1, 0), 0);
    EXPECT_EQ(convolve(PXK_DEPTH_16S, 3, { -7 }, 0, PXK_CONV_SUMSQROOT), 21); // one kernel: the absolute value
    EXPECT_EQ(convolve(PXK_DEPTH_16S, 3, { -7 }, 0, PXK_CONV_SUMSQ), 441);
    EXPECT_EQ(convolve(PXK_DEPTH_16S, 3, { -7 }, 0, 99), -21);
    EXPECT_EQ(convolve(PXK_DEPTH_32S, 16777217, { 1 }, 0, 0), 16777216); // single precision
    EXPECT_EQ(convolve(PXK_DEPTH_32S, 2147483647, { 2 }, 0, 0), 2147483647);
    EXPECT_EQ(convolve(PXK_DEPTH_1U, 1, std::vector<double>(9, 256), 0, 0), 1);
    EXPECT_EQ(convolve(PXK_DEPTH_8U, 200, std::vector<double>(9, 0), 0, 0), 0);
}

TEST(Convolution, kernelsAreGivenBack)
{
    const int32_t values[6] = { 1, -2, 300, 4, 5, -600 };
    PxkConvKernel* const kernel = pxkCreateConvKernel(3, 2, 0, 1, values, 5);
    EXPECT_EQ(kernel->anchorX, 2);
    EXPECT_EQ(kernel->anchorY, 0);
    EXPECT_EQ(kernel->values[0], -600);
    int32_t nCols, nRows, anchorX, anchorY, got[6], shift;
    int8_t gotChars[6];
    startReports();
    pxkGetConvKernel(kernel, &nCols, &nRows, &anchorX, &anchorY, got, &shift);
    EXPECT_TRUE(std::equal(values, values + 6, got));
    EXPECT_EQ((std::vector<int32_t> { nCols, nRows, anchorX, anchorY, shift }),
              (std::vector<int32_t> { 3, 2, 0, 1, 5 }));
    pxkGetConvKernelChar(kernel, &nCols, &nRows, &anchorX, &anchorY, gotChars, &shift);
    EXPECT_EQ(gotChars[2], 300 - 256);
    expectNoReports();
    pxkGetConvKernel(kernel, nullptr, nullptr, nullptr, &anchorY, got, &shift);
    expectReports({ { -5, "pxkGetConvKernel", "nRows==0" }, { -5, "pxkGetConvKernel", "nCols==0" } });
    pxkGetConvKernel(kernel, &nCols, &nRows, &anchorX, &anchorY, got, nullptr);
    expectReports({ { -5, "pxkGetConvKernel", "nShiftR==0" } });
    pxkDeleteConvKernel(kernel);
    pxkDeleteConvKernel(nullptr);
    expectReports({ { -5, "pxkDeleteConvKernel", "kernel==0" } });
    EXPECT_EQ(pxkCreateConvKernel(3, 0, 0, 0, values, 0), nullptr);
    expectReports({ { -5, "pxkCreateConvKernel", "(nRows<=0 || nCols<=0)" } });
    EXPECT_EQ(pxkCreateConvKernelFP(3, 1, 3, 0, nullptr), nullptr);
    expectReports({ { -5, "pxkCreateConvKernelFP", "(values == 0)" } });
    EXPECT_EQ(pxkCreateConvKernel(3, 2, 3, 0, values, 0), nullptr);
    expectReports({ { -5, "pxkCreateConvKernel", "(anchorX<0 ||anchorY<0 ||nRows<=anchorY || nCols<=anchorX)" } });
}

TEST(Convolution, refusals)
{
    const PicturePtr a = Picture::make({ PXK_DEPTH_8U, 9, 5, 3 }), b = a->copy();
    Kernels kernels;
    kernels.add({ 1, 1, 0, 0 }, { 1 }, 0, false);
    kernels.add({ 1, 1, 0, 0 }, { 1 }, 0, true);
    PxkConvKernel* list[2] = { kernels.integers[0], nullptr };
    const auto refuse = [&](PxkImage* src, PxkImage* dst, PxkConvKernel** kernel, int32_t n, int32_t method,
                            int32_t status, const char* text) {
        startReports();
        pxkConvolve2D(src, dst, kernel, n, method);
        expectReports({ { status, "pxkConvolve2D", text } });
    };
    refuse(*a, nullptr, list, 1, 0, -9, "Incorrect Image");
    const PicturePtr outside = a->copy();
    outside->setRegion(9, 0, 3, 3);
    refuse(*outside, *b, list, 1, 0, -11, "Bad ROI offsets");
    refuse(*a, *b, nullptr, 1, 0, -5, "kernel==0");
    refuse(*a, *b, list, 11, 0, -5, "(nKernels<=0 || nKernels>10)");
    refuse(*a, *b, list, 2, 5, -5, "Inadmissible method");
    refuse(*a, *b, list, 2, 4, -5, "kernel[i]==0");
    kernels.integers[0]->anchorX = 1;
    refuse(*a, *b, list, 1, 0, -5, "Bad kernel structure");
    kernels.integers[0]->anchorX = 0;
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 3, PXK_DATA_ORDER_PLANE }), list, 1, 0, -5, "Uncompatible images");
    const PicturePtr f = Picture::make({ PXK_DEPTH_32F, 9, 5 });
    refuse(*f, *f, list, 1, 0, -5, "32F images can be processed only with FP kernel");
    const PicturePtr one = a->copy();
    one->setRegion(0, 0, 9, 5, 2);
    refuse(*a, *one, list, 1, 0, -5, "One of the COI is not defined");
    refuse(*a, *Picture::make({ PXK_DEPTH_8U, 9, 5, 2 }), list, 1, 0, -5, "Uncompatible images");
    startReports();
    pxkConvolve2DFP(*a, *b, kernels.floats.data(), 1, 0);
    expectReports({ { -5, "pxkConvolve2DFP", "FP kernel can be used only for 32F image" } });
    pxkFixedFilter(*a, *b, 11);
    expectReports({ { -5, "pxkFixedFilter", "(filter < 0) || (filter > 10)" } });
    pxkConvolveSep2D(*a, *b, nullptr, nullptr);
    expectReports({ { -5, "pxkConvolveSep2D", "(xKernel == 0) && (yKernel == 0)" } });
    Kernels tall;
    tall.add({ 1, 2, 0, 0 }, { 1, 1 }, 0, false);
    pxkConvolveSep2D(*a, *b, tall.integers[0], nullptr);
    expectReports({ { -5, "pxkConvolveSep2D", "(xKernel->nRows != 1)" } });
    pxkBlur(*Picture::make({ PXK_DEPTH_1U, 9, 5 }), *Picture::make({ PXK_DEPTH_1U, 9, 5 }), 3, 3, 1, 1);
    expectReports({ { -5, "pxkBlur", "srcImage->depth==1" } });
}

// ---- separable convolution, box blur, fixed filters ----------------------------------------------------------------

static double floorShift(double value, int32_t shift)
{
    return std::floor(value / std::exp2(shift));
}

TEST(SeparableConvolution, matchesModel)
{
    Axes axes = filterAxes(integerDepths, 250);
    axes.places = { InPlace::NO, InPlace::FIRST };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        const int32_t reach = random.oneOf({ 1, 6, 100 });
        const auto axis = [&](bool isRow) {
            const int32_t n = random.between(1, 9);
            const int32_t anchor = random.below(n);
            std::vector<double> values;
            for (int32_t i = 0; i < n; ++i) values.push_back(random.between(-reach, reach));
            const WindowShape shape = isRow ? WindowShape { n, 1, anchor, 0 } : WindowShape { 1, n, 0, anchor };
            return ModelKernel { shape, values, random.oneOf({ 0, 3 }) };
        };
        const ModelKernel row = axis(true), column = axis(false);
        const bool hasRow = !random.oneIn(4), hasColumn = !hasRow || !random.oneIn(4);
        Kernels kernels;
        kernels.add(row.shape, row.values, row.shift, false);
        kernels.add(column.shape, column.values, column.shift, false);
        expectFilter(
            scene,
            [&](PxkImage* src, PxkImage* dst) {
                pxkConvolveSep2D(src, dst, hasRow ? kernels.integers[0] : nullptr,
                                 hasColumn ? kernels.integers[1] : nullptr);
            },
            [&](const Reader& read, const Place& at) {
                const Reader passed = [&](int64_t x, int64_t y, int32_t channel) {
                    if (!hasRow) return read(x, y, channel);
                    const Place place = { nullptr, int32_t(x), int32_t(y), channel };
                    return floorShift(modelSum(read, row, place), row.shift);
                };
                const double sum =
                    hasColumn ? floorShift(modelSum(passed, column, at), column.shift) : passed(at.x, at.y, at.c);
                return modelLimited(sum, c.depth);
            });
    });
}

TEST(Blur, matchesModel)
{
    std::vector<int32_t> depths(integerDepths.begin() + 1, integerDepths.end());
    depths.push_back(PXK_DEPTH_32F);
    Axes axes = filterAxes(depths, 300);
    axes.places = { InPlace::NO, InPlace::FIRST };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene scene = makeFilterScene(c, random);
        if (c.depth == PXK_DEPTH_32F) fillRange(scene[0], random, -1000, 1000);
        const WindowShape shape = randomShape(random, 9);
        SCOPED_TRACE(::testing::Message() << "window " << shape.nCols << " x " << shape.nRows);
        const bool isFloat = c.depth == PXK_DEPTH_32F;
        expectFilter(
            scene,
            [&](PxkImage* src, PxkImage* dst) {
                pxkBlur(src, dst, shape.nCols, shape.nRows, shape.anchorX, shape.anchorY);
            },
            [&](const Reader& read, const Place& at) {
                double sum = 0;
                for (const double sample : gather(read, shape, at)) sum += sample;
                const double n = double(shape.nCols) * shape.nRows;
                return isFloat ? sum / n : std::floor((2 * sum + n) / (2 * n));
            },
            isFloat ? Tolerance { 1e-4 } : EXACT);
    });
}

TEST(FixedFilter, isTheConvolutionWithItsCoefficients)
{
    Random random(3);
    const double sobel[] = { -1, 0, 1, -2, 0, 2, -1, 0, 1 };
    const double sharpen[] = { -1, -1, -1, -1, 16, -1, -1, -1, -1 };
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16S, PXK_DEPTH_32F }) {
        const Scene scene = { { Picture::make({ depth, 19, 7, 3 }, random),
                                Picture::make({ depth, 19, 7, 3 }, random) } };
        fillRange(scene[0], random, 0, 200);
        const WindowShape shape = { 3, 3, 1, 1 };
        const auto weighted = [&](const double* values, double divisor) {
            return [=](const Reader& read, const Place& at) {
                const std::vector<double> samples = gather(read, shape, at);
                double sum = 0;
                for (size_t i = 0; i < samples.size(); ++i) sum += values[i] * samples[i];
                return depth == PXK_DEPTH_32F ? sum / divisor : modelLimited(std::floor(sum / divisor), depth);
            };
        };
        const Tolerance tolerance = depth == PXK_DEPTH_32F ? Tolerance { 1e-3 } : EXACT;
        expectFilter(
            scene, [](PxkImage* src, PxkImage* dst) { pxkFixedFilter(src, dst, PXK_FILTER_SOBEL_X_3x3); },
            weighted(sobel, 1), tolerance);
        expectFilter(
            scene, [](PxkImage* src, PxkImage* dst) { pxkFixedFilter(src, dst, PXK_FILTER_SHARPEN_3x3); },
            weighted(sharpen, 8), tolerance);
        // On a flat image gradients give 0, and smoothing and sharpening change nothing.
        scene[0].setAll(77);
        pxkSetBorderMode(scene[0], PXK_EDGE_CLAMP, 15, 0);
        scene[0].freeze();
        for (int32_t filter = 0; filter <= 10; ++filter) {
            const bool isSmooth =
                filter == PXK_FILTER_GAUSS_3x3 || filter == PXK_FILTER_GAUSS_5x5 || filter == PXK_FILTER_SHARPEN_3x3;
            expectFilter(
                scene, [&](PxkImage* src, PxkImage* dst) { pxkFixedFilter(src, dst, filter); },
                [&](const Reader&, const Place&) { return isSmooth ? 77.0 : 0.0; });
        }
    }
}

// ---- all of them ---------------------------------------------------------------------------------------------------

// One infinity and one NaN: samples out of their reach are those of the image without them.
// Rows long enough that they are read where they lie, beside a frame of columns that are not; windows wide enough for
// differences of running sums.
TEST(Filters, longRowsMatchModel)
{
    Random random(11);
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16S }) {
        for (const WindowShape& shape :
             { WindowShape { 3, 3, 1, 2 }, { 9, 12, 8, 3 }, { 70, 2, 30, 0 }, { 1, 8, 0, 7 } }) {
            const PictureSpec spec(depth, 1100, 9, random.oneOf({ 1, 3 }));
            const Scene scene = { { Picture::make(spec, random), Picture::make(spec, random) } };
            for (int32_t side = 0; side < 4; ++side) {
                pxkSetBorderMode(&scene[0].header, random.below(4), 1 << side, 77);
            }
            const auto run = [&](void (*filter)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t, int32_t),
                                 const std::function<double(const std::vector<double>&)>& result) {
                expectFilter(
                    scene.copy(),
                    [&](PxkImage* src, PxkImage* dst) {
                        filter(src, dst, shape.nCols, shape.nRows, shape.anchorX, shape.anchorY);
                    },
                    [&](const Reader& read, const Place& at) { return result(gather(read, shape, at)); });
            };
            run(pxkMaxFilter, [](const std::vector<double>& v) { return *std::max_element(v.begin(), v.end()); });
            run(pxkBlur, [](const std::vector<double>& v) {
                return std::floor(std::accumulate(v.begin(), v.end(), 0.0) / double(v.size()) + 0.5);
            });
        }
    }
}

TEST(Filters, nonFiniteSamplesStayInReach)
{
    Random random(9);
    const PicturePtr plain = Picture::make({ PXK_DEPTH_32F, 40, 30 }, random);
    fillRange(*plain, random, -5, 5);
    pxkSetBorderMode(*plain, PXK_EDGE_CLAMP, 15, 0);
    const PicturePtr struck = plain->copy();
    struck->setNumber(11, 9, 0, std::numeric_limits<double>::infinity());
    struck->setNumber(30, 21, 0, -std::numeric_limits<double>::quiet_NaN());
    Kernels kernels;
    kernels.add({ 5, 3, 2, 1 }, { 1, 2, 3, 2, 1, 4, 5, 6, 5, 4, 1, 2, 3, 2, 1 }, 0, true);
    const auto blur = [](PxkImage* src, PxkImage* dst) { pxkBlur(src, dst, 5, 3, 2, 1); };
    const auto convolve = [&](PxkImage* src, PxkImage* dst) { pxkConvolve2DFP(src, dst, kernels.floats.data(), 1, 0); };
    for (const std::function<void(PxkImage*, PxkImage*)>& call :
         { std::function<void(PxkImage*, PxkImage*)>(blur), std::function<void(PxkImage*, PxkImage*)>(convolve) }) {
        const PicturePtr a = plain->copy(), b = plain->copy();
        call(*plain, *a);
        call(*struck, *b);
        for (int32_t y = 0; y < 30; ++y) {
            for (int32_t x = 0; x < 40; ++x) {
                const bool isInReach =
                    (std::abs(x - 11) <= 2 && std::abs(y - 9) <= 1) || (std::abs(x - 30) <= 2 && std::abs(y - 21) <= 1);
                EXPECT_EQ(isInReach, !std::isfinite(b->number(x, y)));
                EXPECT_TRUE(isInReach || a->bits(x, y, 0) == b->bits(x, y, 0)) << x << " " << y;
                EXPECT_TRUE(!std::isnan(b->number(x, y)) || b->bits(x, y, 0) == 0x7FC00000);
            }
        }
    }
}

// A tile function that refuses its k-th tile, k growing until a call succeeds: the stated status, and nothing written
// beside what the complete call writes.
TEST(Filters, refusedTiles)
{
    Random random(4);
    Kernels kernels;
    kernels.add({ 3, 3, 1, 1 }, std::vector<double>(9, 1), 3, false);
    struct FilterCall {
        const char* name;
        std::function<void(PxkImage*, PxkImage*)> run;
        std::vector<Report> reports;
        int32_t status;
    };
    const FilterCall calls[] = {
        { "convolution",
          [&](PxkImage* s, PxkImage* d) { pxkConvolve2D(s, d, kernels.integers.data(), 1, 0); },
          { { PXK_StsNoMem, "pxkConvolve2D", "Allocation failure" } },
          PXK_StsNoMem },
        { "median", [](PxkImage* s, PxkImage* d) { pxkMedianFilter(s, d, 3, 3, 1, 1); }, {}, PXK_StsOk },
        { "dilation", [](PxkImage* s, PxkImage* d) { pxkDilate(s, d, 1); }, {}, PXK_StsNoMem },
    };
    for (const FilterCall& call : calls) {
        for (size_t side = 0; side < 2; ++side) {
            SCOPED_TRACE(::testing::Message() << call.name << ", image " << side);
            Random fill(8);
            const PictureSpec spec = PictureSpec(PXK_DEPTH_8U, 21, 18).tiled(8, 8);
            const Scene scene = { { Picture::make(spec, fill), Picture::make(spec, fill) } };
            const Scene complete = scene.copy();
            call.run(complete[0], complete[1]);
            bool isDone = false;
            for (int32_t refused = 1; !isDone && !HasFailure(); ++refused) {
                const Scene got = scene.copy();
                got[side].storage->refuseAt = refused;
                startReports();
                call.run(got[0], got[1]);
                isDone = got[side].storage->calls.size() == complete[side].storage->calls.size()
                    && sameSamples(complete[1], got[1]);
                if (isDone) break;
                EXPECT_EQ(recordedReports(), call.reports);
                EXPECT_EQ(pxkGetErrStatus(), call.status);
                for (int32_t y = 0; y < 18; ++y) {
                    for (int32_t x = 0; x < 21; ++x) {
                        const uint32_t bits = got[1].bits(x, y, 0);
                        EXPECT_TRUE(bits == scene[1].bits(x, y, 0) || bits == complete[1].bits(x, y, 0));
                    }
                }
            }
        }
    }
}
