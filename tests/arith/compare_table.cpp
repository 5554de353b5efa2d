// SPDX-License-Identifier: BSD-2-Clause
// Comparison of two images, and of an image with a constant.
#include <cfloat>
#include <cmath>
#include <limits>

#include "reference/compare.h"
#include "support/operations.h"

namespace {

bool isNear(double a, double b, double epsilon)
{
    const volatile double difference = a - b; // no more digits than a double has
    return std::fabs(difference) <= epsilon;
}

void beBits(PictureSpec& spec)
{
    spec = spec.ofDepth(PXK_DEPTH_1U).of(1).with(&PictureSpec::hasAlpha, false);
    spec.roi.coi = std::min(spec.roi.coi, 1);
}

// Sources and a one-bit destination. Images of noise are seldom equal, so b takes over most pixels of a; where more
// channels are compared than one kernel takes operands, one sample of a pixel decides.
Scene compareScene(const Case& c, size_t sources)
{
    Random random(c.seed + 1);
    const int32_t many = c.channels == Channels::THREE && random.oneIn(3) ? random.oneOf({ 5, 6, 23 }) : 0;
    const Scene scene = makeScene(c, sources + 1, [&](PictureSpec& spec, size_t k) {
        if (many != 0) spec.channels = many;
        if (k == sources && c.place == InPlace::NO) beBits(spec);
    });
    Picture& a = scene[0];
    if (many != 0 && random.oneIn(2)) a.setAll(3);
    for (int32_t n = 0; n < 20 && many != 0; ++n) {
        const int32_t at[] = { random.below(a.spec.width), random.below(a.spec.height), random.below(many) };
        a.setNumber(at[0], at[1], at[2], 4);
    }
    if (sources < 2 || c.place != InPlace::NO) return scene;
    forEachSelected({ &a, &scene[1] }, [&](const Place* at) {
        if (!random.oneIn(many != 0 ? 100 : 3)) at[1].setBits(at[0].bits());
    });
    return scene;
}

double sampleOf(const Picture& p, Random& random)
{
    const int32_t at[] = { random.below(p.spec.width), random.below(p.spec.height), random.below(p.spec.channels) };
    return p.number(at[0], at[1], at[2]);
}

Numbers anyInteger(const Case& c, const Scene& s, Random& random)
{
    const double low = double(depthMin(c.depth)), high = double(depthMax(c.depth));
    const double values[] = {
        low, high, low - 1, high + 1, INT32_MIN, INT32_MAX, 4, sampleOf(s[0], random), sampleOf(s[0], random)
    };
    return { std::min<double>(INT32_MAX, std::max<double>(INT32_MIN, random.oneOf(values))) };
}

Numbers anyFloat(const Case&, const Scene& s, Random& random)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double values[] = { 0, -0.0, infinity, -infinity, std::nan(""), sampleOf(s[0], random), 4 };
    return { double(float(random.oneOf(values))) };
}

// A constant and a bound that differences often meet.
Numbers anyBound(const Case&, const Scene& s, Random& random)
{
    const double value = sampleOf(s[0], random), infinity = std::numeric_limits<double>::infinity();
    const double bounds[] = { 0, 1, 2, FLT_MAX, infinity, std::fabs(sampleOf(s[0], random) - value), std::nan("") };
    return { value, double(float(random.oneOf(bounds))) };
}

Operation comparison(std::string name, size_t sources, std::function<void(const Arguments&)> call,
                     std::function<void(const Scene&, const Numbers&)> model)
{
    std::vector<std::string> names = { "srcImage", "dstImage" };
    if (sources == 2) names = { "srcImageA", "srcImageB", "dstImage" };
    Operation op(std::move(name), names, call, model);
    op.scene = [sources](const Case& c) { return compareScene(c, sources); };
    op.axes.orders.push_back(Order::MIXED);
    return op;
}

