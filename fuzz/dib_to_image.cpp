// SPDX-License-Identifier: BSD-2-Clause
// Any header, table and bits to an image: by both forms into an image, which must agree, and by translation.
#include "fuzzinput.h"

// The image has the bitmap's size, or a little more or less.
static int32_t nearBy(int64_t size, int32_t shift)
{
    return static_cast<int32_t>(size + shift < 1 ? 1 : size + shift);
}

static void fillBoth(FuzzInput* input, const PxkBitmapInfoHeader& header, PxkBitmapInfoHeader* dib, FuzzBlock* bits)
{
    const int64_t width = header.biWidth < 0 ? 0 : header.biWidth,
                  height = llabs(static_cast<int64_t>(header.biHeight));
    PxkImage plain = fuzzImage(input, nearBy(width, input->below(3) - 1), nearBy(height, input->below(3) - 1));
    if (plain.imageSize < 0 || plain.imageSize > fuzzMostBytes) return;
    PxkImage sep = plain;
    FuzzBlock plainPixels(plain.imageSize), sepPixels(sep.imageSize);
    plain.imageData = plainPixels.data;
    sep.imageData = sepPixels.data;
    pxkConvertFromDIB(dib, &plain);
    const int32_t plainStatus = pxkGetErrStatus();
    pxkSetErrStatus(PXK_StsOk);
    const int32_t sepStatus = pxkConvertFromDIBSep(dib, bits->data, &sep);
    fuzzExpect((plainStatus == PXK_StsOk) == (sepStatus == PXK_StsOk));
    fuzzExpect((pxkGetErrStatus() == PXK_StsOk) == (sepStatus == PXK_StsOk));
    fuzzExpect(memcmp(plainPixels.data, sepPixels.data, static_cast<size_t>(plain.imageSize)) == 0);
}

static void translate(PxkBitmapInfoHeader* dib)
{
    int32_t isCloned = 0;
    pxkSetErrStatus(PXK_StsOk);
    PxkImage* const image = pxkTranslateDIB(dib, &isCloned);
    if (image == nullptr) return fuzzExpect(pxkGetErrStatus() != PXK_StsOk);
    // Shared bits must lie in the block, too.
    for (int32_t i = 0; i < image->imageSize; ++i) fuzzTouch(static_cast<uint8_t*>(image->imageData)[i]);
    pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput input(data, size);
    fuzzStart();
    const PxkBitmapInfoHeader header = fuzzHeader(&input);
    const int64_t table = fuzzTableBytes(header), bits = fuzzBitsBytes(header);
    if (table > fuzzMostBytes || bits < 0) return 0;
    // Both blocks begin at addresses of one parity: the padding of literals goes by it.
    const bool isOdd = input.below(4) == 0;
    FuzzInput options = input;
    input.take<uint64_t>();
    FuzzBlock block(static_cast<int64_t>(sizeof header) + table + bits, isOdd), apart(bits, isOdd);
    memcpy(block.data, &header, sizeof header);
    input.take(block.data + sizeof header, static_cast<size_t>(table + bits));
    memcpy(apart.data, block.data + sizeof header + table, static_cast<size_t>(bits));
    PxkBitmapInfoHeader* const dib = reinterpret_cast<PxkBitmapInfoHeader*>(block.data);
    fillBoth(&options, header, dib, &apart);
    translate(dib);
    return 0;
}
