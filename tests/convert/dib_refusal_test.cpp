// What bitmap interchange refuses: texts of both forms, what is reported and what the Sep form returns.
#include <functional>

#include "support/bitmap.h"
#include "support/compare.h"
#include "support/reports.h"

namespace {

// What a call gets. Pointers that a test sets to null.
struct Arguments {
    PxkBitmapInfoHeader header = bitmapHeader(5, 4, 8);
    PicturePtr picture;
    PxkImage* image;
    bool hasDib = true, hasBits = true;
    int32_t dither = 1, palette = 0;
};

struct Refusal {
    std::function<void(Arguments&)> spoil;
    const char* plain; // null: the plain form has no such check
    const char* sep;   // null: the same text
    int32_t reported;
    int32_t returned;
};

using Change = std::function<void(Arguments&)>;

Change header(std::function<void(PxkBitmapInfoHeader&)> change)
{
    return [change](Arguments& a) { change(a.header); };
}

Change image(int32_t PxkImage::*field, int32_t value)
{
    return [field, value](Arguments& a) { a.picture->header.*field = value; };
}

Change sequence(const char* word)
{
    return [word](Arguments& a) { memcpy(a.picture->header.channelSeq, word, 4); };
}

Change depth(int32_t depth, int32_t channels)
{
    return [=](Arguments& a) {
        a.picture = Picture::make(PictureSpec(depth, 5, 4, channels));
        memcpy(a.picture->header.channelSeq, "BGR", 4);
        a.image = *a.picture;
    };
}

// Runs both forms with the spoilt arguments. Each check is met with the later ones spoilt too, which it must hide.
void expectRefusals(const std::vector<Refusal>& refusals, bool isTo)
{
    for (const bool isSep : { false, true }) {
        for (size_t k = 0; k < refusals.size(); ++k) {
            const Refusal& r = refusals[k];
            if (!isSep && r.plain == nullptr) continue;
            Arguments a;
            depth(PXK_DEPTH_8U, 3)(a);
            r.spoil(a);
            Random random(1);
            Bitmap bitmap(bitmapHeader(5, 4, 8), isSep, random);
            bitmap.setHeader(a.header);
            const auto bitmapBefore = bitmap.copy();
            const PicturePtr pictureBefore = a.picture->copy();
            PxkBitmapInfoHeader* const dib = a.hasDib ? bitmap.dib() : nullptr;
            void* const bits = a.hasBits && isSep ? bitmap.bits() : nullptr;
            const char* const text = isSep && r.sep != nullptr ? r.sep : r.plain;
            SCOPED_TRACE(std::string(text) + (isSep ? ", Sep" : ", plain") + ", refusal " + std::to_string(k));
            startReports();
            int32_t returned = r.returned;
            if (isTo && isSep)
                returned = pxkConvertToDIBSep(a.image, dib, bits, a.dither, a.palette);
            else if (isTo)
                pxkConvertToDIB(a.image, dib, a.dither, a.palette);
            else if (isSep)
                returned = pxkConvertFromDIBSep(dib, bits, a.image);
            else
                pxkConvertFromDIB(dib, a.image);
            EXPECT_EQ(returned, r.returned);
            const char* const name = isTo ? (isSep ? "pxkConvertToDIBSep" : "pxkConvertToDIB")
                                          : (isSep ? "pxkConvertFromDIBSep" : "pxkConvertFromDIB");
            expectReports({ { r.reported, name, text } });
            EXPECT_TRUE(bitmap.sameAs(*bitmapBefore));
            EXPECT_TRUE(sameSamples(*pictureBefore, *a.picture));
        }
    }
}

const auto noDib = [](Arguments& a) { a.hasDib = false; };
const auto noBits = [](Arguments& a) { a.hasBits = false; };
const auto noImage = [](Arguments& a) { a.image = nullptr; };

const Change size41 = header([](auto& h) { h.biSize = 41; });
const Change planes0 = header([](auto& h) { h.biPlanes = 0; });
const Change compression4 = header([](auto& h) { h.biCompression = 4; });
const Change rle8At4 = header([](auto& h) { h.biBitCount = 4, h.biCompression = 1; });
const Change rle4At8 = header([](auto& h) { h.biCompression = 2; });
const Change rleTopDown = header([](auto& h) { h.biCompression = 1, h.biHeight = -4; });
const Change bits2 = header([](auto& h) { h.biBitCount = 2; });
const Change lowest = header([](auto& h) { h.biHeight = INT32_MIN, h.biWidth = 0; });

} // namespace

