// SPDX-License-Identifier: BSD-2-Clause
#include "owndib.h"

#include <cstring>

PxkBitmapInfoHeader ownLoadDib(const PxkBitmapInfoHeader* dib)
{
    PxkBitmapInfoHeader header;
    memcpy(static_cast<void*>(&header), static_cast<const void*>(dib), sizeof header);
    return header;
}

void ownStoreDib(PxkBitmapInfoHeader* dib, const PxkBitmapInfoHeader& header)
{
    memcpy(static_cast<void*>(dib), static_cast<const void*>(&header), sizeof header);
}

int64_t ownDibColorCount(const PxkBitmapInfoHeader& header)
{
    switch (header.biBitCount) {
    case 1:
    case 4:
    case 8: return header.biClrUsed != 0 ? header.biClrUsed : INT64_C(1) << header.biBitCount;
    case 16:
    case 32:
        if (header.biCompression == PXK_BI_RGB) return 0;
        return header.biCompression == PXK_BI_BITFIELDS ? 3 : header.biClrUsed;
    case 24: return 0;
    default: return header.biClrUsed;
    }
}

int64_t ownDibRowBytes(int64_t width, int32_t bits, int32_t align)
{
    const int64_t alignBits = 8 * static_cast<int64_t>(align);
    return ((width * bits + alignBits - 1) & -alignBits) >> 3;
}

uint8_t* ownDibBits(PxkBitmapInfoHeader* dib)
{
    const int64_t tableBytes = 4 * ownDibColorCount(ownLoadDib(dib));
    return tableBytes <= INT32_MAX ? ownDibTable(dib) + static_cast<ptrdiff_t>(tableBytes) : nullptr;
}

bool ownDibIsGrayRamp(PxkBitmapInfoHeader* dib)
{
    const int64_t count = ownDibColorCount(ownLoadDib(dib));
    if (count < 2) return false;
    const uint8_t* entry = ownDibTable(dib);
    for (int64_t i = 0; i < count; ++i, entry += 4) {
        const int64_t gray = i * 255 / (count - 1);
        if (entry[0] != gray || entry[1] != gray || entry[2] != gray) return false;
    }
    return true;
}

// ---- fixed tables --------------------------------------------------------------------------------------------------

static void ownStoreColor(uint8_t* table, int32_t index, uint32_t rgb)
{
    uint8_t* const entry = table + 4 * index;
    entry[0] = static_cast<uint8_t>(rgb);
    entry[1] = static_cast<uint8_t>(rgb >> 8);
    entry[2] = static_cast<uint8_t>(rgb >> 16);
    entry[3] = 0;
}

// Three bits of red, three of green, two of blue; the topmost level of each is full.
static uint32_t ownColor332(uint32_t index)
{
    const uint32_t red = index >> 5, green = index >> 2 & 7, blue = index & 3;
    const auto level = [](uint32_t step, uint32_t last, uint32_t size) { return step == last ? 255 : step * size; };
    return level(red, 7, 32) << 16 | level(green, 7, 32) << 8 | level(blue, 3, 64);
}

void ownSetStandardPalette(PxkBitmapInfoHeader* dib, bool isGray)
{
    static constexpr uint32_t systemColors[16] = { 0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                                   0x008080, 0x808080, 0xC0C0C0, 0xFF0000, 0x00FF00, 0xFFFF00,
                                                   0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF };
    const int64_t count = ownDibColorCount(ownLoadDib(dib));
    if (count != 2 && count != 16 && count != 256) return;
    const uint32_t grayStep = 0x010101u * (255 / (static_cast<uint32_t>(count) - 1));
    const bool isRamp = isGray || count == 2;
    uint8_t* const table = ownDibTable(dib);
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t color = isRamp ? i * grayStep : count == 16 ? systemColors[i] : ownColor332(i);
        ownStoreColor(table, static_cast<int32_t>(i), color);
    }
}

// ---- fields --------------------------------------------------------------------------------------------------------

// The first run of ones in a mask. Bits above it do not count, but still pass the mask.
struct OwnFieldStretch {
    int32_t shift;
    int32_t width;
};

static OwnFieldStretch ownMaskRun(uint32_t mask)
{
    const int32_t shift = __builtin_ctz(mask);
    const uint32_t behind = ~(mask >> shift);
    return { shift, behind == 0 ? 32 : __builtin_ctz(behind) };
}

struct OwnFieldMasks {
    uint32_t blue, green, red, alpha;
};

// Alpha is all that lies above the topmost colour field. One that reaches bit 31 leaves a shift of 32, which counts as
// none: alpha is the whole pixel then.
static uint32_t ownAlphaMask(const OwnFieldMasks& masks)
{
    const OwnFieldStretch blue = ownMaskRun(masks.blue), green = ownMaskRun(masks.green), red = ownMaskRun(masks.red);
    OwnFieldStretch top = green.shift > blue.shift ? green : blue;
    if (red.shift > top.shift) top = red;
    const int32_t shift = (top.shift + top.width) & 31;
    return (0xFFFFFFFFu >> shift) << shift;
}

static OwnFieldMasks ownMasks(PxkBitmapInfoHeader* dib, const PxkBitmapInfoHeader& header)
{
    if (header.biCompression != PXK_BI_BITFIELDS) {
        if (header.biBitCount == 16) return { 0x001F, 0x03E0, 0x7C00, 0 };
        return { 0x000000FF, 0x0000FF00, 0x00FF0000, 0xFF000000 };
    }
    uint32_t words[3];
    memcpy(words, ownDibTable(dib), sizeof words);
    if (header.biBitCount == 16) return { words[2] & 0xFFFF, words[1] & 0xFFFF, words[0] & 0xFFFF, 0 };
    OwnFieldMasks masks = { words[2], words[1], words[0], 0 };
    if (masks.blue != 0 && masks.green != 0 && masks.red != 0) masks.alpha = ownAlphaMask(masks);
    return masks;
}

// Calls toField for each channel that there is.
template <class F> static bool ownMakeFields(PxkBitmapInfoHeader* dib, OwnDibFields* fields, F toField)
{
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    const OwnFieldMasks masks = ownMasks(dib, header);
    if (masks.blue == 0 || masks.green == 0 || masks.red == 0) return false;
    *fields = { toField(masks.blue), toField(masks.green), toField(masks.red), {} };
    if (masks.alpha != 0) fields->alpha = toField(masks.alpha);
    return true;
}

bool ownFieldsToBytes(PxkBitmapInfoHeader* dib, OwnDibFields* fields)
{
    return ownMakeFields(dib, fields, [](uint32_t mask) -> OwnDibField {
        const OwnFieldStretch run = ownMaskRun(mask);
        return run.width >= 8 ? OwnDibField { mask, run.shift + run.width - 8, 0 }
                              : OwnDibField { mask, run.shift, 8 - run.width };
    });
}

bool ownFieldsFromBytes(PxkBitmapInfoHeader* dib, OwnDibFields* fields)
{
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    const bool isFitted = header.biBitCount == 16;
    const bool isMade = ownMakeFields(dib, fields, [=](uint32_t mask) -> OwnDibField {
        const OwnFieldStretch run = ownMaskRun(mask);
        if (!isFitted) return { mask, 0, run.shift };
        return run.width >= 8 ? OwnDibField { mask, 0, run.shift + run.width - 8 }
                              : OwnDibField { mask, 8 - run.width, run.shift };
    });
    // The alpha byte of a bitmap without masks stays 0: shifted by 8 it never meets its mask.
    if (isMade && header.biCompression != PXK_BI_BITFIELDS) fields->alpha = { 0xFF000000, 0, 8 };
    return isMade;
}
