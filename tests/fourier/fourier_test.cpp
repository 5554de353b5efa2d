// SPDX-License-Identifier: BSD-2-Clause
// Accuracy on large images, rounding, what is kept between calls.
#include "reference/fourier.h"

#include <thread>

#include "support/compare.h"
#include "support/reports.h"

namespace {

PicturePtr noise(int32_t width, int32_t height)
{
    const PicturePtr picture = Picture::make({ PXK_DEPTH_32F, width, height });
    Random random(5);
    fillRange(*picture, random, -1, 1);
    return picture;
}

// Root of the mean square of the difference, as a part of that of `a`.
double distance(const Picture& a, const Picture& b)
{
    double difference = 0, energy = 0;
    a.forEachSample([&](int32_t x, int32_t y, int32_t) {
        difference += std::pow(a.number(x, y) - b.number(x, y), 2);
        energy += std::pow(a.number(x, y), 2);
    });
    return std::sqrt(difference / energy);
}

PicturePtr pictureOf(const Grid<double>& grid)
{
    const PicturePtr picture = Picture::make({ PXK_DEPTH_32F, grid.width, grid.height });
    picture->forEachSample([&](int32_t x, int32_t y, int32_t) { picture->setNumber(x, y, 0, grid.at(x, y)); });
    return picture;
}

TEST(Fourier, isAccurateOnLargeImages)
{
    startReports();
    for (const auto& [width, height] :
         { std::pair(256, 256), std::pair(1000, 30), std::pair(64, 1021), std::pair(97, 101), std::pair(262, 134),
           std::pair(2048, 3), std::pair(5, 600) }) {
        SCOPED_TRACE(::testing::Message() << width << " x " << height);
        const PicturePtr image = noise(width, height);
        const PicturePtr packed = image->copy(), back = image->copy(), cosines = image->copy(), again = image->copy();
        Grid<double> grid(width, height);
        image->forEachSample([&](int32_t x, int32_t y, int32_t) { grid.at(x, y) = image->number(x, y); });
        pxkRealFft2D(*image, *packed, PXK_FFT_FORWARD);
        pxkCcsFft2D(*packed, *back, PXK_FFT_INVERSE);
        pxkDCT2D(*image, *cosines, PXK_DCT_FORWARD);
        pxkDCT2D(*cosines, *again, PXK_DCT_INVERSE);
        EXPECT_LT(distance(*pictureOf(modelPack<double>(grid, false, false)), *packed), 4e-7);
        EXPECT_LT(distance(*image, *back), 5e-7);
        EXPECT_LT(distance(*pictureOf(modelCosine(grid, true)), *cosines), 4e-7);
        EXPECT_LT(distance(*image, *again), 5e-7);
    }
}

// One pixel is its own spectrum.
TEST(Fourier, roundsHalvesToEvenAndLimits)
{
    startReports();
    const struct {
        int32_t depth;
        double value, stored;
    } rows[] = { { PXK_DEPTH_8S, -127.5, -128 },    { PXK_DEPTH_8S, 127.5, 127 },      { PXK_DEPTH_8U, 254.5, 254 },
                 { PXK_DEPTH_8U, -0.3, 0 },         { PXK_DEPTH_16U, 70000, 65535 },   { PXK_DEPTH_16S, 2.5, 2 },
                 { PXK_DEPTH_32S, 3e9, INT32_MAX }, { PXK_DEPTH_32S, -3e9, INT32_MIN } };
    for (const auto& row : rows) {
        const PicturePtr from = Picture::make({ PXK_DEPTH_32F, 1, 1 }), to = Picture::make({ row.depth, 1, 1 });
        from->setNumber(0, 0, 0, row.value);
        pxkRealFft2D(*from, *to, PXK_FFT_FORWARD);
        EXPECT_EQ(to->number(0, 0), row.stored) << depthName(row.depth) << " of " << row.value;
        pxkDCT2D(*from, *to, PXK_DCT_FORWARD);
        EXPECT_EQ(to->number(0, 0), row.stored);
    }
}

// Lines that fill up a batch hold nothing of an earlier call.
TEST(Fourier, forgetsWhatWasTransformedBefore)
{
    startReports();
    const PicturePtr huge = Picture::make({ PXK_DEPTH_32F, 80, 80 });
    huge->forEachSample(
        [&](int32_t x, int32_t y, int32_t) { huge->setNumber(x, y, 0, (x + y) % 2 == 0 ? 3e38 : -3e38); });
    for (const int32_t width : { 18, 22, 27, 30, 51, 62 }) {
        const PicturePtr image = noise(width, 3), fresh = image->copy(), then = image->copy();
        for (const int32_t flags : { PXK_DCT_FORWARD, PXK_DCT_INVERSE }) {
            pxkDCT2D(nullptr, nullptr, PXK_DCT_FREE);
            pxkDCT2D(*image, *fresh, flags);
            pxkDCT2D(*huge, *huge->copy(), flags);
            pxkDCT2D(*image, *then, flags);
            EXPECT_TRUE(samePicture(*fresh, *then, BITS)) << width;
            pxkRealFft2D(*image, *fresh, flags);
            pxkRealFft2D(*huge, *huge->copy(), flags);
            pxkRealFft2D(*image, *then, flags);
            EXPECT_TRUE(samePicture(*fresh, *then, BITS)) << width;
        }
    }
}

// More lengths than there is room for come and go.
TEST(Fourier, tablesComeAndGo)
{
    startReports();
    const PicturePtr image = noise(50, 21);
    const PicturePtr first = image->copy(), then = image->copy();
    pxkRealFft2D(*image, *first, PXK_FFT_FORWARD);
    for (int32_t n = 1; n < 200; n += 3) {
        const PicturePtr other = noise(n, 1 + n % 7), integers = Picture::make({ PXK_DEPTH_16S, n, 5 });
        pxkRealFft2D(*other, *other, PXK_FFT_FORWARD);
        pxkRealFft2D(*integers, *integers, PXK_FFT_FORWARD | PXK_FFT_USE_INT);
        pxkDCT2D(*other, *other->copy(), PXK_DCT_FORWARD);
    }
    pxkRealFft2D(*image, *then, PXK_FFT_FORWARD);
    EXPECT_TRUE(samePicture(*first, *then, BITS));
    pxkSetErrStatus(-77);
    pxkCcsFft2D(nullptr, nullptr, PXK_FFT_FREE | PXK_FFT_FORWARD | PXK_FFT_INVERSE);
    pxkDCT2D(nullptr, nullptr, PXK_DCT_FREE);
    EXPECT_EQ(pxkGetErrStatus(), -77);
    pxkSetErrStatus(0);
    for (const int32_t flags : { 0, PXK_DCT_FORWARD | PXK_DCT_INVERSE }) pxkDCT2D(*first, *then, flags);
    pxkRealFft2D(*image, *first, PXK_FFT_FORWARD);
    EXPECT_TRUE(samePicture(*first, *then, BITS));
    expectNoReports();
    pxkDCT2D(*first, *first, 3);
    expectReports({ { PXK_StsBadArg, "pxkDCT2D", "\nFunction does not support inplace operation" } });
}

} // namespace
