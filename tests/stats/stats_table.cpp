// Histograms, maps of levels, threshold, moments, norms and extrema.
#include "reference/stats.h"

#include "support/operations.h"

namespace {

// What the last call found; a model compares it with its own.
std::vector<double> found;

void expectFound(const std::vector<double>& wanted)
{
    EXPECT_EQ(found, wanted);
}

// ---- tables of levels ----------------------------------------------------------------------------------------------

const char* const tableFaults[] = { "",
                                    "lut==0",
                                    "lut[k]==0",
                                    "lut[k]->key==0",
                                    "lut[k]->value==0",
                                    "lut[k]->num < 2",
                                    "lut[k]->key[0] < 0",
                                    "lut[k]->key[lut[k]->num-1] > histSize",
                                    "lut[k]->key[i] > lut[k]->key[i+1]",
                                    "All values in histogram are zeroes" };
constexpr int32_t nTableFaults = 10;

// Keys with gaps, neighbours and equal ones; few or many; the whole range or the middle of it.
LevelTable tableOf(Random& random, int32_t levels)
{
    LevelTable t;
    const int32_t num = random.oneOf({ 2, 3, 4, 9, 40 }), first = random.oneOf({ 0, 0, levels / 3 });
    for (int32_t k = 0; k < num; ++k) t.key.push_back(random.between(first, levels));
    std::sort(t.key.begin(), t.key.end());
    if (random.oneIn(2)) t.key.front() = first;
    if (random.oneIn(2)) t.key.back() = levels;
    if (random.oneIn(4)) t.key[t.key.size() - 2] = t.key.back();
    if (num == 40 && levels == 256) {
        for (int32_t k = 0; k < num; ++k) t.key[size_t(k)] = first + k; // one level a bin
    }
    for (int32_t k = 0; k < num; ++k) {
        t.value.push_back(random.oneIn(3) ? random.below(3) : random.below(INT32_MAX));
        t.factor.push_back(random.oneIn(3) ? random.between(INT32_MIN / 2, INT32_MAX / 2) : random.between(-2, 2));
    }
    t.value[0] = std::max(t.value[0], 1);
    if (t.key[0] == levels) t.key[0] = levels - 1; // a bin that counts
    if (random.oneIn(5)) t.factor.clear();
    t.isRamp = random.below(2);
    return t;
}

std::vector<LevelTable> tablesOf(const PxkImage* image, const Numbers& n)
{
    if (image == nullptr) return { {} };
    Random random(static_cast<uint64_t>(n[0]));
    const bool isOne = image->roi != nullptr && image->roi->coi != 0;
    std::vector<LevelTable> tables;
    for (int32_t k = 0; k < (isOne ? 1 : image->nChannels - (image->alphaChannel != 0)); ++k)
        tables.push_back(tableOf(random, image->depth <= PXK_DEPTH_16U && image->depth > 0 ? 1 << image->depth : 2));
    return tables;
}

// Runs a call on the records of the tables, the last of which is spoilt as told; behind them stands a null.
template <class Call> void withRecords(std::vector<LevelTable>& tables, int32_t fault, Call call)
{
    std::vector<PxkLUT> records;
    for (LevelTable& t : tables) {
        if (fault == nTableFaults - 1) std::fill(t.value.begin(), t.value.end() - 1, 0);
        int32_t* const factor = t.factor.empty() ? nullptr : t.factor.data();
        records.push_back({ int32_t(t.key.size()), t.key.data(), t.value.data(), factor, t.isRamp });
    }
    std::vector<PxkLUT*> pointers;
    for (PxkLUT& record : records) pointers.push_back(&record);
    LevelTable& last = tables.back();
    if (fault == 2) pointers.back() = nullptr;
    if (fault == 3) records.back().key = nullptr;
    if (fault == 4) records.back().value = nullptr;
    if (fault == 5) records.back().num = 1;
    if (fault == 6) last.key[0] = -1;
    if (fault == 7) last.key.back() = 70000;
    if (fault == 8 && last.key.size() == 2) last.key = { 2, 1 };
    if (fault == 8 && last.key.size() > 2) last.key[1] = last.key.back() + 1;
    pointers.push_back(nullptr);
    call(fault == 1 ? nullptr : pointers.data());
}

int32_t faultOf(const Numbers& n)
{
    return n.size() > 1 ? int32_t(n[1]) : 0;
}

void addTableRefusals(const std::string& name, const std::vector<PictureSpec>& images, int32_t count)
{
    for (int32_t fault = 1; fault < count; ++fault) {
        const int32_t status = fault == nTableFaults - 1 ? PXK_StsInternal : PXK_StsBadArg;
        addRefusals(name, { { tableFaults[fault], images, { 5, double(fault) }, {}, status } });
    }
}

void haveTables(Operation& op)
{
    op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { double(random.below(1 << 30)) }; };
    op.refusedTile = [](const std::string& func, size_t image, const Scene&) {
        return Ending({ { -2, func, image == 0 ? "Error get tile to read" : "Error get tile to write" } });
    };
}

