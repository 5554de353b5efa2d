// SPDX-License-Identifier: BSD-2-Clause
#include "picturefile.h"

#include "bitmapfile.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

#if PXK_HAVE_PNG
#include <png.h>
#endif
#if PXK_HAVE_JPEG
#include <csetjmp>
// After <cstdio>, which it needs.
#include <jpeglib.h>

#include <jerror.h>
#endif

namespace {

constexpr int64_t sizeLimit = INT64_C(1) << 31;

ImagePtr makeColour(int32_t width, int32_t height)
{
    ImagePtr image(pxkCreateImageHeader(3, 0, PXK_DEPTH_8U, "RGB", "BGR", PXK_DATA_ORDER_PIXEL, 0, 32, width, height,
                                        nullptr, nullptr, nullptr, nullptr));
    if (image) pxkAllocateImage(image.get(), 1, 0);
    return image && image->imageData ? std::move(image) : nullptr;
}

uint8_t* rowOf(const PxkImage& image, int64_t y)
{
    return static_cast<uint8_t*>(image.imageData) + y * image.widthStep;
}

bool beginsWith(const uint8_t* bytes, size_t length, const char* start, size_t count)
{
    return length >= count && std::memcmp(bytes, start, count) == 0;
}

ImagePtr refused(std::string& why, const char* reason)
{
    why = reason;
    return nullptr;
}

ImagePtr readBitmapPicture(const uint8_t* bytes, size_t length, std::string& why)
{
    BitmapFile file;
    if (const char* const fault = readBitmapBytes(&file, bytes, length)) return refused(why, fault);
    ImagePtr picture = toColour(*file.image);
    releaseBitmap(&file);
    return picture ? std::move(picture) : refused(why, "out of memory");
}

#if PXK_HAVE_PNG

uint32_t bigEndian32(const uint8_t* bytes)
{
    return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16
        | static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

// Compressed by deflate, a byte holds 1032 at most.
const char* pngFault(const uint8_t* bytes, size_t length)
{
    constexpr int64_t bytesAByte = 1032;
    if (length < 33) return "the file ends in the middle of the picture";
    const int64_t width = bigEndian32(bytes + 16), height = bigEndian32(bytes + 20);
    const int64_t channels[] = { 1, 0, 3, 1, 2, 0, 4 };
    const int64_t bits = bytes[24] * (bytes[25] <= 6 ? channels[bytes[25]] : 0);
    if (width < 1 || height < 1 || bits < 1) return "bad width, height or kind of pixels";
    if (width >= sizeLimit / 3 || height > (sizeLimit - 1) / (3 * width)) return "too large";
    const int64_t packed = height * (1 + (width * bits + 7) / 8);
    if (packed > bytesAByte * static_cast<int64_t>(length)) return "the file is too short for the picture";
    return nullptr;
}

ImagePtr readPng(const uint8_t* bytes, size_t length, std::string& why)
{
    if (const char* const fault = pngFault(bytes, length)) return refused(why, fault);
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&png, bytes, length)) return refused(why, png.message);
    png.format = PNG_FORMAT_BGR;
    ImagePtr image = makeColour(static_cast<int32_t>(png.width), static_cast<int32_t>(png.height));
    const png_color white = { 255, 255, 255 };
    const bool isRead = image && png_image_finish_read(&png, &white, image->imageData, image->widthStep, nullptr);
    if (!isRead) why = image ? png.message : "out of memory";
    png_image_free(&png);
    return isRead ? std::move(image) : nullptr;
}

#endif
#if PXK_HAVE_JPEG

// libjpeg leaves by longjmp: where it is called nothing may wait for a destructor.
struct JpegErrors {
    jpeg_error_mgr base;
    std::jmp_buf leave;
    bool hasEnded; // before the picture did
    char text[JMSG_LENGTH_MAX];
};

void leaveJpeg(j_common_ptr info)
{
    JpegErrors* const errors = reinterpret_cast<JpegErrors*>(info->err);
    errors->base.format_message(info, errors->text);
    std::longjmp(errors->leave, 1);
}

void noteWarning(j_common_ptr info, int level)
{
    JpegErrors* const errors = reinterpret_cast<JpegErrors*>(info->err);
    if (level < 0 && errors->base.msg_code == JWRN_JPEG_EOF) errors->hasEnded = true;
}

// A few bytes can ask for one pass over a large picture after another.
void countScans(j_common_ptr info)
{
    constexpr int mostScans = 200;
    if (reinterpret_cast<j_decompress_ptr>(info)->input_scan_number <= mostScans) return;
    JpegErrors* const errors = reinterpret_cast<JpegErrors*>(info->err);
    std::snprintf(errors->text, sizeof errors->text, "too many scans");
    std::longjmp(errors->leave, 1);
}

