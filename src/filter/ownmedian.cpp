// SPDX-License-Identifier: BSD-2-Clause
#include "ownmedian.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "frame/owndepth.h"
#include "ownmerge.h"
#include "ownnetwork.h"
#include "ownsums.h"

struct OwnRank {
    int32_t nCols;
    int32_t nRows;
    int64_t samples() const { return static_cast<int64_t>(nCols) * nRows; }
    int64_t below() const { return samples() / 2; } // samples in front of the middle one in ascending order
    const OwnMergePlan* merge;                      // null: none is needed
};

// Calls onCount with the number as a constant, FIRST to LAST.
template <int32_t FIRST, int32_t LAST, class F> static bool ownForCount(int32_t count, const F& onCount)
{
    if constexpr (FIRST < LAST) {
        if (count != FIRST) return ownForCount<FIRST + 1, LAST>(count, onCount);
    }
    return onCount(std::integral_constant<int32_t, FIRST> {});
}

// ---- small windows: exchange networks ------------------------------------------------------------------------------

// Samples of `spare` rows, half of them the lowest and half the highest, fill up a window that has no network.
template <int32_t COUNT, class T>
static void ownNetworkBand(const OwnBand& band, const OwnRank& rank, const T* lowest, const T* highest)
{
    const int32_t n = static_cast<int32_t>(rank.samples());
    const int32_t nLow = COUNT / 2 - n / 2;
    for (int32_t y = 0; y < band.height; ++y) {
        const T* taps[COUNT];
        for (int32_t k = 0; k < COUNT; ++k) {
            if (k >= n) {
                taps[k] = k < n + nLow ? lowest : highest;
                continue;
            }
            const T* const row = reinterpret_cast<const T*>(band.rows[y + k / rank.nCols]);
            taps[k] = row + static_cast<ptrdiff_t>(k % rank.nCols) * band.step;
        }
        ownMiddleRow<COUNT>(taps, reinterpret_cast<T*>(band.out[y]), band.width, std::make_index_sequence<COUNT> {});
    }
}

#ifdef PXK_SANITIZED
static constexpr int32_t ownMostInNetwork = 36; // compilers take minutes for more exchanges, each of them instrumented
#else
static constexpr int32_t ownMostInNetwork = 81;
#endif
static constexpr int32_t ownFewInNetwork = 25;

// A network for every count up to ownFewInNetwork.
template <class T> static bool ownMedianByOwnNetwork(const OwnBand& band, const OwnRank& rank)
{
    return ownForCount<1, ownFewInNetwork>(static_cast<int32_t>(rank.samples()), [&](auto count) {
        ownNetworkBand<decltype(count)::value, T>(band, rank, nullptr, nullptr);
        return true;
    });
}

// Those of 36, 49 and 81 serve smaller windows too. False: out of memory.
template <class T> static bool ownMedianByNetwork(const OwnBand& band, const OwnRank& rank)
{
    const int64_t n = rank.samples();
    if (n <= ownFewInNetwork) return ownMedianByOwnNetwork<T>(band, rank);
    const ptrdiff_t length = band.width + ownBlockOf<T>;
    T* const lowest = band.scratch.take<T>(length);
    T* const highest = band.scratch.take<T>(length);
    if (lowest == nullptr || highest == nullptr) return false;
    std::fill(lowest, lowest + length, std::numeric_limits<T>::min());
    std::fill(highest, highest + length, std::numeric_limits<T>::max());
    if (n <= 36) {
        ownNetworkBand<36, T>(band, rank, lowest, highest);
    } else if constexpr (ownMostInNetwork > 36) {
        if (n <= 49) {
            ownNetworkBand<49, T>(band, rank, lowest, highest);
        } else {
            ownNetworkBand<ownMostInNetwork, T>(band, rank, lowest, highest);
        }
    }
    return true;
}

// ---- larger windows: merged columns
// ----------------------------------------------------------------------------------

// Rows of T that exchange samples.
template <class T> struct OwnRowExchange {
    const T* a;
    const T* b;
    T* low;
    T* high;

    void run(ptrdiff_t n) const
    {
        const T *const first = a, *const second = b;
        T *const to = low != nullptr ? low : high, *const other = high;
        if (low != nullptr && high != nullptr) {
            ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) {
                T x = first[i], y = second[i];
                ownSortPair(x, y);
                to[i] = x;
                other[i] = y;
            });
        } else if (low != nullptr) {
            ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) { to[i] = first[i] < second[i] ? first[i] : second[i]; });
        } else {
            ownInBlocks<ownBlockOf<T>>(n, [&](ptrdiff_t i) { to[i] = first[i] < second[i] ? second[i] : first[i]; });
        }
    }
};

