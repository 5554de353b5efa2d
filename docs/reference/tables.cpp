// What each function takes, found out by calling it: pxk_tables include/pxk/pxk.h >docs/reference/tables.dox
//
// Every function of images is called on each pair of depths, and where that is taken, on the whole product of data
// orders, region, channel of interest, alpha, masks, tiles and calls in place. What is told of one axis must hold in
// the product: combinations that behave otherwise are told behind the table. Memory is what the call allocates.
// Examples are calls on small pictures.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <malloc.h>
#include <pxk/pxk.h>

// ---- memory --------------------------------------------------------------------------------------------------------

extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_calloc(size_t count, size_t size);
extern "C" void __libc_free(void* block);

static int64_t bytesHeld, mostHeld;

static void* note(void* block)
{
    if (block != nullptr) bytesHeld += int64_t(malloc_usable_size(block));
    mostHeld = std::max(mostHeld, bytesHeld);
    return block;
}

extern "C" void* malloc(size_t size)
{
    return note(__libc_malloc(size));
}
extern "C" void* calloc(size_t count, size_t size)
{
    return note(__libc_calloc(count, size));
}
extern "C" void free(void* block)
{
    if (block != nullptr) bytesHeld -= int64_t(malloc_usable_size(block));
    __libc_free(block);
}

namespace {

// ---- pictures ------------------------------------------------------------------------------------------------------

struct Depth {
    int32_t value;
    const char* name;
};
const Depth depths[] = { { PXK_DEPTH_1U, "1U" },   { PXK_DEPTH_8U, "8U" },   { PXK_DEPTH_8S, "8S" },
                         { PXK_DEPTH_16U, "16U" }, { PXK_DEPTH_16S, "16S" }, { PXK_DEPTH_32S, "32S" },
                         { PXK_DEPTH_32F, "32F" } };
const size_t depthCount = sizeof depths / sizeof depths[0];

int32_t bitsOf(int32_t depth)
{
    return depth & 0xFF;
}

// The axes of the product.
struct Way {
    int32_t order = 0; // 0 pixels, 1 planes, 2 mixed: the first image in pixel order, the others in planes
    bool hasRegion = false, hasCoi = false, hasAlpha = false;
    int32_t mask = 0; // 1 of the first image, 2 of the last one
    bool isTiled = false, isInPlace = false;
};

int32_t deliver(PxkImage* image, int32_t x, int32_t y, int32_t mode);

class Picture {
public:
    Picture(int32_t depth, int32_t channels, int32_t order, const char* model, const char* sequence, int32_t width,
            int32_t height, bool isTiled = false)
    {
        tiles = { deliver, 0, nullptr, (width + 7) / 8 * 8, (height + 7) / 8 * 8 };
        tileTiles = isTiled;
        image.headerSize = sizeof image;
        image.nChannels = channels;
        image.depth = depth;
        memcpy(image.colorModel, model, std::min<size_t>(4, strlen(model)));
        memcpy(image.channelSeq, sequence, std::min<size_t>(4, strlen(sequence)));
        image.dataOrder = order;
        image.align = 8;
        image.width = width;
        image.height = height;
        for (int32_t& mode : image.borderMode) mode = PXK_EDGE_CLAMP;
        // A tile holds the whole picture, so the same samples lie in the same places.
        const int32_t w = isTiled ? tiles.width : width;
        rows = isTiled ? tiles.height : height;
        const int64_t perRow = order == PXK_DATA_ORDER_PLANE ? 1 : channels;
        image.widthStep = int32_t((w * perRow * bitsOf(depth) + 63) / 64 * 8);
        image.imageSize = image.widthStep * rows * (order == PXK_DATA_ORDER_PLANE ? channels : 1);
        bytes.resize(size_t(image.imageSize) + 8);
        if (isTiled)
            image.tileInfo = &tiles;
        else
            image.imageData = bytes.data();
    }
    Picture(const Picture&) = delete;

    double get(int32_t x, int32_t y, int32_t c) const
    {
        const uint8_t* at = bytes.data() + offset(x, y, c);
        switch (uint32_t(image.depth)) {
        case PXK_DEPTH_1U: return *at >> (7 - x % 8) & 1;
        case PXK_DEPTH_8U: return *at;
        case uint32_t(PXK_DEPTH_8S): return int8_t(*at);
        case PXK_DEPTH_16U: return load<uint16_t>(at);
        case uint32_t(PXK_DEPTH_16S): return load<int16_t>(at);
        case uint32_t(PXK_DEPTH_32S): return load<int32_t>(at);
        default: return load<float>(at);
        }
    }
    void set(int32_t x, int32_t y, int32_t c, double value)
    {
        uint8_t* at = bytes.data() + offset(x, y, c);
        switch (uint32_t(image.depth)) {
        case PXK_DEPTH_1U: *at = uint8_t((*at & ~(0x80 >> x % 8)) | (value != 0 ? 0x80 >> x % 8 : 0)); break;
        case PXK_DEPTH_8U: *at = uint8_t(value); break;
        case uint32_t(PXK_DEPTH_8S): *at = uint8_t(int8_t(value)); break;
        case PXK_DEPTH_16U: store(at, uint16_t(value)); break;
        case uint32_t(PXK_DEPTH_16S): store(at, int16_t(value)); break;
        case uint32_t(PXK_DEPTH_32S): store(at, int32_t(value)); break;
        default: store(at, float(value));
        }
    }

