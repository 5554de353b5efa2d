// SPDX-License-Identifier: BSD-2-Clause
// Accuracy on large images, rounding, what is kept between calls.
#include "reference/fourier.h"

#include <thread>

#include "support/compare.h"
#include "support/reports.h"

namespace {

PicturePtr noise(int32_t width, int32_t height)
{
    const PicturePtr picture = Picture::make(PictureSpec(PXK_DEPTH_32F, width, height));
    Random random(5);
    fillRange(*picture, random, -1, 1);
    return picture;
}

double energy(const Picture& p)
{
    double sum = 0;
    for (int32_t y = 0; y < p.spec.height; ++y)
        for (int32_t x = 0; x < p.spec.width; ++x) sum += p.number(x, y) * p.number(x, y);
    return sum;
}

double distance(const Picture& a, const Picture& b)
{
    double sum = 0;
    for (int32_t y = 0; y < a.spec.height; ++y)
        for (int32_t x = 0; x < a.spec.width; ++x) sum += std::pow(a.number(x, y) - b.number(x, y), 2);
    return std::sqrt(sum / energy(a));
}

// Every value of a few rows and columns of the spectrum against sums, the rest by way of the inverse.
TEST(Fourier, isAccurateOnLargeImages)
{
    startReports();
    for (const auto& size :
         { CommonSize { 256, 256 }, { 1000, 30 }, { 64, 1021 }, { 97, 101 }, { 262, 134 }, { 2048, 3 } }) {
        const PicturePtr image = noise(int32_t(size.width), int32_t(size.height));
        const PicturePtr packed = image->copy(), back = image->copy(), cosines = image->copy(), again = image->copy();
        Grid<double> grid(int32_t(size.width), int32_t(size.height));
        for (size_t i = 0; i < grid.values.size(); ++i)
            grid.values[i] = image->number(int32_t(i) % grid.width, int32_t(i) / grid.width);
        pxkRealFft2D(*image, *packed, PXK_FFT_FORWARD);
        pxkCcsFft2D(*packed, *back, PXK_FFT_INVERSE);
        pxkDCT2D(*image, *cosines, PXK_DCT_FORWARD);
        pxkDCT2D(*cosines, *again, PXK_DCT_INVERSE);
        const PicturePtr want = image->copy(), wantCosines = image->copy();
        const Grid<double> spectrum = modelPack(grid, -1, 1), cosine = modelCosine(grid, true);
        for (int32_t y = 0; y < grid.height; ++y)
            for (int32_t x = 0; x < grid.width; ++x) {
                want->setNumber(x, y, 0, spectrum.at(x, y));
                wantCosines->setNumber(x, y, 0, cosine.at(x, y));
            }
        SCOPED_TRACE(::testing::Message() << size.width << " x " << size.height);
        EXPECT_LT(distance(*want, *packed), 4e-7);
        EXPECT_LT(distance(*image, *back), 5e-7);
        EXPECT_LT(distance(*wantCosines, *cosines), 4e-7);
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
        const PicturePtr from = Picture::make(PictureSpec(PXK_DEPTH_32F, 1, 1)),
                         to = Picture::make(PictureSpec(row.depth, 1, 1));
        from->setNumber(0, 0, 0, row.value);
        pxkRealFft2D(*from, *to, PXK_FFT_FORWARD);
        EXPECT_EQ(to->number(0, 0), row.stored) << depthName(row.depth) << " of " << row.value;
        pxkDCT2D(*from, *to, PXK_DCT_FORWARD);
        EXPECT_EQ(to->number(0, 0), row.stored);
    }
}

// A transform doesn't depend on what was transformed before; more lengths than there is room for come and go.
TEST(Fourier, tablesComeAndGo)
{
    startReports();
    const PicturePtr image = noise(50, 21);
    const PicturePtr first = image->copy(), then = image->copy();
    pxkRealFft2D(*image, *first, PXK_FFT_FORWARD);
    for (int32_t n = 1; n < 200; n += 3) {
        const PicturePtr other = noise(n, 1 + n % 7), integers = Picture::make(PictureSpec(PXK_DEPTH_16S, n, 5));
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
