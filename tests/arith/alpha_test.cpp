#include "reference/alpha.h"

#include <cmath>

#include "support/cases.h"
#include "support/refused_tiles.h"
#include "support/reports.h"

static Axes alphaAxes(std::vector<int32_t> depths, size_t images, size_t count)
{
    Axes axes;
    axes.depths = std::move(depths);
    if (images == 1) axes.masks = axes.tilings = { 0, 1 };
    if (images == 2) axes.masks = axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    if (images == 3)
        axes.places = { InPlace::NO, InPlace::FIRST, InPlace::SECOND, InPlace::ALL, InPlace::OTHER_HEADER };
    axes.count = count;
    return axes;
}

static void addAlpha(PictureSpec& spec)
{
    if (spec.hasAlpha) return;
    ++spec.channels;
    spec.hasAlpha = true;
}

// ---- scaled products -----------------------------------------------------------------------------------------------

TEST(MultiplyScale, matchesModel)
{
    startReports();
    forEachCase(alphaAxes({ PXK_DEPTH_8U, PXK_DEPTH_16U }, 3, 1500), [](const Case& c) {
        Scene got = makeScene(c, 3), want = got.copy();
        modelMultiplyScale(want[0], want[1], want[2]);
        pxkMultiplyScale(got[0], got[1], got[2]);
        EXPECT_TRUE(sameScene(want, got));
        expectNoReports();
    });
}

TEST(MultiplyScale, constantMatchesModel)
{
    startReports();
    Axes axes = alphaAxes({ PXK_DEPTH_8U, PXK_DEPTH_16U }, 2, 1500);
    axes.places = { InPlace::NO, InPlace::FIRST };
    forEachCase(axes, [](const Case& c) {
        const int32_t values[] = { 0, 1, 127, 254, 255, 256, 32767, 65534, 65535, 65536, -1, INT32_MIN, INT32_MAX };
        const int32_t value = Random(c.seed).oneOf(values);
        Scene got = makeScene(c, 2), want = got.copy();
        modelMultiplySScale(want[0], want[1], value);
        pxkMultiplySScale(got[0], got[1], value);
        EXPECT_TRUE(sameScene(want, got)) << value;
        expectNoReports();
    });
}

// At 8 bits all products; at 16 those next to the middle between two results.
TEST(MultiplyScale, rounds)
{
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        const PicturePtr a = Picture::make(PictureSpec(depth, 256, 256)), b = Picture::make(a->spec);
        const PicturePtr got = Picture::make(a->spec);
        Random random(7);
        for (int32_t y = 0; y < 256; ++y) {
            for (int32_t x = 0; x < 256; ++x) {
                const double second = depth == PXK_DEPTH_8U ? y : random.between(1, 65535);
                const double first = std::floor((random.between(0, 65534) + 0.5) * 65535 / second) + random.below(2);
                a->setNumber(x, y, 0, depth == PXK_DEPTH_8U ? x : std::min(first, 65535.0));
                b->setNumber(x, y, 0, second);
            }
        }
        const PicturePtr want = got->copy();
        modelMultiplyScale(*a, *b, *want);
        pxkMultiplyScale(*a, *b, *got);
        EXPECT_TRUE(samePicture(*want, *got));
    }
}

// ---- premultiplication ---------------------------------------------------------------------------------------------

TEST(PreMultiplyAlpha, matchesModel)
{
    startReports();
    Axes axes = alphaAxes({ PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32F }, 1, 3000);
    forEachCase(axes,
                [](const Case& c) {
                    const int32_t values[] = { 0,     1,         100, 254, 255, 256, 40000,    65535,
                                               65536, INT32_MAX, -1,  -1,  -1,  -1,  INT32_MIN };
                    const int32_t alphaValue = Random(c.seed).oneOf(values);
                    const bool isWide = c.seed % 5 == 0; // more channels than one kernel takes operands
                    const auto adjust = [&](PictureSpec& spec, size_t) {
                        if (isWide && !spec.hasAlpha) spec.channels = 25;
                        if (alphaValue < 0) addAlpha(spec);
                    };
                    Scene got = makeScene(c, 1, adjust), want = got.copy();
                    modelPreMultiplyAlpha(want[0], alphaValue);
                    pxkPreMultiplyAlpha(got[0], alphaValue);
                    EXPECT_TRUE(sameScene(want, got)) << alphaValue;
                    expectNoReports();
                });
}

// ---- composition ---------------------------------------------------------------------------------------------------

