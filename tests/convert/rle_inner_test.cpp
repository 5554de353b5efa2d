// SPDX-License-Identifier: BSD-2-Clause
// Run-length coded bits, both ways.
#include "convert/ownrle.h"

#include "reference/rle.h"
#include "support/bitmap.h"
#include "support/reports.h"

namespace {

PxkBitmapInfoHeader rleHeader(bool isRle8, int32_t width, int32_t height)
{
    return bitmapHeader(width, height, isRle8 ? 8 : 4, isRle8 ? PXK_BI_RLE8 : PXK_BI_RLE4);
}

int32_t rleStep(bool isRle8, int32_t width)
{
    return isRle8 ? (width + 3) / 4 * 4 : ((width + 1) / 2 + 3) / 4 * 4;
}

std::string faultText(bool isRle8, const std::string& fault)
{
    const std::string what = fault == "bad Delta" ? "bad Delta command" : "mismatch " + fault;
    return std::string("Incorrect format of BI_RLE") + (isRle8 ? "8" : "4") + " DIB (" + what + ")";
}

// Decodes a stream that lies in front of an unreadable page, zeros behind it as far as the reference asks for them, and
// compares block and report with the model's.
void expectDecoded(bool isRle8, int32_t width, int32_t height, std::vector<uint8_t> stream, bool isOdd)
{
    const size_t room = static_cast<size_t>((2 * width + 2) * (height + 1) + 260);
    stream.resize(std::max(room, stream.size()), 0);
    if (stream.size() > room) stream.resize(room);
    Block block(room + (isOdd ? 1 : 0));
    memcpy(block.data + (isOdd ? 1 : 0), stream.data(), room);
    const model::Decoded want =
        model::decodeRle(isRle8, width, height, stream, reinterpret_cast<uintptr_t>(block.data + isOdd) % 2 != 0);
    PxkBitmapInfoHeader header = rleHeader(isRle8, width, height);
    startReports();
    const OwnBuffer<uint8_t> got = ownDecompressRLESep(&header, block.data + (isOdd ? 1 : 0));
    if (want.fault.empty()) {
        expectNoReports();
        ASSERT_NE(got, nullptr);
        EXPECT_EQ(std::vector<uint8_t>(got.get(), got.get() + want.rows.size()), want.rows);
    } else {
        EXPECT_EQ(got, nullptr);
        expectReports({ { -5, "ownDecompressRLESep", faultText(isRle8, want.fault) } });
    }
}

// Code that mostly keeps to the rules: rows are filled exactly, literals padded to even addresses.
std::vector<uint8_t> someStream(bool isRle8, int32_t width, int32_t height, bool isOdd, Random& random)
{
    std::vector<uint8_t> s;
    const auto put = [&](int32_t byte) { s.push_back(static_cast<uint8_t>(byte)); };
    const int32_t faultRate = random.oneOf({ 5, 40, 1000000 });
    for (int32_t y = 0; y < height; ++y) {
        int32_t x = 0;
        while (x < width && !random.oneIn(faultRate)) {
            const int32_t left = std::min(width - x, 255),
                          count = random.between(1, random.oneIn(2) ? left : std::min(left, 5));
            if (random.oneIn(12) && left > 3) {
                // What is read again: two pixels of level dx, then dy pixels of the level that follows. At times they
                // would end behind the right edge.
                const int32_t dx = random.oneIn(9) ? left - random.below(3) : random.below(left - 2);
                const int32_t dy = random.oneIn(20) ? 0 : 1;
                put(0), put(2), put(dx), put(dy), put(random.below(256));
                x += dx + 2 + dy;
                y += dy;
            } else if (count >= 3 && random.oneIn(2)) {
                put(0), put(count);
                for (int32_t i = 0; i < (isRle8 ? count : (count + 1) / 2); ++i) put(random.below(256));
                if ((s.size() + isOdd) % 2 != 0) put(random.below(256));
                x += count;
            } else {
                put(count), put(random.below(256));
                x += count;
            }
        }
        if (y + 1 < height || random.oneIn(2)) put(0), put(0);
    }
    put(0), put(1);
    return s;
}

} // namespace

TEST(RleDecode, matchesModel)
{
    for (uint64_t seed = 1; seed <= 20000 && !::testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        const bool isRle8 = random.oneIn(2), isOdd = random.oneIn(3);
        const int32_t width = random.oneIn(10) ? random.between(250, 600) : random.between(1, 40);
        const int32_t height = random.between(1, 6);
        std::vector<uint8_t> stream = someStream(isRle8, width, height, isOdd, random);
        if (random.oneIn(10))
            for (uint8_t& byte : stream) byte = static_cast<uint8_t>(random.oneIn(2) ? random.below(4) : random.next());
        expectDecoded(isRle8, width, height, stream, isOdd);
    }
}

TEST(RleDecode, refusesImpossibleSizes)
{
    const uint8_t stream[4] = { 0, 1, 0, 0 };
    startReports();
    for (const auto& [width, height] : { std::pair(5, -1), std::pair(-5, 1), std::pair(5, INT32_MIN),
                                         std::pair(INT32_MAX, INT32_MAX), std::pair(65536, 65536) }) {
        PxkBitmapInfoHeader header = rleHeader(true, width, height);
        const bool isNegative = width < 0 || height < 0;
        EXPECT_EQ(ownDecompressRLESep(&header, stream), nullptr);
        expectReports({ { isNegative ? -5 : -4, "ownDecompressRLESep",
                          isNegative ? faultText(true, "biHeight or biWidth")
                                     : "Not enough memory to decompress BI_RLE8 DIB at DIB" } });
    }
}

