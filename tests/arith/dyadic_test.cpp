#include "reference/arith.h"
#include "support/cases.h"
#include "support/refused_tiles.h"
#include "support/reports.h"

using DyadicFunction = void (*)(PxkImage*, PxkImage*, PxkImage*);

struct Operation {
    Dyadic op;
    DyadicFunction call;
    const char* name;
};

static const Operation operations[] = {
    { Dyadic::ADD, pxkAdd, "pxkAdd" },
    { Dyadic::SUBTRACT, pxkSubtract, "pxkSubtract" },
    { Dyadic::MULTIPLY, pxkMultiply, "pxkMultiply" },
    { Dyadic::AND, pxkAnd, "pxkAnd" },
    { Dyadic::OR, pxkOr, "pxkOr" },
    { Dyadic::XOR, pxkXor, "pxkXor" },
};

static bool isLogical(Dyadic op)
{
    return op == Dyadic::AND || op == Dyadic::OR || op == Dyadic::XOR;
}

static void compareWithModel(const Operation& operation, const Scene& got)
{
    const Scene want = got.copy();
    modelDyadic(operation.op, want[0], want[1], want[2]);
    startReports();
    operation.call(got[0], got[1], got[2]);
    expectNoReports();
    EXPECT_TRUE(sameScene(want, got));
    const CommonSize size = commonSize({ &got[0], &got[1], &got[2] });
    for (const PicturePtr& image : got.images) {
        const Window window = windowOf(*image);
        EXPECT_TRUE(
            image->askedOnlyInside(int32_t(window.x), int32_t(window.y), int32_t(size.width), int32_t(size.height)));
    }
}

class DyadicProduct : public ::testing::TestWithParam<Operation> { };

INSTANTIATE_TEST_SUITE_P(All, DyadicProduct, ::testing::ValuesIn(operations),
                         [](const auto& info) { return info.param.name; });

static Axes axesOf(const Operation& operation, uint64_t seed)
{
    Axes axes;
    axes.seed = seed;
    if (isLogical(operation.op)) axes.depths.pop_back(); // no logic of floats
    if (isLogical(operation.op) || operation.op == Dyadic::SUBTRACT) axes.orders.push_back(Order::MIXED);
    return axes;
}

TEST_P(DyadicProduct, inMemory)
{
    Axes axes = axesOf(GetParam(), 1);
    axes.tilings = { 0 };
    axes.count = 2500;
    forEachCase(axes, [&](const Case& c) { compareWithModel(GetParam(), makeScene(c, 3)); });
}

