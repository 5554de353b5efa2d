// SPDX-License-Identifier: BSD-2-Clause
// The image records: making, testing, filling, cloning and freeing them.
#include <cstring>

#include "support/cases.h"
#include "support/reports.h"

static const int32_t allDepths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                                     PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };

static PxkImage* createHeader(const PictureSpec& s)
{
    return pxkCreateImageHeader(s.channels, 0, s.depth, "RGB", "BGR", s.order, s.origin, s.align, s.width, s.height,
                                nullptr, nullptr, nullptr, nullptr);
}

// ---- checks --------------------------------------------------------------------------------------------------------

// A field of a header or of its records, a value that is wrong there, and the status that it gives.
struct Fault {
    int32_t status;
    int32_t* field;
    int32_t value;
};

// Puts the faults in, last check first: each one must hide those behind it.
template <class Expect> static void expectOrder(const std::vector<Fault>& faults, const Expect& expectStatus)
{
    for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault) {
        SCOPED_TRACE(::testing::Message() << "check " << faults.rend() - fault << ", value " << fault->value);
        *fault->field = fault->value;
        expectStatus(fault->status);
    }
}

// What every header is tested for; a header without pixels for nothing else.
template <class Expect> static void expectFieldOrder(PxkImage& h, const Expect& expectStatus)
{
    const PicturePtr bytes = Picture::make({}), bad = Picture::make({ PXK_DEPTH_1U });
    const PicturePtr tiled = Picture::make(PictureSpec { PXK_DEPTH_1U }.tiled(8, 8));
    bad->header.widthStep = 0;
    for (const auto& [mask, status] : { std::pair(bad, -113), std::pair(tiled, -26), std::pair(bytes, -117) }) {
        h.maskROI = *mask;
        expectStatus(status);
    }
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
    const PicturePtr p = Picture::make(PictureSpec { PXK_DEPTH_8U, 9, 7, 4 }.region(0, 0, 3, 3).tiled(8, 8));
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
    expectOrder({ { -10, &p->header.imageSize, 0 }, { -13, &p->header.imageSize, 1 } }, expectStatus);
    p->header.imageData = nullptr;
    expectStatus(-12);
    p->header.tileInfo = &tiles;
    p->header.imageData = &tiles;
    expectStatus(-12);
    EXPECT_EQ(pxkCheckImageHeader(nullptr), -9);
}

TEST(Header, refusedInOrder)
{
    PxkImage args = Picture::make({ PXK_DEPTH_8U, 5, 5, 4 })->header;
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
    const PicturePtr image = Picture::make({}), mask = Picture::make({ PXK_DEPTH_1U });
    const auto statusWith = [&](const PictureSpec& spec, bool hasStep = true) {
        const PicturePtr inner = Picture::make(spec);
        if (!hasStep) inner->header.widthStep = 0;
        mask->header.maskROI = *inner;
        image->header.maskROI = *mask;
        return pxkCheckImageHeader(*image);
    };
    EXPECT_EQ(statusWith({}), -217);
    EXPECT_EQ(statusWith(PictureSpec { PXK_DEPTH_1U }.tiled(8, 8)), -126);
    EXPECT_EQ(statusWith({ PXK_DEPTH_1U }, false), -213);
    EXPECT_EQ(pxkGetErrStatus(), -213);
    EXPECT_EQ(statusWith({ PXK_DEPTH_1U }), 0);
}

TEST(Header, sizes)
{
    const struct {
        PictureSpec spec;
        int32_t widthStep, imageSize;
    } rows[] = {
        { { PXK_DEPTH_1U, 33, 1, 1, 1 }, 8, 8 },
        { PictureSpec { PXK_DEPTH_1U, 256, 1 }.aligned(32), 32, 32 },
        { PictureSpec { PXK_DEPTH_8U, 3, 5, 3 }.aligned(8), 16, 80 },
        { PictureSpec { PXK_DEPTH_8U, 3, 5, 3, 1 }.aligned(8), 8, 120 },
        { { PXK_DEPTH_16S, 5, 2, 3 }, 32, 64 },
        { PictureSpec { PXK_DEPTH_32F, 9, 1 }.aligned(32), 64, 64 },
        { { PXK_DEPTH_32S, 32767, 16384 }, 131068, 2147418112 },
    };
    for (const auto& row : rows) {
        PxkImage* const image = createHeader(row.spec);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->widthStep, row.widthStep);
        EXPECT_EQ(image->imageSize, row.imageSize);
        EXPECT_EQ(image->headerSize, static_cast<int32_t>(sizeof(PxkImage)));
        EXPECT_EQ(pxkCheckImageHeader(image), -12) << "no pixels yet";
        pxkDeallocateHeader(image);
    }
    const Report tooLarge = { PXK_StsBadImageSize, "pxkCreateImageHeader", "Incorrect data-ins" };
    startReports();
    EXPECT_EQ(createHeader({ PXK_DEPTH_32S, 32768, 16384 }), nullptr); // 2^31 bytes
    EXPECT_EQ(createHeader(PictureSpec { PXK_DEPTH_8U, INT32_MAX, INT32_MAX, INT32_MAX, 1 }.aligned(32)), nullptr);
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
    pxkSetTileInfo(nullptr, nullptr, 0, 8, 8);
    pxkSetROI(nullptr, 0, 0, 0, 1, 1);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_ROI | PXK_FREE_TILE);
}