void addHistogram()
{
    Operation op(
        "pxkComputeHisto", { "srcImage" },
        [](const Arguments& a) {
            std::vector<LevelTable> tables = tablesOf(a[0], a.numbers);
            withRecords(tables, faultOf(a.numbers), [&](PxkLUT** lut) { pxkComputeHisto(a[0], lut); });
            found.clear();
            for (const LevelTable& t : tables) found.insert(found.end(), t.value.begin(), t.value.end());
        },
        [](const Scene& s, const Numbers& n) {
            std::vector<LevelTable> tables = tablesOf(s[0], n);
            modelHistogram(s[0], tables);
            std::vector<double> wanted;
            for (const LevelTable& t : tables) wanted.insert(wanted.end(), t.value.begin(), t.value.end());
            expectFound(wanted);
        });
    haveTables(op);
    op.noMemory = [](const std::string& func) { return Ending({ { PXK_StsNoMem, func, "Allocation failure" } }); };
    op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.trials = { { PXK_DEPTH_8U, {}, op.func }, { PXK_DEPTH_1U, {}, op.func } };
    addOperation(op);
    const char* const depths = "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)";
    addRefusals(op.name,
                { { "lut==0", { RGB_8S }, { 5, 1 } },
                  { depths, { RGB_8S }, { 5, 2 } },
                  { depths, { GRAY_32S }, { 5, 2 } },
                  { depths, { FLOATS }, { 5, 2 } } });
    addTableRefusals(op.name, { RGBA }, nTableFaults - 1);
}

using MapCall = void (*)(PxkImage*, PxkImage*, PxkLUT**);

void addMap(const std::string& name, MapCall mapCall, bool isEqualized)
{
    Operation op(
        name, { "srcImage", "dstImage" },
        [=](const Arguments& a) {
            std::vector<LevelTable> tables = tablesOf(a[0], a.numbers);
            withRecords(tables, faultOf(a.numbers), [&](PxkLUT** lut) { mapCall(a[0], a[1], lut); });
        },
        [=](const Scene& s, const Numbers& n) {
            std::vector<std::vector<int64_t>> maps;
            for (const LevelTable& t : tablesOf(s[0], n)) {
                maps.push_back(modelEqualized(t, levelsOf(s[0])));
                for (int64_t i = 0; !isEqualized && i < levelsOf(s[0]); ++i)
                    maps.back()[size_t(i)] = modelStretched(t, i);
            }
            forEachSelected({ &s[0], &s[1] }, [&](const Place* at) {
                const size_t channel = size_t(at->c - windowOf(s[0]).firstChannel);
                at[1].setBits(uint32_t(maps[channel][size_t(at[0].number())]) & uint32_t(levelsOf(s[0]) - 1));
            });
        });
    haveTables(op);
    op.noMemory = [](const std::string& func) { return Ending({ { PXK_StsNoMem, func, "Allocation failure" } }); };
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.axes.places = { InPlace::NO, InPlace::FIRST };
    op.axes.count = 800;
    addOperation(op);
    const auto turned = [](const Scene& s) { s[0].header.origin = 1; };
    const std::string channels = "Number of processed channels of srcImage != Number of processed channels of dstImage";
    addRefusals(name,
                { { "srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U", { RGB_8S, GRAY }, { 5, 1 } },
                  { "srcImage->depth != dstImage->depth", { RGB_16U, RGB_PLANES }, { 5, 1 }, turned },
                  { "srcImage->dataOrder != dstImage->dataOrder", { GRAY, RGB_PLANES }, { 5, 1 }, turned },
                  { "srcImage->origin != dstImage->origin", { RGB, GRAY }, { 5, 1 }, turned },
                  { channels, { RGB, GRAY }, { 5, 1 } } });
    addTableRefusals(name, { RGB, RGBA }, isEqualized ? nTableFaults : nTableFaults - 1);
}

// ---- threshold -----------------------------------------------------------------------------------------------------

