// SPDX-License-Identifier: BSD-2-Clause
#include "bitmapfile.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr int64_t fileHeaderBytes = 14;
constexpr int64_t headerBytes = sizeof(PxkBitmapInfoHeader);
constexpr int64_t sizeLimit = INT64_C(1) << 31;

struct ReleaseMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using Memory = std::unique_ptr<uint8_t[], ReleaseMemory>;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Zero-filled; one byte at least, so that null always means out of memory.
Memory takeMemory(int64_t bytes)
{
    return Memory(static_cast<uint8_t*>(std::calloc(static_cast<size_t>(bytes) + 1, 1)));
}

uint32_t littleEndian32(const uint8_t* bytes)
{
    return bytes[0] | static_cast<uint32_t>(bytes[1]) << 8 | static_cast<uint32_t>(bytes[2]) << 16
        | static_cast<uint32_t>(bytes[3]) << 24;
}

// Header and masks are numbers: from the order of bytes in a file, the low one first, to this processor's, or back.
void turnNumbers(void* numbers, int64_t count)
{
    uint8_t* const bytes = static_cast<uint8_t*>(numbers);
    for (int64_t i = 0; i < count; ++i) {
        const uint32_t value = littleEndian32(bytes + 4 * i);
        std::memcpy(bytes + 4 * i, &value, 4);
    }
}

void turnHeader(PxkBitmapInfoHeader* dib)
{
    turnNumbers(dib, headerBytes / 4);
    if (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__)
        std::swap(dib->biPlanes, dib->biBitCount); // they were turned as one number
}

bool isRunLength(const PxkBitmapInfoHeader& dib)
{
    return dib.biCompression == PXK_BI_RLE8 || dib.biCompression == PXK_BI_RLE4;
}

int64_t rowBytes(const PxkBitmapInfoHeader& dib)
{
    return (static_cast<int64_t>(dib.biWidth) * dib.biBitCount + 31) / 32 * 4;
}

int64_t rowCount(const PxkBitmapInfoHeader& dib)
{
    return std::llabs(static_cast<int64_t>(dib.biHeight));
}

// Where the parts of a file stand, counted from its first byte: programs write headers of many sizes.
struct Layout {
    int64_t table;      // its first colour,
    int64_t entryBytes; // and what each of them takes
    int64_t masks;      // the first of three fields
    bool isPlain;       // 40 bytes and what the library expects behind them
};

constexpr int64_t oldHeaderBytes = 12;         // two-byte sizes, and three bytes a colour
constexpr uint32_t compressionAlphaFields = 6; // four masks behind a header of 40 bytes

// Four-byte words between header and bits that count.
int64_t declaredWords(const PxkBitmapInfoHeader& dib)
{
    const int64_t full = INT64_C(1) << (dib.biBitCount & 31);
    if (dib.biBitCount <= 8) return dib.biClrUsed != 0 && dib.biClrUsed < full ? dib.biClrUsed : full;
    return dib.biCompression == PXK_BI_BITFIELDS && dib.biBitCount != 24 ? 3 : 0;
}