    PxkImage image = {};
    PxkTileInfo tiles = {};
    PxkROI roi = {};
    std::vector<uint8_t> bytes;

private:
    size_t offset(int32_t x, int32_t y, int32_t c) const
    {
        const bool isPlane = image.dataOrder == PXK_DATA_ORDER_PLANE;
        const size_t sample = isPlane ? size_t(x) : size_t(x) * image.nChannels + c;
        return size_t(y + (isPlane ? c * rows : 0)) * image.widthStep + sample * bitsOf(image.depth) / 8;
    }
    template <class T> static T load(const uint8_t* at)
    {
        T value;
        memcpy(&value, at, sizeof value);
        return value;
    }
    template <class T> static void store(uint8_t* at, T value) { memcpy(at, &value, sizeof value); }
    bool tileTiles = false;
    int32_t rows = 0;
};

int32_t deliver(PxkImage* image, int32_t, int32_t, int32_t mode)
{
    // The record is a part of its picture, whose bytes are the only tile.
    if (mode == PXK_TILE_RELEASE) return 0;
    const size_t before = offsetof(Picture, tiles);
    auto* picture = reinterpret_cast<Picture*>(reinterpret_cast<char*>(image->tileInfo) - before);
    image->tileInfo->tileData = picture->bytes.data();
    return 0;
}

// ---- functions -----------------------------------------------------------------------------------------------------

struct Call {
    PxkImage** image;
    std::string* found; // numbers that the call gives
    PxkImage* operator[](size_t k) const { return image[k]; }
};

struct Function {
    const char* name;
    const char* text; // the example's call
    size_t count;     // of images
    std::function<void(const Call&)> call;
    const char* words = "RGB RGB RGB RGB"; // model and sequence of source and destination
    const char* input = "steps";
    bool readsAll = false; // the last image is a source, too
    int32_t mapDepth = 0;  // of the images between the first and the last one, which have one channel then
};

#define ONE(NAME, TEXT, ...)                                                                                           \
    {                                                                                                                  \
#NAME, TEXT, 1, [](const Call& i) { (void)i; __VA_ARGS__; }                                                            \
    }
#define TWO(NAME, TEXT, ...)                                                                                           \
    {                                                                                                                  \
#NAME, TEXT, 2, [](const Call& i) { (void)i; __VA_ARGS__; }                                                            \
    }
#define THREE(NAME, TEXT, ...)                                                                                         \
    {                                                                                                                  \
#NAME, TEXT, 3, [](const Call& i) { (void)i; __VA_ARGS__; }                                                            \
    }
#define PLAIN_TWO(NAME) TWO(NAME, #NAME "(src, dst)", NAME(i[0], i[1]))
#define PLAIN_THREE(NAME) THREE(NAME, #NAME "(a, b, dst)", NAME(i[0], i[1], i[2]))
#define COLOUR(NAME, WORDS)                                                                                            \
    {                                                                                                                  \
#NAME, #NAME "(src, dst)", 2, [](const Call& i) { NAME(i[0], i[1]); }, WORDS                                   \
    }

std::string numberText(double number)
{
    char text[40];
    snprintf(text, sizeof text, "%.7g", number);
    return text;
}

std::string numbersText(const double* numbers, size_t count)
{
    std::string text;
    for (size_t k = 0; k < count; ++k) text += (k > 0 ? " " : "") + numberText(numbers[k]);
    return text;
}

void withKernel(const std::function<void(PxkConvKernel*)>& use)
{
    const int32_t values[] = { 1, 2, 3, 0, 0, 0, 0, 0, 0 };
    PxkConvKernel* kernel = pxkCreateConvKernel(3, 3, 1, 1, values, 0);
    use(kernel);
    pxkDeleteConvKernel(kernel);
}

void withKernelFP(const std::function<void(PxkConvKernelFP*)>& use)
{
    const float values[] = { 0, 0.5f, 0, 0.5f, 0, 0, 0, 0, 0 };
    PxkConvKernelFP* kernel = pxkCreateConvKernelFP(3, 3, 1, 1, values);
    use(kernel);
    pxkDeleteConvKernelFP(kernel);
}

void separable(const Call& i)
{
    const int32_t row[] = { 1, 2, 1 }, column[] = { 1, 0, -1 };
    PxkConvKernel* x = pxkCreateConvKernel(3, 1, 1, 0, row, 0);
    PxkConvKernel* y = pxkCreateConvKernel(1, 3, 0, 1, column, 0);
    pxkConvolveSep2D(i[0], i[1], x, y);
    pxkDeleteConvKernel(x);
    pxkDeleteConvKernel(y);
}

void separableFP(const Call& i)
{
    const float row[] = { 0.25f, 0.5f, 0.25f };
    PxkConvKernelFP* x = pxkCreateConvKernelFP(3, 1, 1, 0, row);
    pxkConvolveSep2DFP(i[0], i[1], x, nullptr);
    pxkDeleteConvKernelFP(x);
}

// One table for up to four channels.
struct Tables {
    explicit Tables(int32_t levels)
        : key { 0, levels / 2, levels }
    {
    }
    int32_t key[3], value[3] = { 10, 200, 0 }, factor[3] = { 1, 0, 0 };
    PxkLUT lut = { 3, key, value, factor, 1 };
    PxkLUT* luts[4] = { &lut, &lut, &lut, &lut };
};

const int32_t twistData[] = { 0, 0, 1, 0, 0, 1, 0, 5, 1, 0, 0, 0, 0, 0, 0, 0 };
const float twistFP[] = { 0, 0, 1, 0, 0, 1, 0, 5, 1, 0, 0, 0 };

void quadOf(const PxkImage* image, double quad[4][2])
{
    const double x = image->width - 1, y = image->height - 1;
    const double corners[4][2] = { { 0, 0 }, { x, 1 }, { x - 1, y }, { 0, y } };
    memcpy(quad, corners, sizeof corners);
}

template <size_t Rows, size_t Columns>
void transformed(const Call& i, void (*transform)(PxkImage*, double (*)[Columns], double (*)[2]),
                 void (*warp)(PxkImage*, PxkImage*, double (*)[Columns], int32_t, int32_t))
{
    double quad[4][2], coeffs[Rows][Columns] = {};
    quadOf(i[0], quad);
    transform(i[0], coeffs, quad);
    warp(i[0], i[1], coeffs, 0, PXK_INTER_NN);
}

void affine(const Call& i)
{
    double coeffs[2][3] = { { 1, 0, 1 }, { 0, 1, 0 } };
    pxkWarpAffine(i[0], i[1], coeffs, PXK_INTER_NN);
}

template <class Warp> void quadrangle(const Call& i, Warp warp)
{
    double quad[4][2];
    quadOf(i[0], quad);
    warp(i[0], i[1], quad, 0, PXK_INTER_NN);
}

const std::vector<Function>& functions()
{
    static const std::vector<Function> all = {
        ONE(pxkSet, "pxkSet(image, 7)", pxkSet(i[0], 7)),
        ONE(pxkSetFP, "pxkSetFP(image, 0.5f)", pxkSetFP(i[0], 0.5f)),
        PLAIN_TWO(pxkCopy),
        { "pxkExchange", "pxkExchange(a, b)", 2, [](const Call& i) { pxkExchange(i[0], i[1]); }, "RGB RGB RGB RGB",
          "steps", true },
        PLAIN_THREE(pxkAdd),
        PLAIN_THREE(pxkSubtract),
        PLAIN_THREE(pxkMultiply),
        PLAIN_THREE(pxkAnd),
        PLAIN_THREE(pxkOr),
        PLAIN_THREE(pxkXor),
        TWO(pxkAddS, "pxkAddS(src, dst, 100)", pxkAddS(i[0], i[1], 100)),
        TWO(pxkSubtractS, "pxkSubtractS(src, dst, 100, 1)", pxkSubtractS(i[0], i[1], 100, 1)),
        TWO(pxkMultiplyS, "pxkMultiplyS(src, dst, 3)", pxkMultiplyS(i[0], i[1], 3)),
        TWO(pxkAndS, "pxkAndS(src, dst, 0x0F)", pxkAndS(i[0], i[1], 15)),
        TWO(pxkOrS, "pxkOrS(src, dst, 0x0F)", pxkOrS(i[0], i[1], 15)),
        TWO(pxkXorS, "pxkXorS(src, dst, 0x0F)", pxkXorS(i[0], i[1], 15)),
        TWO(pxkAddSFP, "pxkAddSFP(src, dst, 0.5f)", pxkAddSFP(i[0], i[1], 0.5f)),
        TWO(pxkSubtractSFP, "pxkSubtractSFP(src, dst, 1, 1)", pxkSubtractSFP(i[0], i[1], 1, 1)),
        TWO(pxkMultiplySFP, "pxkMultiplySFP(src, dst, 0.1f)", pxkMultiplySFP(i[0], i[1], 0.1f)),
        TWO(pxkLShiftS, "pxkLShiftS(src, dst, 2)", pxkLShiftS(i[0], i[1], 2)),
        TWO(pxkRShiftS, "pxkRShiftS(src, dst, 2)", pxkRShiftS(i[0], i[1], 2)),
        PLAIN_TWO(pxkNot),
        PLAIN_TWO(pxkAbs),
        PLAIN_TWO(pxkSquare),
        PLAIN_TWO(pxkConvert),
        PLAIN_TWO(pxkScale),
        TWO(pxkScaleFP, "pxkScaleFP(src, dst, 0, 300)", pxkScaleFP(i[0], i[1], 0, 300)),
        TWO(pxkBitonalToGray, "pxkBitonalToGray(src, dst, 20, 100)", pxkBitonalToGray(i[0], i[1], 20, 100)),
        TWO(pxkThreshold, "pxkThreshold(src, dst, 100)", pxkThreshold(i[0], i[1], 100)),
        PLAIN_THREE(pxkLess),
        PLAIN_THREE(pxkGreater),
        PLAIN_THREE(pxkEqual),
        TWO(pxkLessS, "pxkLessS(src, dst, 100)", pxkLessS(i[0], i[1], 100)),
        TWO(pxkGreaterS, "pxkGreaterS(src, dst, 100)", pxkGreaterS(i[0], i[1], 100)),
        TWO(pxkEqualS, "pxkEqualS(src, dst, 100)", pxkEqualS(i[0], i[1], 100)),
        TWO(pxkLessSFP, "pxkLessSFP(src, dst, 100)", pxkLessSFP(i[0], i[1], 100)),
        TWO(pxkGreaterSFP, "pxkGreaterSFP(src, dst, 100)", pxkGreaterSFP(i[0], i[1], 100)),
        TWO(pxkEqualSFP, "pxkEqualSFP(src, dst, 100)", pxkEqualSFP(i[0], i[1], 100)),
        THREE(pxkEqualFPEps, "pxkEqualFPEps(a, b, dst, 60)", pxkEqualFPEps(i[0], i[1], i[2], 60)),
        TWO(pxkEqualSFPEps, "pxkEqualSFPEps(src, dst, 100, 60)", pxkEqualSFPEps(i[0], i[1], 100, 60)),
        PLAIN_THREE(pxkMultiplyScale),
        TWO(pxkMultiplySScale, "pxkMultiplySScale(src, dst, 128)", pxkMultiplySScale(i[0], i[1], 128)),
        ONE(pxkPreMultiplyAlpha, "pxkPreMultiplyAlpha(image, 128)", pxkPreMultiplyAlpha(i[0], 128)),
        THREE(pxkAlphaComposite, "pxkAlphaComposite(a, b, dst, PXK_COMPOSITE_OVER, 0)",
              pxkAlphaComposite(i[0], i[1], i[2], PXK_COMPOSITE_OVER, 0)),
        THREE(pxkAlphaCompositeC, "pxkAlphaCompositeC(a, b, dst, PXK_COMPOSITE_OVER, 64, 255, 0)",
              pxkAlphaCompositeC(i[0], i[1], i[2], PXK_COMPOSITE_OVER, 64, 255, 0)),
        { "pxkConvolve2D",
          "pxkConvolve2D(src, dst, &kernel, 1, PXK_CONV_SUM), kernel 1 2 3 / 0 0 0 / 0 0 0, anchor (1, 1)", 2,
          [](const Call& i) { withKernel([&](PxkConvKernel* k) { pxkConvolve2D(i[0], i[1], &k, 1, 0); }); },
          "RGB RGB RGB RGB", "dot" },
        { "pxkConvolve2DFP",
          "pxkConvolve2DFP(src, dst, &kernel, 1, PXK_CONV_SUM), kernel 0 0.5 0 / 0.5 0 0 / 0 0 0, anchor (1, 1)", 2,
          [](const Call& i) { withKernelFP([&](PxkConvKernelFP* k) { pxkConvolve2DFP(i[0], i[1], &k, 1, 0); }); },
          "RGB RGB RGB RGB", "dot" },
        { "pxkConvolveSep2D",
          "pxkConvolveSep2D(src, dst, x, y), x the row 1 2 1, y the column 1 0 -1, anchors in the middle", 2,
          [](const Call& i) { separable(i); }, "RGB RGB RGB RGB", "dot" },
        { "pxkConvolveSep2DFP", "pxkConvolveSep2DFP(src, dst, x, NULL), x the row 0.25 0.5 0.25, anchor in the middle",
          2, [](const Call& i) { separableFP(i); }, "RGB RGB RGB RGB", "dot" },
        { "pxkFixedFilter", "pxkFixedFilter(src, dst, PXK_FILTER_GAUSS_3x3)", 2,
          [](const Call& i) { pxkFixedFilter(i[0], i[1], PXK_FILTER_GAUSS_3x3); }, "RGB RGB RGB RGB", "dot" },
        { "pxkBlur", "pxkBlur(src, dst, 3, 1, 1, 0)", 2, [](const Call& i) { pxkBlur(i[0], i[1], 3, 1, 1, 0); },
          "RGB RGB RGB RGB", "dot" },
        TWO(pxkMaxFilter, "pxkMaxFilter(src, dst, 3, 3, 1, 1)", pxkMaxFilter(i[0], i[1], 3, 3, 1, 1)),
        TWO(pxkMinFilter, "pxkMinFilter(src, dst, 3, 3, 1, 1)", pxkMinFilter(i[0], i[1], 3, 3, 1, 1)),
        TWO(pxkMedianFilter, "pxkMedianFilter(src, dst, 3, 3, 1, 1)", pxkMedianFilter(i[0], i[1], 3, 3, 1, 1)),
        { "pxkDilate", "pxkDilate(src, dst, 1)", 2, [](const Call& i) { pxkDilate(i[0], i[1], 1); }, "RGB RGB RGB RGB",
          "dot" },
        { "pxkErode", "pxkErode(src, dst, 1)", 2, [](const Call& i) { pxkErode(i[0], i[1], 1); }, "RGB RGB RGB RGB",
          "hole" },
        { "pxkOpen", "pxkOpen(src, dst, 1)", 2, [](const Call& i) { pxkOpen(i[0], i[1], 1); }, "RGB RGB RGB RGB",
          "dot" },
        { "pxkClose", "pxkClose(src, dst, 1)", 2, [](const Call& i) { pxkClose(i[0], i[1], 1); }, "RGB RGB RGB RGB",
          "hole" },
        { "pxkReduceBits", "pxkReduceBits(src, dst, 0, PXK_DITHER_FS, 0)", 2,
          [](const Call& i) { pxkReduceBits(i[0], i[1], 0, PXK_DITHER_FS, 0); }, "RGB RGB RGB RGB", "gray" },
        COLOUR(pxkRGB2HSV, "RGB RGB HSV HSV"),
        COLOUR(pxkHSV2RGB, "HSV HSV RGB RGB"),
        COLOUR(pxkRGB2HLS, "RGB RGB HLS HLS"),
        COLOUR(pxkHLS2RGB, "HLS HLS RGB RGB"),
        COLOUR(pxkRGB2XYZ, "RGB RGB XYZ XYZ"),
        COLOUR(pxkXYZ2RGB, "XYZ XYZ RGB RGB"),
        COLOUR(pxkRGB2LUV, "RGB RGB LUV LUV"),
        COLOUR(pxkLUV2RGB, "LUV LUV RGB RGB"),
        COLOUR(pxkRGB2YUV, "RGB RGB YUV YUV"),
        COLOUR(pxkYUV2RGB, "YUV YUV RGB RGB"),
        COLOUR(pxkRGB2YCrCb, "RGB RGB YCr YCr"),
        COLOUR(pxkYCrCb2RGB, "YCr YCr RGB RGB"),
        COLOUR(pxkYCC2RGB, "YCC YCC RGB RGB"),
        COLOUR(pxkColorToGray, "RGB RGB GRAY G"),
        { "pxkGrayToColor", "pxkGrayToColor(src, dst, 0.5f, 1, 0.25f)", 2,
          [](const Call& i) { pxkGrayToColor(i[0], i[1], 0.5f, 1, 0.25f); }, "GRAY G RGB RGB" },
        TWO(pxkApplyColorTwist,
            "pxkApplyColorTwist(src, dst, twist, 0), twist 0 0 1 0 / 0 1 0 5 / 1 0 0 0, scalingValue 0",
            PxkColorTwist* twist = pxkCreateColorTwist(twistData, 0);
            pxkApplyColorTwist(i[0], i[1], twist, 0); pxkDeleteColorTwist(twist)),
        TWO(pxkColorTwistFP, "pxkColorTwistFP(src, dst, twist), twist 0 0 1 0 / 0 1 0 5 / 1 0 0 0",
            pxkColorTwistFP(i[0], i[1], twistFP)),
        ONE(pxkComputeHisto, "pxkComputeHisto(image, luts), keys 0 128 256",
            Tables t(i[0]->depth == PXK_DEPTH_1U ? 2 : 256);
            pxkComputeHisto(i[0], t.luts); *i.found = "value " + numberText(t.value[0]) + " " + numberText(t.value[1])),
        TWO(pxkContrastStretch, "pxkContrastStretch(src, dst, luts), keys 0 128 256, values 10 200, factors 1 0, ramps",
            Tables t(i[0]->depth == PXK_DEPTH_1U ? 2 : 256);
            pxkContrastStretch(i[0], i[1], t.luts)),
        TWO(pxkHistoEqualize, "pxkHistoEqualize(src, dst, luts), keys 0 128 256, values 10 200",
            Tables t(i[0]->depth == PXK_DEPTH_1U ? 2 : 256);
            pxkHistoEqualize(i[0], i[1], t.luts)),
        ONE(pxkMoments, "pxkMoments(image, &state)", PxkMomentState s = {}; pxkMoments(i[0], &s);
            *i.found = "moments[0][0].value " + numberText(s.moments[0][0].value) + ", moments[1][0].value "
                + numberText(s.moments[1][0].value) + ", moments[0][1].value " + numberText(s.moments[0][1].value)),
        ONE(pxkSpatialMoment, "pxkSpatialMoment(image, 1, 0)", *i.found = numberText(pxkSpatialMoment(i[0], 1, 0))),
        ONE(pxkNormalizedSpatialMoment, "pxkNormalizedSpatialMoment(image, 1, 0)",
            *i.found = numberText(pxkNormalizedSpatialMoment(i[0], 1, 0))),
        ONE(pxkCentralMoment, "pxkCentralMoment(image, 2, 0)", *i.found = numberText(pxkCentralMoment(i[0], 2, 0))),
        ONE(pxkNormalizedCentralMoment, "pxkNormalizedCentralMoment(image, 2, 0)",
            *i.found = numberText(pxkNormalizedCentralMoment(i[0], 2, 0))),
        { "pxkNorm", "pxkNorm(a, b, PXK_NORM_L1)", 2,
          [](const Call& i) { *i.found = numberText(pxkNorm(i[0], i[1], PXK_NORM_L1)); }, "RGB RGB RGB RGB", "steps",
          true },
        ONE(pxkMinMaxFP, "pxkMinMaxFP(image, &min, &max)", float low = 0; float high = 0;
            pxkMinMaxFP(i[0], &low, &high); *i.found = "min " + numberText(low) + ", max " + numberText(high)),
        TWO(pxkZoom, "pxkZoom(src, dst, 2, 1, 1, 1, PXK_INTER_LINEAR)",
            pxkZoom(i[0], i[1], 2, 1, 1, 1, i[0]->depth == 1 ? 0 : 1)),
        TWO(pxkResize, "pxkResize(src, dst, 3, 2, 1, 1, PXK_INTER_NN)", pxkResize(i[0], i[1], 3, 2, 1, 1, 0)),
        TWO(pxkDecimate, "pxkDecimate(src, dst, 1, 2, 1, 1, PXK_INTER_SUPER)", pxkDecimate(i[0], i[1], 1, 2, 1, 1, 3)),
        TWO(pxkDecimateExt, "pxkDecimateExt(src, dst, 1, 2, 1, 1, PXK_INTER_NN, 3, 1)",
            pxkDecimateExt(i[0], i[1], 1, 2, 1, 1, 0, 3, 1)),
        TWO(pxkMirror, "pxkMirror(src, dst, 1)", pxkMirror(i[0], i[1], 1)),
        TWO(pxkWarpAffine, "pxkWarpAffine(src, dst, coeffs, PXK_INTER_NN), coeffs 1 0 1 / 0 1 0", affine(i)),
        TWO(pxkWarpBilinear, "pxkWarpBilinear(src, dst, coeffs, 0, PXK_INTER_NN), to the corners 0 0, 4 1, 3 2, 0 2",
            (transformed<2, 4>(i, pxkGetBilinearTransform, pxkWarpBilinear))),
        TWO(pxkWarpBilinearQ, "pxkWarpBilinearQ(src, dst, quad, 0, PXK_INTER_NN), corners 0 0, 4 1, 3 2, 0 2",
            quadrangle(i, pxkWarpBilinearQ)),
        TWO(pxkWarpPerspective,
            "pxkWarpPerspective(src, dst, coeffs, 0, PXK_INTER_NN), to the corners 0 0, 4 1, 3 2, 0 2",
            (transformed<3, 3>(i, pxkGetPerspectiveTransform, pxkWarpPerspective))),
        TWO(pxkWarpPerspectiveQ, "pxkWarpPerspectiveQ(src, dst, quad, 0, PXK_INTER_NN), corners 0 0, 4 1, 3 2, 0 2",
            quadrangle(i, pxkWarpPerspectiveQ)),
        TWO(pxkRotate, "pxkRotate(src, dst, 180, 4, 2, PXK_INTER_NN)",
            pxkRotate(i[0], i[1], 180, i[0]->width - 1, i[0]->height - 1, PXK_INTER_NN)),
        TWO(pxkShear, "pxkShear(src, dst, 1, 0, 0, 0, PXK_INTER_NN)", pxkShear(i[0], i[1], 1, 0, 0, 0, PXK_INTER_NN)),
        { "pxkRemap", "pxkRemap(src, xMap, yMap, dst, PXK_INTER_LINEAR)", 4,
          [](const Call& i) { pxkRemap(i[0], i[1], i[2], i[3], i[0]->depth == 1 ? PXK_INTER_NN : PXK_INTER_LINEAR); },
          "RGB RGB RGB RGB", "steps", false, PXK_DEPTH_32F },
        TWO(pxkRealFft2D, "pxkRealFft2D(src, dst, PXK_FFT_FORWARD)", pxkRealFft2D(i[0], i[1], PXK_FFT_FORWARD)),
        TWO(pxkCcsFft2D, "pxkCcsFft2D(src, dst, PXK_FFT_INVERSE)", pxkCcsFft2D(i[0], i[1], PXK_FFT_INVERSE)),
        { "pxkMpyRCPack2D", "pxkMpyRCPack2D(a, b, dst)", 3, [](const Call& i) { pxkMpyRCPack2D(i[0], i[1], i[2]); } },
        TWO(pxkDCT2D, "pxkDCT2D(src, dst, PXK_DCT_FORWARD)", pxkDCT2D(i[0], i[1], PXK_DCT_FORWARD)),
        ONE(pxkGetAffineTransform, "pxkGetAffineTransform(image, coeffs, quad), corners 0 0, 4 1, 4 3, 0 2",
            double c[2][3] = {};
            double q[4][2] = { { 0, 0 }, { 4, 1 }, { 4, 3 }, { 0, 2 } }; pxkGetAffineTransform(i[0], c, q);
            *i.found = numbersText(c[0], 6)),
        ONE(pxkGetBilinearTransform, "pxkGetBilinearTransform(image, coeffs, quad), corners 0 0, 4 1, 3 2, 0 2",
            double c[2][4] = {};
            double q[4][2]; quadOf(i[0], q); pxkGetBilinearTransform(i[0], c, q); *i.found = numbersText(c[0], 8)),
        ONE(pxkGetPerspectiveTransform, "pxkGetPerspectiveTransform(image, coeffs, quad), corners 0 0, 4 1, 3 2, 0 2",
            double c[3][3] = {};
            double q[4][2]; quadOf(i[0], q); pxkGetPerspectiveTransform(i[0], c, q); *i.found = numbersText(c[0], 9)),
        ONE(pxkGetAffineQuad, "pxkGetAffineQuad(image, coeffs, quad), coeffs 2 0 1 / 0 1 0",
            double c[2][3] = { { 2, 0, 1 }, { 0, 1, 0 } };
            double q[4][2] = {}; pxkGetAffineQuad(i[0], c, q); *i.found = numbersText(q[0], 8)),
        ONE(pxkGetAffineBound, "pxkGetAffineBound(image, coeffs, bound), coeffs 2 0 1 / 0 1 0",
            double c[2][3] = { { 2, 0, 1 }, { 0, 1, 0 } };
            double b[2][2] = {}; pxkGetAffineBound(i[0], c, b); *i.found = numbersText(b[0], 4)),
        ONE(pxkGetBilinearQuad, "pxkGetBilinearQuad(image, coeffs, quad), coeffs 0.5 1 0 0 / 0 0 1 0",
            double c[2][4] = { { 0.5, 1, 0, 0 }, { 0, 0, 1, 0 } };
            double q[4][2] = {}; pxkGetBilinearQuad(i[0], c, q); *i.found = numbersText(q[0], 8)),
        ONE(pxkGetBilinearBound, "pxkGetBilinearBound(image, coeffs, bound), coeffs 0.5 1 0 0 / 0 0 1 0",
            double c[2][4] = { { 0.5, 1, 0, 0 }, { 0, 0, 1, 0 } };
            double b[2][2] = {}; pxkGetBilinearBound(i[0], c, b); *i.found = numbersText(b[0], 4)),
        ONE(pxkGetPerspectiveQuad, "pxkGetPerspectiveQuad(image, coeffs, quad), coeffs 1 0 0 / 0 1 0 / 0 0.5 1",
            double c[3][3] = { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0.5, 1 } };
            double q[4][2] = {}; pxkGetPerspectiveQuad(i[0], c, q); *i.found = numbersText(q[0], 8)),
        ONE(pxkGetPerspectiveBound, "pxkGetPerspectiveBound(image, coeffs, bound), coeffs 1 0 0 / 0 1 0 / 0 0.5 1",
            double c[3][3] = { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0.5, 1 } };
            double b[2][2] = {}; pxkGetPerspectiveBound(i[0], c, b); *i.found = numbersText(b[0], 4)),
        ONE(pxkGetPixel, "pxkGetPixel(image, 2, 1, pixel)", double pixel[4]; pxkGetPixel(i[0], 2, 1, pixel)),
        ONE(pxkPutPixel, "pxkPutPixel(image, 2, 1, pixel)", double pixel[4] = {}; pxkPutPixel(i[0], 2, 1, pixel)),
        ONE(pxkCloneImage, "pxkCloneImage(image)", PxkImage* clone = pxkCloneImage(i[0]);
            pxkDeallocate(clone, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI)),
    };
    return all;
}

