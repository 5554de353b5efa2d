// SPDX-License-Identifier: BSD-2-Clause
// Colour model conversions, gray and colour, colour twists.
#include <cfloat>

#include "colour_cases.h"
#include "support/operations.h"

namespace {

// The words as a conversion wants them, the model's in the destination, too.
void setWords(const Scene& s, const char* word, const char* seq, bool isToRgb, Random& random)
{
    setWords(s[isToRgb ? 1 : 0], "RGB", random.oneOf({ "RGB", "BGR", "RGBA" }));
    setWords(s[isToRgb ? 0 : 1], word, seq);
}

template <class Call, class Model> Operation colourOperation(const std::string& name, Call call, Model model)
{
    Operation op(name, { "src", "dst" }, call, model);
    op.axes.regions = { Region::WHOLE, Region::OWN };
    op.axes.channels = { Channels::THREE };
    op.axes.masks = { 0 };
    op.axes.count = 400;
    op.hasRegions = op.hasMasks = false;
    op.refusedTile = tellsNullTile(op.images, "NULL");
    return op;
}

Case withoutRegion(Case c)
{
    if (c.region == Region::INNER) c.region = Region::WHOLE;
    return c;
}

Operation conversionOperation(const Conversion& of)
{
    Operation op = colourOperation(
        of.name, [of](const Arguments& a) { of.run(a[0], a[1]); },
        [of](const Scene& s, const Numbers&) { modelConversion(of, s[0], s[1]); });
    op.axes.depths = of.depths;
    op.axes.places = { InPlace::OTHER_HEADER, InPlace::NO };
    // No integer differs by less than 1; numbers of 80 bits may fall on the other side of a whole one. The differences
    // of LUV stand on quotients that nearly cancel.
    const double ofIntegers = FLT_EVAL_METHOD == 2 ? 1 : 2e-6;
    op.tolerance = { of.depths[0] == PXK_DEPTH_32F ? 1e-3 : ofIntegers, 0 };
    op.scene = [of](const Case& c) {
        Random random(c.seed);
        const bool isRgba = !of.isToRgb && c.place == InPlace::NO && random.oneIn(3);
        const Scene s = makeScene(withoutRegion(c), 2, [&](PictureSpec& spec, size_t k) {
            spec.channels = isRgba && k == 0 ? 4 : 3;
            spec.hasAlpha = spec.channels == 4 && random.oneIn(2);
        });
        const bool isLuv = std::string(of.word) == "LUV" && of.isToRgb;
        if (c.depth == PXK_DEPTH_32F) fillRange(s[0], random, isLuv ? 5 : 0, isLuv ? 100 : 1);
        setWords(s, of.word, of.word, of.isToRgb, random);
        return s;
    };
    return op;
}

const Rows rows([] {
    for (const Conversion& of : conversions()) addOperation(conversionOperation(of));

    Operation gray = colourOperation(
        "pxkColorToGray", [](const Arguments& a) { pxkColorToGray(a[0], a[1]); },
        [](const Scene& s, const Numbers&) { modelColorToGray(s[0], s[1]); });
    gray.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S };
    gray.axes.orders = { Order::PIXEL, Order::PLANE, Order::MIXED };
    gray.scene = [](const Case& c) {
        Random random(c.seed);
        const int32_t depth = random.oneOf({ PXK_DEPTH_16U, PXK_DEPTH_8U, PXK_DEPTH_1U });
        const Scene s = makeScene(withoutRegion(c), 2, [&](PictureSpec& spec, size_t k) {
            spec.channels = k == 1 ? 1 : random.oneOf({ 3, 4 });
            if (k == 1) spec.depth = depth;
        });
        const char* const word = random.oneOf({ "Gray", "GRAY" });
        setWords(s, word, random.oneOf({ "G", "GRAY" }), false, random);
        return s;
    };
    addOperation(gray);

    Operation colour = colourOperation(
        "pxkGrayToColor", [](const Arguments& a) { pxkGrayToColor(a[0], a[1], a.real(0), a.real(1), a.real(2)); },
        [](const Scene& s, const Numbers& n) {
            modelGrayToColor(s[0], s[1], { n[0], n[1], n[2] });
        });
    colour.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S, PXK_DEPTH_1U };
    colour.axes.orders = gray.axes.orders;
    colour.scene = [](const Case& c) {
        Random random(c.seed);
        const Scene s = makeScene(withoutRegion(c), 2, [&](PictureSpec& spec, size_t k) {
            spec.channels = k == 0 ? 1 : 3;
            if (k == 1 && c.depth == PXK_DEPTH_1U) spec.depth = PXK_DEPTH_8U;
        });
        setWords(s, "GRAY", "G", true, random);
        return s;
    };
    colour.numbers = [](const Case&, const Scene&, Random& random) {
        Numbers n;
        for (int32_t k = 0; k < 3; ++k) n.push_back(float(random.oneOf({ 0.0, 0.003, 0.3, 0.7, 1.0, 1.5, -0.25 })));
        return random.oneIn(3) ? Numbers { 0, 0.00001f, 0 } : n;
    };
    addOperation(colour);

