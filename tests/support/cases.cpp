// SPDX-License-Identifier: BSD-2-Clause
#include "cases.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

// ---- the product ---------------------------------------------------------------------------------------------------

std::string Case::text() const
{
    const auto number = [](const char* name, uint64_t n) { return std::string(name) + std::to_string(n); };
    return depthName(depth) + number(" order ", uint64_t(order)) + number(", region ", uint64_t(region))
        + number(", channels ", uint64_t(channels)) + number(", masks ", masks) + number(", tiles ", tiling)
        + number(", in place ", uint64_t(place)) + number(", PXK_CASE=", index) + number(" seed ", seed);
}

static size_t numberFromEnvironment(const char* name, size_t otherwise)
{
    const char* const text = getenv(name);
    return text != nullptr && *text != 0 ? static_cast<size_t>(strtoull(text, nullptr, 10)) : otherwise;
}

template <class T> static T takeOne(const std::vector<T>& items, size_t& index)
{
    const T item = items[index % items.size()];
    index /= items.size();
    return item;
}

static Case caseAt(const Axes& axes, size_t index)
{
    Case c;
    c.index = index;
    c.seed = Random(axes.seed * 1000003 + index).next();
    c.depth = takeOne(axes.depths, index);
    c.order = takeOne(axes.orders, index);
    c.region = takeOne(axes.regions, index);
    c.channels = takeOne(axes.channels, index);
    c.masks = takeOne(axes.masks, index);
    c.tiling = takeOne(axes.tilings, index);
    c.place = takeOne(axes.places, index);
    return c;
}

static size_t greatestDivisor(size_t a, size_t b)
{
    return b == 0 ? a : greatestDivisor(b, a % b);
}

void forEachCase(const Axes& axes, const std::function<void(const Case&)>& run)
{
    const size_t total = axes.depths.size() * axes.orders.size() * axes.regions.size() * axes.channels.size()
        * axes.masks.size() * axes.tilings.size() * axes.places.size();
    const size_t only = numberFromEnvironment("PXK_CASE", total);
    const size_t count = std::min(total, numberFromEnvironment("PXK_CASES", axes.count));
    const bool isTracing = getenv("PXK_TRACE") != nullptr;
    // A stride without common divisor visits each case once, and the golden section spreads any number of them evenly.
    size_t stride = count == total ? 1 : static_cast<size_t>(static_cast<double>(total) * 0.6180339887) | 1;
    while (greatestDivisor(stride, total) != 1) ++stride;
    for (size_t i = 0, index = 0; i < count; ++i, index = (index + stride) % total) {
        const Case c = caseAt(axes, only < total ? only : index);
        if (c.depth == PXK_DEPTH_1U && c.channels != Channels::ONE) continue; // one-bit images have one channel
        SCOPED_TRACE(c.text());
        if (isTracing) fprintf(stderr, "%s\n", c.text().c_str());
        run(c);
        if (only < total || ::testing::Test::HasFailure()) return; // one failing case says enough
    }
}

// ---- scenes --------------------------------------------------------------------------------------------------------

static const int32_t aligns[] = { 4, 8, 16, 32 };

// `several`: the number of processed channels of unlike images: 1, 3 or 5.
static void chooseChannels(PictureSpec& spec, Channels channels, int32_t several, Random& random)
{
    const auto coiOf = [&](int32_t n) { spec.roi.coi = random.between(1, spec.channels = n); };
    switch (channels) {
    case Channels::ONE: break;
    case Channels::THREE: spec.channels = 3; break;
    case Channels::ALPHA:
        spec.channels = 4;
        spec.hasAlpha = true;
        break;
    case Channels::COI: coiOf(several == 5 ? 6 : 3); break; // some operations compare the numbers of all channels
    case Channels::UNLIKE:
        spec.hasAlpha = random.oneIn(2);
        if (several > 1) {
            spec.channels = several + (spec.hasAlpha ? 1 : 0);
        } else if (random.oneIn(2)) {
            coiOf(random.between(1, 4)); // alpha may be the channel of interest
        } else {
            spec.channels = spec.hasAlpha ? 2 : 1;
        }
    }
}

static void chooseArea(PictureSpec& spec, Region region, int32_t width, int32_t height, Random& random)
{
    const int32_t moreColumns = random.below(4), moreRows = random.below(3);
    spec.width = width;
    spec.height = height;
    switch (region) {
    case Region::WHOLE: break;
    case Region::COVER: spec = spec.region(0, 0, width + moreColumns, height + moreRows, spec.roi.coi); break;
    case Region::OWN:
        spec.width += moreColumns * 3;
        spec.height += moreRows;
        break;
    case Region::INNER:
    case Region::PAST: {
        const int32_t x = random.below(20), y = random.below(12);
        spec = spec.region(x, y, width + moreColumns, height + moreRows, spec.roi.coi);
        spec.width = x + spec.roi.width + random.below(4);
        spec.height = y + spec.roi.height + random.below(3);
        if (region == Region::PAST) {
            spec.width = x + width + moreColumns;
            spec.height = y + height + moreRows;
            spec.roi.width = random.oneIn(3) ? INT32_MAX : spec.roi.width + 1 + random.below(9);
            spec.roi.height = random.oneIn(3) ? INT32_MAX : spec.roi.height + 1 + random.below(9);
        }
    }
    }
    if (spec.roi.coi != 0 && spec.roi.width == 0) spec = spec.region(0, 0, spec.width, spec.height, spec.roi.coi);
}