// ---- one call ------------------------------------------------------------------------------------------------------

const size_t destination = 9; // as the number of an image

int reports;
int32_t countReport(int32_t status, const char*, const char*, const char*, int32_t)
{
    ++reports;
    return status;
}

struct Channels {
    int32_t first, last;
};
const Channels channelChoices[] = { { 3, 3 }, { 3, 1 }, { 1, 1 }, { 1, 3 } };

struct Trial {
    int32_t from, to;
    Channels channels;
};

struct Outcome {
    bool isTaken = false;
    std::string found;
    std::vector<std::unique_ptr<Picture>> pictures;
    std::vector<std::vector<uint8_t>> before;
};

double sampleOf(const char* input, int32_t depth, int32_t x, int32_t y, int32_t c, size_t image)
{
    if (image == destination)
        return depth == PXK_DEPTH_1U ? (x * 7 + y * 5 + x * y) % 3 == 1 : (x * 5 + y * 3 + c) % 9 + 101;
    if (!strcmp(input, "gray")) return depth == PXK_DEPTH_8U ? 100 : 100 * 257;
    const bool isMiddle = x == 2 && y == 1;
    if (!strcmp(input, "dot")) return depth == PXK_DEPTH_1U ? isMiddle : isMiddle ? 16 : 0;
    if (!strcmp(input, "hole")) return depth == PXK_DEPTH_1U ? !isMiddle : isMiddle ? 0 : 16;
    if (depth == PXK_DEPTH_1U) return (x + y + int32_t(image)) % 3 == 0;
    const double value = 10 + 45 * x + 20 * y + 7 * c + 30 * double(image);
    return depth == PXK_DEPTH_8S ? value / 4 - 30 : value;
}