// ---- encoding ------------------------------------------------------------------------------------------------------

namespace {

enum RowKind { NOISE, RUNS, PAIRS, ONE_LEVEL, FEW_LEVELS, ROW_KINDS };

// Pixels of a row, of at most `levels` levels.
std::vector<uint8_t> someRow(RowKind kind, int32_t width, int32_t levels, Random& random)
{
    std::vector<uint8_t> row;
    while (static_cast<int32_t>(row.size()) < width) {
        const auto level = [&](int32_t limit) { return static_cast<uint8_t>(random.below(limit)); };
        const uint8_t a = kind == ONE_LEVEL ? static_cast<uint8_t>(levels - 1) : level(levels), b = level(levels);
        const int32_t length = random.between(1, random.oneIn(10) ? 600 : 12);
        switch (kind) {
        case NOISE: row.push_back(a); break;
        case FEW_LEVELS: row.push_back(level(2)); break;
        case PAIRS:
            for (int32_t i = 0; i < length; ++i) row.push_back(i % 2 == 0 ? a : b);
            break;
        default: row.insert(row.end(), length, a); break;
        }
    }
    row.resize(width);
    return row;
}

void expectCoded(bool isRle8, const std::vector<std::vector<uint8_t>>& rows)
{
    const int32_t width = static_cast<int32_t>(rows[0].size()), height = static_cast<int32_t>(rows.size());
    const int32_t step = rleStep(isRle8, width);
    Block bits(static_cast<size_t>(step * height));
    memset(bits.data, 0, bits.size);
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            uint8_t& byte = bits.data[y * step + (isRle8 ? x : x / 2)];
            byte = static_cast<uint8_t>(isRle8 || x % 2 != 0 ? byte | rows[y][x] : rows[y][x] << 4);
        }
    const std::vector<uint8_t> plain(bits.data, bits.data + bits.size);
    PxkBitmapInfoHeader header = rleHeader(isRle8, width, height);
    startReports();
    EXPECT_EQ(ownCompressRLESep(&header, bits.data), 0);
    expectNoReports();
    EXPECT_TRUE(bits.guardsIntact());
    if (header.biCompression == 0) {
        EXPECT_EQ(std::vector<uint8_t>(bits.data, bits.data + bits.size), plain);
        EXPECT_EQ(header.biSizeImage, 0xABCDu);
        return;
    }
    ASSERT_LT(header.biSizeImage, plain.size());
    const std::vector<uint8_t> stream(bits.data, bits.data + header.biSizeImage);
    const model::Decoded decoded = model::decodeRle(isRle8, width, height, stream, false);
    EXPECT_EQ(decoded.fault, "");
    EXPECT_EQ(decoded.consumed, stream.size());
    // Half bytes behind an odd width may hold the other half of a run's value.
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            const uint8_t byte = decoded.rows[y * step + (isRle8 ? x : x / 2)];
            ASSERT_EQ(isRle8 ? byte : x % 2 == 0 ? byte >> 4 : byte & 15, rows[y][x]) << "pixel " << x << ", row " << y;
        }
}

} // namespace

TEST(RleEncode, isInverseAtAllWidths)
{
    for (const bool isRle8 : { false, true })
        for (int32_t width = 1; width <= 70 && !::testing::Test::HasFailure(); ++width)
            for (int32_t kind = 0; kind < ROW_KINDS; ++kind)
                for (uint64_t seed = 1; seed <= 4; ++seed) {
                    SCOPED_TRACE(std::string(isRle8 ? "RLE8" : "RLE4") + ", width " + std::to_string(width) + ", kind "
                                 + std::to_string(kind) + ", seed " + std::to_string(seed));
                    Random random(seed * 1000 + static_cast<uint64_t>(width));
                    std::vector<std::vector<uint8_t>> rows;
                    for (int32_t y = 0; y < 3; ++y)
                        rows.push_back(someRow(static_cast<RowKind>(kind), seed == 4 ? width * 17 : width,
                                               isRle8 ? 256 : 16, random));
                    expectCoded(isRle8, rows);
                }
}

// The steps of four-bit pixels: a run, its exceptions, and what is left at the end of a row of 64.
TEST(RleEncode, knownRowsOfFourBits)
{
    const std::pair<std::vector<uint8_t>, std::vector<uint8_t>> cases[] = {
        { { 1, 2, 3, 2, 5 }, { 2, 0x12, 1, 0x30, 1, 0x20, 60, 0x55 } },
        { { 1, 2, 3, 4, 3 }, { 2, 0x12, 62, 0x34 } },
        { { 1, 2, 1, 2, 1, 7 }, { 5, 0x12, 59, 0x77 } },
        { { 1, 2, 3, 4, 5, 6, 5, 9 }, { 0, 7, 0x12, 0x34, 0x56, 0x50, 57, 0x99 } },
    };
    for (const auto& [opening, code] : cases) {
        std::vector<uint8_t> row = opening, want = code;
        while (row.size() < 64) row.push_back(code.back() == 0x34 ? row[row.size() - 2] : row.back());
        want.insert(want.end(), { 0, 0, 0, 1 });
        Block bits(32);
        for (size_t i = 0; i < 32; ++i) bits.data[i] = static_cast<uint8_t>(row[2 * i] << 4 | row[2 * i + 1]);
        PxkBitmapInfoHeader header = rleHeader(false, 64, 1);
        EXPECT_EQ(ownCompressRLESep(&header, bits.data), 0);
        ASSERT_EQ(header.biCompression, 2u);
        EXPECT_EQ(std::vector<uint8_t>(bits.data, bits.data + header.biSizeImage), want);
    }
}
