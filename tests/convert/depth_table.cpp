// SPDX-License-Identifier: BSD-2-Clause
// Conversion between depths.
#include <cfloat>

#include "reference/depth.h"
#include "reference/stats.h"
#include "support/operations.h"

namespace {

const std::vector<int32_t> wideDepths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };

// Another depth, with one channel where there are bits.
PictureSpec ofDepth(const PictureSpec& spec, int32_t depth)
{
    PictureSpec other = spec.ofDepth(depth);
    if (depth != PXK_DEPTH_1U) return other;
    other.roi.coi = std::min(spec.roi.coi, 1);
    return other.of(1).with(&PictureSpec::hasAlpha, false);
}

// What the images of a function have in common.
struct Kind {
    const char* func;
    bool areSizesEqual, areOriginsEqual;
    int32_t faultStatus;
};
const Kind converted = { "pxkConvert", true, false, 0 };
const Kind scaled = { "pxkScale", false, true, PXK_StsBadArg };
const Kind scaledFloat = { "pxkScaleFP", false, true, PXK_StsBadArg };
const Kind cut = { "pxkThreshold", false, true, 0 };
const Kind grayed = { "pxkBitonalToGray", true, false, 0 };

Scene pairOf(const Case& c, const Kind& kind, int32_t toDepth)
{
    Random random(c.seed ^ 0xDE97);
    const bool isMany = c.channels == Channels::THREE && random.oneIn(3); // more than are moved together
    const int32_t origin = random.below(2), otherOrigin = kind.areOriginsEqual ? origin : random.below(2);
    PictureSpec first;
    return makeScene(c, 2, [&](PictureSpec& spec, size_t k) {
        spec.origin = k == 0 ? origin : otherOrigin;
        if (isMany) spec.channels = 6;
        spec = ofDepth(spec, k == 0 ? c.depth : toDepth);
        if (k == 0) first = spec;
        if (k == 0 || !kind.areSizesEqual) return;
        spec = spec.sized(first.width, first.height); // with a region that meets the image
        spec.roi.xOffset %= spec.width;
        spec.roi.yOffset %= spec.height;
    });
}

template <class Call, class Model>
Operation operationOf(const Kind& kind, int32_t toDepth, const Call& call, const Model& model)
{
    Operation op(std::string(kind.func) + "_" + depthName(toDepth), { "srcImage", "dstImage" }, call, model);
    op.scene = [=](const Case& c) { return pairOf(c, kind, toDepth); };
    op.axes.depths = wideDepths;
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::UNLIKE };
    op.axes.count = 900;
    op.axes.seed = uint64_t(depthBits(toDepth));
    op.faultStatus = kind.faultStatus;
    op.refusedTile = tellsNullTile(op.images, "NULL");
    return op;
}

void addConvert(int32_t toDepth)
{
    Operation op = operationOf(
        converted, toDepth, [](const Arguments& a) { return pxkConvert(a[0], a[1]); },
        [](const Scene& s, const Numbers&) { modelConvert(s[0], s[1]); });
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    op.axes.orders.push_back(Order::MIXED);
    if (toDepth == PXK_DEPTH_1U) {
        op.axes.channels = { Channels::ONE, Channels::COI };
        op.axes.depths.push_back(PXK_DEPTH_1U);
    }
    addOperation(op);
}

void addScale(int32_t toDepth)
{
    Operation op = operationOf(
        scaled, toDepth, [](const Arguments& a) { return pxkScale(a[0], a[1]); },
        [](const Scene& s, const Numbers&) { modelScale(s[0], s[1]); });
    op.axes.depths.erase(std::find(op.axes.depths.begin(), op.axes.depths.end(), toDepth));
    addOperation(op);
    op.name += "_gray";
    op.axes.channels = { Channels::ONE };
    op.axes.orders = { Order::MIXED };
    op.axes.count = 50;
    addOperation(op);
}

