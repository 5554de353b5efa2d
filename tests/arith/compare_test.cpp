#include "reference/compare.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include "support/cases.h"
#include "support/refused_tiles.h"
#include "support/reports.h"

static bool isLess(double a, double b)
{
    return a < b;
}
static bool isGreater(double a, double b)
{
    return a > b;
}
static bool isEqual(double a, double b)
{
    return a == b;
}

struct Comparison {
    const char* name;
    bool (*relation)(double, double);
    void (*images)(PxkImage*, PxkImage*, PxkImage*);
    void (*withValue)(PxkImage*, PxkImage*, int32_t);
    void (*withFloat)(PxkImage*, PxkImage*, float);
};

static const Comparison comparisons[] = { { "Less", isLess, pxkLess, pxkLessS, pxkLessSFP },
                                          { "Greater", isGreater, pxkGreater, pxkGreaterS, pxkGreaterSFP },
                                          { "Equal", isEqual, pxkEqual, pxkEqualS, pxkEqualSFP } };

static Axes compareAxes(size_t images, size_t count)
{
    Axes axes;
    axes.orders.push_back(Order::MIXED);
    if (images == 2) {
        axes.masks = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
        axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    }
    axes.count = count;
    return axes;
}

static void beBits(PictureSpec& spec)
{
    spec.depth = PXK_DEPTH_1U;
    spec.channels = 1;
    spec.hasAlpha = false;
    spec.roi.coi = spec.roi.coi != 0 ? 1 : 0;
}

// Sources and a one-bit destination. Images of noise are seldom equal, so b takes over most pixels of a.
static Scene makeCompareScene(const Case& c, size_t sources)
{
    const Scene scene = makeScene(c, sources + 1, [&](PictureSpec& spec, size_t k) {
        if (k == sources) beBits(spec);
    });
    if (sources < 2) return scene;
    Picture &a = scene[0], &b = scene[1];
    Random random(c.seed + 1);
    forEachSelected({ &a, &b }, [&](const Place* at) {
        if (!random.oneIn(3)) at[1].setBits(at[0].bits());
    });
    return scene;
}

static double sampleOf(const Picture& p, Random& random)
{
    return p.number(random.below(p.spec.width), random.below(p.spec.height), random.below(p.spec.channels));
}

TEST(Compare, imagesMatchModel)
{
    startReports();
    for (const Comparison& comparison : comparisons) {
        SCOPED_TRACE(comparison.name);
        forEachCase(compareAxes(3, 1500), [&](const Case& c) {
            Scene got = makeCompareScene(c, 2), want = got.copy();
            modelCompare(want[0], &want[1], want[2], comparison.relation);
            comparison.images(got[0], got[1], got[2]);
            EXPECT_TRUE(sameScene(want, got));
            expectNoReports();
        });
    }
}

TEST(Compare, integersMatchModelWithAnyValue)
{
    startReports();
    Axes axes = compareAxes(2, 1500);
    axes.depths.pop_back();
    for (const Comparison& comparison : comparisons) {
        SCOPED_TRACE(comparison.name);
        forEachCase(axes, [&](const Case& c) {
            Scene got = makeCompareScene(c, 1), want = got.copy();
            Random random(c.seed);
            const double values[] = { double(depthMin(c.depth)),
                                      double(depthMax(c.depth)),
                                      depthMin(c.depth) - 1.0,
                                      depthMax(c.depth) + 1.0,
                                      INT32_MIN,
                                      INT32_MAX,
                                      sampleOf(got[0], random),
                                      sampleOf(got[0], random) };
            const double chosen = random.oneOf(values);
            const int32_t value =
                static_cast<int32_t>(std::min<double>(INT32_MAX, std::max<double>(INT32_MIN, chosen)));
            SCOPED_TRACE(value);
            modelCompare(want[0], nullptr, want[1], comparison.relation, value);
            comparison.withValue(got[0], got[1], value);
            EXPECT_TRUE(sameScene(want, got));
            expectNoReports();
        });
    }
}