TEST_P(DyadicProduct, inTiles)
{
    Axes axes = axesOf(GetParam(), 2);
    axes.tilings = { 1, 2, 4, 3, 5, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.count = 1200;
    forEachCase(axes, [&](const Case& c) { compareWithModel(GetParam(), makeScene(c, 3)); });
}

TEST_P(DyadicProduct, inPlace)
{
    Axes axes = axesOf(GetParam(), 3);
    axes.places = { InPlace::FIRST, InPlace::SECOND, InPlace::ALL, InPlace::OTHER_HEADER };
    axes.tilings = { 0, 0, 0, 3, ALL_IMAGES };
    axes.count = 2500;
    forEachCase(axes, [&](const Case& c) { compareWithModel(GetParam(), makeScene(c, 3)); });
}

// One-bit images with the given offsets, octal digits from the lowest on: three images and a mask. Each block ends in
// front of an unreadable page, with the row's last byte or with padding.
static Scene makeBitScene(int32_t offsets, int32_t width, int32_t height, Random& random)
{
    Scene scene;
    for (int32_t k = 0; k < 4; ++k) {
        const int32_t x = (offsets >> 3 * k & 7) + 8 * random.below(2);
        const int32_t imageWidth = random.oneIn(2) ? (x + width + 31) / 32 * 32 : x + width;
        scene.images.push_back(Picture::make(PictureSpec(PXK_DEPTH_1U, imageWidth, height), random));
        scene.last().setRegion(x, 0, imageWidth, height);
    }
    if (random.oneIn(2)) scene[2].setMask(scene.images[3]);
    scene.images.pop_back();
    return scene;
}

TEST_P(DyadicProduct, allBitOffsets)
{
    Random random(11);
    for (int32_t offsets = 0; offsets < 8 * 8 * 8 * 8 && !HasFailure(); ++offsets) {
        const int32_t width = random.between(1, offsets % 5 == 0 ? 140 : 20);
        SCOPED_TRACE(::testing::Message() << "offsets 0" << std::oct << offsets << " width " << std::dec << width);
        compareWithModel(GetParam(), makeBitScene(offsets, width, 2, random));
    }
}

// Rows that pass through blocks; with equal offsets whole bytes may be worked on in place.
TEST_P(DyadicProduct, longBitRows)
{
    Random random(12);
    for (int32_t i = 0; i < 16 && !HasFailure(); ++i) {
        const int32_t offsets = i < 8 ? 01111 * i : random.below(010000);
        const int32_t width = random.between(9000, 40000);
        SCOPED_TRACE(::testing::Message() << "offsets 0" << std::oct << offsets << " width " << std::dec << width);
        compareWithModel(GetParam(), makeBitScene(offsets, width, 1, random));
    }
}

// ---- refusals ------------------------------------------------------------------------------------------------------

// Faults are added from the last check to the first; each new one is then the only one reported.
TEST_P(DyadicProduct, refusesInOrder)
{
    const Operation& operation = GetParam();
    const bool needsOneOrder = operation.op == Dyadic::ADD || operation.op == Dyadic::MULTIPLY;
    Scene s;
    for (uint64_t k = 0; k < 3; ++k) s.images.push_back(Picture::make(PictureSpec(PXK_DEPTH_8U, 9, 4, 3), k));
    const Scene want = s.copy();
    PxkImage &a = s[0].header, &b = s[1].header, &dst = s[2].header;
    const auto expectRefusal = [&](int32_t status, const char* text, const char* name) {
        startReports();
        operation.call(&a, &b, &dst);
        expectReports({ { status, name, text } });
        for (size_t k = 0; k < 3; ++k) EXPECT_TRUE(sameSamples(want[k], s[k]));
    };
    const auto expectFault = [&](const char* text) { expectRefusal(PXK_StsBadArg, text, operation.name); };
    b.alphaChannel = 3;
    expectFault("(nChSrcB != nChDst)");
    a.nChannels = 2;
    expectFault("(nChSrcA != nChDst)");
    if (needsOneOrder) {
        b.dataOrder = PXK_DATA_ORDER_PLANE;
        expectFault("(srcImageB->dataOrder != dstImage->dataOrder)");
        a.dataOrder = PXK_DATA_ORDER_PLANE;
        expectFault("(srcImageA->dataOrder != dstImage->dataOrder)");
    }
    b.depth = PXK_DEPTH_8S;
    expectFault("(srcImageB->depth != dstImage->depth)");
    a.depth = PXK_DEPTH_16U;
    expectFault("(srcImageA->depth != dstImage->depth)");
    dst.align = 5;
    expectRefusal(PXK_StsBadAlign, "Incorrect Image", operation.name);
    b.origin = 2;
    expectRefusal(PXK_StsBadOrigin, "Incorrect Image", operation.name);
    a.widthStep = 0;
    expectRefusal(PXK_StsBadWidthStep, "Incorrect Image", operation.name);
}

TEST_P(DyadicProduct, refusesNullImages)
{
    const Operation& operation = GetParam();
    const PicturePtr p = Picture::make(PictureSpec()), bits = Picture::make(PictureSpec(PXK_DEPTH_1U));
    const bool looksAtFirst = operation.op == Dyadic::ADD || operation.op == Dyadic::MULTIPLY;
    startReports();
    operation.call(nullptr, nullptr, nullptr);
    if (looksAtFirst) {
        expectReports({ { PXK_StsBadArg, operation.name, "srcImageA==0" } });
    } else {
        expectReports({ { PXK_StsNullHeader, operation.name, "Incorrect Image" } });
    }
    operation.call(*p, nullptr, *p);
    expectReports({ { PXK_StsNullHeader, operation.name, "Incorrect Image" } });
    operation.call(*p, *p, nullptr);
    expectReports({ { PXK_StsNullHeader, operation.name, "Incorrect Image" } });
    // One-bit sums and products are logic, and so are their reports.
    const char* const inner = operation.op == Dyadic::ADD ? "pxkOr"
        : operation.op == Dyadic::MULTIPLY                ? "pxkAnd"
                                                          : operation.name;
    operation.call(*bits, *p, *bits);
    expectReports({ { PXK_StsBadArg, inner, "(srcImageB->depth != dstImage->depth)" } });
}

TEST(Dyadic, logicRefusesFloatsLast)
{
    const PicturePtr f = Picture::make(PictureSpec(PXK_DEPTH_32F, 8, 4));
    const PicturePtr want = f->copy();
    for (const Operation& operation : operations) {
        if (!isLogical(operation.op)) continue;
        startReports();
        operation.call(*f, *f, *f);
        expectReports({ { PXK_StsBadArg, operation.name, "This function does not support depth 32F" } });
        EXPECT_TRUE(sameSamples(*want, *f, BITS));
        const PicturePtr missed = f->copy();
        missed->setRegion(8, 0, 1, 1);
        operation.call(*missed, *f, *missed);
        expectNoReports();
    }
}

TEST(Dyadic, emptyWorkIsSilent)
{
    const PicturePtr a = Picture::make(PictureSpec(PXK_DEPTH_8U, 8, 4), 1), b = Picture::make(PictureSpec(), 2);
    const PicturePtr dst = Picture::make(PictureSpec(), 3), want = dst->copy();
    const PicturePtr mask = Picture::make(PictureSpec(PXK_DEPTH_1U, 9, 9).region(9, 0, 4, 4));
    const PicturePtr tiled = Picture::make(PictureSpec().tiled(8, 8));
    startReports();
    a->setMask(mask); // its region lies past its edge
    pxkAdd(*a, *b, *dst);
    pxkAdd(*a, *tiled, *dst);
    dst->setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 9, 9)));
    pxkAdd(*a, *b, *dst);
    a->setMask(nullptr);
    a->setRegion(0, 4, 3, 3);
    pxkXor(*a, *tiled, *dst);
    expectNoReports();
    EXPECT_TRUE(sameSamples(*want, *dst));
    EXPECT_TRUE(tiled->storage->calls.empty());
}

