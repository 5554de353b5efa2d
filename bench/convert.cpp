// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps: every reader and writer, run-length codes, colour tables and the nearest colour. The picture is a
// photograph, repeated to 2048 x 2048 with each second copy mirrored.
#include <functional>

#include "benchsupport.h"
#include "bitmapfile.h"

namespace {

constexpr int32_t side = 2048;
constexpr int64_t pixels = int64_t(side) * side;

BenchImage makeImage(int32_t nChannels, int32_t depth, int32_t dataOrder)
{
    BenchImage image(pxkCreateImageHeader(nChannels, nChannels == 4 ? 4 : 0, depth, "RGB\0",
                                          nChannels == 1       ? "G\0\0"
                                              : nChannels == 3 ? "BGR"
                                                               : "BGRA",
                                          dataOrder, 0, 4, side, side, nullptr, nullptr, nullptr, nullptr));
    pxkAllocateImage(image.get(), 1, 0);
    return image;
}

// A bitmap with room for a full colour table.
struct BenchBitmap {
    std::vector<uint32_t> block;

    BenchBitmap(int32_t bits, uint32_t compression)
        : block(10 + 256 + int64_t(side) * side * bits / 32 + 64)
    {
        header()->biSize = 40;
        header()->biWidth = side;
        header()->biHeight = side;
        header()->biPlanes = 1;
        header()->biBitCount = static_cast<uint16_t>(bits);
        header()->biCompression = compression;
        const uint32_t fields[2][3] = { { 0xF800, 0x07E0, 0x001F }, { 0x3FF00000, 0x000FFC00, 0x000003FF } };
        if (compression == PXK_BI_BITFIELDS) memcpy(&block[10], fields[bits == 32], 12);
    }
    PxkBitmapInfoHeader* header() { return reinterpret_cast<PxkBitmapInfoHeader*>(block.data()); }
};

// The photograph in blue, green, red.
const PxkImage* photograph(const char* name)
{
    static std::map<std::string, BenchImage> known;
    BenchImage& image = known[name];
    if (image) return image.get();
    image = makeImage(3, PXK_DEPTH_8U, PXK_DATA_ORDER_PIXEL);
    BitmapFile file;
    if (readBitmap(&file, (std::string(PXK_PHOTOS "/") + name).c_str()) != nullptr) return nullptr;
    const int32_t width = file.dib->biWidth, height = std::abs(file.dib->biHeight);
    const BenchImage small(pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 4, width,
                                                height, nullptr, nullptr, nullptr, nullptr));
    pxkConvertFromDIBSep(file.dib, file.bits, small.get());
    const auto mirrored = [](int32_t at, int32_t size) {
        return at / size % 2 == 0 ? at % size : size - 1 - at % size;
    };
    for (int32_t y = 0; y < side; ++y)
        for (int32_t x = 0; x < side; ++x)
            memcpy(static_cast<uint8_t*>(image->imageData) + ptrdiff_t(y) * image->widthStep + 3 * x,
                   static_cast<uint8_t*>(small->imageData) + ptrdiff_t(mirrored(y, height)) * small->widthStep
                       + 3 * mirrored(x, width),
                   3);
    releaseBitmap(&file);
    return image.get();
}

// The photograph in another form, by way of a 24-bit bitmap.
BenchImage photographAs(int32_t nChannels, int32_t depth, int32_t dataOrder)
{
    BenchBitmap bitmap(24, PXK_BI_RGB);
    pxkConvertToDIB(const_cast<PxkImage*>(photograph("astronaut-24.bmp")), bitmap.header(), 1, 0);
    BenchImage image = makeImage(nChannels, depth, dataOrder);
    pxkConvertFromDIB(bitmap.header(), image.get());
    return image;
}

struct BitmapKind {
    const char* name;
    int32_t bits;
    uint32_t compression;
};
const BitmapKind bitmapKinds[] = { { "1bit", 1, 0 },   { "4bit", 4, 0 },         { "8bit", 8, 0 },
                                   { "16bit", 16, 0 }, { "16bitFields", 16, 3 }, { "24bit", 24, 0 },
                                   { "32bit", 32, 0 }, { "32bitFields", 32, 3 } };

struct ImageKind {
    const char* name;
    int32_t nChannels, depth, dataOrder;
};
const ImageKind imageKinds[] = { { "1U", 1, PXK_DEPTH_1U, 0 },         { "gray8U", 1, PXK_DEPTH_8U, 0 },
                                 { "gray16U", 1, PXK_DEPTH_16U, 0 },   { "BGR8U", 3, PXK_DEPTH_8U, 0 },
                                 { "planes8U", 3, PXK_DEPTH_8U, 1 },   { "BGR16U", 3, PXK_DEPTH_16U, 0 },
                                 { "planes16U", 3, PXK_DEPTH_16U, 1 }, { "BGRA8U", 4, PXK_DEPTH_8U, 0 } };

