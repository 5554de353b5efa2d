/* SPDX-License-Identifier: BSD-2-Clause */
// Slow models of what all operations share: regions, channels, masks; and of copy, set and exchange.
#pragma once

#include <algorithm>
#include <vector>

#include "support/picture.h"

// ---- regions, channels, masks --------------------------------------------------------------------------------------

// What an image offers to an operation: the part of its region inside it, and the channels that are processed.
struct Window {
    int64_t x, y, width, height;
    int32_t firstChannel, channels;
};

inline Window windowOf(const Picture& p)
{
    const int32_t opaque = p.header.nChannels - (p.header.alphaChannel != 0 ? 1 : 0);
    if (p.header.roi == nullptr) return { 0, 0, p.spec.width, p.spec.height, 0, opaque };
    const PxkROI& roi = *p.header.roi;
    const int64_t right = std::min<int64_t>(p.spec.width, int64_t(roi.xOffset) + roi.width);
    const int64_t bottom = std::min<int64_t>(p.spec.height, int64_t(roi.yOffset) + roi.height);
    const int64_t width = std::max<int64_t>(0, right - roi.xOffset),
                  height = std::max<int64_t>(0, bottom - roi.yOffset);
    if (roi.coi > 0) return { roi.xOffset, roi.yOffset, width, height, roi.coi - 1, 1 };
    return { roi.xOffset, roi.yOffset, width, height, 0, opaque };
}

// One sample of an image that takes part.
struct Place {
    Picture* picture;
    int32_t x, y, c;

    uint32_t bits() const { return picture->bits(x, y, c); }
    double number() const { return picture->number(x, y, c); }
    void setBits(uint32_t bits) const { picture->setBits(x, y, c, bits); }
    void setNumber(double n) const { picture->setNumber(x, y, c, n); }
};

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
    struct Mask {
        const Picture* picture;
        Window window;
    };
    std::vector<Mask> masks;
    for (const Picture* image : images) {
        if (image->mask != nullptr) masks.push_back({ image->mask.get(), windowOf(*image->mask) });
    }
    const CommonSize size = commonSize(images);
    for (int32_t j = 0; j < size.height; ++j) {
        for (int32_t i = 0; i < size.width; ++i) {
            const bool isSelected = std::all_of(masks.begin(), masks.end(), [&](const Mask& mask) {
                return mask.picture->bits(int32_t(mask.window.x) + i, int32_t(mask.window.y) + j, 0) == 1;
            });
            if (isSelected) visit(i, j);
        }
    }
}

// Calls visit(at) for each processed sample of each selected pixel; at[k] is the sample's place in image k. All images
// must have the same number of processed channels.
template <class F> void forEachSelected(const std::vector<Picture*>& images, F&& visit)
{
    std::vector<Window> windows;
    std::vector<Place> at;
    for (Picture* image : images) {
        windows.push_back(windowOf(*image));
        at.push_back({ image, 0, 0, 0 });
    }
    forEachSelectedPixel(images, [&](int32_t i, int32_t j) {
        for (int32_t c = 0; c < windows[0].channels; ++c) {
            for (size_t k = 0; k < at.size(); ++k) {
                at[k].x = int32_t(windows[k].x) + i;
                at[k].y = int32_t(windows[k].y) + j;
                at[k].c = windows[k].firstChannel + c;
            }
            visit(static_cast<const Place*>(at.data()));
        }
    });
}

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
