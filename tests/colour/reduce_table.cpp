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
Scene reductionScene(const Case& c)
{
    Random random(c.seed);
    const bool isWide = c.depth == PXK_DEPTH_32S;
    int32_t to = c.depth == PXK_DEPTH_8U || random.oneIn(2) ? PXK_DEPTH_8U : PXK_DEPTH_16U;
    if (random.oneIn(3) && c.place == InPlace::NO) to = PXK_DEPTH_1U;
    if (c.place != InPlace::NO && !isWide) to = c.depth;
    const int32_t channels = to == PXK_DEPTH_1U ? 1 : random.oneOf({ 1, 1, 3, 3, 4, 40 });
    int32_t width = random.oneOf({ 1, 2, 3, 8, 21, 63, 64, 65, 128, 130, 300, 530 });
    int32_t height = random.oneOf({ 1, 2, 3, 4, 5, 6, 9, 17, 40 });
    if (channels == 40) width = std::min(width, 12);
    if (c.width != 0) width = c.width;
    if (c.height != 0) height = c.height;
    PictureSpec specs[2] = { { c.depth, width, height, channels, int32_t(c.order) },
                             { to, width, height, channels, int32_t(c.order) } };
    if (random.oneIn(4)) specs[1].width = random.oneOf({ 7, 64, 130 });
    if (random.oneIn(4)) specs[1].height = random.oneOf({ 2, 9, 40 });
    specs[0].hasAlpha = channels == 4;
    Scene scene;
    for (size_t k = 0; k < 2; ++k) {
        specs[k].align = random.oneOf({ 4, 8, 32 });
        if ((c.tiling >> k & 1) != 0) {
            const int32_t tileWidth = 8 * random.between(1, 9);
            specs[k].tiled(tileWidth, 8 * random.between(1, 3));
        }
        scene.images.push_back(Picture::make(specs[k], random));
    }
    if (c.place != InPlace::NO && to == c.depth) scene.images[1] = scene.images[0];
    // Half of the sources are narrow bands of values, on which errors add up; the others are full of extremes.
    const double low = double(depthMin(c.depth)), high = double(depthMax(c.depth));
    if (random.oneIn(2)) {
        const double start = low + (high - low) * random.below(90) / 100;
        fillRange(scene[0], random, start, start + (high - low) / 10);
    }
    const bool isGray = channels == 1;
    const char* const seq = isGray ? random.oneOf({ "G", "GRAY", "Gx" }) : random.oneOf({ "RGB", "BGR" });
    setWords(scene[0], isGray ? random.oneOf({ "Gray", "GRAY" }) : "RGB", seq);
    scene[1].setMask(Picture::make(PictureSpec(PXK_DEPTH_1U, 5, 3), c.seed)); // which does not count
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

// Wrong arguments: depths, noise and dithering, words of the source, and what is spoilt besides.
struct Refused {
    const char* func;
    const char* text;
    Pair depths;
    int32_t jitterType, ditherType;
    const char *colorModel, *channelSeq;
    bool isTiled = false;
    std::function<void(Picture&, Picture&)> spoil = [](Picture&, Picture&) {};
    int32_t status = PXK_StsBadArg;
};

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
const auto badHeader = [](Picture& p) { p.header.align = 3; };
const auto region = [](Picture& p) { p.setRegion(0, 0, 4, 4); };

// Each row but the last breaks the later rules, too, as far as it can.
const Refused argumentRows[] = {
    { reduceBits, textType, toBits, 9, 2, "CMY", "C", false, [](Picture& s, Picture&) { badHeader(s); } },
    { reduceBits, textType, toBits, -1, 2, "CMY", "C" },
    { reduceBits, textHeader, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { badHeader(s), d.header.width = 0, region(d); }, PXK_StsBadAlign },
    { reduceBits, textHeader, toBits, 1, 2, "CMY", "C", false, [](Picture& s, Picture& d) { badHeader(d), region(s); },
      PXK_StsBadAlign },
    { reduceBits, textRegion, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { region(s), s.header.origin = 1 - d.header.origin; } },
    { reduceBits, textRegion, toBits, 1, 2, "CMY", "C", false, [](Picture&, Picture& d) { region(d); } },
    { reduceBits, textShape, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { s.header.origin = 1 - d.header.origin; } },
    { reduceBits, textShape, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture&) { s.header.dataOrder = PXK_DATA_ORDER_PLANE; } },
    { reduceBits, textShape, plain, 1, 1, "CMY", "C", false,
      [](Picture& s, Picture&) { s.header.nChannels = 2, s.header.width = 8; } },
    { reduceBits, textJitter, toBits, 1, 2, "CMY", "C" },
    { reduceBits, textModel, plain, 0, 2, "RGB", "RGBA" },
    { reduceBits, textModel, plain, 0, 3, "RGBA", "RGB" },
    { reduceBits, textModel, plain, 0, 16, "RGB", "G" },
    { reduceBits, textModel, plain, 0, 2, "gray", "G" },
    { reduceBits, textModel, plain, 1, 2, "GRAY", "Y" },
};