void wordsOf(const Function& f, int32_t channels, bool isLast, std::string& model, std::string& sequence)
{
    const std::string all = f.words;
    std::vector<std::string> words;
    for (size_t at = 0; at < all.size();) {
        const size_t end = std::min(all.find(' ', at), all.size());
        words.push_back(all.substr(at, end - at));
        at = end + 1;
    }
    model = words[isLast ? 2 : 0];
    sequence = words[isLast ? 3 : 1];
    if (channels == 1 && model == "RGB") {
        model = "GRAY";
        sequence = "G";
    }
}

Outcome run(const Function& f, const Trial& t, const Way& way, int32_t width = 12, int32_t height = 9,
            const char* input = "steps")
{
    Outcome outcome;
    Picture firstMask(PXK_DEPTH_1U, 1, 0, "", "", width, height), lastMask(PXK_DEPTH_1U, 1, 0, "", "", width, height);
    std::vector<PxkImage*> images;
    for (size_t k = 0; k < f.count; ++k) {
        const bool isLast = k + 1 == f.count, isMap = f.mapDepth != 0 && k > 0 && !isLast;
        int32_t depth = isLast && f.count > 1 ? t.to : t.from;
        int32_t channels = isLast && f.count > 1 ? t.channels.last : t.channels.first;
        if (isMap) depth = f.mapDepth;
        if (isMap || depth == PXK_DEPTH_1U) channels = 1;
        const bool hasAlpha = way.hasAlpha && channels == 3;
        std::string model, sequence;
        wordsOf(f, channels, isLast && f.count > 1, model, sequence);
        const int32_t order = way.order == 2 ? k > 0 : way.order;
        auto picture = std::make_unique<Picture>(depth, channels + hasAlpha, order, model.c_str(), sequence.c_str(),
                                                 width, height, way.isTiled);
        PxkImage& image = picture->image;
        if (hasAlpha) image.alphaChannel = image.nChannels;
        for (int32_t y = 0; y < height; ++y)
            for (int32_t x = 0; x < width; ++x)
                for (int32_t c = 0; c < image.nChannels; ++c)
                    picture->set(x, y, c,
                                 sampleOf(input, depth, f.count > 1 && isLast && !f.readsAll ? x : x % 5, y, c,
                                          f.count > 1 && isLast && !f.readsAll ? destination : k));
        if (isMap) {
            for (int32_t y = 0; y < height; ++y)
                for (int32_t x = 0; x < width; ++x) picture->set(x, y, 0, k == 1 ? std::min(x + 0.5, width - 1.0) : y);
        }
        if (way.hasRegion || way.hasCoi) {
            picture->roi = { way.hasCoi && image.nChannels > 1 ? 2 : 0, way.hasRegion ? 1 : 0, way.hasRegion ? 1 : 0,
                             way.hasRegion ? 8 : width, way.hasRegion ? 7 : height };
            image.roi = &picture->roi;
        }
        outcome.pictures.push_back(std::move(picture));
        images.push_back(&image);
    }
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            firstMask.set(x, y, 0, x % 2);
            lastMask.set(x, y, 0, x % 2);
        }
    }
    if (way.isInPlace) images.back() = images[0];
    if ((way.mask & 1) != 0) images[0]->maskROI = &firstMask.image;
    if ((way.mask & 2) != 0) images.back()->maskROI = &lastMask.image;

    for (const auto& picture : outcome.pictures) outcome.before.push_back(picture->bytes);
    reports = 0;
    pxkSetErrStatus(PXK_StsOk);
    f.call({ images.data(), &outcome.found });
    outcome.isTaken = reports == 0 && pxkGetErrStatus() == PXK_StsOk;
    return outcome;
}

