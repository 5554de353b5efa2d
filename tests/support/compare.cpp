// SPDX-License-Identifier: BSD-2-Clause
#include "compare.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;

static bool sameBytes(const Storage& a, const Storage& b)
{
    return std::equal(a.blocks.begin(), a.blocks.end(), b.blocks.begin(), b.blocks.end(),
                      [](const auto& x, const auto& y) { return memcmp(x->data, y->data, x->size) == 0; });
}

static bool agree(int32_t depth, uint32_t want, uint32_t got, const Tolerance& tolerance)
{
    if (want == got) return true;
    if (tolerance.isBitwise) return false;
    const double a = numberOf(depth, want), b = numberOf(depth, got);
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    if (std::isinf(a) || std::isinf(b)) return a == b;
    if (a == 0 && b == 0 && tolerance.absolute == 0) return std::signbit(a) == std::signbit(b);
    return std::fabs(a - b) <= std::max(tolerance.absolute, tolerance.relative * std::fabs(a));
}

static std::string mapOf(const Picture& picture, const std::set<std::pair<int32_t, int32_t>>& differing)
{
    std::string map;
    for (int32_t y = 0; y < std::min(picture.spec.height, 32); ++y) {
        for (int32_t x = 0; x < std::min(picture.spec.width, 100); ++x) map += differing.count({ y, x }) ? 'x' : '.';
        map += '\n';
    }
    return map;
}

AssertionResult sameSamples(const Picture& want, const Picture& got, const Tolerance& tolerance)
{
    if (sameBytes(*want.storage, *got.storage)) return AssertionSuccess();
    const int32_t depth = want.spec.depth;
    std::set<std::pair<int32_t, int32_t>> differing;
    std::ostringstream first;
    want.forEachSample([&](int32_t x, int32_t y, int32_t c) {
        const uint32_t a = want.bits(x, y, c), b = got.bits(x, y, c);
        if (agree(depth, a, b, tolerance)) return;
        if (differing.empty()) {
            first.precision(10);
            first << "sample (x " << x << ", y " << y << ", channel " << c << "): want " << numberOf(depth, a) << " (0x"
                  << std::hex << a << "), got " << std::dec << numberOf(depth, b) << " (0x" << std::hex << b << ")";
        }
        differing.insert({ y, x });
    });
    if (differing.empty()) return AssertionSuccess();
    return AssertionFailure() << first.str() << "; " << differing.size() << " pixels differ\n"
                              << mapOf(want, differing);
}

AssertionResult nothingElseChanged(const Picture& want, const Picture& got)
{
    const std::string headerFault = got.headerFault();
    if (!headerFault.empty()) return AssertionFailure() << headerFault;
    const std::string tileFault = got.tileFault();
    if (!tileFault.empty()) return AssertionFailure() << tileFault;
    for (const auto& block : got.storage->blocks) {
        if (!block->guardsIntact()) return AssertionFailure() << "bytes written in front of or behind the pixels";
    }
    if (got.mask != nullptr) {
        const AssertionResult sameMask = samePicture(*want.mask, *got.mask);
        if (!sameMask) return AssertionFailure() << "mask: " << sameMask.message();
    }
    if (sameBytes(*want.storage, *got.storage)) return AssertionSuccess();

    // What differs must be samples: with the samples taken over nothing is left.
    Picture::Copies copies;
    const PicturePtr merged = const_cast<Picture&>(want).copy(copies);
    got.forEachSample([&](int32_t x, int32_t y, int32_t c) { merged->setBits(x, y, c, got.bits(x, y, c)); });
    for (size_t i = 0; i < got.storage->blocks.size(); ++i) {
        const Block& a = *merged->storage->blocks[i];
        const Block& b = *got.storage->blocks[i];
        const size_t at = static_cast<size_t>(std::mismatch(a.data, a.data + a.size, b.data).first - a.data);
        if (at == a.size) continue;
        return AssertionFailure() << "byte " << at << " of " << a.size << " holds no sample but changed from "
                                  << int(a.data[at]) << " to " << int(b.data[at]) << " (block or tile " << i
                                  << ", row step " << got.header.widthStep << ")";
    }
    return AssertionSuccess();
}

AssertionResult samePicture(const Picture& want, const Picture& got, const Tolerance& tolerance)
{
    const AssertionResult samples = sameSamples(want, got, tolerance);
    return samples ? nothingElseChanged(want, got) : samples;
}
