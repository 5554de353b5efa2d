/* SPDX-License-Identifier: BSD-2-Clause */
// Bitmap: header, colour table and bits in guarded memory, with access to single pixels that shares no code with the
// library.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "picture.h"

inline PxkBitmapInfoHeader bitmapHeader(int32_t width, int32_t height, int32_t bits, uint32_t compression = 0,
                                        uint32_t colors = 0)
{
    PxkBitmapInfoHeader header = {};
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<uint16_t>(bits);
    header.biCompression = compression;
    header.biSizeImage = 0xABCD;
    header.biClrUsed = colors;
    return header;
}

class Bitmap {
public:
    // In one block, or with the bits in a block of their own. The odd address is that of the header, or of the bits.
    // Filled with random bytes; `room` is the table that there is room for, at least the declared one.
    Bitmap(const PxkBitmapInfoHeader& header, bool isSep, Random& random, bool isOdd = false, int32_t room = 0)
        : isSep(isSep)
        , odd(isOdd ? 1 : 0)
    {
        const int32_t words = std::max(room, tableWords(header));
        const size_t bytes = static_cast<size_t>(rowBytes(header)) * std::abs(header.biHeight) + odd;
        blocks.push_back(std::make_shared<Block>(40 + 4 * words + (isSep ? 0 : bytes)));
        if (isSep) blocks.push_back(std::make_shared<Block>(bytes));
        for (const auto& block : blocks)
            for (size_t i = 0; i < block->size; ++i) block->data[i] = static_cast<uint8_t>(random.next());
        setHeader(header);
        for (int32_t i = 0; i < words; ++i) { // the same numbers, whichever byte a processor stores first
            setWord(i, lowFirst(start() + 40 + 4 * i));
        }
    }

    std::shared_ptr<Bitmap> copy() const
    {
        auto other = std::make_shared<Bitmap>(*this);
        for (auto& block : other->blocks) {
            const auto old = block;
            block = std::make_shared<Block>(old->size);
            memcpy(block->data, old->data, old->size);
        }
        return other;
    }

    static int32_t rowBytes(const PxkBitmapInfoHeader& h) { return (h.biWidth * h.biBitCount + 31) / 32 * 4; }
    static int32_t tableWords(const PxkBitmapInfoHeader& h)
    {
        if (h.biBitCount <= 8) return h.biClrUsed != 0 ? static_cast<int32_t>(h.biClrUsed) : 1 << h.biBitCount;
        return h.biBitCount != 24 && h.biCompression == 3 ? 3 : 0;
    }

    PxkBitmapInfoHeader* dib() const { return reinterpret_cast<PxkBitmapInfoHeader*>(start()); }
    PxkBitmapInfoHeader header() const
    {
        PxkBitmapInfoHeader h;
        memcpy(&h, start(), 40);
        return h;
    }
    void setHeader(const PxkBitmapInfoHeader& h) { memcpy(start(), &h, 40); }
    static uint32_t lowFirst(const uint8_t* b) { return b[0] | b[1] << 8 | b[2] << 16 | uint32_t(b[3]) << 24; }
    uint32_t word(int32_t i) const // of the table, whose entries are bytes, or of the masks, which are numbers
    {
        if (header().biBitCount <= 8) return lowFirst(start() + 40 + 4 * i);
        uint32_t w;
        memcpy(&w, start() + 40 + 4 * i, 4);
        return w;
    }
    void setWord(int32_t i, uint32_t w)
    {
        uint8_t* const at = start() + 40 + 4 * i;
        if (header().biBitCount > 8) {
            memcpy(at, &w, 4);
        } else {
            for (int32_t k = 0; k < 4; ++k) at[k] = static_cast<uint8_t>(w >> 8 * k);
        }
    }
    uint8_t* bits() const { return isSep ? blocks[1]->data + odd : start() + 40 + 4 * tableWords(header()); }
    uint8_t* storedRow(int32_t y) const { return bits() + y * rowBytes(header()); }
    uint8_t* row(int32_t yFromTop) const
    {
        const int32_t height = header().biHeight;
        return storedRow(height > 0 ? height - 1 - yFromTop : yFromTop);
    }

    // The bits of a pixel as a number: high bits first below a byte, low byte first above.
    uint32_t pixel(int32_t x, int32_t yFromTop) const
    {
        const int32_t n = header().biBitCount;
        const uint8_t* const r = row(yFromTop);
        if (n < 8) return r[x * n / 8] >> (8 - n - x * n % 8) & ((1u << n) - 1);
        uint32_t value = 0;
        for (int32_t i = n / 8; i-- > 0;) value = value << 8 | r[x * n / 8 + i];
        return value;
    }
    void setPixel(int32_t x, int32_t yFromTop, uint32_t value)
    {
        const int32_t n = header().biBitCount;
        uint8_t* const r = row(yFromTop);
        if (n < 8) {
            const int32_t shift = 8 - n - x * n % 8;
            uint8_t& byte = r[x * n / 8];
            byte = static_cast<uint8_t>((byte & ~(((1u << n) - 1) << shift)) | (value & ((1u << n) - 1)) << shift);
            return;
        }
        for (int32_t i = 0; i < n / 8; ++i) r[x * n / 8 + i] = static_cast<uint8_t>(value >> 8 * i);
    }

    // Every byte is the same, padding included, and no guard is touched.
    ::testing::AssertionResult sameAs(const Bitmap& other) const
    {
        for (size_t k = 0; k < blocks.size(); ++k) {
            const Block &a = *blocks[k], &b = *other.blocks[k];
            const size_t at = size_t(std::mismatch(a.data, a.data + a.size, b.data).first - a.data);
            if (at < a.size) return ::testing::AssertionFailure() << "block " << k << " differs at byte " << at;
            if (!a.guardsIntact()) return ::testing::AssertionFailure() << "guards";
        }
        return ::testing::AssertionSuccess();
    }

    bool isSep;

private:
    uint8_t* start() const { return blocks[0]->data + (isSep ? 0 : odd); }
    size_t odd;
    std::vector<std::shared_ptr<Block>> blocks;
};

// The form that the bitmap is in; the status of the plain form is the stored one.
inline int32_t convertFrom(const Bitmap& bitmap, PxkImage* image)
{
    if (bitmap.isSep) return pxkConvertFromDIBSep(bitmap.dib(), bitmap.bits(), image);
    pxkConvertFromDIB(bitmap.dib(), image);
    return pxkGetErrStatus();
}

inline int32_t convertTo(PxkImage* image, const Bitmap& bitmap, int32_t dither = 1, int32_t palette = 0)
{
    if (bitmap.isSep) return pxkConvertToDIBSep(image, bitmap.dib(), bitmap.bits(), dither, palette);
    pxkConvertToDIB(image, bitmap.dib(), dither, palette);
    return pxkGetErrStatus();
}