static PicturePtr makeMask(int32_t width, int32_t height, Random& random)
{
    PictureSpec spec { PXK_DEPTH_1U }; // the order in which arguments are drawn would depend on the compiler
    spec.width = std::max(1, width + random.between(-2, 5));
    spec.height = std::max(1, height + random.between(-1, 2));
    spec.order = random.below(2);
    spec.align = random.oneOf(aligns);
    if (!random.oneIn(3)) {
        const Region region = random.oneIn(3) ? Region::PAST : Region::INNER;
        chooseArea(spec, region, spec.width, spec.height, random);
    }
    PicturePtr mask = Picture::make(spec, random);
    fillMask(*mask, random);
    return mask;
}

static PictureSpec chooseImage(const Case& c, int32_t width, int32_t height, int32_t several, int32_t align,
                               bool isTiled, Random& random)
{
    PictureSpec spec { c.depth };
    spec.order = c.order == Order::MIXED ? random.below(2) : int32_t(c.order);
    spec.align = align != 0 ? align : random.oneOf(aligns);
    chooseChannels(spec, c.channels, several, random);
    chooseArea(spec, c.region, width, height, random);
    if (!isTiled && align == 0 && random.oneIn(4)) spec.extraStep = spec.align;
    if (isTiled) {
        const int32_t tileWidth = 8 * random.between(1, 4);
        spec = spec.tiled(tileWidth, 8 * random.between(1, 2));
    }
    return spec;
}

// Mostly a few words of samples; now and then as much as passes through several blocks of a long row.
static int32_t chooseWidth(const Case& c, Random& random)
{
    const bool isBits = c.depth == PXK_DEPTH_1U;
    if (random.oneIn(4)) return random.between(1, 9);
    if (random.oneIn(isBits ? 60 : 12)) return random.between(100, c.tiling != 0 ? 400 : isBits ? 40000 : 1600);
    return random.between(1, isBits ? 150 : 45);
}

static bool isIn(ImageSet set, size_t k)
{
    return (set >> k & 1) != 0;
}

Scene makeScene(const Case& c, size_t count, const std::function<void(PictureSpec&, size_t)>& adjust, bool nonFinite)
{
    Random random(c.seed);
    const int32_t width = c.width != 0 ? c.width : chooseWidth(c, random);
    const int32_t height = c.height != 0 ? c.height : random.between(1, width > 150 ? 2 : c.tiling != 0 ? 19 : 7);
    const int32_t several = random.oneOf({ 1, 1, 1, 3, 3, 5 });
    const int32_t align = random.oneIn(3) ? 0 : random.oneOf(aligns);
    const int32_t tileWidth = 8 * random.between(1, 3), tileHeight = 8 * random.between(1, 2);
    PicturePtr sharedMask;
    if ((c.masks & SHARED) != 0) sharedMask = makeMask(width, height, random);
    Scene scene;
    for (size_t k = 0; k < count; ++k) {
        PictureSpec spec = chooseImage(c, width, height, several, align, isIn(c.tiling, k), random);
        if (isIn(c.tiling, k) && (c.tiling & SHARED) != 0) spec = spec.tiled(tileWidth, tileHeight);
        if (adjust) adjust(spec, k);
        const InPlace place = k + 1 == count || (k > 0 && c.place == InPlace::ALL) ? c.place : InPlace::NO;
        switch (place) {
        case InPlace::FIRST:
        case InPlace::ALL: scene.images.push_back(scene.images[0]); break;
        case InPlace::SECOND: scene.images.push_back(scene.images[1]); break;
        case InPlace::OTHER_HEADER: scene.images.push_back(scene.images[0]->otherHeader()); break;
        case InPlace::NO:
            scene.images.push_back(Picture::make(spec, random));
            fillRandom(scene.last(), random, nonFinite);
        }
        if (isIn(c.masks, k)) {
            scene.last().setMask(sharedMask != nullptr ? sharedMask : makeMask(width, height, random));
        }
    }
    return scene;
}

Scene Scene::copy() const
{
    Picture::Copies copies;
    Scene result;
    for (const PicturePtr& image : images) result.images.push_back(image->copy(copies));
    return result;
}

::testing::AssertionResult sameScene(const Scene& want, const Scene& got, const Tolerance& tolerance)
{
    for (size_t k = 0; k < got.images.size(); ++k) {
        const ::testing::AssertionResult result = samePicture(want[k], got[k], tolerance);
        if (!result) {
            const PictureSpec& spec = got[k].spec;
            const PxkROI& roi = got[k].roi;
            return ::testing::AssertionFailure()
                << "image " << k << ", " << spec.width << " x " << spec.height << " x " << spec.channels << ", region ("
                << roi.xOffset << ", " << roi.yOffset << ", " << roi.width << ", " << roi.height << "; " << roi.coi
                << "), align " << spec.align << ", tiles " << spec.tileWidth << " x " << spec.tileHeight << ": "
                << result.message();
        }
    }
    return ::testing::AssertionSuccess();
}
