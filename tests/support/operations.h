/* SPDX-License-Identifier: BSD-2-Clause */
// The table of operations: one row an operation, and tests that run for every row: the product of cases against the
// model, long rows, refused tiles, failing allocations, empty work, null images, bad headers, a stale status, regions
// of one image shifted against each other. A family adds its rows in tests/<room>/<family>_table.cpp, which is compiled
// into both test programs (no TEST stands there):
//
//     static const Rows rows([] {
//         Operation op("pxkMultiplyS", { "srcImage", "dstImage" },
//                      [](const Arguments& a) { pxkMultiplyS(a[0], a[1], a.integer(0)); },
//                      [](const Scene& s, const Numbers& n) { modelMultiply(s[0], s[1], n[0]); });
//         op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { random.between(-9, 9) }; };
//         op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16S };
//         addOperation(op);
//     });
//
// What is left as it is means: images made by makeScene; reports under the operation's own name; a refused tile
// reported as a point-wise operation does; shortage of memory as "Out of memory"; any stored status is ignored.
//
// Refusals are rows, too: a text, the images (NO_IMAGE is a null pointer) and numbers that bring it, and what is spoilt
// in them; each row should break all later rules as well, as far as it can.
//
//     static const Rows refusals([] {
//         addRefusals("pxkMultiplyS", {
//             { "(srcImage->depth != dstImage->depth)", { RGB, RGB_16U }, { 3 } },
//             { "(srcImage->origin != dstImage->origin)", { RGB, RGB }, { 3 }, [](const Scene& s) { s[0].header.origin
//             = 1; } },
//         });
//         addRefusedCalls({ { { -5, "pxkDeleteConvKernel", "kernel==0" }, [] { pxkDeleteConvKernel(nullptr); } } });
//     });
//
// `pxk_tests --gtest_filter='*Operations*pxkMultiplyS*'` runs one row through everything.
#pragma once

#include "cases.h"
#include "reports.h"

// The arguments that are no images. Integers and floats are exact in a double. Kernels and the like are made from a
// number that is a seed, by the call and by the model alike.
using Numbers = std::vector<double>;

// What the last call gave besides images and status, of operations that give numbers.
extern Numbers found;

// What a call gets.
struct Arguments {
    std::vector<PxkImage*> images;
    Numbers numbers;

    PxkImage* operator[](size_t k) const { return images[k]; }
    int32_t integer(size_t k) const { return static_cast<int32_t>(numbers[k]); }
    float real(size_t k) const { return static_cast<float>(numbers[k]); }
};

// How a call ends: its reports, and the status that is stored behind them, which no report need tell.
struct Ending {
    Ending(std::vector<Report> reports = {});
    Ending(std::vector<Report> reports, int32_t status)
        : reports(std::move(reports))
        , status(status)
    {
    }
    bool operator==(const Ending& other) const { return reports == other.reports && status == other.status; }

    std::vector<Report> reports;
    int32_t status = 0;
};
std::ostream& operator<<(std::ostream& out, const Ending& ending);

// How a call ends when an image is refused, or has a tile refused, or memory is short (image 0).
using Refused = std::function<Ending(const std::string& func, size_t image, const Scene& got)>;

// One report; a status and a text for each image, the last for all further ones.
Refused tells(const std::vector<std::pair<int32_t, std::string>>& byImage);
inline Refused tells(int32_t status, const std::string& text)
{
    return tells({ { status, text } });
}
// The text of a tile that is null, for images of these names.
Refused tellsNullTile(const std::vector<std::string>& images, const std::string& null);
// The status alone.
Refused tellsNothing(int32_t status = PXK_StsOk);
// A failure with a trace behind it.
Ending withTrace(Ending ending, const std::string& func, const std::string& text = "");
Refused traced(const Refused& refused, const std::string& func, const std::string& text = "");

// What a negative status from before does: nothing; it ends the call in silence; it is replaced by 0 on entry.
enum class Stale { RUNS, STOPS, CLEARED };

// A call whose tiles are refused and whose allocations fail: its depth and numbers, and who reports then.
struct Trial {
    int32_t depth;
    Numbers numbers; // none: drawn
    std::string func;
};

struct Operation {
    // `call` takes (const Arguments&) and returns nothing or a status; `model` takes (const Scene& want, const
    // Numbers&) and, if it must, what the call gave, (…, const Scene& got).
    template <class Call, class Model>
    Operation(std::string name, std::vector<std::string> images, Call call, Model model)
        : Operation(std::move(name), std::move(images))
    {
        if constexpr (std::is_void<decltype(call(Arguments()))>::value) {
            this->call = [call](const Arguments& a) {
                call(a);
                return pxkGetErrStatus();
            };
        } else {
            this->call = call;
        }
        if constexpr (std::is_invocable<Model, const Scene&, const Numbers&>::value) {
            this->model = [model](const Scene& want, const Numbers& n, const Scene&) { model(want, n); };
        } else {
            this->model = model;
        }
    }
    Operation(std::string name, std::vector<std::string> images);