// However unlike the sizes of both ends are, or however close together they lie. With infinite ends, which are no
// refusal, every float is the lowest level.
Numbers endsOf(const Case& c, bool mayBeInfinite)
{
    static const double inf = HUGE_VAL;
    static const Numbers ends[] = { { 0, 1 },
                                    { 0, 255 },
                                    { -1, 1 },
                                    { -128, 127 },
                                    { 0.1f, 0.7f },
                                    { -3e5f, 2e4f },
                                    { 100, 101 },
                                    { -1e8f, 1e-30f },
                                    { 1, 1 + FLT_EPSILON },
                                    { -FLT_MAX, FLT_MAX },
                                    { 0, FLT_TRUE_MIN },
                                    { -inf, 0 },
                                    { 0, inf },
                                    { std::nan(""), 1 } };
    return ends[Random(c.seed).below(mayBeInfinite ? 14 : 11)];
}

void addScaleFP(int32_t toDepth)
{
    Operation op = operationOf(
        scaledFloat, toDepth, [](const Arguments& a) { return pxkScaleFP(a[0], a[1], a.real(0), a.real(1)); },
        [](const Scene& s, const Numbers& n, const Scene& got) { modelScaleFP(s[0], s[1], got[1], n[0], n[1]); });
    const bool isToInteger = toDepth != PXK_DEPTH_32F;
    op.numbers = [=](const Case& c, const Scene&, Random&) { return endsOf(c, isToInteger); };
    if (isToInteger) {
        op.axes.depths = { PXK_DEPTH_32F };
        op.scene = [=](const Case& c) { // floats of all kinds, or mostly such as lie inside; both ends among them
            const Scene scene = pairOf(c, scaledFloat, toDepth);
            Random random(c.seed + 1);
            const Numbers n = endsOf(c, true);
            const double margin = (n[1] - n[0]) / 8;
            if (!std::isfinite(margin)) return scene;
            if (random.oneIn(2)) fillRange(scene[0], random, n[0] - margin, n[1] + margin);
            scene[0].forEachSample([&](int32_t x, int32_t y, int32_t channel) {
                if (random.oneIn(9)) scene[0].setNumber(x, y, channel, n[size_t(random.below(2))]);
            });
            return scene;
        };
    }
    addOperation(op);
}

void addBitonal(int32_t toDepth)
{
    Operation op = operationOf(
        grayed, toDepth, [](const Arguments& a) { return pxkBitonalToGray(a[0], a[1], a.integer(0), a.integer(1)); },
        [](const Scene& s, const Numbers& n) { modelBitonalToGray(s[0], s[1], int32_t(n[0]), int32_t(n[1])); });
    op.axes.depths = { PXK_DEPTH_1U };
    op.axes.channels = { Channels::ONE };
    op.scene = [=](const Case& c) { // a channel of interest of the destination alone
        Case plain = c;
        if (c.seed % 2 == 0) plain.channels = Channels::COI;
        return pairOf(plain, grayed, toDepth);
    };
    op.numbers = [=](const Case&, const Scene&, Random& random) {
        const double low = double(depthMin(toDepth)), high = double(depthMax(toDepth));
        const double levels[] = { low, high, 0, 1, 77, 127 };
        return Numbers { random.oneOf(levels), random.oneOf(levels) };
    };
    addOperation(op);
}

