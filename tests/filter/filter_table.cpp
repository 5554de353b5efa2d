// SPDX-License-Identifier: BSD-2-Clause
// Filters that look at a neighbourhood: rank filters, morphology, convolution and blur.
#include "reference/window.h"
#include "support/operations.h"

namespace {

const std::vector<int32_t> integerDepths = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S,
                                             PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };
const std::vector<InPlace> inPlace = { InPlace::NO, InPlace::NO, InPlace::FIRST, InPlace::OTHER_HEADER };

// Source and destination with the same channels, and borders of all modes and constants on the source.
Scene filterScene(const Case& c, bool isConstantLimited = true)
{
    Random random(c.seed + 3);
    const Scene scene = makeScene(
        c, 2,
        [&](PictureSpec& spec, size_t) {
            if (c.channels != Channels::COI) return;
            spec.channels = 3;
            spec.roi.coi = spec.roi.coi % 3 + 1;
        },
        false);
    for (int32_t side = 0; side < 4; ++side) {
        const int32_t constant = random.oneOf({ 0, 1, 100, 255, -7, 300, 70000 });
        for (const PicturePtr& image : scene.images) {
            pxkSetBorderMode(&image->header, random.below(4), 1 << side, constant);
            if (!isConstantLimited) image->header.borderConst[side] = constant;
        }
    }
    if (isFloatDepth(c.depth) || c.depth == PXK_DEPTH_32S) fillRange(scene[0], random, -1e6, 1e6);
    if (random.oneIn(12) && depthBits(c.depth) <= 16) {
        scene[0].setAll(double(random.oneIn(2) ? depthMax(c.depth) : depthMin(c.depth)));
    }
    for (const PicturePtr& image : scene.images) image->freeze();
    return scene;
}

Operation filterOperation(const std::string& name, std::function<void(const Arguments&)> call,
                          std::function<void(const Scene&, const Numbers&, const Scene&)> model)
{
    Operation op(name, { "srcImage", "dstImage" }, call, model);
    op.scene = [](const Case& c) { return filterScene(c); };
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    op.axes.masks = { 0, 1, 2, ALL_IMAGES };
    op.axes.tilings = { 0, 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    op.axes.count = 200;
    op.isPointwise = false;
    op.keepsTiles = true;
    return op;
}

// ---- windows of any shape: rank filters and blur -------------------------------------------------------------------

Numbers anyWindow(const Case& c, const Scene&, Random& random)
{
    const int32_t most = c.height > 50 ? 4 : 8;
    const int32_t nCols = random.oneIn(6) ? random.between(1, 3 * most) : random.between(1, most);
    const int32_t nRows = random.oneIn(6) ? random.between(1, 2 * most) : random.between(1, most);
    return { double(nCols), double(nRows), double(random.below(nCols)), double(random.below(nRows)) };
}

// Larger ones, whose histograms take samples that crowd and samples that spread.
Scene crowdedScene(const Case& c)
{
    const Scene scene = filterScene(c);
    Random random(c.seed);
    if (random.oneIn(2)) fillRange(scene[0], random, 90, 100);
    return scene;
}

Numbers largeWindow(const Case&, const Scene&, Random& random)
{
    const int32_t nCols = random.between(9, 40), nRows = random.between(3, 17);
    return { double(nCols), double(nRows), double(random.below(nCols)), double(random.below(nRows)) };
}

using WindowFunction = void (*)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t, int32_t);

// `result` is that of the window's samples.
Operation windowOperation(const std::string& name, WindowFunction function,
                          const std::function<double(const std::vector<double>&, int32_t depth)>& result)
{
    Operation op = filterOperation(
        name, [=](const Arguments& a) { function(a[0], a[1], a.integer(0), a.integer(1), a.integer(2), a.integer(3)); },
        [=](const Scene& s, const Numbers& n, const Scene&) {
            const Scene old = s.copy();
            const Reader read = borderReader(old[0]);
            const WindowShape shape = { int32_t(n[0]), int32_t(n[1]), int32_t(n[2]), int32_t(n[3]) };
            modelFilter(old[0], s[1],
                        [&](const Place& at) { return result(gather(read, shape, at), s[0].spec.depth); });
        });
    op.axes.depths = integerDepths;
    op.numbers = anyWindow;
    op.stale = Stale::STOPS;
    op.refusedTile = op.noMemory = tellsNothing();
    return op;
}

