#include "bitmaps.h"
#include "gallery.h"
#include "page.h"
#include "pictures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace gallery {

const Family* const families[] = {
    &frameFamily,   &tilesFamily,   &arithFamily,       &scalarFamily, //
    &bitFamily,     &compareFamily, &alphaFamily,       &ditherFamily, //
    &bitmapFamily,  &convertFamily, &convolutionFamily, &fixedFamily,  //
    &borderFamily,  &rankFamily,    &morphologyFamily,  &statsFamily,  //
    &fourierFamily, &colourFamily,  &scaleFamily,       &warpFamily,
};

constexpr int32_t leastSide = 32;
constexpr int32_t mostSide = 1024;           // larger pictures are shown at a fraction of their size
constexpr double millisecondsEach = 60;      // an exhibit is repeated for about so long,
constexpr int leastRuns = 3, usualRuns = 20; // but so often at least and at most

struct Options {
    std::string picture; // empty: the shipped one
    std::string photos = PXK_GALLERY_PHOTOS;
    std::string folder = "gallery-page";
    int mostRuns = usualRuns;
};

static const char* const usage = "usage: gallery [-o FOLDER] [-p PHOTOS] [-r RUNS] [PICTURE.bmp]\n"
                                 "  FOLDER   where the page goes, made when missing (default: gallery-page)\n"
                                 "  PHOTOS   where the photographs that come with pxk are\n"
                                 "  RUNS     how often an exhibit is run at most, to time it (default: 20)\n"
                                 "  PICTURE  the bitmap to show (default: one of them)\n";

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
    Progress()
    {
        for (const Family* family : families) total_ += family->count;
    }

    void step(const Family& family, const char* title)
    {
        ++done_;
        if (onTerminal_)
            std::fprintf(stderr, "\r[%2zu/%zu] %-70.70s", done_, total_,
                         (std::string(family.title) + ": " + title).c_str());
        else if (last_ != &family)
            std::fprintf(stderr, "[%2zu/%zu] %s\n", done_, total_, family.title);
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

// Runs an exhibit several times and keeps the fastest run.
static Result perform(const Exhibit& exhibit, const Inputs& inputs, int mostRuns)
{
    Result best;
    double spent = 0;
    for (int run = 0; run < mostRuns && (run < leastRuns || spent < millisecondsEach); ++run) {
        Stage stage(inputs);
        exhibit.run(stage, stage.photo, stage.like(stage.photo));
        stage.result.reports = takeReports();
        spent += stage.result.milliseconds;
        const bool failed = !stage.result.reports.empty();
        if (run == 0 || failed || stage.result.milliseconds < best.milliseconds) best = std::move(stage.result);
        if (failed) break;
    }
    return best;
}

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

static Image readOrSay(const fs::path& path)
{
    std::string why;
    Image image = readPicture(path.string(), why);
    if (!image) fail(path.string() + ": " + why);
    return image;
}

static bool readInputs(const Options& options, Inputs& inputs, Page& page)
{
    const fs::path photos = options.photos;
    const fs::path picture = options.picture.empty() ? photos / "astronaut-24.bmp" : fs::path(options.picture);
    const Image whole = readOrSay(picture), second = readOrSay(photos / "chelsea-pal8.bmp"),
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
    if (const Image ink = toGray(*writing)) inputs.writing = makeInk(*ink, 128);
    return inputs.photo && inputs.gray && inputs.other && inputs.ramp && inputs.rings && inputs.ellipse
        && inputs.writing;
}

static bool save(const fs::path& folder, const std::string& name, PxkImage& image, Shot& shot)
{
    shot = { name + ".bmp", image.width, image.height };
    std::string why;
    return writePicture((folder / shot.file).string(), image, why) || fail((folder / shot.file).string() + ": " + why);
}

static bool saveStarts(const Inputs& inputs, const fs::path& folder, Page& page)
{
    const struct {
        const char *name, *sentence;
        const Image& image;
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

// False when a file could not be written; an exhibit that failed is counted.
static bool performAll(const Options& options, const Inputs& inputs, const fs::path& folder, Page& page, int& nFailed)
{
    Progress progress;
    for (const Family* family : families) {
        page.sections.push_back({ family, {} });
        for (size_t i = 0; i < family->count; ++i) {
            const Exhibit& exhibit = family->exhibits[i];
            progress.step(*family, exhibit.title);
            Card card = { exhibit.title, exhibit.sentence, perform(exhibit, inputs, options.mostRuns), {} };
            if (!card.result.reports.empty()) {
                ++nFailed;
                fail(std::string(exhibit.title) + ": " + card.result.reports);
            }
            if (card.result.picture
                && !save(folder, family->name + ("-" + std::to_string(i + 1)), *card.result.picture, card.shot))
                return false;
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
    pxkRedirectError(keepReport);
    pxkSetErrMode(PXK_ErrModeParent);

    Page page;
    Inputs inputs;
    if (!readInputs(options, inputs, page)) return 1;

    const fs::path folder = options.folder;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) return fail(options.folder + ": " + error.message()), 1;

    int nFailed = 0;
    if (!saveStarts(inputs, folder, page) || !performAll(options, inputs, folder, page, nFailed)) return 1;
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
