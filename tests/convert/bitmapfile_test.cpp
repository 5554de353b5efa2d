// SPDX-License-Identifier: BSD-2-Clause
// The reader and writer of bitmap files that programs and examples use.
#include <cstdio>

#include "bitmapfile.h"
#include "reference/dib.h"
#include "support/compare.h"
#include "support/reports.h"

namespace {

// A file: 14 bytes, a header of one of the sizes that programs write, a table, a gap, bits.
std::vector<uint8_t> fileOf(const Bitmap& bitmap, size_t size = 40, size_t gap = 0, bool hasAlphaMask = false)
{
    const PxkBitmapInfoHeader h = bitmap.header();
    const uint8_t* const start = reinterpret_cast<const uint8_t*>(bitmap.dib());
    std::vector<uint8_t> head(start, start + 40), table(start + 40, start + 40 + 4 * Bitmap::tableWords(h));
    if (size == 12) { // and three bytes a colour
        head = { 12, 0, 0, 0, uint8_t(h.biWidth), 0, uint8_t(h.biHeight), 0, 1, 0, uint8_t(h.biBitCount), 0 };
        for (size_t i = table.size(); i > 0; i -= 4) table.erase(table.begin() + i - 1);
    }
    if (size > 40 && h.biBitCount > 8) head.insert(head.end(), table.begin(), table.end()), table.clear();
    if (hasAlphaMask) head[16] = 6, table.insert(table.end(), { 0, 0, 0, 0xFF });
    head.resize(std::max(head.size(), size), 0xEE);
    head[0] = static_cast<uint8_t>(size);
    const size_t offset = 14 + head.size() + table.size() + gap;
    std::vector<uint8_t> file = { 'B', 'M', 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE };
    for (int32_t shift = 0; shift < 32; shift += 8) file.push_back(static_cast<uint8_t>(offset >> shift));
    file.insert(file.end(), head.begin(), head.end());
    file.insert(file.end(), table.begin(), table.end());
    file.resize(offset, 0xEE);
    file.insert(file.end(), bitmap.bits(), bitmap.bits() + Bitmap::rowBytes(h) * std::abs(h.biHeight));
    return file;
}

Bitmap rampBitmap(int32_t bits, uint32_t colors, Random& random)
{
    Bitmap bitmap(bitmapHeader(11, 3, bits, 0, colors), true, random);
    const int32_t count = Bitmap::tableWords(bitmap.header());
    for (int32_t i = 0; i < count; ++i) bitmap.setWord(i, 0x010101u * static_cast<uint32_t>(i * 255 / (count - 1)));
    return bitmap;
}

// The colours of what was read are those of `want`.
template <class F> void expectColors(const BitmapFile& file, const F& want)
{
    const PicturePtr got = Picture::of(*file.image);
    for (int32_t i = 0; i < got->spec.width * got->spec.height; ++i) {
        const int32_t x = i % got->spec.width, y = i / got->spec.width;
        const model::Color a = want(x, y), b = model::colorInImage(*got, x, y);
        EXPECT_TRUE(a.blue == b.blue && a.green == b.green && a.red == b.red) << x << ", " << y;
    }
}

} // namespace

// All headers and depths, masks, short tables, gaps in front of the bits: what is read is the bitmap's colours, black
// behind the table.
TEST(BitmapFile, readsWhatIsInTheFile)
{
    startReports();
    for (uint64_t seed = 1; seed <= 600 && !::testing::Test::HasFailure(); ++seed) {
        Random random(seed);
        const int32_t size = random.oneOf({ 12, 40, 40, 52, 56, 64, 108, 124 });
        const int32_t bits = random.oneOf({ 1, 4, 8, 16, 24, 32 }), gap = random.oneOf({ 0, 4, 7 });
        const uint32_t colors = size == 12 ? 0 : random.oneOf({ 0u, 2u, 300u });
        const bool mayHaveMasks = (bits == 16 || bits == 32) && size != 12 && size != 64;
        const bool isRamp = random.oneIn(2) && bits <= 8, hasMasks = mayHaveMasks && random.oneIn(2);
        const auto header = bitmapHeader(11, size == 12 ? 3 : -3, bits, hasMasks ? 3 : 0, colors);
        const Bitmap bitmap = isRamp ? rampBitmap(bits, colors, random) : Bitmap(header, true, random);
        const bool hasAlphaMask = hasMasks && size == 40 && random.oneIn(2);
        const std::vector<uint8_t> bytes = fileOf(bitmap, size_t(size), size_t(gap), hasAlphaMask);
        SCOPED_TRACE(::testing::Message() << size << " bytes, " << bits << " bits, colours " << colors);
        BitmapFile file;
        ASSERT_STREQ(readBitmapBytes(&file, bytes.data(), bytes.size()), nullptr);
        expectColors(file, [&](int32_t x, int32_t y) { return model::colorInDib(bitmap, x, y); });
        releaseBitmap(&file);
        expectNoReports();
    }
}

