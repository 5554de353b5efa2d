// SPDX-License-Identifier: BSD-2-Clause
// Whether this build gives the same bits as all others (docs/exactness.md).
//
//     pxk_exactness                        prints a line for each of some fixed cases of every operation
//     pxk_exactness --compare listing.txt  counts lines that are equal and different, and shows the first that differ
//     pxk_exactness --mark listing.txt     prints the listing, with ~ behind lines that differ here
//
// A line: the operation, the number of the case in its product or a photograph, the CRC-32 of what the call gets and of
// what it gives, the stored status. Lines with ~ may differ where floats are computed in wider registers.
#include <algorithm>
#include <cfloat>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>

#include "bitmapfile.h"
#include "further_operations.h"

namespace {

const size_t casesOfOperation = 20;
const bool isWide = FLT_EVAL_METHOD == 2;

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
            const PictureSpec& spec = image->spec;
            for (int32_t y = 0; y < spec.height; ++y)
                for (int32_t x = 0; x < spec.width; ++x)
                    for (int32_t c = 0; c < spec.channels; ++c)
                        add(image->bits(x, y, c), (depthBits(spec.depth) + 7) / 8);
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
    bool isMarked = false; // in a listing
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

// A shipped photograph as the library reads it, a byte a sample.
struct Photo {
    std::string name;
    int32_t width, height, channels;
    std::vector<uint8_t> samples;

    uint32_t sample(int32_t x, int32_t y, int32_t c) const
    {
        return samples[size_t((y % height * width + x % width) * channels + c % channels)];
    }
};

Photo readPhoto(const std::string& name)
{
    BitmapFile file;
    const char* const fault = readBitmap(&file, (PXK_PHOTOS "/" + name + ".bmp").c_str());
    if (fault != nullptr) throw std::runtime_error(name + ": " + fault);
    PxkImage* const image = file.image;
    Photo photo = { name, image->width, image->height, image->nChannels, {} };
    for (int32_t y = 0; y < photo.height; ++y) {
        for (int32_t x = 0; x < photo.width; ++x) {
            uint8_t pixel[4] = {};
            pxkGetPixel(image, x, y, pixel);
            photo.samples.insert(photo.samples.end(), pixel, pixel + photo.channels);
        }
    }
    releaseBitmap(&file);
    return photo;
}

// A part of it in place of noise, over the range of any depth.
void fillFromPhoto(Picture& picture, const Photo& photo)
{
    const PictureSpec& spec = picture.spec;
    for (int32_t y = 0; y < spec.height; ++y) {
        for (int32_t x = 0; x < spec.width; ++x) {
            for (int32_t c = 0; c < spec.channels; ++c) {
                const uint32_t sample = photo.sample(x + 170, y + 100, c);
                if (isFloatDepth(spec.depth)) {
                    picture.setNumber(x, y, c, sample);
                } else {
                    const int32_t bits = depthBits(spec.depth);
                    picture.setBits(x, y, c, bits < 8 ? sample > 127 : sample << (bits - 8));
                }
            }
        }
    }
}

Line lineOf(const Photo& photo)
{
    Crc32 crc;
    for (const uint8_t sample : photo.samples) crc.add(sample, 1);
    char result[60];
    snprintf(result, sizeof result, "%08X %08X %d", unsigned(photo.samples.size()), unsigned(crc.sum()),
             photo.channels);
    return { photo.name + " whole", result };
}

Line lineOnPhoto(Operation op, const Photo& photo)
{
    op.scene = [scene = op.scene, &photo](const Case& c) {
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
    c.channels = takesColours && photo.channels == 3 ? Channels::THREE : shapes[0];
    return lineOf(op, c, photo.name);
}

// ---- the listing ---------------------------------------------------------------------------------------------------

std::vector<Line> linesOfBuild()
{
    std::vector<Operation> all = operations();
    for (const Operation& op : furtherOperations()) all.push_back(op);
    std::vector<Photo> photos;
    std::vector<Line> lines;
    for (const char* name : { "camera-gray8", "astronaut-24", "chelsea-pal8", "rocket-rle8", "text-1bit" }) {
        photos.push_back(readPhoto(name));
        lines.push_back(lineOf(photos.back()));
    }
    for (Operation& op : all) {
        op.axes.count = casesOfOperation;
        forEachCase(op.axes, [&](const Case& c) { lines.push_back(lineOf(op, c, std::to_string(c.index))); });
        for (size_t k = 0; k < 2; ++k) lines.push_back(lineOnPhoto(op, photos[k]));
    }
    return lines;
}

std::map<std::string, Line> readListing(const char* name)
{
    std::map<std::string, Line> listing;
    std::ifstream file(name);
    std::string operation, index, input, output, status, mark;
    while (file >> operation >> index >> input >> output >> status && std::getline(file, mark)) {
        const std::string key = operation + " " + index;
        listing[key] = { key, input + " " + output + " " + status, mark == " ~" };
    }
    return listing;
}

// What this program was built with; the library may come from elsewhere.
std::string nameOfBuild()
{
    const bool isClang = std::string(__VERSION__).find("Clang") != std::string::npos;
    const char* const level = getenv("PXK_TEST_LEVEL");
    return (isClang ? "" : "GCC ") + std::string(__VERSION__) + ", " + std::to_string(8 * sizeof(void*)) + " bits"
        + (isWide ? ", x87" : "") + (level != nullptr ? ", " + std::string(level) : "");
}

int compare(const std::vector<Line>& lines, const std::map<std::string, Line>& listing)
{
    int allowed = 0, different = 0, compared = 0;
    for (const Line& line : lines) {
        const auto at = listing.find(line.key);
        const Line wanted = at != listing.end() ? at->second : Line { line.key, "not in the listing" };
        compared += at != listing.end();
        if (line.result == wanted.result) continue;
        if (isWide && wanted.isMarked) {
            ++allowed;
        } else if (++different <= 20) {
            printf("%s: %s, listed %s\n", line.key.c_str(), line.result.c_str(), wanted.result.c_str());
        }
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
    const std::string mode = argc == 3 ? argv[1] : argc == 1 ? "" : "?";
    if (mode != "" && mode != "--compare" && mode != "--mark") {
        fprintf(stderr, "usage: pxk_exactness [--compare LISTING | --mark LISTING]\n");
        return 2;
    }
    std::map<std::string, Line> listing;
    if (argc == 3) listing = readListing(argv[2]);
    const std::vector<Line> lines = linesOfBuild();
    if (mode == "--compare") return compare(lines, listing);
    for (const Line& line : lines) {
        const Line listed = mode == "--mark" ? listing[line.key] : line;
        const bool isMarked = listed.isMarked || listed.result != line.result;
        printf("%s %s%s\n", line.key.c_str(), listed.result.c_str(), isMarked ? " ~" : "");
    }
    return 0;
}
