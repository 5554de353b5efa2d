// SPDX-License-Identifier: BSD-2-Clause
#include "ownrle.h"

#include <cstring>

#include "frame/ownreport.h"
#include "owndib.h"

static constexpr int32_t ownEndOfLine = 0, ownEndOfBitmap = 1, ownDelta = 2; // what follows a zero byte
static constexpr int32_t ownLongestRun = 255;

static bool ownIsRle8(const PxkBitmapInfoHeader& header)
{
    return header.biCompression == PXK_BI_RLE8;
}

// Bytes of the uncompressed rows; -1 for more than a block can have.
static int64_t ownRowsBytes(const PxkBitmapInfoHeader& header)
{
    const int64_t rowBytes = ownDibRowBytes(header.biWidth, ownIsRle8(header) ? 8 : 4, 4);
    if (header.biHeight <= 0 || rowBytes <= 0) return 0;
    return rowBytes <= INT32_MAX / header.biHeight ? rowBytes * header.biHeight : -1;
}

// ---- decoding ------------------------------------------------------------------------------------------------------

enum class OwnRleResult { GOES_ON, DONE, BAD_SIZE, BAD_WIDTH, BAD_HEIGHT, BAD_DELTA };

struct OwnRleDecoder {
    const uint8_t* source;
    uint8_t* block;
    int64_t blockBytes;
    int64_t rowBytes;
    int64_t width, height;
    int64_t x, y;
    int64_t address; // in the block; a delta of four-bit pixels may leave it a byte off its column until the line ends
};

struct OwnRle8 {
    static constexpr int32_t pixelsPerByte = 1;

    static void run(uint8_t* at, const uint8_t*, int64_t, int32_t count, int32_t value)
    {
        memset(at, value, static_cast<size_t>(count));
    }

    static void literal(uint8_t* at, const uint8_t*, int64_t, int32_t count, const uint8_t* source)
    {
        memcpy(at, source, static_cast<size_t>(count));
    }

    static int64_t skippedBytes(int64_t, int32_t dx) { return dx; }
};

// Pixels are stored in pairs. Half a pair too much at the end is stored as well where it lies in the block, and mostly
// overwritten by what follows.
struct OwnRle4 {
    static constexpr int32_t pixelsPerByte = 2;

    static void storeLow(uint8_t* at, int32_t pixel) { *at = static_cast<uint8_t>((*at & 0xF0) | pixel); }
    static void storeHigh(uint8_t* at, int32_t pixel) { *at = static_cast<uint8_t>((*at & 0x0F) | pixel << 4); }

    static void run(uint8_t* at, const uint8_t* end, int64_t x, int32_t count, int32_t value)
    {
        if (x % 2 == 0) {
            memset(at, value, static_cast<size_t>(count + 1) / 2);
            return;
        }
        const int32_t whole = (count - 1) / 2;
        storeLow(at, value >> 4);
        memset(at + 1, (value >> 4 | value << 4) & 0xFF, static_cast<size_t>(whole));
        if (at + 1 + whole < end) storeHigh(at + 1 + whole, value & 0x0F);
    }

    static void literal(uint8_t* at, const uint8_t* end, int64_t x, int32_t count, const uint8_t* source)
    {
        if (x % 2 == 0) {
            memcpy(at, source, static_cast<size_t>(count + 1) / 2);
            return;
        }
        for (int32_t i = 0; i < (count + 1) / 2; ++i, ++at) {
            storeLow(at, source[i] >> 4);
            if (at + 1 < end) storeHigh(at + 1, source[i] & 0x0F);
        }
    }

    // The exclusive-or is one off unless both are even. Streams rely on it.
    static int64_t skippedBytes(int64_t x, int32_t dx) { return (dx >> 1) + ((x ^ dx) & 1); }
};