    for (const bool isFloat : { false, true }) {
        Operation twist = colourOperation(
            isFloat ? "pxkColorTwistFP" : "pxkApplyColorTwist",
            [=](const Arguments& a) { return runTwist(a[0], a[1], a.numbers, isFloat); },
            [=](const Scene& s, const Numbers& n) { modelTwist(s[0], s[1], n, isFloat); });
        twist.axes = Axes();
        twist.axes.depths =
            isFloat ? std::vector<int32_t> { PXK_DEPTH_32F } : std::vector<int32_t> { PXK_DEPTH_8U, PXK_DEPTH_16U };
        twist.axes.masks = twist.axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
        twist.axes.channels = { Channels::THREE, Channels::ALPHA, Channels::COI };
        twist.axes.places = { InPlace::FIRST, InPlace::OTHER_HEADER, InPlace::NO };
        twist.axes.count = 2000;
        twist.hasRegions = twist.hasMasks = true;
        twist.tolerance = { 1e-4, 1e-5 };
        twist.refusedTile = tellsNullTile({ "srcImage", "dstImage" }, "NULL");
        twist.noMemory = tells(-5, "(msk == NULL)");
        twist.scene = [=](const Case& c) {
            const Scene s = makeScene(c, 2, [](PictureSpec& spec, size_t) {
                if (spec.channels < 3) spec.channels = 3;
            });
            Random random(c.seed);
            if (isFloat) fillRange(s[0], random, -1, 1);
            return s;
        };
        twist.numbers = anyTwist;
        addOperation(twist);
    }
});

// Two images with words; `spoil` breaks a rule.
Refusal refusal(
    const char* text, const PictureSpec& src, const PictureSpec& dst, const char* srcWord, const char* dstWord,
    const Spoil& spoil = [](const Scene&) {})
{
    const auto prepare = [=](const Scene& s) {
        setWords(s[0], srcWord, srcWord);
        setWords(s[1], dstWord, dstWord);
        spoil(s);
    };
    return { text, { src, dst }, { 0, 0, 0 }, prepare };
}

const Rows conversionRefusals([] {
    const char* const unlike =
        "(src->nChannels < 3 ) || (dst->nChannels != 3 ) || (src->depth != dst->depth) || (src->dataOrder != "
        "dst->dataOrder) || (src->origin != dst->origin)";
    const char* const regions = "src & dst roi must be NULL";
    const char* const depths = "Error input depth. 32S,16U,8U are valid now";
    const auto regionOf = [](size_t k) { return [k](const Scene& s) { s[k].setRegion(0, 0, 2, 2); }; };
    const auto wordOf = [](size_t k, const char* model, const char* sequence) {
        return [=](const Scene& s) { setWords(s[k], model, sequence); };
    };
    addRefusals(
        "pxkRGB2YUV",
        { refusal("colorModel must be RGB instead of Luv ", GRAY, RGB_16U, "Luv", "x"),
          refusal("channelSeq must be RGB or BGR instead of GBR ", GRAY, RGB_16U, "RGB", "x", wordOf(0, "RGB", "GBR")),
          refusal(regions, RGB, GRAY_16U, "RGB", "YUV", regionOf(0)),
          refusal(regions, RGB, GRAY_16U, "RGB", "YUV", regionOf(1)),
          refusal("src1->depth != src2->depth", RGB, GRAY_16U, "RGB", "YUV"), refusal(unlike, GRAY, RGB, "RGB", "YUV"),
          refusal(unlike, RGB, RGBA, "RGB", "YUV"),
          refusal(unlike, RGB, RGB_PLANES, "BGR", "YUV", wordOf(0, "RGB", "BGR")),
          refusal(unlike, RGB_8S, RGB_8S, "RGB", "YUV", turned(0)),
          refusal("Error input depth. 32F, 32S ,16U,8U are valid now", RGB_8S, RGB_8S, "RGB", "YUV") });
    addRefusals("pxkRGB2HSV",
                { refusal(unlike, RGB, RGB_16U, "RGB", "HSV"), refusal(depths, RGB_32F, RGB_32F, "RGB", "HSV") });
    addRefusals("pxkRGB2LUV", { refusal("Error input depth. 32F is valid now", RGB, RGB, "RGB", "LUV") });
    addRefusals(
        "pxkYCrCb2RGB",
        { refusal("colorModel must be RGB instead of YCr ", GRAY, RGB_16U, "YUV", "YCr"),
          refusal("src-> colorModel must be YCr instead of YUV", GRAY, RGB_16U, "YUV", "RGB"),
          refusal("src-> channelSeq must be YCr instead of YCC", GRAY, RGB_16U, "YCC", "RGB", wordOf(0, "YCrX", "YCC")),
          refusal(unlike, RGB, RGB_16U, "YCr", "RGB") });
    addRefusals("pxkColorToGray",
                { refusal("colorModel must be GRAY instead of gray ", GRAY, RGB, "RGB", "gray"),
                  refusal("channelSeq must be G instead of Y ", GRAY, RGB, "RGB", "Y", wordOf(1, "GRAY", "Y")),
                  refusal("(dst-> dataOrder == PXK_DATA_ORDER_PIXEL) && (dst-> nChannels != 1)", GRAY, RGB, "RGB",
                          "GRAY", turned(0)),
                  refusal("src->origin != dst->origin", GRAY, GRAY_8S, "RGB", "GRAY", turned(0)),
                  refusal("(src->nChannels < 3 )", GRAY, GRAY_8S, "RGB", "GRAY"),
                  refusal("Error in-out depth. 32S,16U,8U=> 16U,8U,1U are valid now", RGB, GRAY_32S, "RGB", "GRAY") });
    addRefusals("pxkGrayToColor",
                { refusal("src-> depth != dst-> depth && src-> depth != 1U", RGB_16U, RGB, "GRAY", "RGB"),
                  refusal("src-> depth == dst-> depth && dst-> depth != 8U", BITONAL, GRAY_16U, "GRAY", "RGB"),
                  refusal("(src-> dataOrder == PXK_DATA_ORDER_PIXEL) && (src-> nChannels != 1)", RGB, RGB, "GRAY",
                          "RGB", turned(0)),
                  refusal("(src->origin != dst->origin)", GRAY_8S, GRAY_8S, "GRAY", "RGB", turned(0)),
                  refusal("(dst->nChannels < 3 )", GRAY_8S, GRAY_8S, "GRAY", "RGB"),
                  refusal(depths, GRAY_8S, RGB_8S, "GRAY", "RGB") });
});