template <class T> static bool ownMedianByMerging(const OwnBand& band, const OwnRank& rank)
{
    constexpr ptrdiff_t most = 512 / sizeof(T); // samples of an output row at once: made rows stay in the caches
    const OwnMergePlan& plan = *rank.merge;
    const ptrdiff_t n = std::min(band.width, most);
    const ptrdiff_t stride = (n + (rank.nCols - 1) * band.step + 2 * ownBlockOf<T> - 1) & -ownBlockOf<T>;
    T* const made = band.scratch.take<T>((plan.nRows - rank.nRows) * static_cast<int64_t>(stride));
    T** const rows = band.scratch.take<T*>(plan.nRows);
    if (made == nullptr || rows == nullptr) return false;
    for (int32_t r = rank.nRows; r < plan.nRows; ++r) rows[r] = made + (r - rank.nRows) * stride;
    const auto place = [&](int32_t row) { return row >= 0 ? rows[row] : nullptr; };
    for (int32_t y = 0; y < band.height; ++y) {
        for (ptrdiff_t next = 0; next < band.width; next += n) {
            const ptrdiff_t x = std::min(next, band.width - n);
            for (int32_t r = 0; r < rank.nRows; ++r) { // these are read only
                rows[r] = reinterpret_cast<T*>(const_cast<uint8_t*>(band.rows[y + r])) + x;
            }
            for (int32_t e = 0; e < plan.count; ++e) {
                const OwnExchange& exchange = plan.exchanges[static_cast<size_t>(e)];
                const OwnRowExchange<T> samples = { rows[exchange.a.row] + exchange.a.shift * band.step,
                                                    rows[exchange.b.row] + exchange.b.shift * band.step,
                                                    place(exchange.low), place(exchange.high) };
                samples.run(n + static_cast<ptrdiff_t>(exchange.beyond) * band.step);
            }
            memcpy(reinterpret_cast<T*>(band.out[y]) + x, rows[plan.result], static_cast<size_t>(n) * sizeof(T));
        }
    }
    return true;
}

template <class T> static bool ownMedianByExchanges(const OwnBand& band, const OwnRank& rank)
{
    return rank.merge != nullptr ? ownMedianByMerging<T>(band, rank) : ownMedianByNetwork<T>(band, rank);
}

// Merging is quicker than a network that windows of up to 64 samples do not fill, and than counting samples up to some
// size of window, if rows are long enough that the price of an exchange by itself does not weigh. Of 32 bits the
// largest windows that can be planned: trying bits takes longest.
template <class T> static bool ownIsMerged(const OwnBand& band, const OwnRank& rank)
{
    const int64_t n = rank.samples();
    if (n <= 81) return n > 49 && n <= 64 && band.width >= 256;
    if constexpr (sizeof(T) == 1) return n <= 121 && band.width >= 2 * n;
    if constexpr (sizeof(T) == 2) return n <= 324 && 2 * band.width >= n;
    return n <= ownMostMerged;
}

// Of each size the type for which all processors have an instruction that takes the smaller one.
template <class T>
using OwnOrdered = std::conditional_t<sizeof(T) == 1, uint8_t, std::conditional_t<sizeof(T) == 2, int16_t, int32_t>>;

// Row by row with the top bit turned, which makes samples of the other sign ordered ones: so large networks are there
// once for each size.
template <class T> static void ownTurnRow(const T* from, OwnOrdered<T>* to, ptrdiff_t n)
{
    constexpr uint32_t topBit = 1u << (8 * sizeof(T) - 1);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i)
        to[i] = static_cast<OwnOrdered<T>>(static_cast<std::make_unsigned_t<T>>(from[i]) ^ topBit);
}