void add(const std::string& name, const NumberRelation& relation, void (*images)(PxkImage*, PxkImage*, PxkImage*),
         void (*withValue)(PxkImage*, PxkImage*, int32_t), void (*withFloat)(PxkImage*, PxkImage*, float))
{
    Operation op = comparison(
        name, 2, [=](const Arguments& a) { images(a[0], a[1], a[2]); },
        [=](const Scene& s, const Numbers&) { modelCompare(s[0], &s[1], s[2], relation); });
    const auto withConstant = [=](const Scene& s, const Numbers& n) {
        modelCompare(s[0], nullptr, s[1], relation, n[0]);
    };
    addOperation(op);
    op.name += "_inPlace";
    op.axes.depths = { PXK_DEPTH_1U };
    op.axes.channels = { Channels::ONE };
    op.axes.places = { InPlace::FIRST, InPlace::SECOND, InPlace::ALL, InPlace::OTHER_HEADER };
    op.axes.count = 500;
    addOperation(op);

    op = comparison(
        name + "S", 1, [=](const Arguments& a) { withValue(a[0], a[1], a.integer(0)); }, withConstant);
    op.axes.depths.pop_back();
    op.numbers = anyInteger;
    addOperation(op);

    op = comparison(
        name + "SFP", 1, [=](const Arguments& a) { withFloat(a[0], a[1], a.real(0)); }, withConstant);
    op.axes.depths = { PXK_DEPTH_32F };
    op.axes.count = 600;
    op.numbers = anyFloat;
    addOperation(op);

    addRefusals(name,
                { { "(srcImageA->depth != srcImageB->depth)", { FLOATS, RGB, GRAY } },
                  { "(dstImage->depth != 1)", { GRAY, RGB, GRAY } },
                  { "(nChSrcA != nChSrcB)", { GRAY, RGB, BITONAL } } });
    addRefusals(name + "S",
                { { "(dstImage->depth != 1)", { FLOATS, GRAY }, { 0 } },
                  { "For processing depth 32F use function " + name + "SFP", { FLOATS, BITONAL }, { 0 } } });
    addRefusals(name + "SFP",
                { { "(dstImage->depth != 1)", { GRAY, GRAY }, { 0 } },
                  { "For processing this depth use function " + name + "S", { GRAY, BITONAL }, { 0 } } });
}

const Rows rows([] {
    add("pxkLess", std::less<>(), pxkLess, pxkLessS, pxkLessSFP);
    add("pxkGreater", std::greater<>(), pxkGreater, pxkGreaterS, pxkGreaterSFP);
    add("pxkEqual", std::equal_to<>(), pxkEqual, pxkEqualS, pxkEqualSFP);

    Operation near = comparison(
        "pxkEqualFPEps", 2, [](const Arguments& a) { pxkEqualFPEps(a[0], a[1], a[2], a.real(1)); },
        [](const Scene& s, const Numbers& n) {
            modelCompare(s[0], &s[1], s[2], [&](double a, double b) { return isNear(a, b, n[1]); });
        });
    near.axes.depths = { PXK_DEPTH_32F };
    near.axes.count = 600;
    near.numbers = anyBound;
    near.scene = [](const Case& c) { // differences of such samples are often the bound itself
        const Scene scene = compareScene(c, 2);
        Random random(c.seed);
        if (random.oneIn(2)) fillRange(scene[0], random, -3, 3);
        return scene;
    };
    addOperation(near);

    Operation nearValue = comparison(
        "pxkEqualSFPEps", 1, [](const Arguments& a) { pxkEqualSFPEps(a[0], a[1], a.real(0), a.real(1)); },
        [](const Scene& s, const Numbers& n) {
            modelCompare(
                s[0], nullptr, s[1], [&](double a, double b) { return isNear(a, b, n[1]); }, n[0]);
        });
    nearValue.axes.depths = { PXK_DEPTH_32F };
    nearValue.axes.count = 600;
    nearValue.numbers = anyBound;
    addOperation(nearValue);

    addRefusals("pxkEqualFPEps",
                { { "(nChSrcA != nChSrcB)", { GRAY, RGB, BITONAL }, { 0, -1 } },
                  { "(srcImageA->depth != 32)", { GRAY, GRAY, BITONAL }, { 0, -1 } },
                  { "(epsilon < 0)", { FLOATS, FLOATS, BITONAL }, { 0, -FLT_TRUE_MIN } } });
    addRefusals("pxkEqualSFPEps",
                { { "(dstImage->depth != 1)", { GRAY, GRAY }, { 0, -1 } },
                  { "(srcImage->depth != 32)", { GRAY, BITONAL }, { 0, -1 } },
                  { "(epsilon < 0)", { FLOATS, BITONAL }, { 0, -1 } } });
});

} // namespace
