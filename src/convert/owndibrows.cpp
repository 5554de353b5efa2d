// SPDX-License-Identifier: BSD-2-Clause
#include "owndibrows.h"

#include <cstring>
#include <type_traits>

#include "frame/ownpixelorder.h"

template <class T> static T ownLoad(const uint8_t* at)
{
    T value;
    memcpy(&value, at, sizeof value);
    return value;
}

template <class T> static void ownStore(uint8_t* at, T value)
{
    memcpy(at, &value, sizeof value);
}

// ---- packed pixels, of images and bitmaps alike --------------------------------------------------------------------

// A number whose low byte comes first in memory, as in pixels of bitmaps, from or to one of this processor's.
template <class T> static T ownLowByteFirst(T value)
{
    static_assert(sizeof(T) == 2 || sizeof(T) == 4);
    if (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__) return value;
    return static_cast<T>(sizeof(T) == 2 ? __builtin_bswap16(static_cast<uint16_t>(value)) : __builtin_bswap32(value));
}

// Three bytes a pixel are moved by four where the row has a further pixel.
static void ownLoadTriples(const uint8_t* at, int32_t count, uint32_t* work)
{
    for (int32_t i = 0; i + 1 < count; ++i) work[i] = ownLowByteFirst(ownLoad<uint32_t>(at + 3 * i)) & 0x00FFFFFF;
    const uint8_t* const last = at + 3 * (count - 1);
    work[count - 1] = last[0] | static_cast<uint32_t>(last[1]) << 8 | static_cast<uint32_t>(last[2]) << 16;
}

static void ownStoreTriples(const uint32_t* work, int32_t count, uint8_t* at)
{
    for (int32_t i = 0; i + 1 < count; ++i) ownStore(at + 3 * i, ownLowByteFirst(work[i]));
    const uint32_t last = ownLowByteFirst(work[count - 1]);
    memcpy(at + 3 * (count - 1), &last, 3);
}

// Bytes of 0 and not 0 to bits; the bits of the last byte behind `count` stay.
static void ownStoreBits(const uint8_t* isSet, int32_t count, uint8_t* at)
{
    int32_t i = 0;
    for (; i + 8 <= count; i += 8) {
        uint32_t bits = 0;
        for (int32_t k = 0; k < 8; ++k) bits = bits << 1 | (isSet[i + k] != 0);
        at[i / 8] = static_cast<uint8_t>(bits);
    }
    for (; i < count; ++i) {
        const int32_t bit = 0x80 >> i % 8;
        at[i / 8] = static_cast<uint8_t>(isSet[i] != 0 ? at[i / 8] | bit : at[i / 8] & ~bit);
    }
}

static void ownLoadBits(const uint8_t* at, int32_t count, uint32_t clear, uint32_t set, uint32_t* work)
{
    const uint32_t flip = clear ^ set;
    int32_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const uint32_t bits = at[i / 8];
        for (uint32_t k = 0; k < 8; ++k) work[i + k] = clear ^ (flip & (0u - (bits >> (7 - k) & 1)));
    }
    for (; i < count; ++i) work[i] = (at[i / 8] >> (7 - i % 8) & 1) != 0 ? set : clear;
}

// ---- images --------------------------------------------------------------------------------------------------------

static void ownReadImageBits(const OwnDibConversion&, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    ownLoadBits(row + first / 8, count, 0, 0x00FFFFFF, work);
}

static void ownWriteImageBits(const OwnDibConversion&, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    uint8_t isBright[ownDibStretch];
    for (int32_t i = 0; i < count; ++i) isBright[i] = static_cast<uint8_t>(work[i] >> 23 & 1);
    ownStoreBits(isBright, count, row + first / 8);
}

// A 16-bit sample is the byte times 256.
template <class T> static uint32_t ownByteOf(T sample)
{
    return static_cast<uint32_t>(sample >> (8 * sizeof(T) - 8));
}

template <class T> static T ownSampleOf(uint32_t byte)
{
    return static_cast<T>((byte & 0xFF) << (8 * sizeof(T) - 8));
}