TEST(Compare, floatsMatchModelWithAnyValue)
{
    startReports();
    Axes axes = compareAxes(2, 500);
    axes.depths = { PXK_DEPTH_32F };
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Comparison& comparison : comparisons) {
        SCOPED_TRACE(comparison.name);
        forEachCase(axes, [&](const Case& c) {
            Scene got = makeCompareScene(c, 1), want = got.copy();
            Random random(c.seed);
            const double values[] = { 0, -0.0, infinity, -infinity, std::nan(""), sampleOf(got[0], random), 1 };
            const float value = static_cast<float>(random.oneOf(values));
            modelCompare(want[0], nullptr, want[1], comparison.relation, value);
            comparison.withFloat(got[0], got[1], value);
            EXPECT_TRUE(sameScene(want, got)) << value;
            expectNoReports();
        });
    }
}

TEST(Compare, nearFloatsMatchModel)
{
    startReports();
    Axes axes = compareAxes(3, 500);
    axes.depths = { PXK_DEPTH_32F };
    forEachCase(axes, [&](const Case& c) {
        Random random(c.seed);
        // Differences of such samples are often the bound itself.
        Scene got = makeCompareScene(c, 2);
        if (random.oneIn(2)) fillRange(got[0], random, -3, 3);
        Scene want = got.copy();
        const float value = static_cast<float>(sampleOf(got[1], random));
        const double infinity = std::numeric_limits<double>::infinity();
        const double bounds[] = {
            0, 1, 2, FLT_MAX, infinity, std::fabs(sampleOf(got[0], random) - value), std::nan("")
        };
        const float chosen = static_cast<float>(random.oneOf(bounds));
        const float epsilon = chosen < 0 ? 0 : chosen;
        const auto isNear = [&](double a, double b) {
            const volatile double difference = a - b; // no more digits than a double has
            return std::fabs(difference) <= epsilon;
        };
        modelCompare(want[0], &want[1], want[2], isNear);
        pxkEqualFPEps(got[0], got[1], got[2], epsilon);
        EXPECT_TRUE(sameScene(want, got)) << epsilon;
        modelCompare(want[0], nullptr, want[2], isNear, value);
        // The second form knows two images, and the mask and size of those alone.
        pxkEqualSFPEps(got[0], got[2], value, epsilon);
        EXPECT_TRUE(sameScene(want, got)) << value << " " << epsilon;
        expectNoReports();
    });
}

TEST(Compare, bitsInPlace)
{
    startReports();
    for (const Comparison& comparison : comparisons) {
        Axes axes = compareAxes(3, 400);
        axes.depths = { PXK_DEPTH_1U };
        axes.channels = { Channels::ONE };
        axes.places = { InPlace::FIRST, InPlace::SECOND, InPlace::ALL, InPlace::OTHER_HEADER };
        forEachCase(axes, [&](const Case& c) {
            Scene got = makeScene(c, 3), want = got.copy();
            modelCompare(want[0], &want[1], want[2], comparison.relation);
            comparison.images(got[0], got[1], got[2]);
            EXPECT_TRUE(sameScene(want, got));
        });
    }
    expectNoReports();
}

// More channels than one kernel takes operands.
TEST(Compare, manyChannels)
{
    startReports();
    Axes axes = compareAxes(3, 300);
    axes.channels = { Channels::ONE };
    axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16S, PXK_DEPTH_32F };
    forEachCase(axes, [&](const Case& c) {
        for (const int32_t channels : { 5, 6, 23 }) {
            const auto many = [&](PictureSpec& spec, size_t k) {
                if (k == 2) return beBits(spec);
                spec.channels = channels;
            };
            Scene got = makeScene(c, 3, many);
            // One sample of a pixel decides.
            Random random(c.seed);
            got[0].setAll(3);
            got[1].setAll(3);
            for (int32_t n = 0; n < 20; ++n) {
                Picture& p = got[static_cast<size_t>(random.below(2))];
                p.setNumber(random.below(p.spec.width), random.below(p.spec.height), random.below(channels), 4);
            }
            Scene want = got.copy();
            modelCompare(want[0], &want[1], want[2], isEqual);
            pxkEqual(got[0], got[1], got[2]);
            EXPECT_TRUE(sameScene(want, got)) << channels;
            modelCompare(want[0], nullptr, want[2], isLess, 4);
            if (c.depth == PXK_DEPTH_32F) {
                pxkLessSFP(got[0], got[2], 4);
            } else {
                pxkLessS(got[0], got[2], 4);
            }
            EXPECT_TRUE(sameScene(want, got)) << channels;
        }
    });
    expectNoReports();
}

