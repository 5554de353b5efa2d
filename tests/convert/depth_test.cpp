// Conversion between depths: every pair against the models, ends of ranges, refusals, tiles that can't be had.
#include "reference/depth.h"

#include <cfloat>
#include <limits>

#include "support/cases.h"
#include "support/refused_tiles.h"
#include "support/reports.h"

namespace {

const std::vector<int32_t> wideDepths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };

Axes depthAxes(const std::vector<int32_t>& sources, std::vector<Channels> channels, size_t count)
{
    Axes axes;
    axes.depths = sources;
    axes.channels = std::move(channels);
    axes.masks = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.count = count;
    return axes;
}

void beDepth(PictureSpec& spec, int32_t depth)
{
    spec.depth = depth;
    if (depth != PXK_DEPTH_1U) return;
    spec.channels = 1;
    spec.hasAlpha = false;
    if (spec.roi.coi != 0) spec.roi.coi = 1;
}

// The size of another image, with a region that meets it.
void beAsLargeAs(PictureSpec& spec, const PictureSpec& other)
{
    spec.width = other.width;
    spec.height = other.height;
    spec.roi.xOffset %= spec.width;
    spec.roi.yOffset %= spec.height;
}

enum class Size { ANY, EQUAL };
enum class Origins { EQUAL, ANY };

Scene makePair(const Case& c, int32_t toDepth, Size size, Origins origins)
{
    Random random(c.seed ^ 0xDE97);
    const bool isMany = c.channels == Channels::THREE && random.oneIn(3); // more than are moved together
    const int32_t origin = random.below(2), otherOrigin = origins == Origins::ANY ? random.below(2) : origin;
    PictureSpec first;
    return makeScene(c, 2, [&](PictureSpec& spec, size_t k) {
        spec.origin = k == 0 ? origin : otherOrigin;
        if (isMany) spec.channels = 6;
        if (k == 0) {
            first = spec;
            return;
        }
        beDepth(spec, toDepth);
        if (size == Size::EQUAL) beAsLargeAs(spec, first);
    });
}

// ---- results -------------------------------------------------------------------------------------------------------

TEST(Depth, convertMatchesModel)
{
    startReports();
    for (const int32_t toDepth : wideDepths) {
        Axes axes = depthAxes(wideDepths, { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI }, 1000);
        axes.orders.push_back(Order::MIXED);
        axes.seed = static_cast<uint64_t>(depthBits(toDepth));
        SCOPED_TRACE(std::string("to ") + depthName(toDepth));
        forEachCase(axes, [&](const Case& c) {
            const Scene got = makePair(c, toDepth, Size::EQUAL, Origins::ANY), want = got.copy();
            modelConvert(want[0], want[1]);
            EXPECT_EQ(pxkConvert(got[0], got[1]), PXK_StsOk);
            EXPECT_TRUE(sameScene(want, got));
            expectNoReports();
        });
    }
}

TEST(Depth, convertToBitsMatchesModel)
{
    startReports();
    std::vector<int32_t> sources = wideDepths;
    sources.push_back(PXK_DEPTH_1U);
    Axes axes = depthAxes(sources, { Channels::ONE, Channels::COI }, 3000);
    forEachCase(axes, [&](const Case& c) {
        const Scene got = makePair(c, PXK_DEPTH_1U, Size::EQUAL, Origins::ANY), want = got.copy();
        modelConvert(want[0], want[1]);
        EXPECT_EQ(pxkConvert(got[0], got[1]), PXK_StsOk);
        EXPECT_TRUE(sameScene(want, got));
        expectNoReports();
    });
}

TEST(Depth, scaleMatchesModel)
{
    startReports();
    for (const int32_t toDepth : wideDepths) {
        std::vector<int32_t> sources;
        for (const int32_t depth : wideDepths) {
            if (depth != toDepth) sources.push_back(depth);
        }
        Axes axes = depthAxes(sources, { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::UNLIKE }, 800);
        SCOPED_TRACE(std::string("to ") + depthName(toDepth));
        const auto run = [&](const Case& c) {
            const Scene got = makePair(c, toDepth, Size::ANY, Origins::EQUAL), want = got.copy();
            modelScale(want[0], want[1]);
            EXPECT_EQ(pxkScale(got[0], got[1]), PXK_StsOk);
            EXPECT_TRUE(sameScene(want, got));
            expectNoReports();
        };
        forEachCase(axes, run);
        axes.channels = { Channels::ONE };
        axes.orders = { Order::MIXED };
        axes.count = 50;
        forEachCase(axes, run);
    }
}