// What reaches past its row or past the block makes the stream faulty and is not stored.
template <class Coding> static bool ownHasRoom(const OwnRleDecoder& d, int32_t count)
{
    const int64_t lastByte = d.address + (d.x % Coding::pixelsPerByte + count - 1) / Coding::pixelsPerByte;
    return d.x + count <= d.width && lastByte < d.blockBytes;
}

template <class Coding> static void ownAdvance(OwnRleDecoder* d, int32_t count)
{
    d->address += (d->x % Coding::pixelsPerByte + count) / Coding::pixelsPerByte;
    d->x += count;
}

template <class Coding> static OwnRleResult ownDecodeRun(OwnRleDecoder* d, int32_t count)
{
    const int32_t value = *d->source++;
    if (!ownHasRoom<Coding>(*d, count)) return OwnRleResult::BAD_SIZE;
    Coding::run(d->block + d->address, d->block + d->blockBytes, d->x, count, value);
    ownAdvance<Coding>(d, count);
    return OwnRleResult::GOES_ON;
}

template <class Coding> static OwnRleResult ownDecodeLiteral(OwnRleDecoder* d)
{
    const int32_t count = *d->source++;
    if (!ownHasRoom<Coding>(*d, count)) return OwnRleResult::BAD_SIZE;
    Coding::literal(d->block + d->address, d->block + d->blockBytes, d->x, count, d->source);
    d->source += (count + Coding::pixelsPerByte - 1) / Coding::pixelsPerByte;
    d->source += reinterpret_cast<uintptr_t>(d->source) & 1; // the next even address, not the next even offset
    ownAdvance<Coding>(d, count);
    return OwnRleResult::GOES_ON;
}

static OwnRleResult ownDecodeEndOfLine(OwnRleDecoder* d)
{
    if (d->x != d->width) return OwnRleResult::BAD_WIDTH;
    ++d->source;
    d->x = 0;
    ++d->y;
    d->address = d->y * d->rowBytes;
    return d->y > d->height ? OwnRleResult::BAD_SIZE : OwnRleResult::GOES_ON;
}

// The bytes of a delta are not consumed: its 2 and dx are the next run, and dy begins what follows.
template <class Coding> static OwnRleResult ownDecodeDelta(OwnRleDecoder* d)
{
    const int32_t dx = d->source[1], dy = d->source[2];
    d->address += dy * d->rowBytes + Coding::skippedBytes(d->x, dx);
    d->x += dx;
    d->y += dy;
    return d->x > d->width || d->y > d->height ? OwnRleResult::BAD_DELTA : OwnRleResult::GOES_ON;
}

template <class Coding> static OwnRleResult ownDecodeStep(OwnRleDecoder* d)
{
    const int32_t count = *d->source++;
    if (count != 0) return ownDecodeRun<Coding>(d, count);
    switch (*d->source) {
    case ownEndOfLine: return ownDecodeEndOfLine(d);
    case ownEndOfBitmap:
        return d->y == d->height || d->y == d->height - 1 ? OwnRleResult::DONE : OwnRleResult::BAD_HEIGHT;
    case ownDelta: return ownDecodeDelta<Coding>(d);
    default: return ownDecodeLiteral<Coding>(d);
    }
}

template <class Coding> static OwnRleResult ownDecodeAll(OwnRleDecoder* d)
{
    OwnRleResult result = OwnRleResult::GOES_ON;
    while (result == OwnRleResult::GOES_ON) result = ownDecodeStep<Coding>(d);
    return result;
}