template <class T>
static void ownReadGray(const OwnDibConversion&, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    const uint8_t* const at = row + static_cast<ptrdiff_t>(first) * sizeof(T);
    for (ptrdiff_t i = 0; i < count; ++i) work[i] = 0x010101 * ownByteOf(ownLoad<T>(at + i * sizeof(T)));
}

template <class T>
static void ownWriteGray(const OwnDibConversion&, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    uint8_t* const at = row + static_cast<ptrdiff_t>(first) * sizeof(T);
    for (ptrdiff_t i = 0; i < count; ++i) ownStore(at + i * sizeof(T), ownSampleOf<T>(work[i] >> 16));
}

// Channels by steps that are known only at run time, or by those of interleaved channels.
template <class T, int32_t nChannels, bool isPacked>
static void ownReadChannels(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    const ptrdiff_t pixelStep = isPacked ? nChannels * sizeof(T) : sizeof(T);
    const ptrdiff_t planeStep = isPacked ? sizeof(T) : c.planeStep;
    const uint8_t* const blue = row + first * pixelStep;
    const uint8_t* const green = blue + planeStep;
    const uint8_t* const red = green + planeStep;
    const uint8_t* const alpha = nChannels == 4 ? red + planeStep : red;
    if (isPacked && nChannels == 3 && sizeof(T) == 1) return ownLoadTriples(blue, count, work);
    for (ptrdiff_t i = 0; i < count; ++i) {
        const ptrdiff_t at = i * pixelStep;
        const uint32_t color = ownByteOf(ownLoad<T>(blue + at)) | ownByteOf(ownLoad<T>(green + at)) << 8
            | ownByteOf(ownLoad<T>(red + at)) << 16;
        work[i] = nChannels == 4 ? color | ownByteOf(ownLoad<T>(alpha + at)) << 24 : color;
    }
}

template <class T, int32_t nChannels, bool isPacked>
static void ownWriteChannels(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count,
                             uint8_t* row)
{
    const ptrdiff_t pixelStep = isPacked ? nChannels * sizeof(T) : sizeof(T);
    const ptrdiff_t planeStep = isPacked ? sizeof(T) : c.planeStep;
    uint8_t* const at = row + first * pixelStep;
    if (isPacked && nChannels == 3 && sizeof(T) == 1) return ownStoreTriples(work, count, at);
    if (isPacked && nChannels == 4 && sizeof(T) == 1) {
        for (ptrdiff_t i = 0; i < count; ++i) ownStore(at + 4 * i, ownLowByteFirst(work[i]));
        return;
    }
    for (int32_t channel = 0; channel < nChannels; ++channel)
        for (ptrdiff_t i = 0; i < count; ++i)
            ownStore(at + channel * planeStep + i * pixelStep, ownSampleOf<T>(work[i] >> 8 * channel));
}

// Calls onKind with a sample, the channels and "interleaved", all known to the compiler. False: not served.
template <class F> static bool ownForImageKind(const PxkImage* image, F&& onKind)
{
    const bool isPacked = image->dataOrder == PXK_DATA_ORDER_PIXEL;
    const auto onDepth = [&](auto nChannels, auto order) {
        if (image->depth == PXK_DEPTH_8U) return onKind(uint8_t {}, nChannels, order), true;
        if (image->depth == PXK_DEPTH_16U) return onKind(uint16_t {}, nChannels, order), true;
        return false;
    };
    const auto onChannels = [&](auto order) {
        switch (image->nChannels) {
        case 1: return onDepth(std::integral_constant<int32_t, 1> {}, order);
        case 3: return onDepth(std::integral_constant<int32_t, 3> {}, order);
        case 4: return onDepth(std::integral_constant<int32_t, 4> {}, order);
        default: return false;
        }
    };
    return isPacked ? onChannels(std::true_type {}) : onChannels(std::false_type {});
}