void addWindowRefusals(const std::string& name)
{
    const Numbers good = { 3, 3, 1, 1 };
    const PictureSpec one = RGB.region(0, 0, 9, 4, 2);
    addRefusals(name,
                { { "(anchorX>=nCols)||(anchorX<0)", { RGB, GRAY_8S }, { 3, 3, 3, 3 } },
                  { "(anchorX>=nCols)||(anchorX<0)", { RGB, GRAY_8S }, { 0, 3, 0, 3 } },
                  { "(anchorY>=nRows)||(anchorY<0)", { RGB, GRAY_8S }, { 3, 3, 1, -1 } },
                  { "srcImage->depth!=dstImage->depth", { FLOATS, GRAY_8S }, good },
                  { "srcImage->nChannels!=dstImage->nChannels", { RGB, RGB.of(2) }, good },
                  { "srcImage->alphaChannel!=dstImage->alphaChannel", { RGB, RGB.withAlpha() }, good },
                  { "srcImage->dataOrder!=dstImage->dataOrder", { one, RGB_PLANES }, good },
                  { "Number of interset channel input and output Image is not equal.", { RGB, one }, good } });
}

void addWindows()
{
    const auto rankOf = [](Rank rank) {
        return [=](const std::vector<double>& samples, int32_t depth) { return modelRank(samples, rank, depth); };
    };
    addOperation(windowOperation("pxkMaxFilter", pxkMaxFilter, rankOf(Rank::LARGEST)));
    addOperation(windowOperation("pxkMinFilter", pxkMinFilter, rankOf(Rank::SMALLEST)));
    Operation median = windowOperation("pxkMedianFilter", pxkMedianFilter, rankOf(Rank::MIDDLE));
    median.axes.count = 400;
    addOperation(median);
    median.name += "_large";
    median.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S };
    median.axes.count = 60;
    median.scene = crowdedScene;
    median.numbers = largeWindow;
    addOperation(median);
    Operation blur = windowOperation("pxkBlur", pxkBlur, [](const std::vector<double>& samples, int32_t depth) {
        double sum = 0;
        for (const double sample : samples) sum += sample;
        const double n = double(samples.size());
        return isFloatDepth(depth) ? sum / n : std::floor((2 * sum + n) / (2 * n));
    });
    blur.stale = Stale::RUNS;
    blur.axes.depths.erase(blur.axes.depths.begin());
    blur.axes.depths.push_back(PXK_DEPTH_32F);
    blur.axes.places = inPlace;
    blur.axes.count = 400;
    blur.tolerance = { 0.1 };
    addOperation(blur);
    for (const char* const name : { "pxkMaxFilter", "pxkMinFilter", "pxkMedianFilter", "pxkBlur" }) {
        addWindowRefusals(name);
        if (name != std::string("pxkBlur")) {
            addRefusals(name, { { "srcImage->depth==32", { FLOATS, FLOATS }, { 3, 3, 1, 1 } } });
            addRefusedCalls({ { { PXK_StsBadArg, name, "(srcImage==dstImage)" }, [name] {
                                   const PicturePtr p = Picture::make(GRAY);
                                   operationNamed(name).call({ { *p, *p }, { 3, 3, 1, 1 } });
                               } } });
        }
    }
    addRefusals("pxkBlur", { { "srcImage->depth==1", { BITONAL, BITONAL }, { 3, 3, 1, 1 } } });
}

// ---- morphology ----------------------------------------------------------------------------------------------------

