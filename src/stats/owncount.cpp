// SPDX-License-Identifier: BSD-2-Clause
#include "owncount.h"

#include <algorithm>
#include <cstring>

#include "frame/ownivdep.h"

// Parts that cost little to clear and to add up: 8 KB a channel, or 512 KB.
template <class T> constexpr int32_t ownCountParts = sizeof(T) == 1 ? 8 : 2;

static int64_t ownCountersOfChannel(int32_t depth)
{
    return ownLevels(depth) * (depth == PXK_DEPTH_8U ? ownCountParts<uint8_t> : ownCountParts<uint16_t>);
}

template <class T> static void ownCountRow(const uint8_t* row, ptrdiff_t n, uint32_t* counters)
{
    constexpr int32_t parts = ownCountParts<T>;
    constexpr ptrdiff_t levels = ptrdiff_t { 1 } << 8 * sizeof(T);
    const T* const samples = reinterpret_cast<const T*>(row);
    ptrdiff_t i = 0;
    for (; i + parts <= n; i += parts) {
        T some[parts];
        memcpy(some, samples + i, sizeof some);
        for (int32_t k = 0; k < parts; ++k) ++counters[k * levels + some[k]];
    }
    for (; i < n; ++i) ++counters[samples[i]];
}

// Adds n to the bin of a level; levels outside the keys have none. The last of equal keys is the one with levels.
static void ownAddToBin(const PxkLUT& table, int32_t level, int32_t n)
{
    const int32_t* const first = table.key;
    const int32_t* const end = first + table.num;
    const int32_t* const next = std::upper_bound(first, end, level);
    if (next != first && next != end) table.value[next - first - 1] += n;
}

bool OwnLevelCounts::open(int32_t depth, PxkLUT* const* lut, int32_t nChannels, int64_t samples)
{
    constexpr int64_t fewSamples = 1024; // looking up their bins is quicker than clearing 65536 counters
    depth_ = depth;
    nChannels_ = nChannels;
    lut_ = lut;
    if (depth == PXK_DEPTH_16U && samples < fewSamples) return true;
    const int64_t count = ownCountersOfChannel(depth) * nChannels;
    counters_ = ownBuffer<uint32_t>(count);
    if (counters_ == nullptr) return false;
    memset(counters_.get(), 0, static_cast<size_t>(count) * sizeof(uint32_t));
    return true;
}

uint32_t* OwnLevelCounts::counters(int32_t channel) const
{
    return counters_.get() + channel * ownCountersOfChannel(depth_);
}

void OwnLevelCounts::add(int32_t channel, const uint8_t* samples, ptrdiff_t n)
{
    if (counters_ == nullptr) {
        const uint16_t* const levels = reinterpret_cast<const uint16_t*>(samples);
        for (ptrdiff_t i = 0; i < n; ++i) ownAddToBin(*lut_[channel], levels[i], 1);
        return;
    }
    counted_ += n;
    if (counted_ > INT32_MAX) { // no counter may run over; tiled images can be that large
        store();
        counted_ = n;
    }
    const auto countRow = depth_ == PXK_DEPTH_8U ? ownCountRow<uint8_t> : ownCountRow<uint16_t>;
    countRow(samples, n, counters(channel));
}

void OwnLevelCounts::takeZeros(int32_t channel, ptrdiff_t n)
{
    if (counters_ == nullptr) return ownAddToBin(*lut_[channel], 0, static_cast<int32_t>(-n));
    // A counter may wrap; the sum over its parts is right again.
    *counters(channel) -= static_cast<uint32_t>(n);
}

// All parts into the first one.
static void ownAddParts(uint32_t* first, const uint32_t* end, ptrdiff_t levels)
{
    for (const uint32_t* part = first + levels; part < end; part += levels) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < levels; ++i) first[i] += part[i];
    }
}

void OwnLevelCounts::store()
{
    if (counters_ == nullptr) return;
    for (int32_t channel = 0; channel < nChannels_; ++channel) {
        const PxkLUT& table = *lut_[channel];
        uint32_t* const first = counters(channel);
        uint32_t* const end = counters(channel + 1);
        ownAddParts(first, end, ownLevels(depth_));
        for (int32_t bin = 0; bin + 1 < table.num; ++bin) {
            uint32_t count = 0;
            for (int32_t level = table.key[bin]; level < table.key[bin + 1]; ++level) count += first[level];
            const int64_t sum = int64_t { table.value[bin] } + count;
            table.value[bin] = static_cast<int32_t>(std::min<int64_t>(sum, INT32_MAX));
        }
        std::fill(first, end, 0u);
    }
}