// Eight by eight pixels take a bit at least.
const char* jpegFault(const jpeg_decompress_struct& info, size_t length)
{
    constexpr int64_t pixelsAByte = 8 * 64;
    if (info.num_components != 1 && info.num_components != 3) return "a JPEG of four inks, not of red, green and blue";
    const int64_t width = info.image_width, height = info.image_height;
    if (3 * width * height >= sizeLimit) return "too large";
    return width * height > pixelsAByte * static_cast<int64_t>(length) ? "the file is too short for the picture"
                                                                       : nullptr;
}

void swapRedAndBlue(PxkImage& image)
{
    for (int32_t y = 0; y < image.height; ++y) {
        uint8_t* pixel = rowOf(image, y);
        for (int32_t x = 0; x < image.width; ++x, pixel += 3) std::swap(pixel[0], pixel[2]);
    }
}

// Numbers of a block that says itself which byte comes first; 0 behind its end.
class TiffBlock {
public:
    TiffBlock(const uint8_t* bytes, size_t length)
        : bytes_(bytes)
        , length_(length)
        , isLowFirst_(beginsWith(bytes, length, "II", 2))
    {
    }
    uint32_t number(size_t at, size_t count) const
    {
        if (at > length_ || length_ - at < count) return 0;
        uint32_t value = 0;
        for (size_t i = 0; i < count; ++i) value = value << 8 | bytes_[at + (isLowFirst_ ? count - 1 - i : i)];
        return value;
    }

private:
    const uint8_t* bytes_;
    size_t length_;
    bool isLowFirst_;
};

// How the camera was held: 1 to 8, as Exif numbers it.
uint32_t orientationOf(const jpeg_decompress_struct& info)
{
    constexpr size_t head = 6, entryBytes = 12;
    constexpr uint32_t orientationTag = 0x0112;
    for (jpeg_saved_marker_ptr marker = info.marker_list; marker; marker = marker->next) {
        if (!beginsWith(marker->data, marker->data_length, "Exif\0\0", head)) continue;
        const TiffBlock block(marker->data + head, marker->data_length - head);
        const size_t table = block.number(4, 4);
        for (size_t i = 0; i < block.number(table, 2); ++i) {
            const size_t entry = table + 2 + i * entryBytes;
            if (block.number(entry, 2) == orientationTag) return block.number(entry + 8, 2);
        }
    }
    return 1;
}

// The picture as it is to be looked at.
ImagePtr turned(ImagePtr image, uint32_t orientation)
{
    if (!image || orientation < 2 || orientation > 8) return image;
    const auto isOneOf = [orientation](uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
        return orientation == a || orientation == b || orientation == c || orientation == d;
    };
    const bool isAcross = orientation >= 5, fromRight = isOneOf(2, 3, 7, 8), fromBottom = isOneOf(3, 4, 6, 7);
    ImagePtr out = isAcross ? makeColour(image->height, image->width) : makeColour(image->width, image->height);
    for (int32_t y = 0; out && y < out->height; ++y) {
        for (int32_t x = 0; x < out->width; ++x) {
            const int32_t across = isAcross ? y : x, down = isAcross ? x : y;
            const int32_t fromX = fromRight ? image->width - 1 - across : across;
            const int32_t fromY = fromBottom ? image->height - 1 - down : down;
            std::memcpy(rowOf(*out, y) + 3 * x, rowOf(*image, fromY) + 3 * fromX, 3);
        }
    }
    return out;
}

// Fills `image` and `orientation`. False with the reason in `errors`.
bool decodeJpeg(const uint8_t* bytes, size_t length, JpegErrors& errors, jpeg_decompress_struct& info, ImagePtr& image,
                uint32_t& orientation)
{
    jpeg_progress_mgr progress = {};
    if (setjmp(errors.leave) != 0) return false;
    jpeg_create_decompress(&info);
    progress.progress_monitor = countScans;
    info.progress = &progress;
    jpeg_mem_src(&info, bytes, static_cast<unsigned long>(length));
    jpeg_save_markers(&info, JPEG_APP0 + 1, 0xFFFF);
    jpeg_read_header(&info, TRUE);
    const char* fault = jpegFault(info, length);
    if (!fault) {
        image = makeColour(static_cast<int32_t>(info.image_width), static_cast<int32_t>(info.image_height));
        if (!image) fault = "out of memory";
    }
    if (fault) {
        std::snprintf(errors.text, sizeof errors.text, "%s", fault);
        return false;
    }
    orientation = orientationOf(info);
    info.out_color_space = JCS_RGB;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = rowOf(*image, info.output_scanline);
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    return true;
}

