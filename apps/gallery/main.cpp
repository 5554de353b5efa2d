// SPDX-License-Identifier: BSD-2-Clause
#include "gallery.h"
#include "page.h"
#include "pictures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace gallery {

constexpr int32_t leastSide = 32;
constexpr int32_t mostSide =
    400; // larger pictures are shown at a fraction of their size: the page has room for so many
constexpr int usualRuns = 20;

struct Options {
    std::string picture; // empty: the shipped one
    std::string photos = PXK_GALLERY_PHOTOS;
    std::string folder = "gallery-page";
    int mostRuns = usualRuns;
};

static const char* const usage = "usage: gallery [-o FOLDER] [-p PHOTOS] [-r RUNS] [PICTURE]\n"
                                 "  FOLDER   where the page goes, made when missing (default: gallery-page)\n"
                                 "  PHOTOS   where the photographs that come with pxk are\n"
                                 "  RUNS     how often an exhibit is run at most, to time it (default: 20)\n"
                                 "  PICTURE  the BMP, PNG or JPEG file to show (default: one of them)\n";

static bool isTerminal()
{
#if defined(_WIN32)
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

// On a terminal one line that is written over; elsewhere a line for each family.
class Progress {
public:
    explicit Progress(const std::vector<Family>& families)
    {
        for (const Family& family : families) total_ += family.exhibits.size();
    }

    void step(const Family& family, const std::string& title)
    {
        ++done_;
        if (onTerminal_)
            std::fprintf(stderr, "\r[%2zu/%zu] %-70.70s", done_, total_, (family.title + ": " + title).c_str());
        else if (last_ != &family)
            std::fprintf(stderr, "[%2zu/%zu] %s\n", done_, total_, family.title.c_str());
        std::fflush(stderr);
        last_ = &family;
    }

    void end() const
    {
        if (onTerminal_) std::fprintf(stderr, "\r%-80s\r", "");
    }

private:
    const bool onTerminal_ = isTerminal();
    const Family* last_ = nullptr;
    size_t done_ = 0, total_ = 0;
};

// The largest size of the same shape that is not above the limit, with both sides long enough for the exhibits.
static std::pair<int32_t, int32_t> shownSize(int32_t width, int32_t height)
{
    const int32_t longest = std::max(width, height);
    if (longest <= mostSide) return { width, height };
    const auto part = [longest](int32_t side) {
        return std::max(std::min(side, leastSide),
                        static_cast<int32_t>(static_cast<int64_t>(side) * mostSide / longest));
    };
    return { part(width), part(height) };
}

static bool fail(const std::string& message)
{
    std::fprintf(stderr, "gallery: %s\n", message.c_str());
    return false;
}

static ImagePtr readOrSay(const fs::path& path)
{
    std::string why;
    ImagePtr image = readPicture(path.string(), why);
    if (!image)
        fail(path.string() + ": " + why + ".\nConvert it, for instance with ImageMagick: convert '" + path.string()
             + "' BMP3:picture.bmp");
    return image;
}

static bool readInputs(const Options& options, Inputs& inputs, Page& page)
{
    const fs::path photos = options.photos;
    const fs::path picture = options.picture.empty() ? photos / "astronaut-24.bmp" : fs::path(options.picture);
    const ImagePtr whole = readOrSay(picture), second = readOrSay(photos / "chelsea-pal8.bmp"),
                   writing = readOrSay(photos / "text-1bit.bmp");
    if (!whole || !second || !writing) return false;

    const auto [w, h] = shownSize(whole->width, whole->height);
    page.input = picture.filename().string();
    page.size = std::to_string(whole->width) + " × " + std::to_string(whole->height) + " pixels";
    if (w != whole->width) page.size += ", shown at " + std::to_string(w) + " × " + std::to_string(h);
    if (w < leastSide || h < leastSide)
        return fail(picture.string() + ": the page wants a picture of at least " + std::to_string(leastSide)
                    + " pixels each way");

    inputs.photo = fitTo(*whole, w, h);
    inputs.other = fitTo(*second, w, h);
    inputs.ramp = makeRamp(w, h);
    inputs.rings = makeRings(w, h);
    inputs.ellipse = makeEllipse(w, h);
    if (inputs.photo) inputs.gray = toGray(*inputs.photo);
    if (inputs.gray) page.detail = findDetail(*inputs.gray);
    if (const ImagePtr ink = toGray(*writing)) inputs.writing = makeInk(*ink, 128);
    return inputs.photo && inputs.gray && inputs.other && inputs.ramp && inputs.rings && inputs.ellipse
        && inputs.writing;
}

static bool save(const fs::path& folder, const std::string& name, PxkImage& image, Shot& shot)
{
    shot = { name + pictureSuffix, image.width, image.height };
    std::string why;
    return writePicture((folder / shot.file).string(), image, why) || fail((folder / shot.file).string() + ": " + why);
}

static bool saveStarts(const Inputs& inputs, const fs::path& folder, Page& page)
{
    const struct {
        const char *name, *sentence;
        const ImagePtr& image;
    } starts[] = {
        { "photo", "the picture, 8 bits a channel, in the order blue, green, red", inputs.photo },
        { "gray", "the same with one channel", inputs.gray },
        { "other", "a second picture", inputs.other },
        { "ramp", "0 at the left to 255 at the right", inputs.ramp },
        { "rings", "circles drawn by this program", inputs.rings },
        { "ellipse", "one bit a pixel, for a mask", inputs.ellipse },
        { "writing", "one bit a pixel, ink is 1", inputs.writing },
    };
    for (const auto& start : starts) {
        Shot shot;
        if (!save(folder, std::string("start-") + start.name, *start.image, shot)) return false;
        page.starts.push_back({ start.name, start.sentence, shot });
    }
    return true;
}

static bool saveText(const fs::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return file.good() || fail(path.string() + ": can't be written");
}

// The picture on the left of a pair: one to start from, or what an exhibit before it gave.
static Shot shotBefore(const Page& page, const std::string& name)
{
    for (const Start& start : page.starts)
        if (start.name == name) return start.shot;
    for (const Section& section : page.sections)
        for (const Card& card : section.cards)
            if (card.exhibit->name == name) return card.shot;
    return {};
}

// False when a file could not be written; an exhibit that failed is counted.
static bool performAll(const Options& options, const std::vector<Family>& families, const Inputs& inputs,
                       const fs::path& folder, Page& page, int& nFailed)
{
    Progress progress(families);
    for (const Family& family : families) {
        page.sections.push_back({ &family, {} });
        for (const Exhibit& exhibit : family.exhibits) {
            progress.step(family, exhibit.title);
            Card card = { &exhibit, perform(exhibit, inputs, options.mostRuns), {}, shotBefore(page, exhibit.before) };
            if (!card.result.reports.empty()) {
                ++nFailed;
                fail(exhibit.title + ": " + card.result.reports);
            }
            if (!saveText(folder / programFile(exhibit), exhibit.program)) return false;
            if (card.result.picture && !save(folder, exhibit.name, *card.result.picture, card.shot)) return false;
            card.result.picture.reset();
            page.sections.back().cards.push_back(std::move(card));
        }
    }
    progress.end();
    return true;
}

static bool readOptions(int argc, char** argv, Options& options)
{
    for (int i = 1; i < argc; ++i) {
        const bool more = i + 1 < argc;
        if (std::strcmp(argv[i], "-o") == 0 && more)
            options.folder = argv[++i];
        else if (std::strcmp(argv[i], "-p") == 0 && more)
            options.photos = argv[++i];
        else if (std::strcmp(argv[i], "-r") == 0 && more)
            options.mostRuns = std::max(1, std::atoi(argv[++i]));
        else if (argv[i][0] != '-' && options.picture.empty())
            options.picture = argv[i];
        else
            return false;
    }
    return true;
}

int run(const Options& options)
{
    pxkSetErrMode(PXK_ErrModeParent);
    pxkRedirectError(pxkStdErrReport);

    Page page;
    Inputs inputs;
    if (!readInputs(options, inputs, page)) return 1;

    const fs::path folder = options.folder;
    std::error_code error;
    fs::create_directories(folder / "code", error);
    if (error) return fail(options.folder + ": " + error.message()), 1;

    const std::vector<Family> families = readFamilies();
    int nFailed = 0;
    if (!saveText(folder / "code" / "try.h", tryHeader()) || !saveStarts(inputs, folder, page)
        || !performAll(options, families, inputs, folder, page, nFailed))
        return 1;
    const fs::path index = folder / "index.html";
    if (!writePage(page, index.string())) return fail(index.string() + ": can't be written"), 1;

    std::printf("%s\n", fs::absolute(index).lexically_normal().string().c_str());
    return nFailed == 0 ? 0 : 1;
}

} // namespace gallery

int main(int argc, char** argv)
{
    gallery::Options options;
    if (!gallery::readOptions(argc, argv, options)) {
        std::fputs(gallery::usage, stderr);
        return 2;
    }
    return gallery::run(options);
}