// ---- declarations --------------------------------------------------------------------------------------------------

std::map<std::string, std::string> declarations; // by name

bool readDeclarations(const char* header)
{
    FILE* file = fopen(header, "r");
    if (file == nullptr) return false;
    std::string text;
    for (int c = fgetc(file); c != EOF; c = fgetc(file)) text += char(c);
    fclose(file);
    const std::string mark = "\nPXK_API ";
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1)) {
        std::string declaration;
        for (size_t k = at + mark.size(); k < text.size() && text[k] != ';'; ++k) {
            const bool isBlank = text[k] == ' ' || text[k] == '\n';
            if (!isBlank || declaration.back() != ' ') declaration += isBlank ? ' ' : text[k];
        }
        const size_t convention = declaration.find("PXK_CALL ");
        if (convention != std::string::npos) declaration.erase(convention, strlen("PXK_CALL "));
        const size_t end = declaration.find('('), begin = declaration.rfind(' ', end) + 1;
        declarations[declaration.substr(begin, end - begin)] = declaration;
    }
    return true;
}

// ---- what is taken -------------------------------------------------------------------------------------------------

enum Axis { PLANE, MIXED, REGION, COI, ALPHA, MASK_FIRST, MASK_LAST, TILES, IN_PLACE, axisCount };
const char* const axisNames[axisCount] = { "planes",
                                           "mixed orders",
                                           "region",
                                           "channel of interest",
                                           "alpha",
                                           "mask of the first image",
                                           "mask of the last image",
                                           "tiles",
                                           "in place" };

