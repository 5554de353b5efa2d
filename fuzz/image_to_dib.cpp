// Any image to a bitmap with any header and table, by both forms, which must agree.
#include "fuzzinput.h"

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
    fuzzExpect(memcmp(block.data + written, apartBits.data, static_cast<size_t>(bits)) == 0);
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
