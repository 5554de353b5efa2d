// SPDX-License-Identifier: BSD-2-Clause
// The image records: making, testing, filling, cloning and freeing them.
#include <cstring>
#include <functional>

#include "support/cases.h"
#include "support/reports.h"

static const int32_t allDepths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                                     PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };

static PxkImage* createHeader(int32_t depth, int32_t width, int32_t height, int32_t channels = 1, int32_t order = 0,
                              int32_t align = 4)
{
    return pxkCreateImageHeader(channels, 0, depth, "RGB", "BGR", order, 0, align, width, height, nullptr, nullptr,
                                nullptr, nullptr);
}

// A field of a header or of its records, a value that is wrong there, and the status that it gives.
struct Fault {
    int32_t status;
    int32_t* field;
    int32_t value;
};

// Puts the faults in, last check first: each one must hide those behind it.
static void expectOrder(const std::vector<Fault>& faults, const std::function<void(int32_t)>& expectStatus)
{
    for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault) {
        SCOPED_TRACE(::testing::Message() << "check " << faults.rend() - fault << ", value " << fault->value);
        *fault->field = fault->value;
        expectStatus(fault->status);
    }
}

// What every header is tested for; a header without pixels for nothing else.
static void expectFieldOrder(PxkImage& h, const std::function<void(int32_t)>& expectStatus)
{
    const PicturePtr byteMask = Picture::make({}), badMask = Picture::make(PictureSpec(PXK_DEPTH_1U));
    const PicturePtr tiledMask = Picture::make(PictureSpec(PXK_DEPTH_1U).tiled(8, 8));
    badMask->header.widthStep = 0;
    h.maskROI = *badMask;
    expectStatus(-113);
    h.maskROI = *tiledMask;
    expectStatus(-26);
    h.maskROI = *byteMask;
    expectStatus(-117);
    expectOrder({ { -10, &h.width, 0 },
                  { -10, &h.height, -1 },
                  { -15, &h.nChannels, 0 },
                  { -16, &h.depth, PXK_DEPTH_1U },
                  { -17, &h.depth, PXK_DEPTH_SIGN | 1 },
                  { -17, &h.depth, 24 },
                  { -18, &h.alphaChannel, 3 },
                  { -18, &h.alphaChannel, -1 },
                  { -19, &h.dataOrder, 2 },
                  { -20, &h.origin, 2 },
                  { -21, &h.align, 12 } },
                expectStatus);
    h.maskROI = nullptr;
}

TEST(Header, checkedInOrder)
{
    const PicturePtr p = Picture::make(PictureSpec(PXK_DEPTH_8U, 9, 7, 4).region(0, 0, 3, 3).tiled(8, 8));
    PxkTileInfo& tiles = p->storage->tiles.info;
    const auto expectStatus = [&](int32_t status) {
        startReports();
        EXPECT_EQ(pxkCheckImageHeader(*p), status);
        EXPECT_EQ(pxkGetErrStatus(), status);
        EXPECT_TRUE(recordedReports().empty());
    };
    pxkSetErrStatus(-99);
    EXPECT_EQ(pxkCheckImageHeader(*p), 0);
    EXPECT_EQ(pxkGetErrStatus(), -99) << "success stores nothing";
    expectOrder({ { -23, &tiles.width, 12 },
                  { -23, &tiles.height, 0 },
                  { -24, &p->roi.coi, 5 },
                  { -24, &p->roi.coi, -1 },
                  { -25, &p->roi.width, 0 },
                  { -25, &p->roi.height, -1 },
                  { -11, &p->roi.xOffset, -1 },
                  { -11, &p->roi.yOffset, -1 } },
                expectStatus);
    tiles.callBack = nullptr;
    expectStatus(-22);
    expectFieldOrder(p->header, expectStatus);
    p->header.tileInfo = nullptr;
    p->header.imageData = &tiles;
    p->header.imageSize = 1;
    expectStatus(-13);
    p->header.imageSize = 0;
    expectStatus(-10);
    p->header.imageData = nullptr;
    expectStatus(-12);
    p->header.tileInfo = &tiles;
    p->header.imageData = &tiles;
    expectStatus(-12);
    EXPECT_EQ(pxkCheckImageHeader(nullptr), -9);
}