void addMorph(const char* name, void (*function)(PxkImage*, PxkImage*, int32_t), const std::vector<Rank>& passes)
{
    Operation op = filterOperation(
        name, [=](const Arguments& a) { function(a[0], a[1], a.integer(0)); },
        [=](const Scene& s, const Numbers& n, const Scene&) {
            const int32_t reach = int32_t(n[0]);
            const WindowShape shape = { 2 * reach + 1, 2 * reach + 1, reach, reach };
            // The ring lies round the common size of the regions, whatever a mask cuts off.
            const Scene old = s.copy(), unmasked = s.copy();
            unmasked[0].setMask(nullptr);
            unmasked[1].setMask(nullptr);
            const CommonSize size = commonSize({ &unmasked[0], &unmasked[1] });
            const Window region = windowOf(unmasked[0]);
            const Reader first = ringReader(borderReader(unmasked[0]), region, size, 1);
            const Reader passed = [&](int64_t x, int64_t y, int32_t c) {
                return modelRank(gather(first, shape, { nullptr, int32_t(x), int32_t(y), c }), passes[0], PXK_DEPTH_8U);
            };
            const Reader second = ringReader(passed, region, size, 0);
            modelFilter(old[0], s[1], [&](const Place& at) {
                if (passes.size() == 1) return passed(at.x, at.y, at.c);
                return modelRank(gather(second, shape, at), passes[1], PXK_DEPTH_8U);
            });
        });
    op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.axes.places = inPlace;
    op.axes.count = passes.size() == 1 ? 150 : 80;
    op.numbers = [=](const Case& c, const Scene&, Random& random) {
        if (c.height > 0) return Numbers { 1 };
        return Numbers { double(passes.size() == 1 ? random.oneOf({ 1, 2, 3, 9 }) : random.between(1, 2)) };
    };
    op.func = "ownMorph";
    op.stale = Stale::CLEARED;
    op.refusedTile = op.noMemory = tellsNothing(PXK_StsNoMem);
    addOperation(op);
    const PictureSpec two = RGB.of(2);
    addRefusals(name,
                { { "Illegal number of of iterations", { GRAY_8S, RGB_16U }, { 0 } },
                  { "Illegal image depth", { GRAY_8S, RGB_16U }, { 1 } },
                  { "SRC and DST depth are different", { RGB_PLANES, RGB_16U }, { 1 } },
                  { "SRC and DST order are different", { RGB, RGB_PLANES }, { 1 } },
                  { "SRC and DST orign are different", { RGB, two }, { 1 }, turned(1) },
                  { "SRC and DST number of channels are different", { RGB, two }, { 1 } } });
}

// ---- convolution ---------------------------------------------------------------------------------------------------

// Kernels as both sides want them.
struct Kernels {
    std::vector<ModelKernel> models;
    std::vector<PxkConvKernel*> integers;
    std::vector<PxkConvKernelFP*> floats;
    bool has[2] = { true, true }; // of a row and a column

    Kernels() = default;
    Kernels(const Kernels&) = delete;
    ~Kernels()
    {
        for (PxkConvKernel* kernel : integers) pxkDeleteConvKernel(kernel);
        for (PxkConvKernelFP* kernel : floats) pxkDeleteConvKernelFP(kernel);
    }
    // Coefficients of 8 bits go through the form that takes bytes. What is given back is what was given.
    void add(const WindowShape& s, const std::vector<double>& values, int32_t shift, bool isFloat)
    {
        models.push_back({ s, values, shift });
        const auto create = [&](auto function, auto get, auto type, auto... shifts) {
            const std::vector<decltype(type)> given(values.begin(), values.end());
            auto* const kernel = function(s.nCols, s.nRows, s.anchorX, s.anchorY, given.data(), shifts...);
            std::vector<decltype(type)> back(given.size());
            WindowShape shape;
            get(kernel, &shape.nCols, &shape.nRows, &shape.anchorX, &shape.anchorY, back.data(), &shifts...);
            EXPECT_TRUE(back == given && ((shifts == shift) && ...));
            EXPECT_TRUE(shape.nCols == s.nCols && shape.nRows == s.nRows && shape.anchorX == s.anchorX
                        && shape.anchorY == s.anchorY);
            return kernel;
        };
        const bool areBytes =
            std::all_of(values.begin(), values.end(), [](double value) { return value >= -128 && value <= 127; });
        if (isFloat) {
            floats.push_back(create(pxkCreateConvKernelFP, pxkGetConvKernelFP, 0.0f));
        } else if (areBytes) {
            integers.push_back(create(pxkCreateConvKernelChar, pxkGetConvKernelChar, int8_t(0), shift));
        } else {
            integers.push_back(create(pxkCreateConvKernel, pxkGetConvKernel, int32_t(0), shift));
        }
    }
};

