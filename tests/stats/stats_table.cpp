// SPDX-License-Identifier: BSD-2-Clause
// Histograms, maps of levels, moments, norms and extrema. Threshold stands with the conversions of depth.
#include "reference/stats.h"

#include "support/operations.h"

namespace {

double near(double got, long double want, long double margin)
{
    return std::fabs(got - want) <= margin ? got : double(want);
}

// The operation on wide images of extreme samples as well: one of the ends, or both in turn.
void addWithExtremes(Operation op)
{
    addOperation(op);
    op.name += "_extremes";
    op.axes.regions = { Region::WHOLE };
    op.axes.channels = { Channels::ONE };
    op.axes.masks = op.axes.tilings = { 0 };
    op.axes.count = 2 * op.axes.depths.size();
    const size_t count = op.images.size();
    op.scene = [count](const Case& c) {
        Case wide = c;
        if (c.width == 0 && c.tiling == 0) wide.width = 5003, wide.height = 14;
        const Scene scene = makeScene(wide, count, {}, false);
        for (Picture* p : { &scene[0], &scene.last() }) {
            const bool isReal = isFloatDepth(c.depth);
            const double high = isReal ? 3e38 : double(depthMax(c.depth)),
                         low = isReal ? -high : double(depthMin(c.depth));
            const int32_t turn = int32_t(c.seed % 4), first = p == &scene[0] ? 0 : 3;
            for (int32_t i = 0; i < p->spec.width * p->spec.height; ++i) {
                const bool isHigh = turn == 0 ? i % 2 == 0 : (turn == 1) != (first == 0);
                p->setNumber(i % p->spec.width, i / p->spec.width, 0, isHigh ? high : low);
            }
        }
        return scene;
    };
    addOperation(op);
}

// ---- tables of levels ----------------------------------------------------------------------------------------------

// What is spoilt in the last table.
struct TableFault {
    const char* text;
    void (*spoil)(PxkLUT& lut);
};
const TableFault tableFaults[] = {
    { "lut[k]->key==0", [](PxkLUT& lut) { lut.key = nullptr; } },
    { "lut[k]->value==0", [](PxkLUT& lut) { lut.value = nullptr; } },
    { "lut[k]->num < 2", [](PxkLUT& lut) { lut.num = 1; } },
    { "lut[k]->key[0] < 0", [](PxkLUT& lut) { lut.key[0] = -1; } },
    { "lut[k]->key[lut[k]->num-1] > histSize", [](PxkLUT& lut) { lut.key[lut.num - 1] = 70000; } },
    { "lut[k]->key[i] > lut[k]->key[i+1]", [](PxkLUT& lut) { lut.key[0] = lut.key[lut.num - 1] + 1; } },
    { "All values in histogram are zeroes", [](PxkLUT& lut) { std::fill_n(lut.value, lut.num - 1, 0); } },
};
const int32_t noTables = -1, noTable = -2, noFault = -3;

// Keys with gaps, neighbours and equal ones; few or many; from 0 or from the middle of the range.
LevelTable tableOf(Random& random, int32_t levels)
{
    LevelTable t;
    const int32_t num = random.oneOf({ 2, 3, 4, 40 }), first = random.oneOf({ 0, levels / 3 });
    for (int32_t k = 0; k < num; ++k) {
        t.key.push_back(num == 40 && levels == 256 ? first + k : random.between(first, levels));
        t.value.push_back(random.oneIn(3) ? random.below(3) : random.below(INT32_MAX));
        t.factor.push_back(random.oneIn(3) ? random.between(-1000000000, 1000000000) : random.between(-2, 2));
    }
    std::sort(t.key.begin(), t.key.end());
    if (random.oneIn(2)) t.key.back() = levels;
    if (random.oneIn(4)) t.key[t.key.size() - 2] = t.key.back(); // no bin of one level more
    if (random.oneIn(5)) t.factor.clear();
    t.key[0] = std::min(t.key[0], levels - 1);
    t.value[0] = std::max(t.value[0], 1);
    t.isRamp = random.below(2);
    return t;
}

// One for each processed channel.
std::vector<LevelTable> tablesOf(const PxkImage* image, const Numbers& n)
{
    Random random(static_cast<uint64_t>(n[0]));
    const bool isOne = image == nullptr || (image->roi != nullptr && image->roi->coi != 0);
    std::vector<LevelTable> tables;
    for (int32_t k = 0; k < (isOne ? 1 : image->nChannels - (image->alphaChannel != 0)); ++k)
        tables.push_back(tableOf(random, image != nullptr && image->depth > 1 ? 1 << (image->depth & 31) : 2));
    return tables;
}

template <class Model>
Operation tableOperation(const std::string& name, const std::vector<std::string>& images,
                         void (*call)(const Arguments&, PxkLUT**), const Model& model)
{
    const auto run = [call](const Arguments& a) {
        std::vector<LevelTable> tables = tablesOf(a[0], a.numbers);
        std::vector<PxkLUT> records;
        std::vector<PxkLUT*> pointers(tables.size() + 1); // a null for alpha
        for (LevelTable& t : tables) {
            int32_t* const factor = t.factor.empty() ? nullptr : t.factor.data();
            records.push_back({ int32_t(t.key.size()), t.key.data(), t.value.data(), factor, t.isRamp });
        }
        for (size_t k = 0; k < records.size(); ++k) pointers[k] = &records[k];
        const int32_t fault = a.numbers.size() > 1 ? a.integer(1) : noFault;
        if (fault == noTable) pointers[tables.size() - 1] = nullptr;
        if (fault >= 0) tableFaults[fault].spoil(records.back());
        call(a, fault == noTables ? nullptr : pointers.data());
        found.clear();
        for (const LevelTable& t : tables) found.insert(found.end(), t.value.begin(), t.value.end());
    };
    Operation op(name, images, run, model);
    op.numbers = [](const Case&, const Scene&, Random& random) { return Numbers { double(random.below(1 << 30)) }; };
    op.refusedTile = tells({ { -2, "Error get tile to read" }, { -2, "Error get tile to write" } });
    op.noMemory = tells(PXK_StsNoMem, "Allocation failure");
    return op;
}

void addTableRefusals(const std::string& name, const std::vector<PictureSpec>& images, size_t count)
{
    addRefusals(name, { { "lut==0", images, { 5, noTables } }, { "lut[k]==0", images, { 5, noTable } } });
    for (size_t k = 0; k < count; ++k)
        addRefusals(
            name, { { tableFaults[k].text, images, { 5, double(k) }, {}, k == 6 ? PXK_StsInternal : PXK_StsBadArg } });
}

void addHistogram()
{
    Operation op = tableOperation(
        "pxkComputeHisto", { "srcImage" }, [](const Arguments& a, PxkLUT** lut) { pxkComputeHisto(a[0], lut); },
        [](const Scene& s, const Numbers& n) {
            std::vector<double> wanted;
            std::vector<LevelTable> tables = tablesOf(s[0], n);
            modelHistogram(s[0], tables);
            for (const LevelTable& t : tables) wanted.insert(wanted.end(), t.value.begin(), t.value.end());
            EXPECT_EQ(found, wanted);
        });
    op.axes.depths = { PXK_DEPTH_1U, PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.nWritten = 0;
    addWithExtremes(op);
    const char* const depths = "(srcImage->depth & PXK_DEPTH_SIGN) || (srcImage->depth == PXK_DEPTH_32F)";
    addRefusals(op.name,
                { { "lut==0", { RGB_8S }, { 5, noTables } },
                  { depths, { RGB_8S }, { 5, noTable } },
                  { depths, { GRAY_32S }, { 5, noTable } },
                  { depths, { FLOATS }, { 5, noTable } } });
    addTableRefusals(op.name, { RGBA }, 6);
}

void addMap(const std::string& name, void (*call)(const Arguments&, PxkLUT**),
            std::vector<int64_t> (*modelMap)(const LevelTable&, int64_t))
{
    Operation op = tableOperation(name, { "srcImage", "dstImage" }, call, [=](const Scene& s, const Numbers& n) {
        const int64_t levels = int64_t(1) << depthBits(s[0].spec.depth);
        std::vector<std::vector<int64_t>> maps;
        for (const LevelTable& t : tablesOf(s[0], n)) maps.push_back(modelMap(t, levels));
        forEachSelected({ &s[0], &s[1] }, [&](const Place* at) {
            const size_t channel = size_t(at->c - windowOf(s[0]).firstChannel);
            at[1].setBits(uint32_t(maps[channel][size_t(at[0].number())]) & uint32_t(levels - 1));
        });
    });
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U };
    op.axes.places = { InPlace::NO, InPlace::FIRST };
    op.axes.count = 800;
    addOperation(op);
    const Numbers bad = { 5, noTables };
    addRefusals(name,
                { { "srcImage->depth != PXK_DEPTH_8U && srcImage->depth != PXK_DEPTH_16U", { RGB_8S, GRAY }, bad },
                  { "srcImage->depth != dstImage->depth", { RGB_16U, RGB_PLANES }, bad, turned(0) },
                  { "srcImage->dataOrder != dstImage->dataOrder", { GRAY, RGB_PLANES }, bad, turned(0) },
                  { "srcImage->origin != dstImage->origin", { RGB, GRAY }, bad, turned(0) },
                  { "Number of processed channels of srcImage != Number of processed channels of dstImage",
                    { RGB, GRAY },
                    bad } });
    addTableRefusals(name, { RGB, RGBA }, modelMap == modelEqualized ? 7 : 6);
}

// ---- moments -------------------------------------------------------------------------------------------------------

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
        [](const Scene& s, const Numbers&, const Scene& got) {
            const CommonSize size = commonSize({ &s[0] });
            const long double w = (long double)(size.width), h = (long double)(size.height);
            const MomentSum mass = modelMoment(s[0], 0, 0, 0, 0);
            const bool hasMass = std::fabs(mass.sum) > 2.3e-308L;
            const long double xb = hasMass ? modelMoment(s[0], 0, 0, 1, 0).sum / mass.sum : w / 2;
            const long double yb = hasMass ? modelMoment(s[0], 0, 0, 0, 1).sum / mass.sum : h / 2;
            // The centre loses as many digits as the mass does where samples of both signs cancel.
            const long double loss = hasMass ? 1 + mass.magnitude / std::fabs(mass.sum) : 1;
            std::vector<double> wanted;
            for (int32_t m = 0; m < 4; ++m) {
                for (int32_t n = 0; m + n < 4; ++n) {
                    const double* const now = &found[wanted.size()];
                    const MomentSum raw = modelMoment(s[0], 0, 0, m, n);
                    const bool isExact = !isFloatDepth(s[0].spec.depth) && raw.magnitude < 9e15L;
                    const long double scale = std::pow(w, -m) * std::pow(h, -n);
                    const long double reach = std::pow(std::fabs(xb) + w, m) * std::pow(std::fabs(yb) + h, n);
                    wanted.push_back(near(now[0], raw.sum, isExact ? 0 : raw.magnitude * 1e-14L));
                    wanted.push_back(
                        near(now[1], modelMoment(s[0], xb, yb, m, n).sum, mass.magnitude * reach * loss * 1e-13L));
                    wanted.push_back(near(now[2], raw.sum * scale, raw.magnitude * scale * 1e-14L));
                }
            }
            EXPECT_EQ(found, wanted);
            // The calls that take the image: (1, 1), (1, 2), (2, 0) and (2, 1) are the sixth to the ninth of all.
            EXPECT_EQ(pxkSpatialMoment(got[0], 1, 2), found[18]);
            EXPECT_EQ(pxkCentralMoment(got[0], 2, 0), found[22]);
            EXPECT_EQ(pxkNormalizedSpatialMoment(got[0], 2, 1), found[26]);
            const double product = found[16] / double(w * h);
            EXPECT_NEAR(pxkNormalizedCentralMoment(got[0], 1, 1), product, std::fabs(product) * 1e-14);
        });
    op.scene = [](const Case& c) { return makeScene(c, 1, {}, false); };
    op.axes.channels = { Channels::ONE, Channels::COI };
    op.axes.count = 800;
    op.refusedTile = tellsNullTile(op.images, "NULL");
    op.nWritten = 0;
    addWithExtremes(op);
    addRefusals(
        op.name,
        { { "Only one channel can be proceed", { RGB } }, { "Only one channel can be proceed", { GRAY_ALPHA } } });
    static PxkMomentState state = {};
    const auto refused = [](const char* func) { return Report { -5, func, "Illegal order of moment" }; };
    addRefusedCalls(
        { { refused("pxkGetSpatialMoment"), [] { EXPECT_EQ(pxkGetSpatialMoment(&state, 2, 2), 0); } },
          { refused("pxkGetNormalizedSpatialMoment"),
            [] { EXPECT_EQ(pxkGetNormalizedSpatialMoment(&state, 4, -1), 0); } },
          { refused("pxkGetCentralMoment"), [] { EXPECT_EQ(pxkGetCentralMoment(&state, -1, 0), 0); } },
          { refused("pxkGetNormalizedCentralMoment"),
            [] { EXPECT_EQ(pxkGetNormalizedCentralMoment(&state, 0, 4), 0); } },
          { { -9, "pxkMoments", "Incorrect Image" }, [] { EXPECT_EQ(pxkCentralMoment(nullptr, 1, 0), 0); } } });
}

