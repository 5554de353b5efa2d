// SPDX-License-Identifier: BSD-2-Clause
// Warps and remapping.
#include "reference/warp.h"
#include "support/operations.h"

namespace {

// Corners on an ellipse round the middle of a region, in either sense: always convex. At times the corners of a
// rectangle on whole pixels, which a nearest pixel could tie on.
Quad randomQuad(Random& random, const Window& around, bool mayTie)
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
    const double sense = random.oneIn(2) ? 1 : -1;
    Quad quad;
    for (int32_t k = 0; k < 4; ++k) {
        const double angle = (start + (k + between(0, 0.8)) * 1.57) * sense;
        // The last bits of the C library's sine must not show.
        quad[size_t(k)] = { std::round(1e6 * (centre.x + rx * std::cos(angle))) / 1e6,
                            std::round(1e6 * (centre.y + ry * std::sin(angle))) / 1e6 };
    }
    return quad;
}

// Two images whose regions are no lines, with the same channels.
Scene warpScene(Case c)
{
    for (;; ++c.seed) {
        const Scene scene = makeScene(c, 2);
        const Window a = windowOf(scene[0]), b = windowOf(scene[1]);
        if (std::min({ a.width, a.height, b.width, b.height }) > 1) return scene;
    }
}

void setWarp(Operation& op, std::vector<int32_t> depths, const Tolerance& tolerance)
{
    op.isPointwise = op.hasMasks = false; // those of sources count for nothing
    op.goesOn = op.keepsTiles = true;
    op.stale = Stale::STOPS;
    op.tolerance = tolerance;
    std::vector<std::pair<int32_t, std::string>> tiles(op.images.size(), { PXK_StsNoMem, "Out of memory" });
    tiles.back() = { PXK_StsBadArg, "Error get tile to write" };
    op.refusedTile = tells(tiles);
    op.axes.depths = std::move(depths);
    op.axes.count = 1000;
}

// What helpers report and store counts for nothing: the operation looks at the same images.
template <class F> void quietly(const F& call)
{
    const int32_t status = pxkGetErrStatus();
    const PxkErrorCallBack handler = pxkRedirectError(pxkNulDevReport);
    pxkSetErrStatus(PXK_StsOk);
    call();
    pxkSetErrStatus(status);
    pxkRedirectError(handler);
}

// Corners and bounds of a transform are found, those of the quadrangle that it is made of.
template <class Coeffs, class QuadOf, class BoundOf>
void findShape(PxkImage* image, Coeffs coeffs, const QuadOf& quadOf, const BoundOf& boundOf)
{
    double quad[4][2] = {}, bound[2][2] = {};
    quadOf(image, coeffs, quad);
    boundOf(image, coeffs, bound);
    found.assign(quad[0], quad[0] + 8);
    found.insert(found.end(), bound[0], bound[0] + 4);
}

void expectShape(const Quad& quad)
{
    Point low = quad[0], high = quad[0];
    Numbers wanted;
    for (const Point& p : quad) {
        wanted.insert(wanted.end(), { p.x, p.y });
        low = { std::min(low.x, p.x), std::min(low.y, p.y) };
        high = { std::max(high.x, p.x), std::max(high.y, p.y) };
    }
    wanted.insert(wanted.end(), { low.x, low.y, high.x, high.y });
    for (size_t k = 0; k < wanted.size(); ++k) EXPECT_NEAR(found[k], wanted[k], 1e-6);
}

// `coeffsOf` makes the coefficients of the numbers, the last of which is the interpolation.
using Coefficients = std::array<double, 6>;

Operation affineOperation(const std::string& name, const std::function<void(const Arguments&)>& call,
                          const std::function<Coefficients(const Numbers&)>& coeffsOf)
{
    Operation op(name, { "srcImage", "dstImage" }, call, [=](const Scene& s, const Numbers& n) {
        ModelWarp warp = { Transform::AFFINE, {}, 0, int32_t(n.back()), coeffsOf(n) };
        const Coefficients& c = warp.coeffs;
        const Window r = windowOf(s[0]);
        for (size_t k = 0; k < 4; ++k) {
            const double x = double(k == 1 || k == 2 ? r.x + r.width - 1 : r.x);
            const double y = double(k > 1 ? r.y + r.height - 1 : r.y);
            warp.quad[k] = { c[0] * x + c[1] * y + c[2], c[3] * x + c[4] * y + c[5] };
        }
        if (!found.empty()) expectShape(warp.quad);
        modelWarp(s[0], s[1], warp);
    });
    setWarp(op, { PXK_DEPTH_1U, PXK_DEPTH_8U }, EXACT);
    op.hasRegions = false; // one that misses its image is refused
    op.scene = warpScene;
    return op;
}

