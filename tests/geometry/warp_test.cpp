// SPDX-License-Identifier: BSD-2-Clause
#include "reference/warp.h"

#include "support/cases.h"
#include "support/reports.h"

// Turns by right angles with whole shifts move pixels, under every interpolation and on tiles; the identity copies.
TEST(Rotate, rightAnglesMovePixels)
{
    Axes axes;
    axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    axes.masks = { 0, 0, 1, 2, ALL_IMAGES };
    axes.tilings = { 0, 0, 1, 2, ALL_IMAGES };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene got = makeScene(c, 2);
        const Window region = windowOf(got[0]), target = windowOf(got[1]);
        if (region.width < 2 || region.height < 2) return;
        const int32_t quarters = random.between(-5, 5);
        const int32_t cosine = quarters % 2 != 0 ? 0 : quarters % 4 == 0 ? 1 : -1;
        const int32_t sine = quarters % 2 == 0 ? 0 : ((quarters % 4) + 4) % 4 == 1 ? 1 : -1;
        // The region's middle comes somewhere near the destination's.
        const int64_t cx = region.x + region.width / 2, cy = region.y + region.height / 2;
        const int64_t xShift = target.x + random.below(int32_t(target.width)) - cx * cosine - cy * sine;
        const int64_t yShift = target.y + random.below(int32_t(target.height)) + cx * sine - cy * cosine;
        const Scene want = got.copy();
        forEachSelectedPixel({ &want[1] }, [&](int32_t i, int32_t j) {
            const int64_t dx = target.x + i - xShift, dy = target.y + j - yShift;
            const int64_t x = cosine * dx - sine * dy, y = sine * dx + cosine * dy;
            if (x < region.x || y < region.y || x >= region.x + region.width || y >= region.y + region.height) return;
            for (int32_t k = 0; k < target.channels; ++k) {
                want[1].setBits(int32_t(target.x) + i, int32_t(target.y) + j, target.firstChannel + k,
                                want[0].bits(int32_t(x), int32_t(y), region.firstChannel + k));
            }
        });
        startReports();
        pxkRotate(got[0], got[1], 90.0 * quarters, double(xShift), double(yShift),
                  random.oneOf({ 0, 1, 2, 16, 17, 18 }));
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got));
    });
}

// A shift is added each time, and the middle stays where it is.
TEST(Rotate, shiftsAddUp)
{
    double x = 1, y = 2;
    for (int32_t k = 0; k < 2; ++k) pxkGetRotateShift(10, 20, 450, &x, &y);
    EXPECT_EQ(x, 1 + 2 * (10 - 20));
    EXPECT_EQ(y, 2 + 2 * (20 + 10));
    pxkGetRotateShift(HUGE_VAL, 3, -720, &x, &y);
    EXPECT_EQ(x, -19);
}

template <class T> static void expectSame(const T& got, const T& want, double factor = 1)
{
    for (size_t i = 0; i < sizeof got / sizeof(double); ++i)
        EXPECT_NEAR((&got[0][0])[i] * factor, (&want[0][0])[i], 1e-12);
}

// Every quadrangle of a transform gives the transform back.
TEST(Warp, transformsOfQuadranglesReturn)
{
    const PicturePtr image = Picture::make(PictureSpec { PXK_DEPTH_8U, 40, 30 }.region(3, 4, 20, 11));
    double affine[2][3] = { { 0.5, 0.25, 1 }, { -1, 0.5, 3 } },
           bilinear[2][4] = { { 0.01, 1, 0.2, 3 }, { -0.02, 0, 1, 4 } };
    double perspective[3][3] = { { 1, 0.2, 3 }, { 0.1, 0.9, 5 }, { 0.003, 0.002, 0.9 } };
    double quad[4][2], bound[2][2], a[2][3], b[2][4], p[3][3];
    startReports();
    pxkGetAffineQuad(*image, affine, quad);
    expectSame(quad, { { 3.5, 2 }, { 13, -17 }, { 15.5, -12 }, { 6, 7 } });
    pxkGetAffineBound(*image, affine, bound);
    expectSame(bound, { { 3.5, -17 }, { 15.5, 7 } });
    pxkGetAffineTransform(*image, a, quad);
    expectSame(a, affine);
    pxkGetBilinearQuad(*image, bilinear, quad);
    pxkGetBilinearTransform(*image, b, quad);
    expectSame(b, bilinear);
    pxkGetPerspectiveQuad(*image, perspective, quad);
    pxkGetPerspectiveTransform(*image, p, quad);
    expectSame(p, perspective, perspective[2][2] / p[2][2]);
    expectNoReports();
    pxkGetAffineTransform(*image, a, quad);
    expectReports({ { -5, "pxkGetAffineTransform", "Quadrangle is not parallelogram" } });
    image->setRegion(3, 4, 20, 1);
    pxkGetBilinearTransform(*image, b, quad);
    expectReports({ { -5, "pxkGetBilinearTransform", "image Rectangle ROI is degenerate to length or point" } });
    image->setRegion(40, 4, 20, 1);
    pxkGetPerspectiveBound(*image, perspective, bound);
    expectReports({ { -5, "pxkGetPerspectiveBound", "Bad rect ROI" } });
}