// Whether an axis means anything: one channel has no orders, one image no mixed ones.
bool isPossible(const Function& f, const Trial& t, int axis)
{
    const bool hasColours = (t.channels.first > 1 && t.from != PXK_DEPTH_1U)
        || (f.count > 1 && t.channels.last > 1 && t.to != PXK_DEPTH_1U);
    switch (axis) {
    case MIXED: return hasColours && f.count > 1;
    case COI:
    case ALPHA: return hasColours;
    case MASK_LAST: return f.count > 1;
    case IN_PLACE: return f.count > 1 && t.from == t.to && t.channels.first == t.channels.last;
    default: return true;
    }
}

Way wayOf(uint32_t axes)
{
    const auto has = [&](int axis) { return (axes >> axis & 1) != 0; };
    Way way;
    way.order = has(MIXED) ? 2 : has(PLANE) ? 1 : 0;
    way.hasRegion = has(REGION);
    way.hasCoi = has(COI);
    way.hasAlpha = has(ALPHA);
    way.mask = int32_t(has(MASK_FIRST)) + 2 * int32_t(has(MASK_LAST));
    way.isTiled = has(TILES);
    way.isInPlace = has(IN_PLACE);
    return way;
}

// yes, no, "not looked at", or blank where the axis means nothing.
using Pattern = std::vector<std::string>;

// Numbers and samples tell the same as without the axis.
bool givesTheSame(const Outcome& a, const Outcome& b)
{
    if (a.found != b.found) return false;
    const Picture &p = *a.pictures.back(), &q = *b.pictures.back();
    for (int32_t y = 0; y < p.image.height; ++y)
        for (int32_t x = 0; x < p.image.width; ++x)
            for (int32_t c = 0; c < std::min(p.image.nChannels, q.image.nChannels); ++c)
                if (p.get(x, y, c) != q.get(x, y, c)) return false;
    return true;
}

Pattern patternOf(const Function& f, const Trial& t, std::set<std::string>& exceptions)
{
    Pattern pattern(axisCount);
    const uint32_t always = run(f, t, {}).isTaken ? 0 : 1u << ALPHA;
    const Outcome plain = run(f, t, wayOf(always));
    uint32_t possible = always, taken = always;
    for (int axis = 0; axis < axisCount; ++axis) {
        if (!isPossible(f, t, axis)) continue;
        possible |= 1u << axis;
        const Outcome outcome = run(f, t, wayOf(1u << axis | always));
        if (!outcome.isTaken) {
            pattern[axis] = "no";
            continue;
        }
        taken |= 1u << axis;
        const bool isScope = axis == REGION || axis == COI || axis == MASK_FIRST || axis == MASK_LAST;
        pattern[axis] = axis == ALPHA && always != 0  ? "needed"
            : isScope && givesTheSame(plain, outcome) ? "ignored"
                                                      : "yes";
    }
    for (uint32_t axes = 0; axes < 1u << axisCount; ++axes) {
        const bool isMixed = (axes >> MIXED & 1) != 0;
        if ((axes & ~possible) != 0 || (axes & always) != always
            || (isMixed && (axes & (1u << PLANE | 1u << IN_PLACE)) != 0))
            continue;
        if (__builtin_popcount(axes) < 2) continue;
        const bool isTaken = run(f, t, wayOf(axes)).isTaken, isExpected = (axes & ~taken) == 0;
        if (isTaken == isExpected) continue;
        if (__builtin_popcount(axes) > 2) { // told by a pair already?
            bool isTold = false;
            for (int a = 0; a < axisCount; ++a)
                for (int b = 0; b < a; ++b)
                    if ((axes >> a & axes >> b & 1) != 0) {
                        const std::string pair = std::string(axisNames[b]) + " with " + axisNames[a];
                        isTold =
                            isTold || exceptions.count("Taken: " + pair) + exceptions.count("Refused: " + pair) > 0;
                    }
            if (isTold) continue;
        }
        std::string names;
        for (int axis = 0; axis < axisCount; ++axis)
            if ((axes >> axis & 1) != 0) names += (names.empty() ? "" : " with ") + std::string(axisNames[axis]);
        exceptions.insert((isTaken ? "Taken: " : "Refused: ") + names);
    }
    return pattern;
}