// Exact, and at 16 bits within a level.
void addAtAllDepths(Operation op)
{
    addOperation(op);
    op.name += "_16U";
    op.axes.depths = { PXK_DEPTH_16U };
    op.tolerance = { 1, 0, false };
    addOperation(op);
}

const std::initializer_list<int32_t> interpolationsAndEdges = { 0, 1, 2, 16, 17, 18 };

void addAffine()
{
    Operation op = affineOperation(
        "pxkWarpAffine",
        [](const Arguments& a) {
            const Numbers& n = a.numbers;
            double coeffs[2][3] = { { n[0], n[1], n[2] }, { n[3], n[4], n[5] } }, fitted[2][3] = {};
            quietly([&] {
                findShape(a[0], coeffs, pxkGetAffineQuad, pxkGetAffineBound);
                pxkGetAffineTransform(a[0], fitted, reinterpret_cast<double(*)[2]>(found.data()));
            });
            found.insert(found.end(), fitted[0], fitted[0] + 6);
            pxkWarpAffine(a[0], a[1], coeffs, a.integer(6));
        },
        [](const Numbers& n) {
            for (size_t k = 0; k < 6; ++k) EXPECT_NEAR(found[12 + k], n[k], 1e-6);
            Coefficients coeffs;
            std::copy_n(n.begin(), 6, coeffs.begin());
            return coeffs;
        });
    op.numbers = [](const Case&, const Scene& s, Random& random) {
        const Window r = windowOf(s[0]);
        const Quad q = randomQuad(random, windowOf(s[1]), true);
        const double w = double(r.width - 1), h = double(r.height - 1);
        const double a = (q[1].x - q[0].x) / w, b = (q[3].x - q[0].x) / h;
        const double d = (q[1].y - q[0].y) / w, e = (q[3].y - q[0].y) / h;
        return Numbers { a,
                         b,
                         q[0].x - a * double(r.x) - b * double(r.y),
                         d,
                         e,
                         q[0].y - d * double(r.x) - e * double(r.y),
                         double(random.oneOf(interpolationsAndEdges)) };
    };
    addAtAllDepths(op);
    op.name += "_steep"; // cubics overshoot as far as they can
    op.axes.count = 100;
    op.scene = [](const Case& c) {
        const Scene scene = warpScene(c);
        Random random(c.seed);
        const double high = double(depthMax(c.depth));
        scene[0].forEachSample(
            [&](int32_t x, int32_t y, int32_t k) { scene[0].setNumber(x, y, k, random.below(2) * high); });
        return scene;
    };
    addOperation(op);
}