// Those that `make` makes from a seed for a depth. The last ones are kept: they are no part of the call.
template <class Make> const Kernels& keptKernels(double seed, int32_t depth, const Make& make)
{
    static std::pair<double, int32_t> key;
    static std::unique_ptr<Kernels> last;
    if (last != nullptr && key == std::make_pair(seed, depth)) return *last;
    key = { seed, depth };
    last = std::make_unique<Kernels>();
    Random random(static_cast<uint64_t>(seed));
    const int32_t status = pxkGetErrStatus(); // a failure from before lets no kernel be read
    pxkSetErrStatus(PXK_StsOk);
    make(*last, random);
    pxkSetErrStatus(status);
    return *last;
}

// Coefficients by chance, all alike, or such that the largest sum lies at a bound of the integers that hold sums.
std::vector<double> anyCoefficients(size_t count, int32_t depth, Random& random)
{
    std::vector<double> values;
    const int32_t reach = random.oneOf({ 1, 3, 30, 2000, 40000 }), style = random.below(4);
    for (size_t i = 0; i < count; ++i) {
        values.push_back(style == 0 ? reach : random.oneIn(4) ? 0 : random.between(-reach, reach));
    }
    if (style != 1) return values;
    const double bounds[] = { 32767, 65535, 2147483647.0 }, sample = double(depthMax(depth)) + 0.5;
    const double nearest = std::floor(random.oneOf(bounds) / sample), total = nearest + random.between(-1, 1);
    const double part = std::floor(total / double(count));
    std::fill(values.begin(), values.end(), part);
    values[0] += total - part * double(count);
    if (random.oneIn(3)) std::for_each(values.begin(), values.end(), [](double& value) { value = -value; });
    return values;
}

const Kernels& kernelsOf(double seed, int32_t depth)
{
    return keptKernels(seed, depth, [&](Kernels& kernels, Random& random) {
        const bool isFloat = isFloatDepth(depth);
        const int32_t count = random.oneOf({ 1, 1, 1, 2, 3, 10 }), most = count == 1 ? 5 : 3;
        for (int32_t k = 0; k < count; ++k) {
            const int32_t nCols = random.oneIn(8) ? random.between(1, 15) : random.between(1, most);
            const int32_t nRows = random.between(1, most);
            const WindowShape shape = { nCols, nRows, random.below(nCols), random.below(nRows) };
            const auto values = anyCoefficients(size_t(nCols * nRows), isFloat ? PXK_DEPTH_8U : depth, random);
            kernels.add(shape, values, isFloat ? 0 : random.oneOf({ 0, 1, 4, 8, 16, 31 }), isFloat);
        }
    });
}

Operation convolution(const std::string& name, const std::vector<int32_t>& depths,
                      std::function<void(const Arguments&)> call,
                      std::function<Range(const Reader&, const Numbers&, int32_t depth, const Place&)> result)
{
    Operation op = filterOperation(name, std::move(call), [=](const Scene& s, const Numbers& n, const Scene& got) {
        const Scene old = s.copy();
        const int32_t depth = s[0].spec.depth;
        for (int32_t& constant : old[0].header.borderConst) { // constants are limited to the depth
            if (isFloatDepth(depth)) continue;
            constant = int32_t(std::min(std::max<int64_t>(constant, depthMin(depth)), depthMax(depth)));
        }
        const Reader read = borderReader(old[0]);
        modelRangeFilter(old[0], s[1], got[1], [&](const Place& at) { return result(read, n, depth, at); });
    });
    op.scene = [](const Case& c) { return filterScene(c, false); };
    op.axes.depths = depths;
    op.axes.places = inPlace;
    op.axes.count = 400;
    op.missed = Ending({ { PXK_StsBadRoiOffset, op.func, "Bad ROI offsets" } });
    op.refusedTile = op.noMemory = tells(PXK_StsNoMem, "Allocation failure");
    return op;
}

