// Bit reduction against the model, known answers, refusals, tiles that can't be had.
#include "reference/dither.h"

#include "support/cases.h"
#include "support/refused_tiles.h"
#include "support/reports.h"

namespace {

const int32_t ditherTypes[] = { PXK_DITHER_NONE, PXK_DITHER_FS, PXK_DITHER_JJN, PXK_DITHER_STUCKI, PXK_DITHER_BAYER };

struct Pair {
    int32_t from, to;
};
const Pair pairs[] = { { PXK_DEPTH_32S, PXK_DEPTH_16U }, { PXK_DEPTH_32S, PXK_DEPTH_8U },
                       { PXK_DEPTH_32S, PXK_DEPTH_1U },  { PXK_DEPTH_16U, PXK_DEPTH_16U },
                       { PXK_DEPTH_16U, PXK_DEPTH_8U },  { PXK_DEPTH_16U, PXK_DEPTH_1U },
                       { PXK_DEPTH_8U, PXK_DEPTH_8U },   { PXK_DEPTH_8U, PXK_DEPTH_1U } };

// Four bytes each, as the header has them.
void setModel(Picture& picture, const char* colorModel, const char* channelSeq)
{
    memset(picture.header.colorModel, 0, 4);
    memset(picture.header.channelSeq, 0, 4);
    memcpy(picture.header.colorModel, colorModel, strnlen(colorModel, 4));
    memcpy(picture.header.channelSeq, channelSeq, strnlen(channelSeq, 4));
    picture.freeze();
}

// A reduction: its arguments, and what its images are made from.
struct Reduction {
    Pair depths = { PXK_DEPTH_8U, PXK_DEPTH_1U };
    int32_t channels = 1, order = PXK_DATA_ORDER_PIXEL;
    int32_t jitterType = 0, ditherType = PXK_DITHER_FS, bitCount = 1;
    PictureSpec src, dst;
    bool isInPlace = false;
    uint64_t seed = 1;

    bool isGray() const { return channels == 1; }
    bool isLegal() const
    {
        const bool isDithered = ditherType != PXK_DITHER_NONE;
        if (depths.to != PXK_DEPTH_1U) return true;
        return isGray() && !(isDithered && (jitterType != 0 || depths.from == PXK_DEPTH_32S));
    }
    std::string text() const
    {
        std::string s = std::string(depthName(depths.from)) + " to " + depthName(depths.to);
        const std::pair<const char*, int32_t> numbers[] = {
            { "channels", channels },
            { "order", order },
            { "jitter", jitterType },
            { "dither", ditherType },
            { "bits", bitCount },
            { "source width", src.width },
            { "height", src.height },
            { "destination width", dst.width },
            { "height", dst.height },
            { "source tile width", src.tileWidth },
            { "height", src.tileHeight },
            { "destination tile width", dst.tileWidth },
            { "height", dst.tileHeight },
            { "in place", isInPlace },
            { "seed", static_cast<int32_t>(seed) },
        };
        for (const auto& n : numbers) s += std::string(", ") + n.first + ' ' + std::to_string(n.second);
        return s;
    }
    void run(PxkImage* from, PxkImage* to) const { pxkReduceBits(from, to, jitterType, ditherType, bitCount); }
    void model(Picture& from, Picture& to) const { model::reduceBits(from, to, jitterType, ditherType, bitCount); }
};

Scene makeImages(const Reduction& r)
{
    Random random(r.seed);
    Scene scene;
    scene.images = { Picture::make(r.src, random), Picture::make(r.dst, random) };
    if (r.isInPlace) scene.images[1] = scene.images[0];
    // Half of the sources are narrow bands of values, on which errors add up; the others are full of extremes.
    const double low = static_cast<double>(depthMin(r.depths.from)),
                 high = static_cast<double>(depthMax(r.depths.from));
    if (random.oneIn(2)) {
        const double start = low + (high - low) * random.below(90) / 100;
        fillRange(scene[0], random, start, start + (high - low) / 10);
    }
    const char* const seq = r.isGray() ? random.oneOf({ "G", "GRAY", "Gx" }) : random.oneOf({ "RGB", "BGR" });
    setModel(scene[0], r.isGray() ? random.oneOf({ "Gray", "GRAY" }) : "RGB", seq);
    return scene;
}

void expectLikeModel(const Reduction& r)
{
    SCOPED_TRACE(r.text());
    const unsigned randSeed = static_cast<unsigned>(r.seed);
    Scene got = makeImages(r);
    const PicturePtr mask = Picture::make(PictureSpec(PXK_DEPTH_1U, 5, 3), r.seed);
    got[1].setMask(mask); // which does not count
    got[1].freeze();
    const Scene want = got.copy();
    srand(randSeed);
    r.model(want[0], want[1]);
    startReports();
    srand(randSeed);
    r.run(got[0], got[1]);
    expectNoReports();
    EXPECT_TRUE(sameScene(want, got));
}

void chooseShape(Reduction& r, Random& random)
{
    // Widths round the chunks in which the library may walk, and heights round its rows under way.
    const int32_t widths[] = { 1, 2, 3, 8, 21, 63, 64, 65, 128, 130, 300, 530 };
    const int32_t heights[] = { 1, 2, 3, 4, 5, 6, 9, 17, 40 };
    r.src = PictureSpec(r.depths.from, random.oneOf(widths), random.oneOf(heights), r.channels, r.order);
    r.dst = PictureSpec(r.depths.to, r.src.width, r.src.height, r.channels, r.order);
    if (random.oneIn(4)) r.dst.width = random.oneOf(widths);
    if (random.oneIn(4)) r.dst.height = random.oneOf(heights);
    if (r.channels == 4) r.src.hasAlpha = true;
    for (PictureSpec* spec : { &r.src, &r.dst }) {
        spec->align = random.oneOf({ 4, 8, 32 });
        if (random.oneIn(2)) spec->tiled(8 * random.between(1, 9), 8 * random.between(1, 3));
    }
    r.isInPlace = r.depths.from == r.depths.to && random.oneIn(3);
    if (r.isInPlace) r.dst = r.src;
}

} // namespace