// Rows that overshoot as far as they can.
TEST(Warp, cubicsOfSteepPicturesMatchModel)
{
    startReports();
    double fourfold[2][3] = { { 4, 0, 0 }, { 0, 4, 0 } };
    const auto between = [](const int64_t* v, int64_t t, bool isSecond) {
        return modelFixedBetween(v, t, PXK_INTER_CUBIC, isSecond);
    };
    for (uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        const PicturePtr src = Picture::make({ PXK_DEPTH_8U, 4, 4 }), dst = Picture::make({ PXK_DEPTH_8U, 13, 13 });
        src->forEachSample([&](int32_t x, int32_t y, int32_t) { src->setBits(x, y, 0, random.oneOf({ 0u, 255u })); });
        pxkWarpAffine(*src, *dst, fourfold, PXK_INTER_CUBIC);
        const TapField field = { 0, 0, 4, 4,
                                 [&](int64_t x, int64_t y) { return src->number(int32_t(x), int32_t(y)); } };
        dst->forEachSample([&](int32_t x, int32_t y, int32_t) {
            const int64_t value = modelTaps<int64_t>(field, x * 16384, y * 16384, 65536, PXK_INTER_CUBIC, between);
            EXPECT_EQ(dst->number(x, y), double(std::clamp<int64_t>((value + 8) >> 4, 0, 255)));
        });
    }
}

// Nothing is written where alpha is the only channel.
TEST(Warp, leavesALoneAlphaChannel)
{
    double identity[2][3] = { { 1, 0, 0 }, { 0, 1, 0 } };
    PictureSpec spec = { PXK_DEPTH_8U, 8, 8 };
    spec.hasAlpha = true;
    Random random(1);
    const PicturePtr src = Picture::make(spec, random), dst = Picture::make(spec, random), before = dst->copy();
    startReports();
    pxkWarpAffine(*src, *dst, identity, PXK_INTER_NN);
    pxkRotate(*src, *dst, 180, 7, 7, PXK_INTER_LINEAR);
    EXPECT_TRUE(samePicture(*before, *dst));
}

// Numbers at the ends of what there is neither crash nor write outside the shape.
TEST(Warp, extremeTransformsAreHarmless)
{
    for (const int32_t depth : { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        for (uint64_t seed = 1; seed < 3000; ++seed) {
            Random random(seed);
            const PicturePtr src = Picture::make({ depth, 37, 9 }, random),
                             dst = Picture::make({ depth, 300, 5 }, random);
            const auto number = [&] {
                return random.oneOf(
                    { 0.0, 1.0, -1.0, 0.5, 1e-7, 1e9, -1e18, 1e300, 1e-300, 300.5, HUGE_VAL, std::nan("") });
            };
            double m[3][3], quad[4][2];
            for (double& value : *reinterpret_cast<double(*)[9]>(m)) value = number();
            for (double& value : *reinterpret_cast<double(*)[8]>(quad)) value = number();
            const int32_t interpolate = random.oneOf({ 0, 1, 2, 16, 17, 18 }), warpFlag = random.below(2);
            startReports();
            pxkWarpAffine(*src, *dst, m, interpolate);
            pxkSetErrStatus(0);
            pxkRotate(*src, *dst, m[0][0], m[0][1], m[0][2], interpolate);
            pxkSetErrStatus(0);
            pxkWarpPerspective(*src, *dst, m, warpFlag, interpolate);
            pxkSetErrStatus(0);
            pxkWarpBilinearQ(*src, *dst, quad, warpFlag, interpolate);
            startReports();
            EXPECT_EQ(src->headerFault() + dst->headerFault(), "");
        }
    }
}