template <class T> static bool ownMedianTurned(const OwnBand& band, const OwnRank& rank)
{
    using Ordered = OwnOrdered<T>;
    constexpr int32_t most = 32; // output rows at once
    const int32_t nRows = std::min(band.height, most) + rank.nRows - 1;
    const ptrdiff_t length = band.width + static_cast<ptrdiff_t>(rank.nCols - 1) * band.step;
    const ptrdiff_t stride = length + ownBlockOf<T>;
    Ordered* const turned = band.scratch.take<Ordered>(nRows * static_cast<int64_t>(stride));
    const uint8_t** const rows = band.scratch.take<const uint8_t*>(nRows);
    if (turned == nullptr || rows == nullptr) return false;
    for (int32_t k = 0; k < nRows; ++k) rows[k] = reinterpret_cast<const uint8_t*>(turned + k * stride);
    OwnScratch scratch; // of one part: what it takes is free for the next
    for (int32_t y = 0; y < band.height; y += most) {
        scratch.restart();
        const int32_t count = std::min(band.height - y, most);
        for (int32_t k = 0; k < count + rank.nRows - 1; ++k) {
            ownTurnRow<T>(reinterpret_cast<const T*>(band.rows[y + k]), turned + k * stride, length);
        }
        const OwnBand part = { rows, band.out + y, band.width, count, band.step, scratch };
        if (!ownMedianByExchanges<Ordered>(part, rank)) return false;
        for (int32_t k = 0; k < count; ++k) {
            T* const out = reinterpret_cast<T*>(band.out[y + k]);
            ownTurnRow<T>(out, reinterpret_cast<Ordered*>(out), band.width);
        }
    }
    return true;
}

// ---- 8 bits: counts of columns -------------------------------------------------------------------------------------

// Signed samples are counted with their top bit turned, which keeps their order.
template <class T> constexpr uint32_t ownOrderBit = std::is_signed<T>::value ? 1u << (8 * sizeof(T) - 1) : 0u;

template <class T> static inline uint32_t ownCountedAs(T sample)
{
    return static_cast<std::make_unsigned_t<T>>(sample) ^ ownOrderBit<T>;
}

// Counts of 256 values in two levels, 16 groups of 16 values each (Perreault and Hebert, Median filtering in constant
// time, 2007). They are cumulative: a lane holds how many samples are not above its group or value; so the place of a
// rank is the number of lanes that do not exceed it, without a search. Lanes of type C lie side by side in words, which
// are added and subtracted as wholes.
template <class C> struct OwnLanes {
    static constexpr int32_t bits = 8 * sizeof(C);
    static constexpr int32_t perWord = 64 / bits;
    static constexpr int32_t words = 16 / perWord;
    static constexpr uint64_t ones = UINT64_MAX / std::numeric_limits<C>::max();
    static constexpr uint64_t tops = ones << (bits - 1);
    uint64_t word[words] = {};

    void add(const OwnLanes& other)
    {
        for (int32_t i = 0; i < words; ++i) word[i] += other.word[i];
    }
    void subtract(const OwnLanes& other)
    {
        for (int32_t i = 0; i < words; ++i) word[i] -= other.word[i];
    }
    // How many lanes are at most n, which is less than half of a lane's range: a lane borrows from its top bit where it
    // is above n.
    uint32_t atMost(uint32_t n) const
    {
        const uint64_t limit = ones * n | tops;
        uint64_t lanes = 0;
        for (int32_t i = 0; i < words; ++i) {
            lanes += ((limit - (word[i] & ~tops)) & ~word[i] & tops) >> (bits - 1);
        }
        return static_cast<uint32_t>(lanes * ones >> (64 - bits));
    }
    uint32_t lane(uint32_t k) const
    {
        uint64_t found = word[0];
        for (uint32_t i = 1; i < words; ++i) found = k >= i * perWord ? word[i] : found;
        return static_cast<C>(found >> (k % perWord * bits));
    }
};

// One sample's lanes: 1 from lane k on.
template <class C> struct OwnLaneSteps {
    OwnLanes<C> from[16] = {};
    constexpr OwnLaneSteps()
    {
        constexpr int32_t perWord = OwnLanes<C>::perWord;
        for (int32_t k = 0; k < 16; ++k) {
            for (int32_t i = k; i < 16; ++i) {
                from[k].word[i / perWord] |= uint64_t { 1 } << (i % perWord * OwnLanes<C>::bits);
            }
        }
    }
};

template <class C> static constexpr OwnLaneSteps<C> ownLaneSteps;

template <class C> struct OwnColumnCounts {
    OwnLanes<C> groups;
    OwnLanes<C> values[16]; // of each group

    void enter(uint32_t value)
    {
        groups.add(ownLaneSteps<C>.from[value / 16]);
        values[value / 16].add(ownLaneSteps<C>.from[value % 16]);
    }
    void leave(uint32_t value)
    {
        groups.subtract(ownLaneSteps<C>.from[value / 16]);
        values[value / 16].subtract(ownLaneSteps<C>.from[value % 16]);
    }
};

