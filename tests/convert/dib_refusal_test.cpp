// SPDX-License-Identifier: BSD-2-Clause
// What bitmap interchange refuses: which check speaks first, its text in both forms, and what the Sep form returns.
#include "support/bitmap.h"
#include "support/compare.h"
#include "support/reports.h"

namespace {

// What a call gets.
struct Arguments {
    PxkBitmapInfoHeader header = bitmapHeader(5, 4, 8);
    PicturePtr picture = colours(PictureSpec(PXK_DEPTH_8U, 5, 4, 3));
    bool hasDib = true, hasBits = true, hasImage = true;
    int32_t dither = 1, palette = 0;

    static PicturePtr colours(const PictureSpec& spec)
    {
        const PicturePtr made = Picture::make(spec);
        memcpy(made->header.channelSeq, "BGR", 4);
        return made;
    }
    PxkImage* image() const { return hasImage ? &picture->header : nullptr; }
};

// The texts of the forms differ in blanks, outer brackets and the name of the bitmap, so a row has only a part that
// tells its text from the others, without blanks and with the plain form's name.
struct Refusal {
    const char* part;
    void (*spoil)(Arguments&);
    int32_t reported = PXK_StsBadArg, returned = PXK_StsBadArg;
    bool isSepOnly = false;
};

std::string plainText(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    for (size_t at; (at = text.find("dibHeader")) != std::string::npos;) text.erase(at + 3, 6);
    return text;
}

// Runs both forms with the spoilt arguments, which nothing may change.
void expectRefusals(const std::vector<Refusal>& refusals, bool isTo)
{
    for (const bool isSep : { false, true }) {
        for (const Refusal& r : refusals) {
            if (!isSep && r.isSepOnly) continue;
            SCOPED_TRACE(std::string(r.part) + (isSep ? ", Sep" : ", plain"));
            Arguments a;
            r.spoil(a);
            Random random(1);
            Bitmap bitmap(bitmapHeader(5, 4, 8), isSep, random);
            bitmap.setHeader(a.header);
            const auto bitmapBefore = bitmap.copy();
            const PicturePtr pictureBefore = a.picture->copy();
            PxkBitmapInfoHeader* const dib = a.hasDib ? bitmap.dib() : nullptr;
            void* const bits = a.hasBits && isSep ? bitmap.bits() : nullptr;
            startReports();
            int32_t returned = r.returned;
            if (isTo && isSep) returned = pxkConvertToDIBSep(a.image(), dib, bits, a.dither, a.palette);
            if (isTo && !isSep) pxkConvertToDIB(a.image(), dib, a.dither, a.palette);
            if (!isTo && isSep) returned = pxkConvertFromDIBSep(dib, bits, a.image());
            if (!isTo && !isSep) pxkConvertFromDIB(dib, a.image());
            EXPECT_EQ(returned, r.returned);
            ASSERT_EQ(recordedReports().size(), 1u);
            const Report report = recordedReports()[0];
            EXPECT_NE(plainText(report.context).find(r.part), std::string::npos) << report;
            const std::string name = isTo ? "pxkConvertToDIB" : "pxkConvertFromDIB";
            expectReports({ { r.reported, name + (isSep ? "Sep" : ""), report.context } });
            EXPECT_TRUE(bitmap.sameAs(*bitmapBefore));
            EXPECT_TRUE(sameSamples(*pictureBefore, *a.picture));
        }
    }
}

void beDepth(Arguments& a, int32_t depth, int32_t channels, int32_t alphaChannel = 0)
{
    a.picture = Arguments::colours(PictureSpec(depth, 5, 4, channels));
    a.picture->header.alphaChannel = alphaChannel;
}
PxkImage& of(Arguments& a)
{
    return a.picture->header;
}

// What both directions ask of the bitmap's header.
const std::vector<Refusal> ofHeaders = {
    { "dib->biSize!=sizeof(BITMAPINFOHEADER)", [](Arguments& a) { a.header.biSize = 41; } },
    { "dib->biPlanes!=1", [](Arguments& a) { a.header.biPlanes = 0; } },
    { "&&(dib->biCompression!=3)", [](Arguments& a) { a.header.biCompression = 4; } },
    { "(dib->biBitCount!=8)&&", [](Arguments& a) { a.header.biBitCount = 4, a.header.biCompression = 1; } },
    { "(dib->biBitCount!=4)&&", [](Arguments& a) { a.header.biCompression = 2; } },
    { "(dib->biHeight<0)&&", [](Arguments& a) { a.header.biCompression = 1, a.header.biHeight = -4; } },
};

} // namespace