static const char* ownRleFault(OwnRleResult result, bool isRle8)
{
    switch (result) {
    case OwnRleResult::BAD_SIZE:
        return isRle8 ? "Incorrect format of BI_RLE8 DIB (mismatch biHeight or biWidth)"
                      : "Incorrect format of BI_RLE4 DIB (mismatch biHeight or biWidth)";
    case OwnRleResult::BAD_WIDTH:
        return isRle8 ? "Incorrect format of BI_RLE8 DIB (mismatch biWidth)"
                      : "Incorrect format of BI_RLE4 DIB (mismatch biWidth)";
    case OwnRleResult::BAD_HEIGHT:
        return isRle8 ? "Incorrect format of BI_RLE8 DIB (mismatch biHeight)"
                      : "Incorrect format of BI_RLE4 DIB (mismatch biHeight)";
    case OwnRleResult::BAD_DELTA:
        return isRle8 ? "Incorrect format of BI_RLE8 DIB (bad Delta command)"
                      : "Incorrect format of BI_RLE4 DIB (bad Delta command)";
    default: return nullptr;
    }
}

static OwnBuffer<uint8_t> ownDecompress(const OwnSite& site, const PxkBitmapInfoHeader& header, const uint8_t* bits)
{
    const bool isRle8 = ownIsRle8(header);
    if (header.biHeight < 0 || header.biWidth < 0) {
        ownReport(site, PXK_StsBadArg, ownRleFault(OwnRleResult::BAD_SIZE, isRle8));
        return nullptr;
    }
    const int64_t blockBytes = ownRowsBytes(header);
    OwnBuffer<uint8_t> block = ownBuffer<uint8_t>(blockBytes);
    if (!block) {
        ownReport(site, PXK_StsNoMem,
                  isRle8 ? "Not enough memory to decompress BI_RLE8 DIB at DIB"
                         : "Not enough memory to decompress BI_RLE4 DIB at DIB");
        return nullptr;
    }
    memset(block.get(), 0, static_cast<size_t>(blockBytes));
    OwnRleDecoder decoder = {};
    decoder.source = bits;
    decoder.block = block.get();
    decoder.blockBytes = blockBytes;
    decoder.rowBytes = ownDibRowBytes(header.biWidth, isRle8 ? 8 : 4, 4);
    decoder.width = header.biWidth;
    decoder.height = header.biHeight;
    const OwnRleResult result = isRle8 ? ownDecodeAll<OwnRle8>(&decoder) : ownDecodeAll<OwnRle4>(&decoder);
    if (result == OwnRleResult::DONE) return block;
    ownReport(site, PXK_StsBadArg, ownRleFault(result, isRle8));
    return nullptr;
}

OwnBuffer<uint8_t> ownDecompressRLE(PxkBitmapInfoHeader* dib)
{
    return ownDecompress(OWN_HERE, ownLoadDib(dib), ownDibBits(dib));
}

OwnBuffer<uint8_t> ownDecompressRLESep(PxkBitmapInfoHeader* dibHeader, const uint8_t* dibData)
{
    return ownDecompress(OWN_HERE, ownLoadDib(dibHeader), dibData);
}

// ---- encoding ------------------------------------------------------------------------------------------------------

// Code is kept while it is shorter than the bits. The rest of a longer one is not stored.
struct OwnRleStream {
    uint8_t* next;
    uint8_t* end;
    bool isTooLong;
};

// Room for `count` bytes, or null.
static uint8_t* ownTake(OwnRleStream* stream, int32_t count)
{
    if (stream->isTooLong || stream->end - stream->next <= count) {
        stream->isTooLong = true;
        return nullptr;
    }
    uint8_t* const room = stream->next;
    stream->next += count;
    return room;
}

static void ownPutPair(OwnRleStream* stream, int32_t first, int32_t second)
{
    uint8_t* const room = ownTake(stream, 2);
    if (room == nullptr) return;
    room[0] = static_cast<uint8_t>(first);
    room[1] = static_cast<uint8_t>(second);
}

// Pixels from `pixels` on, at most `count`, that repeat its first two in turn.
static int32_t ownRunLength(const uint8_t* pixels, int32_t count)
{
    uint16_t pair;
    memcpy(&pair, pixels, sizeof pair);
    const uint64_t pattern = 0x0001000100010001u * pair;
    int32_t length = 2;
    for (uint64_t word; count - length >= 8; length += 8) {
        memcpy(&word, pixels + length, sizeof word);
        if (word != pattern) break;
    }
    while (length < count && pixels[length] == pixels[length - 2]) ++length;
    return length;
}