// What all convolutions refuse; `n` are good numbers, `image` and `other` of depths that are taken and are not.
void addImageRefusals(const std::string& name, const Numbers& n, bool isFloat)
{
    const char* const unlike = "Uncompatible images";
    const PictureSpec good = isFloat ? FLOATS : GRAY, three = good.of(3), lone = good.withAlpha();
    addRefusals(name,
                { { unlike, { good, GRAY_16S }, n },
                  { unlike, { three, three.ordered(PXK_DATA_ORDER_PLANE) }, n },
                  { "One of the COI is not defined", { three, three.region(0, 0, 9, 4, 2) }, n },
                  { "No channel to operate", { lone, lone }, n },
                  { unlike, { three, good }, n } });
}

// For integers and for floats.
void addConvolve2D()
{
    for (const bool isFloat : { false, true }) {
        const std::string name = isFloat ? "pxkConvolve2DFP" : "pxkConvolve2D";
        Operation op = convolution(
            name, isFloat ? std::vector<int32_t> { PXK_DEPTH_32F } : integerDepths,
            [=](const Arguments& a) {
                const Kernels& kernels = kernelsOf(a.numbers[0], a.integer(2));
                auto integers = kernels.integers;
                auto floats = kernels.floats;
                const int32_t count = int32_t(kernels.models.size());
                if (!isFloat) pxkConvolve2D(a[0], a[1], integers.data(), count, a.integer(1));
                if (isFloat) pxkConvolve2DFP(a[0], a[1], floats.data(), count, a.integer(1));
            },
            [](const Reader& read, const Numbers& n, int32_t depth, const Place& at) {
                return modelConvolve(read, kernelsOf(n[0], depth).models, int32_t(n[1]), depth, at);
            });
        op.numbers = [](const Case& c, const Scene&, Random& random) {
            return Numbers { double(random.below(INT32_MAX)), double(random.below(5)), double(c.depth) };
        };
        if (!isFloat) op.axes.count = 700;
        addOperation(op);
        addImageRefusals(name, { 1, 0, double(isFloat ? PXK_DEPTH_32F : PXK_DEPTH_8U) }, isFloat);
    }
    addRefusals("pxkConvolve2D",
                { { "32F images can be processed only with FP kernel", { FLOATS, FLOATS }, { 1, 0, PXK_DEPTH_8U } } });
    addRefusals("pxkConvolve2DFP",
                { { "FP kernel can be used only for 32F image", { GRAY, GRAY }, { 1, 0, PXK_DEPTH_32F } } });
}

// A kernel of one row and one of one column, one of which may be absent.
const Kernels& axisKernelsOf(double seed, bool isFloat)
{
    return keptKernels(seed, isFloat, [&](Kernels& axes, Random& random) {
        const int32_t reach = random.oneOf({ 1, 6, 100, 4000 });
        for (const bool isRow : { true, false }) {
            const int32_t n = random.between(1, 9), anchor = random.below(n);
            std::vector<double> values;
            for (int32_t i = 0; i < n; ++i) values.push_back(random.between(-reach, reach));
            const WindowShape shape = isRow ? WindowShape { n, 1, anchor, 0 } : WindowShape { 1, n, 0, anchor };
            axes.add(shape, values, isFloat ? 0 : random.oneOf({ 0, 3, 16 }), isFloat);
        }
        axes.has[0] = !random.oneIn(4);
        axes.has[1] = !axes.has[0] || !random.oneIn(4);
    });
}

Range modelSeparable(const Reader& read, const Numbers& n, int32_t depth, const Place& at)
{
    const Kernels& axes = axisKernelsOf(n[0], isFloatDepth(depth));
    const ModelKernel &row = axes.models[0], &column = axes.models[1];
    const auto sumOf = [&](bool isMagnitude) {
        const Reader passed = [&](int64_t x, int64_t y, int32_t c) {
            if (!axes.has[0]) return isMagnitude ? std::fabs(read(x, y, c)) : read(x, y, c);
            return floorShift(modelSum(read, row, { nullptr, int32_t(x), int32_t(y), c }, isMagnitude), row.shift);
        };
        if (!axes.has[1]) return passed(at.x, at.y, at.c);
        return floorShift(modelSum(passed, column, at, isMagnitude), column.shift);
    };
    if (!isFloatDepth(depth)) return { modelLimited(sumOf(false), depth), modelLimited(sumOf(false), depth) };
    const double sum = sumOf(false), doubt = sumOf(true) * 2e-6 + 1e-30;
    return { sum - doubt, sum + doubt };
}