ImagePtr readJpeg(const uint8_t* bytes, size_t length, std::string& why)
{
    JpegErrors errors = {};
    jpeg_decompress_struct info = {};
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = leaveJpeg;
    errors.base.emit_message = noteWarning;
    ImagePtr image;
    uint32_t orientation = 1;
    const bool isDecoded = decodeJpeg(bytes, length, errors, info, image, orientation);
    jpeg_destroy_decompress(&info);
    if (!isDecoded) return refused(why, errors.text);
    if (errors.hasEnded) return refused(why, "the file ends in the middle of the picture");
    swapRedAndBlue(*image);
    image = turned(std::move(image), orientation);
    return image ? std::move(image) : refused(why, "out of memory");
}

#endif

#if PXK_HAVE_PNG && PXK_HAVE_JPEG
constexpr const char* otherKind = "not a BMP, PNG or JPEG file";
#elif PXK_HAVE_PNG
constexpr const char* otherKind = "not a BMP or PNG file (this program was built without libjpeg)";
#else
constexpr const char* otherKind = "not a BMP file (this program was built without libpng)";
#endif

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

uint8_t sampleAt(const PxkImage& image, int32_t x, int32_t y, int32_t c)
{
    const int32_t line = image.origin == 0 ? y : image.height - 1 - y;
    if (image.dataOrder == PXK_DATA_ORDER_PLANE) return rowOf(image, static_cast<int64_t>(c) * image.height + line)[x];
    const uint8_t* const row = rowOf(image, line);
    if (image.depth == PXK_DEPTH_1U) return row[x / 8] & 0x80 >> x % 8 ? 255 : 0;
    return row[static_cast<ptrdiff_t>(x) * image.nChannels + c];
}

ImagePtr toColour(const PxkImage& image)
{
    ImagePtr colour = makeColour(image.width, image.height);
    for (int32_t y = 0; colour && y < image.height; ++y) {
        uint8_t* out = rowOf(*colour, y);
        for (int32_t x = 0; x < image.width; ++x)
            for (int32_t c = 0; c < 3; ++c) *out++ = sampleAt(image, x, y, image.nChannels < 3 ? 0 : c);
    }
    return colour;
}

ImagePtr readPictureBytes(const void* bytes, size_t length, std::string& why)
{
    const uint8_t* const start = static_cast<const uint8_t*>(bytes);
    if (beginsWith(start, length, "BM", 2)) return readBitmapPicture(start, length, why);
#if PXK_HAVE_PNG
    if (beginsWith(start, length, "\x89PNG\r\n\x1A\n", 8)) return readPng(start, length, why);
#endif
#if PXK_HAVE_JPEG
    if (beginsWith(start, length, "\xFF\xD8\xFF", 3)) return readJpeg(start, length, why);
#endif
    return refused(why, otherKind);
}

ImagePtr readPicture(const std::string& path, std::string& why)
{
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (!file) return refused(why, "cannot be opened");
    std::vector<uint8_t> bytes;
    size_t count = 0;
    do {
        constexpr size_t piece = size_t(1) << 20;
        bytes.resize(bytes.size() + piece);
        count = std::fread(bytes.data() + bytes.size() - piece, 1, piece, file.get());
        bytes.resize(bytes.size() - piece + count);
    } while (count > 0 && bytes.size() < static_cast<size_t>(sizeLimit));
    if (std::ferror(file.get())) return refused(why, "cannot be read");
    return readPictureBytes(bytes.data(), bytes.size(), why);
}

#if PXK_HAVE_PNG

const char* const pictureSuffix = ".png";

// Bits and gray go into a table of colours and a gray file, which are small.
bool writePicture(const std::string& path, PxkImage& image, std::string& why)
{
    const int32_t nChannels = image.nChannels == 1 ? 1 : 3;
    const size_t rowBytes = static_cast<size_t>(image.width) * nChannels;
    std::vector<uint8_t> pixels(rowBytes * static_cast<size_t>(image.height));
    uint8_t* out = pixels.data();
    const int shift = image.depth == PXK_DEPTH_1U ? 7 : 0;
    for (int32_t y = 0; y < image.height; ++y)
        for (int32_t x = 0; x < image.width; ++x)
            for (int32_t c = 0; c < nChannels; ++c) *out++ = static_cast<uint8_t>(sampleAt(image, x, y, c) >> shift);
    const uint8_t blackAndWhite[] = { 0, 0, 0, 255, 255, 255 };
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = nChannels == 3 ? PNG_FORMAT_BGR : shift ? PNG_FORMAT_RGB_COLORMAP : PNG_FORMAT_GRAY;
    png.colormap_entries = shift ? 2 : 0;
    const bool isWritten =
        png_image_write_to_file(&png, path.c_str(), 0, pixels.data(), 0, shift ? blackAndWhite : nullptr) != 0;
    if (!isWritten) why = png.message;
    return isWritten;
}

#else

const char* const pictureSuffix = ".bmp";

bool writePicture(const std::string& path, PxkImage& image, std::string& why)
{
    const char* const fault = writeBitmap(&image, path.c_str());
    if (fault) why = fault;
    return fault == nullptr;
}

#endif