TEST(Header, refusedInOrder)
{
    PxkImage args = Picture::make(PictureSpec(PXK_DEPTH_8U, 5, 5, 4))->header;
    const auto expectStatus = [&](int32_t status, const char* model = "RGB") {
        startReports();
        EXPECT_EQ(pxkCreateImageHeader(args.nChannels, args.alphaChannel, args.depth, model, "BGR", args.dataOrder,
                                       args.origin, args.align, args.width, args.height, nullptr, args.maskROI, nullptr,
                                       nullptr),
                  nullptr);
        expectReports({ { status, "pxkCreateImageHeader", "Incorrect data-ins" } });
    };
    expectFieldOrder(args, expectStatus);
    args.width = args.height = 1;
    expectStatus(-15, nullptr);
    args.nChannels = 1;
    expectStatus(-14, nullptr);
}

// The number of a mask's fault is 100 less at each level; that of a tiled mask is the header's own at its level only.
TEST(Header, masksOfMasks)
{
    const PicturePtr image = Picture::make({}), mask = Picture::make(PictureSpec(PXK_DEPTH_1U));
    const auto statusWith = [&](const PictureSpec& spec, auto change) {
        const PicturePtr inner = Picture::make(spec);
        change(*inner);
        mask->header.maskROI = *inner;
        image->header.maskROI = *mask;
        return pxkCheckImageHeader(*image);
    };
    const auto nothing = [](Picture&) {};
    EXPECT_EQ(statusWith({}, nothing), -217);
    EXPECT_EQ(statusWith(PictureSpec(PXK_DEPTH_1U).tiled(8, 8), nothing), -126);
    EXPECT_EQ(statusWith(PictureSpec(PXK_DEPTH_1U), [](Picture& p) { p.header.widthStep = 0; }), -213);
    EXPECT_EQ(pxkGetErrStatus(), -213);
    EXPECT_EQ(statusWith(PictureSpec(PXK_DEPTH_1U), nothing), 0);
}

TEST(Header, sizes)
{
    const struct {
        int32_t depth, width, height, channels, order, align, widthStep, imageSize;
    } rows[] = {
        { PXK_DEPTH_1U, 33, 1, 1, 1, 4, 8, 8 },
        { PXK_DEPTH_1U, 256, 1, 1, 0, 32, 32, 32 },
        { PXK_DEPTH_8U, 3, 5, 3, 0, 8, 16, 80 },
        { PXK_DEPTH_8U, 3, 5, 3, 1, 8, 8, 120 },
        { PXK_DEPTH_16S, 5, 2, 3, 0, 4, 32, 64 },
        { PXK_DEPTH_32F, 9, 1, 1, 0, 32, 64, 64 },
        { PXK_DEPTH_32S, 32767, 16384, 1, 0, 4, 131068, 2147418112 },
    };
    for (const auto& row : rows) {
        PxkImage* const image = createHeader(row.depth, row.width, row.height, row.channels, row.order, row.align);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->widthStep, row.widthStep);
        EXPECT_EQ(image->imageSize, row.imageSize);
        EXPECT_EQ(image->headerSize, static_cast<int32_t>(sizeof(PxkImage)));
        EXPECT_EQ(pxkCheckImageHeader(image), -12) << "no pixels yet";
        pxkDeallocateHeader(image);
    }
    const Report tooLarge = { PXK_StsBadImageSize, "pxkCreateImageHeader", "Incorrect data-ins" };
    startReports();
    EXPECT_EQ(createHeader(PXK_DEPTH_32S, 32768, 16384, 1), nullptr); // 2^31 bytes
    EXPECT_EQ(createHeader(PXK_DEPTH_8U, INT32_MAX, INT32_MAX, INT32_MAX, 1, 32), nullptr);
    expectReports({ tooLarge, tooLarge });
}

