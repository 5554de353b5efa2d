#include <cstring>

#include "reference/frame.h"
#include "support/cases.h"
#include "support/reports.h"

static void compareCopy(const Scene& got)
{
    const Scene want = got.copy();
    modelCopy(want[0], want[1]);
    startReports();
    pxkCopy(got[0], got[1]);
    expectNoReports();
    EXPECT_TRUE(sameScene(want, got, BITS));
}

static void compareExchange(const Scene& got)
{
    const Scene want = got.copy();
    modelExchange(want[0], want[1]);
    startReports();
    pxkExchange(got[0], got[1]);
    expectNoReports();
    EXPECT_TRUE(sameScene(want, got, BITS));
}

static Axes axesOfPairs(uint64_t seed)
{
    Axes axes;
    axes.seed = seed;
    axes.masks = { 0, 1, 2, 3, 3 | SHARED };
    axes.tilings = { 0 };
    axes.count = 4000;
    return axes;
}

static Axes tiled(Axes axes)
{
    axes.tilings = { 1, 2, 3, 3 | SHARED };
    axes.count = 2500;
    return axes;
}

TEST(Copy, matchesModel)
{
    forEachCase(axesOfPairs(1), [](const Case& c) { compareCopy(makeScene(c, 2)); });
}

TEST(Copy, matchesModelInTiles)
{
    forEachCase(tiled(axesOfPairs(2)), [](const Case& c) { compareCopy(makeScene(c, 2)); });
}

// One header twice is nothing to do; another header over the same pixels may name another channel of them.
TEST(Copy, matchesModelInPlace)
{
    Axes axes = axesOfPairs(3);
    axes.places = { InPlace::FIRST, InPlace::OTHER_HEADER };
    axes.count = 1500;
    forEachCase(axes, [](const Case& c) {
        const Scene scene = makeScene(c, 2);
        if (scene[1].roi.coi != 0) scene[1].roi.coi = scene[1].spec.channels;
        compareCopy(scene);
    });
}

TEST(Copy, oneChannelOfUnlikeOrders)
{
    Axes axes = axesOfPairs(4);
    axes.orders = { Order::MIXED };
    axes.channels = { Channels::ONE };
    forEachCase(axes, [](const Case& c) { compareCopy(makeScene(c, 2)); });
}

TEST(Exchange, matchesModel)
{
    forEachCase(axesOfPairs(5), [](const Case& c) { compareExchange(makeScene(c, 2)); });
}

TEST(Exchange, matchesModelInTiles)
{
    forEachCase(tiled(axesOfPairs(6)), [](const Case& c) { compareExchange(makeScene(c, 2)); });
}

TEST(Set, matchesModel)
{
    static const int32_t values[] = { 0, 1, -1, 5, -5, 127, 128, 255, 300, 32767, 40000, -40000, INT32_MAX, INT32_MIN };
    Axes axes;
    axes.masks = { 0, 1 };
    axes.tilings = { 0, 0, 1 };
    axes.count = 5000;
    forEachCase(axes, [](const Case& c) {
        const Scene got = makeScene(c, 1), want = got.copy();
        const int32_t value = Random(c.seed).oneOf(values);
        SCOPED_TRACE(value);
        startReports();
        if (isFloatDepth(c.depth)) {
            const float number = static_cast<float>(value) / 3;
            modelSetBits(want[0], bitsOf(PXK_DEPTH_32F, number));
            pxkSetFP(got[0], number);
        } else {
            modelSet(want[0], value);
            pxkSet(got[0], value);
        }
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got, BITS));
    });
}

// Copies and exchanges one-bit runs at two offsets; each block ends in front of an unreadable page, with the row's last
// byte or with padding.
static void compareBits(int32_t offsetA, int32_t offsetB, int32_t width, Random& random)
{
    SCOPED_TRACE(::testing::Message() << "offsets " << offsetA << ", " << offsetB << " width " << width);
    Scene scene;
    for (const int32_t x : { offsetA, offsetB }) {
        const int32_t imageWidth = random.oneIn(2) ? x + width : (x + width + 31) / 32 * 32;
        scene.images.push_back(Picture::make(PictureSpec(PXK_DEPTH_1U, imageWidth, 2), random));
        scene.last().setRegion(x, 0, INT32_MAX, 2);
    }
    compareCopy(scene);
    compareExchange(scene);
}