TEST(AlphaComposite, matchesModel)
{
    startReports();
    forEachCase(alphaAxes({ PXK_DEPTH_8U, PXK_DEPTH_16U }, 3, 6000), [](const Case& c) {
        Random random(c.seed);
        const Composition how = { random.below(6), random.oneIn(2), false, 0, 0 };
        const bool isWide = random.oneIn(6) && (c.channels == Channels::ALPHA || c.channels == Channels::THREE);
        const int32_t colours = random.between(4, 7); // more than one kernel takes
        const auto adjust = [&](PictureSpec& spec, size_t k) {
            if (isWide) spec.channels = colours + (spec.hasAlpha ? 1 : 0);
            if (k < 2) addAlpha(spec);
        };
        Scene got = makeScene(c, 3, adjust), want = got.copy();
        modelAlphaComposite(want[0], want[1], want[2], how);
        const int32_t flag = how.isPremultiplied ? (random.oneIn(2) ? 1 : INT32_MIN) : 0;
        pxkAlphaComposite(got[0], got[1], got[2], how.type, flag);
        EXPECT_TRUE(sameScene(want, got)) << "type " << how.type << ", premultiplied " << flag;
        expectNoReports();
    });
}

TEST(AlphaComposite, constantsMatchModel)
{
    startReports();
    forEachCase(alphaAxes({ PXK_DEPTH_8U, PXK_DEPTH_16U }, 3, 3000), [](const Case& c) {
        Random random(c.seed);
        const int32_t largest = static_cast<int32_t>(depthMax(c.depth));
        const int32_t values[] = { 0,           1,  largest / 2, largest - 1, largest,
                                   largest + 1, -1, INT32_MIN,   INT32_MAX,   random.between(0, largest) };
        const Composition how = { random.below(6), random.oneIn(2), true, random.oneOf(values), random.oneOf(values) };
        Scene got = makeScene(c, 3), want = got.copy();
        modelAlphaComposite(want[0], want[1], want[2], how);
        pxkAlphaCompositeC(got[0], got[1], got[2], how.type, static_cast<int32_t>(how.alphaA),
                           static_cast<int32_t>(how.alphaB), how.isPremultiplied ? 1 : 0);
        EXPECT_TRUE(sameScene(want, got)) << "type " << how.type << ", premultiplied " << how.isPremultiplied
                                          << ", alphas " << how.alphaA << " and " << how.alphaB;
        expectNoReports();
    });
}

// Every pair of 8-bit alphas, and the same in the high bytes of 16-bit ones, under colours of all kinds; rows longer
// than any block that is taken at a time.
static void testAllPairsOfAlphas(int32_t depth, int32_t order)
{
    const PictureSpec spec = PictureSpec(depth, 2048, 32, 4, order).withAlpha();
    const PicturePtr a = Picture::make(spec, 1), b = Picture::make(spec, 2);
    Random random(3);
    for (int32_t i = 0; i < 65536; ++i) {
        const int32_t x = i % 2048, y = i / 2048, alphaA = i % 256, alphaB = i / 256;
        a->setNumber(x, y, 3, depth == PXK_DEPTH_8U ? alphaA : 256 * alphaA + random.below(256));
        b->setNumber(x, y, 3, depth == PXK_DEPTH_8U ? alphaB : 256 * alphaB + random.below(256));
    }
    for (int32_t type = 0; type < 6; ++type) {
        const PicturePtr got = Picture::make(spec, 4), want = got->copy();
        modelAlphaComposite(*a, *b, *want, { type, false, false, 0, 0 });
        pxkAlphaComposite(*a, *b, *got, type, 0);
        ASSERT_TRUE(samePicture(*want, *got)) << "type " << type;
        modelAlphaComposite(*a, *b, *want, { type, false, true, 100, 77 });
        pxkAlphaCompositeC(*a, *b, *got, type, 100, 77, 0);
        ASSERT_TRUE(samePicture(*want, *got)) << "constants, type " << type;
    }
}

TEST(AlphaComposite, allPairsOfAlphas)
{
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        for (const int32_t order : { PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE }) testAllPairsOfAlphas(depth, order);
    }
}