TEST(Header, takesRecordsUnexamined)
{
    PxkROI* const roi = pxkCreateROI(-3, -2, -1, 0, 7);
    PxkTileInfo* const tiles = pxkCreateTileInfo(nullptr, 5, 12, -8);
    PxkImage* const image =
        pxkCreateImageHeader(3, 3, PXK_DEPTH_16S, "RGBA more", "BGRA", 1, 1, 16, 10, 20, roi, nullptr, roi, tiles);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(memcmp(image->colorModel, "RGBA", 4), 0);
    tiles->tileData = roi;
    pxkSetTileInfo(tiles, nullptr, 6, 8, 8);
    EXPECT_EQ(tiles->tileData, nullptr);
    pxkSetTileInfo(nullptr, nullptr, 0, 8, 8);
    pxkSetROI(nullptr, 0, 0, 0, 1, 1);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_ROI | PXK_FREE_TILE);
}

// ---- pixels --------------------------------------------------------------------------------------------------------

TEST(Allocate, fillsRowsAndPadding)
{
    for (const int32_t depth : allDepths) {
        for (const int32_t value : { 0x12345679, -0x12345678 }) {
            PxkImage* const image = createHeader(depth, 5, 3, depth == PXK_DEPTH_1U ? 1 : 3, 1, 32);
            image->widthStep = image->imageSize = 0; // recomputed
            if (isFloatDepth(depth)) pxkAllocateImageFP(image, 1, static_cast<float>(value));
            if (!isFloatDepth(depth)) pxkAllocateImage(image, -1, value);
            ASSERT_NE(image->imageData, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(image->imageData) % 32, 0u);
            EXPECT_EQ(image->imageSize, image->widthStep * 3 * image->nChannels);
            uint32_t want = depth == PXK_DEPTH_1U ? 0u - (value & 1u) : bitsOf(depth, value);
            for (int32_t bits = depthBits(depth); bits > 1 && bits < 32; bits *= 2) want |= want << bits;
            for (int32_t at = 0; at < image->imageSize; at += 4) {
                uint32_t word;
                memcpy(&word, static_cast<char*>(image->imageData) + at, 4);
                ASSERT_EQ(word, want) << depthName(depth) << " at byte " << at;
            }
            pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
        }
    }
}

TEST(Allocate, refusals)
{
    PxkImage* const bytes = createHeader(PXK_DEPTH_8U, 4, 4);
    PxkImage* const floats = createHeader(PXK_DEPTH_32F, 4, 4);
    PxkTileInfo tiles = { nullptr, 0, nullptr, 8, 8 };
    const auto expectRefusal = [](PxkImage* image, bool isFloat, const char* text, int32_t status = PXK_StsBadArg) {
        startReports();
        if (isFloat) pxkAllocateImageFP(image, 0, 0);
        if (!isFloat) pxkAllocateImage(image, 0, 0);
        expectReports({ { status, isFloat ? "pxkAllocateImageFP" : "pxkAllocateImage", text } });
    };
    expectRefusal(nullptr, false, "( image == ((void *)0) )");
    expectRefusal(nullptr, true, "( image == ((void *)0) )");
    expectRefusal(floats, false, "( image->depth == 32 )");
    expectRefusal(bytes, true, "( image->depth != 32 )");
    floats->tileInfo = &tiles;
    expectRefusal(floats, false, "( image->tileInfo != ((void *)0) )");
    floats->imageData = &tiles;
    expectRefusal(floats, false, "( image->imageData != ((void *)0) )");
    EXPECT_EQ(floats->imageDataBase, nullptr);
    bytes->align = 5;
    expectRefusal(bytes, false, "Incorrect data-ins", PXK_StsBadAlign);
    EXPECT_EQ(bytes->imageData, nullptr);
    pxkDeallocateHeader(bytes);
    pxkDeallocateHeader(floats);
}