// ---- norms and extrema ---------------------------------------------------------------------------------------------

// Of an image alone, or of two.
void addNorm(const std::string& name, const std::vector<std::string>& images)
{
    const size_t count = images.size();
    const auto call = [](const Arguments& a) {
        found = { pxkNorm(a[0], a.images.size() > 1 ? a[1] : nullptr, a.integer(0)) };
    };
    Operation op(name, images, call, [=](const Scene& s, const Numbers& n) {
        const Scene zeros = s.copy();
        if (count > 1) zeros[0].setAll(0);
        const bool isRelative = n[0] > 8, isExact = depthBits(s[0].spec.depth) <= 16 && !isRelative;
        const long double want =
            modelNorm(s, int32_t(n[0]) & 7) / (isRelative ? modelNorm(zeros, int32_t(n[0]) & 7) : 1);
        EXPECT_EQ(found[0], near(found[0], want, isExact ? 0 : want * 1e-13L));
    });
    op.scene = [=](const Case& c) { return makeScene(c, count, {}, false); };
    op.numbers = [=](const Case& c, const Scene& s, Random& random) {
        const Scene zeros = s.copy();
        if (count > 1) zeros[0].setAll(0);
        const bool isPlain = count == 1 || modelNorm(zeros, PXK_NORM_L2) < 1e-300L;
        const double types[] = { 9, 1, 2, 4, 10, 12 };
        return Numbers { types[isPlain ? random.between(1, 3) : c.seed == 1 ? 0 : random.below(6)] };
    };
    op.nWritten = 0;
    op.refusedTile = tells(-2, " ");
    op.noMemory = tells(-9, "Null pointer for mask");
    op.nullImage = tells({ { -9, "Incorrect Image" }, { -5, "normType unknown" } });
    addWithExtremes(op);
}

