// SPDX-License-Identifier: BSD-2-Clause
// Any rows, coded in place; what is kept must decode to the same pixels.
#include "convert/ownrle.h"
#include "fuzzinput.h"

static int32_t pixelAt(const uint8_t* row, int32_t x)
{
    return FUZZ_BITS == 8 ? row[x] : row[x / 2] >> (x % 2 == 0 ? 4 : 0) & 15;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput input(data, size);
    fuzzStart();
    PxkBitmapInfoHeader header = {};
    header.biSize = sizeof header;
    header.biPlanes = 1;
    header.biBitCount = FUZZ_BITS;
    header.biCompression = FUZZ_BITS == 8 ? PXK_BI_RLE8 : PXK_BI_RLE4;
    header.biWidth = input.take<uint16_t>() % 600 + 1;
    header.biHeight = input.below(16) + 1;
    const int32_t step = (header.biWidth * FUZZ_BITS + 31) / 32 * 4;
    FuzzBlock bits(static_cast<int64_t>(step) * header.biHeight), before(bits.size);
    input.take(bits.data, static_cast<size_t>(bits.size));
    memcpy(before.data, bits.data, static_cast<size_t>(bits.size));
    fuzzExpect(ownCompressRLESep(&header, bits.data) == PXK_StsOk);
    if (header.biCompression == PXK_BI_RGB) {
        fuzzExpect(memcmp(before.data, bits.data, static_cast<size_t>(bits.size)) == 0);
        return 0;
    }
    // Only the code itself is there for the decoder.
    FuzzBlock code(header.biSizeImage);
    memcpy(code.data, bits.data, header.biSizeImage);
    const OwnBuffer<uint8_t> block = ownDecompressRLESep(&header, code.data);
    fuzzExpect(block != nullptr);
    for (int32_t y = 0; y < header.biHeight; ++y)
        for (int32_t x = 0; x < header.biWidth; ++x)
            fuzzExpect(pixelAt(block.get() + y * step, x) == pixelAt(before.data + y * step, x));
    return 0;
}