TEST(ReduceBits, matchesModel)
{
    const int32_t bitCounts[] = { -1, 0, 1, 2, 3, 4, 7, 8, 9, 15, 16, 17 };
    Random random(7);
    int32_t legal = 0;
    for (uint64_t seed = 1; seed <= 6000 && !::testing::Test::HasFailure(); ++seed) {
        Reduction r;
        r.seed = seed;
        r.depths = random.oneOf(pairs);
        r.channels = random.oneOf({ 1, 1, 1, 3, 3, 4, 40 });
        r.order = random.oneOf({ PXK_DATA_ORDER_PIXEL, PXK_DATA_ORDER_PLANE });
        r.ditherType = random.oneOf(ditherTypes);
        r.bitCount = random.oneOf(bitCounts);
        r.jitterType = random.oneIn(3) ? random.between(1, 8) : 0;
        chooseShape(r, random);
        if (r.channels == 40) r.src.width = r.dst.width = random.between(1, 12);
        if (!r.isLegal()) continue;
        ++legal;
        expectLikeModel(r);
    }
    EXPECT_GT(legal, 3000);
}

// A picture larger than all blocks of the library, for each way along a row.
TEST(ReduceBits, largePictures)
{
    for (const int32_t ditherType : ditherTypes) {
        for (const Pair depths : { pairs[6], pairs[7], pairs[3] }) {
            for (const int32_t channels : { 1, 3 }) {
                Reduction r;
                r.depths = depths;
                r.channels = channels;
                r.ditherType = ditherType;
                r.bitCount = 2;
                r.src = PictureSpec(depths.from, 1500, 40, channels);
                r.dst = PictureSpec(depths.to, 1500, 40, channels);
                if (r.isLegal()) expectLikeModel(r);
            }
        }
    }
}

// ---- known answers -------------------------------------------------------------------------------------------------

