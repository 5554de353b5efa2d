// SPDX-License-Identifier: BSD-2-Clause
// Bit reduction.
#include "colour_cases.h"
#include "reference/dither.h"
#include "support/operations.h"

namespace {

struct Pair {
    int32_t from, to;
};

// The depth goes to itself, but for 32S, or to a lower one; colour does not go to bits. Widths lie round the chunks in
// which the library may walk, and heights round its rows under way.
Scene reductionScene(Case c)
{
    Random random(c.seed);
    int32_t to = c.depth == PXK_DEPTH_8U || random.oneIn(2) ? PXK_DEPTH_8U : PXK_DEPTH_16U;
    if (random.oneIn(3) && c.place == InPlace::NO) to = PXK_DEPTH_1U;
    if (c.place != InPlace::NO && c.depth != PXK_DEPTH_32S) to = c.depth;
    if (to != c.depth) c.place = InPlace::NO;
    const int32_t channels = to == PXK_DEPTH_1U ? 1 : random.oneOf({ 1, 1, 3, 3, 4, 40 });
    const int32_t width = random.oneOf({ 1, 2, 3, 8, 21, 63, 64, 65, 128, 130, 300, 530 });
    const int32_t height = random.oneOf({ 1, 2, 3, 4, 5, 6, 9, 17, 40 });
    if (c.width == 0) c.width = channels == 40 ? std::min(width, 12) : width;
    if (c.height == 0) c.height = height;
    c.region = random.oneIn(2) ? Region::WHOLE : Region::OWN;
    const Scene scene = makeScene(c, 2, [&](PictureSpec& spec, size_t k) {
        if (k == 1) spec.depth = to;
        spec.channels = channels;
        spec.hasAlpha = k == 0 && channels == 4;
    });
    // Half of the sources are narrow bands of values, on which errors add up; the others are full of extremes.
    const double low = double(depthMin(c.depth)), high = double(depthMax(c.depth));
    if (random.oneIn(2)) {
        const double start = low + (high - low) * random.below(90) / 100;
        fillRange(scene[0], random, start, start + (high - low) / 10);
    }
    const bool isGray = channels == 1;
    const char* const seq = isGray ? random.oneOf({ "G", "GRAY", "Gx" }) : random.oneOf({ "RGB", "BGR" });
    setWords(scene[0], isGray ? random.oneOf({ "Gray", "GRAY" }) : "RGB", seq);
    return scene;
}

// Jitter, dither, bits, and where `rand` stands.
Numbers anyReduction(const Case& c, const Scene& s, Random& random)
{
    const bool isToBits = s[1].spec.depth == PXK_DEPTH_1U;
    int32_t dither =
        random.oneOf({ PXK_DITHER_NONE, PXK_DITHER_FS, PXK_DITHER_JJN, PXK_DITHER_STUCKI, PXK_DITHER_BAYER });
    if (isToBits && c.depth == PXK_DEPTH_32S) dither = PXK_DITHER_NONE;
    const bool mayJitter = !isToBits || dither == PXK_DITHER_NONE;
    const int32_t jitter = mayJitter && random.oneIn(3) ? random.between(1, 8) : 0;
    const int32_t bits = random.oneOf({ -1, 0, 1, 2, 3, 4, 7, 8, 9, 15, 16, 17 });
    return { double(jitter), double(dither), double(bits), double(random.below(1000)) };
}

// With tiles there is an image to hold them, too.
Ending diffusionWithoutMemory(const std::string& kind, size_t, const Scene& s)
{
    if (s[0].isTiled() || s[1].isTiled()) {
        const char* const text = "no memory for error propagation dithering errors array";
        return Ending({ { PXK_StsNoMem, "pxkReduceBits", text } });
    }
    const int32_t at = s[1].spec.depth == PXK_DEPTH_1U ? s[0].spec.depth : s[1].spec.depth; // where errors are spread
    const std::string depth = at == PXK_DEPTH_8U ? "c" : "w", gray = s[0].spec.channels == 1 ? "Gray_" : "";
    return Ending({ { PXK_StsNoMem, "own" + depth + "bDither_" + gray + kind, "no memory for errr array" } });
}

// Wrong arguments: depths, noise and dithering, words of the source, and what is spoilt besides.
Refusal refused(const char* func, const char* text, Pair depths, int32_t jitterType, int32_t ditherType,
                const char* colorModel, const char* channelSeq, bool isTiled = false, const Spoil& spoil = {},
                int32_t status = PXK_StsBadArg)
{
    const PictureSpec src = { depths.from, 16, 8 }, dst = src.ofDepth(depths.to);
    const auto prepare = [=](const Scene& s) {
        setWords(s[0], colorModel, channelSeq);
        if (spoil) spoil(s);
    };
    return { text,
             { src, isTiled ? dst.tiled(8, 8) : dst },
             { double(jitterType), double(ditherType), 4, 1 },
             prepare,
             status,
             func };
}

const char *const reduceBits = "pxkReduceBits", *const stage = "ownReduceBits", *const jitterRect = "ownjitter_rect";
const char *const dither = "own_dither_rect", *const tiledDither = "own_dither_tiled_errprop";
const char* const textType = "(jitterType<0)||( jitterType >= 9)";
const char* const textHeader = "Incorrect Image";
const char* const textRegion = "src & dst roi must be NULL";
const char* const textJitter = "Jittering is incompatible with dithering operation for 1U destination image";
const char* const textJitter32S = "Error output depth for 32S input. Conversion to 16U,8U,1U is valid now";
const char* const textJitter16U = "Error output depth for 16U input. Conversion to 8U,1U is valid now";
const char* const textJitter8U = "Error output depth for 8U input. Conversion to 1U is valid now";
const char* const textTiledGray =
    "Error depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U";
const char* const textColour = "Error output depth for color dithering. 16U,8U is valid now";
const char* const textModel =
    "colorModel, (channelSeq)  must be RGB,(RGB,BGR) or GRAY,(G) when dithering mode is set on";
const char* const textShape =
    "(src->nChannels != dst->nChannels)||(src->dataOrder != dst->dataOrder)||(src->origin != dst->origin)";

const Pair plain = { PXK_DEPTH_8U, PXK_DEPTH_8U }, toBits = { PXK_DEPTH_8U, PXK_DEPTH_1U };
const auto badHeader = [](size_t k) { return [k](const Scene& s) { s[k].header.align = 3; }; };
const auto region = [](size_t k) { return [k](const Scene& s) { s[k].setRegion(0, 0, 4, 4); }; };
const auto both = [](const Spoil& first, const Spoil& second) { return [=](const Scene& s) { first(s), second(s); }; };

// Each row but the last breaks the later rules, too, as far as it can.
const std::vector<Refusal> argumentRows = {
    refused(reduceBits, textType, toBits, 9, 2, "CMY", "C", false, badHeader(0)),
    refused(reduceBits, textType, toBits, -1, 2, "CMY", "C"),
    refused(reduceBits, textHeader, toBits, 1, 2, "CMY", "C", false, both(badHeader(0), region(1)), PXK_StsBadAlign),
    refused(reduceBits, textHeader, toBits, 1, 2, "CMY", "C", false, both(badHeader(1), region(0)), PXK_StsBadAlign),
    refused(reduceBits, textRegion, toBits, 1, 2, "CMY", "C", false, both(region(0), turned(0))),
    refused(reduceBits, textRegion, toBits, 1, 2, "CMY", "C", false, region(1)),
    refused(reduceBits, textShape, toBits, 1, 2, "CMY", "C", false, turned(0)),
    refused(reduceBits, textShape, toBits, 1, 2, "CMY", "C", false, [](const Scene& s) { s[0].header.dataOrder = 1; }),
    refused(reduceBits, textShape, plain, 1, 1, "CMY", "C", false, [](const Scene& s) { s[0].header.nChannels = 2; }),
    refused(reduceBits, textJitter, toBits, 1, 2, "CMY", "C"),
    refused(reduceBits, textModel, plain, 0, 2, "RGB", "RGBA"),
    refused(reduceBits, textModel, plain, 0, 3, "RGBA", "RGB"),
    refused(reduceBits, textModel, plain, 0, 16, "RGB", "G"),
    refused(reduceBits, textModel, plain, 0, 2, "gray", "G"),
    refused(reduceBits, textModel, plain, 1, 2, "GRAY", "Y"),
};

const char* const text32S = "Error output depth. 32S to 16U,8U,1U conversion is valid now";
const char* const text16U = "Error output depth. 16U to 8U,1U conversion is valid now";
const char* const text8U = "Error output depth. 8U to 1U conversion is valid now";
const char* const textInput = "Error input depth. 32S,16U,8U input is valid now";
const char* const textGray =
    "Error output depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U";

const std::vector<Refusal> stageRows = {
    refused(stage, text32S, { PXK_DEPTH_32S, PXK_DEPTH_32S }, 0, 1, "CMY", "C"),
    refused(stage, text32S, { PXK_DEPTH_32S, PXK_DEPTH_32F }, 0, 2, "GRAY", "G"),
    refused(stage, text16U, { PXK_DEPTH_16U, PXK_DEPTH_16S }, 0, 1, "CMY", "C"),
    refused(stage, text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 0, 16, "GRAY", "G"),
    refused(stage, text8U, { PXK_DEPTH_8U, PXK_DEPTH_8S }, 0, 1, "CMY", "C", true),
    refused(stage, textInput, { PXK_DEPTH_8S, PXK_DEPTH_8U }, 0, 2, "RGB", "RGB"),
    refused(stage, textInput, { PXK_DEPTH_1U, PXK_DEPTH_1U }, 0, 1, "CMY", "C"),
    refused(stage, textInput, { PXK_DEPTH_16S, PXK_DEPTH_8U }, 0, 4, "RGB", "RGB", true),
    refused(jitterRect, textJitter32S, { PXK_DEPTH_32S, PXK_DEPTH_8S }, 8, 1, "CMY", "C"),
    refused(jitterRect, textJitter16U, { PXK_DEPTH_16U, PXK_DEPTH_32S }, 1, 16, "RGB", "BGR"),
    refused(jitterRect, text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 1, 1, "CMY", "C"),
    refused(jitterRect, textJitter8U, { PXK_DEPTH_32F, PXK_DEPTH_8U }, 1, 1, "CMY", "C"),
    refused(dither, textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 2, "RGB", "RGB"),
    refused(dither, textColour, { PXK_DEPTH_16U, PXK_DEPTH_1U }, 0, 16, "RGB", "RGB", true),
    refused(dither, textGray, { PXK_DEPTH_32S, PXK_DEPTH_1U }, 0, 2, "GRAY", "G"),
    refused(dither, textGray, { PXK_DEPTH_8S, PXK_DEPTH_1U }, 0, 3, "Gray", "GRAY", true),
    refused(dither, "Erroneous dither option", { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 3, "GRAY", "G"),
    refused(dither, "Erroneous dither option", { PXK_DEPTH_16U, PXK_DEPTH_8U }, 2, 0, "RGB", "RGB", true),
    refused(tiledDither, textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 4, "RGB", "RGB", true),
    refused(tiledDither, textTiledGray, { PXK_DEPTH_32S, PXK_DEPTH_32S }, 0, 8, "GRAY", "G", true),
};

const Rows rows([] {
    Operation op(
        "pxkReduceBits", { "src", "dst" },
        [](const Arguments& a) {
            srand(unsigned(a.integer(3)));
            pxkReduceBits(a[0], a[1], a.integer(0), a.integer(1), a.integer(2));
        },
        [](const Scene& s, const Numbers& n) {
            srand(unsigned(n[3]));
            model::reduceBits(s[0], s[1], int32_t(n[0]), int32_t(n[1]), int32_t(n[2]));
        });
    op.scene = reductionScene;
    op.numbers = anyReduction;
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_16U, PXK_DEPTH_32S };
    op.axes.places = { InPlace::NO, InPlace::NO, InPlace::FIRST };
    op.axes.channels = { Channels::ONE };
    op.axes.tilings = { 0, 1, 2, ALL_IMAGES };
    op.axes.count = 3000;
    op.isPointwise = op.hasRegions = op.hasMasks = false; // masks do not count
    for (const int32_t depth : { PXK_DEPTH_8U, PXK_DEPTH_16U }) {
        for (const int32_t kind : { PXK_DITHER_FS, PXK_DITHER_JJN, PXK_DITHER_STUCKI, PXK_DITHER_BAYER }) {
            op.trials.push_back({ depth, { 0, double(kind), 4, 1 }, kind == PXK_DITHER_FS ? "Floyd_PX" : "S_J_PX" });
        }
    }
    op.refusedTile = [](const std::string&, size_t image, const Scene& s) {
        return tellsNullTile({ "src", "dst" }, "NULL")("pxkReduceBits", image, s);
    };
    op.noMemory = diffusionWithoutMemory;
    addOperation(op);
    // Diffusion holds the whole picture, however it is tiled.
    const PictureSpec tiles = PictureSpec { PXK_DEPTH_8U, 16, 8 }.tiled(8, 8);
    addRefusals("pxkReduceBits",
                { { "no memory for error propagation dithering errors array",
                    { tiles, tiles },
                    { 0, PXK_DITHER_FS, 4, 1 },
                    [](const Scene& s) {
                        setWords(s[0], "GRAY", "G");
                        for (const PicturePtr& p : s.images) p->header.width = p->header.height = 1 << 20;
                    },
                    PXK_StsNoMem } });
    addRefusals("pxkReduceBits", argumentRows);
    addRefusals("pxkReduceBits", stageRows);
});

} // namespace
