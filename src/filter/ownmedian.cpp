#include "ownmedian.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "frame/ownbuffer.h"
#include "frame/owndepth.h"
#include "ownnetwork.h"
#include "ownsums.h"

struct OwnRank {
    int32_t nCols;
    int32_t nRows;
    int64_t samples() const { return static_cast<int64_t>(nCols) * nRows; }
    int64_t below() const { return samples() / 2; } // samples in front of the middle one in ascending order
};

// ---- small windows: exchange networks ------------------------------------------------------------------------------

template <int32_t COUNT, class T> static void ownNetworkBand(const OwnBand& band, const OwnRank& rank)
{
    for (int32_t y = 0; y < band.height; ++y) {
        const T* taps[COUNT];
        for (int32_t k = 0; k < COUNT; ++k) {
            const T* const row = reinterpret_cast<const T*>(band.rows[y + k / rank.nCols]);
            taps[k] = row + k % rank.nCols * band.step;
        }
        ownMiddleRow<COUNT>(taps, reinterpret_cast<T*>(band.out[y]), band.width, std::make_index_sequence<COUNT> {});
    }
}

// False: no network of that size, nothing computed.
template <class T> static bool ownTryNetwork(const OwnBand& band, const OwnRank& rank)
{
    switch (rank.samples()) {
    case 1: ownNetworkBand<1, T>(band, rank); return true;
    case 2: ownNetworkBand<2, T>(band, rank); return true;
    case 3: ownNetworkBand<3, T>(band, rank); return true;
    case 4: ownNetworkBand<4, T>(band, rank); return true;
    case 5: ownNetworkBand<5, T>(band, rank); return true;
    case 6: ownNetworkBand<6, T>(band, rank); return true;
    case 9: ownNetworkBand<9, T>(band, rank); return true;
    case 15: ownNetworkBand<15, T>(band, rank); return true;
    case 25: ownNetworkBand<25, T>(band, rank); return true;
    default: return false;
    }
}

// ---- 8 bits: a histogram a column ----------------------------------------------------------------------------------

// Counts of 256 values in two levels, 16 coarse ones of 16 fine ones each (Perreault and Hebert, Median filtering in
// constant time, 2007). Counts fit 16 bits, so windows have at most 65535 samples.
struct OwnCounts {
    uint16_t coarse[16];
    uint16_t fine[16][16];
};

// Columns of a strip stay in the second-level cache together.
static constexpr int32_t ownStripColumns = 256;

static inline void ownAddCounts(uint16_t* to, const uint16_t* entering)
{
    for (int32_t i = 0; i < 16; ++i) to[i] = static_cast<uint16_t>(to[i] + entering[i]);
}

static inline void ownMoveCounts(uint16_t* to, const uint16_t* entering, const uint16_t* leaving)
{
    for (int32_t i = 0; i < 16; ++i) to[i] = static_cast<uint16_t>(to[i] + entering[i] - leaving[i]);
}

// Finds the group that holds the sample with `below` samples in front of it, and makes `below` relative to the group.
static inline int32_t ownFindGroup(const uint16_t* counts, uint32_t& below)
{
    int32_t group = 0;
    while (counts[group] <= below) below -= counts[group++];
    return group;
}

// The window's counts along a row. Its fine counts are brought up to date only for the coarse group that is looked at.
class OwnSlidingCounts {
public:
    OwnSlidingCounts(const OwnCounts* columns, int32_t nCols)
        : columns_(columns)
        , nCols_(nCols)
    {
        for (int32_t c = 0; c < nCols; ++c) ownAddCounts(coarse_, columns[c].coarse);
        std::fill(fineAt_, fineAt_ + 16, -nCols - 1);
    }

    void moveTo(int32_t x) { ownMoveCounts(coarse_, columns_[x + nCols_ - 1].coarse, columns_[x - 1].coarse); }

    uint8_t middle(int32_t x, uint32_t below)
    {
        const int32_t group = ownFindGroup(coarse_, below);
        bringUp(group, x);
        return static_cast<uint8_t>(16 * group + ownFindGroup(fine_[group], below));
    }

private:
    void bringUp(int32_t group, int32_t x)
    {
        uint16_t* const counts = fine_[group];
        int32_t& at = fineAt_[group];
        if (2 * (x - at) > nCols_) { // counting anew is shorter
            memset(counts, 0, 16 * sizeof(uint16_t));
            for (int32_t c = x; c < x + nCols_; ++c) ownAddCounts(counts, columns_[c].fine[group]);
        } else {
            for (int32_t c = at; c < x; ++c) {
                ownMoveCounts(counts, columns_[c + nCols_].fine[group], columns_[c].fine[group]);
            }
        }
        at = x;
    }

