// SPDX-License-Identifier: BSD-2-Clause
// Copy, exchange and set; the magnitude of depths without a sign, which is a copy.
#include <cstring>

#include "reference/frame.h"
#include "support/operations.h"

namespace {

// Reports say what a tile was wanted for. Where two images are tiled the first is fetched, which fails without a text
// and without a status.
Ending refusedTile(const std::string& func, size_t image, const Scene& s)
{
    const bool isFetched = s[0].isTiled() && s[1].isTiled() && image == 0;
    const auto& calls = s[image].storage->calls;
    const auto last =
        std::find_if(calls.rbegin(), calls.rend(), [](const TileCall& c) { return c.mode != PXK_TILE_RELEASE; });
    if (isFetched && last->mode == PXK_TILE_READ) return Ending({ { PXK_StsBackTrace, func, "" } });
    const bool isRead = func == "pxkCopy" && image == 0;
    return Ending({ { -2, func, isRead ? "Error get tile to read" : "Error get tile to write" } });
}

const Refused noMemory = tells(PXK_StsBackTrace, "");

Operation pairOperation(const char* name, void (*function)(PxkImage*, PxkImage*), void (*model)(Picture&, Picture&))
{
    Operation op(
        name, { "srcImage", "dstImage" }, [=](const Arguments& a) { function(a[0], a[1]); },
        [=](const Scene& s, const Numbers&) { model(s[0], s[1]); });
    op.tolerance = BITS;
    op.axes.count = 5000;
    op.stale = Stale::STOPS;
    op.keepsTiles = true;
    op.refusedTile = refusedTile;
    op.noMemory = noMemory;
    return op;
}

void addPairRefusals(const char* name)
{
    addRefusals(name,
                { { "srcImage->depth != dstImage->depth", { GRAY, GRAY_8S } },
                  { "srcImage->origin != dstImage->origin", { GRAY, GRAY }, {}, turned(1) },
                  { "srcImage->dataOrder != dstImage->dataOrder", { RGB, RGB_PLANES } },
                  { "Number of processed channels of srcImage != Number of processed channels of dstImage",
                    { RGB, RGB.region(0, 0, 2, 2, 1) } } });
}

Numbers anyValue(const Case& c, const Scene&, Random& random)
{
    const int32_t value =
        random.oneOf({ 0, 1, -1, 5, -5, 127, 128, 255, 300, 32767, 40000, -40000, INT32_MAX, INT32_MIN });
    return { isFloatDepth(c.depth) ? double(float(value) / 3) : double(value) };
}

// Everything but what the source has of its own; pixels in memory, and the region.
void addClone()
{
    static PxkImage* clone = nullptr;
    Operation op(
        "pxkCloneImage", { "image" },
        [](const Arguments& a) {
            pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
            clone = pxkCloneImage(a[0]);
        },
        [](const Scene&, const Numbers&, const Scene& got) {
            ASSERT_NE(clone, nullptr);
            PxkImage expected = got[0].header;
            const PxkROI* const region = expected.roi;
            EXPECT_EQ(got[0].isTiled() ? 0 : expected.widthStep - clone->widthStep, got[0].spec.extraStep);
            expected.maskROI = nullptr;
            expected.userTag = nullptr;
            expected.tileInfo = nullptr;
            expected.imageData = clone->imageData;
            expected.imageDataBase = clone->imageDataBase;
            expected.imageSize = clone->widthStep * clone->height * got[0].planes();
            expected.widthStep = clone->widthStep;
            expected.roi = clone->roi;
            EXPECT_EQ(memcmp(&expected, clone, sizeof expected), 0);
            ASSERT_EQ(clone->roi != nullptr, region != nullptr);
            EXPECT_TRUE(!region || (clone->roi != region && memcmp(clone->roi, region, sizeof(PxkROI)) == 0));
            EXPECT_TRUE(got[0].isTiled() || sameSamples(got[0], *Picture::of(*clone)));
        });
    op.scene = [](const Case& c) {
        const Scene scene = makeScene(c, 1);
        pxkSetBorderMode(scene[0], PXK_EDGE_WRAP, PXK_SIDE_LEFT, 1);
        scene[0].freeze();
        return scene;
    };
    op.axes.count = 800;
    op.nWritten = 0;
    op.refusedTile = op.noMemory = nullptr; // no tile is asked for; memory has a test of its own
    addOperation(op);
    const auto withoutPixels = [](const Scene& s) { s[0].header.imageData = nullptr; };
    addRefusals("pxkCloneImage", { { "Incorrect Image", { GRAY }, {}, withoutPixels, PXK_StsBadDataPointers } });
}

const Rows rows([] {
    addClone();
    Operation copy = pairOperation("pxkCopy", pxkCopy, modelCopy);
    copy.axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST, InPlace::OTHER_HEADER };
    addOperation(copy);
    Operation exchange = pairOperation("pxkExchange", pxkExchange, modelExchange);
    exchange.nWritten = 2;
    addOperation(exchange);
    addPairRefusals("pxkCopy");
    addPairRefusals("pxkExchange");

    Operation gray = pairOperation("pxkCopy_gray", pxkCopy, modelCopy);
    gray.axes.orders = { Order::MIXED };
    gray.axes.channels = { Channels::ONE };
    gray.axes.count = 1500;
    addOperation(gray);

    Operation magnitude = pairOperation("pxkAbs_unsigned", pxkAbs, modelCopy);
    magnitude.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    magnitude.axes.channels = { Channels::ONE, Channels::UNLIKE };
    magnitude.axes.count = 500;
    magnitude.func = "pxkCopy";
    magnitude.nullImage = [](const std::string&, size_t k, const Scene&) {
        return Ending({ { PXK_StsBadArg, "pxkAbs", k == 0 ? "srcImage==0" : "dstImage==0" } });
    };
    magnitude.badHeader = [other = magnitude.badHeader](const std::string& func, int32_t status) {
        return withTrace(other(func, status), "pxkAbs", "pxkCopy is failed");
    };
    magnitude.refusedTile = traced(refusedTile, "pxkAbs", "pxkCopy is failed");
    addOperation(magnitude);

    Operation set(
        "pxkSet", { "dstImage" }, [](const Arguments& a) { pxkSet(a[0], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelSet(s[0], int64_t(n[0])); });
    set.axes.depths.pop_back();
    set.numbers = anyValue;
    set.stale = Stale::STOPS;
    set.refusedTile = tells(-2, "Error get tile to write");
    addOperation(set);
    addRefusals("pxkSet", { { "You should use pxkSetFP for this image", { FLOATS }, { 1 }, {}, PXK_StsBadDepth } });

    // Done as a set of integers, whose reports it shows.
    Operation real(
        "pxkSetFP", { "dstImage" }, [](const Arguments& a) { pxkSetFP(a[0], a.real(0)); },
        [](const Scene& s, const Numbers& n) { modelSetBits(s[0], bitsOf(PXK_DEPTH_32F, n[0])); });
    real.axes.depths = { PXK_DEPTH_32F };
    real.tolerance = BITS;
    real.numbers = anyValue;
    real.stale = Stale::STOPS;
    real.staleReports = { { PXK_StsBackTrace, "pxkSetFP", "" } };
    real.nullImage = tells(PXK_StsBadArg, "dstImage==0");
    real.badHeader = [](const std::string& func, int32_t status) {
        return withTrace(Ending({ { status, "pxkSet", "Incorrect Image" } }), func);
    };
    real.refusedTile = [](const std::string& func, size_t, const Scene&) {
        return withTrace(Ending({ { -2, "pxkSet", "Error get tile to write" } }), func);
    };
    addOperation(real);
    addRefusals("pxkSetFP", { { "You should use pxkSet for this image", { GRAY }, { 1 }, {}, PXK_StsBadDepth } });
});

} // namespace
