// SPDX-License-Identifier: BSD-2-Clause
// Kernels given back, tile calls, windows beyond what counters hold, blocks that overlap, and samples that are no
// numbers.
#include <array>
#include <limits>

#include "reference/window.h"
#include "support/operations.h"

// ---- kernels -------------------------------------------------------------------------------------------------------

// Of each value the lowest byte is given, too; and what is missing is told.
TEST(ConvKernel, isGivenBack)
{
    const int32_t values[6] = { 1, -2, 300, 4, 5, -600 };
    int32_t shape[5], got[6];
    int8_t bytes[6] = {};
    int32_t *const nCols = shape, *const nRows = shape + 1, *const x = shape + 2, *const y = shape + 3,
                   *const shift = shape + 4;
    startReports();
    PxkConvKernel* const kernel = pxkCreateConvKernel(3, 2, 0, 1, values, 5);
    EXPECT_TRUE(kernel->anchorX == 2 && kernel->anchorY == 0 && kernel->values[0] == -600);
    pxkGetConvKernelChar(kernel, nCols, nRows, x, y, bytes, shift);
    EXPECT_EQ(std::vector<int8_t>(bytes, bytes + 6), (std::vector<int8_t> { 1, -2, 300 - 256, 4, 5, -600 + 512 }));
    expectNoReports();
    pxkGetConvKernel(kernel, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    expectReports({ { -5, "pxkGetConvKernel", "nRows==0" }, { -5, "pxkGetConvKernel", "nCols==0" } });
    pxkGetConvKernelChar(kernel, nCols, nRows, nullptr, nullptr, nullptr, nullptr);
    expectReports({ { -5, "pxkGetConvKernelChar", "anchorX==0" }, { -5, "pxkGetConvKernelChar", "anchorY==0" } });
    pxkGetConvKernel(kernel, nCols, nRows, x, y, nullptr, shift);
    expectReports({ { -5, "pxkGetConvKernel", "values==0" } });
    pxkGetConvKernel(kernel, nCols, nRows, x, y, got, nullptr);
    expectReports({ { -5, "pxkGetConvKernel", "nShiftR==0" } });
    kernel->anchorX = 3;
    pxkGetConvKernel(kernel, nullptr, nRows, x, y, got, shift);
    expectReports({ { -5, "pxkGetConvKernel", "ownBadKernel((OwnConvKernel*)kernel)" } });
    pxkDeleteConvKernel(kernel);
    expectNoReports();
}

// ---- tiles ---------------------------------------------------------------------------------------------------------

// A row of source tiles is held together and given back in reverse; where the border mirrors it is walked backward.
TEST(FilterTiles, orderOfCalls)
{
    const auto callsOf = [](int32_t mode, const PxkROI& region, int32_t side = 5) {
        const PicturePtr src = Picture::make(PictureSpec { PXK_DEPTH_8U, 40, 20 }.tiled(16, 8));
        const PicturePtr dst = Picture::make({ PXK_DEPTH_8U, 40, 20 });
        pxkSetBorderMode(*src, mode, 15, 0);
        src->setRegion(region.xOffset, region.yOffset, region.width, region.height);
        pxkMaxFilter(*src, *dst, side, side, side - 1, side - 1);
        std::string text;
        for (const TileCall& call : src->storage->calls) {
            text +=
                std::string(call.mode == PXK_TILE_READ ? " +" : " -") + std::to_string(call.x) + std::to_string(call.y);
        }
        return text;
    };
    EXPECT_EQ(callsOf(PXK_EDGE_CLAMP, { 0, 21, 14, 10, 2 }), " +11 -11");
    EXPECT_EQ(callsOf(PXK_EDGE_CLAMP, { 0, 5, 6, 40, 5 }), " +00 +10 +20 -20 -10 -00 +01 +11 +21 -21 -11 -01");
    EXPECT_EQ(callsOf(PXK_EDGE_CONST, { 0, 0, 0, 3, 3 }), " +00 -00");
    EXPECT_EQ(callsOf(PXK_EDGE_WRAP, { 0, 0, 0, 3, 3 }), " +22 -22 +02 -02 +20 -20 +00 -00");
    EXPECT_EQ(callsOf(PXK_EDGE_MIRROR, { 0, 0, 0, 1, 1 }, 20),
              " +12 +02 -02 -12 +11 +01 -01 -11 +10 +00 -00 -10 +02 -02 +01 -01 +00 -00 +10 +00 -00 -10 +00 -00");
}

// ---- bounds --------------------------------------------------------------------------------------------------------

// Windows of more samples than 16 bits count, and around the most whose sums fit the narrow mean.
TEST(Filters, windowsBeyondCounters)
{
    const struct {
        const char* name;
        int32_t nCols, nRows;
    } rows[] = { { "pxkMedianFilter", 257, 255 }, { "pxkMedianFilter", 256, 256 }, { "pxkMedianFilter", 300, 260 },
                 { "pxkBlur", 218, 150 },         { "pxkBlur", 327, 100 },         { "pxkBlur", 300, 260 } };
    Random random(5);
    for (const auto& row : rows) {
        const Operation& op = operationNamed(row.name);
        for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_8S }) {
            const Scene got = { { Picture::make({ depth, 6, 2 }, random), Picture::make({ depth, 6, 2 }, random) } };
            for (int32_t side = 0; side < 4; ++side) pxkSetBorderMode(got[0], 1 + side % 3, 1 << side, 0);
            if (random.oneIn(3)) got[0].setAll(double(depthMax(depth)));
            got[0].freeze();
            SCOPED_TRACE(row.name);
            op.expectModel(got, { double(row.nCols), double(row.nRows), row.nCols / 2.0 - 0.5, 7 });
        }
    }
}