void addThreshold(int32_t toDepth)
{
    Operation op(
        std::string("pxkThreshold_") + depthName(toDepth), { "srcImage", "dstImage" },
        [](const Arguments& a) { pxkThreshold(a[0], a[1], a.integer(0)); },
        [](const Scene& s, const Numbers& n) { modelThreshold(s[0], s[1], int64_t(n[0])); });
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S };
    op.axes.channels = { Channels::ONE, Channels::THREE, Channels::ALPHA, Channels::COI, Channels::UNLIKE };
    if (toDepth == PXK_DEPTH_1U) op.axes.channels = { Channels::ONE, Channels::COI };
    op.axes.count = 700;
    op.scene = [toDepth](const Case& c) {
        return makeScene(c, 2, [&](PictureSpec& spec, size_t k) {
            spec.depth = k == 1 ? toDepth : c.depth;
            if (spec.depth == PXK_DEPTH_1U) spec.channels = 1;
            if (spec.depth == PXK_DEPTH_1U) spec.roi.coi = std::min(spec.roi.coi, 1);
            if (c.channels == Channels::ONE) spec.order = int32_t((k + c.seed) % 2);
        });
    };
    op.numbers = [](const Case& c, const Scene&, Random& random) {
        const int64_t low = depthMin(c.depth), high = depthMax(c.depth), middle = random.between(-100, 127);
        return Numbers { double(random.oneOf({ low, low + 1, std::max(middle, low), high })) };
    };
    op.refusedTile = [](const std::string& func, size_t k, const Scene&) {
        return tileText(func, k == 0 ? "srcImage" : "dstImage", "NULL");
    };
    addOperation(op);
}

PictureSpec ofDepth(PictureSpec spec, int32_t depth)
{
    spec.depth = depth;
    return spec;
}

void addThresholdRefusals()
{
    const std::string name = "pxkThreshold_8U";
    const auto masks = [](const Scene& s) {
        for (size_t k = 0; k < 2; ++k) s[k].setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 9, 4)));
        for (size_t k = 0; k < 2; ++k) s[k].mask->header.origin = 1;
    };
    const auto oneMask = [=](const Scene& s) {
        masks(s);
        s[0].mask->header.origin = 0;
    };
    const auto turned = [=](const Scene& s) {
        masks(s);
        s[0].header.origin = 1;
    };
    addRefusals(name,
                { { "(srcImage->depth == 32)", { FLOATS, FLOATS }, { 999999 } },
                  { "(dstImage->depth == 32)", { BITONAL, FLOATS }, { 999999 } },
                  { "(srcImage->depth == 1)", { BITONAL, RGB }, { 999999 } },
                  { "((srcImage->dataOrder != dstImage->dataOrder)&& "
                    "((srcImage->nChannels != 1)&&(dstImage->nChannels != 1)))",
                    { RGB, RGB_PLANES },
                    { 999999 },
                    turned },
                  { "(srcImage->origin != dstImage->origin)", { RGB, GRAY }, { 999999 }, turned },
                  { "(srcImage->origin != srcImage->maskROI->origin)", { RGB, GRAY }, { 999999 }, masks },
                  { "(dstImage->origin != dstImage->maskROI->origin)", { RGB, GRAY }, { 999999 }, oneMask },
                  { "(srcChannels != dstChannels)", { RGB, GRAY }, { 1 } } });
    const std::pair<int32_t, std::string> words[] = { { PXK_DEPTH_8S, "(0x80000000| 8)" },
                                                      { PXK_DEPTH_8U, "8" },
                                                      { PXK_DEPTH_16S, "(0x80000000|16)" },
                                                      { PXK_DEPTH_16U, "16" } };
    for (const auto& word : words) {
        const int64_t low = depthMin(word.first), high = depthMax(word.first);
        const std::string start = "((srcImage->depth == " + word.second + ") && (Threshold ";
        const std::vector<PictureSpec> images = { ofDepth(RGB, word.first), GRAY };
        addRefusals(name,
                    { { start + "> " + std::to_string(high) + "))", images, { double(high + 1) } },
                      { start + "< " + std::to_string(low) + "))", images, { double(low - 1) } } });
    }
}

// ---- moments -------------------------------------------------------------------------------------------------------

double near(double got, long double want, long double margin)
{
    return std::fabs(got - want) <= margin ? got : double(want);
}