static int32_t ownLesser(int32_t a, int32_t b)
{
    return a < b ? a : b;
}

static void ownPutLiteral8(OwnRleStream* stream, const uint8_t* pixels, int32_t count)
{
    uint8_t* const room = ownTake(stream, 2 + count + count % 2);
    if (room == nullptr) return;
    room[1 + count + count % 2] = 0; // the pad, if there is one
    room[0] = 0;
    room[1] = static_cast<uint8_t>(count);
    memcpy(room + 2, pixels, static_cast<size_t>(count));
}

static int32_t ownLiteralLength8(const uint8_t* pixels, int32_t left)
{
    const int32_t most = ownLesser(left, ownLongestRun);
    int32_t length = 3;
    while (length < most) {
        const uint8_t* const p = pixels + length;
        if (length + 2 < left && p[0] == p[1] && p[0] == p[2]) break;
        ++length;
    }
    return length;
}

static void ownEncodeRow8(OwnRleStream* stream, const uint8_t* row, int32_t width)
{
    int32_t x = 0;
    while (x < width - 3 && !stream->isTooLong) {
        const uint8_t* const p = row + x;
        if (p[0] == p[1]) {
            const int32_t length = ownRunLength(p, ownLesser(width - x, ownLongestRun));
            ownPutPair(stream, length, p[0]);
            x += length;
        } else if (p[1] == p[2]) {
            ownPutPair(stream, 1, p[0]);
            x += 1;
        } else if (p[2] == p[3]) {
            ownPutPair(stream, 1, p[0]);
            ownPutPair(stream, 1, p[1]);
            x += 2;
        } else {
            const int32_t length = ownLiteralLength8(p, width - x);
            ownPutLiteral8(stream, p, length);
            x += length;
        }
    }
    for (; x < width; ++x) ownPutPair(stream, 1, row[x]);
}

static int32_t ownPixelPair(int32_t first, int32_t second)
{
    return first << 4 | second;
}

static void ownPutLiteral4(OwnRleStream* stream, const uint8_t* pixels, int32_t count)
{
    const int32_t bytes = (count + 1) / 2;
    uint8_t* const room = ownTake(stream, 2 + bytes + bytes % 2);
    if (room == nullptr) return;
    room[1 + bytes + bytes % 2] = 0; // the pad, if there is one
    room[0] = 0;
    room[1] = static_cast<uint8_t>(count);
    for (int32_t i = 0; i < bytes; ++i) {
        const int32_t second = 2 * i + 1 < count ? pixels[2 * i + 1] : 0;
        room[2 + i] = static_cast<uint8_t>(ownPixelPair(pixels[2 * i], second));
    }
}

static int32_t ownLiteralLength4(const uint8_t* pixels, int32_t left)
{
    const int32_t most = ownLesser(left, ownLongestRun);
    int32_t length = 3;
    while (length < most) {
        const uint8_t* const p = pixels + length;
        if (length + 3 < left && p[0] == p[2] && p[1] == p[3]) break;
        ++length;
    }
    return length;
}

// One step of a row of one byte a pixel, of which six or more are left. Returns how many it took.
static int32_t ownEncodeStep4(OwnRleStream* stream, const uint8_t* p, int32_t left)
{
    const int32_t firstPair = ownPixelPair(p[0], p[1]);
    if (p[1] == p[3] && p[0] == p[2]) {
        const int32_t length = ownRunLength(p, ownLesser(left, ownLongestRun));
        ownPutPair(stream, length, firstPair);
        return length;
    }
    if (p[1] == p[3] && p[2] != p[4]) {
        ownPutPair(stream, 2, firstPair);
        ownPutPair(stream, 1, ownPixelPair(p[2], 0));
        return 3;
    }
    if (p[1] == p[3]) {
        ownPutPair(stream, 1, ownPixelPair(p[0], 0));
        return 1;
    }
    if (p[2] == p[4]) {
        ownPutPair(stream, 2, firstPair);
        return 2;
    }
    const int32_t length = ownLiteralLength4(p, left);
    ownPutLiteral4(stream, p, length);
    return length;
}

