#include "reference/warp.h"

#include "support/cases.h"
#include "support/reports.h"

static Axes warpAxes(size_t count)
{
    Axes axes;
    axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    axes.masks = { 0, 0, 1, 2, ALL_IMAGES };
    axes.tilings = { 0, 0, 1, 2, ALL_IMAGES };
    axes.count = count;
    return axes;
}

// Corners on an ellipse round the middle of a region, in either sense: always convex. At times the corners of a
// rectangle on whole pixels.
static Quad randomQuad(Random& random, const Window& around, bool mayTie)
{
    const double w = double(around.width), h = double(around.height);
    const auto between = [&](double low, double high) { return low + (high - low) * random.below(100000) / 100000.0; };
    if (mayTie && random.oneIn(5)) {
        const double x = double(around.x) + random.between(-3, 3), y = double(around.y) + random.between(-3, 3);
        const double right = x + random.between(1, int32_t(w) + 3), bottom = y + random.between(1, int32_t(h) + 3);
        return { Point { x, y }, Point { right, y }, Point { right, bottom }, Point { x, bottom } };
    }
    const Point centre = { double(around.x) + w * between(0.2, 0.8), double(around.y) + h * between(0.2, 0.8) };
    const double rx = w * between(0.3, 1.5) + 1, ry = h * between(0.3, 1.5) + 1, start = between(0, 6.28);
    const bool isMirrored = random.oneIn(2);
    Quad quad;
    for (int32_t k = 0; k < 4; ++k) {
        const double angle = (start + (k + between(0, 0.8)) * 1.57) * (isMirrored ? -1 : 1);
        quad[size_t(k)] = { centre.x + rx * std::cos(angle), centre.y + ry * std::sin(angle) };
    }
    return quad;
}

static bool isWarpable(const Window& region)
{
    return region.width > 1 && region.height > 1;
}

// Single samples differ by a level where rounding may fall the other way.
static Tolerance toleranceOf(const ModelWarp& warp, int32_t depth)
{
    const bool isExact =
        (warp.interpolate & 15) == PXK_INTER_NN || (warp.transform == Transform::AFFINE && depth == PXK_DEPTH_8U);
    return isExact ? EXACT : Tolerance { 1, 0, false };
}

TEST(Warp, affineMeetsItsModel)
{
    forEachCase(warpAxes(3000), [](const Case& c) {
        Random random(c.seed);
        const Scene got = makeScene(c, 2);
        const Window region = windowOf(got[0]);
        if (!isWarpable(region)) return;
        const Quad q = randomQuad(random, windowOf(got[1]), true);
        const double w = double(region.width - 1), h = double(region.height - 1);
        double t[2][3] = { { (q[1].x - q[0].x) / w, (q[3].x - q[0].x) / h, 0 },
                           { (q[1].y - q[0].y) / w, (q[3].y - q[0].y) / h, 0 } };
        t[0][2] = q[0].x - t[0][0] * double(region.x) - t[0][1] * double(region.y);
        t[1][2] = q[0].y - t[1][0] * double(region.x) - t[1][1] * double(region.y);
        if (std::abs(t[0][0] * t[1][1] - t[0][1] * t[1][0]) < 1e-6) return;
        ModelWarp warp = { Transform::AFFINE,
                           { q[0], q[1], { q[1].x + q[3].x - q[0].x, q[1].y + q[3].y - q[0].y }, q[3] },
                           0,
                           random.below(3) + 16 * random.below(2),
                           { t[0][0], t[0][1], t[0][2], t[1][0], t[1][1], t[1][2] } };
        const Scene want = got.copy();
        modelWarp(want[0], want[1], warp);
        startReports();
        pxkWarpAffine(got[0], got[1], t, warp.interpolate);
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got, toleranceOf(warp, c.depth))) << warp.interpolate;
    });
}

TEST(Warp, quadranglesMeetTheirModel)
{
    forEachCase(warpAxes(4000), [](const Case& c) {
        Random random(c.seed);
        const Scene got = makeScene(c, 2);
        ModelWarp warp = { random.oneIn(2) ? Transform::BILINEAR : Transform::PERSPECTIVE,
                           {},
                           random.below(2),
                           random.below(3) + 16 * random.below(2),
                           {} };
        if (!isWarpable(windowOf(got[size_t(warp.warpFlag)]))) return;
        warp.quad = randomQuad(random, windowOf(got[size_t(1 - warp.warpFlag)]), warp.interpolate % 16 != PXK_INTER_NN);
        const Scene want = got.copy();
        modelWarp(want[0], want[1], warp);
        double quad[4][2];
        for (size_t k = 0; k < 4; ++k) quad[k][0] = warp.quad[k].x, quad[k][1] = warp.quad[k].y;
        startReports();
        (warp.transform == Transform::BILINEAR ? pxkWarpBilinearQ : pxkWarpPerspectiveQ)(
            got[0], got[1], quad, warp.warpFlag, warp.interpolate);
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got, toleranceOf(warp, c.depth)))
            << warp.interpolate << " flag " << warp.warpFlag << " " << int(warp.transform);
    });
}

TEST(Remap, meetsItsModel)
{
    Axes axes = warpAxes(3000);
    axes.masks = { 0, 0, 8, ALL_IMAGES };
    axes.tilings = { 0, 0, 1, 2, 8, ALL_IMAGES };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const auto adjust = [](PictureSpec& spec, size_t k) {
            if (k != 1 && k != 2) return;
            spec.depth = PXK_DEPTH_32F;
            spec.channels = 1;
            spec.hasAlpha = false;
            spec.roi.coi = 0;
        };
        const Scene got = makeScene(c, 4, adjust);
        const Window region = windowOf(got[0]);
        for (size_t k = 1; k < 3; ++k) {
            const double first = double(k == 1 ? region.x : region.y),
                         count = double(k == 1 ? region.width : region.height);
            if (!random.oneIn(8)) fillRange(got[k], random, first - 0.2, first + count - 0.8);
        }
        const int32_t interpolate = random.below(3);
        const Scene want = got.copy();
        modelRemap(want[0], want[1], want[2], want[3], interpolate);
        startReports();
        pxkRemap(got[0], got[1], got[2], got[3], interpolate);
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got, interpolate == PXK_INTER_NN ? EXACT : Tolerance { 1, 0, false }));
    });
}

// Turns by right angles with whole shifts move pixels, under every interpolation and on tiles; the identity copies.
TEST(Rotate, rightAnglesMovePixels)
{
    Axes axes = warpAxes(3000);
    axes.orders = { Order::PIXEL, Order::PLANE };
    forEachCase(axes, [](const Case& c) {
        Random random(c.seed);
        const Scene got = makeScene(c, 2);
        const Window region = windowOf(got[0]), target = windowOf(got[1]);
        if (!isWarpable(region)) return;
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
                  random.below(3) + 16 * random.below(2));
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got));
    });
}