uint16_t littleEndian16(const uint8_t* bytes)
{
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

// The fields that all headers share, as a header of 40 bytes. False: a header of a size that nobody writes.
bool readHeader(const uint8_t* start, int64_t size, PxkBitmapInfoHeader* dib, Layout* layout)
{
    const uint8_t* const header = start + fileHeaderBytes;
    layout->table = fileHeaderBytes + size;
    layout->entryBytes = size == oldHeaderBytes ? 3 : 4;
    layout->masks = fileHeaderBytes + headerBytes;
    layout->isPlain = size == headerBytes;
    if (size == oldHeaderBytes) {
        *dib = {};
        dib->biWidth = littleEndian16(header + 4);
        dib->biHeight = littleEndian16(header + 6);
        dib->biPlanes = littleEndian16(header + 8);
        dib->biBitCount = littleEndian16(header + 10);
    } else {
        std::memcpy(dib, header, static_cast<size_t>(headerBytes));
        turnHeader(dib);
        if (dib->biCompression == compressionAlphaFields) {
            layout->isPlain = false;
            dib->biCompression = PXK_BI_BITFIELDS;
            layout->table += size == headerBytes ? 16 : 0;
        } else if (dib->biCompression == PXK_BI_BITFIELDS && size == headerBytes) {
            layout->table += 12;
        }
    }
    dib->biSize = static_cast<uint32_t>(headerBytes);
    for (const int64_t known :
         { oldHeaderBytes, headerBytes, INT64_C(52), INT64_C(56), INT64_C(64), INT64_C(108), INT64_C(124) })
        if (size == known) return true;
    return false;
}

const char* headerFault(const PxkBitmapInfoHeader& dib, const Layout& layout, int64_t bitsOffset, int64_t length)
{
    if (dib.biWidth < 1 || dib.biHeight == 0 || dib.biHeight == INT32_MIN) return "bad width or height";
    const int32_t bits = dib.biBitCount;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) return "bad bits a pixel";
    if (rowBytes(dib) >= sizeLimit || rowBytes(dib) > (sizeLimit - 1) / rowCount(dib)) return "too large";
    const int64_t tableBytes = bits <= 8 ? layout.entryBytes * declaredWords(dib) : 0;
    if (layout.table + tableBytes > bitsOffset) return "the bits begin inside the table";
    if (bitsOffset > length) return "the bits begin behind the end of the file";
    const int64_t available = length - bitsOffset;
    if (isRunLength(dib)) {
        return dib.biWidth * rowCount(dib) > available * 255 / 2 ? "the bits are too few for the picture" : nullptr;
    }
    return rowBytes(dib) * rowCount(dib) > available ? "the bits end behind the end of the file" : nullptr;
}

// Gives `file` the header, which stays where it is if it is a plain one with all entries that an index can name.
const char* placeHeader(BitmapFile* file, uint8_t* start, const PxkBitmapInfoHeader& dib, const Layout& layout)
{
    const int32_t bits = dib.biBitCount;
    const int64_t declared = declaredWords(dib), words = bits <= 8 ? INT64_C(1) << bits : declared;
    if (layout.isPlain && declared == words) {
        file->dib = reinterpret_cast<PxkBitmapInfoHeader*>(start + fileHeaderBytes);
        std::memcpy(file->dib, &dib, static_cast<size_t>(headerBytes));
    } else {
        Memory block = takeMemory(headerBytes + 4 * words);
        if (!block) return "out of memory";
        std::memcpy(block.get(), &dib, static_cast<size_t>(headerBytes));
        uint8_t* const table = block.get() + headerBytes;
        if (bits > 8) std::memcpy(table, start + layout.masks, static_cast<size_t>(4 * words));
        for (int64_t i = 0; bits <= 8 && i < declared; ++i)
            std::memcpy(table + 4 * i, start + layout.table + layout.entryBytes * i, 3);
        file->blocks[1] = block.release();
        file->dib = static_cast<PxkBitmapInfoHeader*>(file->blocks[1]);
    }
    if (bits > 8) turnNumbers(file->dib + 1, words); // masks; colours are bytes
    if (bits <= 8) file->dib->biClrUsed = 0;
    return nullptr;
}

// Run-length bits end where they say. Zeros behind them keep the decoder inside: it reads to the end of a literal, 255
// bytes and one for an even address, takes two zeros for the end of a row, and finds the next two faulty.
const char* padRunLengthBits(BitmapFile* file, int64_t available)
{
    if (!isRunLength(*file->dib)) return nullptr;
    Memory block = takeMemory(available + 260);
    if (!block) return "out of memory";
    std::memcpy(block.get(), file->bits, static_cast<size_t>(available));
    file->blocks[2] = block.release();
    file->bits = file->blocks[2];
    return nullptr;
}

bool isGrayRamp(const PxkBitmapInfoHeader* dib)
{
    if (dib->biBitCount > 8) return false;
    const uint8_t* entry = reinterpret_cast<const uint8_t*>(dib + 1);
    const int32_t last = (1 << dib->biBitCount) - 1;
    for (int32_t i = 0; i <= last; ++i, entry += 4) {
        const int32_t gray = i * 255 / last;
        if (entry[0] != gray || entry[1] != gray || entry[2] != gray) return false;
    }
    return true;
}