static OwnDibReader ownImageReader(const PxkImage* image)
{
    if (image->nChannels == 1 && image->depth == PXK_DEPTH_1U) return ownReadImageBits;
    OwnDibReader reader = nullptr;
    ownForImageKind(image, [&](auto sample, auto nChannels, auto isPacked) {
        using T = decltype(sample);
        if constexpr (nChannels == 1)
            reader = ownReadGray<T>;
        else
            reader = ownReadChannels<T, nChannels, isPacked>;
    });
    return reader;
}

static OwnDibWriter ownImageWriter(const PxkImage* image)
{
    if (image->nChannels == 1 && image->depth == PXK_DEPTH_1U) return ownWriteImageBits;
    OwnDibWriter writer = nullptr;
    ownForImageKind(image, [&](auto sample, auto nChannels, auto isPacked) {
        using T = decltype(sample);
        if constexpr (nChannels == 1)
            writer = ownWriteGray<T>;
        else
            writer = ownWriteChannels<T, nChannels, isPacked>;
    });
    return writer;
}

// ---- sequences -----------------------------------------------------------------------------------------------------

// Weights in 256ths, which add up to 256: a gray stays as it is.
static uint32_t ownGrayOf(uint32_t pixel)
{
    return (28 * (pixel & 0xFF) + 151 * (pixel >> 8 & 0xFF) + 77 * (pixel >> 16 & 0xFF)) >> 8;
}

static void ownMakeGray(uint32_t* work, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) work[i] = (work[i] & 0xFF00FFFF) | ownGrayOf(work[i]) << 16;
}

static void ownSpreadGray(uint32_t* work, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) work[i] = 0x010101 * (work[i] >> 16 & 0xFF);
}

static void ownSwapRedAndBlue(uint32_t* work, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        const uint32_t pixel = work[i];
        work[i] = (pixel & 0xFF00FF00) | (pixel & 0xFF) << 16 | (pixel >> 16 & 0xFF);
    }
}

struct OwnDibSequences {
    OwnDibSequence fromDib;
    OwnDibSequence toDib;
};

// The sequence stages for all four bytes of channelSeq. False: not one of the six words.
static bool ownFindSequences(const PxkImage* image, OwnDibSequences* sequences)
{
    switch (ownSequenceOf(image)) {
    case OwnSequence::GRAY: *sequences = { ownMakeGray, ownSpreadGray }; return true;
    case OwnSequence::BGR:
    case OwnSequence::BGRA: *sequences = { nullptr, nullptr }; return true;
    case OwnSequence::RGB:
    case OwnSequence::RGBA: *sequences = { ownSwapRedAndBlue, ownSwapRedAndBlue }; return true;
    default: return false;
    }
}

// ---- bitmaps -------------------------------------------------------------------------------------------------------

static void ownReadDib1(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    ownLoadBits(row + first / 8, count, c.colors[0], c.colors[1], work);
}

static void ownReadDib4(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    const uint8_t* const at = row + first / 2;
    for (int32_t i = 0; i + 1 < count; i += 2) {
        work[i] = c.colors[at[i / 2] >> 4];
        work[i + 1] = c.colors[at[i / 2] & 0x0F];
    }
    if (count % 2 != 0) work[count - 1] = c.colors[at[count / 2] >> 4];
}

static void ownReadDib8(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    for (int32_t i = 0; i < count; ++i) work[i] = c.colors[row[first + i]];
}

static uint32_t ownFieldToByte(uint32_t pixel, OwnDibField field)
{
    return ((pixel & field.mask) >> field.down << field.up) & 0xFF;
}

static uint32_t ownFieldFromByte(uint32_t byte, OwnDibField field)
{
    return ((byte & 0xFF) >> field.down << field.up) & field.mask;
}

template <class T>
static void ownReadFields(const OwnDibConversion& c, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    const OwnDibFields fields = c.fields;
    const uint8_t* const at = row + static_cast<ptrdiff_t>(first) * sizeof(T);
    for (ptrdiff_t i = 0; i < count; ++i) {
        const uint32_t pixel = ownLowByteFirst(ownLoad<T>(at + i * sizeof(T)));
        const uint32_t color = ownFieldToByte(pixel, fields.blue) | ownFieldToByte(pixel, fields.green) << 8
            | ownFieldToByte(pixel, fields.red) << 16;
        work[i] = sizeof(T) == 4 ? color | ownFieldToByte(pixel, fields.alpha) << 24 : color;
    }
}

