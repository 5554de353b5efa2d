// SPDX-License-Identifier: BSD-2-Clause
// Single pixels, the ring image and the counter.
#include <array>
#include <cmath>

#include "support/cases.h"
#include "support/reports.h"

namespace {

// ---- pixels --------------------------------------------------------------------------------------------------------

// The bytes of a pixel as the library lays them out: samples one behind the other; one-bit samples in a byte.
std::vector<uint8_t> bytesOfPixel(const Picture& p, int32_t x, int32_t row)
{
    std::vector<uint8_t> bytes;
    for (int32_t c = 0; c < p.spec.channels; ++c) {
        for (int32_t shift = 0; shift < depthBits(p.spec.depth); shift += 8) { // low bytes first
            bytes.push_back(static_cast<uint8_t>(p.bits(x, row, c) >> shift));
        }
    }
    return bytes;
}

Axes pixelAxes()
{
    Axes axes;
    axes.masks = { 0, 1 }; // neither region nor mask nor channel of interest counts
    axes.tilings = { 0, 1 };
    axes.count = 600;
    return axes;
}

Scene sceneOfOne(const Case& c)
{
    return makeScene(c, 1, [&](PictureSpec& spec, size_t) { spec.origin = static_cast<int32_t>(c.seed % 2); });
}

void expectOneTile(Picture& p, int32_t x, int32_t row, int32_t mode)
{
    if (!p.isTiled()) return;
    ASSERT_EQ(p.storage->calls.size(), 2u);
    for (const TileCall& call : p.storage->calls) {
        EXPECT_EQ(call.x, x / p.spec.tileWidth);
        EXPECT_EQ(call.y, row / p.spec.tileHeight);
    }
    EXPECT_EQ(p.storage->calls[0].mode, mode);
    EXPECT_EQ(p.storage->calls[1].mode, PXK_TILE_RELEASE);
    p.storage->calls.clear();
}

TEST(Pixel, isReadAndWrittenByCoordinatesAlone)
{
    startReports();
    forEachCase(pixelAxes(), [](const Case& c) {
        const Scene got = sceneOfOne(c);
        Picture& p = got[0];
        Random random(c.seed);
        for (int32_t repeat = 0; repeat < 6; ++repeat) {
            const int32_t x = repeat == 0 ? p.spec.width - 1 : random.below(p.spec.width);
            const int32_t y = repeat == 0 ? p.spec.height - 1 : random.below(p.spec.height);
            const int32_t row = p.spec.origin == 1 ? p.spec.height - 1 - y : y;
            std::vector<uint8_t> pixel = bytesOfPixel(p, x, row);
            std::vector<uint8_t> read(pixel.size() + 4, 0xA5); // odd addresses are the caller's right
            EXPECT_EQ(pxkGetPixel(p, x, y, read.data() + 1), 0);
            EXPECT_EQ(std::vector<uint8_t>(read.begin() + 1, read.end() - 3), pixel);
            EXPECT_EQ(read.front() + read.back(), 2 * 0xA5);
            expectOneTile(p, x, row, PXK_TILE_READ);

            const Scene want = got.copy(), other = got.copy();
            fillRandom(other[0], random);
            for (int32_t k = 0; k < p.spec.channels; ++k) want[0].setBits(x, row, k, other[0].bits(x, row, k));
            pixel = bytesOfPixel(want[0], x, row);
            std::copy(pixel.begin(), pixel.end(), read.begin() + 1);
            EXPECT_EQ(pxkPutPixel(p, x, y, read.data() + 1), 0);
            expectOneTile(p, x, row, PXK_TILE_WRITE);
            EXPECT_TRUE(sameScene(want, got, BITS)) << x << ", " << y;
        }
        expectNoReports();
    });
}

using PixelCall = int32_t (*)(PxkImage*, int32_t, int32_t, void*);

void expectPixelRefusals(PixelCall call, const char* name, const char* refusedTile)
{
    uint8_t pixel[16] = {};
    const PicturePtr p = Picture::make({ PXK_DEPTH_16U, 10, 6 }), before = p->copy();
    const auto expectFault = [&](PxkImage* image, int32_t x, int32_t y, void* to, int32_t status, const char* text) {
        startReports();
        EXPECT_EQ(call(image, x, y, to), status);
        expectReports({ { status, name, text } });
        EXPECT_TRUE(sameSamples(*before, *p));
    };
    for (const int32_t x : { 10, -1, INT32_MIN }) expectFault(*p, x, 6, nullptr, -5, "((x>width-1) || (x<0))");
    for (const int32_t y : { 6, -1, INT32_MAX }) expectFault(*p, 9, y, nullptr, -5, "((y>height-1) || (y<0))");
    expectFault(*p, 9, 5, nullptr, -5, "pixel==0");
    expectFault(nullptr, -1, -1, nullptr, -9, "Incorrect Image");
    p->header.alphaChannel = 3;
    expectFault(*p, -1, -1, nullptr, -18, "Incorrect Image");

    const PicturePtr tiled = Picture::make(PictureSpec { PXK_DEPTH_16U, 30, 20 }.tiled(8, 8));
    const PicturePtr tiledBefore = tiled->copy();
    tiled->storage->refuseAt = 1;
    expectFault(*tiled, 29, 19, pixel, -2, refusedTile);
    EXPECT_TRUE(samePicture(*tiledBefore, *tiled));
    EXPECT_EQ(tiled->storage->calls.size(), 1u);
}

TEST(Pixel, refusals)
{
    expectPixelRefusals(pxkGetPixel, "pxkGetPixel", "Error get tile to read");
    expectPixelRefusals(pxkPutPixel, "pxkPutPixel", "Error get tile to write");
}

// The result of a failure is the handler's.
TEST(Pixel, resultOfAFailureIsTheHandlers)
{
    startReports();
    pxkRedirectError([](int32_t, const char*, const char*, const char*, int32_t) { return int32_t(4711); });
    uint8_t pixel[4];
    EXPECT_EQ(pxkGetPixel(*Picture::make({}), -1, 0, pixel), 4711);
    EXPECT_EQ(pxkPutPixel(nullptr, 0, 0, pixel), 4711);
    startReports();
}

// ---- rings ---------------------------------------------------------------------------------------------------------

// Everywhere within one level of the sine, in a header that says gray.
TEST(Rings, followTheSine)
{
    for (const int32_t depth : Axes().depths) {
        for (const auto& [width, height] : { std::pair(255, 33), std::pair(34, 200), std::pair(1, 2) }) {
            PxkImage* const image = pxkCreateImageJaehne(depth, width, height);
            ASSERT_EQ(pxkCheckImageHeader(image), 0);
            EXPECT_EQ(std::string(image->colorModel, 4) + std::string(image->channelSeq, 4), "GRAYGRAY");
            const PicturePtr ring = Picture::of(*image);
            const bool isFloat = isFloatDepth(depth);
            const double middle = depth < 0 ? 0 : 1, scale = isFloat ? 0.5 : std::exp2(depthBits(depth) - 1);
            for (int32_t i = 0; i < width * height; ++i) {
                const double dx = i % width - width / 2, dy = i / width - height / 2;
                const double sine = std::sin((dx * dx + dy * dy) * 6.283185307179586 / (4 * height));
                const double exact = std::fabs(sine + middle) * scale - (isFloat ? 0 : 0.5); // fractions are cut off
                ASSERT_NEAR(std::fabs(ring->number(i % width, i / width)), exact, isFloat ? 1e-4 : 0.51 + scale * 1e-7);
            }
            pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
        }
    }
}

TEST(Rings, refusals)
{
    startReports();
    for (const auto& [depth, width, height, status] : std::vector<std::array<int32_t, 4>> {
             { PXK_DEPTH_8U, 0, 5, -10 }, { PXK_DEPTH_8U, 5, -1, -10 }, { 12, 0, 0, -10 }, { 12, 5, 5, -17 } }) {
        EXPECT_EQ(pxkCreateImageJaehne(depth, width, height), nullptr);
        expectReports({ { status, "pxkCreateImageJaehne", pxkErrorStr(status) } });
    }
    EXPECT_EQ(pxkCreateImageJaehne(PXK_DEPTH_32S, 65536, 65536), nullptr);
    EXPECT_EQ(recordedReports().back(),
              (Report { -4, "pxkCreateImageJaehne", "Not enough memory to allocate header for ImageJaehne" }));
    startReports();
}

TEST(Counter, goesOn)
{
    const uint64_t start = pxkGetKestriumCounter();
    uint64_t now = start;
    for (int32_t i = 0; i < 100000000 && now == start; ++i) now = pxkGetKestriumCounter();
    EXPECT_GT(now, start);
}

} // namespace
