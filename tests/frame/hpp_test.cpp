// SPDX-License-Identifier: BSD-2-Clause
// The header for C++: what it adds to the calls of the C interface.
#include <pxk/pxk.hpp>

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

static int32_t PXK_CALL ownHandler(int32_t, const char*, const char*, const char*, int32_t)
{
    ADD_FAILURE() << "a report went to the thread's own handler";
    return 0;
}

template <class... Arguments>
static void expectError(int32_t status, const std::string& function, const std::string& text, Arguments&&... call)
{
    try {
        pxk::call(std::forward<Arguments>(call)...);
        ADD_FAILURE() << function << ": no exception";
    } catch (const pxk::Error& error) {
        EXPECT_EQ(error.status(), status) << error.what();
        EXPECT_EQ(error.function(), function);
        EXPECT_EQ(error.text(), text);
        EXPECT_NE(std::string(error.what()).find(pxkErrorStr(status)), std::string::npos) << error.what();
    }
}

TEST(Hpp, aFailureIsAnExceptionAndTheThreadKeepsItsState)
{
    const PxkErrorCallBack before = pxkRedirectError(ownHandler);
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkSetErrStatus(PXK_StsBadFunc); // stale: nothing that is called may stop at it

    const pxk::Image bytes(pxk::gray(), 5, 4, 9), words(pxk::gray(PXK_DEPTH_16U), 5, 4);
    expectError(PXK_StsBadArg, "pxkAdd", "(srcImageA->depth != dstImage->depth)", pxkAdd, bytes, words, words);
    const pxk::Image floats(pxk::gray(PXK_DEPTH_32F), 5, 4);
    expectError(PXK_StsBadRoiSize, "pxkSet", "Incorrect Image", pxkSetFP, floats.region({}), 1.0f); // the cause
    expectError(PXK_StsNullHeader, "", "no report", pxkCheckImageHeader, nullptr);
    expectError(PXK_StsNoMem, "", "no report", pxkMalloc, -1);
    EXPECT_THROW(pxk::Image(pxk::gray(7), 1, 1), pxk::Error);
    EXPECT_THROW(pxk::Image(pxk::gray(), INT32_MAX, 1 << 10), pxk::Error);
    pxk::call(pxkSet, bytes, 3);
    EXPECT_EQ(pxk::call(pxkNorm, bytes, nullptr, PXK_NORM_L1), 60);

    EXPECT_EQ(pxkGetErrStatus(), PXK_StsBadFunc);
    EXPECT_EQ(pxkGetErrMode(), PXK_ErrModeSilent);
    EXPECT_EQ(pxkRedirectError(before), ownHandler);
    pxkSetErrMode(PXK_ErrModeLeaf);
    pxkSetErrStatus(PXK_StsOk);
}

TEST(Hpp, viewsCarryRegionChannelAndMaskWhereverTheyAreCopied)
{
    for (const pxk::Format& format : { pxk::bgra(), pxk::bgra().planes() }) {
        pxk::Image image(format, 7, 5, 1);
        std::array<uint8_t, 2> diagonal = { 0x80, 0x40 };
        std::vector<pxk::View> views;
        {
            const pxk::View mask(diagonal, pxk::bits(), 2, 2);
            views.assign(3, image.region({ 3, 1, 2, 2 }).channel(2).masked(mask.region({ 0, 0, 2, 2 })));
        }
        views[0] = views[2];
        pxk::call(pxkSet, views[0], 200);
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 7; ++x)
                for (int c = 0; c < 4; ++c)
                    EXPECT_EQ(image.at<uint8_t>(x, y, c), c == 1 && x - 2 == y && (y == 1 || y == 2) ? 200 : 1)
                        << x << " " << y << " " << c;
        const pxk::Image copy = pxk::Image(image.channel(2).get() ? image.release() : nullptr).clone();
        EXPECT_EQ(copy.at<uint8_t>(4, 2, 1), 200);
        EXPECT_THROW(copy.at<uint8_t>(7, 0), pxk::Error);
        EXPECT_THROW(copy.row<uint16_t>(0), pxk::Error);
    }
}

