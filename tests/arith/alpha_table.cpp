// SPDX-License-Identifier: BSD-2-Clause
// Scaled products, premultiplication by alpha and alpha composition.
#include "reference/alpha.h"
#include "support/operations.h"

namespace {

const std::vector<int32_t> unsignedDepths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
const std::vector<std::string> threeImages = { "srcImageA", "srcImageB", "dstImage" };
const std::vector<InPlace> allPlaces = { InPlace::NO, InPlace::FIRST, InPlace::SECOND, InPlace::ALL,
                                         InPlace::OTHER_HEADER };

void addAlpha(PictureSpec& spec)
{
    if (spec.hasAlpha) return;
    ++spec.channels;
    spec.hasAlpha = true;
}

// Sources with alpha, or none that counts; now and then more channels than one kernel takes.
Scene compositionScene(const Case& c, bool needsAlpha)
{
    Random random(c.seed);
    const bool isWide = random.oneIn(6) && (c.channels == Channels::ALPHA || c.channels == Channels::THREE);
    const int32_t colours = random.between(4, 7);
    return makeScene(c, 3, [&](PictureSpec& spec, size_t k) {
        if (isWide) spec.channels = colours + (spec.hasAlpha ? 1 : 0);
        if (needsAlpha && k < 2) addAlpha(spec);
    });
}

int32_t anyAlpha(int32_t depth, Random& random)
{
    const int32_t largest = int32_t(depthMax(depth));
    return random.oneOf(
        { 0, 1, largest / 2, largest - 1, largest, largest + 1, -1, INT32_MIN, INT32_MAX, random.between(0, largest) });
}

Operation composition(const char* name, bool isConstant)
{
    Operation op(
        name, threeImages,
        [=](const Arguments& a) {
            if (!isConstant) return pxkAlphaComposite(a[0], a[1], a[2], a.integer(0), a.integer(1));
            pxkAlphaCompositeC(a[0], a[1], a[2], a.integer(0), a.integer(2), a.integer(3), a.integer(1));
        },
        [=](const Scene& s, const Numbers& n) {
            modelAlphaComposite(s[0], s[1], s[2],
                                { int32_t(n[0]), n[1] != 0, isConstant, int64_t(n[2]), int64_t(n[3]) });
        });
    op.axes.depths = unsignedDepths;
    op.axes.places = allPlaces;
    op.axes.count = 4000;
    op.scene = [=](const Case& c) { return compositionScene(c, !isConstant); };
    op.numbers = [](const Case& c, const Scene&, Random& random) {
        const int32_t premultiplied = random.oneOf({ 0, 0, 1, INT32_MIN });
        return Numbers { double(random.below(6)), double(premultiplied), double(anyAlpha(c.depth, random)),
                         double(anyAlpha(c.depth, random)) };
    };
    return op;
}

const Rows rows([] {
    Operation product(
        "pxkMultiplyScale", threeImages, [](const Arguments& a) { pxkMultiplyScale(a[0], a[1], a[2]); },
        [](const Scene& s, const Numbers&) { modelMultiplyScale(s[0], s[1], s[2]); });
    product.axes.depths = unsignedDepths;
    product.axes.places = allPlaces;
    addOperation(product);
    addRefusals("pxkMultiplyScale",
                { { "(srcImageA->depth != 8) && (srcImageA->depth != 16)", { RGB_8S, RGB_16U, GRAY } },
                  { "(srcImageA->depth != dstImage->depth)", { RGB_16U, RGB_8S, GRAY } },
                  { "(srcImageB->depth != dstImage->depth)", { RGB_PLANES, RGB_16U, GRAY } },
                  { "(srcImageA->dataOrder != dstImage->dataOrder)", { RGB_PLANES, RGB_PLANES, GRAY } },
                  { "(srcImageB->dataOrder != dstImage->dataOrder)", { RGB, RGB_PLANES, GRAY } },
                  { "(nChSrcA != nChDst)", { RGB, RGB, GRAY } },
                  { "(nChSrcB != nChDst)", { GRAY, RGB, GRAY } } });

    Operation byConstant(
        "pxkMultiplySScale", { "srcImage", "dstImage" },
        [](const Arguments& a) { pxkMultiplySScale(a[0], a[1], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelMultiplySScale(s[0], s[1], int64_t(n[0])); });
    byConstant.axes.depths = unsignedDepths;
    byConstant.axes.places = { InPlace::NO, InPlace::FIRST };
    byConstant.numbers = [](const Case& c, const Scene&, Random& random) {
        return Numbers { double(anyAlpha(c.depth, random)) };
    };
    addOperation(byConstant);
    addRefusals("pxkMultiplySScale",
                { { "(srcImage->depth != 8) && (srcImage->depth != 16)", { RGB_8S, GRAY }, { 1 } },
                  { "(srcImage->depth != dstImage->depth)", { RGB_16U, GRAY }, { 1 } },
                  { "(srcImage->dataOrder != dstImage->dataOrder)", { RGB_PLANES, GRAY }, { 1 } },
                  { "(nChSrc != nChDst)", { RGB, GRAY }, { 1 } } });

    Operation premultiplied(
        "pxkPreMultiplyAlpha", { "image" }, [](const Arguments& a) { pxkPreMultiplyAlpha(a[0], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelPreMultiplyAlpha(s[0], int64_t(n[0])); });
    premultiplied.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32F };
    premultiplied.axes.count = 3000;
    premultiplied.scene = [](const Case& c) {
        return makeScene(c, 1, [&](PictureSpec& spec, size_t) {
            if (c.seed % 5 == 0 && !spec.hasAlpha) spec.channels = 25; // more than one kernel takes operands
            if (c.seed % 3 != 0) addAlpha(spec);
        });
    };
    premultiplied.numbers = [](const Case&, const Scene& s, Random& random) {
        const int32_t values[] = { 0, 1, 100, 254, 255, 256, 40000, 65535, 65536, INT32_MAX };
        return Numbers { double(s[0].spec.hasAlpha && random.oneIn(3) ? random.oneOf({ -1, INT32_MIN })
                                                                      : random.oneOf(values)) };
    };
    addOperation(premultiplied);
    addRefusals("pxkPreMultiplyAlpha",
                { { "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)", { RGB_8S }, { -1 } },
                  { "(image->alphaChannel == 0)", { RGB }, { -1 } } });

    addOperation(composition("pxkAlphaComposite", false));
    addOperation(composition("pxkAlphaCompositeC", true));
    const Numbers wild = { 6, 0, 255, 255 }, negative = { -1, 0, 255, 255 };
    addRefusals("pxkAlphaComposite",
                { { "(srcImageA->depth != dstImage->depth)", { RGB_16U, RGB_16U, GRAY }, wild },
                  { "(srcImageB->depth != dstImage->depth)", { RGB_PLANES, RGB_16U, GRAY }, wild },
                  { "(srcImageA->dataOrder != dstImage->dataOrder)", { RGB_PLANES, RGB_PLANES, GRAY }, wild },
                  { "(srcImageB->dataOrder != dstImage->dataOrder)", { RGB, RGB_PLANES, GRAY }, wild },
                  { "(srcImageA->depth != 8) && (srcImageA->depth != 16)", { RGB_8S, RGB_8S, GRAY_8S }, wild },
                  { "(srcImageA->alphaChannel == 0)", { RGB, RGB, GRAY }, wild },
                  { "(srcImageB->alphaChannel == 0)", { RGBA, RGB, GRAY }, wild },
                  { "(nChSrcA != nChDst)", { RGBA, RGBA, GRAY }, wild },
                  { "(nChSrcB != nChDst)", { RGBA, GRAY_ALPHA, RGB }, negative },
                  { "(compositeType < 0) || (compositeType > 5)", { RGBA, RGBA, RGB }, negative } });
    addRefusals("pxkAlphaCompositeC",
                { { "(nChSrcB != nChDst)", { RGB, GRAY, RGBA }, wild },
                  { "(compositeType < 0) || (compositeType > 5)", { RGB, RGB, RGBA }, wild } });
});

} // namespace