// Halves between neighbouring levels go up, whatever the number of samples that the sum is divided by.
TEST(Filters, meansOfHalves)
{
    const PicturePtr src = Picture::make({ PXK_DEPTH_8U, 2, 255 }, 1), dst = src->copy();
    for (int32_t i = 0; i < 2 * 255; ++i) src->setNumber(i % 2, i / 2, 0, i / 2 + i % 2);
    pxkSetBorderMode(*src, PXK_EDGE_WRAP, 15, 0);
    startReports();
    for (int32_t nCols = 2; nCols <= 33000; nCols += nCols < 700 ? 2 : 998) {
        pxkBlur(*src, *dst, nCols, 1, 0, 0);
        for (int32_t i = 0; i < 2 * 255; ++i) ASSERT_EQ(dst->value(i % 2, i / 2), i / 2 + 1) << nCols << " columns";
    }
    expectNoReports();
}

// A tiled image ends at the largest coordinate, and windows reach past it. All its tiles are one.
TEST(Filters, windowsPastTheLargestCoordinate)
{
    static std::array<uint8_t, 64> fives;
    fives.fill(5);
    const auto give = [](PxkImage* image, int32_t, int32_t, int32_t) {
        image->tileInfo->tileData = fives.data();
        return 0;
    };
    const PicturePtr dst = Picture::make({ PXK_DEPTH_8U, 4, 3 }, 1);
    PxkTileInfo tiles = { give, 0, nullptr, 8, 8 };
    PxkROI corner = { 0, INT32_MAX - 4, INT32_MAX - 3, 4, 3 };
    PxkImage src = dst->header;
    src.width = src.height = INT32_MAX;
    src.imageData = nullptr;
    src.tileInfo = &tiles;
    src.roi = &corner;
    pxkSetBorderMode(&src, PXK_EDGE_CLAMP, 15, 0);
    EXPECT_EQ(operationNamed("pxkMedianFilter").run({ { &src, *dst }, { 5, 5, 2, 2 } }), Ending());
    for (int32_t i = 0; i < 4 * 3; ++i) EXPECT_EQ(dst->value(i % 4, i / 4), 5);
}

// Source and destination lie in one block, some rows apart: the result is that of a source apart.
TEST(Filters, blocksMayOverlap)
{
    for (const char* const name : { "pxkBlur", "pxkErode", "pxkClose", "pxkFixedFilter" }) {
        const Numbers n = name == std::string("pxkBlur") ? Numbers { 5, 3, 2, 1 } : Numbers { 1 };
        for (const int32_t below : { -7, 3, 29 }) {
            const Scene block = { { Picture::make({ PXK_DEPTH_8U, 50, 60 }, 3) } };
            PxkImage source = block[0].header, destination = source;
            source.height = destination.height = 30;
            source.imageSize = destination.imageSize = source.widthStep * 30;
            source.imageData = block[0].row(15);
            destination.imageData = block[0].row(std::clamp(15 + below, 0, 30));
            const Scene apart = { { Picture::of(source), Picture::of(destination) } };
            operationNamed(name).model(apart, n, apart);
            EXPECT_EQ(operationNamed(name).run({ { &source, &destination }, n }), Ending());
            EXPECT_TRUE(sameSamples(apart[1], *Picture::of(destination))) << name << ", " << below << " rows below";
        }
    }
}

// One infinity and one NaN: samples out of their reach are those of the image without them.
TEST(Filters, nonFiniteSamplesStayInReach)
{
    Random random(9);
    const PicturePtr plain = Picture::make({ PXK_DEPTH_32F, 40, 30 }, random);
    fillRange(*plain, random, -5, 5);
    pxkSetBorderMode(*plain, PXK_EDGE_CLAMP, 15, 0);
    const PicturePtr struck = plain->copy();
    struck->setNumber(11, 9, 0, std::numeric_limits<double>::infinity());
    struck->setNumber(30, 21, 0, std::numeric_limits<double>::quiet_NaN());
    const float coefficients[] = { 1, 2, 3, 2, 1, 4, 5, 6, 5, 4, 1, 2, 3, 2, 1 };
    PxkConvKernelFP* kernel = pxkCreateConvKernelFP(5, 3, 2, 1, coefficients);
    for (const bool isBlur : { true, false }) {
        const PicturePtr a = plain->copy(), b = plain->copy();
        for (const auto& pair : { std::make_pair(plain, a), std::make_pair(struck, b) }) {
            if (isBlur) pxkBlur(*pair.first, *pair.second, 5, 3, 2, 1);
            if (!isBlur) pxkConvolve2DFP(*pair.first, *pair.second, &kernel, 1, 0);
        }
        for (int32_t y = 0; y < 30; ++y) {
            for (int32_t x = 0; x < 40; ++x) {
                const bool isInReach =
                    (std::abs(x - 11) <= 2 && std::abs(y - 9) <= 1) || (std::abs(x - 30) <= 2 && std::abs(y - 21) <= 1);
                EXPECT_EQ(isInReach, !std::isfinite(b->number(x, y)));
                EXPECT_TRUE(isInReach || a->bits(x, y, 0) == b->bits(x, y, 0)) << x << " " << y;
            }
        }
    }
    pxkDeleteConvKernelFP(kernel);
}
