// SPDX-License-Identifier: BSD-2-Clause
// Any image to a bitmap with any header and table, by both forms, which must agree.
#include "fuzzinput.h"

// The code, or the rows without the part of a byte and the padding behind them, which keep what was there.
static bool areSameBits(const PxkBitmapInfoHeader& h, const uint8_t* a, const uint8_t* b)
{
    if (h.biCompression == PXK_BI_RLE8 || h.biCompression == PXK_BI_RLE4) return memcmp(a, b, h.biSizeImage) == 0;
    const int64_t pixelBits = static_cast<int64_t>(h.biWidth) * h.biBitCount, step = (pixelBits + 31) / 32 * 4;
    for (int64_t y = 0; y < llabs(static_cast<int64_t>(h.biHeight)); ++y)
        if (memcmp(a + y * step, b + y * step, static_cast<size_t>(pixelBits / 8)) != 0) return false;
    return true;
}

static void convert(PxkImage* image, const PxkBitmapInfoHeader& header, FuzzInput input, int32_t dither,
                    int32_t palette)
{
    // Room for a full table; the plain form's bits move when the median cut makes a shorter one.
    const int64_t table = fuzzTableBytes(header) > 1024 ? fuzzTableBytes(header) : 1024, bits = fuzzBitsBytes(header);
    const int64_t head = static_cast<int64_t>(sizeof header) + table;
    FuzzBlock block(head + bits), apartHead(head), apartBits(bits);
    memcpy(block.data, &header, sizeof header);
    input.take(block.data + sizeof header, static_cast<size_t>(table));
    memcpy(apartHead.data, block.data, static_cast<size_t>(head));
    PxkBitmapInfoHeader* const dib = reinterpret_cast<PxkBitmapInfoHeader*>(block.data);
    PxkBitmapInfoHeader* const apart = reinterpret_cast<PxkBitmapInfoHeader*>(apartHead.data);
    pxkConvertToDIB(image, dib, dither, palette);
    const int32_t status = pxkGetErrStatus();
    pxkSetErrStatus(PXK_StsOk);
    const int32_t result = pxkConvertToDIBSep(image, apart, apartBits.data, dither, palette);
    fuzzExpect((status == PXK_StsOk) == (result == PXK_StsOk));
    if (result != PXK_StsOk) return;
    fuzzExpect(memcmp(dib, apart, sizeof header) == 0);
    const size_t written = static_cast<size_t>(sizeof header + fuzzTableBytes(*dib));
    fuzzExpect(memcmp(block.data, apartHead.data, written) == 0);
    fuzzExpect(areSameBits(*dib, block.data + written, apartBits.data));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput input(data, size);
    fuzzStart();
    PxkBitmapInfoHeader header = fuzzHeader(&input);
    if (fuzzTableBytes(header) > fuzzMostBytes || fuzzBitsBytes(header) < 0) return 0;
    const int32_t height = static_cast<int32_t>(llabs(static_cast<int64_t>(header.biHeight)));
    PxkImage image = fuzzImage(&input, header.biWidth < 1 ? 1 : header.biWidth, height < 1 ? 1 : height);
    const int32_t dither = input.below(2) == 0 ? 1 : 1 << input.below(6), palette = input.below(4);
    if (image.imageSize <= 0 || image.imageSize > fuzzMostBytes) return 0;
    FuzzBlock pixels(image.imageSize);
    FuzzInput table = input;
    input.take(pixels.data, static_cast<size_t>(pixels.size));
    image.imageData = pixels.data;
    convert(&image, header, table, dither, palette);
    return 0;
}