template <class T>
static void ownWriteFields(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    const OwnDibFields fields = c.fields;
    uint8_t* const at = row + static_cast<ptrdiff_t>(first) * sizeof(T);
    for (ptrdiff_t i = 0; i < count; ++i) {
        const uint32_t pixel = work[i];
        const uint32_t color = ownFieldFromByte(pixel, fields.blue) | ownFieldFromByte(pixel >> 8, fields.green)
            | ownFieldFromByte(pixel >> 16, fields.red);
        const uint32_t alpha = sizeof(T) == 4 ? ownFieldFromByte(pixel >> 24, fields.alpha) : 0;
        ownStore(at + i * sizeof(T), ownLowByteFirst(static_cast<T>(color | alpha)));
    }
}

static void ownReadDib24(const OwnDibConversion&, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    ownLoadTriples(row + 3 * static_cast<ptrdiff_t>(first), count, work);
}

static void ownWriteDib24(const OwnDibConversion&, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    ownStoreTriples(work, count, row + 3 * static_cast<ptrdiff_t>(first));
}

static void ownReadDib32(const OwnDibConversion&, const uint8_t* row, int32_t first, int32_t count, uint32_t* work)
{
    const uint8_t* const at = row + 4 * static_cast<ptrdiff_t>(first);
    for (ptrdiff_t i = 0; i < count; ++i) work[i] = ownLowByteFirst(ownLoad<uint32_t>(at + 4 * i));
}

template <bool isGray>
static void ownFindIndices(const OwnDibConversion& c, const uint32_t* work, int32_t count, uint8_t* indices)
{
    if (!isGray) return ownFindNearestColors(c.nearest, work, count, indices);
    for (int32_t i = 0; i < count; ++i) indices[i] = c.bytes[work[i] & 0xFF];
}

// Any index but 0 sets the bit.
template <bool isGray>
static void ownWriteDib1(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    uint8_t indices[ownDibStretch];
    ownFindIndices<isGray>(c, work, count, indices);
    ownStoreBits(indices, count, row + first / 8);
}

template <bool isGray>
static void ownWriteDib4(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    uint8_t indices[ownDibStretch];
    ownFindIndices<isGray>(c, work, count, indices);
    uint8_t* const at = row + first / 2;
    for (int32_t i = 0; i + 1 < count; i += 2)
        at[i / 2] = static_cast<uint8_t>(indices[i] << 4 | (indices[i + 1] & 15));
    if (count % 2 != 0) at[count / 2] = static_cast<uint8_t>((at[count / 2] & 0x0F) | indices[count - 1] << 4);
}

template <bool isGray>
static void ownWriteDib8(const OwnDibConversion& c, const uint32_t* work, int32_t first, int32_t count, uint8_t* row)
{
    ownFindIndices<isGray>(c, work, count, row + first);
}

static OwnDibReader ownDibReader(const PxkBitmapInfoHeader& header)
{
    switch (header.biBitCount) {
    case 1: return ownReadDib1;
    case 4: return ownReadDib4;
    case 8: return ownReadDib8;
    case 16: return ownReadFields<uint16_t>;
    case 24: return ownReadDib24;
    case 32: return header.biCompression == PXK_BI_BITFIELDS ? ownReadFields<uint32_t> : ownReadDib32;
    default: return nullptr;
    }
}

static OwnDibWriter ownDibWriter(const PxkBitmapInfoHeader& header, bool isGray)
{
    switch (header.biBitCount) {
    case 1: return isGray ? ownWriteDib1<true> : ownWriteDib1<false>;
    case 4: return isGray ? ownWriteDib4<true> : ownWriteDib4<false>;
    case 8: return isGray ? ownWriteDib8<true> : ownWriteDib8<false>;
    case 16: return ownWriteFields<uint16_t>;
    case 24: return ownWriteDib24;
    case 32: return ownWriteFields<uint32_t>;
    default: return nullptr;
    }
}

