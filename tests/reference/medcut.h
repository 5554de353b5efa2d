/* SPDX-License-Identifier: BSD-2-Clause */
// Model of the median cut: a box is the list of its colours, and everything else is found anew from that.
#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "support/picture.h"

namespace model {

// Red, green and blue in 6 bits, or a gray level alone.
struct Cell {
    std::array<int32_t, 3> at;
    int64_t count;
};

struct Box {
    std::vector<Cell> cells;
    int32_t generation; // 255: not to be split any more
};

// Those of the image that occur, by blue, then green, then red.
inline std::vector<Cell> cellsOf(const Picture& image)
{
    std::map<int32_t, Cell> cells;
    const int32_t red = image.header.channelSeq[0] == 'R' ? 0 : 2, width = image.spec.width;
    for (int32_t i = 0; i < width * image.spec.height; ++i) {
        const auto byte = [&](int32_t c) {
            return int32_t(image.value(i % width, i / width, c) >> (depthBits(image.spec.depth) - 8));
        };
        Cell cell = { { byte(0), 0, 0 }, 0 };
        if (image.spec.channels > 1) cell.at = { byte(red) / 4, byte(1) / 4, byte(2 - red) / 4 };
        ++cells.emplace(cell.at[0] + 64 * cell.at[1] + 4096 * cell.at[2], cell).first->second.count;
    }
    std::vector<Cell> all;
    for (const auto& entry : cells) all.push_back(entry.second);
    return all;
}

// Parts off the upper half along the longest side, behind the slice that passes half of the pixels or the one before,
// whichever is closer to the half.
inline Box split(Box& low, bool isGray)
{
    std::array<std::map<int32_t, int64_t>, 3> slices;
    std::array<int32_t, 3> lengths;
    int64_t count = 0;
    for (size_t axis = 0; axis < 3; ++axis) {
        for (const Cell& cell : low.cells) slices[axis][cell.at[axis]] += cell.count;
        lengths[axis] = slices[axis].rbegin()->first - slices[axis].begin()->first;
    }
    for (const Cell& cell : low.cells) count += cell.count;
    const size_t axis = size_t(std::max_element(lengths.begin(), lengths.end()) - lengths.begin());
    const int64_t half = count / 2;
    auto slice = slices[axis].begin();
    int64_t before = 0, sum = slice->second;
    while (sum <= half) {
        before = sum;
        sum += (++slice)->second;
    }
    const int32_t end = slice->first + (half - before < sum - half ? 0 : 1);
    const auto upper = std::stable_partition(low.cells.begin(), low.cells.end(),
                                             [&](const Cell& cell) { return cell.at[axis] < end; });
    Box high = { { upper, low.cells.end() }, 255 };
    low.cells.erase(upper, low.cells.end());
    const bool isLowSingle = low.cells.size() == 1, isHighSingle = high.cells.size() == 1;
    if (!isGray || !isHighSingle) ++low.generation;
    if (isLowSingle && !isGray) low.generation = 255;
    if (!isHighSingle) high.generation = low.generation;
    if (isLowSingle) low.generation = 255;
    return high;
}

inline uint32_t meanOf(const Box& box, bool isGray)
{
    int64_t sums[3] = { 0, 0, 0 }, count = 0;
    for (const Cell& cell : box.cells) {
        for (size_t k = 0; k < 3; ++k) sums[k] += cell.count * (isGray ? cell.at[0] : 4 * cell.at[k]);
        count += cell.count;
    }
    return uint32_t(sums[2] / count | sums[1] / count << 8 | sums[0] / count << 16);
}

// Every box of a pass is split once; entries without a box are black.
inline std::vector<uint32_t> medcutTable(const Picture& image, size_t wanted)
{
    const bool isGray = image.spec.channels == 1;
    std::vector<Box> boxes = { { cellsOf(image), 0 } };
    const std::vector<Cell> all = boxes[0].cells;
    if (all.size() <= wanted) boxes.clear();
    for (size_t k = 0; k < all.size() && all.size() <= wanted; ++k) boxes.push_back({ { all[k] }, 255 });
    for (size_t before = 0; boxes.size() < wanted && boxes.size() != before;) {
        before = boxes.size();
        for (size_t i = 0; i < before && boxes.size() < wanted; ++i) {
            if (boxes[i].generation != 255) boxes.push_back(split(boxes[i], isGray));
        }
    }
    std::vector<uint32_t> table(all.size() <= wanted ? all.size() : wanted);
    for (size_t i = 0; i < boxes.size(); ++i) table[i] = meanOf(boxes[i], isGray);
    return table;
}

} // namespace model
