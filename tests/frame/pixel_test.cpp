// SPDX-License-Identifier: BSD-2-Clause
// Single pixels, the ring image and the counter.
#include <cmath>
#include <cstring>
#include <memory>

#include "support/cases.h"
#include "support/reports.h"

namespace {

// ---- pixels --------------------------------------------------------------------------------------------------------

// The bytes of a pixel as the library lays them out: samples one behind the other; one-bit samples in a byte.
std::vector<uint8_t> bytesOfPixel(const Picture& p, int32_t x, int32_t row)
{
    const int32_t width = std::max(depthBits(p.spec.depth) / 8, 1);
    std::vector<uint8_t> bytes(static_cast<size_t>(width * p.spec.channels));
    for (int32_t c = 0; c < p.spec.channels; ++c) {
        const uint32_t bits = p.bits(x, row, c); // the machine stores low bytes first
        memcpy(&bytes[static_cast<size_t>(c * width)], &bits, static_cast<size_t>(width));
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

            const Scene want = got.copy();
            for (size_t i = 0; i < pixel.size(); ++i) read[i + 1] = static_cast<uint8_t>(random.next());
            for (int32_t channel = 0; channel < p.spec.channels; ++channel) {
                const size_t width = pixel.size() / static_cast<size_t>(p.spec.channels);
                uint32_t bits = 0;
                memcpy(&bits, &read[1 + static_cast<size_t>(channel) * width], width);
                want[0].setBits(x, row, channel, bits);
            }
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
    const PicturePtr p = Picture::make(PictureSpec(PXK_DEPTH_16U, 10, 6)), before = p->copy();
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

    const PicturePtr tiled = Picture::make(PictureSpec(PXK_DEPTH_16U, 30, 20).tiled(8, 8));
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
    EXPECT_EQ(pxkGetPixel(*Picture::make(PictureSpec()), -1, 0, pixel), 4711);
    EXPECT_EQ(pxkPutPixel(nullptr, 0, 0, pixel), 4711);
    startReports();
}

// ---- rings ---------------------------------------------------------------------------------------------------------

struct FreeImage {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};

// Everywhere within one level of the sine, in a header that says gray.
TEST(Rings, followTheSine)
{
    for (const int32_t depth : Axes().depths) {
        for (const auto& size : { std::make_pair(255, 33), std::make_pair(34, 200), std::make_pair(1, 2) }) {
            const int32_t width = size.first, height = size.second;
            const std::unique_ptr<PxkImage, FreeImage> image(pxkCreateImageJaehne(depth, width, height));
            ASSERT_EQ(pxkCheckImageHeader(image.get()), 0);
            EXPECT_EQ(std::string(image->colorModel, 4) + std::string(image->channelSeq, 4), "GRAYGRAY");
            EXPECT_TRUE(image->width == width && image->height == height && image->nChannels == 1);
            const PicturePtr ring = Picture::make(PictureSpec(depth, width, height));
            const auto* const data = static_cast<const uint8_t*>(image->imageData);
            for (int32_t y = 0; y < height; ++y)
                memcpy(ring->row(y), data + y * image->widthStep, static_cast<size_t>(ring->header.widthStep));
            const bool isFloat = isFloatDepth(depth);
            const double middle = depth < 0 ? 0 : 1, scale = isFloat ? 0.5 : std::exp2(depthBits(depth) - 1);
            for (int32_t i = 0; i < width * height; ++i) {
                const double dx = i % width - width / 2, dy = i / width - height / 2;
                const double sine = std::sin((dx * dx + dy * dy) * 6.283185307179586 / (4 * height));
                const double exact = std::fabs(sine + middle) * scale - (isFloat ? 0 : 0.5); // fractions are cut off
                const double got = std::fabs(ring->number(i % width, i / width));
                ASSERT_NEAR(got, exact, isFloat ? 1e-4 : 0.51 + scale * 1e-7);
            }
        }
    }
}

TEST(Rings, refusals)
{
    const int32_t bad[][4] = {
        { PXK_DEPTH_8U, 0, 5, -10 }, { PXK_DEPTH_8U, 5, -1, -10 }, { 12, 0, 0, -10 }, { 12, 5, 5, -17 }
    };
    startReports();
    for (const auto& b : bad) {
        EXPECT_EQ(pxkCreateImageJaehne(b[0], b[1], b[2]), nullptr);
        expectReports({ { b[3], "pxkCreateImageJaehne", pxkErrorStr(b[3]) } });
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