// ---- short cuts ----------------------------------------------------------------------------------------------------

template <int32_t pixelBytes>
static void ownCopyRow(const OwnDibConversion&, const uint8_t* source, int64_t count, uint8_t* target)
{
    memcpy(target, source, static_cast<size_t>(count) * pixelBytes);
}

static void ownLookUpRow(const OwnDibConversion& c, const uint8_t* source, int64_t count, uint8_t* target)
{
    for (ptrdiff_t i = 0; i < count; ++i) target[i] = c.bytes[source[i]];
}

// Each bit becomes bytes[0] or bytes[1], as 0 or not 0. The bits of the last byte behind the row stay.
static void ownMapBits(const OwnDibConversion& c, const uint8_t* source, int64_t count, uint8_t* target)
{
    const uint32_t clear = c.bytes[0] != 0 ? 0xFF : 0, set = c.bytes[1] != 0 ? 0xFF : 0;
    const ptrdiff_t whole = static_cast<ptrdiff_t>(count / 8);
    for (ptrdiff_t i = 0; i < whole; ++i) {
        const uint32_t bits = source[i];
        target[i] = static_cast<uint8_t>((bits & set) | (~bits & clear));
    }
    const int32_t rest = static_cast<int32_t>(count % 8);
    if (rest == 0) return;
    const uint32_t mask = 0xFF00u >> rest & 0xFF, bits = source[whole];
    target[whole] = static_cast<uint8_t>((((bits & set) | (~bits & clear)) & mask) | (target[whole] & ~mask));
}

static bool ownIsInterleaved8(const PxkImage* image, int32_t nChannels)
{
    return image->depth == PXK_DEPTH_8U && image->nChannels == nChannels
        && (nChannels == 1 || image->dataOrder == PXK_DATA_ORDER_PIXEL);
}

static OwnDibWholeRow ownShortFromDib(OwnDibConversion* c, int32_t bits, const PxkImage* image)
{
    if (bits == 24 && c->sequence == nullptr && ownIsInterleaved8(image, 3)) return ownCopyRow<3>;
    if (bits == 32 && c->read == ownReadDib32 && c->sequence == nullptr && ownIsInterleaved8(image, 4))
        return ownCopyRow<4>;
    if (bits == 8 && ownIsInterleaved8(image, 1)) {
        for (int32_t i = 0; i < 256; ++i) c->bytes[i] = static_cast<uint8_t>(c->colors[i] >> 16);
        return ownLookUpRow;
    }
    if (bits == 1 && image->depth == PXK_DEPTH_1U) {
        for (int32_t i = 0; i < 2; ++i) c->bytes[i] = static_cast<uint8_t>(c->colors[i] >> 23 & 1);
        return ownMapBits;
    }
    return nullptr;
}

static OwnDibWholeRow ownShortToDib(OwnDibConversion* c, int32_t bits, const PxkImage* image)
{
    if (bits == 24 && c->sequence == nullptr && ownIsInterleaved8(image, 3)) return ownCopyRow<3>;
    if (bits == 8 && ownIsInterleaved8(image, 1)) return ownLookUpRow;
    if (bits == 1 && image->depth == PXK_DEPTH_1U) {
        c->bytes[1] = c->bytes[255];
        return ownMapBits;
    }
    return nullptr;
}

// ---- choice --------------------------------------------------------------------------------------------------------

static bool ownHasFields(const PxkBitmapInfoHeader& header)
{
    return header.biBitCount == 16 || header.biBitCount == 32;
}

static ptrdiff_t ownPlaneStep(const PxkImage* image)
{
    const int64_t rowBytes = ownDibRowBytes(image->width, image->depth, image->align);
    return static_cast<ptrdiff_t>(rowBytes * image->height);
}

