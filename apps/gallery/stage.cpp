// SPDX-License-Identifier: BSD-2-Clause
// Where exhibits run: what try.h promises them, the clock, and what they leave.
#include "gallery.h"
#include "pictures.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

extern "C" {
PxkImage *photo, *gray, *other, *ramp, *rings, *ellipse, *writing, *out;
int w, h;

PxkImage* newImage(int nChannels, int depth, int width, int height);
PxkImage* newPlanes(int nChannels, int depth, int width, int height);
void startClock(void);
void stopClock(void);
int printForPage(const char* format, ...);
}

namespace gallery {

constexpr double millisecondsEach = 60; // an exhibit is repeated for about so long,
constexpr int leastRuns = 3;            // but so often at least

static std::vector<ImagePtr> made; // by the exhibit that runs
static std::string reports, printed;
static std::chrono::steady_clock::time_point started;
static double milliseconds;

static ImagePtr orEnd(ImagePtr image)
{
    if (!image) {
        std::fputs("gallery: out of memory\n", stderr);
        std::exit(1);
    }
    return image;
}

static PxkImage* keep(ImagePtr image)
{
    made.push_back(orEnd(std::move(image)));
    clearEdges(made.back().get());
    return made.back().get();
}

static int32_t keepReport(int32_t status, const char* func, const char* context, const char*, int32_t)
{
    reports += std::string(func ? func : "") + ": " + (context ? context : "") + "\n    status "
        + std::to_string(status) + ", " + pxkErrorStr(status) + '\n';
    return status;
}

static std::string taken(std::string& text)
{
    std::string result;
    result.swap(text);
    return result;
}

// Takes off what exhibits hang on an image. Beyond its edge a filter then meets the edge samples.
static void restore(PxkImage* image)
{
    image->roi = nullptr;
    image->maskROI = nullptr;
    clearEdges(image);
}

static void setStage(const Inputs& inputs)
{
    const struct {
        PxkImage** name;
        const ImagePtr& image;
    } names[] = { { &photo, inputs.photo },    { &gray, inputs.gray },   { &other, inputs.other },
                  { &ramp, inputs.ramp },      { &rings, inputs.rings }, { &ellipse, inputs.ellipse },
                  { &writing, inputs.writing } };
    for (const auto& entry : names) {
        *entry.name = entry.image.get();
        restore(*entry.name);
    }
    w = photo->width;
    h = photo->height;
    out = newImage(3, PXK_DEPTH_8U, w, h);
    pxkRedirectError(keepReport);
    pxkSetErrMode(PXK_ErrModeParent);
    pxkSetErrStatus(PXK_StsOk);
    milliseconds = 0;
}

static Result runOnce(const Exhibit& exhibit, const Inputs& inputs)
{
    setStage(inputs);
    exhibit.run();
    const auto isOut = [](const ImagePtr& image) { return image.get() == out; };
    if (std::none_of(made.begin(), made.end(), isOut)) made.emplace_back(out);
    Result result;
    result.milliseconds = milliseconds;
    result.reports = taken(reports);
    result.text = taken(printed);
    if (exhibit.view == View::reports) result.text.swap(result.reports);
    if (exhibit.view != View::reports && exhibit.view != View::text) {
        restore(out);
        result.picture = orEnd(out->nChannels == 1 ? ImagePtr(pxkCloneImage(out)) : toColour(*out));
    }
    for (PxkImage* image : { photo, gray, other, ramp, rings, ellipse, writing }) restore(image);
    made.clear();
    return result;
}

Result perform(const Exhibit& exhibit, const Inputs& inputs, int mostRuns)
{
    Result best;
    double spent = 0;
    for (int run = 0; run < mostRuns && (run < leastRuns || spent < millisecondsEach); ++run) {
        Result result = runOnce(exhibit, inputs);
        spent += result.milliseconds;
        const bool hasFailed = !result.reports.empty();
        if (run == 0 || hasFailed || result.milliseconds < best.milliseconds) best = std::move(result);
        if (hasFailed) break;
    }
    return best;
}

} // namespace gallery

PxkImage* newImage(int nChannels, int depth, int width, int height)
{
    return gallery::keep(gallery::makeImage(nChannels, depth, width, height, PXK_DATA_ORDER_PIXEL));
}

PxkImage* newPlanes(int nChannels, int depth, int width, int height)
{
    return gallery::keep(gallery::makeImage(nChannels, depth, width, height, PXK_DATA_ORDER_PLANE));
}

void startClock(void)
{
    gallery::started = std::chrono::steady_clock::now();
}

void stopClock(void)
{
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - gallery::started;
    gallery::milliseconds += time.count();
}

int printForPage(const char* format, ...)
{
    char text[500];
    va_list values;
    va_start(values, format);
    const int count = std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    gallery::printed += text;
    return count;
}
