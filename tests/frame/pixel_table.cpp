// SPDX-License-Identifier: BSD-2-Clause
// Single pixels and the ring image.
#include <cmath>
#include <cstring>

#include "support/operations.h"

namespace {

// A pixel as the library lays it out, samples one behind the other and bits in bytes, is a picture of one pixel.
PicturePtr pixelOf(const PxkImage& image, double seed)
{
    const int32_t depth = image.depth == PXK_DEPTH_1U ? PXK_DEPTH_8U : image.depth;
    return Picture::make({ depth, 1, 1, image.nChannels }, uint64_t(std::fabs(seed)));
}

// x, y and the seed of the pixel that is put, or of what is in its place before one is got; below 0: there is no place.
void addPixel(const std::string& name, int32_t (*access)(PxkImage*, int32_t, int32_t, void*), bool isPut,
              const char* refusedTile)
{
    Operation op(
        name, { "image" },
        [=](const Arguments& a) {
            uint8_t memory[42] = {}; // odd addresses are the caller's right
            if (a[0] == nullptr) return access(nullptr, a.integer(0), a.integer(1), memory);
            const PicturePtr pixel = pixelOf(*a[0], a.numbers[2]);
            const size_t bytes = size_t(pixel->spec.channels * depthBits(pixel->spec.depth) / 8);
            memcpy(memory + 1, pixel->row(0), bytes);
            const int32_t status = access(a[0], a.integer(0), a.integer(1), a.numbers[2] < 0 ? nullptr : memory + 1);
            EXPECT_EQ(memory[0] + memory[1 + bytes], 0);
            memcpy(pixel->row(0), memory + 1, bytes);
            found.clear();
            for (int32_t c = 0; c < pixel->spec.channels; ++c) found.push_back(pixel->bits(0, 0, c));
            return status;
        },
        [=](const Scene& s, const Numbers& n, const Scene& got) {
            Picture& p = s[0];
            const PicturePtr pixel = pixelOf(p.header, n[2]);
            const int32_t x = int32_t(n[0]), y = int32_t(n[1]);
            const int32_t row = p.spec.origin == 1 ? p.spec.height - 1 - y : y;
            for (int32_t c = 0; c < p.spec.channels; ++c) {
                if (isPut) p.setBits(x, row, c, pixel->bits(0, 0, c));
                EXPECT_EQ(found[size_t(c)], (isPut ? *pixel : p).bits(isPut ? 0 : x, isPut ? 0 : row, c));
            }
            if (!p.isTiled()) return;
            EXPECT_EQ(got[0].storage->calls.size(), 2u);
            EXPECT_TRUE(got[0].askedOnlyInside(x, row, 1, 1));
        });
    op.scene = [](const Case& c) {
        return makeScene(c, 1, [&](PictureSpec& spec, size_t) { spec.origin = int32_t(c.seed % 2); });
    };
    op.numbers = [](const Case&, const Scene& s, Random& random) {
        const bool isLast = random.oneIn(4);
        const int32_t x = random.below(s[0].spec.width), y = random.below(s[0].spec.height);
        return Numbers { double(isLast ? s[0].spec.width - 1 : x), double(isLast ? s[0].spec.height - 1 : y),
                         double(random.below(1 << 30)) };
    };
    op.isPointwise = op.hasRegions = op.hasMasks = false; // neither region nor mask nor channel of interest counts
    op.nWritten = isPut ? 1 : 0;
    op.refusedTile = tells(-2, refusedTile);
    op.tolerance = BITS;
    addOperation(op);
    for (const double x : { 9, -1, INT32_MIN })
        addRefusals(name, { { "((x>width-1) || (x<0))", { RGB }, { x, 4, -1 } } });
    for (const double y : { 4, -1, INT32_MAX })
        addRefusals(name, { { "((y>height-1) || (y<0))", { RGB }, { 8, y, -1 } } });
    addRefusals(name, { { "pixel==0", { RGB }, { 8, 3, -1 } } });
}

// Everywhere within one level of the sine, in a header that says gray. The image of the scene has the depth and size.
void addRings()
{
    const char* const name = "pxkCreateImageJaehne";
    Operation op(
        name, { "size" },
        [](const Arguments& a) {
            PxkImage* const image = pxkCreateImageJaehne(a[0]->depth, a[0]->width, a[0]->height);
            found.clear();
            EXPECT_EQ(std::string(image->colorModel, 4) + std::string(image->channelSeq, 4), "GRAYGRAY");
            const PicturePtr ring = Picture::of(*image);
            ring->forEachSample([&](int32_t x, int32_t y, int32_t) { found.push_back(ring->number(x, y)); });
            pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
        },
        [](const Scene& s, const Numbers&) {
            const int32_t depth = s[0].spec.depth, width = s[0].spec.width, height = s[0].spec.height;
            const bool isFloat = isFloatDepth(depth);
            const double middle = depth < 0 ? 0 : 1, scale = isFloat ? 0.5 : std::exp2(depthBits(depth) - 1);
            ASSERT_EQ(found.size(), size_t(width * height));
            for (int32_t i = 0; i < width * height; ++i) {
                const double dx = i % width - width / 2, dy = i / width - height / 2;
                const double sine = std::sin((dx * dx + dy * dy) * 6.283185307179586 / (4 * height));
                const double exact = std::fabs(sine + middle) * scale - (isFloat ? 0 : 0.5); // fractions are cut off
                ASSERT_NEAR(std::fabs(found[size_t(i)]), exact, isFloat ? 1e-4 : 0.51 + scale * 1e-7);
            }
        });
    op.axes.channels = { Channels::ONE };
    op.axes.masks = op.axes.tilings = { 0 };
    op.axes.count = 200;
    op.isPointwise = op.hasRegions = op.hasMasks = false;
    op.nullImage = op.noMemory = op.refusedTile = nullptr;
    op.badHeader = nullptr;
    addOperation(op);
    const auto refused = [=](int32_t status, int32_t depth, int32_t width, int32_t height) {
        addRefusedCalls({ { { status, name, pxkErrorStr(status) },
                            [=] { EXPECT_EQ(pxkCreateImageJaehne(depth, width, height), nullptr); } } });
    };
    refused(-10, PXK_DEPTH_8U, 0, 5);
    refused(-10, 12, 5, -1);
    refused(-17, 12, 5, 5);
}

const Rows rows([] {
    addPixel("pxkGetPixel", pxkGetPixel, false, "Error get tile to read");
    addPixel("pxkPutPixel", pxkPutPixel, true, "Error get tile to write");
    addRings();
});

} // namespace