const char* const text32S = "Error output depth. 32S to 16U,8U,1U conversion is valid now";
const char* const text16U = "Error output depth. 16U to 8U,1U conversion is valid now";
const char* const text8U = "Error output depth. 8U to 1U conversion is valid now";
const char* const textInput = "Error input depth. 32S,16U,8U input is valid now";
const char* const textGray =
    "Error output depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U";

const Refused stageRows[] = {
    { stage, text32S, { PXK_DEPTH_32S, PXK_DEPTH_32S }, 0, 1, "CMY", "C" },
    { stage, text32S, { PXK_DEPTH_32S, PXK_DEPTH_32F }, 0, 2, "GRAY", "G" },
    { stage, text16U, { PXK_DEPTH_16U, PXK_DEPTH_16S }, 0, 1, "CMY", "C" },
    { stage, text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 0, 16, "GRAY", "G" },
    { stage, text8U, { PXK_DEPTH_8U, PXK_DEPTH_8S }, 0, 1, "CMY", "C", true },
    { stage, textInput, { PXK_DEPTH_8S, PXK_DEPTH_8U }, 0, 2, "RGB", "RGB" },
    { stage, textInput, { PXK_DEPTH_1U, PXK_DEPTH_1U }, 0, 1, "CMY", "C" },
    { stage, textInput, { PXK_DEPTH_16S, PXK_DEPTH_8U }, 0, 4, "RGB", "RGB", true },
    { jitterRect, textJitter32S, { PXK_DEPTH_32S, PXK_DEPTH_8S }, 8, 1, "CMY", "C" },
    { jitterRect, textJitter16U, { PXK_DEPTH_16U, PXK_DEPTH_32S }, 1, 16, "RGB", "BGR" },
    { jitterRect, text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 1, 1, "CMY", "C" },
    { jitterRect, textJitter8U, { PXK_DEPTH_32F, PXK_DEPTH_8U }, 1, 1, "CMY", "C" },
    { dither, textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 2, "RGB", "RGB" },
    { dither, textColour, { PXK_DEPTH_16U, PXK_DEPTH_1U }, 0, 16, "RGB", "RGB", true },
    { dither, textGray, { PXK_DEPTH_32S, PXK_DEPTH_1U }, 0, 2, "GRAY", "G" },
    { dither, textGray, { PXK_DEPTH_8S, PXK_DEPTH_1U }, 0, 3, "Gray", "GRAY", true },
    { dither, "Erroneous dither option", { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 3, "GRAY", "G" },
    { dither, "Erroneous dither option", { PXK_DEPTH_16U, PXK_DEPTH_8U }, 2, 0, "RGB", "RGB", true },
    { tiledDither, textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 4, "RGB", "RGB", true },
    { tiledDither, textTiledGray, { PXK_DEPTH_32S, PXK_DEPTH_32S }, 0, 8, "GRAY", "G", true },
};

void addRefused(const Refused& row)
{
    PictureSpec dst(row.depths.to, 16, 8);
    if (row.isTiled) dst.tiled(8, 8);
    const auto spoil = [row](const Scene& s) {
        setWords(s[0], row.colorModel, row.channelSeq);
        row.spoil(s[0], s[1]);
    };
    addRefusals("pxkReduceBits",
                { { row.text,
                    { PictureSpec(row.depths.from, 16, 8), dst },
                    { double(row.jitterType), double(row.ditherType), 4, 1 },
                    spoil,
                    row.status,
                    row.func } });
}

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
    op.axes.tilings = { 0, 1, 2, ALL_IMAGES };
    op.axes.count = 3000;
    op.isPointwise = op.hasRegions = op.hasMasks = false;
    op.refusedTile = [](const std::string& func, size_t k, const Scene&) {
        return tileText(func, k == 0 ? "src" : "dst", "NULL");
    };
    op.noMemory = nullptr; // reduce_memory_inner_test.cpp
    addOperation(op);
    // Diffusion holds the whole picture, however it is tiled.
    const PictureSpec tiles = PictureSpec(PXK_DEPTH_8U, 16, 8).tiled(8, 8);
    addRefusals("pxkReduceBits",
                { { "no memory for error propagation dithering errors array",
                    { tiles, tiles },
                    { 0, PXK_DITHER_FS, 4, 1 },
                    [](const Scene& s) {
                        setWords(s[0], "GRAY", "G");
                        for (const PicturePtr& p : s.images) p->header.width = p->header.height = 1 << 20;
                    },
                    PXK_StsNoMem } });
    for (const Refused& row : argumentRows) addRefused(row);
    for (const Refused& row : stageRows) addRefused(row);
});

} // namespace