const Rows twistRefusals([] {
    const Numbers n(14, 0.0);
    const auto alpha = [](size_t k, int32_t channel) {
        return [=](const Scene& s) { s[k].header.alphaChannel = channel; };
    };
    const auto turnMasks = [](const Scene& s) {
        for (const PicturePtr& image : s.images) image->setMask(Picture::make(BITONAL));
        for (const PicturePtr& image : s.images) image->mask->header.origin = 1;
    };
    for (const bool isFloat : { false, true }) {
        const PictureSpec three = isFloat ? RGB_32F : RGB, one = isFloat ? FLOATS : GRAY;
        addRefusals(
            isFloat ? "pxkColorTwistFP" : "pxkApplyColorTwist",
            { { "(srcImage->nChannels < 3)", { one, one }, n },
              { "((srcImage->alphaChannel != 0) && (srcImage->nChannels < 4))", { three, one }, n, alpha(0, 3) },
              { "(dstImage->nChannels < 3)", { three, one }, n },
              { "((dstImage->alphaChannel != 0) && (dstImage->nChannels < 4))", { three, three }, n, alpha(1, 3) },
              { "(srcImage->origin != dstImage->origin)", { three, three }, n, turned(0) } });
    }
    addRefusals("pxkApplyColorTwist",
                { { "(srcImage->depth != dstImage->depth)", { RGB_8S, RGB_PLANES }, n },
                  { "((srcImage->depth != 8) && (srcImage->depth != 16))", { RGB_8S, RGB_8S }, n, turned(0) },
                  { "(srcImage->dataOrder != dstImage->dataOrder)", { RGB, RGB_PLANES }, n, turned(0) },
                  { "(srcImage->origin != srcImage->maskROI->origin)", { RGB, RGB }, n, turnMasks } });
    addRefusals("pxkColorTwistFP",
                { { "((srcImage->depth != 32)|| (dstImage->depth != 32))", { RGB_32F, RGB_PLANES }, n, turned(0) } });

    static const int32_t data[16] = {};
    static PxkColorTwist record;
    const auto set = [](const char* text, PxkColorTwist* twist, const int32_t* values, int32_t scaling) {
        return RefusedCall { { -5, "pxkSetColorTwist", text }, [=] { pxkSetColorTwist(twist, values, scaling); } };
    };
    const auto create = [](const int32_t* values, int32_t scaling) {
        return RefusedCall { { -5, "pxkCreateColorTwist", "bad_argument" },
                             [=] { EXPECT_EQ(pxkCreateColorTwist(values, scaling), nullptr); } };
    };
    addRefusedCalls({ create(data, 32), create(data, -1), create(nullptr, 3), set("cTwist==0", nullptr, nullptr, -1),
                      set("(data == 0)", &record, nullptr, -1), set("(scalingValue < 0)", &record, data, -1),
                      set("(scalingValue > 31)", &record, data, 32) });
});

} // namespace
