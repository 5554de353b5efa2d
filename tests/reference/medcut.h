/* SPDX-License-Identifier: BSD-2-Clause */
// Model of the median cut: histograms are summed anew for every question.
#pragma once

#include <vector>

#include "support/picture.h"

namespace model {

struct Box {
    uint32_t generation = 0;
    int32_t low[3] = { 0, 0, 0 }, high[3] = { 63, 63, 63 }; // red, green, blue in 6 bits; gray: the level in the first
    int64_t count = 0;
};

struct Medcut {
    bool isGray;
    std::vector<int64_t> counts; // of colours of 6 bits a channel, red lowest, or of gray levels

    explicit Medcut(const Picture& image)
        : isGray(image.spec.channels == 1)
        , counts(isGray ? 256 : 64 * 64 * 64)
    {
        const int32_t red = image.header.channelSeq[0] == 'R' ? 0 : 2;
        for (int32_t i = 0; i < image.spec.width * image.spec.height; ++i) {
            const auto byte = [&](int32_t c) {
                return image.value(i % image.spec.width, i / image.spec.width, c) >> (depthBits(image.spec.depth) - 8);
            };
            ++counts[isGray ? byte(0) : byte(red) / 4 + byte(1) / 4 * 64 + byte(2 - red) / 4 * 4096];
        }
    }

    template <class F> void visit(const Box& b, const F& onCell) const // onCell(at, n)
    {
        for (int32_t blue = b.low[2]; blue <= b.high[2]; ++blue)
            for (int32_t green = b.low[1]; green <= b.high[1]; ++green)
                for (int32_t red = b.low[0]; red <= b.high[0]; ++red) {
                    const int32_t at[3] = { red, green, blue };
                    const int64_t n = counts[red + 64 * green + 4096 * blue];
                    if (n != 0) onCell(at, n);
                }
    }

    int64_t slice(Box b, int32_t axis, int32_t at) const
    {
        int64_t sum = 0;
        b.low[axis] = b.high[axis] = at;
        visit(b, [&](const int32_t(&)[3], int64_t n) { sum += n; });
        return sum;
    }

    void trim(Box* b) const
    {
        for (int32_t axis = 0; axis < 3; ++axis) {
            while (b->low[axis] < b->high[axis] && slice(*b, axis, b->low[axis]) == 0) ++b->low[axis];
            while (b->low[axis] < b->high[axis] && slice(*b, axis, b->high[axis]) == 0) --b->high[axis];
        }
    }

    static bool isSingle(const Box& b)
    {
        return b.low[0] == b.high[0] && b.low[1] == b.high[1] && b.low[2] == b.high[2];
    }

    Box split(Box* low) const
    {
        const int32_t r = low->high[0] - low->low[0], g = low->high[1] - low->low[1], b = low->high[2] - low->low[2];
        const int32_t axis = r >= g && r >= b ? 0 : g >= b ? 1 : 2;
        const int64_t half = low->count / 2;
        int32_t s = low->low[axis];
        int64_t before = 0, sum = slice(*low, axis, s);
        while (sum <= half) {
            before = sum;
            sum += slice(*low, axis, ++s);
        }
        if (half - before < sum - half) {
            --s;
            sum = before;
        }
        Box high = *low;
        high.count = low->count - sum;
        low->count = sum;
        high.low[axis] = s + 1;
        low->high[axis] = s;
        trim(low);
        trim(&high);
        if (isGray) {
            high.generation = isSingle(high) ? 255 : ++low->generation;
            if (isSingle(*low)) low->generation = 255;
        } else {
            low->generation = isSingle(*low) ? 255 : low->generation + 1;
            high.generation = isSingle(high) ? 255 : low->generation;
        }
        return high;
    }

    uint32_t mean(const Box& b) const
    {
        int64_t sums[3] = { 0, 0, 0 };
        visit(b, [&](const int32_t(&at)[3], int64_t n) {
            for (int32_t k = 0; k < 3; ++k) sums[k] += n * (isGray ? at[0] : at[k] * 4);
        });
        const auto part = [&](int32_t k) { return static_cast<uint32_t>(sums[k] / b.count); };
        return part(2) | part(1) << 8 | part(0) << 16;
    }

    // The table; `used` is what biClrUsed becomes.
    std::vector<uint32_t> table(size_t wanted) const
    {
        Box all;
        if (isGray) all.high[0] = 255, all.high[1] = all.high[2] = 0;
        std::vector<uint32_t> colors;
        visit(all, [&](const int32_t(&at)[3], int64_t n) {
            all.count += n;
            colors.push_back(isGray ? at[0] * 0x010101u
                                    : static_cast<uint32_t>(at[2] * 4 + at[1] * 0x400 + at[0] * 0x40000));
        });
        if (colors.size() <= wanted) return colors;
        trim(&all);
        std::vector<Box> boxes = { all };
        for (size_t before = 0; boxes.size() < wanted && boxes.size() != before;) {
            before = boxes.size();
            for (size_t i = 0; i < before && boxes.size() < wanted; ++i) {
                if (boxes[i].generation == 255) continue;
                const Box high = split(&boxes[i]);
                boxes.push_back(high);
            }
        }
        std::vector<uint32_t> means(wanted, 0);
        for (size_t i = 0; i < boxes.size(); ++i) means[i] = mean(boxes[i]);
        return means;
    }
};

} // namespace model
