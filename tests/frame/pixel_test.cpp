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
    std::vector<uint8_t> bytes;
    for (int32_t c = 0; c < p.spec.channels; ++c) {
        const uint32_t bits = p.bits(x, row, c);
        const uint16_t half = static_cast<uint16_t>(bits);
        const uint8_t one = static_cast<uint8_t>(bits);
        const int32_t width = std::max(depthBits(p.spec.depth) / 8, 1);
        const void* const from = width == 4 ? static_cast<const void*>(&bits)
            : width == 2                    ? &half
                                            : static_cast<const void*>(&one);
        bytes.insert(bytes.end(), static_cast<const uint8_t*>(from), static_cast<const uint8_t*>(from) + width);
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
    const char* const badX = "((x>width-1) || (x<0))";
    const char* const badY = "((y>height-1) || (y<0))";
    uint8_t pixel[16] = {};
    const PicturePtr p = Picture::make(PictureSpec(PXK_DEPTH_16U, 10, 6));
    const PicturePtr before = p->copy();
    const auto expectFault = [&](int32_t x, int32_t y, void* to, const char* text) {
        startReports();
        EXPECT_EQ(call(*p, x, y, to), -5);
        expectReports({ { -5, name, text } });
        EXPECT_TRUE(samePicture(*before, *p));
    };
    expectFault(10, 6, nullptr, badX);
    expectFault(-1, 0, pixel, badX);
    expectFault(INT32_MIN, 0, pixel, badX);
    expectFault(9, 6, nullptr, badY);
    expectFault(0, -1, pixel, badY);
    expectFault(0, INT32_MAX, pixel, badY);
    expectFault(9, 5, nullptr, "pixel==0");

    EXPECT_EQ(call(nullptr, -1, -1, nullptr), -9);
    expectReports({ { -9, name, "Incorrect Image" } });
    p->header.alphaChannel = 3;
    EXPECT_EQ(call(*p, -1, -1, nullptr), -18);
    expectReports({ { -18, name, "Incorrect Image" } });

    const PicturePtr tiled = Picture::make(PictureSpec(PXK_DEPTH_16U, 30, 20).tiled(8, 8));
    const PicturePtr tiledBefore = tiled->copy();
    tiled->storage->refuseAt = 1;
    EXPECT_EQ(call(*tiled, 29, 19, pixel), -2);
    expectReports({ { -2, name, refusedTile } });
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

double sampleOf(const PxkImage& image, int32_t x, int32_t y)
{
    const uint8_t* const row =
        static_cast<const uint8_t*>(image.imageData) + static_cast<ptrdiff_t>(y) * image.widthStep;
    if (image.depth == PXK_DEPTH_1U) return row[x / 8] >> (7 - x % 8) & 1;
    const int32_t bytes = depthBits(image.depth) / 8;
    uint32_t bits = 0;
    memcpy(&bits, row + static_cast<ptrdiff_t>(x) * bytes, static_cast<size_t>(bytes));
    return numberOf(image.depth, bits);
}

// Samples where the sine is known: 128 = 8^2 + 8^2 is a quarter of 4 x 128.
TEST(Rings, centreAndEnds)
{
    const auto at = [](int32_t depth, int32_t x, int32_t y) {
        const std::unique_ptr<PxkImage, FreeImage> image(pxkCreateImageJaehne(depth, 256, 128));
        return sampleOf(*image, x, y);
    };
    startReports();
    EXPECT_EQ(at(PXK_DEPTH_8U, 128, 64), 127);
    EXPECT_EQ(at(PXK_DEPTH_16U, 128, 64), 32767);
    EXPECT_EQ(at(PXK_DEPTH_32S, 128, 64), 0);
    EXPECT_EQ(at(PXK_DEPTH_1U, 128, 64), 0);
    EXPECT_EQ(at(PXK_DEPTH_8U, 136, 72), 255);
    EXPECT_EQ(at(PXK_DEPTH_8S, 120, 56), 127);
    EXPECT_EQ(at(PXK_DEPTH_16S, 120, 72), 32767);
    EXPECT_EQ(at(PXK_DEPTH_1U, 136, 56), 1);
    EXPECT_EQ(at(PXK_DEPTH_32F, 136, 56), static_cast<double>(0.99998f));
    expectNoReports();
}

// Everywhere within one level of the sine, in a header that says gray.
TEST(Rings, followTheSine)
{
    for (const auto& size : { std::make_pair(255, 33), std::make_pair(34, 200), std::make_pair(1, 2) }) {
        const int32_t width = size.first, height = size.second;
        const std::unique_ptr<PxkImage, FreeImage> image(pxkCreateImageJaehne(PXK_DEPTH_8U, width, height));
        ASSERT_EQ(pxkCheckImageHeader(image.get()), 0);
        EXPECT_EQ(std::string(image->colorModel, 4) + std::string(image->channelSeq, 4), "GRAYGRAY");
        EXPECT_TRUE(image->width == width && image->height == height && image->nChannels == 1);
        for (int32_t i = 0; i < width * height; ++i) {
            const double dx = i % width - width / 2, dy = i / width - height / 2;
            const double sine = std::sin((dx * dx + dy * dy) * 6.283185307179586 / (4 * height));
            ASSERT_NEAR(sampleOf(*image, i % width, i / width), (sine + 1) * 128 - 0.5, 0.51);
        }
    }
}

TEST(Rings, refusals)
{
    const int32_t bad[][4] = { { PXK_DEPTH_8U, 0, 5, -10 },
                               { PXK_DEPTH_8U, 5, -1, -10 },
                               { 12, 0, 0, -10 },
                               { 12, 5, 5, -17 },
                               { PXK_DEPTH_SIGN | 1, 5, 5, -17 } };
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