struct Ends {
    float low, high;
};

const Ends someEnds[] = {
    { 0, 1 }, { 0, 255 }, { -1, 1 }, { -128, 127 }, { 0.1f, 0.7f }, { -3e5f, 2e4f }, { 100, 101 }
};

TEST(Depth, scaleToFloatMatchesModel)
{
    startReports();
    Axes axes = depthAxes(wideDepths, { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::UNLIKE }, 2000);
    forEachCase(axes, [&](const Case& c) {
        const Ends ends = Random(c.seed).oneOf(someEnds);
        const Scene got = makePair(c, PXK_DEPTH_32F, Size::ANY, Origins::EQUAL), want = got.copy();
        EXPECT_EQ(pxkScaleFP(got[0], got[1], ends.low, ends.high), PXK_StsOk);
        modelScaleFP(want[0], want[1], got[1], ends.low, ends.high);
        EXPECT_TRUE(sameScene(want, got)) << ends.low << " to " << ends.high;
        expectNoReports();
    });
}

TEST(Depth, scaleFromFloatMatchesModel)
{
    startReports();
    for (const int32_t toDepth : wideDepths) {
        Axes axes =
            depthAxes({ PXK_DEPTH_32F }, { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::UNLIKE }, 500);
        SCOPED_TRACE(std::string("to ") + depthName(toDepth));
        forEachCase(axes, [&](const Case& c) {
            Random random(c.seed);
            const Ends ends = random.oneOf(someEnds);
            const Scene got = makePair(c, toDepth, Size::ANY, Origins::EQUAL);
            // Either floats of all kinds, or mostly such as lie inside.
            const float margin = (ends.high - ends.low) / 8;
            if (random.oneIn(2)) fillRange(got[0], random, ends.low - margin, ends.high + margin);
            const Scene want = got.copy();
            EXPECT_EQ(pxkScaleFP(got[0], got[1], ends.low, ends.high), PXK_StsOk);
            modelScaleFP(want[0], want[1], got[1], ends.low, ends.high);
            EXPECT_TRUE(sameScene(want, got)) << ends.low << " to " << ends.high;
            expectNoReports();
        });
    }
}

TEST(Depth, bitonalToGrayMatchesModel)
{
    startReports();
    for (const int32_t toDepth : wideDepths) {
        SCOPED_TRACE(std::string("to ") + depthName(toDepth));
        forEachCase(depthAxes({ PXK_DEPTH_1U }, { Channels::ONE }, 400), [&](const Case& c) {
            Random random(c.seed);
            const int32_t low = int32_t(depthMin(toDepth)), high = int32_t(depthMax(toDepth));
            const int32_t levels[] = { low, high, 0, 1, 77, 127 };
            const int32_t zero = random.oneOf(levels), one = random.oneOf(levels);
            Case plain = c;
            plain.channels = random.oneIn(2) ? Channels::COI : Channels::ONE;
            const Scene got = [&] { // a channel of interest of the destination alone
                PictureSpec first;
                return makeScene(plain, 2, [&](PictureSpec& spec, size_t k) {
                    spec.origin = random.below(2);
                    if (k == 0) beDepth(spec, PXK_DEPTH_1U);
                    if (k == 0) first = spec;
                    if (k == 1) spec.depth = toDepth;
                    if (k == 1) beAsLargeAs(spec, first);
                });
            }();
            const Scene want = got.copy();
            modelBitonalToGray(want[0], want[1], zero, one);
            EXPECT_EQ(pxkBitonalToGray(got[0], got[1], zero, one), PXK_StsOk);
            EXPECT_TRUE(sameScene(want, got)) << zero << " " << one;
            expectNoReports();
        });
    }
}

// ---- every sample, ends, known answers -----------------------------------------------------------------------------

// All samples of 8 and 16 bits; samples of 32 bits around the places where a result changes.
PicturePtr pictureOfAllSamples(int32_t depth)
{
    PicturePtr picture = Picture::make(PictureSpec(depth, 256, 256));
    for (int32_t i = 0; i < 65536; ++i) {
        const uint32_t bits = static_cast<uint32_t>(i);
        const uint32_t wide = (bits >> 3) * 0x80008u + (bits & 7) - 3;
        picture->setBits(i % 256, i / 256, 0, depthBits(depth) == 32 ? wide : bits & ((1u << depthBits(depth)) - 1));
    }
    return picture;
}

