/* SPDX-License-Identifier: BSD-2-Clause */
// Model of bitmap interchange: one pixel at a time, one channel at a time.
#pragma once

#include "support/bitmap.h"

namespace model {

struct Color {
    int32_t blue = 0, green = 0, red = 0, alpha = 0;
};

struct Run {
    int32_t shift = 0, width = 0;
};

inline Run runOf(uint32_t mask)
{
    Run run;
    while ((mask >> run.shift & 1) == 0) ++run.shift;
    while (run.shift + run.width < 32 && (mask >> (run.shift + run.width) & 1) != 0) ++run.width;
    return run;
}

struct Masks {
    uint32_t red = 0, green = 0, blue = 0, alpha = 0;
};

inline Masks masksOf(const Bitmap& bitmap)
{
    const PxkBitmapInfoHeader h = bitmap.header();
    if (h.biCompression != 3 && h.biBitCount == 16) return { 0x7C00, 0x03E0, 0x001F, 0 };
    if (h.biCompression != 3) return { 0xFF0000, 0xFF00, 0xFF, 0xFF000000 };
    Masks masks = { bitmap.word(0), bitmap.word(1), bitmap.word(2), 0 };
    if (h.biBitCount == 16) return { masks.red & 0xFFFF, masks.green & 0xFFFF, masks.blue & 0xFFFF, 0 };
    Run top = runOf(masks.blue);
    if (runOf(masks.green).shift > top.shift) top = runOf(masks.green);
    if (runOf(masks.red).shift > top.shift) top = runOf(masks.red);
    const int32_t n = (top.shift + top.width) % 32;
    masks.alpha = 0xFFFFFFFFu >> n << n;
    return masks;
}

inline int32_t byteOfField(uint32_t pixel, uint32_t mask)
{
    const Run run = runOf(mask);
    const uint64_t value = (pixel & mask) >> run.shift;
    return static_cast<int32_t>((run.width >= 8 ? value >> (run.width - 8) : value << (8 - run.width)) & 0xFF);
}

inline uint32_t fieldOfByte(int32_t byte, uint32_t mask, bool isFitted)
{
    const Run run = runOf(mask);
    uint64_t value = static_cast<uint64_t>(byte);
    if (isFitted) value = run.width >= 8 ? value << (run.width - 8) : value >> (8 - run.width);
    return static_cast<uint32_t>(value << run.shift) & mask;
}

inline Color entryOf(const Bitmap& bitmap, uint32_t index)
{
    if (index >= static_cast<uint32_t>(Bitmap::tableWords(bitmap.header()))) return {};
    const uint32_t w = bitmap.word(static_cast<int32_t>(index));
    const auto part = [w](int32_t shift) { return static_cast<int32_t>(w >> shift & 0xFF); };
    return { part(0), part(8), part(16), part(24) };
}

inline Color colorInDib(const Bitmap& bitmap, int32_t x, int32_t y)
{
    const int32_t bits = bitmap.header().biBitCount;
    const uint32_t p = bitmap.pixel(x, y);
    if (bits <= 8) return entryOf(bitmap, p);
    if (bits == 24)
        return { static_cast<int32_t>(p & 255), static_cast<int32_t>(p >> 8 & 255), static_cast<int32_t>(p >> 16), 0 };
    const Masks m = masksOf(bitmap);
    return { byteOfField(p, m.blue), byteOfField(p, m.green), byteOfField(p, m.red),
             bits == 32 ? byteOfField(p, m.alpha) : 0 };
}

// The letter that decides: G, B or R of the sequence.
inline void reorder(Color* c, char letter, bool isFromDib)
{
    if (letter == 'G' && isFromDib) c->red = (151 * c->green + 77 * c->red + 28 * c->blue) / 256;
    if (letter == 'G' && !isFromDib) *c = { c->red, c->red, c->red, 0 };
    if (letter == 'R') std::swap(c->red, c->blue);
}

inline void convertFrom(const Bitmap& bitmap, Picture& image)
{
    const PxkBitmapInfoHeader h = bitmap.header();
    const int32_t scale = image.spec.depth == PXK_DEPTH_16U ? 256 : 1;
    for (int32_t y = 0; y < std::abs(h.biHeight); ++y)
        for (int32_t x = 0; x < h.biWidth; ++x) {
            Color c = colorInDib(bitmap, x, y);
            reorder(&c, image.header.channelSeq[0], true);
            const int32_t row = image.header.origin == 0 ? y : image.spec.height - 1 - y;
            const int32_t parts[] = { c.blue, c.green, c.red, c.alpha };
            if (image.spec.depth == PXK_DEPTH_1U)
                image.setNumber(x, row, 0, c.red >= 128);
            else if (image.spec.channels == 1)
                image.setNumber(x, row, 0, c.red * scale);
            for (int32_t k = 0; image.spec.channels > 1 && k < image.spec.channels; ++k)
                image.setNumber(x, row, k, parts[k] * scale);
        }
}

inline Color colorInImage(const Picture& image, int32_t x, int32_t y)
{
    const int32_t row = image.header.origin == 0 ? y : image.spec.height - 1 - y;
    const auto byte = [&](int32_t k) {
        const int32_t v = static_cast<int32_t>(image.value(x, row, k));
        return image.spec.depth == PXK_DEPTH_1U ? 255 * v : image.spec.depth == PXK_DEPTH_16U ? v / 256 : v;
    };
    if (image.spec.channels == 1) return { byte(0), byte(0), byte(0), 0 };
    return { byte(0), byte(1), byte(2), image.spec.channels == 4 ? byte(3) : 0 };
}

inline uint32_t nearestEntry(const Bitmap& bitmap, const Color& c)
{
    const int32_t count = Bitmap::tableWords(bitmap.header());
    if (count == 256 && c.red == c.green && c.red == c.blue) {
        const Color own = entryOf(bitmap, static_cast<uint32_t>(c.red));
        if (own.blue == c.red && own.green == c.red && own.red == c.red) return static_cast<uint32_t>(c.red);
    }
    const auto square = [](int32_t v) { return v * v; };
    int32_t best = INT32_MAX;
    uint32_t bestIndex = 0;
    for (int32_t i = 0; i < count; ++i) {
        const Color e = entryOf(bitmap, static_cast<uint32_t>(i));
        const int32_t d = square(e.blue - c.blue) + square(e.green - c.green) + square(e.red - c.red);
        if (d >= best) continue;
        best = d;
        bestIndex = static_cast<uint32_t>(i);
    }
    return bestIndex;
}

inline uint32_t pixelOfColor(const Bitmap& bitmap, const Color& c)
{
    const PxkBitmapInfoHeader h = bitmap.header();
    if (h.biBitCount == 1) return (nearestEntry(bitmap, c) & 255) != 0;
    if (h.biBitCount <= 8) return nearestEntry(bitmap, c);
    if (h.biBitCount == 24) return static_cast<uint32_t>(c.blue | c.green << 8 | c.red << 16);
    const Masks m = masksOf(bitmap);
    const bool isFitted = h.biBitCount == 16;
    const uint32_t color = fieldOfByte(c.blue, m.blue, isFitted) | fieldOfByte(c.green, m.green, isFitted)
        | fieldOfByte(c.red, m.red, isFitted);
    return h.biBitCount == 32 && h.biCompression == 3 ? color | fieldOfByte(c.alpha, m.alpha, false) : color;
}

inline void convertTo(const Picture& image, Bitmap& bitmap)
{
    for (int32_t y = 0; y < image.spec.height; ++y)
        for (int32_t x = 0; x < image.spec.width; ++x) {
            Color c = colorInImage(image, x, y);
            reorder(&c, image.header.channelSeq[0], false);
            bitmap.setPixel(x, y, pixelOfColor(bitmap, c));
        }
}

} // namespace model