TEST(BitmapFile, refusesWhatIsNotInTheFile)
{
    startReports();
    Random random(1);
    const Bitmap bitmap = rampBitmap(8, 0, random);
    const std::vector<uint8_t> good = fileOf(bitmap);
    const struct {
        const char* text;
        size_t at;
        int32_t value, bytes;
        size_t length = 0;
    } rows[] = {
        { "", 0, 'B', 1 },
        { "not a bitmap file", 0, 'C', 1 },
        { "too short for a bitmap file", 0, 'B', 1, 53 },
        { "the bits end behind the end of the file", 0, 'B', 1, good.size() - 1 },
        { "the bits begin inside the table", 10, 54 + 1023, 4 },
        { "the bits begin behind the end of the file", 10, -1, 4 },
        { "the bits begin inside the table", 14, 108, 4 },
        { "a header of a size that is none of 12 to 124 bytes", 14, 41, 4 },
        { "too short for a bitmap file", 14, 124, 4, 100 },
        { "bad width or height", 18, 0, 4 },
        { "bad width or height", 22, INT32_MIN, 4 },
        { "too large", 18, INT32_MAX, 4 },
        { "bad bits a pixel", 28, 2, 2 },
        { "Incorrect format of BI_RLE8 DIB (mismatch biHeight or biWidth)", 30, 1, 4 }, // noise as code
    };
    for (const auto& row : rows) {
        std::vector<uint8_t> file = good;
        memcpy(&file[row.at], &row.value, row.bytes);
        BitmapFile opened;
        const char* const text = readBitmapBytes(&opened, file.data(), row.length != 0 ? row.length : file.size());
        if (text == nullptr) releaseBitmap(&opened);
        EXPECT_EQ(std::string(text != nullptr ? text : ""), row.text);
    }
    EXPECT_TRUE(recordedReports().empty());
    std::vector<uint8_t> coded = good;
    coded[30] = 1, coded[19] = coded[23] = 0x40; // 16,000 by 16,000 pixels in 36 bytes of code
    BitmapFile opened;
    EXPECT_STREQ(readBitmapBytes(&opened, coded.data(), coded.size()), "the bits are too few for the picture");
}

TEST(BitmapFile, writesWhatItReads)
{
    startReports();
    const std::string path = ::testing::TempDir() + "pxk-bitmapfile-test.bmp";
    const PictureSpec bytes = { PXK_DEPTH_8U, 13, 6 };
    for (const PictureSpec& spec : { bytes.ofDepth(PXK_DEPTH_1U), bytes, bytes.of(3), bytes.of(4).withAlpha() }) {
        const PicturePtr image = Picture::make(spec);
        memcpy(image->header.channelSeq, spec.channels == 1 ? "G\0\0" : "BGR", 4);
        ASSERT_EQ(writeBitmap(*image, path.c_str()), nullptr);
        BitmapFile file;
        ASSERT_EQ(readBitmap(&file, path.c_str()), nullptr);
        EXPECT_EQ(file.image->nChannels, std::min(spec.channels, 3));
        EXPECT_EQ(file.image->depth, spec.depth);
        expectColors(file, [&](int32_t x, int32_t y) { return model::colorInImage(*image, x, y); });
        releaseBitmap(&file);
    }
    std::remove(path.c_str());
    BitmapFile file;
    EXPECT_STREQ(readBitmap(&file, path.c_str()), "cannot be opened");
    expectNoReports();
}