void addThreshold(int32_t toDepth)
{
    Operation op = operationOf(
        cut, toDepth, [](const Arguments& a) { pxkThreshold(a[0], a[1], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelThreshold(s[0], s[1], n[0]); });
    op.scene = [toDepth](const Case& c) { // of the masks' origin
        const Scene scene = pairOf(c, cut, toDepth);
        for (const PicturePtr& image : scene.images) {
            image->header.origin = 0;
            image->freeze();
        }
        return scene;
    };
    if (toDepth == PXK_DEPTH_1U) op.axes.channels = { Channels::ONE, Channels::COI };
    op.numbers = [](const Case& c, const Scene&, Random& random) {
        const double low = double(depthMin(c.depth)), high = double(depthMax(c.depth));
        return Numbers { random.oneOf({ low, low + 1, double(random.between(0, 127)), high }) };
    };
    addOperation(op);
    op.name += "_gray";
    op.axes.channels = { Channels::ONE };
    op.axes.orders = { Order::MIXED };
    op.axes.count = 50;
    addOperation(op);
}

void addConvertRefusals()
{
    const PictureSpec other = RGB.sized(5, 5), region = RGB.region(1, 1, 4, 2), second = RGB.region(1, 1, 4, 2, 2);
    addRefusals("pxkConvert_8U",
                { { "(srcImage->depth == 32)", { RGB_32F.sized(5, 5), FLOATS } },
                  { "(dstImage->depth == 32)", { BITONAL.sized(5, 5), RGB_32F } },
                  { "(srcImage->height != dstImage->height)", { other, BITONAL } },
                  { "(srcImage->width != dstImage->width)", { RGB.sized(5, 4), BITONAL } },
                  { "(srcImage->roi == 0)", { RGB, BITONAL } },
                  { "(srcImage->roi->coi == 0)", { region, BITONAL } },
                  { "srcImage->nChannels != dstImage->nChannels", { BITONAL, RGB } },
                  { "((srcImage->depth == 1) && (srcImage->depth != dstImage->depth))", { BITONAL, GRAY } },
                  { "(srcChannels != dstChannels)", { second, RGB_16U } } });
}

// The checks of layout that both scalings share; the destination's depth must suit the source's.
void addLayoutRefusals(const char* name, int32_t from, int32_t to)
{
    const char* const orders =
        "((srcImage->dataOrder != dstImage->dataOrder)&& ((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))";
    const PictureSpec two = GRAY.of(2).ofDepth(from), planes = RGB_PLANES.ofDepth(to);
    addRefusals(name,
                { { orders, { two, planes }, { 1, 1 }, turned(1) },
                  { "(srcImage->origin != dstImage->origin)", { two, planes.of(1) }, { 1, 1 }, turned(1) } });
}

void addScaleRefusals()
{
    addRefusals("pxkScale_8U",
                { { "(srcImage->depth == dstImage->depth)", { BITONAL, BITONAL } },
                  { "(srcImage->depth == dstImage->depth)", { RGB_32F, RGB_32F } },
                  { "(srcImage->depth == 1)", { BITONAL, RGB_32F } },
                  { "(srcImage->depth == 32)", { RGB_32F, BITONAL } },
                  { "(dstImage->depth == 1)", { GRAY, BITONAL } },
                  { "(dstImage->depth == 32)", { GRAY, RGB_32F } },
                  { "(srcChannels != dstChannels)", { GRAY, RGB_16U } } });
    addLayoutRefusals("pxkScale_8U", PXK_DEPTH_8U, PXK_DEPTH_16S);
    addRefusals("pxkScaleFP_32F",
                { { "((srcImage->depth != 32)&& (dstImage->depth != 32))", { BITONAL, GRAY }, { 1, 1 } },
                  { "((srcImage->depth == 32)&& (dstImage->depth == 32))", { RGB_32F, RGB_32F }, { 1, 1 } },
                  { "((srcImage->depth == 1)|| (dstImage->depth == 1))", { RGB_32F, BITONAL }, { 1, 1 } },
                  { "((srcImage->depth == 1)|| (dstImage->depth == 1))", { BITONAL, RGB_32F }, { 1, 1 } },
                  { "((maxVal - minVal) <= 0.0f)", { RGB_32F, GRAY }, { 1, 1 } },
                  { "(srcChannels != dstChannels)", { RGB_32F, GRAY }, { 0, 1 } } });
    addLayoutRefusals("pxkScaleFP_32F", PXK_DEPTH_16U, PXK_DEPTH_32F);
}

// How texts of checks name depths.
const std::pair<int32_t, std::string> depthWords[] = { { PXK_DEPTH_8S, "(0x80000000| 8)" },
                                                       { PXK_DEPTH_8U, "8" },
                                                       { PXK_DEPTH_16S, "(0x80000000|16)" },
                                                       { PXK_DEPTH_16U, "16" } };

void addBitonalRefusals()
{
    const Numbers wild = { INT32_MAX, INT32_MIN };
    addRefusals("pxkBitonalToGray_8U",
                { { "(srcImage->height != dstImage->height)", { RGB.sized(5, 5), FLOATS }, wild },
                  { "(srcImage->width != dstImage->width)", { RGB.sized(5, 4), FLOATS }, wild },
                  { "(srcImage->nChannels != 1)", { RGB, FLOATS }, wild },
                  { "(srcImage->depth != 1)", { GRAY, FLOATS }, wild },
                  { "(dstImage->depth == 32)", { BITONAL, FLOATS }, wild },
                  { "(dstImage->depth == 1)", { BITONAL, BITONAL }, wild } });
    for (const auto& word : depthWords) {
        const double low = double(depthMin(word.first)), high = double(depthMax(word.first));
        const auto add = [&](const Numbers& levels, const char* level, const char* than, double end) {
            addRefusals("pxkBitonalToGray_8U",
                        { { "((dstImage->depth == " + word.second + ") && (" + level + " " + than + " "
                                + std::to_string(int32_t(end)) + "))",
                            { BITONAL, RGB.ofDepth(word.first) },
                            levels } });
        };
        add({ high + 1, high + 1 }, "ZeroScale", ">", high);
        add({ low - 1, high + 1 }, "ZeroScale", "<", low);
        add({ low, high + 1 }, "OneScale", ">", high);
        add({ high, low - 1 }, "OneScale", "<", low);
    }
    addRefusals("pxkBitonalToGray_8U", { { "(srcChannels != dstChannels)", { BITONAL, RGB }, { 255, 0 } } });
}

void addThresholdRefusals()
{
    const char* const name = "pxkThreshold_8U";
    const auto masks = [](const Scene& s) {
        for (size_t k = 0; k < 2; ++k) s[k].setMask(Picture::make(BITONAL));
        for (size_t k = 0; k < 2; ++k) s[k].mask->header.origin = 1;
    };
    const auto destinationMask = [=](const Scene& s) {
        masks(s);
        s[0].mask->header.origin = 0;
    };
    addRefusals(name,
                { { "(srcImage->depth == 32)", { RGB_32F, RGB_32F }, { 1e6 } },
                  { "(dstImage->depth == 32)", { BITONAL, RGB_32F }, { 1e6 } },
                  { "(srcImage->depth == 1)", { BITONAL, RGB_PLANES }, { 1e6 } } });
    addLayoutRefusals(name, PXK_DEPTH_8U, PXK_DEPTH_8U);
    addRefusals(name,
                { { "(srcImage->origin != srcImage->maskROI->origin)", { RGB, GRAY }, { 1e6 }, masks },
                  { "(dstImage->origin != dstImage->maskROI->origin)", { RGB, GRAY }, { 1e6 }, destinationMask } });
    for (const auto& word : depthWords) {
        const int64_t low = depthMin(word.first), high = depthMax(word.first);
        const std::string start = "((srcImage->depth == " + word.second + ") && (Threshold ";
        const std::vector<PictureSpec> images = { RGB.ofDepth(word.first), GRAY };
        addRefusals(name,
                    { { start + "> " + std::to_string(high) + "))", images, { double(high + 1) } },
                      { start + "< " + std::to_string(low) + "))", images, { double(low - 1) } } });
    }
    addRefusals(name, { { "(srcChannels != dstChannels)", { RGB, GRAY }, { 1 } } });
}

const Rows rows([] {
    for (const int32_t depth : wideDepths) {
        addConvert(depth);
        addScale(depth);
        addScaleFP(depth);
        addBitonal(depth);
        addThreshold(depth);
    }
    addThreshold(PXK_DEPTH_1U);
    addConvert(PXK_DEPTH_1U);
    addScaleFP(PXK_DEPTH_32F);
    addConvertRefusals();
    addScaleRefusals();
    addBitonalRefusals();
    addThresholdRefusals();
});

} // namespace
