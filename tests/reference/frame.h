/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of what all operations share: regions, channels, masks; and of copy, set and exchange.
#pragma once

#include <algorithm>
#include <vector>

#include "support/picture.h"

// ---- regions, channels, masks --------------------------------------------------------------------------------------

// One sample of an image.
struct Place {
    Picture* picture;
    int32_t x, y, c;

    uint32_t bits() const { return picture->bits(x, y, c); }
    double number() const { return picture->number(x, y, c); }
    void setBits(uint32_t bits) const { picture->setBits(x, y, c, bits); }
    void setNumber(double n) const { picture->setNumber(x, y, c, n); }
};

// What an image offers to an operation: the part of its region inside it, and the channels that are processed.
struct Window {
    int64_t x, y, width, height;
    int32_t firstChannel, channels;
    Picture* picture = nullptr;

    // Counted from the first pixel and channel.
    Place at(int64_t i, int64_t j, int32_t c = 0) const
    {
        return { picture, int32_t(x + i), int32_t(y + j), firstChannel + c };
    }
};

inline Window windowOf(const Picture& picture)
{
    Picture& p = const_cast<Picture&>(picture); // places are written through as well
    const int32_t opaque = p.header.nChannels - (p.header.alphaChannel != 0 ? 1 : 0);
    if (p.header.roi == nullptr) return { 0, 0, p.spec.width, p.spec.height, 0, opaque, &p };
    const PxkROI& roi = *p.header.roi;
    const int64_t right = std::min<int64_t>(p.spec.width, int64_t(roi.xOffset) + roi.width);
    const int64_t bottom = std::min<int64_t>(p.spec.height, int64_t(roi.yOffset) + roi.height);
    const int64_t width = std::max<int64_t>(0, right - roi.xOffset),
                  height = std::max<int64_t>(0, bottom - roi.yOffset);
    if (roi.coi > 0) return { roi.xOffset, roi.yOffset, width, height, roi.coi - 1, 1, &p };
    return { roi.xOffset, roi.yOffset, width, height, 0, opaque, &p };
}

// The common size of the images' regions and masks; none when a mask has no pixels in its region.
struct CommonSize {
    int64_t width, height;
};

inline CommonSize commonSize(const std::vector<Picture*>& images)
{
    CommonSize size = { INT32_MAX, INT32_MAX };
    const auto limit = [&](const Picture& p) {
        const Window window = windowOf(p);
        size = { std::min(size.width, window.width), std::min(size.height, window.height) };
    };
    for (const Picture* image : images) {
        limit(*image);
        if (image->mask != nullptr) limit(*image->mask);
    }
    return size;
}

// Calls visit(i, j) for each pixel of the work that all masks select. A mask is read at its own region's offset.
template <class F> void forEachSelectedPixel(const std::vector<Picture*>& images, F&& visit)
{
    std::vector<Window> masks;
    for (const Picture* image : images) {
        if (image->mask != nullptr) masks.push_back(windowOf(*image->mask));
    }
    const CommonSize size = commonSize(images);
    for (int32_t j = 0; j < size.height; ++j) {
        for (int32_t i = 0; i < size.width; ++i) {
            const auto selects = [&](const Window& mask) { return mask.at(i, j).bits() == 1; };
            if (std::all_of(masks.begin(), masks.end(), selects)) visit(i, j);
        }
    }
}

// Calls visit(at) for each processed sample of each selected pixel; at[k] is the sample's place in image k. All images
// must have the same number of processed channels.
template <class F> void forEachSelected(const std::vector<Picture*>& images, F&& visit)
{
    std::vector<Window> windows;
    for (const Picture* image : images) windows.push_back(windowOf(*image));
    std::vector<Place> at(images.size());
    forEachSelectedPixel(images, [&](int32_t i, int32_t j) {
        for (int32_t c = 0; c < windows[0].channels; ++c) {
            for (size_t k = 0; k < at.size(); ++k) at[k] = windows[k].at(i, j, c);
            visit(static_cast<const Place*>(at.data()));
        }
    });
}

// One channel of the work.
template <class Value> struct Grid {
    Grid(int32_t width, int32_t height)
        : width(width)
        , height(height)
        , values(static_cast<size_t>(width) * height)
    {
    }
    Value& at(int32_t x, int32_t y) { return values[static_cast<size_t>(y) * width + x]; }
    const Value& at(int32_t x, int32_t y) const { return values[static_cast<size_t>(y) * width + x]; }
    template <class F> void forEach(const F& visit) // visit(x, y, the value there)
    {
        for (int32_t y = 0; y < height; ++y)
            for (int32_t x = 0; x < width; ++x) visit(x, y, at(x, y));
    }

    int32_t width, height;
    std::vector<Value> values;
};

// ---- copy, set, exchange -------------------------------------------------------------------------------------------

inline void modelCopy(Picture& src, Picture& dst)
{
    forEachSelected({ &src, &dst }, [](const Place* at) { at[1].setBits(at[0].bits()); });
}

// Integers are limited to the depth's range.
inline void modelSet(Picture& image, int64_t value)
{
    const int32_t depth = image.spec.depth;
    const int64_t limited = std::min(std::max(value, depthMin(depth)), depthMax(depth));
    forEachSelected({ &image }, [&](const Place* at) { at[0].setNumber(double(limited)); });
}

inline void modelSetBits(Picture& image, uint32_t bits)
{
    forEachSelected({ &image }, [&](const Place* at) { at[0].setBits(bits); });
}

inline void modelExchange(Picture& a, Picture& b)
{
    forEachSelected({ &a, &b }, [](const Place* at) {
        const uint32_t held = at[0].bits();
        at[0].setBits(at[1].bits());
        at[1].setBits(held);
    });
}