// The window's counts along a row. Those of a group's values are brought up to date only when the group is looked at.
template <class C> class OwnSlidingCounts {
public:
    OwnSlidingCounts(const OwnColumnCounts<C>* columns, int32_t nCols)
        : columns_(columns)
        , nCols_(nCols)
    {
        for (int32_t c = 0; c < nCols; ++c) groups_.add(columns[c].groups);
        std::fill(valuesAt_, valuesAt_ + 16, -nCols - 1);
    }

    // The value of rank `below` + 1 of the window at column x, then a step to the right.
    uint32_t next(int32_t x, uint32_t below)
    {
        const uint32_t group = groups_.atMost(below);
        const uint32_t rest = below - (group > 0 ? groups_.lane(group - 1) : 0);
        bringUp(group, x);
        groups_.add(columns_[x + nCols_].groups);
        groups_.subtract(columns_[x].groups);
        return 16 * group + values_[group].atMost(rest);
    }

private:
    void bringUp(uint32_t group, int32_t x)
    {
        OwnLanes<C> counts = values_[group];
        int32_t& at = valuesAt_[group];
        constexpr int32_t wide = 32; // narrower ones are counted anew unless the group was the last one's, too
        if (at == x - 1 || (nCols_ > wide && 2 * (x - at) <= nCols_)) {
            for (; at < x; ++at) {
                counts.add(columns_[at + nCols_].values[group]);
                counts.subtract(columns_[at].values[group]);
            }
        } else {
            counts = columns_[x].values[group];
            for (int32_t c = x + 1; c < x + nCols_; ++c) counts.add(columns_[c].values[group]);
            at = x;
        }
        values_[group] = counts;
    }

    const OwnColumnCounts<C>* columns_;
    int32_t nCols_;
    OwnLanes<C> groups_ = {};
    OwnLanes<C> values_[16] = {};
    int32_t valuesAt_[16]; // the column for which a group's values hold
};

// One channel of `pixels` output columns.
template <class C, class T>
static void ownMedianStrip(const OwnBand& band, const OwnRank& rank, OwnColumnCounts<C>* columns, ptrdiff_t first,
                           int32_t pixels)
{
    const int32_t count = pixels + rank.nCols - 1;
    const auto row = [&](int64_t y) { return reinterpret_cast<const T*>(band.rows[y]) + first; };
    std::fill(columns, columns + count + 1, OwnColumnCounts<C> {}); // the last step looks one further
    const ptrdiff_t step = band.step;
    for (int32_t y = 0; y < rank.nRows; ++y) {
        for (int32_t c = 0; c < count; ++c) columns[c].enter(ownCountedAs(row(y)[c * step]));
    }
    const uint32_t below = static_cast<uint32_t>(rank.below());
    for (int32_t y = 0; y < band.height; ++y) {
        if (y > 0) {
            const T* const leaving = row(y - 1);
            const T* const entering = row(static_cast<int64_t>(y) + rank.nRows - 1);
            for (int32_t c = 0; c < count; ++c) {
                columns[c].leave(ownCountedAs(leaving[c * step]));
                columns[c].enter(ownCountedAs(entering[c * step]));
            }
        }
        T* const out = reinterpret_cast<T*>(band.out[y]) + first;
        OwnSlidingCounts<C> window(columns, rank.nCols);
        for (int32_t x = 0; x < pixels; ++x) out[x * step] = static_cast<T>(window.next(x, below) ^ ownOrderBit<T>);
    }
}

template <class C, class T> static bool ownMedianByColumns(const OwnBand& band, const OwnRank& rank)
{
    constexpr int32_t ownStripColumns = 512 / sizeof(C); // their counts stay in the second-level cache together
    const int32_t width = static_cast<int32_t>(band.width / band.step);
    const int32_t strip = std::min(width, std::max(ownStripColumns, 2 * rank.nCols));
    OwnColumnCounts<C>* const columns = band.scratch.take<OwnColumnCounts<C>>(static_cast<int64_t>(strip) + rank.nCols);
    if (columns == nullptr) return false;
    for (int32_t channel = 0; channel < band.step; ++channel) {
        for (int32_t x = 0; x < width; x += strip) {
            const ptrdiff_t first = static_cast<ptrdiff_t>(x) * band.step + channel;
            ownMedianStrip<C, T>(band, rank, columns, first, std::min(strip, width - x));
        }
    }
    return true;
}