TEST(AlphaComposite, knownAnswers)
{
    const auto compose = [](int32_t a, int32_t b, int32_t alphaA, int32_t alphaB, int32_t type, int32_t premultiplied) {
        const PicturePtr x = Picture::make(PictureSpec(PXK_DEPTH_8U, 1, 1)), y = Picture::make(x->spec);
        const PicturePtr dst = Picture::make(PictureSpec(PXK_DEPTH_8U, 1, 1, 2).withAlpha());
        x->setNumber(0, 0, 0, a);
        y->setNumber(0, 0, 0, b);
        pxkAlphaCompositeC(*x, *y, *dst, type, alphaA, alphaB, premultiplied);
        return std::make_pair(dst->value(0, 0, 0), dst->value(0, 0, 1));
    };
    using Result = std::pair<int64_t, int64_t>;
    EXPECT_EQ(compose(200, 100, 255, 255, PXK_COMPOSITE_OVER, 0), Result(200, 255));
    EXPECT_EQ(compose(200, 100, 0, 255, PXK_COMPOSITE_OVER, 0), Result(100, 255));
    EXPECT_EQ(compose(200, 100, 0, 0, PXK_COMPOSITE_OVER, 0), Result(0, 0));
    // The alpha of the result is 1 / 65025 and rounds to 0, but its colour is still that of a.
    EXPECT_EQ(compose(200, 100, 1, 1, PXK_COMPOSITE_IN, 0), Result(200, 0));
    // Both limited before the division: 255 over 255.
    EXPECT_EQ(compose(255, 255, 200, 200, PXK_COMPOSITE_PLUS, 0), Result(255, 255));
    // (200 100 + 50 100) / (100 + 100)
    EXPECT_EQ(compose(200, 50, 100, 100, PXK_COMPOSITE_PLUS, 0), Result(125, 200));
    EXPECT_EQ(compose(200, 100, 255, 255, PXK_COMPOSITE_PLUS, 1), Result(255, 255));
    EXPECT_EQ(compose(200, 100, 255, 255, PXK_COMPOSITE_XOR, 1), Result(0, 0));
}

TEST(Alpha, refusedTiles)
{
    Case c;
    c.tiling = ALL_IMAGES;
    c.masks = 1;
    c.channels = Channels::ALPHA;
    const std::vector<std::string> three = { "srcImageA", "srcImageB", "dstImage" };
    for (c.seed = 1; c.seed <= 4; ++c.seed) {
        expectEachRefusedTileReported(makeScene(c, 3),
                                      { "pxkAlphaComposite", three,
                                        [](Scene& s) { pxkAlphaComposite(s[0], s[1], s[2], 0, 0); },
                                        [](Scene& s) {
                                            modelAlphaComposite(s[0], s[1], s[2], { 0, false, false, 0, 0 });
                                        } });
        expectEachRefusedTileReported(makeScene(c, 1),
                                      { "pxkPreMultiplyAlpha",
                                        { "image" },
                                        [](Scene& s) { pxkPreMultiplyAlpha(s[0], -1); },
                                        [](Scene& s) { modelPreMultiplyAlpha(s[0], -1); } });
        expectEachRefusedTileReported(makeScene(c, 3),
                                      { "pxkMultiplyScale", three, [](Scene& s) { pxkMultiplyScale(s[0], s[1], s[2]); },
                                        [](Scene& s) { modelMultiplyScale(s[0], s[1], s[2]); } });
        expectEachRefusedTileReported(makeScene(c, 2),
                                      { "pxkMultiplySScale",
                                        { "srcImage", "dstImage" },
                                        [](Scene& s) { pxkMultiplySScale(s[0], s[1], 99); },
                                        [](Scene& s) { modelMultiplySScale(s[0], s[1], 99); } });
    }
}