// Angle, centre, shift. Right angles are common, and the last bits of the C library's sine must not show.
void addRotation()
{
    Operation op = affineOperation(
        "pxkRotate",
        [](const Arguments& a) {
            const Numbers& n = a.numbers;
            double x = n[3], y = n[4];
            pxkGetRotateShift(n[1], n[2], n[0], &x, &y);
            found.clear();
            pxkRotate(a[0], a[1], n[0], x, y, a.integer(5));
        },
        [](const Numbers& n) {
            const auto rounded = [](double v) { return std::round(v * 1e12) / 1e12; };
            const double radians = std::fmod(n[0], 360) * std::acos(-1.0) / 180;
            const double c = rounded(std::cos(radians)), s = rounded(std::sin(radians));
            return Coefficients { c, s, n[3] + n[1] - n[1] * c - n[2] * s, -s, c, n[4] + n[2] + n[1] * s - n[2] * c };
        });
    op.func = "pxkWarpAffine";
    op.nullImage = nullptr; // who reports depends on the angle
    op.badHeader = nullptr;
    op.trials = { { PXK_DEPTH_8U, { 37, 9, 3, 1, 1, 1 }, op.func } };
    op.numbers = [](const Case&, const Scene& s, Random& random) {
        const Window r = windowOf(s[0]), target = windowOf(s[1]);
        const double angle = random.oneIn(2) ? 90 * random.between(-9, 9) : random.between(-3000, 3000) / 8.0;
        const double x = double(r.x + random.below(int32_t(r.width))),
                     y = double(r.y + random.below(int32_t(r.height)));
        const double toX = double(target.x + random.below(int32_t(target.width))) - x;
        const double toY = double(target.y + random.below(int32_t(target.height))) - y;
        return Numbers { angle, x, y, toX, toY, double(random.oneOf(interpolationsAndEdges)) };
    };
    addAtAllDepths(op);
    const char* const unlike = "srcImage->depth != dstImage->depth"; // by right angles it tells itself
    addRefusals("pxkRotate",
                { { unlike, { RGB, RGB_16U }, { 37, 0, 0, 0, 0, 1 } },
                  { unlike, { RGB, RGB_16U }, { 90, 0, 0, 0, 0, 1 }, {}, PXK_StsBadArg, "pxkRotate" } });
}

void addShear()
{
    Operation op = affineOperation(
        "pxkShear",
        [](const Arguments& a) {
            const Numbers& n = a.numbers;
            found.clear();
            pxkShear(a[0], a[1], n[0], n[1], n[2], n[3], a.integer(4));
        },
        [](const Numbers& n) { return Coefficients { 1, n[0], n[2], n[1], 1, n[3] }; });
    op.func = "pxkWarpAffine";
    op.axes.count = 200;
    op.numbers = [](const Case&, const Scene&, Random& random) {
        const double across = random.between(-12, 12) / 8.0, down = random.between(-4, 4) / 8.0;
        const double x = random.between(-9, 9), y = random.between(-5, 5);
        return Numbers { across, down, x, y, double(random.oneOf(interpolationsAndEdges)) };
    };
    addOperation(op);
}

// Corners, warpFlag, interpolation.
Operation quadOperation(const std::string& name, const std::function<void(const Arguments&)>& call, Transform transform,
                        bool isNearest)
{
    Operation op(name, { "srcImage", "dstImage" }, call, [=](const Scene& s, const Numbers& n) {
        ModelWarp warp = { transform, {}, int32_t(n[8]), int32_t(n[9]), {} };
        for (size_t k = 0; k < 4; ++k) warp.quad[k] = { n[2 * k], n[2 * k + 1] };
        if (!found.empty()) expectShape(warp.quad);
        modelWarp(s[0], s[1], warp);
    });
    setWarp(op, { PXK_DEPTH_8U, PXK_DEPTH_16U }, isNearest ? EXACT : Tolerance { 1, 0, false });
    if (isNearest) op.axes.depths.push_back(PXK_DEPTH_1U);
    op.hasRegions = false;
    op.scene = warpScene;
    op.numbers = [=](const Case&, const Scene& s, Random& random) {
        const int32_t warpFlag = random.below(2);
        const Quad quad = randomQuad(random, windowOf(s[size_t(1 - warpFlag)]), !isNearest);
        Numbers n;
        for (const Point& p : quad) n.insert(n.end(), { p.x, p.y });
        const int32_t kind = isNearest ? 0 : random.oneOf({ 1, 2, 17, 18 });
        n.insert(n.end(), { double(warpFlag), double(kind) });
        return n;
    };
    return op;
}

using QuadWarp = void (*)(PxkImage*, PxkImage*, double[4][2], int32_t, int32_t);

void addQuad(const std::string& name, QuadWarp warp, Transform transform, bool isNearest)
{
    const auto call = [=](const Arguments& a) {
        double quad[4][2];
        std::copy_n(a.numbers.begin(), 8, quad[0]);
        found.clear();
        warp(a[0], a[1], quad, a.integer(8), a.integer(9));
    };
    addOperation(quadOperation(name, call, transform, isNearest));
}

