/* SPDX-License-Identifier: BSD-2-Clause */
// What the fuzz targets share: reading the input piece by piece, images and bitmaps made of it, and a quiet library.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <pxk/pxk.h>

// A fault that no sanitizer sees.
inline void fuzzExpect(bool isGood)
{
    if (!isGood) __builtin_trap();
}

// Reads a byte that no result depends on.
inline void fuzzTouch(volatile uint8_t& byte)
{
    static_cast<void>(static_cast<uint8_t>(byte));
}

inline int32_t fuzzHandler(int32_t status, const char*, const char*, const char*, int32_t)
{
    return status;
}

// Each input starts with status 0. Reports go nowhere.
inline void fuzzStart()
{
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkRedirectError(fuzzHandler);
    pxkSetErrStatus(PXK_StsOk);
}

constexpr int64_t fuzzMostBytes = 1 << 20; // of one block

class FuzzInput {
public:
    FuzzInput(const uint8_t* data, size_t size)
        : data(data)
        , left(size)
    {
    }

    // What the input no longer has is 0.
    void take(void* target, size_t count)
    {
        const size_t has = count < left ? count : left;
        memset(target, 0, count);
        if (has != 0) memcpy(target, data, has);
        data += has;
        left -= has;
    }
    template <class T> T take()
    {
        T value;
        take(&value, sizeof value);
        return value;
    }
    int32_t below(int32_t limit) { return take<uint8_t>() % limit; }

    const uint8_t* data;
    size_t left;
};

// Exactly so many bytes, so that every step outside is seen. `isOdd`: at an odd address.
class FuzzBlock {
public:
    explicit FuzzBlock(int64_t size, bool isOdd = false)
        : block(static_cast<uint8_t*>(calloc(static_cast<size_t>(size) + (isOdd ? 1 : 0), 1)))
        , data(block + (isOdd ? 1 : 0))
        , size(size)
    {
    }
    ~FuzzBlock() { free(block); }
    FuzzBlock(const FuzzBlock&) = delete;
    FuzzBlock& operator=(const FuzzBlock&) = delete;

private:
    uint8_t* const block;

public:
    uint8_t* const data;
    const int64_t size;
};

// ---- bitmaps -------------------------------------------------------------------------------------------------------

inline int64_t fuzzTableBytes(const PxkBitmapInfoHeader& h)
{
    if (h.biBitCount == 24) return 0;
    if (h.biBitCount == 16 || h.biBitCount == 32) return h.biCompression == PXK_BI_BITFIELDS ? 12 : 0;
    if (h.biClrUsed != 0 || h.biBitCount > 8) return 4 * static_cast<int64_t>(h.biClrUsed);
    return INT64_C(4) << h.biBitCount;
}

// Bytes that the caller of a conversion must have: rows, or what the reference asks for run-length bits. -1: too many.
inline int64_t fuzzBitsBytes(const PxkBitmapInfoHeader& h)
{
    const int64_t width = h.biWidth < 0 ? 0 : h.biWidth, height = llabs(static_cast<int64_t>(h.biHeight));
    if (width * height > fuzzMostBytes) return -1;
    const int64_t rows = (width * h.biBitCount + 31) / 32 * 4 * height;
    const int64_t code = (2 * width + 2) * (height + 1) + 260;
    const bool isCoded = h.biCompression == PXK_BI_RLE8 || h.biCompression == PXK_BI_RLE4;
    const int64_t bytes = isCoded && code > rows ? code : rows;
    return bytes <= fuzzMostBytes ? bytes : -1;
}

// Mostly sizes that are worth the time; the other fields as they come.
inline PxkBitmapInfoHeader fuzzHeader(FuzzInput* input)
{
    const int32_t kind = input->below(8);
    PxkBitmapInfoHeader h = input->take<PxkBitmapInfoHeader>();
    if (kind == 0) return h;
    const uint16_t bits[] = { 1, 4, 8, 16, 24, 32, 4, 8 };
    h.biSize = 40;
    h.biPlanes = 1;
    h.biWidth &= 127;
    h.biHeight = h.biHeight % 32;
    h.biBitCount = bits[h.biBitCount % 8];
    h.biCompression &= 3;
    h.biClrUsed &= kind == 1 ? 0x3FF : 0xFF;
    return h;
}

// ---- images --------------------------------------------------------------------------------------------------------

// Bytes of a row and of all rows.
struct FuzzSizes {
    int64_t row;
    int64_t image;
};

inline FuzzSizes fuzzSizes(const PxkImage& image)
{
    const bool isPixelOrder = image.dataOrder == PXK_DATA_ORDER_PIXEL;
    const int64_t samples = static_cast<int64_t>(image.width) * (isPixelOrder ? image.nChannels : 1);
    const int64_t row = ((samples * (image.depth & 63) + 7) / 8 + image.align - 1) / image.align * image.align;
    return { row, row * image.height * (isPixelOrder ? 1 : image.nChannels) };
}

inline PxkImage fuzzImage(FuzzInput* input, int32_t width, int32_t height)
{
    static const char words[][5] = { "G\0\0", "GRAY", "BGR", "BGRA", "RGB", "RGBA", "XYZ", "BGR" };
    static const int32_t depths[] = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U,
                                      PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_32F };
    static const int32_t channels[] = { 1, 3, 4, 3, 1, 2 };
    PxkImage image = {};
    image.headerSize = sizeof image;
    image.depth = depths[input->below(6)];
    image.nChannels = image.depth == PXK_DEPTH_1U ? 1 : channels[input->below(6)];
    image.alphaChannel = image.nChannels == 4 ? 4 : 0;
    memcpy(image.colorModel, image.nChannels == 1 ? "GRAY" : "RGB", 4);
    memcpy(image.channelSeq, words[input->below(8)], 4);
    image.dataOrder = input->below(2);
    image.origin = input->below(2);
    image.align = 4 << input->below(4);
    image.width = width;
    image.height = height;
    const FuzzSizes sizes = fuzzSizes(image);
    image.widthStep = sizes.row <= INT32_MAX ? static_cast<int32_t>(sizes.row) : INT32_MAX;
    image.imageSize = sizes.image <= INT32_MAX ? static_cast<int32_t>(sizes.image) : INT32_MAX;
    return image;
}
