// SPDX-License-Identifier: BSD-2-Clause
// Any operation on any images: regions that miss them, masks, channels of interest, tiles that are refused, numbers of
// every size. The input chooses the operation, the headers and the arguments.
#include <cmath>
#include <tuple>
#include <type_traits>
#include <vector>

#include "fuzzinput.h"

namespace {

constexpr int32_t mostSide = 40;
constexpr int64_t mostWindow = 4096; // pixels of a window

// ---- images --------------------------------------------------------------------------------------------------------

struct Tile {
    int32_t x;
    int32_t y;
    FuzzBlock block;
    bool isHeld = false;
};

// An image with all that its header points to. Its tiles are blocks of their own; some requests are refused.
struct Picture {
    PxkImage header = {};
    PxkROI region = {};
    PxkTileInfo tiles = {};
    std::unique_ptr<FuzzBlock> pixels;
    std::unique_ptr<Picture> mask;
    std::vector<std::unique_ptr<Tile>> given;
    int32_t untilRefused = -1;
    bool wasRefused = false;

    PxkImage before; // the call
    PxkROI regionBefore;

    bool holdsTile() const
    {
        for (const auto& tile : given)
            if (tile->isHeld) return true;
        return false;
    }
};

Picture* pictureOf(PxkImage* image)
{
    return static_cast<Picture*>(image->userTag);
}

int32_t giveTile(PxkImage* image, int32_t x, int32_t y, int32_t mode)
{
    Picture& picture = *pictureOf(image);
    PxkTileInfo& info = *image->tileInfo;
    if (mode == PXK_TILE_RELEASE) {
        for (const auto& tile : picture.given) {
            if (tile->x != x || tile->y != y || tile->block.data != info.tileData) continue;
            fuzzExpect(tile->isHeld);
            tile->isHeld = false;
            return 0;
        }
        fuzzExpect(false);
    }
    fuzzExpect(mode == PXK_TILE_READ || mode == PXK_TILE_WRITE || mode == (PXK_TILE_READ | PXK_TILE_WRITE));
    fuzzExpect(x >= 0 && y >= 0 && x * info.width < image->width && y * info.height < image->height);
    info.tileData = nullptr;
    if (picture.untilRefused-- == 0) {
        picture.wasRefused = true;
        return 0;
    }
    for (const auto& tile : picture.given) {
        if (tile->x != x || tile->y != y || tile->isHeld) continue;
        tile->isHeld = true;
        info.tileData = tile->block.data;
        return 0;
    }
    PxkImage whole = *image;
    whole.width = info.width;
    whole.height = info.height;
    const FuzzSizes sizes = fuzzSizes(whole);
    picture.given.emplace_back(new Tile { x, y, FuzzBlock(sizes.image), true });
    Tile& tile = *picture.given.back();
    memset(tile.block.data, x * 31 + y * 17, static_cast<size_t>(tile.block.size));
    info.tileData = tile.block.data;
    return 0;
}

int32_t anyNumber(FuzzInput* input)
{
    static const int32_t corners[] = { 0, 1, 2, 255, 256, 32767, 65535, INT32_MAX, INT32_MIN, -1 };
    switch (input->below(4)) {
    case 0: return input->take<int32_t>();
    case 1: return corners[input->below(10)];
    default: return input->take<int8_t>();
    }
}

PxkROI anyRegion(FuzzInput* input, int32_t width, int32_t height)
{
    if (input->below(8) == 0) {
        return { anyNumber(input), anyNumber(input), anyNumber(input), anyNumber(input), anyNumber(input) };
    }
    const int32_t x = input->below(width + 4) - 2, y = input->below(height + 4) - 2;
    return { input->below(3), x, y, input->below(width + 4), input->below(height + 4) };
}

std::unique_ptr<Picture> anyPicture(FuzzInput* input, int32_t width, int32_t height, bool isMask)
{
    std::unique_ptr<Picture> picture(new Picture);
    PxkImage& header = picture->header;
    header = fuzzImage(input, width, height);
    static const int32_t depths[] = { PXK_DEPTH_1U,  PXK_DEPTH_8U,  PXK_DEPTH_8S, PXK_DEPTH_16U,
                                      PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    header.depth = isMask ? PXK_DEPTH_1U : depths[input->below(7)];
    if (header.depth == PXK_DEPTH_1U) {
        header.nChannels = 1;
        header.alphaChannel = 0;
    } else if (input->below(8) == 0) {
        header.alphaChannel = input->below(header.nChannels + 1);
    }
    header.userTag = picture.get();
    for (int32_t& mode : header.borderMode) mode = input->below(4);
    const FuzzSizes sizes = fuzzSizes(header);
    header.widthStep = static_cast<int32_t>(sizes.row);
    header.imageSize = static_cast<int32_t>(sizes.image);
    if (input->below(2) == 0) {
        picture->region = anyRegion(input, width, height);
        header.roi = &picture->region;
    }
    if (!isMask && input->below(4) == 0) {
        picture->tiles = { giveTile, 0, nullptr, 8 << input->below(3), 8 << input->below(3) };
        picture->untilRefused = input->below(16) - 1;
        header.tileInfo = &picture->tiles;
    } else {
        picture->pixels.reset(new FuzzBlock(sizes.image));
        header.imageData = picture->pixels->data;
        uint32_t state = input->take<uint32_t>() | 1;
        for (int64_t i = 0; i < sizes.image; ++i) {
            state = state * 1664525 + 1013904223;
            picture->pixels->data[i] = static_cast<uint8_t>(state >> 24);
        }
    }
    if (!isMask && input->below(4) == 0) {
        picture->mask = anyPicture(input, width, height, true);
        header.maskROI = &picture->mask->header;
    }
    return picture;
}

// ---- arguments -----------------------------------------------------------------------------------------------------

// Images of one size, mostly of one kind, and one of another size.
struct Scene {
    explicit Scene(FuzzInput* input)
        : input(input)
    {
        const int32_t width = 1 + input->below(mostSide), height = 1 + input->below(mostSide);
        const bool areAlike = input->below(4) != 0;
        const FuzzInput first = *input;
        for (auto& picture : pictures) {
            FuzzInput again = first;
            const bool isTurned = input->below(8) == 0;
            picture =
                anyPicture(areAlike ? &again : input, isTurned ? height : width, isTurned ? width : height, false);
        }
    }

    PxkImage* image()
    {
        const int32_t k = input->below(64);
        if (k == 63) return nullptr;
        return &pictures[k < 8 ? k % 4 : used++ % 4]->header;
    }

    double real()
    {
        static const double corners[] = { 0, 1, -1, 0.5, 90, 1e-300, 1e300, 65536, HUGE_VAL, NAN };
        if (input->below(3) == 0) return corners[input->below(10)];
        return input->below(8) == 0 ? input->take<double>() : input->take<int16_t>() / 256.0;
    }

    FuzzInput* input;
    std::unique_ptr<Picture> pictures[4];
    int32_t used = 0;
    double reals[4][12] = {};
    int32_t nReals = 0;
    float floats[64] = {};
    uint8_t pixel[64] = {};
    PxkMomentState moments = {};
};

template <class T> T argument(Scene& scene)
{
    if constexpr (std::is_same<T, PxkImage*>::value) {
        return scene.image();
    } else if constexpr (std::is_same<T, int32_t>::value) {
        return anyNumber(scene.input);
    } else if constexpr (std::is_floating_point<T>::value) {
        return static_cast<T>(scene.real());
    } else if constexpr (std::is_same<T, double(*)[2]>::value || std::is_same<T, double(*)[3]>::value
                         || std::is_same<T, double(*)[4]>::value || std::is_same<T, double*>::value) {
        double* const array = scene.reals[scene.nReals++ % 4];
        for (int32_t i = 0; i < 12; ++i) array[i] = scene.real();
        return reinterpret_cast<T>(array);
    } else if constexpr (std::is_same<T, float*>::value || std::is_same<T, const float*>::value) {
        for (float& value : scene.floats) value = static_cast<float>(scene.real());
        return scene.floats;
    } else if constexpr (std::is_same<T, void*>::value) {
        return scene.pixel;
    } else {
        static_assert(std::is_same<T, PxkMomentState*>::value, "an argument that this file does not know");
        return &scene.moments;
    }
}

template <class Result, class... Parameters> void callWith(Scene& scene, Result (*call)(Parameters...))
{
    // Braces evaluate from left to right.
    const std::tuple<Parameters...> arguments { argument<Parameters>(scene)... };
    std::apply(call, arguments);
}

// ---- calls ---------------------------------------------------------------------------------------------------------

using Call = void (*)(Scene&);

template <auto FUNCTION> void callOf(Scene& scene)
{
    callWith(scene, FUNCTION);
}

int32_t anySide(Scene& scene)
{
    return scene.input->below(12) == 0 ? anyNumber(scene.input) : 1 + scene.input->below(40);
}

// Windows that are worth the time, and any size that is refused or limited.
template <auto FUNCTION> void callWindow(Scene& scene)
{
    PxkImage *const source = scene.image(), *const destination = scene.image();
    const int32_t nCols = anySide(scene), nRows = anySide(scene);
    if (static_cast<int64_t>(nCols) * nRows > mostWindow) return;
    const int32_t anchorX = scene.input->below(16) == 0 ? anyNumber(scene.input) : nCols / 2;
    const int32_t anchorY = scene.input->below(16) == 0 ? anyNumber(scene.input) : nRows / 2;
    FUNCTION(source, destination, nCols, nRows, anchorX, anchorY);
}

template <auto FUNCTION> void callMorphology(Scene& scene)
{
    PxkImage *const source = scene.image(), *const destination = scene.image();
    FUNCTION(source, destination, scene.input->below(8) == 0 ? anyNumber(scene.input) : scene.input->below(20));
}

template <class Kernel, class Value>
Kernel* anyKernel(Scene& scene, Kernel* (*create)(int32_t, int32_t, int32_t, int32_t, const Value*), int32_t nRows)
{
    Value values[81];
    for (Value& value : values) value = argument<Value>(scene);
    const int32_t nCols = 1 + scene.input->below(9);
    return create(nCols, nRows, scene.input->below(nCols), scene.input->below(nRows), values);
}

PxkConvKernel* createInteger(int32_t nCols, int32_t nRows, int32_t anchorX, int32_t anchorY, const int32_t* values)
{
    return pxkCreateConvKernel(nCols, nRows, anchorX, anchorY, values, values[0] & 31);
}

template <auto CREATE, auto DELETE, auto FUNCTION> void callConvolution(Scene& scene)
{
    decltype(anyKernel(scene, CREATE, 1)) kernels[3];
    for (auto& kernel : kernels) kernel = anyKernel(scene, CREATE, 1 + scene.input->below(9));
    PxkImage *const source = scene.image(), *const destination = scene.image();
    const int32_t count = scene.input->below(4);
    FUNCTION(source, destination, kernels, count, anyNumber(scene.input));
    for (auto* kernel : kernels) DELETE(kernel);
}

template <auto CREATE, auto DELETE, auto FUNCTION> void callSeparable(Scene& scene)
{
    auto* const along = anyKernel(scene, CREATE, 1);
    auto* const down = anyKernel(scene, CREATE, 1 + scene.input->below(9));
    PxkImage *const source = scene.image(), *const destination = scene.image();
    FUNCTION(source, destination, scene.input->below(4) == 0 ? nullptr : along,
             scene.input->below(4) == 0 ? nullptr : down);
    DELETE(along);
    DELETE(down);
}

struct Tables {
    explicit Tables(Scene& scene)
    {
        const int32_t num = scene.input->below(16) == 0 ? scene.input->below(3) : 2 + scene.input->below(14);
        for (int32_t k = 0; k < 4; ++k) {
            for (int32_t i = 0; i < 16; ++i) {
                const int32_t step = scene.input->below(8) == 0 ? anyNumber(scene.input) : scene.input->below(64);
                keys[k][i] = static_cast<int32_t>(static_cast<uint32_t>(step) + (i > 0 ? keys[k][i - 1] : 0u));
                values[k][i] = anyNumber(scene.input);
                factors[k][i] = anyNumber(scene.input);
            }
            tables[k] = { num, keys[k], values[k], scene.input->below(4) == 0 ? nullptr : factors[k],
                          scene.input->below(2) };
            pointers[k] = scene.input->below(16) == 0 ? nullptr : &tables[k];
        }
    }

    int32_t keys[4][16], values[4][16], factors[4][16];
    PxkLUT tables[4];
    PxkLUT* pointers[4];
};

void callHistogram(Scene& scene)
{
    Tables tables(scene);
    PxkImage *const source = scene.image(), *const destination = scene.image();
    pxkComputeHisto(source, tables.pointers);
    pxkHistoEqualize(source, destination, tables.pointers);
}

void callStretch(Scene& scene)
{
    Tables tables(scene);
    PxkImage *const source = scene.image(), *const destination = scene.image();
    pxkContrastStretch(source, destination, tables.pointers);
}

void callTwist(Scene& scene)
{
    int32_t data[16];
    for (int32_t& value : data) value = anyNumber(scene.input);
    PxkColorTwist* const twist = pxkCreateColorTwist(data, scene.input->below(36));
    PxkImage *const source = scene.image(), *const destination = scene.image();
    pxkApplyColorTwist(source, destination, twist, anyNumber(scene.input));
    pxkDeleteColorTwist(twist);
}

void callClone(Scene& scene)
{
    pxkDeallocate(pxkCloneImage(scene.image()), PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
}

const Call calls[] = {
    callOf<pxkCopy>,
    callOf<pxkSet>,
    callOf<pxkSetFP>,
    callOf<pxkExchange>,
    callOf<pxkGetPixel>,
    callOf<pxkPutPixel>,
    callClone,
    callOf<pxkAdd>,
    callOf<pxkSubtract>,
    callOf<pxkMultiply>,
    callOf<pxkAnd>,
    callOf<pxkOr>,
    callOf<pxkXor>,
    callOf<pxkAddS>,
    callOf<pxkSubtractS>,
    callOf<pxkMultiplyS>,
    callOf<pxkAndS>,
    callOf<pxkOrS>,
    callOf<pxkXorS>,
    callOf<pxkAddSFP>,
    callOf<pxkSubtractSFP>,
    callOf<pxkMultiplySFP>,
    callOf<pxkLShiftS>,
    callOf<pxkRShiftS>,
    callOf<pxkNot>,
    callOf<pxkAbs>,
    callOf<pxkSquare>,
    callOf<pxkLess>,
    callOf<pxkGreater>,
    callOf<pxkEqual>,
    callOf<pxkLessS>,
    callOf<pxkGreaterS>,
    callOf<pxkEqualS>,
    callOf<pxkLessSFP>,
    callOf<pxkGreaterSFP>,
    callOf<pxkEqualSFP>,
    callOf<pxkEqualFPEps>,
    callOf<pxkEqualSFPEps>,
    callOf<pxkMultiplyScale>,
    callOf<pxkMultiplySScale>,
    callOf<pxkPreMultiplyAlpha>,
    callOf<pxkAlphaComposite>,
    callOf<pxkAlphaCompositeC>,
    callOf<pxkConvert>,
    callOf<pxkScale>,
    callOf<pxkScaleFP>,
    callOf<pxkBitonalToGray>,
    callOf<pxkReduceBits>,
    callConvolution<createInteger, pxkDeleteConvKernel, pxkConvolve2D>,
    callConvolution<pxkCreateConvKernelFP, pxkDeleteConvKernelFP, pxkConvolve2DFP>,
    callSeparable<createInteger, pxkDeleteConvKernel, pxkConvolveSep2D>,
    callSeparable<pxkCreateConvKernelFP, pxkDeleteConvKernelFP, pxkConvolveSep2DFP>,
    callOf<pxkFixedFilter>,
    callWindow<pxkBlur>,
    callWindow<pxkMaxFilter>,
    callWindow<pxkMinFilter>,
    callWindow<pxkMedianFilter>,
    callMorphology<pxkDilate>,
    callMorphology<pxkErode>,
    callMorphology<pxkOpen>,
    callMorphology<pxkClose>,
    callOf<pxkRealFft2D>,
    callOf<pxkCcsFft2D>,
    callOf<pxkMpyRCPack2D>,
    callOf<pxkDCT2D>,
    callOf<pxkZoom>,
    callOf<pxkResize>,
    callOf<pxkDecimate>,
    callOf<pxkDecimateExt>,
    callOf<pxkMirror>,
    callOf<pxkWarpAffine>,
    callOf<pxkWarpBilinear>,
    callOf<pxkWarpBilinearQ>,
    callOf<pxkWarpPerspective>,
    callOf<pxkWarpPerspectiveQ>,
    callOf<pxkRotate>,
    callOf<pxkShear>,
    callOf<pxkGetAffineQuad>,
    callOf<pxkGetAffineBound>,
    callOf<pxkGetAffineTransform>,
    callOf<pxkGetBilinearQuad>,
    callOf<pxkGetBilinearBound>,
    callOf<pxkGetBilinearTransform>,
    callOf<pxkGetPerspectiveQuad>,
    callOf<pxkGetPerspectiveBound>,
    callOf<pxkGetPerspectiveTransform>,
    callOf<pxkGetRotateShift>,
    callOf<pxkRemap>,
    callOf<pxkRGB2HSV>,
    callOf<pxkHSV2RGB>,
    callOf<pxkRGB2HLS>,
    callOf<pxkHLS2RGB>,
    callOf<pxkRGB2XYZ>,
    callOf<pxkXYZ2RGB>,
    callOf<pxkRGB2LUV>,
    callOf<pxkLUV2RGB>,
    callOf<pxkRGB2YUV>,
    callOf<pxkYUV2RGB>,
    callOf<pxkRGB2YCrCb>,
    callOf<pxkYCrCb2RGB>,
    callOf<pxkYCC2RGB>,
    callOf<pxkColorToGray>,
    callOf<pxkGrayToColor>,
    callTwist,
    callOf<pxkColorTwistFP>,
    callHistogram,
    callStretch,
    callOf<pxkThreshold>,
    callOf<pxkMoments>,
    callOf<pxkSpatialMoment>,
    callOf<pxkCentralMoment>,
    callOf<pxkNormalizedCentralMoment>,
    callOf<pxkNorm>,
    callOf<pxkMinMaxFP>,
};

// ---- what holds behind every call ----------------------------------------------------------------------------------

// All but the words of the colour model, which the conversions write.
bool isSameHeader(PxkImage a, PxkImage b)
{
    memcpy(a.colorModel, b.colorModel, sizeof a.colorModel);
    memcpy(a.channelSeq, b.channelSeq, sizeof a.channelSeq);
    return memcmp(&a, &b, sizeof a) == 0;
}

void remember(Picture& picture)
{
    picture.before = picture.header;
    picture.regionBefore = picture.region;
    if (picture.mask != nullptr) remember(*picture.mask);
}

void check(const Picture& picture)
{
    fuzzExpect(isSameHeader(picture.before, picture.header));
    fuzzExpect(memcmp(&picture.regionBefore, &picture.region, sizeof picture.region) == 0);
    if (picture.mask != nullptr) check(*picture.mask);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput input(data, size);
    fuzzStart();
    const Call call = calls[input.take<uint8_t>() % (sizeof calls / sizeof *calls)];
    Scene scene(&input);
    for (auto& picture : scene.pictures) remember(*picture);
    call(scene);
    bool wasRefused = false;
    for (auto& picture : scene.pictures) wasRefused = wasRefused || picture->wasRefused;
    for (auto& picture : scene.pictures) {
        check(*picture);
        fuzzExpect(wasRefused || !picture->holdsTile());
    }
    return 0;
}