namespace {

int32_t bitsSet(double gray, int32_t ditherType, int32_t bitCount)
{
    const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 64, 64));
    const PicturePtr dst = Picture::make(PictureSpec(PXK_DEPTH_1U, 64, 64));
    setModel(*src, "GRAY", "G");
    src->setAll(gray);
    pxkReduceBits(*src, *dst, 0, ditherType, bitCount);
    int32_t count = 0;
    for (int32_t i = 0; i < 64 * 64; ++i) count += static_cast<int32_t>(dst->value(i % 64, i / 64));
    return count;
}

} // namespace

// One significant bit has the levels 0, 128 and 255, of which the upper two become ones; no bit has 0 and 255.
TEST(ReduceBits, oneBitIsNotTrueToTone)
{
    startReports();
    for (const int32_t ditherType : { PXK_DITHER_FS, PXK_DITHER_JJN, PXK_DITHER_STUCKI }) {
        EXPECT_NEAR(bitsSet(64, ditherType, 1), 2048, 100);
        EXPECT_EQ(bitsSet(128, ditherType, 1), 4096);
        EXPECT_NEAR(bitsSet(64, ditherType, 0), 1028, 100);
        EXPECT_NEAR(bitsSet(128, ditherType, 0), 2056, 100);
        EXPECT_EQ(bitsSet(64, ditherType, 2), bitsSet(64, ditherType, 0));
    }
    expectNoReports();
}

// Ordered, 8U with 4 bits: 16 thresholds on the low four bits, here of 0x48.
TEST(ReduceBits, orderedPattern)
{
    startReports();
    const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 4, 4));
    const PicturePtr dst = src->copy();
    setModel(*src, "GRAY", "G");
    src->setAll(0x48);
    pxkReduceBits(*src, *dst, 0, PXK_DITHER_BAYER, 4);
    const int32_t want[4][4] = {
        { 0x50, 0x40, 0x50, 0x40 }, { 0x50, 0x50, 0x40, 0x50 }, { 0x50, 0x40, 0x50, 0x40 }, { 0x40, 0x50, 0x40, 0x50 }
    };
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 4; ++x) EXPECT_EQ(dst->value(x, y), want[y][x]) << x << ' ' << y;
    expectNoReports();
}

TEST(ReduceBits, allBitsAreTheImage)
{
    startReports();
    for (const int32_t ditherType : ditherTypes) {
        const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 70, 9, 3), 3);
        const PicturePtr dst = Picture::make(PictureSpec(PXK_DEPTH_8U, 70, 9, 3), 4);
        pxkReduceBits(*src, *dst, 0, ditherType, 8);
        EXPECT_TRUE(sameSamples(*src, *dst));
    }
    expectNoReports();
}

// Noise comes from where `rand` stands; 8U samples of 240 and more get none.
TEST(ReduceBits, noise)
{
    startReports();
    const PicturePtr src = Picture::make(PictureSpec(PXK_DEPTH_8U, 64, 64), 5);
    const PicturePtr once = src->copy(), twice = src->copy(), again = src->copy();
    srand(11);
    pxkReduceBits(*src, *once, 3, PXK_DITHER_NONE, 8);
    pxkReduceBits(*src, *twice, 3, PXK_DITHER_NONE, 8);
    srand(11);
    pxkReduceBits(*src, *again, 3, PXK_DITHER_NONE, 8);
    EXPECT_TRUE(sameSamples(*once, *again));
    EXPECT_FALSE(sameSamples(*once, *twice));
    for (int32_t i = 0; i < 64 * 64; ++i) {
        const int64_t v = src->value(i % 64, i / 64);
        EXPECT_TRUE(v < 240 || once->value(i % 64, i / 64) == v);
    }
    expectNoReports();
}

// ---- refusals ------------------------------------------------------------------------------------------------------