// Final work pixels for all indices; those behind a short table are black.
static void ownPrepareColors(OwnDibConversion* c, PxkBitmapInfoHeader* dib, const PxkBitmapInfoHeader& header)
{
    const int64_t count = ownDibColorCount(header);
    memset(c->colors, 0, sizeof c->colors);
    memcpy(c->colors, ownDibTable(dib), static_cast<size_t>(count < 256 ? count : 256) * 4);
    for (uint32_t& color : c->colors) color = ownLowByteFirst(color);
    if (c->sequence != nullptr) c->sequence(c->colors, 256);
    c->sequence = nullptr;
}

OwnDibChoice ownChooseFromDib(OwnDibConversion* c, PxkBitmapInfoHeader* dib, const PxkImage* image)
{
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    c->read = ownDibReader(header);
    if (c->read == nullptr) return OwnDibChoice::BAD_BITS;
    if (ownHasFields(header) && !ownFieldsToBytes(dib, &c->fields)) return OwnDibChoice::BAD_MASK;
    OwnDibSequences sequences;
    if (!ownFindSequences(image, &sequences)) return OwnDibChoice::BAD_SEQUENCE;
    c->write = ownImageWriter(image);
    if (c->write == nullptr) return OwnDibChoice::BAD_IMAGE;
    c->sequence = sequences.fromDib;
    c->planeStep = ownPlaneStep(image);
    if (header.biBitCount <= 8) ownPrepareColors(c, dib, header);
    c->wholeRow = ownShortFromDib(c, header.biBitCount, image);
    return OwnDibChoice::SERVED;
}

OwnDibChoice ownChooseToDib(OwnDibConversion* c, PxkBitmapInfoHeader* dib, const PxkImage* image, OwnNearest* nearest)
{
    const PxkBitmapInfoHeader header = ownLoadDib(dib);
    c->read = ownImageReader(image);
    if (c->read == nullptr) return OwnDibChoice::BAD_IMAGE;
    OwnDibSequences sequences;
    if (!ownFindSequences(image, &sequences)) return OwnDibChoice::BAD_SEQUENCE;
    // One channel is in all three bytes already, and there is no alpha to clear.
    c->sequence = image->nChannels == 1 ? nullptr : sequences.toDib;
    const bool isGray = image->nChannels == 1 || sequences.toDib == ownSpreadGray;
    c->write = ownDibWriter(header, isGray);
    if (c->write == nullptr) return OwnDibChoice::BAD_BITS;
    if (ownHasFields(header) && !ownFieldsFromBytes(dib, &c->fields)) return OwnDibChoice::BAD_MASK;
    c->planeStep = ownPlaneStep(image);
    if (header.biBitCount <= 8) {
        c->nearest = nearest;
        ownPrepareNearest(nearest, ownDibTable(dib), ownDibColorCount(header));
        uint32_t grays[256];
        for (uint32_t g = 0; g < 256; ++g) grays[g] = 0x010101 * g;
        if (isGray) ownFindNearestColors(nearest, grays, 256, c->bytes);
    }
    c->wholeRow = ownShortToDib(c, header.biBitCount, image);
    return OwnDibChoice::SERVED;
}

// ---- the walk ------------------------------------------------------------------------------------------------------

static void ownConvertRow(const OwnDibConversion& c, const uint8_t* source, uint8_t* target, int64_t columns)
{
    if (c.wholeRow != nullptr) return c.wholeRow(c, source, columns, target);
    uint32_t work[ownDibStretch];
    for (int64_t first = 0; first < columns; first += ownDibStretch) {
        const int64_t left = columns - first;
        const int32_t count = static_cast<int32_t>(left < ownDibStretch ? left : ownDibStretch);
        const int32_t column = static_cast<int32_t>(first);
        c.read(c, source, column, count, work);
        if (c.sequence != nullptr) c.sequence(work, count);
        c.write(c, work, column, count, target);
    }
}

void ownConvertRows(const OwnDibConversion& c, OwnDibRows source, OwnDibRows target, int64_t columns, int64_t rows)
{
    for (int64_t y = 0; columns > 0 && y < rows; ++y) {
        const ptrdiff_t row = static_cast<ptrdiff_t>(y);
        ownConvertRow(c, source.first + row * source.step, target.first + row * target.step, columns);
    }
}