// ---- larger windows: one histogram that moves along the row ---------------------------------------------------------

// Counts of all values of 8 or 16 bits, and of groups that share their first bits: down to half of the bits, 4 at a
// time. A 1 in front of these bits is a group's place. The search begins in the group of the last middle sample (Huang,
// Yang and Tang, A fast two-dimensional median filtering algorithm, 1979).
template <class T> struct OwnWindowCounts {
    static constexpr int32_t groupBits = 4 * sizeof(T);
    static constexpr uint32_t values = uint32_t { 1 } << 2 * groupBits;
    uint32_t count[2 * values];
    uint32_t group;      // the place of one of the largest groups
    uint32_t belowGroup; // samples of the groups in front of it

    void change(T sample, uint32_t by)
    {
        const uint32_t place = values + ownCountedAs(sample);
        for (int32_t bits = 0; bits <= groupBits; bits += 4) count[place >> bits] += by;
        belowGroup += place >> groupBits < group ? by : 0;
    }

    T middle(uint32_t below)
    {
        while (belowGroup > below) belowGroup -= count[--group];
        while (belowGroup + count[group] <= below) belowGroup += count[group++];
        uint32_t rest = below - belowGroup;
        uint32_t place = group;
        while (place < values) {
            place *= 16;
            while (count[place] <= rest) rest -= count[place++];
        }
        return static_cast<T>((place - values) ^ ownOrderBit<T>);
    }
};

template <class T> static bool ownMedianByWindow(const OwnBand& band, const OwnRank& rank)
{
    using Counts = OwnWindowCounts<T>;
    Counts* const counts = band.scratch.take<Counts>(1);
    if (counts == nullptr) return false;
    memset(counts, 0, sizeof(Counts));
    counts->group = 1 << Counts::groupBits;
    for (int32_t y = 0; y < band.height; ++y) {
        for (int32_t channel = 0; channel < band.step; ++channel) {
            const auto changeColumn = [&](ptrdiff_t column, uint32_t by) {
                for (int32_t k = 0; k < rank.nRows; ++k) {
                    counts[0].change(reinterpret_cast<const T*>(band.rows[y + k])[column], by);
                }
            };
            ptrdiff_t entering = channel;
            for (int32_t c = 0; c < rank.nCols; ++c, entering += band.step) changeColumn(entering, 1);
            ptrdiff_t leaving = channel;
            for (ptrdiff_t x = channel; x < band.width; x += band.step) {
                reinterpret_cast<T*>(band.out[y])[x] = counts[0].middle(static_cast<uint32_t>(rank.below()));
                changeColumn(leaving, UINT32_MAX);
                leaving += band.step;
                if (x + band.step < band.width) changeColumn(entering, 1);
                entering += band.step;
            }
            for (; leaving < entering - band.step; leaving += band.step) changeColumn(leaving, UINT32_MAX);
        }
    }
    return true;
}

// ---- 32 bits: bit by bit --------------------------------------------------------------------------------------------

// A stretch of samples whose medians are found together.
struct OwnTrial {
    static constexpr ptrdiff_t most = 512;
    int32_t value[most];
    int32_t below[most]; // samples of the window that are smaller
};

template <int32_t N> static void ownCountBelow(const int32_t* const* taps, ptrdiff_t x, OwnTrial& trial, ptrdiff_t n)
{
    const int32_t* tap[N];
    for (int32_t k = 0; k < N; ++k) tap[k] = taps[k] + x;
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const int32_t value = trial.value[i];
        int32_t below = trial.below[i];
        for (int32_t k = 0; k < N; ++k) below += tap[k][i] < value ? 1 : 0;
        trial.below[i] = below;
    }
}

// The middle sample is the largest number with no more than `rank` samples below it: its bits are tried one by one.
static void ownMedianStretch(const int32_t* const* taps, ptrdiff_t x, const OwnRank& rank, int32_t* out, ptrdiff_t n)
{
    OwnTrial trial;
    const int64_t count = rank.samples();
    std::fill(out, out + n, INT32_MIN);
    for (int32_t bit = 31; bit >= 0; --bit) {
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) {
            trial.value[i] = static_cast<int32_t>(static_cast<uint32_t>(out[i]) + (uint32_t { 1 } << bit));
            trial.below[i] = 0;
        }
        int64_t k = 0;
        for (; k + 8 <= count; k += 8) ownCountBelow<8>(taps + k, x, trial, n);
        for (; k < count; ++k) ownCountBelow<1>(taps + k, x, trial, n);
        const int32_t most = static_cast<int32_t>(rank.below());
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) out[i] = trial.below[i] <= most ? trial.value[i] : out[i];
    }
}