namespace {

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
    { "pxkReduceBits", "(jitterType<0)||( jitterType >= 9)", toBits, 9, 2, "CMY", "C", false,
      [](Picture& s, Picture&) { badHeader(s); } },
    { "pxkReduceBits", "(jitterType<0)||( jitterType >= 9)", toBits, -1, 2, "CMY", "C" },
    { "pxkReduceBits", "Incorrect Image", toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { badHeader(s), d.header.width = 0, region(d); }, PXK_StsBadAlign },
    { "pxkReduceBits", "Incorrect Image", toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { badHeader(d), region(s); }, PXK_StsBadAlign },
    { "pxkReduceBits", "src & dst roi must be NULL", toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { region(s), s.header.origin = 1 - d.header.origin; } },
    { "pxkReduceBits", "src & dst roi must be NULL", toBits, 1, 2, "CMY", "C", false,
      [](Picture&, Picture& d) { region(d); } },
    { "pxkReduceBits", textShape, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture& d) { s.header.origin = 1 - d.header.origin; } },
    { "pxkReduceBits", textShape, toBits, 1, 2, "CMY", "C", false,
      [](Picture& s, Picture&) { s.header.dataOrder = PXK_DATA_ORDER_PLANE; } },
    { "pxkReduceBits", textShape, plain, 1, 1, "CMY", "C", false,
      [](Picture& s, Picture&) { s.header.nChannels = 2, s.header.width = 8; } },
    { "pxkReduceBits", "Jittering is incompatible with dithering operation for 1U destination image", toBits, 1, 2,
      "CMY", "C" },
    { "pxkReduceBits", textModel, plain, 0, 2, "RGB", "RGBA" },
    { "pxkReduceBits", textModel, plain, 0, 3, "RGBA", "RGB" },
    { "pxkReduceBits", textModel, plain, 0, 16, "RGB", "G" },
    { "pxkReduceBits", textModel, plain, 0, 2, "gray", "G" },
    { "pxkReduceBits", textModel, plain, 1, 2, "GRAY", "Y" },
};

const char* const text32S = "Error output depth. 32S to 16U,8U,1U conversion is valid now";
const char* const text16U = "Error output depth. 16U to 8U,1U conversion is valid now";
const char* const text8U = "Error output depth. 8U to 1U conversion is valid now";
const char* const textInput = "Error input depth. 32S,16U,8U input is valid now";
const char* const textGray =
    "Error output depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U";

const Refused stageRows[] = {
    { "ownReduceBits", text32S, { PXK_DEPTH_32S, PXK_DEPTH_32S }, 0, 1, "CMY", "C" },
    { "ownReduceBits", text32S, { PXK_DEPTH_32S, PXK_DEPTH_32F }, 0, 2, "GRAY", "G" },
    { "ownReduceBits", text16U, { PXK_DEPTH_16U, PXK_DEPTH_16S }, 0, 1, "CMY", "C" },
    { "ownReduceBits", text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 0, 16, "GRAY", "G" },
    { "ownReduceBits", text8U, { PXK_DEPTH_8U, PXK_DEPTH_8S }, 0, 1, "CMY", "C", true },
    { "ownReduceBits", textInput, { PXK_DEPTH_8S, PXK_DEPTH_8U }, 0, 2, "RGB", "RGB" },
    { "ownReduceBits", textInput, { PXK_DEPTH_1U, PXK_DEPTH_1U }, 0, 1, "CMY", "C" },
    { "ownReduceBits", textInput, { PXK_DEPTH_16S, PXK_DEPTH_8U }, 0, 4, "RGB", "RGB", true },
    { "ownjitter_rect",
      "Error output depth for 32S input. Conversion to 16U,8U,1U is valid now",
      { PXK_DEPTH_32S, PXK_DEPTH_8S },
      8,
      1,
      "CMY",
      "C" },
    { "ownjitter_rect",
      "Error output depth for 16U input. Conversion to 8U,1U is valid now",
      { PXK_DEPTH_16U, PXK_DEPTH_32S },
      1,
      16,
      "RGB",
      "BGR" },
    { "ownjitter_rect", text8U, { PXK_DEPTH_8U, PXK_DEPTH_16U }, 1, 1, "CMY", "C" },
    { "ownjitter_rect",
      "Error output depth for 8U input. Conversion to 1U is valid now",
      { PXK_DEPTH_32F, PXK_DEPTH_8U },
      1,
      1,
      "CMY",
      "C" },
    { "own_dither_rect", textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 2, "RGB", "RGB" },
    { "own_dither_rect", textColour, { PXK_DEPTH_16U, PXK_DEPTH_1U }, 0, 16, "RGB", "RGB", true },
    { "own_dither_rect", textGray, { PXK_DEPTH_32S, PXK_DEPTH_1U }, 0, 2, "GRAY", "G" },
    { "own_dither_rect", textGray, { PXK_DEPTH_8S, PXK_DEPTH_1U }, 0, 3, "Gray", "GRAY", true },
    { "own_dither_rect", "Erroneous dither option", { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 3, "GRAY", "G" },
    { "own_dither_rect", "Erroneous dither option", { PXK_DEPTH_16U, PXK_DEPTH_8U }, 2, 0, "RGB", "RGB", true },
    { "own_dither_tiled_errprop", textColour, { PXK_DEPTH_8U, PXK_DEPTH_1U }, 0, 4, "RGB", "RGB", true },
    { "own_dither_tiled_errprop",
      "Error depth for gray image dithering. Valid depths are :32S=>16U,8U; 16U => 8U,1U; 8U => 1U",
      { PXK_DEPTH_32S, PXK_DEPTH_32S },
      0,
      8,
      "GRAY",
      "G",
      true },
};

void expectRefused(const Refused& row)
{
    SCOPED_TRACE(std::string(row.func) + ": " + row.text);
    PictureSpec src(row.depths.from, 16, 8), dst(row.depths.to, 16, 8);
    if (row.isTiled) dst.tiled(8, 8);
    Scene got;
    got.images = { Picture::make(src, 1), Picture::make(dst, 2) };
    setModel(got[0], row.colorModel, row.channelSeq);
    row.spoil(got[0], got[1]);
    got[0].freeze();
    got[1].freeze();
    const Scene want = got.copy();
    startReports();
    pxkReduceBits(got[0], got[1], row.jitterType, row.ditherType, 4);
    expectReports({ { row.status, row.func, row.text } });
    EXPECT_TRUE(sameScene(want, got));
    EXPECT_TRUE(got[1].storage->calls.empty());
}

} // namespace

