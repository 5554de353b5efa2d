// SPDX-License-Identifier: BSD-2-Clause
// Whether this build gives the same bits as all others (docs/exactness.md).
//
//     pxk_exactness                        prints a line for each of some fixed cases of every operation
//     pxk_exactness --compare listing.txt  counts lines that are equal and different, and shows the first that differ
//
// A line: the operation, the number of the case in its product or a photograph, the CRC-32 of what the call gets and of
// what it gives, the stored status. One with a ~ at its end may differ where floats are computed in wider registers.
#include <algorithm>
#include <cfloat>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>

#include "bitmapfile.h"
#include "support/operations.h"

namespace {

const size_t casesOfOperation = 24;

struct Crc32 {
    uint32_t state = 0xFFFFFFFFu;

    void add(uint64_t value, int32_t bytes)
    {
        for (; bytes > 0; --bytes, value >>= 8) {
            state ^= value & 0xFF;
            for (int32_t bit = 0; bit < 8; ++bit) state = state >> 1 ^ ((state & 1) != 0 ? 0xEDB88320u : 0);
        }
    }
    void add(const Scene& scene)
    {
        for (const PicturePtr& image : scene.images) {
            const int32_t bytes = (depthBits(image->spec.depth) + 7) / 8;
            image->forEachSample([&](int32_t x, int32_t y, int32_t c) { add(image->bits(x, y, c), bytes); });
        }
    }
    void add(const Numbers& numbers)
    {
        for (const double number : numbers) {
            uint64_t bits;
            memcpy(&bits, &number, sizeof bits);
            add(bits, 8);
        }
    }
    uint32_t sum() const { return ~state; }
};

struct Line {
    std::string key, result;
};

Line lineOf(const Operation& op, const Case& c, const std::string& index)
{
    const Scene scene = op.scene(c);
    Arguments arguments;
    for (const PicturePtr& image : scene.images) arguments.images.push_back(*image);
    arguments.numbers = op.numbersOf(c, scene);
    if (op.func == "pxkReduceBits")
        arguments.numbers[0] = 0; // noise comes from rand, which each C library has its own of
    Crc32 input, output;
    input.add(scene);
    input.add(arguments.numbers);
    startReports();
    found.clear();
    const int32_t status = op.call(arguments);
    output.add(scene);
    output.add(found);
    char result[40];
    snprintf(result, sizeof result, "%08X %08X %d", unsigned(input.sum()), unsigned(output.sum()), int(status));
    return { op.name + " " + index, result };
}

// ---- photographs ---------------------------------------------------------------------------------------------------

// A part of one in place of noise, over the range of any depth.
void fillFromPhoto(Picture& picture, PxkImage* photo)
{
    const int32_t bits = depthBits(picture.spec.depth);
    picture.forEachSample([&](int32_t x, int32_t y, int32_t c) {
        uint8_t pixel[4] = {};
        pxkGetPixel(photo, (x + 170) % photo->width, (y + 100) % photo->height, pixel);
        const uint32_t sample = pixel[c % photo->nChannels];
        if (isFloatDepth(picture.spec.depth)) {
            picture.setNumber(x, y, c, sample);
        } else {
            picture.setBits(x, y, c, bits < 8 ? sample > 127 : sample << (bits - 8));
        }
    });
}

Line lineOnPhoto(Operation op, PxkImage* photo)
{
    op.scene = [scene = op.scene, photo](const Case& c) {
        const Scene made = scene(c);
        for (const PicturePtr& image : made.images) fillFromPhoto(*image, photo);
        return made;
    };
    Case c = op.plainCase(3);
    c.region = Region::WHOLE;
    c.width = 120;
    c.height = 90;
    const auto& shapes = op.axes.channels;
    const bool takesColours = std::find(shapes.begin(), shapes.end(), Channels::THREE) != shapes.end();
    c.channels = takesColours && photo->nChannels == 3 ? Channels::THREE : shapes[0];
    return lineOf(op, c, photo->nChannels == 3 ? "astronaut" : "camera");
}

// ---- what has no row ------------------------------------------------------------------------------------------------

void find(const Numbers& numbers)
{
    found.insert(found.end(), numbers.begin(), numbers.end());
}

void find(const Picture& picture)
{
    picture.forEachSample([&](int32_t x, int32_t y, int32_t c) { found.push_back(picture.number(x, y, c)); });
}

// Texts, what handlers return in silence, the version, whether a counter counts, where memory begins.
void findTexts()
{
    for (int32_t status = -250; status < 10; ++status)
        for (const char* text = pxkErrorStr(status); *text != 0; ++text) found.push_back(*text);
    for (const PxkErrorCallBack handler : { pxkNulDevReport, pxkStdErrReport, pxkGuiBoxReport, pxkError })
        found.push_back(handler(PXK_StsBadArg, "func", "context", "file", 1));
    const PxkLibVersion* const version = pxkGetLibVersion();
    find({ double(version->major), double(version->minor), double(version->build), double(pxkGetErrMode()) });
    found.push_back(pxkGetKestriumCounter() != 0);
    for (void*(PXK_CALL * take)(int32_t) : { pxkMalloc, pxkwMalloc, pxkiMalloc, pxksMalloc, pxkdMalloc }) {
        void* const block = take(77);
        found.push_back(double(reinterpret_cast<uintptr_t>(block) % 32));
        pxkFree(block);
    }
}

// Images that the library makes; moments of an image itself; the colour model that has no way back.
void findImages()
{
    for (const int32_t depth : Axes().depths) {
        PxkROI* const roi = pxkCreateROI(0, 1, 1, 5, 3);
        pxkSetROI(roi, 0, 0, 1, 9, 2);
        PxkImage* const image = pxkCreateImageHeader(1, 0, depth, "GRAY", "G", PXK_DATA_ORDER_PIXEL, 0, 16, 9, 5, roi,
                                                     nullptr, nullptr, nullptr);
        if (isFloatDepth(depth)) pxkAllocateImageFP(image, 1, -2.5f);
        if (!isFloatDepth(depth)) pxkAllocateImage(image, 1, -3);
        found.push_back(pxkCheckImageHeader(image));
        find(*Picture::of(*image));
        pxkDeallocateImage(image);
        pxkDeallocateHeader(image);
        pxkDeleteROI(roi);
    }
    const PicturePtr gray = Picture::make({ PXK_DEPTH_16S, 99, 9 });
    find({ pxkSpatialMoment(*gray, 1, 2), pxkCentralMoment(*gray, 2, 0), pxkNormalizedSpatialMoment(*gray, 2, 1),
           pxkNormalizedCentralMoment(*gray, 1, 1) });
    const PicturePtr ycc = Picture::make({ PXK_DEPTH_8U, 99, 9, 3 }), rgb = ycc->copy();
    memcpy(ycc->header.colorModel, "YCC", 4);
    memcpy(ycc->header.channelSeq, "YCC", 4);
    pxkYCC2RGB(*ycc, *rgb);
    find(*rgb);
}

// What goes into small records comes out of them.
void findRecords()
{
    PxkTileInfo* const tiles = pxkCreateTileInfo(nullptr, 3, 8, 16);
    pxkSetTileInfo(tiles, nullptr, 4, 24, tiles->height);
    find({ double(tiles->id), double(tiles->width), double(tiles->height) });
    pxkDeleteTileInfo(tiles);
    const int32_t values[16] = { 1, -200, 1 << 20, -7 };
    PxkColorTwist* const twist = pxkCreateColorTwist(values, 31);
    find(Numbers(twist->data, twist->data + 16));
    pxkDeleteColorTwist(twist);
}

Line lineOf(const std::string& name, void (*findNumbers)())
{
    startReports();
    found.clear();
    findNumbers();
    Crc32 crc;
    crc.add(found);
    char result[40];
    snprintf(result, sizeof result, "%08X %08X 0", unsigned(found.size()), unsigned(crc.sum()));
    return { name + " all", result };
}

// ---- the listing ---------------------------------------------------------------------------------------------------

std::vector<Line> linesOfBuild()
{
    std::vector<Line> lines = { lineOf("texts", findTexts), lineOf("images", findImages),
                                lineOf("records", findRecords) };
    BitmapFile photos[2];
    const char* const fault = readBitmap(&photos[0], PXK_PHOTOS "/camera-gray8.bmp");
    if (fault != nullptr || readBitmap(&photos[1], PXK_PHOTOS "/astronaut-24.bmp") != nullptr)
        throw std::runtime_error("no photographs in " PXK_PHOTOS);
    for (Operation op : operations()) {
        op.axes.count = casesOfOperation;
        forEachCase(op.axes, [&](const Case& c) { lines.push_back(lineOf(op, c, std::to_string(c.index))); });
        for (const BitmapFile& photo : photos) lines.push_back(lineOnPhoto(op, photo.image));
    }
    for (BitmapFile& photo : photos) releaseBitmap(&photo);
    return lines;
}

std::map<std::string, std::string> readListing(const char* name)
{
    std::map<std::string, std::string> listing;
    std::ifstream file(name);
    std::string operation, index, result;
    while (file >> operation >> index && std::getline(file >> std::ws, result))
        listing[operation + " " + index] = result;
    return listing;
}

// What this program was built with; the library may come from elsewhere.
std::string nameOfBuild()
{
    const bool isClang = std::string(__VERSION__).find("Clang") != std::string::npos;
    const char* const level = getenv("PXK_TEST_LEVEL");
    return (isClang ? "" : "GCC ") + std::string(__VERSION__) + ", " + std::to_string(8 * sizeof(void*)) + " bits"
        + (FLT_EVAL_METHOD == 2 ? ", x87" : "") + (level != nullptr ? ", " + std::string(level) : "");
}

int compare(const std::vector<Line>& lines, const std::map<std::string, std::string>& listing)
{
    int allowed = 0, different = 0, compared = 0;
    for (const Line& line : lines) {
        const auto at = listing.find(line.key);
        std::string wanted = at != listing.end() ? at->second : "nothing";
        compared += at != listing.end();
        const bool isMarked = wanted.back() == '~';
        if (isMarked) wanted.resize(wanted.size() - 2);
        if (line.result == wanted) continue;
        if (isMarked && FLT_EVAL_METHOD == 2)
            ++allowed;
        else if (++different <= 20)
            printf("%s: %s, listed %s\n", line.key.c_str(), line.result.c_str(), wanted.c_str());
    }
    const int cases = int(lines.size()), equal = cases - allowed - different;
    different += int(listing.size()) - compared; // cases that no longer exist
    printf("%-38s %7s %7s %9s %11s\n", "build", "cases", "equal", "allowed", "different");
    printf("%-38.38s %7d %7d %9d %11d\n", nameOfBuild().c_str(), cases, equal, allowed, different);
    return different != 0;
}

} // namespace

int main(int argc, char** argv)
{
    const bool isComparing = argc == 3 && std::string(argv[1]) == "--compare";
    if (argc != 1 && !isComparing) {
        fprintf(stderr, "usage: pxk_exactness [--compare LISTING]\n");
        return 2;
    }
    const std::vector<Line> lines = linesOfBuild();
    if (isComparing) return compare(lines, readListing(argv[2]));
    for (const Line& line : lines) printf("%s %s\n", line.key.c_str(), line.result.c_str());
    return 0;
}