static void ownEncodeRow4(OwnRleStream* stream, const uint8_t* pixels, int32_t width)
{
    int32_t x = 0;
    while (x < width - 5 && !stream->isTooLong) x += ownEncodeStep4(stream, pixels + x, width - x);
    for (; x + 1 < width; x += 2) ownPutPair(stream, 2, ownPixelPair(pixels[x], pixels[x + 1]));
    if (x < width) ownPutPair(stream, 1, ownPixelPair(pixels[x], 0));
}

static void ownUnpackRow4(const uint8_t* row, int32_t width, uint8_t* pixels)
{
    for (int32_t x = 0; x + 1 < width; x += 2) {
        pixels[x] = row[x / 2] >> 4;
        pixels[x + 1] = row[x / 2] & 0x0F;
    }
    if (width % 2 != 0) pixels[width - 1] = row[width / 2] >> 4;
}

// Every row ends with an end of line, also the last one.
static void ownEncodeRows(OwnRleStream* stream, const PxkBitmapInfoHeader& header, const uint8_t* bits, uint8_t* pixels)
{
    const bool isRle8 = ownIsRle8(header);
    const ptrdiff_t rowBytes = static_cast<ptrdiff_t>(ownDibRowBytes(header.biWidth, isRle8 ? 8 : 4, 4));
    for (int32_t y = 0; y < header.biHeight && !stream->isTooLong; ++y, bits += rowBytes) {
        if (isRle8) {
            ownEncodeRow8(stream, bits, header.biWidth);
        } else {
            ownUnpackRow4(bits, header.biWidth, pixels);
            ownEncodeRow4(stream, pixels, header.biWidth);
        }
        ownPutPair(stream, 0, ownEndOfLine);
    }
    ownPutPair(stream, 0, ownEndOfBitmap);
}

static bool ownCompress(const OwnSite& site, PxkBitmapInfoHeader* dib, uint8_t* bits)
{
    PxkBitmapInfoHeader header = ownLoadDib(dib);
    const int64_t limit = ownRowsBytes(header);
    const OwnBuffer<uint8_t> block = ownBuffer<uint8_t>(limit);
    const OwnBuffer<uint8_t> pixels = ownBuffer<uint8_t>(ownIsRle8(header) ? 0 : header.biWidth);
    if (!block || !pixels) {
        ownReport(site, PXK_StsNoMem,
                  ownIsRle8(header) ? "Not enough memory to compress DIB at BI_RLE8 DIB"
                                    : "Not enough memory to compress DIB at BI_RLE4 DIB");
        return false;
    }
    OwnRleStream stream = { block.get(), block.get() + limit, false };
    ownEncodeRows(&stream, header, bits, pixels.get());
    if (stream.isTooLong) {
        header.biCompression = PXK_BI_RGB;
    } else {
        header.biSizeImage = static_cast<uint32_t>(stream.next - block.get());
        memcpy(bits, block.get(), header.biSizeImage);
    }
    ownStoreDib(dib, header);
    return true;
}

int32_t ownCompressRLE(PxkBitmapInfoHeader* dib)
{
    return ownCompress(OWN_HERE, dib, ownDibBits(dib)) ? 1 : 0;
}

int32_t ownCompressRLESep(PxkBitmapInfoHeader* dibHeader, uint8_t* dibData)
{
    return ownCompress(OWN_HERE, dibHeader, dibData) ? PXK_StsOk : PXK_StsNoMem;
}
