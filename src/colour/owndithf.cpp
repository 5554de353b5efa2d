// SPDX-License-Identifier: BSD-2-Clause
// Error diffusion.
//
// Along a row each pixel waits for the one before it. So several rows are under way at once, as lanes: they are cut
// into chunks, and each row is far enough behind the one above to find all errors that it needs. In every step all
// lanes do one chunk each: first the shares of the rows above, sample by sample independently; then the chains along
// the rows, which overlap each other in the processor; then levels and errors, again independently.
#include <cstring>

#include "frame/ownbits.h"
#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "ownreduc.h"

// Weights in units of unit / 65536; a sum of weighted errors is cut off to an integer, towards minus infinity. From a
// pixel they go to the next two on its row, and to five pixels of the next row and of the row after that, from two to
// the left to two to the right.
struct OwnFloydWeights {
    static constexpr int32_t unit = 4096;
    static constexpr int32_t right[2] = { 7, 0 };
    static constexpr int32_t next[5] = { 0, 3, 5, 1, 0 };
    static constexpr int32_t after[5] = {};
    static constexpr bool hasAfter = false;
};

// 171 and 195 of 8192 stand for a forty-eighth and a forty-second; that all weights add up to 8208 and 8190 is meant.
struct OwnJarvisWeights {
    static constexpr int32_t unit = 8 * 171;
    static constexpr int32_t right[2] = { 7, 5 };
    static constexpr int32_t next[5] = { 3, 5, 7, 5, 3 };
    static constexpr int32_t after[5] = { 1, 3, 5, 3, 1 };
    static constexpr bool hasAfter = true;
};

struct OwnStuckiWeights {
    static constexpr int32_t unit = 8 * 195;
    static constexpr int32_t right[2] = { 8, 4 };
    static constexpr int32_t next[5] = { 2, 4, 8, 4, 2 };
    static constexpr int32_t after[5] = { 1, 2, 4, 2, 1 };
    static constexpr bool hasAfter = true;
};

// ---- samples and their errors --------------------------------------------------------------------------------------

// Errors are within half the range, and with its share of them a sample stays within 64 (8U) of its range. So 8-bit
// samples, their errors and sums of up to 23 errors fit 16 bits; 23 times 32768 times 1560 fits 32 bits.
template <class T> using OwnWide = std::conditional_t<sizeof(T) == 1, int16_t, int32_t>;

static int32_t ownErrorOf(int32_t value, const OwnLevels& levels)
{
    const int32_t sample = std::min(std::max(value, 0), levels.largest);
    return sample - ownQuantise(sample, levels.largest, (1 << levels.stepBits) - 1);
}

// What a pixel hands on to the next one (near) and to the one after that (far), in units of 1 / 65536, by the sum of
// the sample and its share: worked out for 16-bit samples, looked up for 8-bit ones.
template <class T, class Weights> struct OwnPushes {
    OwnLevels levels;
    explicit OwnPushes(const OwnLevels& of)
        : levels(of)
    {
    }
    int32_t near(ptrdiff_t value) const { return push(value, Weights::right[0]); }
    int32_t far(ptrdiff_t value) const { return push(value, Weights::right[1]); }

private:
    int32_t push(ptrdiff_t value, int32_t weight) const
    {
        return ownErrorOf(static_cast<int32_t>(value), levels) * (weight * Weights::unit);
    }
};

template <class Weights> struct OwnPushes<uint8_t, Weights> {
    static constexpr int32_t margin = 64;
    int32_t nearTable[256 + 2 * margin];
    int32_t farTable[256 + 2 * margin];
    explicit OwnPushes(const OwnLevels& levels)
    {
        for (int32_t i = 0; i < 256 + 2 * margin; ++i) {
            const int32_t error = ownErrorOf(i - margin, levels);
            nearTable[i] = error * (Weights::right[0] * Weights::unit);
            farTable[i] = error * (Weights::right[1] * Weights::unit);
        }
    }
    int32_t near(ptrdiff_t value) const { return nearTable[value + margin]; }
    int32_t far(ptrdiff_t value) const { return farTable[value + margin]; }
};

// ---- the three parts of a step -------------------------------------------------------------------------------------