TEST(DibFrom, refuses)
{
    expectRefusals(
        {
            { noDib, "dib==0", "( ((void *)0) == dibHeader )", -5, -5 },
            { noBits, nullptr, "( ((void *)0) == dibData )", -5, -5 },
            { noImage, "image==0", "( ((void *)0) == image )", -5, -9 },
            { image(&PxkImage::alphaChannel, -1), "( image->alphaChannel < 0 )", nullptr, -5, -18 },
            { image(&PxkImage::alphaChannel, 4), "( image->nChannels < image->alphaChannel )", nullptr, -5, -18 },
            { image(&PxkImage::dataOrder, 2), "( (image->dataOrder != 0) && (image->dataOrder != 1) )", nullptr, -5,
              -19 },
            { image(&PxkImage::origin, -1), "( (image->origin != 0) && (image->origin != 1) )", nullptr, -5, -20 },
            { image(&PxkImage::align, 2),
              "( (image->align != 4) && (image->align != 8) && (image->align != 16) && (image->align != 32) )", nullptr,
              -5, -21 },
            { image(&PxkImage::height, 0), "(image->height <= 0)", nullptr, -5, -10 },
            { image(&PxkImage::width, -5), "(image->width <= 0)", nullptr, -5, -10 },
            { image(&PxkImage::imageSize, 0), "(image->imageSize <= 0)", nullptr, -5, -10 },
            { image(&PxkImage::widthStep, 0), "(image->widthStep <= 0)", nullptr, -5, -13 },
            { size41, "(dib->biSize != sizeof(BITMAPINFOHEADER))", "(dibHeader->biSize != sizeof(BITMAPINFOHEADER))",
              -5, -5 },
            { planes0, "(dib->biPlanes != 1)", "(dibHeader->biPlanes != 1)", -5, -5 },
            { compression4,
              "(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
              "(dib->biCompression != 3)",
              "( ( dibHeader->biCompression != 0 ) && ( dibHeader->biCompression != 1 ) && ( dibHeader->biCompression "
              "!= 2 ) && ( dibHeader->biCompression != 3 ) )",
              -5, -5 },
            { rle8At4, "(dib->biBitCount != 8) && (dib->biCompression == 1)",
              "(dibHeader->biBitCount != 8) && (dibHeader->biCompression == 1)", -5, -5 },
            { rle4At8, "(dib->biBitCount != 4) && (dib->biCompression == 2)",
              "(dibHeader->biBitCount != 4) && (dibHeader->biCompression == 2)", -5, -5 },
            { rleTopDown, "(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )",
              "(dibHeader->biHeight < 0) && ( (dibHeader->biCompression == 1) || (dibHeader->biCompression == 2) )", -5,
              -5 },
            { image(&PxkImage::width, 4), "Image size is too small", nullptr, -10, -10 },
            { image(&PxkImage::height, 3), "Image size is too small", nullptr, -10, -10 },
            { lowest, "Image size is too small", nullptr, -10, -10 },
            { bits2, "<unknown>", nullptr, -3, -3 },
            { sequence("BGR "), "image->channelSeq unsupport", nullptr, -14, -14 },
            { sequence("GRA"), "image->channelSeq unsupport", nullptr, -14, -14 },
            { depth(PXK_DEPTH_8S, 3), "<unknown>", nullptr, -3, -3 },
            { depth(PXK_DEPTH_32F, 3), "<unknown>", nullptr, -3, -3 },
            { depth(PXK_DEPTH_8U, 2), "<unknown>", nullptr, -3, -3 },
            { depth(PXK_DEPTH_16S, 1), "<unknown>", nullptr, -3, -3 },
        },
        false);
}

