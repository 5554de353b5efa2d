// Error diffusion.
//
// Along a row each pixel waits for the one before it. So several rows are under way at once, as lanes: they are cut
// into chunks, and each row is far enough behind the one above to find all errors that it needs. In every step all
// lanes do one chunk each: first the shares of the rows above, sample by sample independently; then the chains along
// the rows, which overlap each other in the processor; then levels and errors, again independently.
#include <cstring>

#include "frame/ownbits.h"
#include "frame/owndepth.h"
#include "frame/ownrows.h"
#include "ownreduce.h"

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

// What a pixel adds to its neighbour and to the one after that, before the shift.
struct OwnPush {
    int32_t near;
    int32_t far;
};

template <class Weights> static OwnPush ownPushOf(int32_t error)
{
    return { error * Weights::right[0] * Weights::unit, error * Weights::right[1] * Weights::unit };
}

// From the sum of a sample and its share to what the pixel hands on: worked out for 16-bit samples, looked up for 8-bit
// ones.
template <class T, class Weights> struct OwnPushes {
    OwnLevels levels;
    explicit OwnPushes(const OwnLevels& of)
        : levels(of)
    {
    }
    OwnPush operator()(int32_t value) const { return ownPushOf<Weights>(ownErrorOf(value, levels)); }
};

template <class Weights> struct OwnPushes<uint8_t, Weights> {
    static constexpr int32_t margin = 64;
    OwnPush table[256 + 2 * margin];
    explicit OwnPushes(const OwnLevels& levels)
    {
        for (int32_t i = 0; i < 256 + 2 * margin; ++i) table[i] = ownPushOf<Weights>(ownErrorOf(i - margin, levels));
    }
    OwnPush operator()(int32_t value) const { return table[value + margin]; }
};

// ---- the three parts of a step -------------------------------------------------------------------------------------

static constexpr int32_t ownLanes = 4;
static constexpr int32_t ownChunk = 64;

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

// One pixel next to the other: what was handed on stays in registers.
template <class T, class Pushes> static void ownChainPixels(OwnLane<T>* lanes, const Pushes& pushes)
{
    OwnWide<T>* sums[ownLanes];
    OwnPush last[ownLanes];
    int32_t far[ownLanes];
    for (int32_t k = 0; k < ownLanes; ++k) {
        sums[k] = lanes[k].sums;
        last[k] = pushes(sums[k][-1]);
        far[k] = pushes(sums[k][-2]).far;
    }
    for (ptrdiff_t i = 0; i < ownChunk; ++i) {
        for (int32_t k = 0; k < ownLanes; ++k) {
            const int32_t value = sums[k][i] + ((last[k].near + far[k]) >> 16);
            sums[k][i] = static_cast<OwnWide<T>>(value);
            far[k] = last[k].far;
            last[k] = pushes(value);
        }
    }
}

template <class T, class Pushes> static void ownChainSamples(OwnLane<T>* lanes, ptrdiff_t gap, const Pushes& pushes)
{
    for (ptrdiff_t i = 0; i < ownChunk; ++i) {
        for (int32_t k = 0; k < ownLanes; ++k) {
            OwnWide<T>* const sums = lanes[k].sums + i;
            const int32_t share = (pushes(sums[-gap]).near + pushes(sums[-2 * gap]).far) >> 16;
            sums[0] = static_cast<OwnWide<T>>(sums[0] + share);
        }
    }
}

template <class T, class Out>
static void ownGiveLevels(const OwnLane<T>& lane, ptrdiff_t n, const OwnLevels& levels, Out* to, int32_t outShift)
{
    using Wide = OwnWide<T>;
    const Wide* const sums = lane.sums;
    Wide* const errors = lane.errors;
    const int32_t largest = levels.largest;
    const int32_t lowBits = (1 << levels.stepBits) - 1;
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < n; ++i) {
        const Wide sample = std::min(std::max(sums[i], Wide(0)), static_cast<Wide>(largest));
        const Wide level = static_cast<Wide>(ownQuantise(sample, largest, lowBits));
        errors[i] = static_cast<Wide>(sample - level);
        to[i] = static_cast<Out>(level >> outShift);
    }
}

// ---- rows ----------------------------------------------------------------------------------------------------------

static constexpr int32_t ownErrorRows = ownLanes + 2; // under way, and two above the last of them

// Where working memory holds what, in items of the wide type. Every row of errors or sums has 2 gaps of zeros in front
// and behind.
struct OwnDiffusionLayout {
    int64_t chunks; // of a row
    int64_t errorStep;
    int64_t sumStep;
    int64_t items;
};

static OwnDiffusionLayout ownLayout(const OwnDiffusion& diffusion)
{
    OwnDiffusionLayout layout;
    const int64_t frame = 2 * static_cast<int64_t>(diffusion.gap);
    layout.chunks = (static_cast<int64_t>(diffusion.rowSamples) + ownChunk - 1) / ownChunk;
    layout.errorStep = diffusion.rowSamples + 2 * frame;
    layout.sumStep = layout.chunks * ownChunk + frame;
    layout.items = ownErrorRows * layout.errorStep + ownLanes * layout.sumStep + frame + ownChunk;
    return layout;
}

