// SPDX-License-Identifier: BSD-2-Clause
// What bitmap interchange refuses: which check speaks first, its text in both forms, and what the Sep form returns.
#include "support/bitmap.h"
#include "support/compare.h"
#include "support/reports.h"

namespace {

// What a call gets.
struct Arguments {
    PxkBitmapInfoHeader header = bitmapHeader(5, 4, 8);
    PicturePtr picture = Picture::make({ PXK_DEPTH_8U, 5, 4, 3 });
    PxkImage* image = *picture;
    bool hasDib = true, hasBits = true;
    int32_t dither = 1, palette = 0;
    uint32_t masks[3] = { 0xFF, 0xFF0, 0xFF00 };

    void beFields(int32_t bits, int32_t zero)
    {
        header = bitmapHeader(5, 4, bits, PXK_BI_BITFIELDS);
        masks[zero] = bits == 16 ? 0xFFFF0000 : 0;
    }
    void be(const PictureSpec& spec) { picture = Picture::make(spec), image = *picture; }
    void beDepth(int32_t depth, int32_t channels) { be({ depth, 5, 4, channels }); }
    void beSequence(const char* word) { memcpy(image->channelSeq, word, 4); }
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

enum class Way { FROM, TO, TRANSLATE };

// Runs both forms with the spoilt arguments, which nothing may change; there is one form of a translation.
void expectRefusals(const std::vector<Refusal>& refusals, Way way)
{
    const std::string names[] = { "pxkConvertFromDIB", "pxkConvertToDIB", "pxkTranslateDIB" };
    for (const bool isSep : { false, true }) {
        for (const Refusal& r : refusals) {
            if (isSep ? way == Way::TRANSLATE : r.isSepOnly) continue;
            SCOPED_TRACE(std::string(r.part) + (isSep ? ", Sep" : ", plain"));
            Arguments a;
            r.spoil(a);
            Random random(1);
            Bitmap bitmap(bitmapHeader(5, 4, 8), isSep, random);
            bitmap.setHeader(a.header);
            for (int32_t i = 0; i < 3; ++i) bitmap.setWord(i, a.masks[i]);
            const auto bitmapBefore = bitmap.copy();
            const PicturePtr pictureBefore = a.picture->copy();
            PxkBitmapInfoHeader* const dib = a.hasDib ? bitmap.dib() : nullptr;
            void* const bits = a.hasBits && isSep ? bitmap.bits() : nullptr;
            startReports();
            int32_t returned = r.returned, isCloned;
            if (way == Way::TRANSLATE) {
                EXPECT_EQ(pxkTranslateDIB(dib, a.hasBits ? &isCloned : nullptr), nullptr);
            } else if (way == Way::TO) {
                if (isSep) returned = pxkConvertToDIBSep(a.image, dib, bits, a.dither, a.palette);
                if (!isSep) pxkConvertToDIB(a.image, dib, a.dither, a.palette);
            } else {
                if (isSep) returned = pxkConvertFromDIBSep(dib, bits, a.image);
                if (!isSep) pxkConvertFromDIB(dib, a.image);
            }
            EXPECT_EQ(returned, r.returned);
            std::vector<Report> reports = recordedReports(); // sizes are told by the image's header first
            ASSERT_EQ(reports.size(), way == Way::TRANSLATE && r.reported == PXK_StsNoMem ? 2u : 1u);
            EXPECT_NE(plainText(reports.back().context).find(r.part), std::string::npos) << reports.back();
            const std::string context = reports.back().context;
            reports.back() = { r.reported, names[int32_t(way)] + (isSep ? "Sep" : ""), context };
            expectReports(reports);
            EXPECT_TRUE(bitmap.sameAs(*bitmapBefore));
            EXPECT_TRUE(sameSamples(*pictureBefore, *a.picture));
        }
    }
}

// What both directions ask of the masks, and of the bitmap's header.
const std::vector<Refusal> ofMasks = {
    { "maskiszero", [](Arguments& a) { a.beFields(16, 0); } },
    { "maskiszero", [](Arguments& a) { a.beFields(16, 1); } },
    { "maskiszero", [](Arguments& a) { a.beFields(16, 2); } },
    { "maskiszero", [](Arguments& a) { a.beFields(32, 0); } },
    { "maskiszero", [](Arguments& a) { a.beFields(32, 1); } },
    { "maskiszero", [](Arguments& a) { a.beFields(32, 2); } },
};
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
    expectRefusals(ofMasks, Way::FROM);
    expectRefusals(ofHeaders, Way::FROM);
    expectRefusals(
        {
            { "dib", [](Arguments& a) { a.hasDib = false; } },
            { "dibData", [](Arguments& a) { a.hasBits = false; }, -5, -5, true },
            { "image", [](Arguments& a) { a.image = nullptr; }, -5, -9 },
            { "image->alphaChannel<0", [](Arguments& a) { a.image->alphaChannel = -1; }, -5, -18 },
            { "nChannels<image->alphaChannel", [](Arguments& a) { a.image->alphaChannel = 4; }, -5, -18 },
            { "image->dataOrder!=1", [](Arguments& a) { a.image->dataOrder = 2; }, -5, -19 },
            { "image->origin!=1", [](Arguments& a) { a.image->origin = -1; }, -5, -20 },
            { "image->align!=32", [](Arguments& a) { a.image->align = 2; }, -5, -21 },
            { "image->height<=0", [](Arguments& a) { a.image->height = 0; }, -5, -10 },
            { "image->width<=0", [](Arguments& a) { a.image->width = -5; }, -5, -10 },
            { "image->imageSize<=0", [](Arguments& a) { a.image->imageSize = 0; }, -5, -10 },
            { "image->widthStep<=0", [](Arguments& a) { a.image->widthStep = 0; }, -5, -13 },
            { "Imagesizeistoosmall", [](Arguments& a) { a.image->width = 4; }, -10, -10 },
            { "Imagesizeistoosmall", [](Arguments& a) { a.image->height = 3; }, -10, -10 },
            { "small", [](Arguments& a) { a.header.biHeight = INT32_MIN, a.header.biWidth = 0; }, -10, -10 },
            { "<unknown>", [](Arguments& a) { a.header.biBitCount = 2; }, -3, -3 },
            { "image->channelSequnsupport", [](Arguments& a) { a.beSequence("BGR "); }, -14, -14 },
            { "image->channelSequnsupport", [](Arguments& a) { a.beSequence("GRA"); }, -14, -14 },
            { "<unknown>", [](Arguments& a) { a.beDepth(PXK_DEPTH_8S, 3); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { a.beDepth(PXK_DEPTH_32F, 3); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { a.beDepth(PXK_DEPTH_8U, 2); }, -3, -3 },
            { "<unknown>", [](Arguments& a) { a.beDepth(PXK_DEPTH_16S, 1); }, -3, -3 },
        },
        Way::FROM);
    startReports();
    pxkConvertFromDIB(nullptr, nullptr);
    expectReports({ { -5, "pxkConvertFromDIB", "dib==0" }, { -5, "pxkConvertFromDIB", "image==0" } });
}

TEST(DibTo, refuses)
{
    expectRefusals(ofMasks, Way::TO);
    expectRefusals(ofHeaders, Way::TO);
    expectRefusals(
        {
            { "IncorrectImage", [](Arguments& a) { a.image->align = 2; }, -21 },
            { "IncorrectImage", [](Arguments& a) { a.image = nullptr; }, -9 },
            { "dib", [](Arguments& a) { a.hasDib = false; } },
            { "dibData", [](Arguments& a) { a.hasBits = false; }, -5, -5, true },
            { "image->nChannels>4", [](Arguments& a) { a.beDepth(PXK_DEPTH_8U, 5); }, -5, -15 },
            { "image->depth!=16", [](Arguments& a) { a.beDepth(PXK_DEPTH_8S, 3); }, -5, -17 },
            { "image->alphaChannel!=4", [](Arguments& a) { a.image->alphaChannel = 3; }, -5, -18 },
            { "image->nChannels!=1", [](Arguments& a) { a.beDepth(PXK_DEPTH_8U, 4); }, -5, -15 },
            { "image->width!=dib->biWidth", [](Arguments& a) { a.header.biWidth = 6; }, -5, -10 },
            { "abs(dib->biHeight)", [](Arguments& a) { a.header.biHeight = INT32_MIN; }, -5, -10 },
            { "dither!=16", [](Arguments& a) { a.dither = 3; } },
            { "paletteConversion!=2", [](Arguments& a) { a.palette = 3; } },
            { "medcut", [](Arguments& a) { a.palette = PXK_PALETTE_MEDCUT, a.beSequence("XYZ"); }, -3, -3 },
            { "ParameterbiBitCount", [](Arguments& a) { a.header.biBitCount = 2, a.dither = 2; } },
            { "dib->biBitCountisbad", [](Arguments& a) { a.header.biBitCount = 2; } },
            { "channelSequnsupport", [](Arguments& a) { a.beSequence("XYZ"); }, -14, -14 },
            { "<unknown>", [](Arguments& a) { a.be(a.picture->spec.tiled(8, 8)); }, -3, -3 },
        },
        Way::TO);
}

TEST(DibTranslate, refuses)
{
    const char* const size = "Notenoughmemorytoallocateheader";
    expectRefusals(ofHeaders, Way::TRANSLATE);
    expectRefusals(
        {
            { "(dib==", [](Arguments& a) { a.hasDib = a.hasBits = false; } },
            { "cloneData==", [](Arguments& a) { a.hasBits = false; } },
            { "dib->biBitCountisbad", [](Arguments& a) { a.header.biBitCount = 2; } },
            { size, [](Arguments& a) { a.header.biHeight = INT32_MIN; }, -4 },
            { size, [](Arguments& a) { a.header.biCompression = 1, a.header.biHeight = 0; }, -4 },
            { size, [](Arguments& a) { a.header.biWidth = -5; }, -4 },
            { size, [](Arguments& a) { a.header = bitmapHeader(INT32_MAX, INT32_MAX, 24); }, -4 },
        },
        Way::TRANSLATE);
}

// Colour to one bit and alpha cannot be reduced; a status from before counts as a failure of the reduction.
TEST(DibTo, refusesWhatCannotBeReduced)
{
    const struct {
        int32_t bits, channels, staleStatus, status;
        const char* text;
    } rows[] = { { 1, 3, 0, -4, "Not enough memory to allocate header for temporal image" },
                 { 8, 4, 0, -3, "Dithering can't be produced" },
                 { 8, 3, -7, -3, "Dithering can't be produced" } };
    Random random(1);
    for (const auto& row : rows) {
        const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 5, 4, row.channels, 0, row.channels == 4 });
        memcpy(image->header.colorModel, row.channels == 4 ? "RGBA" : "RGB", 4);
        const Bitmap bitmap(bitmapHeader(5, 4, row.bits), true, random);
        startReports();
        pxkSetErrStatus(row.staleStatus);
        EXPECT_EQ(convertTo(*image, bitmap, PXK_DITHER_FS), row.status);
        ASSERT_EQ(recordedReports().size(), row.staleStatus != 0 ? 1u : 2u);
        EXPECT_EQ(recordedReports().back(), (Report { row.status, "pxkConvertToDIBSep", row.text }));
    }
    startReports();
}

// ---- what a status from before does --------------------------------------------------------------------------------

TEST(DibStale, stopsThePlainFormFromABitmapOnly)
{
    Random random(1);
    const PicturePtr image = Picture::make({ PXK_DEPTH_8U, 5, 4, 3 }), before = image->copy();
    startReports();
    pxkSetErrStatus(-7);
    for (const bool isSep : { false, true }) {
        const Bitmap bitmap(bitmapHeader(5, 4, 24), isSep, random);
        EXPECT_EQ(convertFrom(bitmap, *image), isSep ? 0 : -7);
        EXPECT_EQ(!sameSamples(*before, *image), isSep);
        const auto kept = bitmap.copy();
        EXPECT_EQ(convertTo(*Picture::make(image->spec, random), bitmap), isSep ? 0 : -7);
        EXPECT_FALSE(bitmap.sameAs(*kept));
    }
    // An image that is to be converted stays black.
    const Bitmap fields(bitmapHeader(5, 4, 16), false, random);
    int32_t isCloned;
    PxkImage* const made = pxkTranslateDIB(fields.dib(), &isCloned);
    ASSERT_NE(made, nullptr);
    const uint8_t* const data = static_cast<const uint8_t*>(made->imageData);
    EXPECT_TRUE(std::all_of(data, data + made->imageSize, [](uint8_t byte) { return byte == 0; }));
    pxkDeallocate(made, PXK_FREE_HEADER | PXK_FREE_DATA);
    EXPECT_TRUE(recordedReports().empty());
    EXPECT_EQ(pxkGetErrStatus(), -7);
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
    const PicturePtr got = Picture::of(*image);
    EXPECT_EQ(got->bits(0, 0, 0), bitmap.pixel(0, 0) & 0xFF);
    EXPECT_EQ(got->bits(5, 0, 0) + got->bits(0, 5, 0), 0u);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);

    const PicturePtr tiled = Picture::make(PictureSpec { PXK_DEPTH_8U, 5, 4, 3 }.tiled(8, 8));
    tiled->header.imageSize = tiled->header.widthStep = 1;
    pxkConvertFromDIB(bitmap.dib(), *tiled);
    expectReports({ { -5, "pxkAllocateImage", "( image->tileInfo != ((void *)0) )" },
                    { -4, "pxkConvertFromDIB", "Not enough memory to allocate data for destination image" } });
}