TEST(DibTo, refuses)
{
    const auto to = [](int32_t dither, int32_t palette) {
        return [=](Arguments& a) { a.dither = dither, a.palette = palette; };
    };
    const auto alpha = [](int32_t channels, int32_t alphaChannel) {
        return [=](Arguments& a) { depth(PXK_DEPTH_8U, channels)(a), a.picture->header.alphaChannel = alphaChannel; };
    };
    const auto tiled = [](Arguments& a) {
        a.picture = Picture::make(PictureSpec(PXK_DEPTH_8U, 5, 4, 3).tiled(8, 8));
        memcpy(a.picture->header.channelSeq, "BGR", 4);
        a.image = *a.picture;
    };
    expectRefusals(
        {
            { image(&PxkImage::align, 2), "Incorrect Image", nullptr, -21, -5 },
            { noImage, "Incorrect Image", nullptr, -9, -5 },
            { noDib, "dib==0", "( ((void *)0) == dibHeader )", -5, -5 },
            { noBits, nullptr, "( ((void *)0) == dibData )", -5, -5 },
            { depth(PXK_DEPTH_8U, 5), "(image->nChannels <= 0 || image->nChannels > 4)", nullptr, -5, -15 },
            { depth(PXK_DEPTH_8S, 3), "( (image->depth != 1) && (image->depth != 8) && (image->depth != 16) )", nullptr,
              -5, -17 },
            { alpha(3, 3), "(image->alphaChannel != 0 && image->alphaChannel != 4)", nullptr, -5, -18 },
            { alpha(4, 0), "(image->nChannels != 3 && image->nChannels != 1)", nullptr, -5, -15 },
            { header([](auto& h) { h.biWidth = 6; }),
              "(image->width != dib->biWidth || image->height != abs(dib->biHeight))",
              "( image->width != dibHeader->biWidth || image->height != abs(dibHeader->biHeight) )", -5, -10 },
            { lowest, "(image->width != dib->biWidth || image->height != abs(dib->biHeight))",
              "( image->width != dibHeader->biWidth || image->height != abs(dibHeader->biHeight) )", -5, -10 },
            { size41, "(dib->biSize != sizeof(BITMAPINFOHEADER))", "(dibHeader->biSize != sizeof(BITMAPINFOHEADER))",
              -5, -5 },
            { planes0, "(dib->biPlanes != 1)", "(dibHeader->biPlanes != 1)", -5, -5 },
            { compression4,
              "(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
              "(dib->biCompression != 3)",
              "(dibHeader->biCompression != 0) && (dibHeader->biCompression != 1) && (dibHeader->biCompression != 2) "
              "&& (dibHeader->biCompression != 3)",
              -5, -5 },
            { rle8At4, "(dib->biBitCount != 8) && (dib->biCompression == 1)",
              "( (dibHeader->biBitCount != 8) && (dibHeader->biCompression == 1) )", -5, -5 },
            { rle4At8, "(dib->biBitCount != 4) && (dib->biCompression == 2)",
              "( (dibHeader->biBitCount != 4) && (dibHeader->biCompression == 2) )", -5, -5 },
            { rleTopDown, "(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )",
              "( (dibHeader->biHeight < 0) && ((dibHeader->biCompression == 1) || (dibHeader->biCompression == 2)) )",
              -5, -5 },
            { to(3, 0), "(dither != 1 && dither != 2 && dither != 4 && dither != 8 && dither != 16)",
              "( dither != 1 && dither != 2 && dither != 4 && dither != 8 && dither != 16 )", -5, -5 },
            { to(1, 3), "(paletteConversion != 0 && paletteConversion != 1 && paletteConversion != 2)",
              "( paletteConversion != 0 && paletteConversion != 1 && paletteConversion != 2 )", -5, -5 },
            { [&](Arguments& a) { sequence("XYZ")(a), a.palette = PXK_PALETTE_MEDCUT; },
              "Error of creating medcut palette", nullptr, -3, -3 },
            { [&](Arguments& a) { bits2(a), a.dither = 2; }, "Parameter biBitCount of DIB-image have illegal value",
              nullptr, -5, -5 },
            { bits2, "dib->biBitCount is bad", "dibHeader->biBitCount is bad", -5, -5 },
            { sequence("XYZ"), "image->channelSeq unsupport", nullptr, -14, -14 },
            { tiled, "<unknown>", nullptr, -3, -3 },
        },
        true);
}

