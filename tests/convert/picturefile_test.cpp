// SPDX-License-Identifier: BSD-2-Clause
// The reader and writer of picture files that programs use.
#include "picturefile.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "support/compare.h"
#include "support/reports.h"

TEST(PictureFile, readsWhatItWrites)
{
    const std::string path = ::testing::TempDir() + "pxk-picturefile-test" + pictureSuffix;
    const PictureSpec bytes = { PXK_DEPTH_8U, 13, 6 };
    for (const PictureSpec& spec : { bytes.ofDepth(PXK_DEPTH_1U), bytes, bytes.of(3) }) {
        const PicturePtr image = Picture::make(spec);
        memcpy(image->header.channelSeq, spec.channels == 1 ? "G\0\0" : "BGR", 4);
        std::string why;
        ASSERT_TRUE(writePicture(path, **image, why)) << why;
        const ImagePtr back = readPicture(path, why), want = toColour(**image);
        ASSERT_TRUE(back) << why;
        for (int32_t i = 0; i < 13 * 6 * 3; ++i)
            EXPECT_EQ(sampleAt(*back, i / 3 % 13, i / 39, i % 3), sampleAt(*want, i / 3 % 13, i / 39, i % 3));
    }
    std::remove(path.c_str());
    std::string why;
    EXPECT_EQ(readPicture(path, why), nullptr);
    EXPECT_EQ(why, "cannot be opened");
}

#if PXK_HAVE_PNG && PXK_HAVE_JPEG

namespace {

std::vector<uint8_t> bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

std::string reasonOf(const std::vector<uint8_t>& bytes, size_t length)
{
    std::string why;
    const ImagePtr image = readPictureBytes(bytes.data(), length, why);
    EXPECT_EQ(image == nullptr, !why.empty());
    return why;
}

const std::string photos = PXK_TEST_PHOTOS;

} // namespace

// A part of a photograph, from column 200 and row 100.
TEST(PictureFile, readsJpeg)
{
    std::string why;
    const ImagePtr whole = readPicture(photos + "/astronaut-24.bmp", why);
    const ImagePtr part = readPicture(photos + "/astronaut-part.jpg", why);
    ASSERT_TRUE(whole && part) << why;
    ASSERT_EQ(part->width, 48);
    ASSERT_EQ(part->height, 32);
    for (int32_t i = 0; i < 48 * 32 * 3; ++i) {
        const int32_t x = i / 3 % 48, y = i / 144;
        EXPECT_NEAR(sampleAt(*part, x, y, i % 3), sampleAt(*whole, 200 + x, 100 + y, i % 3), 24);
    }
}

// Where the first two corners of the rows go, counted clockwise from the top left, for each way to hold a camera.
TEST(PictureFile, turnsJpegAsItWasTaken)
{
    const int32_t corners[8][2] = { { 0, 1 }, { 1, 0 }, { 2, 3 }, { 3, 2 }, { 0, 3 }, { 1, 2 }, { 2, 1 }, { 3, 0 } };
    const std::vector<uint8_t> jpeg = bytesOf(photos + "/astronaut-part.jpg");
    std::string why;
    const ImagePtr plain = readPictureBytes(jpeg.data(), jpeg.size(), why);
    for (uint8_t way = 1; plain && way <= 8; ++way) {
        std::vector<uint8_t> turned = jpeg;
        const uint8_t exif[] = { 0xFF, 0xE1, 0,    34,   'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                                 0,    1,    0x01, 0x12, 0,   3,   0,   0,   0, 1, 0,   way, 0, 0,  0, 0, 0, 0 };
        turned.insert(turned.begin() + 2, std::begin(exif), std::end(exif));
        const ImagePtr image = readPictureBytes(turned.data(), turned.size(), why);
        ASSERT_TRUE(image && image->width == (way < 5 ? 48 : 32)) << why;
        for (int32_t i = 0; i < 6; ++i) {
            const int32_t corner = corners[way - 1][i / 3];
            EXPECT_EQ(
                sampleAt(*image, corner % 3 == 0 ? 0 : image->width - 1, corner < 2 ? 0 : image->height - 1, i % 3),
                sampleAt(*plain, i / 3 * 47, 0, i % 3));
        }
    }
}

// Cut short, claiming more than they can hold, and with bytes of noise in them: a picture or a reason.
TEST(PictureFile, refusesWhatIsNotInTheFile)
{
    startReports();
    const std::string path = ::testing::TempDir() + "pxk-picturefile-hostile.png";
    std::string why;
    const ImagePtr part = readPicture(photos + "/astronaut-part.jpg", why);
    ASSERT_TRUE(part && writePicture(path, *part, why)) << why;
    std::vector<uint8_t> png = bytesOf(path), jpeg = bytesOf(photos + "/astronaut-part.jpg");
    std::remove(path.c_str());
    EXPECT_NE(reasonOf(png, png.size() / 2), "");
    EXPECT_EQ(reasonOf(jpeg, jpeg.size() / 2), "the file ends in the middle of the picture");
    EXPECT_EQ(reasonOf(jpeg, 2), "not a BMP, PNG or JPEG file");

    Random random(1);
    for (const std::vector<uint8_t>& good : { png, jpeg, bytesOf(photos + "/text-1bit.bmp") })
        for (int32_t n = 0; n < 300; ++n) {
            std::vector<uint8_t> bad = good;
            for (int32_t k = 0; k < 4; ++k)
                bad[random.oneIn(2) ? random.below(60) : random.below(static_cast<int32_t>(bad.size()))] =
                    static_cast<uint8_t>(random.below(256));
            reasonOf(bad, bad.size());
        }
    EXPECT_TRUE(recordedReports().empty());
    pxkSetErrStatus(PXK_StsOk);

    png[16] = png[20] = 0x08; // 134 million pixels each way
    EXPECT_EQ(reasonOf(png, png.size()), "too large");
    png[16] = png[20] = 0;
    png[17] = png[21] = 0x01, png[20] = 0; // 65 thousand and more each way
    png[21] = 0, png[22] = 0x20;
    EXPECT_EQ(reasonOf(png, png.size()), "the file is too short for the picture");
    const uint8_t start[] = { 0xFF, 0xC2 }; // the frame's head: five bytes on, height and width
    const auto frame = std::search(jpeg.begin(), jpeg.end(), start, start + 2);
    frame[5] = frame[7] = 0x40;
    EXPECT_EQ(reasonOf(jpeg, jpeg.size()), "the file is too short for the picture");
}

#endif