static bool ownMedianByBits(const OwnBand& band, const OwnRank& rank)
{
    const int32_t** const taps = band.scratch.take<const int32_t*>(rank.samples());
    if (taps == nullptr) return false;
    for (int32_t y = 0; y < band.height; ++y) {
        const int32_t** next = taps;
        for (int32_t k = 0; k < rank.nRows; ++k) {
            const int32_t* const row = reinterpret_cast<const int32_t*>(band.rows[y + k]);
            for (int32_t c = 0; c < rank.nCols; ++c) *next++ = row + static_cast<ptrdiff_t>(c) * band.step;
        }
        int32_t* const out = reinterpret_cast<int32_t*>(band.out[y]);
        for (ptrdiff_t x = 0; x < band.width; x += OwnTrial::most) {
            ownMedianStretch(taps, x, rank, out + x, std::min(OwnTrial::most, band.width - x));
        }
    }
    return true;
}

// ---- choice --------------------------------------------------------------------------------------------------------

template <class T> static bool ownMedianOf(const OwnBand& band, OwnRank rank)
{
    OwnMergePlan plan;
    if (ownIsMerged<T>(band, rank)) {
        if (!ownPlanMerge(plan, rank.nCols, rank.nRows)) return false;
        rank.merge = &plan;
    }
    if (rank.samples() <= ownMostInNetwork || rank.merge != nullptr) {
        if constexpr (std::is_same<T, OwnOrdered<T>>::value) return ownMedianByExchanges<T>(band, rank);
        if constexpr (sizeof(T) == 2) { // turning would weigh in small windows
            if (rank.samples() <= ownFewInNetwork) return ownMedianByOwnNetwork<T>(band, rank);
        }
        if constexpr (!std::is_same<T, OwnOrdered<T>>::value) return ownMedianTurned<T>(band, rank);
    }
    if constexpr (sizeof(T) == 4) {
        return ownMedianByBits(band, rank);
    } else if constexpr (sizeof(T) == 2) {
        return ownMedianByWindow<T>(band, rank);
    } else {
        if (rank.samples() <= UINT8_MAX) return ownMedianByColumns<uint8_t, T>(band, rank);
        if (rank.samples() <= UINT16_MAX) return ownMedianByColumns<uint16_t, T>(band, rank);
        return ownMedianByWindow<T>(band, rank);
    }
}

bool ownMedianBand(const OwnBand& band, int32_t depth, int32_t nCols, int32_t nRows)
{
    const OwnRank rank = { nCols, nRows, nullptr };
    switch (depth) {
    case PXK_DEPTH_8U: return ownMedianOf<uint8_t>(band, rank);
    case PXK_DEPTH_8S: return ownMedianOf<int8_t>(band, rank);
    case PXK_DEPTH_16U: return ownMedianOf<uint16_t>(band, rank);
    case PXK_DEPTH_16S: return ownMedianOf<int16_t>(band, rank);
    default: return ownMedianOf<int32_t>(band, rank);
    }
}

template <class Sum> static bool ownMajorityOf(const OwnBand& band, int32_t nCols, int32_t nRows)
{
    const int64_t n = static_cast<int64_t>(nCols) * nRows;
    const Sum threshold = static_cast<Sum>(n / 2 + n % 2);
    return ownWindowSums<uint8_t, Sum>(band, nCols, nRows, [&](const Sum* sums, uint8_t* out, ptrdiff_t width) {
        const Sum least = threshold;
        ownInBlocks<ownBlockOf<uint8_t>>(width, [&](ptrdiff_t i) { out[i] = sums[i] >= least ? 1 : 0; });
    });
}

bool ownMajorityBand(const OwnBand& band, int32_t nCols, int32_t nRows)
{
    const bool isNarrow = static_cast<int64_t>(nCols) * nRows <= UINT16_MAX;
    return isNarrow ? ownMajorityOf<uint16_t>(band, nCols, nRows) : ownMajorityOf<uint32_t>(band, nCols, nRows);
}