TEST(DibTranslate, refuses)
{
    Random random(1);
    int32_t isCloned;
    const auto expectRefusal = [&](const PxkBitmapInfoHeader& h, std::vector<Report> reports) {
        const Bitmap bitmap(bitmapHeader(5, 4, 8), false, random);
        memcpy(bitmap.dib(), &h, 40);
        startReports();
        EXPECT_EQ(pxkTranslateDIB(bitmap.dib(), &isCloned), nullptr);
        expectReports(reports);
    };
    const auto changed = [](std::function<void(PxkBitmapInfoHeader&)> change) {
        PxkBitmapInfoHeader h = bitmapHeader(5, 4, 8);
        change(h);
        return h;
    };
    const auto one = [](const char* text) { return std::vector<Report>({ { -5, "pxkTranslateDIB", text } }); };
    startReports();
    EXPECT_EQ(pxkTranslateDIB(nullptr, nullptr), nullptr);
    expectReports(one("( dib == ((void *)0) )"));
    const Bitmap bitmap(bitmapHeader(5, 4, 8), false, random);
    EXPECT_EQ(pxkTranslateDIB(bitmap.dib(), nullptr), nullptr);
    expectReports(one("( cloneData == ((void *)0) )"));
    expectRefusal(changed([](auto& h) { h.biSize = 0; }), one("( dib->biSize != sizeof(BITMAPINFOHEADER) )"));
    expectRefusal(changed([](auto& h) { h.biPlanes = 2; }), one("(dib->biPlanes != 1)"));
    expectRefusal(changed([](auto& h) { h.biCompression = 0x80000000; }),
                  one("(dib->biCompression != 0) && (dib->biCompression != 1) && (dib->biCompression != 2) && "
                      "(dib->biCompression != 3)"));
    expectRefusal(changed([](auto& h) { h.biCompression = 1, h.biBitCount = 24; }),
                  one("(dib->biBitCount != 8) && (dib->biCompression == 1)"));
    expectRefusal(changed([](auto& h) { h.biCompression = 2; }),
                  one("(dib->biBitCount != 4) && (dib->biCompression == 2)"));
    expectRefusal(changed([](auto& h) { h.biCompression = 1, h.biHeight = -4; }),
                  one("(dib->biHeight < 0) && ( (dib->biCompression == 1) || (dib->biCompression == 2) )"));
    expectRefusal(changed([](auto& h) { h.biBitCount = 2; }), one("dib->biBitCount is bad"));
    const std::vector<Report> badSize = { { -10, "pxkCreateImageHeader", "Incorrect data-ins" },
                                          { -4, "pxkTranslateDIB",
                                            "Not enough memory to allocate header for destination image" } };
    expectRefusal(changed([](auto& h) { h.biHeight = INT32_MIN; }), badSize);
    expectRefusal(changed([](auto& h) { h.biCompression = 1, h.biHeight = 0; }), badSize);
    expectRefusal(changed([](auto& h) { h.biWidth = -5; }), badSize);
    expectRefusal(changed([](auto& h) { h.biWidth = h.biHeight = INT32_MAX, h.biBitCount = 24; }), badSize);
}

// Colour to one bit and alpha cannot be reduced; a status from before counts as a failure of the reduction.
TEST(DibTo, refusesWhatCannotBeReduced)
{
    Random random(1);
    const auto expectFailure = [&](int32_t bits, int32_t channels, int32_t staleStatus, int32_t returned, Report last) {
        Arguments a;
        depth(PXK_DEPTH_8U, channels)(a);
        memcpy(a.picture->header.colorModel, channels == 4 ? "RGBA" : "RGB", 4);
        if (channels == 4) a.picture->header.alphaChannel = 4;
        const Bitmap bitmap(bitmapHeader(5, 4, bits), true, random);
        startReports();
        pxkSetErrStatus(staleStatus);
        EXPECT_EQ(convertTo(a.image, bitmap, PXK_DITHER_FS), returned);
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
    depth(PXK_DEPTH_8U, 3)(a);
    const PicturePtr before = a.picture->copy();
    startReports();
    pxkSetErrStatus(-7);
    pxkConvertFromDIB(plain.dib(), a.image);
    EXPECT_TRUE(samePicture(*before, *a.picture));
    EXPECT_EQ(pxkConvertFromDIBSep(sep.dib(), sep.bits(), a.image), 0);
    EXPECT_FALSE(sameSamples(*before, *a.picture));
    const auto kept = plain.copy();
    pxkConvertToDIB(a.image, plain.dib(), 1, 0);
    EXPECT_FALSE(plain.sameAs(*kept));
    EXPECT_EQ(pxkConvertToDIBSep(a.image, sep.dib(), sep.bits(), 1, 0), 0);
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

TEST(DibFrom, reportsBothNullPointers)
{
    startReports();
    pxkConvertFromDIB(nullptr, nullptr);
    expectReports({ { -5, "pxkConvertFromDIB", "dib==0" }, { -5, "pxkConvertFromDIB", "image==0" } });
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
                depth(PXK_DEPTH_8U, 3)(a);
                startReports();
                EXPECT_EQ(convertFrom(bitmap, a.image), -5);
                expectReports(
                    { { -5, isSep ? "pxkConvertFromDIBSep" : "pxkConvertFromDIB", "Bit-field mask is zero" } });
                EXPECT_EQ(convertTo(a.image, bitmap), -5);
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