void addSeparable()
{
    for (const bool isFloat : { false, true }) {
        const std::string name = isFloat ? "pxkConvolveSep2DFP" : "pxkConvolveSep2D";
        Operation op = convolution(
            name, isFloat ? std::vector<int32_t> { PXK_DEPTH_32F } : integerDepths,
            [=](const Arguments& a) {
                const Kernels& axes = axisKernelsOf(a.numbers[0], isFloat);
                const auto call = [&](auto function, const auto& kernels) {
                    function(a[0], a[1], axes.has[0] ? kernels[0] : nullptr, axes.has[1] ? kernels[1] : nullptr);
                };
                if (isFloat) return call(pxkConvolveSep2DFP, axes.floats);
                call(pxkConvolveSep2D, axes.integers);
            },
            modelSeparable);
        op.numbers = [](const Case&, const Scene&, Random& random) {
            return Numbers { double(random.below(INT32_MAX)) };
        };
        addOperation(op);
        addImageRefusals(name, { 1 }, isFloat);
    }
}

// As they stand in the interface, each with its shift; the middle meets the pixel.
const ModelKernel fixedFilters[] = {
    { { 3, 3, 1, 1 }, { -1, 0, 1, -1, 0, 1, -1, 0, 1 } },
    { { 3, 3, 1, 1 }, { -1, -1, -1, 0, 0, 0, 1, 1, 1 } },
    { { 3, 3, 1, 1 }, { -1, 0, 1, -2, 0, 2, -1, 0, 1 } },
    { { 3, 3, 1, 1 }, { -1, -2, -1, 0, 0, 0, 1, 2, 1 } },
    { { 3, 3, 1, 1 }, { 0, 1, 0, 1, -4, 1, 0, 1, 0 } },
    { { 5, 5, 2, 2 }, { 0, 0, 1, 0, 0, 0, 1, 2, 1, 0, 1, 2, -16, 2, 1, 0, 1, 2, 1, 0, 0, 0, 1, 0, 0 } },
    { { 3, 3, 1, 1 }, { 1, 2, 1, 2, 4, 2, 1, 2, 1 }, 4 },
    { { 5, 5, 2, 2 }, { 1, 4, 6, 4, 1, 4, 16, 24, 16, 4, 6, 24, 36, 24, 6, 4, 16, 24, 16, 4, 1, 4, 6, 4, 1 }, 8 },
    { { 3, 3, 1, 1 }, { -1, -1, -1, -1, 8, -1, -1, -1, -1 } },
    { { 5, 5, 2, 2 },
      { -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 24, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1 } },
    { { 3, 3, 1, 1 }, { -1, -1, -1, -1, 16, -1, -1, -1, -1 }, 3 },
};

void addFixed()
{
    std::vector<int32_t> depths = integerDepths;
    depths.push_back(PXK_DEPTH_32F);
    Operation op = convolution(
        "pxkFixedFilter", depths, [](const Arguments& a) { pxkFixedFilter(a[0], a[1], a.integer(0)); },
        [](const Reader& read, const Numbers& n, int32_t depth, const Place& at) {
            ModelKernel kernel = fixedFilters[int32_t(n[0])];
            std::reverse(kernel.values.begin(), kernel.values.end()); // coefficients meet the samples as they stand
            if (isFloatDepth(depth)) {
                for (double& value : kernel.values) value /= std::exp2(kernel.shift);
                kernel.shift = 0;
            }
            return modelConvolve(read, { kernel }, PXK_CONV_SUM, depth, at);
        });
    op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { double(random.below(11)) }; };
    addOperation(op);
    addRefusals("pxkFixedFilter",
                { { "(filter < 0) || (filter > 10)", { GRAY, RGB_PLANES }, { 11 } },
                  { "(filter < 0) || (filter > 10)", { GRAY, RGB_PLANES }, { -1 } } });
    addImageRefusals("pxkFixedFilter", { 0 }, false);
}

