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
    {
        const int32_t words = std::max(room, tableWords(header)), odd = isOdd ? 1 : 0;
        const size_t bytes = static_cast<size_t>(rowBytes(header)) * std::abs(header.biHeight);
        head = std::make_shared<Block>(40 + 4 * words + (isSep ? 0 : odd + bytes));
        if (isSep) body = std::make_shared<Block>(odd + bytes);
        for (const auto& block : { head, body })
            for (size_t i = 0; block && i < block->size; ++i) block->data[i] = static_cast<uint8_t>(random.next());
        start = head->data + (isSep ? 0 : odd);
        apart = isSep ? body->data + odd : nullptr;
        memcpy(start, &header, 40);
        for (int32_t i = 0; i < words; ++i) { // the same numbers, whichever byte a processor stores first
            setWord(i, lowFirst(start + 40 + 4 * i));
        }
    }

    std::shared_ptr<Bitmap> copy() const
    {
        auto other = std::make_shared<Bitmap>(*this);
        for (auto* block : { &other->head, &other->body }) {
            if (!*block) continue;
            auto made = std::make_shared<Block>((*block)->size);
            memcpy(made->data, (*block)->data, made->size);
            *block = made;
        }
        other->start = other->head->data + (start - head->data);
        if (isSep) other->apart = other->body->data + (apart - body->data);
        return other;
    }

    static int32_t rowBytes(const PxkBitmapInfoHeader& h) { return (h.biWidth * h.biBitCount + 31) / 32 * 4; }
    static int32_t tableWords(const PxkBitmapInfoHeader& h)
    {
        if (h.biBitCount <= 8) return h.biClrUsed != 0 ? static_cast<int32_t>(h.biClrUsed) : 1 << h.biBitCount;
        return h.biBitCount != 24 && h.biCompression == 3 ? 3 : 0;
    }

    PxkBitmapInfoHeader* dib() const { return reinterpret_cast<PxkBitmapInfoHeader*>(start); }
    PxkBitmapInfoHeader header() const
    {
        PxkBitmapInfoHeader h;
        memcpy(&h, start, 40);
        return h;
    }
    void setHeader(const PxkBitmapInfoHeader& h) { memcpy(start, &h, 40); }
    static uint32_t lowFirst(const uint8_t* b) { return b[0] | b[1] << 8 | b[2] << 16 | uint32_t(b[3]) << 24; }
    uint32_t word(int32_t i) const // of the table, whose entries are bytes, or of the masks, which are numbers
    {
        if (header().biBitCount <= 8) return lowFirst(start + 40 + 4 * i);
        uint32_t w;
        memcpy(&w, start + 40 + 4 * i, 4);
        return w;
    }
    void setWord(int32_t i, uint32_t w)
    {
        uint8_t* const at = start + 40 + 4 * i;
        if (header().biBitCount > 8) {
            memcpy(at, &w, 4);
        } else {
            for (int32_t k = 0; k < 4; ++k) at[k] = static_cast<uint8_t>(w >> 8 * k);
        }
    }
    uint8_t* bits() const { return isSep ? apart : start + 40 + 4 * tableWords(header()); }
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
        const auto differ = [](const char* what, size_t at) {
            return ::testing::AssertionFailure() << what << " differs at byte " << at;
        };
        for (size_t i = 0; i < head->size; ++i)
            if (head->data[i] != other.head->data[i]) return differ("header, table or bits", i);
        for (size_t i = 0; isSep && i < body->size; ++i)
            if (body->data[i] != other.body->data[i]) return differ("separate bits", i);
        if (!head->guardsIntact() || (isSep && !body->guardsIntact())) return ::testing::AssertionFailure() << "guards";
        return ::testing::AssertionSuccess();
    }

    bool isSep;

private:
    std::shared_ptr<Block> head, body;
    uint8_t* start;
    uint8_t* apart;
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