TEST(Depth, everySampleOfEveryPair)
{
    startReports();
    for (const int32_t fromDepth : wideDepths) {
        const PicturePtr source = pictureOfAllSamples(fromDepth);
        for (const int32_t toDepth : wideDepths) {
            if (fromDepth == toDepth) continue;
            const PicturePtr converted = Picture::make(PictureSpec(toDepth, 256, 256)), scaled = converted->copy();
            EXPECT_EQ(pxkConvert(*source, *converted), PXK_StsOk);
            EXPECT_EQ(pxkScale(*source, *scaled), PXK_StsOk);
            for (int32_t i = 0; i < 65536; ++i) {
                const int64_t x = source->value(i % 256, i / 256);
                ASSERT_EQ(converted->number(i % 256, i / 256), convertedSample(double(x), toDepth)) << x;
                ASSERT_EQ(scaled->value(i % 256, i / 256), scaledSample(fromDepth, toDepth, x))
                    << depthName(fromDepth) << " to " << depthName(toDepth) << " of " << x;
            }
            if (depthBits(toDepth) <= depthBits(fromDepth)) continue;
            const PicturePtr back = source->copy();
            back->setAll(0);
            EXPECT_EQ(pxkScale(*scaled, *back), PXK_StsOk);
            EXPECT_TRUE(samePicture(*source, *back)) << "widening is undone by narrowing";
        }
    }
    expectNoReports();
}

double scaledOne(int32_t fromDepth, double x, int32_t toDepth, Ends ends)
{
    const PicturePtr from = Picture::make(PictureSpec(fromDepth, 21, 1)),
                     to = Picture::make(PictureSpec(toDepth, 21, 1));
    from->setAll(x);
    EXPECT_EQ(pxkScaleFP(*from, *to, ends.low, ends.high), PXK_StsOk);
    for (int32_t i = 1; i < 21; ++i) EXPECT_EQ(to->bits(i, 0, 0), to->bits(0, 0, 0)) << x;
    return to->number(0, 0);
}

// However unlike the sizes of both ends are, or however close together they lie.
TEST(Depth, endsOfTheFloatRangeMeetThoseOfTheIntegers)
{
    const Ends hardEnds[] = { { 0, 1 },
                              { -1e8f, 1e-30f },
                              { -1e-30f, 1e8f },
                              { 16777214, 16777216 },
                              { 1, 1 + FLT_EPSILON },
                              { -FLT_MAX, FLT_MAX },
                              { 0, FLT_TRUE_MIN },
                              { -FLT_TRUE_MIN, FLT_TRUE_MIN },
                              { FLT_MIN, FLT_MAX },
                              { -0.3f, 0.1f } };
    const float infinity = std::numeric_limits<float>::infinity();
    startReports();
    for (const Ends& ends : hardEnds) {
        SCOPED_TRACE(std::to_string(ends.low) + " to " + std::to_string(ends.high));
        for (const int32_t depth : wideDepths) {
            const double low = double(depthMin(depth)), high = double(depthMax(depth));
            EXPECT_EQ(scaledOne(depth, low, PXK_DEPTH_32F, ends), ends.low);
            EXPECT_EQ(scaledOne(depth, high, PXK_DEPTH_32F, ends), ends.high);
            for (const float v : { ends.low, std::nextafter(ends.low, -infinity), -infinity, std::nanf("") }) {
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), low) << v;
            }
            for (const float v : { ends.high, std::nextafter(ends.high, infinity), infinity }) {
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), high) << v;
            }
        }
    }
    expectNoReports();
}