// As many rows as hide each other's waiting: a look-up waits longer than arithmetic, which needs more registers.
template <class T> constexpr int32_t ownLanes = sizeof(T) == 1 ? 6 : 4;
static constexpr int32_t ownLargestChunk = 64; // samples

// A row's chunk under way. Pointers are to its first sample; those to errors and sums have 2 gaps of zeros, or of
// earlier samples, in front.
template <class T> struct OwnLane {
    const T* from;
    uint8_t* to; // samples, or the byte of eight pixels
    const OwnWide<T>* above;
    const OwnWide<T>* twoAbove;
    OwnWide<T>* errors;
    OwnWide<T>* sums;
    ptrdiff_t n; // samples; 0 for an idle lane
};

template <class Wide, class Weights, const int32_t (&WEIGHTS)[5]>
static int32_t ownShare(const Wide* errors, ptrdiff_t gap)
{
    const Wide sum = static_cast<Wide>(errors[2 * gap] * WEIGHTS[0] + errors[gap] * WEIGHTS[1] + errors[0] * WEIGHTS[2]
                                       + errors[-gap] * WEIGHTS[3] + errors[-2 * gap] * WEIGHTS[4]);
    return static_cast<Wide>((static_cast<int32_t>(sum) * Weights::unit) >> 16);
}

// Each row's share is cut off and limited by itself, the earlier row's first.
template <class T, class Weights>
static void ownTakeShares(const OwnLane<T>& lane, ptrdiff_t n, ptrdiff_t gap, int32_t largest)
{
    using Wide = OwnWide<T>;
    const T* const from = lane.from;
    const Wide* const above = lane.above;
    const Wide* const twoAbove = lane.twoAbove;
    Wide* const sums = lane.sums;
    const Wide most = static_cast<Wide>(largest);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        Wide value = static_cast<Wide>(from[i]);
        if constexpr (Weights::hasAfter) {
            value = static_cast<Wide>(value + ownShare<Wide, Weights, Weights::after>(twoAbove + i, gap));
            value = std::min(std::max(value, Wide(0)), most);
        }
        value = static_cast<Wide>(value + ownShare<Wide, Weights, Weights::next>(above + i, gap));
        sums[i] = std::min(std::max(value, Wide(0)), most);
    }
}

// One pixel next to the other: the value that the next one waits for stays in a register.
template <class T, class Weights>
static void ownChainPixels(const OwnLane<T>* lanes, ptrdiff_t n, const OwnPushes<T, Weights>& pushes)
{
    OwnWide<T>* sums[ownLanes<T>];
    ptrdiff_t last[ownLanes<T>];
    for (int32_t k = 0; k < ownLanes<T>; ++k) {
        sums[k] = lanes[k].sums;
        last[k] = sums[k][-1];
    }
    for (ptrdiff_t i = 0; i < n; ++i) {
        for (int32_t k = 0; k < ownLanes<T>; ++k) {
            int32_t push = pushes.near(last[k]);
            if constexpr (Weights::right[1] != 0) push += pushes.far(sums[k][i - 2]);
            last[k] = sums[k][i] + (push >> 16);
            sums[k][i] = static_cast<OwnWide<T>>(last[k]);
        }
    }
}

template <class T, class Weights>
static void ownChainSamples(const OwnLane<T>* lanes, ptrdiff_t n, ptrdiff_t gap, const OwnPushes<T, Weights>& pushes)
{
    for (ptrdiff_t i = 0; i < n; ++i) {
        for (int32_t k = 0; k < ownLanes<T>; ++k) {
            OwnWide<T>* const sums = lanes[k].sums + i;
            int32_t push = pushes.near(sums[-gap]);
            if constexpr (Weights::right[1] != 0) push += pushes.far(sums[-2 * gap]);
            sums[0] = static_cast<OwnWide<T>>(sums[0] + (push >> 16));
        }
    }
}

template <class T, class Out>
static void ownGiveLevels(const OwnLane<T>& lane, ptrdiff_t n, const OwnLevels& levels, Out* to, int32_t outShift)
{
    using Wide = OwnWide<T>;
    const Wide* const sums = lane.sums;
    Wide* const errors = lane.errors;
    const Wide largest = static_cast<Wide>(levels.largest);
    const int32_t lowBits = (1 << levels.stepBits) - 1;
    const Wide half = static_cast<Wide>(lowBits >> 1);
    const Wide step = static_cast<Wide>(~lowBits);
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const Wide sample = std::min(std::max(sums[i], Wide(0)), largest);
        const Wide raised = static_cast<Wide>(sample + half);
        const Wide level = std::min(static_cast<Wide>(raised & step), largest);
        errors[i] = static_cast<Wide>(sample - level);
        to[i] = static_cast<Out>(level >> outShift);
    }
}

