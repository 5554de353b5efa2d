// SPDX-License-Identifier: BSD-2-Clause
// Fourier transforms, products of packed spectra, cosine transforms.
#include "reference/fourier.h"
#include "support/operations.h"

namespace {

// Values in a range where sums keep their accuracy, images in memory without masks.
Scene fourierScene(const Case& given, size_t count, const std::function<void(PictureSpec&, size_t)>& adjust)
{
    Case c = given;
    c.masks = c.tiling = 0;
    c.width = std::min(c.width, 260);
    c.height = std::min(c.height, 40);
    const Scene scene = makeScene(c, count, adjust, false);
    Random random(c.seed);
    for (size_t k = 0; k + 1 < count; ++k) fillRange(scene[k], random, 0, 100);
    return scene;
}

using Change = std::function<Grid<double>(const Grid<double>&, const Numbers&)>;

// A channel of the work, from the window's first pixel on.
Grid<double> planeOf(const Window& window, int32_t c, const CommonSize& size)
{
    Grid<double> plane(int32_t(size.width), int32_t(size.height));
    plane.forEach([&](int32_t x, int32_t y, double& value) { value = window.at(x, y, c).number(); });
    return plane;
}

// What the image can't hold is limited.
void storePlane(const Window& window, int32_t c, Grid<double> plane)
{
    const int32_t depth = window.picture->spec.depth;
    const double low = double(depthMin(depth)), high = double(depthMax(depth));
    plane.forEach([&](int32_t x, int32_t y, double value) {
        const double limited = std::clamp(std::nearbyint(value), low, high);
        window.at(x, y, c).setNumber(isFloatDepth(depth) ? value : limited);
    });
}

void changePlanes(const Scene& s, const Numbers& n, const Change& change)
{
    const Scene old = s.copy();
    const Window from = windowOf(old[0]), to = windowOf(s[1]);
    const CommonSize size = commonSize({ &s[0], &s[1] });
    for (int32_t c = 0; c < from.channels; ++c) storePlane(to, c, change(planeOf(from, c, size), n));
}

Operation transformOperation(const std::string& name, std::function<void(PxkImage*, PxkImage*, int32_t)> call,
                             const Change& change, int32_t toDepth)
{
    Operation op(
        name, { "srcImage", "dstImage" }, [=](const Arguments& a) { call(a[0], a[1], a.integer(0)); },
        [=](const Scene& s, const Numbers& n) { changePlanes(s, n, change); });
    op.scene = [=](const Case& c) {
        return fourierScene(c, 2, [=](PictureSpec& spec, size_t k) { spec.depth = k == 0 ? spec.depth : toDepth; });
    };
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    op.axes.masks = op.axes.tilings = { 0 };
    op.axes.count = 150;
    op.tolerance = { 0.05, 0 };
    op.isPointwise = op.hasMasks = false;
    op.noMemory = tells(PXK_StsNoMem, "No working memory");
    op.refusedTile = nullptr;
    op.nullImage = tells({ { PXK_StsBadArg, "srcImage==0" }, { PXK_StsBadArg, "dstImage==0" } });
    return op;
}

bool isPlus(const Numbers& n)
{
    return (int32_t(n[0]) & PXK_FFT_FORWARD) == 0;
}

bool scalesBy(const Numbers& n)
{
    return isPlus(n) && (int32_t(n[0]) & PXK_FFT_NOSCALE) == 0;
}

Numbers anyFlags(const Case&, const Scene&, Random& random)
{
    return { double(random.oneOf({ 1, 2, 1 | 4, 2 | 4, 1 | 32 })) };
}

using Model = Grid<double> (*)(const Grid<double>&, bool isPlus, bool scales);

void addFourier(const std::string& name, void (*call)(PxkImage*, PxkImage*, int32_t), Model model, Model fixedModel)
{
    const auto change = [](Model how) {
        return [=](const Grid<double>& grid, const Numbers& n) { return how(grid, isPlus(n), scalesBy(n)); };
    };
    Operation op = transformOperation(name, call, change(model), PXK_DEPTH_32F);
    op.numbers = anyFlags;
    addOperation(op);
    // Where one image is 32F the flag of fixed point is not honoured.
    op = transformOperation(name + "_fixed", call, change(fixedModel), PXK_DEPTH_32S);
    op.axes.depths.pop_back();
    op.numbers = [](const Case& c, const Scene& s, Random& random) {
        return Numbers { std::fmod(anyFlags(c, s, random)[0], 8) + 16 };
    };
    op.tolerance = EXACT;
    addOperation(op);
}

void addFourierRefusals(const std::string& name)
{
    const PictureSpec lone = GRAY.withAlpha(), tiles = GRAY.tiled(8, 8), one = RGB.region(0, 0, 9, 4, 2);
    const std::string counts = "(srcImage->nChannels - (srcImage->alphaChannel != 0))",
                      counted = "(dstImage->nChannels - (dstImage->alphaChannel != 0))";
    addRefusals(
        name,
        { { "(flags & 1) == 0 && (flags & 2 ) == 0", { NO_IMAGE, NO_IMAGE }, { 48 } },
          { "(flags & 1) != 0 && (flags & 2 ) != 0", { NO_IMAGE, NO_IMAGE }, { 51 } },
          { "(flags & 32) != 0 && (flags & 16 ) != 0", { NO_IMAGE, NO_IMAGE }, { 49 } },
          { "srcImage->alphaChannel == 1 && srcImage->roi == 0", { lone, NO_IMAGE }, { 1 } },
          { "srcImage->alphaChannel == 1 && srcImage->roi->coi != 1", { lone.region(0, 0, 9, 4), NO_IMAGE }, { 1 } },
          { "srcImage->depth == 1", { BITONAL, NO_IMAGE }, { 1 } },
          { "srcImage->imageData == ((void*)(0))", { tiles, NO_IMAGE }, { 1 } },
          { "dstImage->alphaChannel == 1 && dstImage->roi == 0", { GRAY, lone }, { 1 } },
          { "dstImage->depth == 1", { GRAY, BITONAL }, { 1 } },
          { "dstImage->imageData == ((void*)(0))", { RGB, tiles }, { 1 } },
          { counts + " != " + counted, { RGB, GRAY }, { 1 } },
          { counted + " != (srcImage->roi->coi > 0)", { one, RGB }, { 1 } },
          { counts + " != (dstImage->roi->coi > 0)", { RGB, one }, { 1 } } });
}

// ---- products ------------------------------------------------------------------------------------------------------

void multiplyPlanes(const Scene& s)
{
    const Scene old = s.copy();
    const Window a = windowOf(old[0]), b = windowOf(old[1]), to = windowOf(s[2]);
    const CommonSize size = { a.width, a.height };
    for (int32_t c = 0; c < a.channels; ++c) {
        const bool wraps = depthBits(s[0].spec.depth) < 32;
        storePlane(to, c, modelMultiplySpectra(planeOf(a, c, size), planeOf(b, c, size), wraps));
    }
}

// Regions of one size: at offsets of their own, images larger than they are, channels chosen in different ways.
Scene productScene(const Case& given)
{
    Case c = given;
    c.masks = c.tiling = 0;
    PictureSpec first;
    const Scene scene = makeScene(
        c, 3,
        [&](PictureSpec& spec, size_t k) {
            if (k == 0) {
                spec.roi.width = std::min(spec.roi.width, spec.width - spec.roi.xOffset);
                spec.roi.height = std::min(spec.roi.height, spec.height - spec.roi.yOffset);
                first = spec;
                return;
            }
            const bool isWhole = first.roi.width == 0;
            spec.roi.width = isWhole ? first.width : first.roi.width;
            spec.roi.height = isWhole ? first.height : first.roi.height;
            spec = spec.sized(spec.roi.xOffset + spec.roi.width, spec.roi.yOffset + spec.roi.height);
        },
        false);
    Random random(c.seed);
    const double most = isFloatDepth(c.depth) ? 1 : 65536;
    for (size_t k = 0; k < 2 && depthBits(c.depth) == 32; ++k) fillRange(scene[k], random, -most, most);
    for (const PicturePtr& image : scene.images) image->freeze();
    return scene;
}

void addProducts()
{
    Operation op(
        "pxkMpyRCPack2D", { "srcA", "srcB", "dst" }, [](const Arguments& a) { pxkMpyRCPack2D(a[0], a[1], a[2]); },
        [](const Scene& s, const Numbers&) { multiplyPlanes(s); });
    op.scene = productScene;
    op.axes.depths = { PXK_DEPTH_8S, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    op.axes.masks = op.axes.tilings = { 0 };
    op.axes.places = { InPlace::NO, InPlace::FIRST, InPlace::SECOND, InPlace::ALL };
    op.axes.count = 300;
    op.tolerance = { 5e-7, 0 };
    op.isPointwise = op.hasMasks = op.hasRegions = false;
    op.refusedTile = nullptr;
    addOperation(op);
    const PictureSpec wide = GRAY_8S.sized(10, 4), high = GRAY_8S.sized(9, 5), tiles = GRAY_8S.tiled(8, 8);
    addRefusals("pxkMpyRCPack2D",
                { { "srcA->depth || srcB->depth == 8U||16U||1U", { GRAY_8S, GRAY_16U, wide }, {}, {}, PXK_StsBadDepth },
                  { "(srcA->depth != srcB->depth)", { GRAY_8S, GRAY_16S, GRAY } },
                  { "(srcA->depth != dst->depth)", { GRAY_8S, wide, GRAY } },
                  { "(width_srcA != width_srcB)", { GRAY_8S, wide, high } },
                  { "(height_srcA != height_srcB)", { GRAY_8S, high, wide } },
                  { "(width_srcA != width_dst)", { GRAY_8S, GRAY_8S, wide } },
                  { "(height_srcA != height_dst)", { GRAY_8S, RGB_8S, high } },
                  { "", { GRAY_8S, RGB_8S, tiles }, {}, {}, PXK_StsBadChannels },
                  { "dst->imageData == ((void*)(0))", { GRAY_8S, GRAY_8S, tiles } } });
}

// ---- cosine transform ----------------------------------------------------------------------------------------------

void addCosine()
{
    Operation op = transformOperation(
        "pxkDCT2D", pxkDCT2D,
        [](const Grid<double>& grid, const Numbers& n) { return modelCosine(grid, n[0] == PXK_DCT_FORWARD); },
        PXK_DEPTH_32F);
    op.scene = [](const Case& c) {
        Random random(c.seed);
        const bool isEight = c.width == 0 && random.oneIn(5);
        return fourierScene(c, 2, [&](PictureSpec& spec, size_t k) {
            spec.depth = k == 0 ? spec.depth : PXK_DEPTH_32F;
            spec.roi.coi = 0;
            if (spec.roi.width == 0) return;
            if (isEight) spec.roi.width = spec.roi.height = 8;
            spec.width = std::max(spec.width, spec.roi.xOffset + spec.roi.width);
            spec.height = std::max(spec.height, spec.roi.yOffset + spec.roi.height);
        });
    };
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA };
    op.axes.regions = { Region::WHOLE, Region::INNER };
    op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { double(random.between(1, 2)) }; };
    op.hasRegions = false; // one that leaves its image is refused
    op.stale = Stale::STOPS;
    op.badHeader = nullptr;
    op.nullImage = tells({ { PXK_StsBadArg, "src==0" }, { PXK_StsBadArg, "dst==0" } });
    op.noMemory = tellsNothing();
    addOperation(op);
    const PictureSpec tiles = GRAY.tiled(8, 8), outside = GRAY.region(1, 0, 9, 4);
    addRefusals("pxkDCT2D",
                { { "\nImages with 1u depth are not processed", { BITONAL, RGB }, { 3 } },
                  { "Images are not compatible", { GRAY, RGB }, { 1 } },
                  { "Images are not compatible", { RGB_PLANES, RGB }, { 1 } },
                  { "Images are not compatible", { GRAY, outside }, { 1 } },
                  { "Images are not compatible", { outside, outside }, { 1 } },
                  { "srcImage->imageData == ((void*)(0))", { tiles, tiles }, { 1 } },
                  { "dstImage->imageData == ((void*)(0))", { GRAY, tiles }, { 1 } } });
}

const Rows rows([] {
    addFourier("pxkRealFft2D", pxkRealFft2D, modelPack<double>, modelPack<int64_t>);
    addFourier("pxkCcsFft2D", pxkCcsFft2D, modelUnpack<double>, modelUnpack<int64_t>);
    addFourierRefusals("pxkRealFft2D");
    addFourierRefusals("pxkCcsFft2D");
    addProducts();
    addCosine();
});

} // namespace