TEST(Copy, allBitOffsets)
{
    Random random(5);
    for (int32_t width = 1; width <= 75; ++width) {
        for (int32_t offsets = 0; offsets < 64 && !HasFailure(); ++offsets) {
            compareBits(offsets / 8, offsets % 8, width, random);
        }
    }
}

TEST(Copy, longBitRows)
{
    Random random(6);
    for (int32_t i = 0; i < 16 && !HasFailure(); ++i) {
        compareBits(i % 8, i < 8 ? i : random.below(8), random.between(9000, 40000), random);
    }
}

// ---- refusals ------------------------------------------------------------------------------------------------------

using PairFunction = void (*)(PxkImage*, PxkImage*);

struct Pair {
    PairFunction call;
    const char* name;
};

static const Pair pairs[] = { { pxkCopy, "pxkCopy" }, { pxkExchange, "pxkExchange" } };

// 2^31 pixels in rows that touch: more than a pointer difference of 32 bits can count.
TEST(Set, asManyBitsAsFitInMemory)
{
    PxkImage* const image = pxkCreateImageHeader(1, 0, PXK_DEPTH_1U, "GRAY", "G", 0, 0, 4, 65536, 32768, nullptr,
                                                 nullptr, nullptr, nullptr);
    pxkAllocateImage(image, 0, 0);
    if (image->imageData == nullptr) GTEST_SKIP() << "no 256 MiB of memory";
    pxkSet(image, 1);
    const uint8_t* const last = static_cast<uint8_t*>(image->imageData) + image->imageSize - 1;
    EXPECT_EQ(*last, 0xFF);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

TEST(Copy, reportsAllArgumentFaults)
{
    const char* const incorrect = "Incorrect Image";
    for (const Pair& pair : pairs) {
        const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 9, 4, 3), 1), dst = src->copy();
        fillRange(*src, *std::make_unique<Random>(9), 0, 255);
        const PicturePtr want = dst->copy();
        startReports();
        pair.call(nullptr, *dst);
        expectReports({ { PXK_StsNullHeader, pair.name, incorrect } });
        pair.call(*src, nullptr);
        expectReports({ { PXK_StsNullHeader, pair.name, incorrect } });
        src->header.align = 7;
        dst->header.origin = -1;
        pair.call(*src, *dst);
        expectReports({ { PXK_StsBadAlign, pair.name, incorrect } });
        src->header.align = 4;
        dst->header.origin = 1;
        dst->header.depth = PXK_DEPTH_8S;
        dst->header.dataOrder = PXK_DATA_ORDER_PLANE;
        pxkSetErrStatus(-50); // does not silence these
        pair.call(*src, *dst);
        expectReports({ { PXK_StsBadArg, pair.name, "srcImage->depth != dstImage->depth" },
                        { PXK_StsBadArg, pair.name, "srcImage->origin != dstImage->origin" },
                        { PXK_StsBadArg, pair.name, "srcImage->dataOrder != dstImage->dataOrder" } });
        dst->header = src->header;
        dst->header.imageData = dst->row(0);
        dst->setRegion(0, 0, 2, 2, 1);
        pair.call(*src, *dst);
        expectReports({ { PXK_StsBadArg, pair.name,
                          "Number of processed channels of srcImage != Number of processed channels of dstImage" } });
        src->setRegion(9, 0, 2, 2);
        pair.call(*src, *dst); // nothing to do goes before unlike channels
        src->setRegion(-1, 0, 2, 2);
        expectNoReports();
        pair.call(*src, *dst);
        expectReports({ { PXK_StsBadRoiOffset, pair.name, incorrect } });
        EXPECT_TRUE(sameSamples(*want, *dst));
    }
}

TEST(Copy, stopsSilentlyOnNegativeStatus)
{
    const PicturePtr src = Picture::make(PictureSpec(), 1), dst = Picture::make(PictureSpec(), 2), want = dst->copy();
    startReports();
    pxkSetErrStatus(-3);
    pxkCopy(*src, *dst);
    pxkExchange(*src, *dst);
    pxkSet(*dst, 1);
    EXPECT_TRUE(recordedReports().empty());
    EXPECT_EQ(pxkGetErrStatus(), -3);
    EXPECT_TRUE(samePicture(*want, *dst));
    pxkSetErrStatus(3);
    pxkCopy(*src, *dst);
    EXPECT_EQ(pxkGetErrStatus(), 3);
    EXPECT_TRUE(sameSamples(*src, *dst));
}