TEST(DibFrom, refuses)
{
    expectRefusals(ofHeaders, false);
    expectRefusals(
        {
            { "dib", [](Arguments& a) { a.hasDib = false; } },
            { "dibData", [](Arguments& a) { a.hasBits = false; }, -5, -5, true },
            { "image", [](Arguments& a) { a.hasImage = false; }, -5, -9 },
            { "image->alphaChannel<0", [](Arguments& a) { of(a).alphaChannel = -1; }, -5, -18 },
            { "nChannels<image->alphaChannel", [](Arguments& a) { of(a).alphaChannel = 4; }, -5, -18 },
            { "image->dataOrder!=1", [](Arguments& a) { of(a).dataOrder = 2; }, -5, -19 },
            { "image->origin!=1", [](Arguments& a) { of(a).origin = -1; }, -5, -20 },
            { "image->align!=32", [](Arguments& a) { of(a).align = 2; }, -5, -21 },
            { "image->height<=0", [](Arguments& a) { of(a).height = 0; }, -5, -10 },
            { "image->width<=0", [](Arguments& a) { of(a).width = -5; }, -5, -10 },
            { "image->imageSize<=0", [](Arguments& a) { of(a).imageSize = 0; }, -5, -10 },
            { "image->widthStep<=0", [](Arguments& a) { of(a).widthStep = 0; }, -5, -13 },
            { "Imagesizeistoosmall", [](Arguments& a) { of(a).width = 4; }, -10, -10 },
            { "Imagesizeistoosmall", [](Arguments& a) { of(a).height = 3; }, -10, -10 },
            { "small", [](Arguments& a) { a.header.biHeight = INT32_MIN, a.header.biWidth = 0; }, -10, -10 },
            { "<unknown>", [](Arguments& a) { a.header.biBitCount = 2; }, -3, -3 },
            { "image->channelSequnsupport", [](Arguments& a) { of(a).channelSeq[3] = ' '; }, -14, -14 },
            { "image->channelSequnsupport", [](Arguments& a) { memcpy(of(a).channelSeq, "GRA", 4); }, -14, -14 },
            { "<unknown>", [](Arguments& a) { beDepth(a, PXK_DEPTH_8S, 3); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { beDepth(a, PXK_DEPTH_32F, 3); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { beDepth(a, PXK_DEPTH_8U, 2); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { beDepth(a, PXK_DEPTH_16S, 1); }, -3, -3 },
        },
        false);
    startReports();
    pxkConvertFromDIB(nullptr, nullptr);
    expectReports({ { -5, "pxkConvertFromDIB", "dib==0" }, { -5, "pxkConvertFromDIB", "image==0" } });
}

TEST(DibTo, refuses)
{
    expectRefusals(ofHeaders, true);
    expectRefusals(
        {
            { "IncorrectImage", [](Arguments& a) { of(a).align = 2; }, -21 },
            { "IncorrectImage", [](Arguments& a) { a.hasImage = false; }, -9 },
            { "dib", [](Arguments& a) { a.hasDib = false; } },
            { "dibData", [](Arguments& a) { a.hasBits = false; }, -5, -5, true },
            { "image->nChannels>4", [](Arguments& a) { beDepth(a, PXK_DEPTH_8U, 5); }, -5, -15 },
            { "image->depth!=16", [](Arguments& a) { beDepth(a, PXK_DEPTH_8S, 3); }, -5, -17 },
            { "image->alphaChannel!=4", [](Arguments& a) { beDepth(a, PXK_DEPTH_8U, 3, 3); }, -5, -18 },
            { "image->nChannels!=1", [](Arguments& a) { beDepth(a, PXK_DEPTH_8U, 4); }, -5, -15 },
            { "image->width!=dib->biWidth", [](Arguments& a) { a.header.biWidth = 6; }, -5, -10 },
            { "abs(dib->biHeight)", [](Arguments& a) { a.header.biHeight = INT32_MIN; }, -5, -10 },
            { "dither!=16", [](Arguments& a) { a.dither = 3; } },
            { "paletteConversion!=2", [](Arguments& a) { a.palette = 3; } },
            { "medcut", [](Arguments& a) { a.palette = PXK_PALETTE_MEDCUT, memcpy(of(a).channelSeq, "XYZ", 4); }, -3,
              -3 },
            { "ParameterbiBitCount", [](Arguments& a) { a.header.biBitCount = 2, a.dither = 2; } },
            { "dib->biBitCountisbad", [](Arguments& a) { a.header.biBitCount = 2; } },
            { "channelSequnsupport", [](Arguments& a) { memcpy(of(a).channelSeq, "XYZ", 4); }, -14, -14 },
            { "<unknown>", [](Arguments& a) { a.picture = Arguments::colours(a.picture->spec.tiled(8, 8)); }, -3, -3 },
        },
        true);
}

TEST(DibTranslate, refuses)
{
    int32_t isCloned;
    const auto expectRefusal = [&](PxkBitmapInfoHeader* dib, int32_t* cloned, const char* part) {
        SCOPED_TRACE(part);
        startReports();
        EXPECT_EQ(pxkTranslateDIB(dib, cloned), nullptr);
        ASSERT_FALSE(recordedReports().empty());
        EXPECT_EQ(recordedReports().back().func, "pxkTranslateDIB");
        EXPECT_NE(plainText(recordedReports().back().context).find(part), std::string::npos);
        EXPECT_EQ(pxkGetErrStatus(), recordedReports().size() == 1 ? -5 : -4);
    };
    Random random(1);
    const Bitmap bitmap(bitmapHeader(5, 4, 8), false, random);
    std::vector<Refusal> rows = ofHeaders;
    const char* const size = "Notenoughmemorytoallocateheader";
    rows.push_back({ "dib->biBitCountisbad", [](Arguments& a) { a.header.biBitCount = 2; } });
    rows.push_back({ size, [](Arguments& a) { a.header.biHeight = INT32_MIN; } });
    rows.push_back({ size, [](Arguments& a) { a.header.biCompression = 1, a.header.biHeight = 0; } });
    rows.push_back({ size, [](Arguments& a) { a.header.biWidth = -5; } });
    rows.push_back({ size, [](Arguments& a) { a.header = bitmapHeader(INT32_MAX, INT32_MAX, 24); } });
    for (const Refusal& row : rows) {
        Arguments a;
        row.spoil(a);
        memcpy(bitmap.dib(), &a.header, 40);
        expectRefusal(bitmap.dib(), &isCloned, row.part);
    }
    expectRefusal(nullptr, nullptr, "(dib==");
    expectRefusal(bitmap.dib(), nullptr, "cloneData==");
    startReports();
}

// Colour to one bit and alpha cannot be reduced; a status from before counts as a failure of the reduction.
TEST(DibTo, refusesWhatCannotBeReduced)
{
    Random random(1);
    const auto expectFailure = [&](int32_t bits, int32_t channels, int32_t staleStatus, int32_t returned, Report last) {
        Arguments a;
        beDepth(a, PXK_DEPTH_8U, channels);
        memcpy(a.picture->header.colorModel, channels == 4 ? "RGBA" : "RGB", 4);
        if (channels == 4) a.picture->header.alphaChannel = 4;
        const Bitmap bitmap(bitmapHeader(5, 4, bits), true, random);
        startReports();
        pxkSetErrStatus(staleStatus);
        EXPECT_EQ(convertTo(a.image(), bitmap, PXK_DITHER_FS), returned);
        ASSERT_FALSE(recordedReports().empty());
        EXPECT_EQ(recordedReports().back(), last);
        EXPECT_EQ(recordedReports().size(), staleStatus != 0 ? 1u : 2u);
    };
    const Report notReduced = { -3, "pxkConvertToDIBSep", "Dithering can't be produced" };
    expectFailure(1, 3, 0, -4, { -4, "pxkConvertToDIBSep", "Not enough memory to allocate header for temporal image" });
    expectFailure(8, 4, 0, -3, notReduced);
    expectFailure(8, 3, -7, -3, notReduced);
    startReports();
}

// ---- what a status from before does --------------------------------------------------------------------------------

TEST(DibStale, stopsThePlainFormFromABitmapOnly)
{
    Random random(1);
    const Bitmap plain(bitmapHeader(5, 4, 24), false, random), sep(bitmapHeader(5, 4, 24), true, random);
    Arguments a;
    const PicturePtr before = a.picture->copy();
    startReports();
    pxkSetErrStatus(-7);
    pxkConvertFromDIB(plain.dib(), a.image());
    EXPECT_TRUE(samePicture(*before, *a.picture));
    EXPECT_EQ(pxkConvertFromDIBSep(sep.dib(), sep.bits(), a.image()), 0);
    EXPECT_FALSE(sameSamples(*before, *a.picture));
    const auto kept = plain.copy();
    pxkConvertToDIB(a.image(), plain.dib(), 1, 0);
    EXPECT_FALSE(plain.sameAs(*kept));
    EXPECT_EQ(pxkConvertToDIBSep(a.image(), sep.dib(), sep.bits(), 1, 0), 0);
    EXPECT_TRUE(recordedReports().empty());
    EXPECT_EQ(pxkGetErrStatus(), -7);

    // An image that is to be converted stays black.
    const Bitmap fields(bitmapHeader(5, 4, 16), false, random);
    int32_t isCloned;
    PxkImage* const image = pxkTranslateDIB(fields.dib(), &isCloned);
    ASSERT_NE(image, nullptr);
    const uint8_t* const data = static_cast<const uint8_t*>(image->imageData);
    EXPECT_TRUE(std::all_of(data, data + image->imageSize, [](uint8_t byte) { return byte == 0; }));
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    EXPECT_TRUE(recordedReports().empty());
}

// ---- hostile bitmaps -----------------------------------------------------------------------------------------------

TEST(DibHostile, zeroMasksAreRefused)
{
    Random random(1);
    for (const bool isSep : { false, true })
        for (const int32_t bits : { 16, 32 })
            for (int32_t zero = 0; zero < 3; ++zero) {
                Bitmap bitmap(bitmapHeader(5, 4, bits, 3), isSep, random);
                for (int32_t i = 0; i < 3; ++i)
                    bitmap.setWord(i, i != zero ? 0xFFu << 4 * i : bits == 16 ? 0xFFFF0000 : 0);
                Arguments a;
                startReports();
                EXPECT_EQ(convertFrom(bitmap, a.image()), -5);
                expectReports(
                    { { -5, isSep ? "pxkConvertFromDIBSep" : "pxkConvertFromDIB", "Bit-field mask is zero" } });
                EXPECT_EQ(convertTo(a.image(), bitmap), -5);
                expectReports({ { -5, isSep ? "pxkConvertToDIBSep" : "pxkConvertToDIB", "Bit-field mask is zero" } });
            }
    Bitmap bitmap(bitmapHeader(5, 4, 32, 3), false, random);
    for (int32_t i = 0; i < 3; ++i) bitmap.setWord(i, 0);
    int32_t isCloned;
    EXPECT_EQ(pxkTranslateDIB(bitmap.dib(), &isCloned), nullptr);
    expectReports({ { -5, "pxkConvertFromDIB", "Bit-field mask is zero" }, { -1, "pxkTranslateDIB", "" } });
}

// An image without pixels gets them; one that is tiled cannot.
TEST(DibFrom, allocatesPixels)
{
    Random random(1);
    const Bitmap bitmap(bitmapHeader(5, 4, 24), false, random);
    PxkImage* const image =
        pxkCreateImageHeader(3, 0, 8, "RGB", "BGR", 1, 0, 16, 7, 6, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(image, nullptr);
    startReports();
    pxkConvertFromDIB(bitmap.dib(), image);
    expectNoReports();
    const uint8_t* const data = static_cast<const uint8_t*>(image->imageData);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data[0], bitmap.pixel(0, 0) & 0xFF);
    EXPECT_EQ(data[5], 0);
    EXPECT_EQ(data[5 * 16], 0);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);

    const PicturePtr tiled = Picture::make(PictureSpec(PXK_DEPTH_8U, 5, 4, 3).tiled(8, 8));
    tiled->header.imageSize = tiled->header.widthStep = 1;
    memcpy(tiled->header.channelSeq, "BGR", 4);
    pxkConvertFromDIB(bitmap.dib(), *tiled);
    expectReports({ { -5, "pxkAllocateImage", "( image->tileInfo != ((void *)0) )" },
                    { -4, "pxkConvertFromDIB", "Not enough memory to allocate data for destination image" } });
}
