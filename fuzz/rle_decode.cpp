// SPDX-License-Identifier: BSD-2-Clause
// Any run-length bits, zeros behind them as far as the reference asks for them, at even and odd addresses.
#include "convert/ownrle.h"
#include "fuzzinput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzInput input(data, size);
    fuzzStart();
    PxkBitmapInfoHeader header = {};
    header.biSize = sizeof header;
    header.biPlanes = 1;
    header.biBitCount = FUZZ_BITS;
    header.biCompression = FUZZ_BITS == 8 ? PXK_BI_RLE8 : PXK_BI_RLE4;
    header.biWidth = input.take<uint16_t>() % 600;
    header.biHeight = input.below(40);
    const bool isOdd = input.below(4) == 0;
    FuzzBlock bits((2 * header.biWidth + 2) * (header.biHeight + 1) + 260, isOdd);
    input.take(bits.data, static_cast<size_t>(bits.size));
    const OwnBuffer<uint8_t> block = ownDecompressRLESep(&header, bits.data);
    fuzzExpect((block != nullptr) == (pxkGetErrStatus() == PXK_StsOk));
    return 0;
}