// ---- rows ----------------------------------------------------------------------------------------------------------

// Those under way, and two above the last of them.
template <class T> constexpr int32_t ownErrorRows = ownLanes<T> + 2;

// Where working memory holds what, in items of the wide type. Every row of errors or sums has 2 gaps of zeros in front
// and behind.
struct OwnDiffusionLayout {
    int32_t chunk;  // samples, a multiple of 16
    int64_t chunks; // of a row
    int64_t errorStep;
    int64_t sumStep;
    int64_t items;
};

template <class T> static OwnDiffusionLayout ownLayout(const OwnDiffusion& diffusion)
{
    OwnDiffusionLayout layout;
    const int64_t frame = 2 * static_cast<int64_t>(diffusion.gap);
    // Lanes are about two chunks apart, and a narrow image should have room for all of them.
    const int32_t fitting = (diffusion.rowSamples / (2 * ownLanes<T>)+15) / 16 * 16;
    layout.chunk = std::min(std::max(fitting, 16), ownLargestChunk);
    layout.chunks = (static_cast<int64_t>(diffusion.rowSamples) + layout.chunk - 1) / layout.chunk;
    layout.errorStep = diffusion.rowSamples + 2 * frame;
    layout.sumStep = layout.chunks * layout.chunk + frame;
    layout.items = ownErrorRows<T> * layout.errorStep + ownLanes<T> * layout.sumStep + frame + layout.chunk;
    return layout;
}

int64_t ownDiffusionBytes(const OwnDiffusion& diffusion)
{
    if (diffusion.depth == PXK_DEPTH_8U) return ownLayout<uint8_t>(diffusion).items * sizeof(OwnWide<uint8_t>);
    return ownLayout<uint16_t>(diffusion).items * sizeof(OwnWide<uint16_t>);
}