TEST(ReduceBits, refusals)
{
    for (const Refused& row : argumentRows) expectRefused(row);
    for (const Refused& row : stageRows) expectRefused(row);
    startReports();
    pxkReduceBits(nullptr, nullptr, 0, 1, 1);
    expectReports({ { PXK_StsNullHeader, "pxkReduceBits", "Incorrect Image" } });
}

// Behind a failure of before it runs on, and leaves that status.
TEST(ReduceBits, staleStatus)
{
    startReports();
    pxkSetErrStatus(PXK_StsNoMem);
    EXPECT_EQ(bitsSet(255, PXK_DITHER_FS, 1), 4096);
    EXPECT_EQ(pxkGetErrStatus(), PXK_StsNoMem);
    EXPECT_TRUE(recordedReports().empty());
    startReports();
}

TEST(ReduceBits, refusedTiles)
{
    for (const int32_t ditherType : { PXK_DITHER_NONE, PXK_DITHER_JJN, PXK_DITHER_BAYER }) {
        for (const Pair depths : { pairs[7], pairs[4] }) {
            for (int32_t k = 0; k < 2; ++k) {
                Reduction r;
                r.depths = depths;
                r.ditherType = ditherType;
                r.src = PictureSpec(depths.from, 30, 20).tiled(16, 8);
                r.dst = PictureSpec(depths.to, 30, 20).tiled(8, 16);
                SCOPED_TRACE(r.text());
                const Scene old = makeImages(r);
                const Scene complete = old.copy();
                r.model(complete[0], complete[1]);
                int32_t refused = 1;
                for (; !::testing::Test::HasFailure(); ++refused) {
                    const Scene got = old.copy();
                    got[k].storage->refuseAt = refused;
                    startReports();
                    r.run(got[0], got[1]);
                    if (recordedReports().empty()) break;
                    expectReports(
                        { { PXK_StsBadArg, "pxkReduceBits",
                            k == 0 ? "(src->tileInfo->tileData == NULL)" : "(dst->tileInfo->tileData == NULL)" } });
                    EXPECT_TRUE(samePicture(old[0], got[0]));
                    EXPECT_TRUE(isPartOf(old[1], complete[1], got[1]));
                }
                EXPECT_GT(refused, 6);
            }
        }
    }
}