bool findTrial(const Function& f, int32_t from, int32_t to, Trial& found)
{
    for (const Channels& channels : channelChoices) {
        if (f.count == 1 && channels.first != channels.last) continue;
        if (from == PXK_DEPTH_1U && channels.first != 1) continue;
        if (f.count > 1 && to == PXK_DEPTH_1U && channels.last != 1) continue;
        const Trial trial = { from, to, channels };
        for (const bool hasAlpha : { false, true }) { // some need alpha
            Way way;
            way.hasAlpha = hasAlpha;
            if (hasAlpha && channels.first != 3) continue;
            if (run(f, trial, way).isTaken) {
                found = trial;
                return true;
            }
        }
    }
    return false;
}

struct Group {
    Pattern pattern;
    std::map<std::string, std::vector<std::string>> to; // names of depths, by source
    std::vector<std::string> from;
    bool isSame = true;
};

std::string join(const std::vector<std::string>& words)
{
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : " ") + word;
    return all;
}

bool isEachToEachOther(const Group& group)
{
    for (const std::string& from : group.from) {
        std::vector<std::string> others;
        for (const std::string& other : group.from)
            if (other != from) others.push_back(other);
        if (others != group.to.at(from)) return false;
    }
    return true;
}

std::string labelOf(const Function& f, const Group& group)
{
    if (f.count == 1 || group.isSame) return join(group.from);
    if (isEachToEachOther(group)) return "one of " + join(group.from) + " to another";
    std::map<std::string, std::vector<std::string>> byTargets;
    std::vector<std::string> order;
    for (const std::string& from : group.from) {
        const std::string targets = join(group.to.at(from));
        if (byTargets[targets].empty()) order.push_back(targets);
        byTargets[targets].push_back(from);
    }
    std::string label;
    for (const std::string& targets : order)
        label += (label.empty() ? "" : "; ") + join(byTargets[targets]) + " to " + targets;
    return label;
}

// ---- memory and examples -------------------------------------------------------------------------------------------

int64_t mostOf(const Function& f, const Trial& t, int32_t width, int32_t height)
{
    Way way;
    pxkRealFft2D(nullptr, nullptr, PXK_FFT_FREE);
    pxkDCT2D(nullptr, nullptr, PXK_DCT_FREE);
    Function measured = f;
    int64_t most = 0;
    measured.call = [&](const Call& i) {
        const int64_t before = bytesHeld;
        mostHeld = before;
        f.call(i);
        most = mostHeld - before;
    };
    if (!run(measured, t, way, width, height).isTaken) {
        way.hasAlpha = true;
        run(measured, t, way, width, height);
    }
    return most;
}

std::string memoryText(const Function& f, const Trial& t)
{
    const int64_t small = mostOf(f, t, 256, 256), wide = mostOf(f, t, 512, 256), tall = mostOf(f, t, 256, 512);
    if (small < 1024 && wide < 1024 && tall < 1024) return "none";
    const bool growsWide = wide > small + small / 4, growsTall = tall > small + small / 4;
    if (!growsWide && !growsTall) return "the same for every size of the picture";
    if (!growsTall) return "grows with the width";
    if (!growsWide) return "grows with the height";
    return "grows with the picture";
}

std::string pixelText(const Picture& picture, int32_t x, int32_t y)
{
    std::string text;
    for (int32_t c = 0; c < picture.image.nChannels; ++c) text += (c > 0 ? "," : "") + numberText(picture.get(x, y, c));
    return text;
}

void printPicture(const char* name, const Picture& picture)
{
    for (int32_t y = 0; y < picture.image.height; ++y) {
        printf(" *     %-6s", y == 0 ? name : "");
        for (int32_t x = 0; x < picture.image.width; ++x)
            printf(" %*s", picture.image.nChannels > 1 ? 11 : 6, pixelText(picture, x, y).c_str());
        printf("\n");
    }
}

void printExample(const Function& f, const Trial& taken)
{
    Trial t = taken;
    Trial gray = t;
    gray.channels = { 1, 1 };
    if (run(f, gray, {}).isTaken) t = gray;
    Way way;
    if (!run(f, t, way).isTaken) way.hasAlpha = true;
    const bool isWide = t.channels.first > 1 || t.channels.last > 1;
    Outcome outcome = run(f, t, way, isWide ? 3 : 5, isWide ? 1 : 3, f.input);
    if (!outcome.isTaken) return;
    printf(" *\n * @par Example\n *\n *     %s\n *\n", f.text);
    const bool isNumber = !outcome.found.empty();
    for (size_t k = 0; k < f.count; ++k) {
        Picture& picture = *outcome.pictures[k];
        const bool isLast = k + 1 == f.count && !isNumber;
        const std::vector<uint8_t> after = picture.bytes;
        if (!isLast || f.count == 1 || f.input == nullptr) {
            picture.bytes = outcome.before[k];
            printPicture(isLast                          ? "before"
                             : f.count == 1              ? "image"
                             : f.mapDepth != 0           ? (k == 0       ? "src"
                                                                : k == 1 ? "xMap"
                                                                         : "yMap")
                             : f.count == 2 && !isNumber ? "src"
                             : k == 0                    ? "a"
                                                         : "b",
                         picture);
            picture.bytes = after;
        }
        if (isLast && !(f.count == 1 && after == outcome.before[k]))
            printPicture(f.count == 1 ? "after" : "dst", picture);
    }
    if (isNumber) printf(" *     gives  %s\n", outcome.found.c_str());
}

void printFunction(const Function& f)
{
    std::vector<Group> groups;
    std::set<std::string> exceptions;
    Trial best = {};
    bool hasBest = false;
    for (const Depth& from : depths) {
        for (const Depth& to : depths) {
            if (f.count == 1 && from.value != to.value) continue;
            Trial trial;
            if (!findTrial(f, from.value, to.value, trial)) continue;
            const bool isPlain = from.value == PXK_DEPTH_8U;
            if (!hasBest || (isPlain && best.from != PXK_DEPTH_8U) || (isPlain && to.value == PXK_DEPTH_8U))
                best = trial;
            hasBest = true;
            const Pattern pattern = patternOf(f, trial, exceptions);
            auto group =
                std::find_if(groups.begin(), groups.end(), [&](const Group& g) { return g.pattern == pattern; });
            if (group == groups.end()) group = groups.insert(groups.end(), Group { pattern, {}, {}, true });
            if (group->to[from.name].empty()) group->from.push_back(from.name);
            group->to[from.name].push_back(to.name);
            group->isSame = group->isSame && from.value == to.value;
        }
    }
    if (!hasBest) {
        fprintf(stderr, "%s takes nothing\n", f.name);
        exit(1);
    }
    printf("/**\n * @fn %s\n * @par Takes\n", declarations.at(f.name).c_str());
    const bool hasSecond = f.count > 1;
    printf(" * | depth | pixels | planes |%s region | channel of interest | alpha |%s tiles |%s\n",
           hasSecond ? " mixed |" : "", hasSecond ? " mask of first | mask of last |" : " mask |",
           hasSecond ? " in place |" : "");
    printf(" * |%s\n", hasSecond ? "---|---|---|---|---|---|---|---|---|---|---|" : "---|---|---|---|---|---|---|---|");
    for (const Group& group : groups) {
        printf(" * | %s | yes |", labelOf(f, group).c_str());
        for (int axis = 0; axis < axisCount; ++axis) {
            if (!hasSecond && (axis == MIXED || axis == MASK_LAST || axis == IN_PLACE)) continue;
            printf(" %s |", group.pattern[axis].empty() ? "-" : group.pattern[axis].c_str());
        }
        printf("\n");
    }
    for (const std::string& exception : exceptions) printf(" *\n * %s.\n", exception.c_str());
    printf(" *\n * @par Memory\n * Of the call below: %s.\n", memoryText(f, best).c_str());
    printExample(f, best);
    printf(" */\n\n");
}