TEST(Depth, knownAnswers)
{
    startReports();
    const auto rounded = [](double v) { return scaledOne(PXK_DEPTH_32F, v, PXK_DEPTH_8U, { 0, 255 }); };
    EXPECT_EQ(rounded(2.5), 2);
    EXPECT_EQ(rounded(3.5), 4);
    EXPECT_EQ(rounded(253.5), 254);
    EXPECT_EQ(rounded(std::nextafter(2.5f, 3.0f)), 3);
    EXPECT_EQ(scaledOne(PXK_DEPTH_32F, 0, PXK_DEPTH_16S, { -1, 1 }), 0);  // -0.5
    EXPECT_EQ(scaledOne(PXK_DEPTH_32F, 0, PXK_DEPTH_8U, { -1, 1 }), 128); // 127.5
    EXPECT_EQ(scaledOne(PXK_DEPTH_32F, 0, PXK_DEPTH_32S, { -1, 1 }), 0);  // -0.5
    EXPECT_EQ(scaledOne(PXK_DEPTH_8U, 51, PXK_DEPTH_32F, { 0, 1 }), double(0.2f));
    EXPECT_EQ(scaledOne(PXK_DEPTH_16S, 0, PXK_DEPTH_32F, { -32768, 32767 }), 0);

    const auto one = [](int32_t fromDepth, int64_t x, int32_t toDepth, int32_t (*operation)(PxkImage*, PxkImage*)) {
        const PicturePtr from = Picture::make(PictureSpec(fromDepth, 3, 1)),
                         to = Picture::make(PictureSpec(toDepth, 3, 1));
        from->setAll(double(x));
        EXPECT_EQ(operation(*from, *to), PXK_StsOk);
        return to->value(2, 0);
    };
    EXPECT_EQ(one(PXK_DEPTH_8U, 255, PXK_DEPTH_16U, pxkScale), 65535);
    EXPECT_EQ(one(PXK_DEPTH_16U, 65535, PXK_DEPTH_8U, pxkScale), 255);
    EXPECT_EQ(one(PXK_DEPTH_16U, 0, PXK_DEPTH_8U, pxkScale), 0);
    EXPECT_EQ(one(PXK_DEPTH_8S, -128, PXK_DEPTH_16S, pxkScale), -32768);
    EXPECT_EQ(one(PXK_DEPTH_8S, 127, PXK_DEPTH_16S, pxkScale), 32767);
    EXPECT_EQ(one(PXK_DEPTH_16S, 32767, PXK_DEPTH_8S, pxkScale), 127);
    EXPECT_EQ(one(PXK_DEPTH_16U, 33023, PXK_DEPTH_8U, pxkScale), 128); // a plain shift and a rounding one differ
    EXPECT_EQ(one(PXK_DEPTH_32S, INT32_MAX, PXK_DEPTH_16U, pxkScale), 65535);
    EXPECT_EQ(one(PXK_DEPTH_32S, INT32_MIN, PXK_DEPTH_8U, pxkScale), 0);
    EXPECT_EQ(one(PXK_DEPTH_16S, -1, PXK_DEPTH_8U, pxkConvert), 0);
    EXPECT_EQ(one(PXK_DEPTH_16S, -1, PXK_DEPTH_16U, pxkConvert), 0);
    EXPECT_EQ(one(PXK_DEPTH_8S, -1, PXK_DEPTH_32S, pxkConvert), -1);
    EXPECT_EQ(one(PXK_DEPTH_16S, -1, PXK_DEPTH_1U, pxkConvert), 0);
    EXPECT_EQ(one(PXK_DEPTH_16U, 65535, PXK_DEPTH_1U, pxkConvert), 1);
    expectNoReports();
}

// Infinite ends are no refusal; every result is then a sample of the depth, whatever it is.
TEST(Depth, infiniteEnds)
{
    const float infinity = std::numeric_limits<float>::infinity();
    startReports();
    for (const Ends& ends : { Ends { -infinity, 0 }, Ends { 0, infinity }, Ends { std::nanf(""), 1 } }) {
        for (const int32_t depth : wideDepths) {
            for (const float v : { 0.0f, 3.0f, FLT_MAX, infinity, -infinity }) {
                EXPECT_EQ(scaledOne(PXK_DEPTH_32F, v, depth, ends), double(depthMin(depth)));
            }
            scaledOne(depth, 3, PXK_DEPTH_32F, ends);
        }
    }
    expectNoReports();
}

// Two headers of one width over the same pixels.
TEST(Depth, inPlace)
{
    const PicturePtr picture = pictureOfAllSamples(PXK_DEPTH_16U), want = picture->copy();
    PxkImage asSigned = picture->header;
    asSigned.depth = PXK_DEPTH_16S;
    for (int32_t i = 0; i < 65536; ++i) want->setBits(i % 256, i / 256, 0, static_cast<uint32_t>(i) ^ 0x8000);
    EXPECT_EQ(pxkScale(*picture, &asSigned), PXK_StsOk);
    EXPECT_TRUE(samePicture(*want, *picture));
}

// ---- refusals ------------------------------------------------------------------------------------------------------

