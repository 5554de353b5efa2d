// SPDX-License-Identifier: BSD-2-Clause
#include "ownmask.h"

#include <algorithm>
#include <cstring>

#include "ownbits.h"
#include "ownivdep.h"

// ---- combining -----------------------------------------------------------------------------------------------------

static void ownAndRow(const uint8_t* from, int32_t fromBit, uint8_t* to, ptrdiff_t n)
{
    uint8_t aligned[2048];
    while (n > 0) {
        const ptrdiff_t count = std::min<ptrdiff_t>(n, 8 * sizeof aligned);
        const ptrdiff_t bytes = ownBytesOfBits(0, count);
        ownAlignBits(from, fromBit, aligned, 0, count);
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < bytes; ++i) to[i] &= aligned[i];
        from += sizeof aligned;
        to += bytes;
        n -= count;
    }
}

OwnMasks ownCombineMasks(std::initializer_list<const PxkImage*> masks, OwnSize size, OwnMask& result)
{
    const PxkImage* distinct[4];
    int32_t count = 0;
    for (const PxkImage* mask : masks) {
        if (mask == nullptr || std::find(distinct, distinct + count, mask) != distinct + count) continue;
        distinct[count++] = mask;
    }
    result.isGiven = count > 0;
    if (count == 0) return OwnMasks::READY;
    result.bits = ownMaskStart(distinct[0]);
    if (count == 1) return OwnMasks::READY;
    const ptrdiff_t rowBytes = (ownBytesOfBits(0, size.width) + 7) & ~static_cast<ptrdiff_t>(7);
    result.combined = ownBuffer<uint8_t>(static_cast<int64_t>(rowBytes) * size.height);
    if (result.combined == nullptr) return OwnMasks::NO_MEMORY;
    result.bits = { result.combined.get(), rowBytes, 0 };
    for (int32_t k = 0; k < count; ++k) {
        const OwnBits from = ownMaskStart(distinct[k]);
        for (int32_t y = 0; y < size.height; ++y) {
            uint8_t* const to = result.bits.first + y * rowBytes;
            const uint8_t* const source = from.first + y * from.rowStep;
            if (k == 0) {
                ownAlignBits(source, from.bit, to, 0, size.width);
            } else {
                ownAndRow(source, from.bit, to, size.width);
            }
        }
    }
    return OwnMasks::COMBINED;
}

// ---- stretches -----------------------------------------------------------------------------------------------------

static OwnMaskStretch::Kind ownKindOfBits(const OwnBits& row, ptrdiff_t start, int32_t n)
{
    const ptrdiff_t position = row.bit + start;
    const uint64_t word = ownLoadBits(row.first + position / 8, static_cast<int32_t>(position % 8), n);
    if (word == 0) return OwnMaskStretch::Kind::NONE;
    const uint64_t all = n == 64 ? UINT64_MAX : ~(UINT64_MAX >> n);
    return word == all ? OwnMaskStretch::Kind::ALL : OwnMaskStretch::Kind::MIXED;
}

OwnMaskStretch ownNextMaskStretch(const OwnBits& row, ptrdiff_t start, ptrdiff_t n, ptrdiff_t mostMixed)
{
    const auto wordAt = [n](ptrdiff_t position) { return static_cast<int32_t>(std::min<ptrdiff_t>(64, n - position)); };
    OwnMaskStretch stretch = { ownKindOfBits(row, start, wordAt(start)), wordAt(start) };
    while (start + stretch.length < n) {
        const ptrdiff_t next = start + stretch.length;
        const int32_t count = wordAt(next);
        if (stretch.kind == OwnMaskStretch::Kind::MIXED && stretch.length + count > mostMixed) break;
        if (ownKindOfBits(row, next, count) != stretch.kind) break;
        stretch.length += count;
    }
    if (stretch.kind == OwnMaskStretch::Kind::MIXED) stretch.length = std::min(stretch.length, mostMixed);
    return stretch;
}

// ---- bytes ---------------------------------------------------------------------------------------------------------

template <int32_t PIXEL_BYTES>
static void ownSpreadMask(const uint8_t* pixels, ptrdiff_t n, int32_t selectedBytes, uint8_t* to)
{
    uint8_t pattern[PIXEL_BYTES];
    for (int32_t j = 0; j < PIXEL_BYTES; ++j) pattern[j] = j < selectedBytes ? 0xFF : 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        for (int32_t j = 0; j < PIXEL_BYTES; ++j) to[i * PIXEL_BYTES + j] = pixels[i] & pattern[j];
    }
}

static void ownSpreadMaskBlock(const uint8_t* pixels, ptrdiff_t n, OwnPixelBytes pixel, uint8_t* to)
{
    switch (pixel.pixelBytes) {
    case 2: return ownSpreadMask<2>(pixels, n, pixel.selectedBytes, to);
    case 3: return ownSpreadMask<3>(pixels, n, pixel.selectedBytes, to);
    case 4: return ownSpreadMask<4>(pixels, n, pixel.selectedBytes, to);
    case 6: return ownSpreadMask<6>(pixels, n, pixel.selectedBytes, to);
    case 8: return ownSpreadMask<8>(pixels, n, pixel.selectedBytes, to);
    case 12: return ownSpreadMask<12>(pixels, n, pixel.selectedBytes, to);
    case 16: return ownSpreadMask<16>(pixels, n, pixel.selectedBytes, to);
    default:
        for (ptrdiff_t i = 0; i < n; ++i) {
            for (int32_t j = 0; j < pixel.pixelBytes; ++j) {
                to[i * pixel.pixelBytes + j] = j < pixel.selectedBytes ? pixels[i] : uint8_t { 0 };
            }
        }
    }
}

void ownMaskToBytes(const OwnBits* row, ptrdiff_t start, ptrdiff_t n, OwnPixelBytes pixel, uint8_t* to)
{
    uint8_t pixels[512];
    while (n > 0) {
        const ptrdiff_t count = std::min<ptrdiff_t>(n, sizeof pixels);
        uint8_t* const bytes = pixel.pixelBytes == 1 ? to : pixels;
        if (row != nullptr) {
            const ptrdiff_t position = row->bit + start;
            ownExpandBits(row->first + position / 8, static_cast<int32_t>(position % 8), bytes, count, 0xFF);
        } else {
            memset(bytes, 0xFF, static_cast<size_t>(count));
        }
        if (pixel.pixelBytes != 1) ownSpreadMaskBlock(pixels, count, pixel, to);
        to += count * pixel.pixelBytes;
        start += count;
        n -= count;
    }
}