void addMoments()
{
    Operation op(
        "pxkMoments", { "image" },
        [](const Arguments& a) {
            PxkMomentState state = {};
            pxkMoments(a[0], &state);
            found.clear();
            for (int32_t m = 0; m < 4; ++m) {
                for (int32_t n = 0; m + n < 4; ++n) {
                    found.insert(found.end(),
                                 { pxkGetSpatialMoment(&state, m, n), pxkGetCentralMoment(&state, m, n),
                                   pxkGetNormalizedSpatialMoment(&state, m, n) });
                }
            }
        },
        [](const Scene& s, const Numbers&) {
            const CommonSize size = commonSize({ &s[0] });
            const long double mass = modelMoment(s[0], 0, 0, 0, 0).sum;
            const bool hasMass = std::fabs(mass) > 2.3e-308L;
            const long double xb = hasMass ? modelMoment(s[0], 0, 0, 1, 0).sum / mass : size.width / 2.0L;
            const long double yb = hasMass ? modelMoment(s[0], 0, 0, 0, 1).sum / mass : size.height / 2.0L;
            std::vector<double> wanted;
            for (int32_t m = 0; m < 4; ++m) {
                for (int32_t n = 0; m + n < 4; ++n) {
                    const double* const got = &found[wanted.size()];
                    const MomentSum raw = modelMoment(s[0], 0, 0, m, n);
                    const bool isExact = !isFloatDepth(s[0].spec.depth) && raw.magnitude < 9e15L;
                    const long double reach = std::pow(std::fabs(xb) + (long double)(size.width), m)
                        * std::pow(std::fabs(yb) + (long double)(size.height), n);
                    const long double scale =
                        std::pow((long double)(size.width), -m) * std::pow((long double)(size.height), -n);
                    wanted.push_back(near(got[0], raw.sum, isExact ? 0 : raw.magnitude * 1e-14L));
                    const long double all = modelMoment(s[0], 0, 0, 0, 0).magnitude * reach;
                    wanted.push_back(near(got[1], modelMoment(s[0], xb, yb, m, n).sum, all * 1e-13L));
                    wanted.push_back(near(got[2], raw.sum * scale, raw.magnitude * scale * 1e-14L));
                }
            }
            expectFound(wanted);
        });
    op.scene = [](const Case& c) { return makeScene(c, 1, {}, false); };
    op.axes.channels = { Channels::ONE, Channels::COI };
    op.axes.count = 800;
    op.refusedTile = [](const std::string& func, size_t, const Scene&) { return tileText(func, "image", "NULL"); };
    addOperation(op);
    addRefusals(
        op.name,
        { { "Only one channel can be proceed", { RGB } }, { "Only one channel can be proceed", { GRAY_ALPHA } } });
    const char* const order = "Illegal order of moment";
    static PxkMomentState state = {};
    addRefusedCalls(
        { { { -5, "pxkGetSpatialMoment", order }, [] { EXPECT_EQ(pxkGetSpatialMoment(&state, 2, 2), 0); } },
          { { -5, "pxkGetNormalizedSpatialMoment", order },
            [] { EXPECT_EQ(pxkGetNormalizedSpatialMoment(&state, 4, -1), 0); } },
          { { -5, "pxkGetCentralMoment", order }, [] { EXPECT_EQ(pxkGetCentralMoment(&state, -1, 0), 0); } },
          { { -5, "pxkGetNormalizedCentralMoment", order },
            [] { EXPECT_EQ(pxkGetNormalizedCentralMoment(&state, 0, 4), 0); } },
          { { -9, "pxkMoments", "Incorrect Image" },
            [] { EXPECT_EQ(pxkNormalizedCentralMoment(nullptr, 1, 0), 0); } } });
}

// ---- norms and extrema ---------------------------------------------------------------------------------------------