TEST(Allocate, familyIsAlignedAndRefusesBadLengths)
{
    const std::pair<void* (*)(int32_t), int32_t> members[] = {
        { pxkMalloc, 1 }, { pxkwMalloc, 2 }, { pxkiMalloc, 4 }, { pxksMalloc, 4 }, { pxkdMalloc, 8 }
    };
#ifdef __SANITIZE_ADDRESS__
    const int32_t spare = 0; // the bytes behind a block, which are its own, are out of bounds for the library's code
#else
    const int32_t spare = 33;
#endif
    startReports();
    for (const auto& member : members) {
        for (int32_t length = 0; length < 70; ++length) {
            void* const block = member.first(length);
            ASSERT_EQ(reinterpret_cast<uintptr_t>(block) % 32, 0u);
            memset(block, 1, static_cast<size_t>(length * member.second + spare));
            pxkFree(block);
        }
        for (const int32_t length : { -1, INT32_MAX, INT32_MIN }) EXPECT_EQ(member.first(length), nullptr);
    }
    pxkFree(nullptr);
    pxkDeleteROI(nullptr);
    pxkDeleteTileInfo(nullptr);
    expectNoReports();
}

// ---- freeing -------------------------------------------------------------------------------------------------------

TEST(Deallocate, releasesWhatTheFlagSays)
{
    PxkImage* const innerMask = createHeader(PXK_DEPTH_1U, 4, 4);
    PxkImage* const mask = createHeader(PXK_DEPTH_1U, 4, 4);
    pxkAllocateImage(mask, 0, 0);
    mask->maskROI = innerMask;
    mask->roi = pxkCreateROI(0, 0, 0, 1, 1);
    PxkImage* const image = createHeader(PXK_DEPTH_8U, 4, 4);
    pxkAllocateImage(image, 0, 0);
    image->maskROI = mask;
    PxkROI* const roi = image->roi = pxkCreateROI(0, 0, 0, 1, 1);
    image->tileInfo = pxkCreateTileInfo(nullptr, 0, 8, 8);
    pxkDeallocate(image, 0);
    EXPECT_EQ(image->roi, roi);
    pxkDeallocate(image, PXK_FREE_MASK); // with its header, pixels and region; not its own mask
    EXPECT_EQ(image->maskROI, nullptr);
    EXPECT_EQ(innerMask->width, 4);
    EXPECT_EQ(image->roi, roi);
    pxkDeallocate(image, PXK_FREE_TILE);
    EXPECT_EQ(image->tileInfo, nullptr);
    EXPECT_NE(image->imageData, nullptr);
    pxkDeallocate(image, PXK_FREE_DATA);
    EXPECT_EQ(image->imageData, nullptr);
    EXPECT_EQ(image->imageDataBase, nullptr);
    pxkDeallocate(image, PXK_FREE_ROI);
    EXPECT_EQ(image->roi, nullptr);
    pxkDeallocate(image, 31);
    pxkDeallocate(nullptr, 31);
    pxkDeallocateHeader(innerMask);
}

TEST(Deallocate, leavesTheCallersPixels)
{
    const PicturePtr p = Picture::make({});
    pxkDeallocate(*p, PXK_FREE_DATA);
    EXPECT_EQ(p->header.imageData, p->row(0));
    pxkDeallocateImage(*p);
    EXPECT_EQ(p->header.imageData, nullptr);
}

// ---- clones --------------------------------------------------------------------------------------------------------

static void freeClone(PxkImage* clone)
{
    pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
}