int64_t bytesOf(const PxkImage& image, const BitmapKind& kind)
{
    return image.imageSize + pixels * kind.bits / 8;
}

int32_t paletteFor(const BitmapKind& kind)
{
    return kind.bits == 8 ? PXK_PALETTE_MEDCUT : PXK_PALETTE_FIXED;
}

void runFrom(benchmark::State& state, const BitmapKind& kind, const ImageKind& form)
{
    BenchBitmap bitmap(kind.bits, kind.compression);
    pxkConvertToDIB(const_cast<PxkImage*>(photograph("astronaut-24.bmp")), bitmap.header(), 1, paletteFor(kind));
    const BenchImage image = makeImage(form.nChannels, form.depth, form.dataOrder);
    benchRun(state, pixels, bytesOf(*image, kind), [&] { pxkConvertFromDIB(bitmap.header(), image.get()); });
}

// The table is made beforehand.
void runTo(benchmark::State& state, const BitmapKind& kind, const ImageKind& form)
{
    BenchBitmap bitmap(kind.bits, kind.compression);
    const BenchImage image = photographAs(form.nChannels, form.depth, form.dataOrder);
    pxkConvertToDIB(image.get(), bitmap.header(), 1, paletteFor(kind));
    benchRun(state, pixels, bytesOf(*image, kind), [&] { pxkConvertToDIB(image.get(), bitmap.header(), 1, 0); });
}

// 256 colours, then each pixel's nearest of them; of the photograph and of noise.
void runMedcut(benchmark::State& state, const std::function<BenchImage()>& make)
{
    BenchBitmap bitmap(8, PXK_BI_RGB);
    const BenchImage image = make();
    benchRun(state, pixels, image->imageSize + pixels,
             [&] { pxkConvertToDIB(image.get(), bitmap.header(), 1, PXK_PALETTE_MEDCUT); });
}

void runNearest(benchmark::State& state, const std::function<BenchImage()>& make)
{
    BenchBitmap bitmap(8, PXK_BI_RGB);
    const BenchImage image = make();
    pxkConvertToDIB(image.get(), bitmap.header(), 1, PXK_PALETTE_MEDCUT);
    benchRun(state, pixels, image->imageSize + pixels, [&] { pxkConvertToDIB(image.get(), bitmap.header(), 1, 0); });
}

BenchImage noise()
{
    BenchImage image = makeImage(3, PXK_DEPTH_8U, PXK_DATA_ORDER_PIXEL);
    benchFill(image.get());
    return image;
}

BenchImage photo()
{
    return photographAs(3, PXK_DEPTH_8U, PXK_DATA_ORDER_PIXEL);
}

// A picture of few colours, so that the code is kept. Coding starts from the image, its bits must be there each time.
void runCode(benchmark::State& state, int32_t bits, bool isDecoding)
{
    const BitmapKind kind = { "", bits, bits == 8 ? 1u : 2u };
    BenchBitmap bitmap(bits, kind.compression);
    PxkImage* const image = const_cast<PxkImage*>(photograph("rocket-rle8.bmp"));
    pxkConvertToDIB(image, bitmap.header(), 1, PXK_PALETTE_MEDCUT);
    if (bitmap.header()->biCompression == 0) return state.SkipWithError("the code was dropped");
    const BenchImage indices = makeImage(3, PXK_DEPTH_8U, PXK_DATA_ORDER_PIXEL);
    benchRun(state, pixels, bytesOf(*image, kind), [&] {
        if (isDecoding)
            pxkConvertFromDIB(bitmap.header(), indices.get());
        else
            pxkConvertToDIB(image, bitmap.header(), 1, 0);
    });
}

template <class Run> void add(const std::string& name, Run run)
{
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMillisecond);
}

const bool areRegistered = [] {
    for (const BitmapKind& kind : bitmapKinds)
        for (const ImageKind& form : imageKinds) {
            const std::string names = std::string(kind.name) + "/" + form.name;
            add("fromDIB/" + names, [=](benchmark::State& s) { runFrom(s, kind, form); });
            add("toDIB/" + names, [=](benchmark::State& s) { runTo(s, kind, form); });
        }
    for (const int32_t bits : { 4, 8 }) {
        add("fromDIB/rle" + std::to_string(bits), [=](benchmark::State& s) { runCode(s, bits, true); });
        add("toDIB/rle" + std::to_string(bits), [=](benchmark::State& s) { runCode(s, bits, false); });
    }
    add("medcut256AndNearest/photo", [](benchmark::State& s) { runMedcut(s, photo); });
    add("medcut256AndNearest/noise", [](benchmark::State& s) { runMedcut(s, noise); });
    add("nearest256/photo", [](benchmark::State& s) { runNearest(s, photo); });
    add("nearest256/noise", [](benchmark::State& s) { runNearest(s, noise); });
    return true;
}();

} // namespace

BENCHMARK_MAIN();