// Alpha alone is nothing to process, with or without a region; named as channel of interest it is.
TEST(Copy, loneAlpha)
{
    const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 5, 2).withAlpha(), 1);
    const PicturePtr dst = Picture::make(PictureSpec(PXK_DEPTH_8U, 5, 2).withAlpha(), 2), want = dst->copy();
    startReports();
    pxkCopy(*src, *dst);
    pxkSet(*dst, 3);
    src->setRegion(0, 0, 5, 2);
    dst->setRegion(0, 0, 5, 2);
    pxkCopy(*src, *dst);
    EXPECT_TRUE(sameSamples(*want, *dst));
    src->setRegion(0, 0, 5, 2, 1);
    dst->setRegion(0, 0, 5, 2, 1);
    pxkCopy(*src, *dst);
    expectNoReports();
    EXPECT_TRUE(sameSamples(*src, *dst));
}

TEST(Set, refusals)
{
    const PicturePtr f = Picture::make(PictureSpec(PXK_DEPTH_32F, 24, 2).tiled(8, 8)), bytes = Picture::make({});
    startReports();
    pxkSet(nullptr, 1);
    expectReports({ { PXK_StsNullHeader, "pxkSet", "Incorrect Image" } });
    pxkSet(*f, 1);
    expectReports({ { PXK_StsBadDepth, "pxkSet", "You should use pxkSetFP for this image" } });
    pxkSetFP(nullptr, 1);
    expectReports({ { PXK_StsBadArg, "pxkSetFP", "dstImage==0" } });
    pxkSetFP(*bytes, 1);
    expectReports({ { PXK_StsBadDepth, "pxkSetFP", "You should use pxkSet for this image" } });
    f->header.origin = 3;
    pxkSetFP(*f, 1);
    expectReports({ { PXK_StsBadOrigin, "pxkSet", "Incorrect Image" }, { PXK_StsBackTrace, "pxkSetFP", "" } });
    f->header.origin = 0;
    EXPECT_EQ(f->header.depth, PXK_DEPTH_32F);
    f->storage->refuseAt = 2;
    pxkSetFP(*f, 1); // an integer image of the same width while it works
    expectReports({ { -2, "pxkSet", "Error get tile to write" }, { PXK_StsBackTrace, "pxkSetFP", "" } });
    EXPECT_EQ(f->header.depth, PXK_DEPTH_32F);
    EXPECT_EQ(f->storage->calls[0].depth, PXK_DEPTH_32S);
    pxkSetErrStatus(-5);
    pxkSetFP(*f, 1);
    EXPECT_EQ(recordedReports(), (std::vector<Report> { { PXK_StsBackTrace, "pxkSetFP", "" } }));
}

// A refused tile ends the work. Reports say what it was wanted for, and here tiles already held stay held.
TEST(Copy, refusedTiles)
{
    const auto reportsOf = [](PairFunction call, bool isFirstTiled, bool isSecondTiled, bool isFirstRefused) {
        const PictureSpec plain(PXK_DEPTH_8U, 20, 10), tiles = PictureSpec(plain).tiled(8, 8);
        const PicturePtr a = Picture::make(isFirstTiled ? tiles : plain, 1);
        const PicturePtr b = Picture::make(isSecondTiled ? tiles : plain, 2);
        (isFirstRefused ? a : b)->storage->refuseAt = 2;
        startReports();
        call(*a, *b);
        EXPECT_EQ(b->storage->heldTiles(), isFirstTiled && isSecondTiled && isFirstRefused ? 1u : 0u);
        return recordedReports();
    };
    using Reports = std::vector<Report>;
    for (const Pair& pair : pairs) {
        const bool isCopy = std::string(pair.name) == "pxkCopy"; // addresses of imported functions differ by place
        EXPECT_EQ(reportsOf(pair.call, false, true, false), (Reports { { -2, pair.name, "Error get tile to write" } }));
        EXPECT_EQ(reportsOf(pair.call, true, true, false), (Reports { { -2, pair.name, "Error get tile to write" } }));
        EXPECT_EQ(reportsOf(pair.call, true, false, true),
                  (Reports { { -2, pair.name, isCopy ? "Error get tile to read" : "Error get tile to write" } }));
    }
    EXPECT_EQ(reportsOf(pxkCopy, true, true, true), (Reports { { PXK_StsBackTrace, "pxkCopy", "" } }));
}