TEST(Clone, copiesPixelsAndRegion)
{
    Axes axes;
    axes.tilings = { 0, 1 };
    axes.count = 800;
    forEachCase(axes, [](const Case& c) {
        const Scene got = makeScene(c, 1), want = got.copy();
        pxkSetBorderMode(got[0], PXK_EDGE_WRAP, PXK_SIDE_LEFT, 1);
        got[0].freeze();
        startReports();
        PxkImage* const clone = pxkCloneImage(got[0]);
        ASSERT_NE(clone, nullptr);
        expectNoReports();
        EXPECT_TRUE(sameScene(want, got));
        const PxkImage& source = got[0].header;
        EXPECT_EQ(got[0].isTiled() ? 0 : source.widthStep - clone->widthStep, got[0].spec.extraStep);
        PxkImage expected = source; // but for what is its own
        expected.maskROI = nullptr;
        expected.userTag = nullptr;
        expected.tileInfo = nullptr;
        expected.imageData = clone->imageData;
        expected.imageDataBase = clone->imageDataBase;
        expected.imageSize = clone->widthStep * source.height * got[0].planes();
        expected.widthStep = clone->widthStep;
        expected.roi = clone->roi;
        EXPECT_EQ(memcmp(&expected, clone, sizeof expected), 0);
        const bool hasRegion = source.roi != nullptr;
        ASSERT_EQ(clone->roi != nullptr, hasRegion);
        EXPECT_TRUE(!hasRegion || (clone->roi != source.roi && memcmp(clone->roi, source.roi, sizeof(PxkROI)) == 0));
        if (!got[0].isTiled()) {
            const PicturePtr copy = got[0].copy();
            copy->setAll(0);
            for (int32_t y = 0; y < source.height * got[0].planes(); ++y) {
                memcpy(copy->row(y), static_cast<char*>(clone->imageData) + y * clone->widthStep,
                       static_cast<size_t>(clone->widthStep));
            }
            EXPECT_TRUE(sameSamples(got[0], *copy));
        }
        freeClone(clone);
    });
}

TEST(Clone, refusesHeadersWithoutPixels)
{
    PxkImage* const image = createHeader(PXK_DEPTH_8U, 4, 4);
    startReports();
    EXPECT_EQ(pxkCloneImage(image), nullptr);
    expectReports({ { PXK_StsBadDataPointers, "pxkCloneImage", "Incorrect Image" } });
    EXPECT_EQ(pxkCloneImage(nullptr), nullptr);
    expectReports({ { PXK_StsNullHeader, "pxkCloneImage", "Incorrect Image" } });
    pxkSetErrStatus(-40); // an old failure is not this one's
    pxkAllocateImage(image, 1, 0);
    PxkImage* const clone = pxkCloneImage(image);
    EXPECT_NE(clone, nullptr);
    EXPECT_TRUE(recordedReports().empty());
    freeClone(clone);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

TEST(BorderMode, limitsTheConstantOfChosenSides)
{
    PxkImage* const image = createHeader(PXK_DEPTH_8U, 4, 4);
    for (const int32_t depth : allDepths) {
        for (const int32_t constant : { INT32_MIN, -70000, -1, 2, 300, 65536 }) {
            const double least = double(depthMin(depth)), most = double(depthMax(depth));
            const int32_t limited = int32_t(std::min(std::max(double(constant), least), most));
            for (int32_t sides = 0; sides < 16; ++sides) {
                for (int32_t& old : image->borderConst) old = 5;
                image->depth = depth;
                pxkSetBorderMode(image, 77 + sides, sides | 0x70, constant); // modes are not looked at
                for (int32_t side = 0; side < 4; ++side) {
                    const bool isChosen = (sides >> side & 1) != 0;
                    EXPECT_EQ(image->borderMode[side] == 77 + sides, isChosen);
                    EXPECT_EQ(image->borderConst[side], !isChosen ? 5 : isFloatDepth(depth) ? constant : limited);
                }
            }
        }
    }
    pxkDeallocateHeader(image);
}