TEST(Hpp, viewsOfTheProgramsPixelsHaveAnyRowStep)
{
    std::vector<uint16_t> samples(3 * 11 - 2, 5); // rows of 9 samples, 2 more between them
    const pxk::View view(samples, pxk::rgb(PXK_DEPTH_16U), 3, 3, 22);
    const pxk::View part = view.region({ 1, 1, 2, 9 }); // cut off at the edge
    pxk::call(pxkAddS, part, part, 60000);
    for (size_t i = 0; i < samples.size(); ++i)
        EXPECT_EQ(samples[i], i >= 11 && i % 11 >= 3 && i % 11 < 9 ? 60005 : 5) << i;
    EXPECT_EQ(view.row<uint16_t>(2).size(), 9u);
    EXPECT_EQ(view.row<uint16_t>(2).begin(), &samples[22]);
    EXPECT_EQ(&view.at<uint16_t>(2, 1, 1), &samples[18]);

    std::array<uint8_t, 63> bytes = {};
    const pxk::View odd(bytes.data() + 1, pxk::gray(), 5, 4, 13); // neither aligned nor a multiple of anything
    pxk::call(pxkNot, odd, odd);
    for (size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], i % 13 >= 1 && i % 13 <= 5 && i < 46 ? 255 : 0) << i;

    EXPECT_THROW(pxk::View(samples, pxk::rgb(PXK_DEPTH_16U), 3, 3, 24), pxk::Error);
    EXPECT_THROW(pxk::View(samples, pxk::rgb(PXK_DEPTH_16S), 3, 3, 22), pxk::Error);
    EXPECT_THROW(pxk::View(samples, pxk::rgb(PXK_DEPTH_16U), 3, 3, 17), pxk::Error);
}

struct Bands : pxk::Tiles {
    Bands()
        : Tiles(16, 8)
    {
    }
    void* tile(int32_t xIndex, int32_t yIndex, int32_t) override
    {
        if (yIndex == refused) throw std::out_of_range("tile");
        EXPECT_THROW(pxk::call(pxkMalloc, -1), pxk::Error); // a call inside a call
        ++held;
        return &memory[static_cast<size_t>((yIndex * 2 + xIndex) * 16 * 8)];
    }
    void release(int32_t, int32_t, void* tile) noexcept override { held -= tile != nullptr; }
    std::vector<uint8_t> memory = std::vector<uint8_t>(4 * 16 * 8, 40);
    int32_t refused = -1, held = 0;
};

TEST(Hpp, tilesComeFromAClassAndItsExceptionsComeThrough)
{
    Bands bands;
    const pxk::Format packed { PXK_DEPTH_8U, 1, "GRAY", "G", 0, PXK_DATA_ORDER_PIXEL, 0, 4 };
    const pxk::View tiled(bands, packed, 32, 16);
    const pxk::Image sum(pxk::gray(), 32, 16, 2);
    pxk::call(pxkAdd, tiled, sum, sum);
    EXPECT_EQ(sum.at<uint8_t>(31, 15), 42);
    bands.refused = 1;
    EXPECT_THROW(pxk::call(pxkAdd, tiled, sum, tiled), std::out_of_range);
    EXPECT_EQ(bands.held, 0);
    EXPECT_EQ(bands.memory.front(), 82);
    EXPECT_EQ(bands.memory.back(), 40);
}

TEST(Hpp, recordsAreOwned)
{
    const int32_t values[] = { 1, 1 };
    pxk::Kernel made(pxk::call(pxkCreateConvKernel, 2, 1, 0, 0, values, 0));
    const pxk::Kernel kernel = std::move(made);
    const pxk::Image image(pxk::gray(PXK_DEPTH_32S).planes().bottomUp(), 4, 1, 3);
    PxkConvKernel* kernels[] = { kernel };
    pxk::call(pxkConvolve2D, image, image, kernels, 1, PXK_CONV_SUM);
    EXPECT_EQ(image.at<int32_t>(1, 0), 6);
    EXPECT_EQ(image.get()->origin, 1);
    EXPECT_FALSE(made);
}
