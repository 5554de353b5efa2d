// SPDX-License-Identifier: BSD-2-Clause
// Bitmaps to images and back.
#include "reference/dib.h"
#include "support/operations.h"

namespace {

const char words[][5] = { "G\0\0", "GRAY", "BGR", "BGRA", "RGB", "RGBA" };
const int32_t bitCounts[] = { 1, 4, 8, 16, 24, 32 };

// One to three channels of any kind that is served.
PicturePtr somePicture(Random& random, int32_t width, int32_t height)
{
    const int32_t channels = random.oneOf({ 1, 3, 4 });
    const int32_t depth = random.oneOf({ PXK_DEPTH_8U, PXK_DEPTH_16U, channels == 1 ? PXK_DEPTH_1U : PXK_DEPTH_8U });
    PictureSpec spec { depth, width, height, channels, random.below(2) };
    spec.hasAlpha = channels == 4;
    spec.align = random.oneOf({ 4, 8, 16, 32 });
    spec.origin = random.below(2);
    const PicturePtr picture = Picture::make(spec, random);
    memcpy(picture->header.channelSeq, random.oneOf({ 0, 1, 2, 3, 4, 5 }) + words, 4);
    if (random.oneIn(4)) picture->header.widthStep += 8; // rows are counted from width, depth and align
    picture->freeze();
    return picture;
}

uint32_t someMask(Random& random, int32_t bits)
{
    if (random.oneIn(4)) return static_cast<uint32_t>(random.next());
    return ((1u << random.between(1, 12)) - 1) << (random.oneIn(3) ? 0 : random.below(bits));
}

// Colours of a table: of chance, close to each other with equal ones among them, or with many grays at their place.
void fillTable(Bitmap& bitmap, Random& random)
{
    const PxkBitmapInfoHeader h = bitmap.header();
    const int32_t kind = random.below(3), count = Bitmap::tableWords(h);
    for (int32_t i = 0; i < count; ++i) {
        uint32_t entry = static_cast<uint32_t>(random.next());
        if (kind == 1) entry &= 0xFF0F0F0F;
        if (kind == 2 && !random.oneIn(3)) entry = 0x010101u * static_cast<uint32_t>(random.oneIn(3) ? i / 2 : i);
        bitmap.setWord(i, h.biBitCount > 8 ? someMask(random, h.biBitCount) : entry);
    }
}

std::shared_ptr<Bitmap> someBitmap(Random& random, int32_t width, int32_t height)
{
    const int32_t bits = random.oneOf(bitCounts);
    const bool hasFields = (bits == 16 || bits == 32) && random.oneIn(2);
    // 24 bits ignore declared entries; so do 16 and 32.
    uint32_t colors = random.oneIn(2) ? 0 : static_cast<uint32_t>(random.between(1, 300));
    if (bits == 8 && random.oneIn(2)) colors = 256;
    const auto header = bitmapHeader(width, random.oneIn(2) ? height : -height, bits, hasFields ? 3 : 0, colors);
    const bool isSep = random.oneIn(2), isOdd = random.oneIn(3);
    const auto bitmap = std::make_shared<Bitmap>(header, isSep, random, isOdd);
    fillTable(*bitmap, random);
    return bitmap;
}

// A bitmap, and an image of its size or larger.
struct Pair {
    std::shared_ptr<Bitmap> bitmap;
    PicturePtr image;
};

Pair pairOf(double seed, bool isTo)
{
    Random random { uint64_t(seed) };
    // Mostly small; now and then longer than what is worked on at a time.
    const int32_t width = random.oneIn(20) ? random.between(1020, 2060) : random.between(1, 70);
    const int32_t height = random.between(1, 5), columns = random.below(20), rows = random.below(3);
    const bool isLarger = !isTo && random.oneIn(3);
    const auto bitmap = someBitmap(random, width, height);
    return { bitmap, somePicture(random, width + (isLarger ? columns : 0), height + (isLarger ? rows : 0)) };
}

// That of the last call. Never destroyed: its pages go back to the thread, which ends before static objects do.
std::shared_ptr<Bitmap>& converted = *new std::shared_ptr<Bitmap>;

void add(const std::string& name, bool isTo)
{
    const auto seedOf = [](const Case& c) { return double(c.seed % (1 << 30)); };
    Operation op(
        name, { "image" },
        [=](const Arguments& a) {
            converted = pairOf(a.numbers[0], isTo).bitmap;
            const int32_t status = isTo ? convertTo(a[0], *converted) : convertFrom(*converted, a[0]);
            const PxkBitmapInfoHeader header = converted->header();
            found.clear();
            int32_t isCloned = -1; // in its plain form the library also makes an image of it
            if (!converted->isSep && pxkGetErrStatus() == 0) {
                PxkImage* const image = pxkTranslateDIB(converted->dib(), &isCloned);
                if (image != nullptr) found = { double(isCloned), double(image->nChannels), double(image->depth) };
                pxkDeallocate(image, isCloned != 0 ? PXK_FREE_HEADER | PXK_FREE_DATA : PXK_FREE_HEADER);
            }
            for (int32_t i = 0; i < header.biWidth * std::abs(header.biHeight); ++i)
                found.push_back(converted->pixel(i % header.biWidth, i / header.biWidth));
            return status;
        },
        [=](const Scene& s, const Numbers& n) {
            const auto want = pairOf(n[0], isTo).bitmap;
            if (isTo) model::convertTo(s[0], *want);
            if (!isTo) model::convertFrom(*want, s[0]);
            EXPECT_TRUE(converted->sameAs(*want)) << want->header().biBitCount << " bits";
        });
    op.scene = [=](const Case& c) { return Scene { { pairOf(seedOf(c), isTo).image } }; };
    op.numbers = [=](const Case& c, const Scene&, Random&) { return Numbers { seedOf(c) }; };
    op.axes.depths = { PXK_DEPTH_8U, PXK_DEPTH_8S, PXK_DEPTH_16U, PXK_DEPTH_16S, PXK_DEPTH_32S, PXK_DEPTH_32F };
    op.axes.places.assign(4, InPlace::NO); // for as many cases
    op.axes.count = 4000;
    op.isPointwise = op.hasRegions = op.hasMasks = false;
    op.stale = isTo || pairOf(seedOf(Case()), isTo).bitmap->isSep ? Stale::RUNS : Stale::STOPS;
    op.nullImage = op.noMemory = op.refusedTile = nullptr; // tests of their own
    op.badHeader = nullptr;
    addOperation(op);
}

const Rows rows([] {
    add("pxkConvertFromDIB", false);
    add("pxkConvertToDIB", true);
});

} // namespace