void addNorm(bool isPair)
{
    const std::vector<std::string> both = { "srcImageA", "srcImageB" };
    Operation op(
        isPair ? "pxkNorm" : "pxkNorm_one", isPair ? both : std::vector<std::string> { "srcImageA" },
        [=](const Arguments& a) { found = { pxkNorm(a[0], isPair ? a[1] : nullptr, a.integer(0)) }; },
        [=](const Scene& s, const Numbers& n) {
            const int32_t type = int32_t(n[0]) & 7, depth = s[0].spec.depth;
            long double want = modelNormSum(s[0], isPair ? &s[1] : nullptr, type), below = 1;
            if (n[0] > 8) {
                const Scene zeros = s.copy();
                zeros[0].setAll(0);
                below = modelNormSum(zeros[0], &zeros[1], type);
            }
            if (type == PXK_NORM_L2) want = std::sqrt(want), below = std::sqrt(below);
            const bool isExact = depthBits(depth) <= 16 && n[0] < 8;
            expectFound({ near(found[0], want / below, isExact ? 0 : want / below * 1e-14L) });
        });
    op.scene = [=](const Case& c) { return makeScene(c, isPair ? 2 : 1, {}, false); };
    op.numbers = [=](const Case& c, const Scene& s, Random& random) {
        if (!isPair) return Numbers { double(random.oneOf({ 1, 2, 4 })) };
        const Scene zeros = s.copy();
        zeros[0].setAll(0);
        const bool isZero = modelNormSum(zeros[0], &zeros[1], PXK_NORM_L2) < 1e-300L;
        const double types[] = { 9, 1, 2, 4, 10, 12 };
        return Numbers { types[c.seed == 1 ? 0 : isZero ? random.between(1, 3) : random.below(6)] };
    };
    op.refusedTile = [](const std::string& func, size_t, const Scene&) { return Ending({ { -2, func, " " } }); };
    op.noMemory = [](const std::string& func) {
        return Ending({ { PXK_StsNullHeader, func, "Null pointer for mask" } });
    };
    op.nullImage = [](size_t k) {
        if (k == 0) return Ending({ { PXK_StsNullHeader, "pxkNorm", "Incorrect Image" } });
        return Ending({ { PXK_StsBadArg, "pxkNorm", "normType unknown" } });
    };
    op.axes.count = isPair ? 2000 : 600;
    addOperation(op);
    if (!isPair) {
        addRefusals(op.name, { { "normType unknown", { RGB }, { 9 } }, { "normType unknown", { RGB }, { 0 } } });
        return;
    }
    const auto black = [](const Scene& s) { s[1].setAll(0); };
    addRefusals(op.name,
                { { "(srcImageA->dataOrder!=srcImageB->dataOrder)", { RGB_16U, RGB_PLANES }, { 3 } },
                  { "(srcImageA->depth!=srcImageB->depth)", { RGB_16U, GRAY }, { 3 } },
                  { "normType unknown", { RGB, GRAY }, { 3 } },
                  { "normType unknown", { RGB, GRAY }, { 8 } },
                  { "Bad number of channels", { RGB, GRAY }, { 2 }, {}, PXK_StsBadChannels },
                  { "Zero divided", { RGB, RGBA }, { 10 }, black },
                  { "Zero divided", { FLOATS, FLOATS }, { 12 }, black } });
}

void addExtrema()
{
    static const PicturePtr nothing = Picture::make(PictureSpec(PXK_DEPTH_1U, 2, 2));
    nothing->setAll(0);
    Operation op(
        "pxkMinMaxFP", { "srcImage" },
        [](const Arguments& a) {
            float low = 77, high = 77;
            if (a[0] != nullptr) a[0]->maskROI = *nothing; // which does not count
            const int32_t status = pxkMinMaxFP(a[0], a.numbers.empty() ? &low : nullptr, &high);
            if (a[0] != nullptr) a[0]->maskROI = nullptr;
            found = { low, high };
            return status;
        },
        [](const Scene& s, const Numbers&) {
            std::vector<double> wanted;
            forEachSelected({ &s[0] }, [&](const Place* at) {
                if (!std::isnan(at->number())) wanted.push_back(at->number());
            });
            const bool isFound = !wanted.empty();
            std::sort(wanted.begin(), wanted.end());
            if (isFound) expectFound({ wanted.front(), wanted.back() });
            EXPECT_TRUE(isFound || (std::isnan(found[0]) && std::isnan(found[1])));
        });
    op.axes.depths = { PXK_DEPTH_32F };
    op.axes.masks = { 0 };
    op.hasMasks = false;
    op.faultStatus = PXK_StsBadArg;
    op.refusedTile = [](const std::string& func, size_t, const Scene&) { return tileText(func, "srcImage", "NULL"); };
    addOperation(op);
    addRefusals(op.name,
                { { "((min == ((void*)(0)))||(max == ((void*)(0))))", { RGB }, { 1 } },
                  { "(srcImage->depth != 32)", { GRAY_32S } } });
}

const Rows rows([] {
    addHistogram();
    addMap("pxkContrastStretch", pxkContrastStretch, false);
    addMap("pxkHistoEqualize", pxkHistoEqualize, true);
    for (const int32_t depth :
         { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S })
        addThreshold(depth);
    addThresholdRefusals();
    addMoments();
    addNorm(true);
    addNorm(false);
    addExtrema();
});

} // namespace
