#include "ownmedian.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "frame/owndepth.h"
#include "ownnetwork.h"
#include "ownsums.h"

struct OwnRank {
    int32_t nCols;
    int32_t nRows;
    int64_t samples() const { return static_cast<int64_t>(nCols) * nRows; }
    int64_t below() const { return samples() / 2; } // samples in front of the middle one in ascending order
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

static constexpr int32_t ownMostInNetwork = 49;

// A network for every count up to 25; those of 35 and 49 serve smaller windows too. False: out of memory.
template <class T> static bool ownMedianByNetwork(const OwnBand& band, const OwnRank& rank)
{
    const int64_t n = rank.samples();
    const auto network = [&](auto count, const T* lowest, const T* highest) {
        ownNetworkBand<decltype(count)::value, T>(band, rank, lowest, highest);
        return true;
    };
    if (n > 25) {
        const ptrdiff_t length = band.width + ownBlockOf<T>;
        T* const lowest = band.scratch.take<T>(length);
        T* const highest = band.scratch.take<T>(length);
        if (lowest == nullptr || highest == nullptr) return false;
        std::fill(lowest, lowest + length, std::numeric_limits<T>::min());
        std::fill(highest, highest + length, std::numeric_limits<T>::max());
        if (n <= 35) return network(std::integral_constant<int32_t, 35> {}, lowest, highest);
        return network(std::integral_constant<int32_t, ownMostInNetwork> {}, lowest, highest);
    }
    return ownForCount<1, 25>(static_cast<int32_t>(n), [&](auto count) { return network(count, nullptr, nullptr); });
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

// Counts of all values of 8 or 16 bits, with the sums of groups as a coarse level.
template <class T> struct OwnWindowCounts {
    static constexpr int32_t groupBits = 4 * sizeof(T);
    static constexpr int32_t groups = 1 << groupBits;
    uint32_t coarse[groups];
    uint32_t fine[groups << groupBits];

    void change(T sample, uint32_t by)
    {
        const uint32_t value = ownCountedAs(sample);
        coarse[value >> groupBits] += by;
        fine[value] += by;
    }

    T middle(int64_t below) const
    {
        uint32_t group = 0;
        while (coarse[group] <= below) below -= coarse[group++];
        uint32_t value = group << groupBits;
        while (fine[value] <= below) below -= fine[value++];
        return static_cast<T>(value ^ ownOrderBit<T>);
    }
};

template <class T> static bool ownMedianByWindow(const OwnBand& band, const OwnRank& rank)
{
    using Counts = OwnWindowCounts<T>;
    Counts* const counts = band.scratch.take<Counts>(1);
    if (counts == nullptr) return false;
    memset(counts, 0, sizeof(Counts));
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
                reinterpret_cast<T*>(band.out[y])[x] = counts[0].middle(rank.below());
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

// ---- 32 bits: selection --------------------------------------------------------------------------------------------

static bool ownMedianBySelection(const OwnBand& band, const OwnRank& rank)
{
    const int64_t n = rank.samples();
    int32_t* const samples = band.scratch.take<int32_t>(n);
    if (samples == nullptr) return false;
    int32_t* const middle = samples + rank.below();
    for (int32_t y = 0; y < band.height; ++y) {
        for (ptrdiff_t x = 0; x < band.width; ++x) {
            int32_t* next = samples;
            for (int32_t k = 0; k < rank.nRows; ++k) {
                const int32_t* const row = reinterpret_cast<const int32_t*>(band.rows[y + k]) + x;
                for (int32_t c = 0; c < rank.nCols; ++c) *next++ = row[static_cast<ptrdiff_t>(c) * band.step];
            }
            std::nth_element(samples, middle, samples + n);
            reinterpret_cast<int32_t*>(band.out[y])[x] = *middle;
        }
    }
    return true;
}

// ---- choice --------------------------------------------------------------------------------------------------------

template <class T> static bool ownMedianOf(const OwnBand& band, const OwnRank& rank)
{
    if (rank.samples() <= ownMostInNetwork) return ownMedianByNetwork<T>(band, rank);
    if constexpr (sizeof(T) == 4) {
        return ownMedianBySelection(band, rank);
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
    const OwnRank rank = { nCols, nRows };
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
