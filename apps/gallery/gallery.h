// The show: every operation of the library on one picture, as a page of pictures.
//
// A family is a file gallery_NAME.cpp with one table of exhibits. An exhibit is a title, a sentence, and a function
// that prepares images and runs one piece of code through SHOW. To add a family: write such a file, declare its table
// below, and name both in the list of main.cpp.
#pragma once

#include <pxk/pxk.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace gallery {

// Regions, masks and tile records are never an image's own here: exhibits keep them on the stack or in the stage.
struct ReleaseImage {
    void operator()(PxkImage* image) const { pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA); }
};
using Image = std::unique_ptr<PxkImage, ReleaseImage>;

// The pictures that exhibits start from, all of one size except `writing`. Exhibits may hang regions, masks and border
// modes on them (Stage takes them off again: the whole picture, and PXK_EDGE_CLAMP) but leave their pixels alone.
struct Inputs {
    Image photo;   // 8U, three channels, BGR, top row first
    Image gray;    // the same picture, 8U, one channel
    Image other;   // a second picture, like photo
    Image ramp;    // 0 at the left edge, 255 at the right one, like photo
    Image rings;   // circles around the middle that grow narrower outwards, like photo
    Image ellipse; // one bit: 1 inside an ellipse in the middle
    Image writing; // one bit: ink is 1
};

// What one exhibit gave.
struct Result {
    std::string code; // the C code that ran
    double milliseconds = 0;
    double pixels = 0;   // pixels worked on, for the rate
    Image picture;       // a private copy; null when the exhibit is a text
    std::string text;    // what to show in place of a picture
    std::string reports; // what the library reported and the exhibit did not expect
};

// The handler that the program installs keeps reports until somebody takes them.
int32_t keepReport(int32_t status, const char* func, const char* context, const char* file, int32_t line);
std::string takeReports();

// One performance of one exhibit: lends the inputs, owns what the exhibit makes, measures the call.
class Stage {
public:
    explicit Stage(const Inputs& inputs);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // New images, released with the stage. Out of memory ends the program.
    PxkImage* like(const PxkImage* model, int32_t fill = 0);
    PxkImage* blank(int32_t nChannels, int32_t depth, int32_t width, int32_t height, int32_t fill = 0,
                    int32_t dataOrder = PXK_DATA_ORDER_PIXEL, int32_t alphaChannel = 0);
    PxkImage* clone(PxkImage* image);
    PxkImage* adopt(Image image);

    // The rate counts the result's pixels unless told otherwise.
    void worked(double pixels) { result.pixels = pixels; }

    template <class Call> void measure(const char* code, Call call)
    {
        const auto start = std::chrono::steady_clock::now();
        call();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        result.code = code;
        result.milliseconds = time.count();
    }

    // Takes a copy of the image as the result to show.
    void picture(PxkImage* image);

    PxkImage *photo, *gray, *other, *ramp, *rings, *ellipse, *writing;
    Result result;

private:
    void restoreInputs();

    std::vector<Image> owned_;
};

// Runs the code, measured. The caption is the code itself, so the page prints what ran.
#define MEASURE(stage, ...) (stage).measure(#__VA_ARGS__, [&] { __VA_ARGS__; })

// The same, and `image` is the result to show.
#define SHOW(stage, image, ...) ((stage).measure(#__VA_ARGS__, [&] { __VA_ARGS__; }), (stage).picture(image))

struct Exhibit {
    const char* title;
    const char* sentence;
    void (*run)(Stage& s, PxkImage* photo, PxkImage* out); // out: black, like photo
};

struct Family {
    const char* name; // also the beginning of file names
    const char* title;
    const char* sentence;
    const Exhibit* exhibits;
    size_t count;
};

extern const Family frameFamily;
extern const Family tilesFamily;
extern const Family arithFamily;
extern const Family bitFamily;
extern const Family scalarFamily;
extern const Family compareFamily;
extern const Family alphaFamily;
extern const Family ditherFamily;
extern const Family bitmapFamily;
extern const Family convertFamily;
extern const Family colourFamily;
extern const Family convolutionFamily;
extern const Family fixedFamily;
extern const Family rankFamily;
extern const Family morphologyFamily;
extern const Family statsFamily;
extern const Family borderFamily;
extern const Family scaleFamily;
extern const Family warpFamily;
extern const Family fourierFamily;

} // namespace gallery
