// SPDX-License-Identifier: BSD-2-Clause
#include "operations.h"

#include <algorithm>

Numbers found;

// ---- rows ----------------------------------------------------------------------------------------------------------

struct Tables {
    std::vector<void (*)()> adders;
    std::vector<Operation> operations;
    std::vector<RefusalsOf> refusals;
    std::vector<RefusedCall> calls;
};

static Tables& tables()
{
    static Tables all;
    return all;
}

static const Tables& filledTables()
{
    const std::vector<void (*)()> adders = std::move(tables().adders);
    tables().adders.clear();
    for (void (*add)() : adders) add();
    return tables();
}

Rows::Rows(void (*add)())
{
    tables().adders.push_back(add);
}
void addOperation(const Operation& operation)
{
    tables().operations.push_back(operation);
}
void addRefusals(const std::string& operation, const std::vector<Refusal>& rows)
{
    tables().refusals.push_back({ operation, rows });
}
void addRefusedCalls(const std::vector<RefusedCall>& rows)
{
    tables().calls.insert(tables().calls.end(), rows.begin(), rows.end());
}
const std::vector<Operation>& operations()
{
    return filledTables().operations;
}
const std::vector<RefusalsOf>& refusals()
{
    return filledTables().refusals;
}
const std::vector<RefusedCall>& refusedCalls()
{
    return filledTables().calls;
}

const Operation& operationNamed(const std::string& name)
{
    const auto at = std::find_if(operations().begin(), operations().end(),
                                 [&](const Operation& operation) { return operation.name == name; });
    if (at == operations().end()) throw std::out_of_range("no row of an operation " + name);
    return *at;
}

std::vector<std::string> operationNames()
{
    std::vector<std::string> names;
    for (const Operation& operation : operations()) names.push_back(operation.name);
    return names;
}

// ---- an operation --------------------------------------------------------------------------------------------------

Ending::Ending(std::vector<Report> reports)
    : reports(std::move(reports))
    , status(statusBehind(this->reports))
{
}

std::ostream& operator<<(std::ostream& out, const Ending& ending)
{
    return out << ::testing::PrintToString(ending.reports) << " status " << ending.status;
}

Refused tells(const std::vector<std::pair<int32_t, std::string>>& byImage)
{
    return [=](const std::string& func, size_t image, const Scene&) {
        const auto& [status, text] = byImage[std::min(image, byImage.size() - 1)];
        return Ending({ { status, func, text } });
    };
}

Refused tellsNullTile(const std::vector<std::string>& images, const std::string& null)
{
    std::vector<std::pair<int32_t, std::string>> byImage;
    for (const std::string& name : images) {
        byImage.push_back({ PXK_StsBadArg, "(" + name + "->tileInfo->tileData == " + null + ")" });
    }
    return tells(byImage);
}

Refused tellsNothing(int32_t status)
{
    return [=](const std::string&, size_t, const Scene&) { return Ending({}, status); };
}

Ending withTrace(Ending ending, const std::string& func, const std::string& text)
{
    if (ending.status < 0) ending.reports.push_back({ PXK_StsBackTrace, func, text });
    return ending;
}

Refused traced(const Refused& refused, const std::string& func, const std::string& text)
{
    return [=](const std::string& reporter, size_t image, const Scene& got) {
        return withTrace(refused(reporter, image, got), func, text);
    };
}

Spoil turned(size_t image)
{
    return [=](const Scene& s) { s[image].header.origin = 1; };
}

Operation::Operation(std::string name, std::vector<std::string> images)
    : name(std::move(name))
    , func(this->name.substr(0, this->name.find('_')))
    , images(std::move(images))
{
    const size_t count = this->images.size();
    if (count == 1) axes.masks = axes.tilings = { 0, 1 };
    if (count == 2) axes.masks = axes.tilings = { 0, 1, 2, ALL_IMAGES, ALL_IMAGES | SHARED };
    axes.count = 2000;
    scene = [count](const Case& c) { return makeScene(c, count); };
    refusedTile = tellsNullTile(this->images, "((void*)(0))");
    noMemory = tells(PXK_StsNoMem, "Out of memory");
    nullImage = tells(PXK_StsNullHeader, "Incorrect Image");
    badHeader = [](const std::string& func, int32_t status) { return Ending({ { status, func, "Incorrect Image" } }); };
}

int32_t Operation::plainDepth() const
{
    const bool takesBytes = std::find(axes.depths.begin(), axes.depths.end(), PXK_DEPTH_8U) != axes.depths.end();
    return takesBytes ? PXK_DEPTH_8U : axes.depths[0];
}

Case Operation::plainCase(uint64_t seed) const
{
    Case c;
    c.depth = plainDepth();
    c.seed = seed;
    return c;
}

Numbers Operation::numbersOf(const Case& c, const Scene& s) const
{
    Random random(c.seed ^ 0x5CA1A2);
    return numbers ? numbers(c, s, random) : Numbers();
}

std::vector<Trial> Operation::trialsOf() const
{
    return trials.empty() ? std::vector<Trial> { { plainDepth(), {}, func } } : trials;
}

Ending Operation::run(const Arguments& arguments) const
{
    startReports();
    const int32_t returned = call(arguments);
    const Ending ending(recordedReports(), pxkGetErrStatus());
    const bool isHeader = faultStatus != 0 && !ending.reports.empty() && ending.reports[0].context == "Incorrect Image";
    EXPECT_EQ(returned, isHeader ? faultStatus : ending.status);
    startReports();
    return ending;
}

Ending Operation::run(const Scene& s, const Numbers& n) const
{
    Arguments arguments;
    for (const PicturePtr& image : s.images) arguments.images.push_back(image != nullptr ? &image->header : nullptr);
    arguments.numbers = n;
    return run(arguments);
}

void Operation::expectModel(const Scene& got, const Numbers& n) const
{
    SCOPED_TRACE("numbers " + ::testing::PrintToString(n));
    const Scene want = got.copy();
    EXPECT_EQ(run(got, n), Ending());
    model(want, n, got);
    EXPECT_TRUE(sameScene(want, got, tolerance));
}

// ---- parts of a result ---------------------------------------------------------------------------------------------

::testing::AssertionResult isPartOf(const Scene& old, const Scene& complete, const Scene& got, bool keepsTiles)
{
    for (size_t k = 0; k < got.images.size(); ++k) {
        std::string fault;
        got[k].forEachSample([&](int32_t x, int32_t y, int32_t c) {
            const uint32_t bits = got[k].bits(x, y, c);
            if (bits == old[k].bits(x, y, c) || bits == complete[k].bits(x, y, c)) return;
            fault =
                "sample " + ::testing::PrintToString(std::make_tuple(x, y, c)) + " is neither the old nor the new one";
        });
        if (!fault.empty()) return ::testing::AssertionFailure() << "image " << k << ": " << fault;
        if (keepsTiles) got[k].storage->forgetHeld();
        const auto rest = nothingElseChanged(old[k], got[k]);
        if (!rest) return ::testing::AssertionFailure() << "image " << k << ": " << rest.message();
    }
    return ::testing::AssertionSuccess();
}