    const OwnCounts* columns_;
    int32_t nCols_;
    uint16_t coarse_[16] = {};
    uint16_t fine_[16][16] = {};
    int32_t fineAt_[16]; // the column for which a group's fine counts hold
};

// Signed samples are counted with their top bit turned, which keeps their order.
template <class T> constexpr uint32_t ownOrderBit = std::is_signed<T>::value ? 1u << (8 * sizeof(T) - 1) : 0u;

template <class T> static inline uint32_t ownCountedAs(T sample)
{
    return static_cast<std::make_unsigned_t<T>>(sample) ^ ownOrderBit<T>;
}

template <class T>
static void ownCountRow(OwnCounts* columns, const T* row, int32_t count, int32_t step, int32_t change)
{
    for (int32_t c = 0; c < count; ++c) {
        const uint32_t value = ownCountedAs(row[static_cast<ptrdiff_t>(c) * step]);
        columns[c].coarse[value / 16] = static_cast<uint16_t>(columns[c].coarse[value / 16] + change);
        columns[c].fine[value / 16][value % 16] =
            static_cast<uint16_t>(columns[c].fine[value / 16][value % 16] + change);
    }
}

// One channel of `pixels` output columns.
template <class T>
static void ownMedianStrip(const OwnBand& band, const OwnRank& rank, OwnCounts* columns, ptrdiff_t first,
                           int32_t pixels)
{
    const int32_t count = pixels + rank.nCols - 1;
    const auto row = [&](int32_t y) { return reinterpret_cast<const T*>(band.rows[y]) + first; };
    memset(columns, 0, sizeof(OwnCounts) * static_cast<size_t>(count));
    for (int32_t y = 0; y < rank.nRows; ++y) ownCountRow(columns, row(y), count, band.step, 1);
    const uint32_t below = static_cast<uint32_t>(rank.below());
    for (int32_t y = 0; y < band.height; ++y) {
        if (y > 0) {
            ownCountRow(columns, row(y - 1), count, band.step, -1);
            ownCountRow(columns, row(y + rank.nRows - 1), count, band.step, 1);
        }
        T* const out = reinterpret_cast<T*>(band.out[y]) + first;
        OwnSlidingCounts window(columns, rank.nCols);
        for (int32_t x = 0; x < pixels; ++x) {
            if (x > 0) window.moveTo(x);
            out[static_cast<ptrdiff_t>(x) * band.step] = static_cast<T>(window.middle(x, below) ^ ownOrderBit<T>);
        }
    }
}

template <class T> static bool ownMedianByColumns(const OwnBand& band, const OwnRank& rank)
{
    const int32_t width = static_cast<int32_t>(band.width / band.step);
    const int32_t strip = std::min(width, std::max(ownStripColumns, 2 * rank.nCols));
    const OwnBuffer<OwnCounts> columns = ownBuffer<OwnCounts>(static_cast<int64_t>(strip) + rank.nCols - 1);
    if (columns == nullptr) return false;
    for (int32_t channel = 0; channel < band.step; ++channel) {
        for (int32_t x = 0; x < width; x += strip) {
            const ptrdiff_t first = static_cast<ptrdiff_t>(x) * band.step + channel;
            ownMedianStrip<T>(band, rank, columns.get(), first, std::min(strip, width - x));
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
    const OwnBuffer<Counts> counts = ownBuffer<Counts>(1);
    if (counts == nullptr) return false;
    memset(counts.get(), 0, sizeof(Counts));
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
    const OwnBuffer<int32_t> samples = ownBuffer<int32_t>(n);
    if (samples == nullptr) return false;
    int32_t* const middle = samples.get() + rank.below();
    for (int32_t y = 0; y < band.height; ++y) {
        for (ptrdiff_t x = 0; x < band.width; ++x) {
            int32_t* next = samples.get();
            for (int32_t k = 0; k < rank.nRows; ++k) {
                const int32_t* const row = reinterpret_cast<const int32_t*>(band.rows[y + k]) + x;
                for (int32_t c = 0; c < rank.nCols; ++c) *next++ = row[static_cast<ptrdiff_t>(c) * band.step];
            }
            std::nth_element(samples.get(), middle, samples.get() + n);
            reinterpret_cast<int32_t*>(band.out[y])[x] = *middle;
        }
    }
    return true;
}

// ---- choice --------------------------------------------------------------------------------------------------------

template <class T> static bool ownMedianOf(const OwnBand& band, const OwnRank& rank)
{
    if (ownTryNetwork<T>(band, rank)) return true;
    if constexpr (sizeof(T) == 4) {
        return ownMedianBySelection(band, rank);
    } else if constexpr (sizeof(T) == 2) {
        return ownMedianByWindow<T>(band, rank);
    } else {
        return rank.samples() <= UINT16_MAX ? ownMedianByColumns<T>(band, rank) : ownMedianByWindow<T>(band, rank);
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