template <class T, class Weights> struct OwnDiffuser {
    const OwnDiffusion& diffusion;
    const OwnView& from;
    const OwnView& to;
    OwnDiffusionLayout layout;
    OwnWide<T>* errorRows; // row y is at y modulo ownErrorRows<T>; those above the image are zeros
    OwnWide<T>* sumRows;   // one a lane
    OwnWide<T>* idle;      // zeros, which every idle lane turns into zeros
    OwnPushes<T, Weights> pushes;

    OwnDiffuser(const OwnDiffusion& what, const OwnView& source, const OwnView& destination, uint8_t* memory)
        : diffusion(what)
        , from(source)
        , to(destination)
        , layout(ownLayout<T>(what))
        , pushes(what.levels)
    {
        memset(memory, 0, static_cast<size_t>(ownDiffusionBytes(what)));
        OwnWide<T>* const items = reinterpret_cast<OwnWide<T>*>(memory);
        const ptrdiff_t frame = 2 * static_cast<ptrdiff_t>(what.gap);
        errorRows = items + frame;
        sumRows = errorRows + ownErrorRows<T> * layout.errorStep;
        idle = sumRows + ownLanes<T> * layout.sumStep;
    }

    OwnWide<T>* errorsOf(int64_t y, ptrdiff_t x) const
    {
        return errorRows + (y + ownErrorRows<T>) % ownErrorRows<T> * layout.errorStep + x;
    }

    OwnLane<T> laneAt(int32_t lane, int64_t y, int64_t chunk) const
    {
        if (y < 0 || y >= diffusion.height || chunk >= layout.chunks) return { {}, {}, {}, {}, {}, idle, 0 };
        const ptrdiff_t x = static_cast<ptrdiff_t>(chunk) * layout.chunk;
        OwnLane<T> at;
        at.from = reinterpret_cast<const T*>(from.first + y * from.rowStep) + x;
        at.to = to.first + y * to.rowStep + (to.sampleBytes == 0 ? x / 8 : x * to.sampleBytes);
        at.above = errorsOf(y - 1, x);
        at.twoAbove = errorsOf(y - 2, x);
        at.errors = errorsOf(y, x);
        at.sums = sumRows + lane * layout.sumStep + x;
        at.n = std::min<ptrdiff_t>(layout.chunk, diffusion.rowSamples - x);
        return at;
    }

    // In wide images the loop's length is a constant for all chunks but a row's last one.
    void takeShares(const OwnLane<T>& lane) const
    {
        const ptrdiff_t gap = diffusion.gap;
        const int32_t largest = diffusion.levels.largest;
        if (lane.n == ownLargestChunk) return ownTakeShares<T, Weights>(lane, ownLargestChunk, gap, largest);
        ownTakeShares<T, Weights>(lane, lane.n, gap, largest);
        std::fill(lane.sums + lane.n, lane.sums + layout.chunk, OwnWide<T>(0));
    }

    void giveLevels(const OwnLane<T>& lane) const
    {
        const OwnLevels& levels = diffusion.levels;
        if (to.sampleBytes == 0) {
            uint8_t highestBits[ownLargestChunk];
            ownGiveLevels(lane, lane.n, levels, highestBits, 8 * static_cast<int32_t>(sizeof(T)) - 1);
            ownPackBits(highestBits, lane.to, to.bit, lane.n);
        } else {
            ownGiveLevels(lane, lane.n, levels, reinterpret_cast<T*>(lane.to), 0);
        }
    }

    void runStep(OwnLane<T>* lanes) const
    {
        for (int32_t k = 0; k < ownLanes<T>; ++k) {
            if (lanes[k].n > 0) takeShares(lanes[k]);
        }
        if (diffusion.gap == 1) {
            ownChainPixels(lanes, layout.chunk, pushes);
        } else {
            ownChainSamples(lanes, layout.chunk, diffusion.gap, pushes);
        }
        for (int32_t k = 0; k < ownLanes<T>; ++k) {
            if (lanes[k].n > 0) giveLevels(lanes[k]);
        }
    }

    // Lane k does rows k, k + ownLanes<T>, ... one after the other, `delay` chunks behind lane k - 1; its next row
    // begins when the last lane is that far ahead, too.
    void run() const
    {
        const int64_t delay = 1 + (layout.chunk - 1 + 2 * static_cast<int64_t>(diffusion.gap)) / layout.chunk;
        const int64_t period = std::max(layout.chunks, ownLanes<T> * delay);
        const int64_t rounds = (static_cast<int64_t>(diffusion.height) + ownLanes<T> - 1) / ownLanes<T>;
        const int64_t steps = rounds * period + (ownLanes<T> - 1) * delay;
        int64_t rows[ownLanes<T>];
        int64_t chunks[ownLanes<T>];
        for (int32_t k = 0; k < ownLanes<T>; ++k) {
            rows[k] = k == 0 ? 0 : k - ownLanes<T>; // a lane waits in a row above the image
            chunks[k] = k == 0 ? 0 : period - k * delay;
        }
        for (int64_t step = 0; step < steps; ++step) {
            OwnLane<T> lanes[ownLanes<T>];
            for (int32_t k = 0; k < ownLanes<T>; ++k) {
                lanes[k] = laneAt(k, rows[k], chunks[k]);
                if (++chunks[k] < period) continue;
                chunks[k] = 0;
                rows[k] += ownLanes<T>;
            }
            runStep(lanes);
        }
    }
};

void ownDiffuse(const OwnDiffusion& diffusion, const OwnView& from, const OwnView& to, uint8_t* memory)
{
    const auto runBy = [&](auto tag, auto weights) {
        const OwnDiffuser<typename decltype(tag)::Sample, decltype(weights)> diffuser(diffusion, from, to, memory);
        diffuser.run();
    };
    const auto run = [&](auto tag) {
        switch (diffusion.ditherType) {
        case PXK_DITHER_FS: return runBy(tag, OwnFloydWeights {});
        case PXK_DITHER_JJN: return runBy(tag, OwnJarvisWeights {});
        default: return runBy(tag, OwnStuckiWeights {});
        }
    };
    if (diffusion.depth == PXK_DEPTH_8U) return run(OwnSampleTag<uint8_t> {});
    run(OwnSampleTag<uint16_t> {});
}