TEST(Dyadic, staleStatusStandsAndStopsNothing)
{
    const PicturePtr a = Picture::make(PictureSpec(), 1), dst = Picture::make(PictureSpec(), 2), want = dst->copy();
    modelDyadic(Dyadic::ADD, *a, *want, *want);
    dst->header.origin = 1; // not compared
    startReports();
    pxkSetErrStatus(-77);
    pxkAdd(*a, *dst, *dst);
    EXPECT_EQ(pxkGetErrStatus(), -77);
    EXPECT_TRUE(recordedReports().empty());
    EXPECT_TRUE(sameSamples(*want, *dst));
}

TEST(Dyadic, refusedTiles)
{
    PointwiseCall call;
    call.func = "pxkSubtract";
    call.names = { "srcImageA", "srcImageB", "dstImage" };
    call.run = [](Scene& s) { pxkSubtract(s[0], s[1], s[2]); };
    call.model = [](Scene& s) { modelDyadic(Dyadic::SUBTRACT, s[0], s[1], s[2]); };
    Case c;
    c.tiling = ALL_IMAGES;
    c.masks = ALL_IMAGES;
    for (c.seed = 1; c.seed < 6; ++c.seed) expectEachRefusedTileReported(makeScene(c, 3), call);
}

// ---- worked numbers ------------------------------------------------------------------------------------------------