// ---- bitmaps -------------------------------------------------------------------------------------------------------

struct Kind {
    const char* name;
    uint16_t bits;
    uint32_t compression;
};
const Kind kinds[] = { { "1", 1, PXK_BI_RGB },
                       { "4", 4, PXK_BI_RGB },
                       { "4, run-length coded", 4, PXK_BI_RLE4 },
                       { "8", 8, PXK_BI_RGB },
                       { "8, run-length coded", 8, PXK_BI_RLE8 },
                       { "16", 16, PXK_BI_RGB },
                       { "16, masks", 16, PXK_BI_BITFIELDS },
                       { "24", 24, PXK_BI_RGB },
                       { "32", 32, PXK_BI_RGB },
                       { "32, masks", 32, PXK_BI_BITFIELDS } };
struct Target {
    const char* name;
    int32_t channels, depth;
    const char* sequence;
};
const Target targets[] = { { "gray 1U", 1, PXK_DEPTH_1U, "G" },     { "gray 8U", 1, PXK_DEPTH_8U, "G" },
                           { "gray 16U", 1, PXK_DEPTH_16U, "G" },   { "BGR 8U", 3, PXK_DEPTH_8U, "BGR" },
                           { "BGR 16U", 3, PXK_DEPTH_16U, "BGR" },  { "BGRA 8U", 4, PXK_DEPTH_8U, "BGRA" },
                           { "BGRA 16U", 4, PXK_DEPTH_16U, "BGRA" } };

// A bitmap of 12 by 9 pixels.
struct Bitmap {
    explicit Bitmap(const Kind& kind)
    {
        PxkBitmapInfoHeader header = {};
        header.biSize = sizeof header;
        header.biWidth = 12;
        header.biHeight = 9;
        header.biPlanes = 1;
        header.biBitCount = kind.bits;
        header.biCompression = kind.compression;
        memcpy(words, &header, sizeof header);
        const bool is16 = kind.bits == 16,
                   isRunLength = kind.compression == PXK_BI_RLE4 || kind.compression == PXK_BI_RLE8;
        const uint32_t masks[3] = { is16 ? 0x7C00u : 0xFF0000u, is16 ? 0x3E0u : 0xFF00u, is16 ? 0x1Fu : 0xFFu };
        size_t entries = kind.compression == PXK_BI_BITFIELDS ? 3 : kind.bits <= 8 ? size_t(1) << kind.bits : 0;
        for (size_t k = 0; k < entries; ++k)
            words[10 + k] = entries == 3 ? masks[k] : uint32_t(k * 0x010101 * 255 / (entries - 1));
        bits = words + 10 + entries;
        auto* code = reinterpret_cast<uint8_t*>(bits);
        for (int32_t y = 0; isRunLength && y < 9; ++y) {
            const uint8_t row[4] = { 12, 0, 0, 0 }; // 12 pixels of colour 0, end of row
            memcpy(code + 4 * y, row, sizeof row);
        }
        if (isRunLength) code[37] = 1; // end of bits
    }
    PxkBitmapInfoHeader* header() { return reinterpret_cast<PxkBitmapInfoHeader*>(words); }
    uint32_t words[1000] = {};
    uint32_t* bits;
};

bool isBitmapTaken(const char* name, const Kind& kind, const Target& target, int32_t order)
{
    Bitmap bitmap(kind);
    Picture picture(target.depth, target.channels, order, "RGB", target.sequence, 12, 9);
    PxkImage* image = &picture.image;
    if (target.channels == 4) image->alphaChannel = 4;
    reports = 0;
    pxkSetErrStatus(PXK_StsOk);
    const bool isSep = strstr(name, "Sep") != nullptr, isFrom = strstr(name, "From") != nullptr;
    if (isFrom && isSep) pxkConvertFromDIBSep(bitmap.header(), bitmap.bits, image);
    if (isFrom && !isSep) pxkConvertFromDIB(bitmap.header(), image);
    if (!isFrom && isSep) pxkConvertToDIBSep(image, bitmap.header(), bitmap.bits, PXK_DITHER_NONE, PXK_PALETTE_KEEP);
    if (!isFrom && !isSep) pxkConvertToDIB(image, bitmap.header(), PXK_DITHER_NONE, PXK_PALETTE_KEEP);
    return reports == 0 && pxkGetErrStatus() == PXK_StsOk;
}

void printBitmapFunction(const char* name)
{
    printf("/**\n * @fn %s\n * @par Takes\n * In pixel order and in planes:\n *\n * | bits a pixel |",
           declarations.at(name).c_str());
    for (const Target& target : targets) printf(" %s |", target.name);
    printf("\n * |---|---|---|---|---|---|---|---|\n");
    for (const Kind& kind : kinds) {
        printf(" * | %s |", kind.name);
        for (const Target& target : targets) {
            const bool inPixels = isBitmapTaken(name, kind, target, 0), inPlanes = isBitmapTaken(name, kind, target, 1);
            printf(" %s |", inPixels && inPlanes ? "yes" : inPixels ? "pixels" : inPlanes ? "planes" : "no");
        }
        printf("\n");
    }
    printf(" */\n\n");
}

void printTranslation()
{
    printf("/**\n * @fn %s\n * @par Gives\n * With a gray ramp as table below 16 bits:\n *\n"
           " * | bits a pixel | channels | depth | order | pixels |\n * |---|---|---|---|---|\n",
           declarations.at("pxkTranslateDIB").c_str());
    for (const Kind& kind : kinds) {
        Bitmap bitmap(kind);
        int32_t isClone = 0;
        pxkSetErrStatus(PXK_StsOk);
        PxkImage* image = pxkTranslateDIB(bitmap.header(), &isClone);
        if (image == nullptr) continue;
        printf(" * | %s | %d, %.4s | %dU | %s | %s |\n", kind.name, int(image->nChannels), image->channelSeq,
               int(image->depth), image->dataOrder == PXK_DATA_ORDER_PLANE ? "planes" : "pixels",
               isClone != 0 ? "converted" : "the bitmap's own");
        pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
    }
    printf(" */\n\n");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || !readDeclarations(argv[1])) {
        fprintf(stderr, "usage: pxk_tables include/pxk/pxk.h >docs/reference/tables.dox\n");
        return 2;
    }
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkRedirectError(countReport);
    printf("// SPDX-License-Identifier: BSD-2-Clause\n");
    printf("// Made by docs/reference/tables.cpp from calls of the library. Do not edit: run pxk_tables.\n\n");
    std::set<std::string> told;
    for (const Function& f : functions()) {
        printFunction(f);
        told.insert(f.name);
    }
    for (const char* name : { "pxkConvertFromDIB", "pxkConvertFromDIBSep", "pxkConvertToDIB", "pxkConvertToDIBSep" }) {
        printBitmapFunction(name);
        told.insert(name);
    }
    printTranslation();
    told.insert("pxkTranslateDIB");
    // The others have no such table; a section of their own makes them a place to link to.
    for (const auto& [name, declaration] : declarations)
        if (told.insert(name).second)
            printf("/**\n * @fn %s\n * @details See also @ref pxk_rules.\n */\n\n", declaration.c_str());
    return 0;
}