// What is not made or given back; each row breaks all later rules, too, as far as it can. 2^30 coefficients are too
// many bytes.
void addKernelRefusals()
{
    static const int32_t one = 1;
    static PxkConvKernel hollow = {};
    const auto add = [](int32_t status, const char* text, const WindowShape& s, bool hasValues = true) {
        addRefusedCalls({ { { status, "pxkCreateConvKernel", text }, [=] {
                               const int32_t* const values = hasValues ? &one : nullptr;
                               EXPECT_EQ(pxkCreateConvKernel(s.nCols, s.nRows, s.anchorX, s.anchorY, values, 0),
                                         nullptr);
                           } } });
    };
    add(-5, "(values == 0)", { 0, 0, -1, -1 }, false);
    for (const WindowShape& s : { WindowShape { 3, 0, -1, -1 }, { -1, 1, -1, -1 } })
        add(-5, "(nRows<=0 || nCols<=0)", s);
    for (const WindowShape& s : { WindowShape { 3, 2, 3, 0 }, { 3, 2, 0, -1 } }) {
        add(-5, "(anchorX<0 ||anchorY<0 ||nRows<=anchorY || nCols<=anchorX)", s);
    }
    for (const int32_t side : { 1 << 15, INT32_MAX }) add(-4, "Allocation failure", { side, side, 0, 0 });
    addRefusedCalls({ { { -5, "pxkDeleteConvKernelFP", "kernel==0" }, [] { pxkDeleteConvKernelFP(nullptr); } },
                      { { -5, "pxkDeleteConvKernel", "kernel->values==0" }, [] { pxkDeleteConvKernel(&hollow); } } });
}

// Kernels that a convolution refuses, with images that it refuses behind them.
void addKernelsThatAreRefused()
{
    static int32_t ones[2] = { 1, 1 };
    static PxkConvKernel good = { 1, 1, 0, 0, ones, 0 }, tall = { 1, 2, 0, 0, ones, 0 }, wide = { 2, 1, 0, 0, ones, 0 };
    static PxkConvKernel bad = { 1, 1, 1, 0, ones, 0 };
    static PxkConvKernel *missing[2] = { &bad, nullptr }, *broken[2] = { &good, &bad };
    const auto add = [](const char* text, PxkConvKernel** kernels, int32_t count, int32_t method) {
        addRefusedCalls({ { { -5, "pxkConvolve2D", text }, [=] {
                               pxkConvolve2D(*Picture::make(GRAY), *Picture::make(RGB_PLANES), kernels, count, method);
                           } } });
    };
    const auto addSep = [](const char* text, PxkConvKernel* row, PxkConvKernel* column) {
        addRefusedCalls({ { { -5, "pxkConvolveSep2D", text },
                            [=] { pxkConvolveSep2D(*Picture::make(GRAY), *Picture::make(GRAY), row, column); } } });
    };
    add("kernel==0", nullptr, 11, 5);
    for (const int32_t count : { 0, -1, 11 }) add("(nKernels<=0 || nKernels>10)", missing, count, 5);
    for (const int32_t method : { 5, -1 }) add("Inadmissible method", missing, 2, method);
    add("kernel[i]==0", missing + 1, 1, 99); // one kernel has no method to be wrong
    add("Bad kernel structure", broken, 2, 4);
    addSep("(xKernel == 0) && (yKernel == 0)", nullptr, nullptr);
    addSep("Bad kernel structure", &tall, &bad);
    addSep("(xKernel->nRows != 1)", &tall, &wide);
    addSep("(yKernel->nCols != 1)", nullptr, &wide);
}

const Rows rows([] {
    addKernelRefusals();
    addKernelsThatAreRefused();
    addWindows();
    addMorph("pxkDilate", pxkDilate, { Rank::LARGEST });
    addMorph("pxkErode", pxkErode, { Rank::SMALLEST });
    addMorph("pxkOpen", pxkOpen, { Rank::SMALLEST, Rank::LARGEST });
    addMorph("pxkClose", pxkClose, { Rank::LARGEST, Rank::SMALLEST });
    addConvolve2D();
    addSeparable();
    addFixed();
});

} // namespace