TEST(Dyadic, workedNumbers)
{
    struct Row {
        DyadicFunction call;
        int32_t depth;
        double a, b, result;
    };
    const double most = 2147483647, least = -2147483648.0;
    const Row rows[] = {
        { pxkAdd, PXK_DEPTH_8U, 200, 100, 255 },
        { pxkSubtract, PXK_DEPTH_8U, 100, 200, 0 },
        { pxkMultiply, PXK_DEPTH_8U, 16, 16, 255 },
        { pxkMultiply, PXK_DEPTH_8U, 15, 17, 255 },
        { pxkMultiply, PXK_DEPTH_8U, 2, 127, 254 },
        { pxkAdd, PXK_DEPTH_8S, -100, -100, -128 },
        { pxkSubtract, PXK_DEPTH_8S, 0, -128, 127 },
        { pxkMultiply, PXK_DEPTH_8S, -128, -1, 127 },
        { pxkMultiply, PXK_DEPTH_8S, -128, -128, 127 },
        { pxkMultiply, PXK_DEPTH_16U, 65535, 65535, 65535 },
        { pxkMultiply, PXK_DEPTH_16U, 255, 257, 65535 },
        { pxkMultiply, PXK_DEPTH_16U, 256, 255, 65280 },
        { pxkMultiply, PXK_DEPTH_16S, -32768, -32768, 32767 },
        { pxkMultiply, PXK_DEPTH_16S, -32768, 32767, -32768 },
        { pxkAdd, PXK_DEPTH_32S, most, 1, most },
        { pxkSubtract, PXK_DEPTH_32S, -most, 2, least },
        { pxkSubtract, PXK_DEPTH_32S, 0, least, most },
        { pxkMultiply, PXK_DEPTH_32S, 65536, 65536, most },
        { pxkMultiply, PXK_DEPTH_32S, -65536, 65536, least },
        { pxkMultiply, PXK_DEPTH_32S, -65536, 32768, least },
        { pxkMultiply, PXK_DEPTH_32S, 16777217, 1, 16777217 },
        { pxkMultiply, PXK_DEPTH_32S, 46341, 46340, 2147441940 },
        { pxkMultiply, PXK_DEPTH_32S, least, least, most },
        { pxkAdd, PXK_DEPTH_1U, 1, 1, 1 },
        { pxkSubtract, PXK_DEPTH_1U, 0, 1, 0 },
        { pxkMultiply, PXK_DEPTH_1U, 1, 0, 0 },
        { pxkXor, PXK_DEPTH_8S, -1, 5, -6 },
        { pxkAnd, PXK_DEPTH_32S, least, -1, least },
    };
    for (const Row& row : rows) {
        // 37 columns: whole vectors and what is left behind them.
        const PicturePtr a = Picture::make(PictureSpec(row.depth, 37, 1)), b = a->copy(), dst = a->copy();
        a->setAll(row.a);
        b->setAll(row.b);
        row.call(*a, *b, *dst);
        for (int32_t x = 0; x < 37; ++x) {
            EXPECT_EQ(dst->number(x, 0), row.result) << depthName(row.depth) << ' ' << row.a << ' ' << row.b;
        }
    }
}

// Padding takes part where whole images are handled in one run, and one step beside that it does not.
TEST(Dyadic, paddingOfWholeImagesOnly)
{
    const auto isPaddingSummed = [](const PictureSpec& specA, const PictureSpec& specDst, bool hasMask) {
        const PicturePtr a = Picture::make(specA), b = Picture::make(specDst), dst = Picture::make(specDst);
        for (const PicturePtr& p : { a, b, dst }) p->row(2)[p->header.widthStep - 1] = p == dst ? 9 : 40;
        if (hasMask) {
            dst->setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 13, 5)));
            dst->mask->setAll(1);
        }
        pxkAdd(*a, *b, *dst);
        const int32_t byte = dst->row(2)[dst->header.widthStep - 1];
        EXPECT_TRUE(byte == 80 || byte == 9) << byte;
        return byte == 80;
    };
    const PictureSpec plain(PXK_DEPTH_8U, 13, 5);
    const auto plainRegion = [&](int32_t x, int32_t w, int32_t h, int32_t coi) {
        return PictureSpec(plain).region(x, 0, w, h, coi);
    };
    EXPECT_TRUE(isPaddingSummed(plain, plain, false));
    EXPECT_TRUE(isPaddingSummed(plainRegion(0, 13, 5, 0), plainRegion(0, 99, 5, 1), false));
    EXPECT_FALSE(isPaddingSummed(plain, plain, true));
    EXPECT_FALSE(isPaddingSummed(plain, plainRegion(0, 13, 4, 0), false));
    EXPECT_FALSE(isPaddingSummed(plain, plainRegion(0, 12, 5, 0), false));
    EXPECT_FALSE(isPaddingSummed(plainRegion(1, 13, 5, 0), plain, false));
    EXPECT_FALSE(isPaddingSummed(PictureSpec(plain).aligned(16), plain, false)); // the same row step
    EXPECT_FALSE(isPaddingSummed(plain, PictureSpec(PXK_DEPTH_8U, 13, 6), false));
    EXPECT_FALSE(isPaddingSummed(PictureSpec(PXK_DEPTH_8U, 13, 5, 3).region(0, 0, 13, 5, 1), plain, false));
}
