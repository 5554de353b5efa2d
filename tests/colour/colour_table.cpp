// Colour model conversions, gray and colour, colour twists.
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
    op.refusedTile = [](const std::string& func, size_t image, const Scene&) {
        return tileText(func, image == 0 ? "src" : "dst", "NULL");
    };
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
    // No integer differs by less than 1. The differences of LUV stand on quotients that nearly cancel.
    op.tolerance = { of.depths[0] == PXK_DEPTH_32F ? 1e-3 : 2e-6, 0 };
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
        setWords(s, random.oneOf({ "Gray", "GRAY" }), random.oneOf({ "G", "GRAY" }), false, random);
        return s;
    };
    addOperation(gray);

    Operation colour = colourOperation(
        "pxkGrayToColor",
        [](const Arguments& a) { pxkGrayToColor(a[0], a[1], a.real(0), a.real(1), a.real(2)); },
        [](const Scene& s, const Numbers& n) { modelGrayToColor(s[0], s[1], { n[0], n[1], n[2] }); });
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
        twist.axes.depths = isFloat ? std::vector<int32_t> { PXK_DEPTH_32F }
                                    : std::vector<int32_t> { PXK_DEPTH_8U, PXK_DEPTH_16U };
        twist.axes.masks = twist.axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
        twist.axes.channels = { Channels::THREE, Channels::ALPHA, Channels::COI };
        twist.axes.places = { InPlace::FIRST, InPlace::OTHER_HEADER, InPlace::NO };
        twist.axes.count = 2000;
        twist.hasRegions = twist.hasMasks = true;
        twist.tolerance = { 1e-4, 1e-5 };
        twist.refusedTile = [](const std::string& func, size_t image, const Scene&) {
            return tileText(func, image == 0 ? "srcImage" : "dstImage", "NULL");
        };
        twist.noMemory = [](const std::string& func) { return Ending({ { -5, func, "(msk == NULL)" } }); };
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

} // namespace