// An image of its own with the channels that the bitmap needs.
PxkImage* createImage(const PxkBitmapInfoHeader* dib)
{
    const int32_t origin = dib->biHeight < 0 ? 0 : 1;
    const int32_t height = static_cast<int32_t>(rowCount(*dib));
    const auto create = [=](int32_t nChannels, int32_t alpha, int32_t depth, const char* model, const char* sequence) {
        return pxkCreateImageHeader(nChannels, alpha, depth, model, sequence, PXK_DATA_ORDER_PIXEL, origin, 4,
                                    dib->biWidth, height, nullptr, nullptr, nullptr, nullptr);
    };
    if (isGrayRamp(dib)) return create(1, 0, dib->biBitCount == 1 ? PXK_DEPTH_1U : PXK_DEPTH_8U, "GRAY", "G\0\0");
    return dib->biBitCount == 32 ? create(4, 4, PXK_DEPTH_8U, "RGBA", "BGRA")
                                 : create(3, 0, PXK_DEPTH_8U, "RGB", "BGR");
}

// The first reason that the library gave on this thread; empty: none.
thread_local char firstReport[160];

int32_t keepFirstReport(int32_t status, const char*, const char* context, const char*, int32_t)
{
    if (firstReport[0] == 0) std::snprintf(firstReport, sizeof firstReport, "%s", context != nullptr ? context : "");
    return status;
}

// While it lives, reports of the library are kept and not shown.
struct ReportKeeper {
    ReportKeeper()
    {
        firstReport[0] = 0;
        pxkSetErrStatus(PXK_StsOk);
    }
    ~ReportKeeper() { pxkRedirectError(before); }
    ReportKeeper(const ReportKeeper&) = delete;
    ReportKeeper& operator=(const ReportKeeper&) = delete;

    static const char* reason()
    {
        const int32_t status = pxkGetErrStatus();
        return firstReport[0] != 0 ? firstReport : pxkErrorStr(status != PXK_StsOk ? status : PXK_StsNoMem);
    }
    const PxkErrorCallBack before = pxkRedirectError(keepFirstReport);
};

const char* makeImage(BitmapFile* file)
{
    const int64_t tableBytes = 4 * declaredWords(*file->dib);
    const ReportKeeper keeper;
    if (file->bits == reinterpret_cast<uint8_t*>(file->dib) + headerBytes + tableBytes) {
        int32_t cloneData;
        file->image = pxkTranslateDIB(file->dib, &cloneData);
        if (file->image != nullptr) return nullptr;
    } else {
        file->image = createImage(file->dib);
        if (file->image != nullptr && pxkConvertFromDIBSep(file->dib, file->bits, file->image) == PXK_StsOk)
            return nullptr;
    }
    return ReportKeeper::reason();
}

// Takes over memory that holds the file's bytes from the third byte on, so that the header in it is aligned.
const char* openBytes(BitmapFile* file, Memory memory, int64_t length)
{
    file->blocks[0] = memory.release();
    uint8_t* const start = static_cast<uint8_t*>(file->blocks[0]) + 2;
    if (start[0] != 'B' || start[1] != 'M') return "not a bitmap file";
    const int64_t bitsOffset = littleEndian32(start + 10);
    const int64_t size = littleEndian32(start + fileHeaderBytes);
    if (length < fileHeaderBytes + (size < headerBytes ? oldHeaderBytes : size)) return "too short for a bitmap file";
    PxkBitmapInfoHeader dib;
    Layout layout;
    if (!readHeader(start, size, &dib, &layout)) return "a header of a size that is none of 12 to 124 bytes";
    if (const char* const fault = headerFault(dib, layout, bitsOffset, length)) return fault;
    file->bits = start + bitsOffset;
    if (const char* const fault = placeHeader(file, start, dib, layout)) return fault;
    if (const char* const fault = padRunLengthBits(file, length - bitsOffset)) return fault;
    return makeImage(file);
}