using Operation = std::function<int32_t(PxkImage*, PxkImage*)>;

// What the picture would be refused for, the way it is refused, and that nothing was written.
void expectRefusal(const char* func, const Operation& operation, Picture* src, Picture* dst, const Report& report,
                   int32_t status)
{
    SCOPED_TRACE(report.context);
    const PicturePtr want = dst != nullptr ? dst->copy() : nullptr;
    startReports();
    EXPECT_EQ(operation(src != nullptr ? &src->header : nullptr, dst != nullptr ? &dst->header : nullptr), status);
    expectReports({ { report.status, func, report.context } });
    if (dst == nullptr) return;
    EXPECT_TRUE(samePicture(*want, *dst));
}

void expectBadArgument(const char* func, const Operation& operation, const PicturePtr& src, const PicturePtr& dst,
                       const char* text)
{
    expectRefusal(func, operation, src.get(), dst.get(), { PXK_StsBadArg, "", text }, PXK_StsBadArg);
}

// A null or faulty header; `own`: the header check's status is returned.
void expectHeaderRefusals(const char* func, const Operation& operation, bool isOwnReturned)
{
    const PicturePtr good = Picture::make(PictureSpec(PXK_DEPTH_32F, 5, 5, 3)), bad = good->copy();
    bad->header.align = 5;
    bad->freeze();
    const auto returned = [&](int32_t status) { return isOwnReturned ? status : PXK_StsBadArg; };
    expectRefusal(func, operation, nullptr, bad.get(), { -9, "", "Incorrect Image" }, returned(-9));
    expectRefusal(func, operation, bad.get(), nullptr, { -21, "", "Incorrect Image" }, returned(-21));
    expectRefusal(func, operation, good.get(), nullptr, { -9, "", "Incorrect Image" }, returned(-9));
    expectRefusal(func, operation, good.get(), bad.get(), { -21, "", "Incorrect Image" }, returned(-21));
}

PicturePtr make(int32_t depth, int32_t width = 9, int32_t height = 4, int32_t channels = 1,
                int32_t order = PXK_DATA_ORDER_PIXEL)
{
    return Picture::make(PictureSpec(depth, width, height, channels, order));
}

// Each call breaks one rule and all later ones.
TEST(Depth, convertRefusals)
{
    const char* const name = "pxkConvert";
    expectHeaderRefusals(name, pxkConvert, true);
    const auto expect = [&](const PicturePtr& src, const PicturePtr& dst, const char* text) {
        expectBadArgument(name, pxkConvert, src, dst, text);
    };
    const PicturePtr bits = make(PXK_DEPTH_1U), rgb = make(PXK_DEPTH_8U, 9, 4, 3);
    expect(make(PXK_DEPTH_32F, 5, 5, 3), make(PXK_DEPTH_32F), "(srcImage->depth == 32)");
    expect(make(PXK_DEPTH_1U, 5, 5), make(PXK_DEPTH_32F, 9, 4, 3), "(dstImage->depth == 32)");
    expect(make(PXK_DEPTH_8U, 5, 5, 3), bits, "(srcImage->height != dstImage->height)");
    expect(make(PXK_DEPTH_8U, 5, 4, 3), bits, "(srcImage->width != dstImage->width)");
    expect(rgb, bits, "(srcImage->roi == 0)");
    rgb->setRegion(1, 1, 4, 2);
    expect(rgb, bits, "(srcImage->roi->coi == 0)");
    expect(bits, rgb, "srcImage->nChannels != dstImage->nChannels");
    expect(bits, make(PXK_DEPTH_8U), "((srcImage->depth == 1) && (srcImage->depth != dstImage->depth))");
    rgb->setRegion(1, 1, 4, 2, 2);
    expect(rgb, make(PXK_DEPTH_16U, 9, 4, 3), "(srcChannels != dstChannels)");
    EXPECT_EQ(pxkConvert(*rgb, *bits), PXK_StsOk);
    // The same header twice is not even looked at.
    PxkImage nothing = {};
    EXPECT_EQ(pxkConvert(&nothing, &nothing), PXK_StsOk);
    EXPECT_EQ(pxkConvert(*make(PXK_DEPTH_32F), nullptr), PXK_StsNullHeader);
    expectReports({ { PXK_StsNullHeader, name, "Incorrect Image" } });
}