int64_t ownDiffusionBytes(const OwnDiffusion& diffusion)
{
    return ownLayout(diffusion).items * (diffusion.depth == PXK_DEPTH_8U ? 2 : 4);
}

template <class T, class Weights> struct OwnDiffuser {
    const OwnDiffusion& diffusion;
    const OwnView& from;
    const OwnView& to;
    OwnDiffusionLayout layout;
    OwnWide<T>* errorRows; // row y is at y modulo ownErrorRows; those above the image are zeros
    OwnWide<T>* sumRows;   // one a lane
    OwnWide<T>* idle;      // zeros, which every idle lane turns into zeros
    OwnPushes<T, Weights> pushes;

    OwnDiffuser(const OwnDiffusion& what, const OwnView& source, const OwnView& destination, uint8_t* memory)
        : diffusion(what)
        , from(source)
        , to(destination)
        , layout(ownLayout(what))
        , pushes(what.levels)
    {
        memset(memory, 0, static_cast<size_t>(ownDiffusionBytes(what)));
        OwnWide<T>* const items = reinterpret_cast<OwnWide<T>*>(memory);
        const ptrdiff_t frame = 2 * static_cast<ptrdiff_t>(what.gap);
        errorRows = items + frame;
        sumRows = errorRows + ownErrorRows * layout.errorStep;
        idle = sumRows + ownLanes * layout.sumStep;
    }

    OwnWide<T>* errorsOf(int64_t y, ptrdiff_t x) const
    {
        return errorRows + (y + ownErrorRows) % ownErrorRows * layout.errorStep + x;
    }

    OwnLane<T> laneAt(int32_t lane, int64_t y, int64_t chunk) const
    {
        if (y < 0 || y >= diffusion.height || chunk >= layout.chunks) return { {}, {}, {}, {}, {}, idle, 0 };
        const ptrdiff_t x = static_cast<ptrdiff_t>(chunk) * ownChunk;
        OwnLane<T> at;
        at.from = reinterpret_cast<const T*>(from.first + y * from.rowStep) + x;
        at.to = to.first + y * to.rowStep + (to.sampleBytes == 0 ? x / 8 : x * to.sampleBytes);
        at.above = errorsOf(y - 1, x);
        at.twoAbove = errorsOf(y - 2, x);
        at.errors = errorsOf(y, x);
        at.sums = sumRows + lane * layout.sumStep + x;
        at.n = std::min<ptrdiff_t>(ownChunk, diffusion.rowSamples - x);
        return at;
    }

    // The loop's length is a constant for all chunks but a row's last one.
    void takeShares(const OwnLane<T>& lane) const
    {
        const ptrdiff_t gap = diffusion.gap;
        const int32_t largest = diffusion.levels.largest;
        if (lane.n == ownChunk) return ownTakeShares<T, Weights>(lane, ownChunk, gap, largest);
        ownTakeShares<T, Weights>(lane, lane.n, gap, largest);
        std::fill(lane.sums + lane.n, lane.sums + ownChunk, OwnWide<T>(0));
    }

    void giveLevels(const OwnLane<T>& lane) const
    {
        const OwnLevels& levels = diffusion.levels;
        if (to.sampleBytes == 0) {
            uint8_t highestBits[ownChunk];
            ownGiveLevels(lane, lane.n, levels, highestBits, 8 * static_cast<int32_t>(sizeof(T)) - 1);
            ownPackBits(highestBits, lane.to, to.bit, lane.n);
        } else {
            ownGiveLevels(lane, lane.n, levels, reinterpret_cast<T*>(lane.to), 0);
        }
    }

    void runStep(OwnLane<T>* lanes) const
    {
        for (int32_t k = 0; k < ownLanes; ++k) {
            if (lanes[k].n > 0) takeShares(lanes[k]);
        }
        if (diffusion.gap == 1) {
            ownChainPixels(lanes, pushes);
        } else {
            ownChainSamples(lanes, diffusion.gap, pushes);
        }
        for (int32_t k = 0; k < ownLanes; ++k) {
            if (lanes[k].n > 0) giveLevels(lanes[k]);
        }
    }

    // Lane k does rows k, k + ownLanes, ... one after the other, `delay` chunks behind lane k - 1; its next row begins
    // when the last lane is that far ahead, too.
    void run() const
    {
        const int64_t delay = 1 + (ownChunk - 1 + 2 * static_cast<int64_t>(diffusion.gap)) / ownChunk;
        const int64_t period = std::max(layout.chunks, ownLanes * delay);
        const int64_t rounds = (static_cast<int64_t>(diffusion.height) + ownLanes - 1) / ownLanes;
        const int64_t steps = rounds * period + (ownLanes - 1) * delay;
        for (int64_t step = 0; step < steps; ++step) {
            OwnLane<T> lanes[ownLanes];
            for (int32_t k = 0; k < ownLanes; ++k) {
                const int64_t place = step - k * delay;
                lanes[k] = laneAt(k, place < 0 ? -1 : place / period * ownLanes + k, place % period);
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