const char* openOrRelease(BitmapFile* file, Memory memory, int64_t length)
{
    const char* const fault = openBytes(file, std::move(memory), length);
    if (fault != nullptr) releaseBitmap(file);
    return fault;
}

void storeLittleEndian32(uint8_t* bytes, uint32_t value)
{
    for (int i = 0; i < 4; ++i) bytes[i] = static_cast<uint8_t>(value >> 8 * i);
}

} // namespace

const char* readBitmapBytes(BitmapFile* file, const void* bytes, size_t length)
{
    *file = {};
    if (length < static_cast<size_t>(fileHeaderBytes + oldHeaderBytes)) return "too short for a bitmap file";
    if (length >= static_cast<size_t>(sizeLimit)) return "too large";
    Memory memory = takeMemory(static_cast<int64_t>(length) + 2);
    if (!memory) return "out of memory";
    std::memcpy(memory.get() + 2, bytes, length);
    return openOrRelease(file, std::move(memory), static_cast<int64_t>(length));
}

const char* readBitmap(BitmapFile* file, const char* path)
{
    *file = {};
    const File stream(std::fopen(path, "rb"));
    if (!stream) return "cannot be opened";
    if (std::fseek(stream.get(), 0, SEEK_END) != 0) return "cannot be read";
    const int64_t length = std::ftell(stream.get());
    if (length < 0 || std::fseek(stream.get(), 0, SEEK_SET) != 0) return "cannot be read";
    if (length < fileHeaderBytes + oldHeaderBytes) return "too short for a bitmap file";
    if (length >= sizeLimit) return "too large";
    Memory memory = takeMemory(length + 2);
    if (!memory) return "out of memory";
    const size_t wanted = static_cast<size_t>(length);
    if (std::fread(memory.get() + 2, 1, wanted, stream.get()) != wanted) return "cannot be read";
    return openOrRelease(file, std::move(memory), length);
}

void releaseBitmap(BitmapFile* file)
{
    pxkDeallocate(file->image, PXK_FREE_HEADER | PXK_FREE_DATA);
    for (void* block : file->blocks) std::free(block);
    *file = {};
}

const char* writeBitmap(PxkImage* image, const char* path)
{
    PxkBitmapInfoHeader wanted = {};
    wanted.biSize = static_cast<uint32_t>(headerBytes);
    wanted.biWidth = image->width;
    wanted.biHeight = image->height;
    wanted.biPlanes = 1;
    wanted.biBitCount = image->depth == PXK_DEPTH_1U ? 1 : image->nChannels == 1 ? 8 : 24;
    const int64_t bitsOffset = fileHeaderBytes + headerBytes + 4 * declaredWords(wanted);
    if (image->width < 1 || image->height < 1) return "bad width or height";
    if (rowBytes(wanted) > (sizeLimit - 1 - bitsOffset) / rowCount(wanted)) return "too large";
    const int64_t length = bitsOffset + rowBytes(wanted) * rowCount(wanted);
    wanted.biSizeImage = static_cast<uint32_t>(length - bitsOffset);

    const Memory memory = takeMemory(length + 2);
    if (!memory) return "out of memory";
    uint8_t* const start = memory.get() + 2;
    start[0] = 'B';
    start[1] = 'M';
    storeLittleEndian32(start + 2, static_cast<uint32_t>(length));
    storeLittleEndian32(start + 10, static_cast<uint32_t>(bitsOffset));
    PxkBitmapInfoHeader* const dib = reinterpret_cast<PxkBitmapInfoHeader*>(start + fileHeaderBytes);
    *dib = wanted;
    {
        const ReportKeeper keeper;
        pxkConvertToDIB(image, dib, 1, PXK_PALETTE_FIXED);
        if (pxkGetErrStatus() != PXK_StsOk) return ReportKeeper::reason();
    }
    turnHeader(dib);

    File stream(std::fopen(path, "wb"));
    if (!stream) return "cannot be opened for writing";
    const size_t count = static_cast<size_t>(length);
    const bool isWritten = std::fwrite(start, 1, count, stream.get()) == count;
    const bool isClosed = std::fclose(stream.release()) == 0;
    return isWritten && isClosed ? nullptr : "cannot be written";
}