// Each call breaks one rule and all later ones that it can.
TEST(Alpha, refusals)
{
    const auto image = [](int32_t depth, int32_t channels, bool hasAlpha, int32_t order = PXK_DATA_ORDER_PIXEL) {
        PictureSpec spec(depth, 16, 8, channels, order);
        spec.hasAlpha = hasAlpha;
        return Picture::make(spec);
    };
    const PicturePtr gray = image(PXK_DEPTH_8U, 1, false), grayAlpha = image(PXK_DEPTH_8U, 2, true);
    const PicturePtr rgb = image(PXK_DEPTH_8U, 3, false), rgbAlpha = image(PXK_DEPTH_8U, 4, true);
    const PicturePtr planes = image(PXK_DEPTH_8U, 3, false, PXK_DATA_ORDER_PLANE);
    const PicturePtr wide = image(PXK_DEPTH_16U, 3, false), signedRgb = image(PXK_DEPTH_8S, 3, false);
    const PicturePtr signedGray = image(PXK_DEPTH_8S, 1, false);
    const PicturePtr want = rgb->copy(), wantAlpha = rgbAlpha->copy();
    startReports();
    const auto expect = [](const char* func, const char* text) { expectReports({ { PXK_StsBadArg, func, text } }); };

    pxkMultiplyScale(*rgb, nullptr, *signedGray);
    expectReports({ { PXK_StsNullHeader, "pxkMultiplyScale", "Incorrect Image" } });
    pxkMultiplyScale(*signedRgb, *wide, *gray);
    expect("pxkMultiplyScale", "(srcImageA->depth != 8) && (srcImageA->depth != 16)");
    pxkMultiplyScale(*wide, *signedRgb, *gray);
    expect("pxkMultiplyScale", "(srcImageA->depth != dstImage->depth)");
    pxkMultiplyScale(*planes, *wide, *gray);
    expect("pxkMultiplyScale", "(srcImageB->depth != dstImage->depth)");
    pxkMultiplyScale(*planes, *planes, *gray);
    expect("pxkMultiplyScale", "(srcImageA->dataOrder != dstImage->dataOrder)");
    pxkMultiplyScale(*rgb, *planes, *gray);
    expect("pxkMultiplyScale", "(srcImageB->dataOrder != dstImage->dataOrder)");
    pxkMultiplyScale(*rgb, *rgb, *gray);
    expect("pxkMultiplyScale", "(nChSrcA != nChDst)");
    pxkMultiplyScale(*gray, *rgb, *gray);
    expect("pxkMultiplyScale", "(nChSrcB != nChDst)");

    pxkMultiplySScale(*signedRgb, *gray, 1);
    expect("pxkMultiplySScale", "(srcImage->depth != 8) && (srcImage->depth != 16)");
    pxkMultiplySScale(*wide, *gray, 1);
    expect("pxkMultiplySScale", "(srcImage->depth != dstImage->depth)");
    pxkMultiplySScale(*planes, *gray, 1);
    expect("pxkMultiplySScale", "(srcImage->dataOrder != dstImage->dataOrder)");
    pxkMultiplySScale(*rgb, *gray, 1);
    expect("pxkMultiplySScale", "(nChSrc != nChDst)");

    pxkPreMultiplyAlpha(nullptr, -1);
    expectReports({ { PXK_StsNullHeader, "pxkPreMultiplyAlpha", "Incorrect Image" } });
    pxkPreMultiplyAlpha(*signedRgb, -1);
    expect("pxkPreMultiplyAlpha", "(image->depth != 8) && (image->depth != 16) && (image->depth != 32)");
    pxkPreMultiplyAlpha(*rgb, -1);
    expect("pxkPreMultiplyAlpha", "(image->alphaChannel == 0)");

    pxkAlphaComposite(*rgb, *rgb, nullptr, 6, 0);
    expectReports({ { PXK_StsNullHeader, "pxkAlphaComposite", "Incorrect Image" } });
    pxkAlphaComposite(*wide, *wide, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageA->depth != dstImage->depth)");
    pxkAlphaComposite(*planes, *wide, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageB->depth != dstImage->depth)");
    pxkAlphaComposite(*planes, *planes, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageA->dataOrder != dstImage->dataOrder)");
    pxkAlphaComposite(*rgb, *planes, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageB->dataOrder != dstImage->dataOrder)");
    pxkAlphaComposite(*signedRgb, *signedRgb, *signedGray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageA->depth != 8) && (srcImageA->depth != 16)");
    pxkAlphaComposite(*rgb, *rgb, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageA->alphaChannel == 0)");
    pxkAlphaComposite(*rgbAlpha, *rgb, *gray, 6, 0);
    expect("pxkAlphaComposite", "(srcImageB->alphaChannel == 0)");
    pxkAlphaComposite(*rgbAlpha, *rgbAlpha, *gray, 6, 0);
    expect("pxkAlphaComposite", "(nChSrcA != nChDst)");
    pxkAlphaComposite(*rgbAlpha, *grayAlpha, *rgb, -1, 0);
    expect("pxkAlphaComposite", "(nChSrcB != nChDst)");
    pxkAlphaComposite(*rgbAlpha, *rgbAlpha, *rgb, -1, 0);
    expect("pxkAlphaComposite", "(compositeType < 0) || (compositeType > 5)");
    pxkAlphaCompositeC(*rgb, *gray, *rgbAlpha, 6, 255, 255, 0);
    expect("pxkAlphaCompositeC", "(nChSrcB != nChDst)");
    pxkAlphaCompositeC(*rgb, *rgb, *rgbAlpha, 6, 255, 255, 0);
    expect("pxkAlphaCompositeC", "(compositeType < 0) || (compositeType > 5)");
    EXPECT_TRUE(samePicture(*want, *rgb));
    EXPECT_TRUE(samePicture(*wantAlpha, *rgbAlpha));
}