// ---- pixels --------------------------------------------------------------------------------------------------------

TEST(Allocate, fillsRowsAndPadding)
{
    for (const int32_t depth : allDepths) {
        for (const int32_t value : { 0x12345679, -0x12345678 }) {
            PxkImage* const image = createHeader(PictureSpec { depth, 5, 3, depth == 1 ? 1 : 3, 1 }.aligned(32));
            image->widthStep = image->imageSize = 0; // recomputed
            if (isFloatDepth(depth)) pxkAllocateImageFP(image, 1, static_cast<float>(value));
            if (!isFloatDepth(depth)) pxkAllocateImage(image, -1, value);
            ASSERT_NE(image->imageData, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(image->imageData) % 32, 0u);
            EXPECT_EQ(image->imageSize, image->widthStep * 3 * image->nChannels);
            const PicturePtr filled = Picture::of(*image);
            for (int32_t s = 0; s < 3 * filled->samplesOfStep(); ++s) {
                const uint32_t want = bitsOf(depth, depth == 1 ? value & 1 : value); // of the padding, too
                ASSERT_EQ(filled->rowBits(0, s % 3, s / 3), want) << depthName(depth) << ", sample " << s / 3;
            }
            pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
        }
    }
}

TEST(Allocate, refusals)
{
    PxkImage *const bytes = createHeader({}), *const floats = createHeader({ PXK_DEPTH_32F });
    PxkTileInfo tiles = { nullptr, 0, nullptr, 8, 8 };
    const auto expectRefusal = [](PxkImage* image, bool isFloat, const char* text, int32_t status = PXK_StsBadArg) {
        startReports();
        if (isFloat) pxkAllocateImageFP(image, 0, 0);
        if (!isFloat) pxkAllocateImage(image, 0, 0);
        expectReports({ { status, isFloat ? "pxkAllocateImageFP" : "pxkAllocateImage", text } });
    };
    for (const bool isFloat : { false, true }) expectRefusal(nullptr, isFloat, "( image == ((void *)0) )");
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
    for (PxkImage* image : { bytes, floats }) pxkDeallocateHeader(image);
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
    for (const auto& [allocate, itemBytes] : members) {
        for (int32_t length = 0; length < 70; ++length) {
            void* const block = allocate(length);
            ASSERT_EQ(reinterpret_cast<uintptr_t>(block) % 32, 0u);
            memset(block, 1, static_cast<size_t>(length * itemBytes + spare));
            pxkFree(block);
        }
        for (const int32_t length : { -1, INT32_MAX, INT32_MIN }) EXPECT_EQ(allocate(length), nullptr);
    }
    pxkFree(nullptr);
    pxkDeleteROI(nullptr);
    pxkDeleteTileInfo(nullptr);
    expectNoReports();
}

// ---- freeing -------------------------------------------------------------------------------------------------------

TEST(Deallocate, releasesWhatTheFlagSays)
{
    PxkImage *const innerMask = createHeader({ PXK_DEPTH_1U }), *const mask = createHeader({ PXK_DEPTH_1U });
    PxkImage* const image = createHeader({});
    mask->maskROI = innerMask;
    image->maskROI = mask;
    for (PxkImage* with : { mask, image }) {
        pxkAllocateImage(with, 0, 0);
        with->roi = pxkCreateROI(0, 0, 0, 1, 1);
    }
    image->tileInfo = pxkCreateTileInfo(nullptr, 0, 8, 8);
    // A mask goes with its header, pixels and region, but not with its own mask.
    void* const parts[] = { image->maskROI, image->tileInfo, image->imageData, image->roi };
    const auto expectParts = [&](size_t first) {
        const void* const left[] = { image->maskROI, image->tileInfo, image->imageData, image->roi };
        for (size_t k = 0; k < 4; ++k) EXPECT_EQ(left[k], k < first ? nullptr : parts[k]) << k << " of " << first;
    };
    size_t freed = 0;
    for (const int32_t flag : { 0, PXK_FREE_MASK, PXK_FREE_TILE, PXK_FREE_DATA, PXK_FREE_ROI }) {
        pxkDeallocate(image, flag);
        expectParts(freed++);
    }
    EXPECT_EQ(image->imageDataBase, nullptr);
    EXPECT_EQ(innerMask->width, 16);
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

TEST(BorderMode, limitsTheConstantOfChosenSides)
{
    for (const int32_t depth : allDepths) {
        for (const int32_t constant : { INT32_MIN, -70000, -1, 2, 300, 65536 }) {
            const double low = double(depthMin(depth)), high = double(depthMax(depth));
            const int32_t limited = isFloatDepth(depth) ? constant : int32_t(std::clamp(double(constant), low, high));
            PxkImage image = {};
            image.depth = depth;
            pxkSetBorderMode(&image, 77, PXK_SIDE_TOP | PXK_SIDE_LEFT | 0x70, constant); // modes are not looked at
            EXPECT_EQ(std::vector<int32_t>(image.borderMode, image.borderMode + 4),
                      std::vector<int32_t>({ 77, 0, 77, 0 }));
            EXPECT_EQ(std::vector<int32_t>(image.borderConst, image.borderConst + 4),
                      std::vector<int32_t>({ limited, 0, limited, 0 }));
        }
    }
}
