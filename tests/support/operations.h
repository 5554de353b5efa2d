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
            returnsStatus = true;
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
    bool returnsStatus = false;

    Axes axes; // masks, tilings and places come by the number of images
    std::function<Scene(const Case&)> scene;
    std::function<Numbers(const Case&, const Scene&, Random&)> numbers;
    Tolerance tolerance;

    bool isPointwise = true; // tiles beyond the work are not asked for, none behind a refused one
    bool hasRegions = true;  // a region may miss its image
    bool hasMasks = true;
    bool goesOn = false;     // all faulty headers are reported
    bool keepsTiles = false; // after a refusal some may stay held
    Ending missed;           // of a region that misses its image
    Stale stale = Stale::RUNS;
    std::vector<Report> staleReports;
    std::vector<Trial> trials; // none: the plain depth and `func`
    std::function<Ending(const std::string& func, size_t image, const Scene& got)> refusedTile;
    std::function<Ending(const std::string& func)> noMemory;
    std::function<Ending(size_t image)> nullImage;
    std::function<Ending(int32_t status)> badHeader;
    int32_t faultStatus = 0; // what is returned for a faulty header; 0: the reported status

    void setFunc(const std::string& reporter); // and what it says about headers
    int32_t plainDepth() const;                // 8U where it is taken
    Case plainCase(uint64_t seed = 1) const;
    Numbers numbersOf(const Case& c, const Scene& s) const;
    std::vector<Trial> trialsOf() const;
    // Runs the call under the recorder and checks what it returns.
    Ending run(const Arguments& arguments) const;
    Ending run(const Scene& s, const Numbers& n) const;
};

// The tile text of the point-wise operations, with their word for null.
Ending tileText(const std::string& func, const std::string& image, const std::string& null);

// No image: a null pointer among those of a refusal.
extern const PictureSpec NO_IMAGE;
// Images for refusals, all 9 x 4.
extern const PictureSpec BITONAL, GRAY, GRAY_8S, GRAY_16U, GRAY_16S, GRAY_32S, FLOATS, GRAY_ALPHA, RGB, RGB_PLANES,
    RGB_8S, RGB_16U, RGBA;

struct Refusal {
    std::string text;
    std::vector<PictureSpec> images;
    Numbers numbers = {};
    std::function<void(const Scene&)> spoil = {};
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
const std::vector<RefusalsOf>& refusals();
const std::vector<RefusedCall>& refusedCalls();

// Its function runs when the table is first asked for, behind the initialisation of all files.
struct Rows {
    explicit Rows(void (*add)());
};

// Every sample is the old or the new one, and nothing else changed: what was written before a refusal stays.
::testing::AssertionResult isPartOf(const Scene& old, const Scene& complete, const Scene& got, bool keepsTiles = false);