// Longer than any block that is taken at a time.
TEST(Compare, longRows)
{
    startReports();
    for (const int32_t channels : { 1, 3, 4 }) {
        PictureSpec spec(PXK_DEPTH_8U, 3000, 2, channels);
        spec.hasAlpha = channels == 4;
        const PicturePtr a = Picture::make(spec, 1), bits = Picture::make(PictureSpec(PXK_DEPTH_1U, 3000, 2), 2);
        a->setRegion(13, 0, 2900, 2);
        bits->setRegion(5, 0, 2950, 2);
        for (const bool isMasked : { false, true }) {
            if (isMasked) bits->setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 2990, 2), 3));
            const PicturePtr want = bits->copy();
            modelCompare(*a, nullptr, *want, isGreater, 20);
            pxkGreaterS(*a, *bits, 20);
            EXPECT_TRUE(samePicture(*want, *bits)) << channels << " channels, mask " << isMasked;
        }
    }
    expectNoReports();
}

TEST(Compare, knownAnswers)
{
    const auto bitOf = [](float a, float b, float epsilon) {
        const PicturePtr x = Picture::make(PictureSpec(PXK_DEPTH_32F, 1, 1)), y = Picture::make(x->spec);
        const PicturePtr bits = Picture::make(PictureSpec(PXK_DEPTH_1U, 1, 1));
        x->setNumber(0, 0, 0, a);
        y->setNumber(0, 0, 0, b);
        pxkEqualFPEps(*x, *y, *bits, epsilon);
        return bits->bits(0, 0, 0);
    };
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(bitOf(0.75f, 0.5f, 0.25f), 1u);
    EXPECT_EQ(bitOf(16777216, -1, 16777216), 0u); // a float would have lost the 1
    EXPECT_EQ(bitOf(1, -0x1p-54f, 1), 1u);        // a double is too short for the rest
    EXPECT_EQ(bitOf(FLT_MAX, -FLT_MAX, infinity), 1u);
    EXPECT_EQ(bitOf(infinity, infinity, infinity), 0u); // their difference is no number
    EXPECT_EQ(bitOf(std::nanf(""), std::nanf(""), infinity), 0u);
}

TEST(Compare, refusedTiles)
{
    Case c;
    c.tiling = ALL_IMAGES;
    c.masks = 1;
    c.channels = Channels::THREE;
    for (c.seed = 1; c.seed <= 6; ++c.seed) {
        const PointwiseCall images = { "pxkLess",
                                       { "srcImageA", "srcImageB", "dstImage" },
                                       [](Scene& s) { pxkLess(s[0], s[1], s[2]); },
                                       [](Scene& s) { modelCompare(s[0], &s[1], s[2], isLess); } };
        expectEachRefusedTileReported(makeCompareScene(c, 2), images);
        const PointwiseCall withValue = { "pxkEqualS",
                                          { "srcImage", "dstImage" },
                                          [](Scene& s) { pxkEqualS(s[0], s[1], 255); },
                                          [](Scene& s) { modelCompare(s[0], nullptr, s[1], isEqual, 255); } };
        expectEachRefusedTileReported(makeCompareScene(c, 1), withValue);
    }
}

