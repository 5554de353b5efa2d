// SPDX-License-Identifier: BSD-2-Clause
// Changes of scale and mirrors.
#include "reference/scale.h"
#include "support/operations.h"

namespace {

// What geometry operations share: checks go on, and the call stops behind all of them; some tell who called.
void setGeometry(Operation& op, bool isTraced)
{
    const auto ending = [isTraced, func = op.func](const Refused& refused) {
        return isTraced ? traced(refused, func) : refused;
    };
    op.isPointwise = false;
    op.goesOn = true;
    op.keepsTiles = true;
    op.stale = Stale::STOPS;
    if (isTraced) op.staleReports = { { PXK_StsBackTrace, op.func, "" } };
    op.badHeader = [=](const std::string& func, int32_t status) {
        return ending(tells(status, "Incorrect Image"))(func, 0, {});
    };
    op.nullImage = ending(op.nullImage);
    op.noMemory = ending(op.noMemory);
    op.refusedTile = ending(tells({ { PXK_StsNoMem, "Out of memory" }, { PXK_StsBadArg, "Error get tile to write" } }));
    op.axes.count = 300;
}

// Another channel of interest in each image, but one data order and the same alpha.
Scene twoAlike(const Case& c)
{
    return makeScene(c, 2, [&](PictureSpec& spec, size_t) {
        if (c.channels != Channels::COI) return;
        spec.channels = 3;
        spec.roi.coi = spec.roi.coi % 3 + 1;
    });
}

Numbers factors(Random& random)
{
    const auto factor = [&] { return double(random.oneOf({ 1, 1, 2, 3, 4, 5, 7, 16, 100 })); };
    return { factor(), factor(), factor(), factor(), double(random.below(3)) };
}

void orderFactors(Numbers& n, bool isUp)
{
    for (const size_t k : { 0, 2 }) {
        if ((n[k] < n[k + 1]) == isUp) std::swap(n[k], n[k + 1]);
    }
}

using Scale = void (*)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t, int32_t, int32_t);
using PictureModel = void (*)(const Picture&, Picture&, const Numbers&);

Operation scaleOperation(const std::string& name, Scale scale, PictureModel model, bool isTraced)
{
    Operation op(
        name, { "srcImage", "dstImage" },
        [=](const Arguments& a) {
            scale(a[0], a[1], a.integer(0), a.integer(1), a.integer(2), a.integer(3), a.integer(4));
        },
        [=](const Scene& s, const Numbers& n) { model(*s[0].copy(), s[1], n); });
    setGeometry(op, isTraced);
    op.scene = twoAlike;
    op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI };
    return op;
}

void addScales()
{
    Operation zoom = scaleOperation("pxkZoom", pxkZoom, modelResize, true);
    zoom.numbers = [](const Case&, const Scene&, Random& random) {
        Numbers n = factors(random);
        orderFactors(n, true);
        return n;
    };
    addOperation(zoom);
    Operation resize = scaleOperation("pxkResize", pxkResize, modelResize, true);
    resize.numbers = [](const Case&, const Scene&, Random& random) { return factors(random); };
    resize.axes.places = { InPlace::NO, InPlace::OTHER_HEADER };
    addOperation(resize);
    Operation decimate = scaleOperation("pxkDecimate", pxkDecimate, modelDecimate, false);
    decimate.numbers = [](const Case&, const Scene&, Random& random) {
        Numbers n = factors(random);
        orderFactors(n, false);
        n[4] = random.below(4);
        return n;
    };
    addOperation(decimate);
    Operation ext = scaleOperation("pxkDecimateExt", nullptr, modelDecimateExt, false);
    ext.call = [](const Arguments& a) {
        pxkDecimateExt(a[0], a[1], a.integer(0), a.integer(1), a.integer(2), a.integer(3), a.integer(4), a.integer(5),
                       a.integer(6));
        return pxkGetErrStatus();
    };
    ext.numbers = [](const Case&, const Scene&, Random& random) {
        Numbers n = factors(random);
        orderFactors(n, false);
        n.insert(n.end(), { double(random.below(6)), double(random.below(6)) });
        return n;
    };
    ext.axes.places = { InPlace::NO, InPlace::FIRST };
    ext.hasRegions = false; // one that misses its image is refused
    addOperation(ext);
}

void addMirrors()
{
    Operation op(
        "pxkMirror", { "srcImage", "dstImage" }, [](const Arguments& a) { pxkMirror(a[0], a[1], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelMirror(*s[0].copy(), s[1], int32_t(n[0])); });
    setGeometry(op, false);
    op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { double(random.between(-1, 1)) }; };
    op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };
    op.axes.orders.push_back(Order::MIXED);
    op.axes.places = { InPlace::NO, InPlace::OTHER_HEADER };
    op.axes.count = 600;
    addOperation(op);
    op.name += "_inPlace";
    op.axes.masks = { 0 };
    op.hasMasks = false; // refused
    op.axes.places = { InPlace::FIRST };
    addOperation(op);
}

const Rows rows([] {
    addScales();
    addMirrors();
});

} // namespace
