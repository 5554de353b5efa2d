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

// Coefficients, interpolation.
void addAffine(const std::string& name, std::vector<int32_t> depths, const Tolerance& tolerance)
{
    Operation op(
        name, { "srcImage", "dstImage" },
        [](const Arguments& a) {
            const Numbers& n = a.numbers;
            double coeffs[2][3] = { { n[0], n[1], n[2] }, { n[3], n[4], n[5] } };
            pxkWarpAffine(a[0], a[1], coeffs, a.integer(6));
        },
        [](const Scene& s, const Numbers& n) {
            ModelWarp warp = { Transform::AFFINE, {}, 0, int32_t(n[6]), {} };
            std::copy_n(n.begin(), 6, warp.coeffs.begin());
            const Window r = windowOf(s[0]);
            for (size_t k = 0; k < 4; ++k) {
                const double x = double(k == 1 || k == 2 ? r.x + r.width - 1 : r.x);
                const double y = double(k > 1 ? r.y + r.height - 1 : r.y);
                warp.quad[k] = { n[0] * x + n[1] * y + n[2], n[3] * x + n[4] * y + n[5] };
            }
            modelWarp(s[0], s[1], warp);
        });
    setWarp(op, std::move(depths), tolerance);
    op.hasRegions = false; // one that misses its image is refused
    op.scene = warpScene;
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
                         double(random.oneOf({ 0, 1, 2, 16, 17, 18 })) };
    };
    addOperation(op);
}

using QuadWarp = void (*)(PxkImage*, PxkImage*, double[4][2], int32_t, int32_t);

// Corners, warpFlag, interpolation.
void addQuad(const std::string& name, QuadWarp call, Transform transform, bool isNearest)
{
    Operation op(
        name, { "srcImage", "dstImage" },
        [=](const Arguments& a) {
            double quad[4][2];
            std::copy_n(a.numbers.begin(), 8, quad[0]);
            call(a[0], a[1], quad, a.integer(8), a.integer(9));
        },
        [=](const Scene& s, const Numbers& n) {
            ModelWarp warp = { transform, {}, int32_t(n[8]), int32_t(n[9]), {} };
            for (size_t k = 0; k < 4; ++k) warp.quad[k] = { n[2 * k], n[2 * k + 1] };
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
}

const Rows rows([] {
    addAffine("pxkWarpAffine", { PXK_DEPTH_1U, PXK_DEPTH_8U }, EXACT);
    addAffine("pxkWarpAffine_16U", { PXK_DEPTH_16U }, { 1, 0, false });
    for (const bool isNearest : { false, true }) {
        const std::string text = isNearest ? "_nearest" : "";
        addQuad("pxkWarpBilinearQ" + text, pxkWarpBilinearQ, Transform::BILINEAR, isNearest);
        addQuad("pxkWarpPerspectiveQ" + text, pxkWarpPerspectiveQ, Transform::PERSPECTIVE, isNearest);
        addRemap("pxkRemap" + text, isNearest);
    }
    addWarpRefusals();
});

} // namespace