// Each call breaks one rule and all later ones.
TEST(Compare, refusals)
{
    const PicturePtr gray = Picture::make(PictureSpec(PXK_DEPTH_8U)), bits = Picture::make(PictureSpec(PXK_DEPTH_1U));
    const PicturePtr rgb = Picture::make(PictureSpec(PXK_DEPTH_8U, 16, 8, 3));
    const PicturePtr real = Picture::make(PictureSpec(PXK_DEPTH_32F));
    const PicturePtr want = bits->copy(), wantGray = gray->copy();
    startReports();
    for (const Comparison& comparison : comparisons) {
        const std::string name = std::string("pxk") + comparison.name;
        const auto expect = [](const std::string& func, int32_t status, const std::string& text) {
            expectReports({ { status, func, text } });
        };
        comparison.images(nullptr, *rgb, *gray);
        expect(name, PXK_StsNullHeader, "Incorrect Image");
        comparison.images(*real, *rgb, nullptr);
        expect(name, PXK_StsNullHeader, "Incorrect Image");
        comparison.images(*real, *rgb, *gray);
        expect(name, PXK_StsBadArg, "(srcImageA->depth != srcImageB->depth)");
        comparison.images(*gray, *rgb, *gray);
        expect(name, PXK_StsBadArg, "(dstImage->depth != 1)");
        comparison.images(*gray, *rgb, *bits);
        expect(name, PXK_StsBadArg, "(nChSrcA != nChSrcB)");

        comparison.withValue(*real, nullptr, 0);
        expect(name + "S", PXK_StsNullHeader, "Incorrect Image");
        comparison.withValue(*real, *gray, 0);
        expect(name + "S", PXK_StsBadArg, "(dstImage->depth != 1)");
        comparison.withValue(*real, *bits, 0);
        expect(name + "S", PXK_StsBadArg, "For processing depth 32F use function " + name + "SFP");

        comparison.withFloat(nullptr, *gray, 0);
        expect(name + "SFP", PXK_StsNullHeader, "Incorrect Image");
        comparison.withFloat(*gray, *gray, 0);
        expect(name + "SFP", PXK_StsBadArg, "(dstImage->depth != 1)");
        comparison.withFloat(*gray, *bits, 0);
        expect(name + "SFP", PXK_StsBadArg, "For processing this depth use function " + name + "S");
    }
    pxkEqualFPEps(*gray, *rgb, *bits, -1);
    expectReports({ { PXK_StsBadArg, "pxkEqualFPEps", "(nChSrcA != nChSrcB)" } });
    pxkEqualFPEps(*gray, *gray, *bits, -1);
    expectReports({ { PXK_StsBadArg, "pxkEqualFPEps", "(srcImageA->depth != 32)" } });
    pxkEqualFPEps(*real, *real, *bits, -FLT_TRUE_MIN);
    expectReports({ { PXK_StsBadArg, "pxkEqualFPEps", "(epsilon < 0)" } });
    pxkEqualSFPEps(*gray, *gray, 0, -1);
    expectReports({ { PXK_StsBadArg, "pxkEqualSFPEps", "(dstImage->depth != 1)" } });
    pxkEqualSFPEps(*gray, *bits, 0, -1);
    expectReports({ { PXK_StsBadArg, "pxkEqualSFPEps", "(srcImage->depth != 32)" } });
    pxkEqualSFPEps(*real, *bits, 0, -1);
    expectReports({ { PXK_StsBadArg, "pxkEqualSFPEps", "(epsilon < 0)" } });
    EXPECT_TRUE(samePicture(*want, *bits));
    EXPECT_TRUE(samePicture(*wantGray, *gray));
}

// A region beside its image, or a mask without pixels, ends the call in silence; a stale status does not.
TEST(Compare, nothingToDoAndStaleStatus)
{
    const PicturePtr gray = Picture::make(PictureSpec(PXK_DEPTH_8U)), bits = Picture::make(PictureSpec(PXK_DEPTH_1U));
    const PicturePtr want = bits->copy();
    startReports();
    gray->setRegion(16, 0, 5, 5);
    pxkLessS(*gray, *bits, 300);
    EXPECT_TRUE(samePicture(*want, *bits));
    expectNoReports();
    gray->setRegion(0, 0, 16, 8);
    pxkSetErrStatus(-77);
    pxkLessS(*gray, *bits, 300);
    EXPECT_EQ(pxkGetErrStatus(), -77);
    want->setAll(1);
    EXPECT_TRUE(samePicture(*want, *bits));
}