// The layout checks that both scalings share; the destination's depth must suit the source's.
void expectLayoutRefusals(const char* name, const Operation& operation, int32_t from, int32_t to)
{
    const char* const orders =
        "((srcImage->dataOrder != dstImage->dataOrder)&& ((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))";
    const PicturePtr src = make(from, 9, 4, 2), dst = make(to, 9, 4, 3, PXK_DATA_ORDER_PLANE);
    dst->header.origin = 1;
    dst->freeze();
    expectBadArgument(name, operation, src, dst, orders);
    const PicturePtr gray = make(to, 9, 4, 1, PXK_DATA_ORDER_PLANE);
    gray->header.origin = 1;
    gray->freeze();
    expectBadArgument(name, operation, src, gray, "(srcImage->origin != dstImage->origin)");
}

TEST(Depth, scaleRefusals)
{
    const char* const name = "pxkScale";
    expectHeaderRefusals(name, pxkScale, false);
    const auto expect = [&](const PicturePtr& src, const PicturePtr& dst, const char* text) {
        expectBadArgument(name, pxkScale, src, dst, text);
    };
    const PicturePtr bits = make(PXK_DEPTH_1U), real = make(PXK_DEPTH_32F, 9, 4, 2), gray = make(PXK_DEPTH_8U);
    expect(bits, make(PXK_DEPTH_1U), "(srcImage->depth == dstImage->depth)");
    expect(real, real, "(srcImage->depth == dstImage->depth)");
    expect(bits, real, "(srcImage->depth == 1)");
    expect(real, bits, "(srcImage->depth == 32)");
    expect(gray, bits, "(dstImage->depth == 1)");
    expect(gray, real, "(dstImage->depth == 32)");
    expectLayoutRefusals(name, pxkScale, PXK_DEPTH_8U, PXK_DEPTH_16S);
    expect(gray, make(PXK_DEPTH_16S, 9, 4, 3), "(srcChannels != dstChannels)");
}

TEST(Depth, scaleFloatRefusals)
{
    const char* const name = "pxkScaleFP";
    const Operation backward = [](PxkImage* s, PxkImage* d) { return pxkScaleFP(s, d, 1, 1); };
    const Operation forward = [](PxkImage* s, PxkImage* d) { return pxkScaleFP(s, d, 0, 1); };
    expectHeaderRefusals(name, backward, false);
    const PicturePtr bits = make(PXK_DEPTH_1U), gray = make(PXK_DEPTH_8U), real = make(PXK_DEPTH_32F, 9, 4, 2);
    expectBadArgument(name, backward, bits, gray, "((srcImage->depth != 32)&& (dstImage->depth != 32))");
    expectBadArgument(name, backward, real, real, "((srcImage->depth == 32)&& (dstImage->depth == 32))");
    expectBadArgument(name, backward, real, bits, "((srcImage->depth == 1)|| (dstImage->depth == 1))");
    expectBadArgument(name, backward, bits, real, "((srcImage->depth == 1)|| (dstImage->depth == 1))");
    expectLayoutRefusals(name, backward, PXK_DEPTH_16U, PXK_DEPTH_32F);
    expectBadArgument(name, backward, real, gray, "((maxVal - minVal) <= 0.0f)");
    expectBadArgument(name, forward, real, gray, "(srcChannels != dstChannels)");
}