    std::string name;                // of the row: behind a _ it tells rows of one function apart
    std::string func;                // that reports, unless changed the name up to the _
    std::vector<std::string> images; // as the texts call them; the destination is the last one
    std::function<int32_t(const Arguments&)> call;
    std::function<void(const Scene&, const Numbers&, const Scene&)> model;

    Axes axes; // masks, tilings and places come by the number of images
    std::function<Scene(const Case&)> scene;
    std::function<Numbers(const Case&, const Scene&, Random&)> numbers;
    Tolerance tolerance;

    bool isPointwise = true; // tiles beyond the work are not asked for, none behind a refused one
    bool hasRegions = true;  // a region may miss its image
    bool hasMasks = true;
    size_t nWritten = 1;     // the last images; tiles of the others are asked for reading
    bool goesOn = false;     // all faulty headers are reported
    bool keepsTiles = false; // after a refusal some may stay held
    Ending missed;           // of a region that misses its image
    Stale stale = Stale::RUNS;
    std::vector<Report> staleReports;
    std::vector<Trial> trials;                // none: the plain depth and `func`
    Refused refusedTile, noMemory, nullImage; // none: there is nothing to refuse, or it is tested elsewhere
    std::function<Ending(const std::string& func, int32_t status)> badHeader;
    int32_t faultStatus = 0; // what is returned for a faulty header; 0: the reported status

    int32_t plainDepth() const; // 8U where it is taken
    Case plainCase(uint64_t seed = 1) const;
    Numbers numbersOf(const Case& c, const Scene& s) const;
    std::vector<Trial> trialsOf() const;
    // Runs the call under the recorder and checks what it returns.
    Ending run(const Arguments& arguments) const;
    Ending run(const Scene& s, const Numbers& n) const;
    // Runs the call, which reports nothing, and compares with the model.
    void expectModel(const Scene& got, const Numbers& n) const;
};

// Images for refusals, all 9 x 4; no image: a null pointer among them.
const PictureSpec NO_IMAGE = { 0, 0, 0 }, GRAY = { PXK_DEPTH_8U, 9, 4 }, BITONAL = GRAY.ofDepth(PXK_DEPTH_1U),
                  GRAY_8S = GRAY.ofDepth(PXK_DEPTH_8S), GRAY_16U = GRAY.ofDepth(PXK_DEPTH_16U),
                  GRAY_16S = GRAY.ofDepth(PXK_DEPTH_16S), GRAY_32S = GRAY.ofDepth(PXK_DEPTH_32S),
                  FLOATS = GRAY.ofDepth(PXK_DEPTH_32F), GRAY_ALPHA = GRAY.of(2).withAlpha(), RGB = GRAY.of(3),
                  RGB_PLANES = RGB.ordered(PXK_DATA_ORDER_PLANE), RGB_8S = RGB.ofDepth(PXK_DEPTH_8S),
                  RGB_16U = RGB.ofDepth(PXK_DEPTH_16U), RGB_32F = RGB.ofDepth(PXK_DEPTH_32F),
                  RGBA = GRAY.of(4).withAlpha();

using Spoil = std::function<void(const Scene&)>;
Spoil turned(size_t image); // with the first row at the bottom

struct Refusal {
    std::string text;
    std::vector<PictureSpec> images;
    Numbers numbers = {};
    Spoil spoil = {};
    int32_t status = PXK_StsBadArg;
    std::string func = {}; // none: the operation's
};

// For functions without images or with arguments that the table has no room for.
struct RefusedCall {
    Report report;
    std::function<void()> call;
};

struct RefusalsOf {
    std::string operation;
    std::vector<Refusal> rows;
};

void addOperation(const Operation& operation);
void addRefusals(const std::string& operation, const std::vector<Refusal>& rows);
void addRefusedCalls(const std::vector<RefusedCall>& rows);

const std::vector<Operation>& operations();
const Operation& operationNamed(const std::string& name);
std::vector<std::string> operationNames();
const std::vector<RefusalsOf>& refusals();
const std::vector<RefusedCall>& refusedCalls();

// Its function runs when the table is first asked for, behind the initialisation of all files.
struct Rows {
    explicit Rows(void (*add)());
};

// Every sample is the old or the new one, and nothing else changed: what was written before a refusal stays.
::testing::AssertionResult isPartOf(const Scene& old, const Scene& complete, const Scene& got, bool keepsTiles = false);