// By coefficients: those that a quadrangle gives.
template <size_t rows, size_t columns, class Fit, class QuadOf, class BoundOf, class Warp>
void addCoefficients(const std::string& name, Transform transform, Fit fit, QuadOf quadOf, BoundOf boundOf, Warp warp)
{
    const auto call = [=](const Arguments& a) {
        double quad[4][2], coeffs[rows][columns] = {};
        std::copy_n(a.numbers.begin(), 8, quad[0]);
        PxkImage* const image = a[size_t(a.integer(8))];
        quietly([&] {
            fit(image, coeffs, quad);
            findShape(image, coeffs, quadOf, boundOf);
        });
        warp(a[0], a[1], coeffs, a.integer(8), a.integer(9));
    };
    Operation op = quadOperation(name, call, transform, false);
    op.func = name + "Q";
    op.axes.count = 400;
    op.badHeader = nullptr; // whose coefficients nobody could tell
    op.nullImage = nullptr;
    addOperation(op);
}

void addRemap(const std::string& name, bool isNearest)
{
    Operation op(
        name, { "srcImage", "xMap", "yMap", "dstImage" },
        [](const Arguments& a) { pxkRemap(a[0], a[1], a[2], a[3], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelRemap(s[0], s[1], s[2], s[3], int32_t(n[0])); });
    setWarp(op, { PXK_DEPTH_8U, PXK_DEPTH_16U }, isNearest ? EXACT : Tolerance { 1, 0, false });
    if (isNearest) op.axes.depths.push_back(PXK_DEPTH_1U);
    op.scene = [](const Case& c) {
        const Scene scene = makeScene(c, 4, [](PictureSpec& spec, size_t k) {
            if (k != 1 && k != 2) return;
            spec.depth = PXK_DEPTH_32F;
            spec.channels = 1;
            spec.hasAlpha = false;
            spec.roi.coi = 0;
        });
        Random random(c.seed);
        const Window r = windowOf(scene[0]);
        for (size_t k = 1; k < 3; ++k) { // at times all numbers there are
            const double first = double(k == 1 ? r.x : r.y), count = double(k == 1 ? r.width : r.height);
            if (!random.oneIn(8)) fillRange(scene[k], random, first - 0.2, first + count - 0.8);
        }
        return scene;
    };
    op.numbers = [=](const Case&, const Scene&, Random& random) {
        return Numbers { isNearest ? 0.0 : double(random.between(1, 2)) };
    };
    addOperation(op);
}

// What all refuse; `n` are good numbers, of which the last one is the interpolation.
const char* const interpolations =
    "interpolate != PXK_INTER_NN && interpolate != PXK_INTER_LINEAR && interpolate != PXK_INTER_CUBIC";

void addSharedRefusals(const std::string& name, Numbers n)
{
    const char* const depths = "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)";
    addRefusals(
        name,
        { { "srcImage->depth != dstImage->depth", { RGB, RGB_16U }, n },
          { "srcImage->origin != dstImage->origin", { RGB, RGB }, n, turned(0) },
          { "srcImage->dataOrder != dstImage->dataOrder", { RGB, RGB_PLANES }, n },
          { depths, { GRAY_8S, GRAY_8S }, n },
          { depths, { FLOATS, FLOATS }, n },
          { "Number of processed channels of srcImage != Number of processed channels of dstImage", { RGB, GRAY }, n },
          { "Bad rect ROI", { RGB.region(9, 0, 4, 4), RGB }, n },
          { "srcImage Rectangle ROI is degenerate to length or point", { RGB.region(2, 0, 1, 4), RGB }, n } });
    n.back() = 3;
    addRefusals(name, { { interpolations, { RGB, RGB }, n } });
}

void addWarpRefusals()
{
    const double nan = std::nan(""), inf = HUGE_VAL;
    addSharedRefusals("pxkWarpAffine", { 1, 0, 0, 0, 1, 0, 16 });
    const std::vector<PictureSpec> pair = { RGB, RGB };
    for (const auto& [a, b, c, d, e] : { std::array<double, 5> { 1, 2, 0, 2, 4 },
                                         { nan, 0, 0, 0, 1 },
                                         { 1, 0, inf, 0, 1 },
                                         { inf, 0, 0, 0, inf },
                                         { 1e-4, 0, 0, 0, 1e-4 } }) {
        addRefusals("pxkWarpAffine", { { "Determinant of transform matrix == 0.0", pair, { a, b, c, d, e, 0, 0 } } });
    }
    const char* const degenerate = "Quadrangle is degenerate to triangle or length or point";
    const char* const thin = "dstImage Rectangle ROI is degenerate to length or point";
    for (const char* name : { "pxkWarpBilinearQ", "pxkWarpPerspectiveQ" }) {
        addSharedRefusals(name, { 0, 0, 5, 0, 5, 3, 0, 3, 0, 17 });
        addRefusals(name,
                    { { "warpFlag != 0 && warpFlag != 1", pair, { 0, 0, 5, 0, 5, 3, 0, 3, 2, 0 } },
                      { degenerate, pair, { 0, 0, 0, 0, 5, 5, 0, 5, 0, 0 } }, // two corners fall together
                      { degenerate, pair, { 0, 0, 5, 0, nan, 3, 0, 3, 1, 1 } },
                      { degenerate, pair, { 0, 0, 5, 0, 5, inf, 0, 3, 1, 1 } },
                      { degenerate, pair, { 0, 0, 1e200, 0, 1e200, 1e200, 0, 1e200, 0, 2 } },
                      { "Quadrangle is concave", pair, { 0, 0, 5, 0, 1, 1, 0, 5, 0, 0 } },
                      { "Quadrangle is concave", pair, { 0, 0, 5, 5, 5, 0, 0, 5, 1, 0 } },
                      { thin, { RGB, RGB.region(0, 1, 4, 1) }, { 0, 0, 5, 0, 5, 3, 0, 3, 1, 0 } } });
    }
    const char* const xText = "xMap->depth != PXK_DEPTH_32F || xMap->nChannels != 1 || xMap->alphaChannel != 0";
    const char* const yText = "yMap->depth != PXK_DEPTH_32F || yMap->nChannels != 1 || yMap->alphaChannel != 0";
    addRefusals("pxkRemap",
                { { "srcImage->dataOrder != dstImage->dataOrder", { GRAY, FLOATS, FLOATS, RGB_PLANES.of(1) }, { 0 } },
                  { xText, { RGB, GRAY_32S, FLOATS, RGB }, { 1 } },
                  { yText, { RGB, FLOATS, GRAY, RGB }, { 2 } },
                  { interpolations, { RGB, FLOATS, FLOATS, RGB }, { 16 } } });
    static double skewed[4][2] = { { 0, 0 }, { 5, 0 }, { 6, 3 }, { 0, 3 } }, coeffs[3][3] = {};
    const PictureSpec line = RGB.region(0, 0, 4, 1), outside = RGB.region(9, 0, 4, 1);
    addRefusedCalls({ { { -5, "pxkGetAffineTransform", "Quadrangle is not parallelogram" },
                        [=] { pxkGetAffineTransform(*Picture::make(outside), coeffs, skewed); } },
                      { { -5, "pxkGetPerspectiveTransform", "image Rectangle ROI is degenerate to length or point" },
                        [=] { pxkGetPerspectiveTransform(*Picture::make(line), coeffs, skewed); } },
                      { { -5, "pxkGetPerspectiveBound", "Bad rect ROI" },
                        [=] { pxkGetPerspectiveBound(*Picture::make(outside), coeffs, skewed); } } });
}

const Rows rows([] {
    addAffine();
    addRotation();
    addShear();
    addCoefficients<2, 4>("pxkWarpBilinear", Transform::BILINEAR, pxkGetBilinearTransform, pxkGetBilinearQuad,
                          pxkGetBilinearBound, pxkWarpBilinear);
    addCoefficients<3, 3>("pxkWarpPerspective", Transform::PERSPECTIVE, pxkGetPerspectiveTransform,
                          pxkGetPerspectiveQuad, pxkGetPerspectiveBound, pxkWarpPerspective);
    for (const bool isNearest : { false, true }) {
        const std::string text = isNearest ? "_nearest" : "";
        addQuad("pxkWarpBilinearQ" + text, pxkWarpBilinearQ, Transform::BILINEAR, isNearest);
        addQuad("pxkWarpPerspectiveQ" + text, pxkWarpPerspectiveQ, Transform::PERSPECTIVE, isNearest);
        addRemap("pxkRemap" + text, isNearest);
    }
    addWarpRefusals();
});

} // namespace