TEST(Depth, bitonalRefusals)
{
    const char* const name = "pxkBitonalToGray";
    const auto withLevels = [](int32_t zero, int32_t one) -> Operation {
        return [=](PxkImage* s, PxkImage* d) { return pxkBitonalToGray(s, d, zero, one); };
    };
    const Operation wild = withLevels(INT32_MAX, INT32_MIN);
    expectHeaderRefusals(name, wild, true);
    const PicturePtr bits = make(PXK_DEPTH_1U), real = make(PXK_DEPTH_32F);
    expectBadArgument(name, wild, make(PXK_DEPTH_8U, 5, 5, 3), real, "(srcImage->height != dstImage->height)");
    expectBadArgument(name, wild, make(PXK_DEPTH_8U, 5, 4, 3), real, "(srcImage->width != dstImage->width)");
    expectBadArgument(name, wild, make(PXK_DEPTH_8U, 9, 4, 3), real, "(srcImage->nChannels != 1)");
    expectBadArgument(name, wild, make(PXK_DEPTH_8U), real, "(srcImage->depth != 1)");
    expectBadArgument(name, wild, bits, real, "(dstImage->depth == 32)");
    expectBadArgument(name, wild, bits, make(PXK_DEPTH_1U), "(dstImage->depth == 1)");

    const struct {
        int32_t depth, low, high;
        std::string word;
    } ranges[] = { { PXK_DEPTH_8S, -128, 127, "(0x80000000| 8)" },
                   { PXK_DEPTH_8U, 0, 255, "8" },
                   { PXK_DEPTH_16S, -32768, 32767, "(0x80000000|16)" },
                   { PXK_DEPTH_16U, 0, 65535, "16" } };
    for (const auto& r : ranges) {
        const PicturePtr dst = make(r.depth, 9, 4, 3);
        const auto text = [&](const char* level, const char* than, int32_t end) {
            return "((dstImage->depth == " + r.word + ") && (" + level + " " + than + " " + std::to_string(end) + "))";
        };
        const auto expect = [&](int32_t zero, int32_t one, const std::string& expected) {
            expectBadArgument(name, withLevels(zero, one), bits, dst, expected.c_str());
        };
        expect(r.high + 1, r.high + 1, text("ZeroScale", ">", r.high));
        expect(r.low - 1, r.high + 1, text("ZeroScale", "<", r.low));
        expect(r.low, r.high + 1, text("OneScale", ">", r.high));
        expect(r.high, r.low - 1, text("OneScale", "<", r.low));
        expect(r.high, r.low, "(srcChannels != dstChannels)");
    }
    startReports();
    EXPECT_EQ(pxkBitonalToGray(*bits, *make(PXK_DEPTH_32S), INT32_MIN, INT32_MAX), PXK_StsOk);
    expectNoReports();
}

TEST(Depth, nothingToDoAndStaleStatus)
{
    const PicturePtr gray = make(PXK_DEPTH_8U), wide = make(PXK_DEPTH_16U), want = wide->copy();
    startReports();
    gray->setRegion(9, 0, 3, 3);
    EXPECT_EQ(pxkScale(*gray, *wide), PXK_StsOk);
    EXPECT_TRUE(samePicture(*want, *wide));
    expectNoReports();
    gray->setRegion(0, 0, 9, 4);
    gray->setAll(1);
    pxkSetErrStatus(-77);
    EXPECT_EQ(pxkScale(*gray, *wide), PXK_StsOk);
    EXPECT_EQ(pxkGetErrStatus(), -77);
    want->setAll(257);
    EXPECT_TRUE(samePicture(*want, *wide));
}

TEST(Depth, refusedTiles)
{
    const auto expectRefusedTiles = [](const Scene& scene, const char* func, const Operation& operation,
                                       const std::function<void(Scene&)>& model) {
        const auto run = [&](Scene& s) {
            const int32_t status = operation(s[0], s[1]);
            EXPECT_EQ(status, pxkGetErrStatus());
        };
        expectEachRefusedTileReported(scene, { func, { "srcImage", "dstImage" }, run, model, "NULL" });
    };
    Case c;
    for (c.seed = 1; c.seed <= 6; ++c.seed) {
        c.tiling = c.seed % 2 == 0 ? ALL_IMAGES : c.seed % 3 + 1;
        c.masks = c.seed > 3 ? ALL_IMAGES : 0;
        const auto pair = [&](int32_t from, int32_t to, Origins origins) {
            Case own = c;
            own.depth = from;
            return makePair(own, to, Size::EQUAL, origins);
        };
        expectRefusedTiles(pair(PXK_DEPTH_16S, PXK_DEPTH_8U, Origins::ANY), "pxkConvert", pxkConvert,
                           [](Scene& s) { modelConvert(s[0], s[1]); });
        expectRefusedTiles(pair(PXK_DEPTH_8U, PXK_DEPTH_1U, Origins::ANY), "pxkConvert", pxkConvert,
                           [](Scene& s) { modelConvert(s[0], s[1]); });
        expectRefusedTiles(pair(PXK_DEPTH_8U, PXK_DEPTH_16S, Origins::EQUAL), "pxkScale", pxkScale,
                           [](Scene& s) { modelScale(s[0], s[1]); });
        expectRefusedTiles(
            pair(PXK_DEPTH_1U, PXK_DEPTH_8U, Origins::EQUAL), "pxkBitonalToGray",
            [](PxkImage* s, PxkImage* d) { return pxkBitonalToGray(s, d, 7, 200); },
            [](Scene& s) { modelBitonalToGray(s[0], s[1], 7, 200); });
    }
}

} // namespace