void addNormRefusals()
{
    const auto black = [](const Scene& s) { s[1].setAll(0); };
    addRefusals("pxkNorm_one", { { "normType unknown", { RGB }, { 9 } }, { "normType unknown", { RGB }, { 0 } } });
    addRefusals("pxkNorm",
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
    Operation op(
        "pxkMinMaxFP", { "srcImage" },
        [](const Arguments& a) {
            float low = 77, high = 77;
            const int32_t status = pxkMinMaxFP(a[0], a.numbers.empty() ? &low : nullptr, &high);
            found = { low, high };
            return status;
        },
        [](const Scene& s, const Numbers&) {
            const PicturePtr all = s[0].copy();
            all->setMask(nullptr); // which does not count
            std::vector<double> samples;
            forEachSelected({ &*all }, [&](const Place* at) {
                if (!std::isnan(at->number())) samples.push_back(at->number());
            });
            const auto ends = std::minmax_element(samples.begin(), samples.end());
            EXPECT_TRUE(samples.empty() ? std::isnan(found[0]) && std::isnan(found[1])
                                        : found[0] == *ends.first && found[1] == *ends.second);
        });
    op.axes.depths = { PXK_DEPTH_32F };
    op.isPointwise = op.hasMasks = false; // tiles beyond the mask count, too
    op.faultStatus = PXK_StsBadArg;
    op.refusedTile = tellsNullTile(op.images, "NULL");
    op.nWritten = 0;
    addOperation(op);
    addRefusals(op.name,
                { { "((min == ((void*)(0)))||(max == ((void*)(0))))", { RGB }, { 1 } },
                  { "(srcImage->depth != 32)", { GRAY_32S } } });
}

const Rows rows([] {
    addHistogram();
    addMap(
        "pxkContrastStretch", [](const Arguments& a, PxkLUT** lut) { pxkContrastStretch(a[0], a[1], lut); },
        modelStretched);
    addMap(
        "pxkHistoEqualize", [](const Arguments& a, PxkLUT** lut) { pxkHistoEqualize(a[0], a[1], lut); },
        modelEqualized);
    addMoments();
    addNorm("pxkNorm", { "srcImageA", "srcImageB" });
    addNorm("pxkNorm_one", { "srcImageA" });
    addNormRefusals();
    addExtrema();
});

} // namespace
