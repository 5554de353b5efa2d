// SPDX-License-Identifier: BSD-2-Clause
#include "ownscaleview.h"

#include <cstring>

#include "frame/ownbits.h"
#include "owngather.h"
#include "ownresample.h"
#include "ownscalerows.h"

OwnBuffer<int32_t> ownTapOffsets(const OwnAxis& across, int32_t start, int32_t n, int32_t from, ptrdiff_t pixelStep)
{
    OwnBuffer<int32_t> offsets = ownBuffer<int32_t>(n);
    if (offsets == nullptr) return offsets;
    const int32_t* const first = across.first.get() + start;
    const int32_t step = static_cast<int32_t>(pixelStep);
    for (ptrdiff_t i = 0; i < n; ++i) offsets[static_cast<size_t>(i)] = (first[i] - from) * step;
    return offsets;
}

// Calls f(start, n) for all samples of a row. Blocks of a whole number of vectors leave no remainder, which compilers
// take one by one; the last two may overlap.
template <class F> static inline void ownForBlocks(ptrdiff_t n, const F& f)
{
    constexpr ptrdiff_t block = 64;
    if (n < block) return f(0, n);
    f(0, n & -block);
    if (n % block != 0) f(n - block, block);
}

// ---- nearest -------------------------------------------------------------------------------------------------------

static bool ownIsRun(const int32_t* offsets, ptrdiff_t n, int32_t pixelBytes)
{
    bool isRun = true;
    for (ptrdiff_t i = 0; i < n; ++i) isRun = isRun && offsets[i] == offsets[0] + static_cast<int32_t>(i) * pixelBytes;
    return isRun;
}

// Output rows of the same source row are copies of the first one, which make(y, row) makes from source row y.
static bool ownMakeNearestRows(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& destination,
                               const OwnBits* mask, ptrdiff_t rowBytes, OwnFunction<void(int32_t y, uint8_t* row)> make)
{
    const uint8_t* made = nullptr;
    int32_t madeFrom = 0;
    return ownMakeRows(destination, OwnBitForm::BITS, mask, [&](int32_t y, uint8_t* row) {
        const int32_t from = scaling.down.first[static_cast<size_t>(place.y + y)] - place.fromY;
        if (made != nullptr && from == madeFrom) {
            memcpy(row, made, static_cast<size_t>(rowBytes));
        } else {
            make(from, row);
        }
        made = row;
        madeFrom = from;
    });
}

static bool ownNearestBits(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                           const OwnView& destination, const OwnBits* mask)
{
    const ptrdiff_t n = destination.width;
    const OwnBuffer<int32_t> offsets = ownTapOffsets(scaling.across, place.x, destination.width, place.fromX, 1);
    const OwnBuffer<uint8_t> expanded = ownBuffer<uint8_t>(source.width);
    const OwnBuffer<uint8_t> gathered = ownBuffer<uint8_t>(n);
    if (offsets == nullptr || expanded == nullptr || gathered == nullptr) return false;
    return ownMakeNearestRows(scaling, place, destination, mask, ownBytesOfBits(0, n), [&](int32_t y, uint8_t* row) {
        ownExpandBits(source.first + y * source.rowStep, source.bit, expanded.get(), source.width, 1);
        ownGatherPixels(expanded.get(), offsets.get(), 1, gathered.get(), n);
        ownPackBits(gathered.get(), row, 0, n);
    });
}

static bool ownNearestView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                           const OwnView& destination, const OwnBits* mask)
{
    if (source.sampleBytes == 0) return ownNearestBits(scaling, place, source, destination, mask);
    const ptrdiff_t n = destination.width;
    const int32_t pixelBytes = source.sampleBytes * source.nChannels;
    const OwnBuffer<int32_t> offsets =
        ownTapOffsets(scaling.across, place.x, destination.width, place.fromX, source.pixelStep);
    if (offsets == nullptr) return false;
    const bool isRun = ownIsRun(offsets.get(), n, pixelBytes);
    return ownMakeNearestRows(scaling, place, destination, mask, n * pixelBytes, [&](int32_t y, uint8_t* row) {
        const uint8_t* const pixels = source.first + y * source.rowStep;
        if (isRun) {
            memcpy(row, pixels + offsets[0], static_cast<size_t>(n * pixelBytes));
        } else {
            ownGatherPixels(pixels, offsets.get(), pixelBytes, row, n);
        }
    });
}

// ---- linear and cubic ----------------------------------------------------------------------------------------------

// Source rows that have passed along the row axis: as many as an output row depends on, each kept until its place is
// needed. `Rows` is OwnLinear or OwnCubic.
template <class Rows> class OwnRowRing {
public:
    using Sample = typename Rows::Sample;
    using Middle = typename Rows::Middle;
    static constexpr int32_t taps = Rows::taps;

    [[nodiscard]] bool open(const OwnAxis& across, const OwnScalePlace& place, const OwnView& source, int32_t width)
    {
        across_ = &across;
        std::fill_n(held_, taps, -1);
        source_ = source;
        firstWeight_ = static_cast<ptrdiff_t>(place.x) * source.nChannels;
        width_ = width;
        samples_ = static_cast<ptrdiff_t>(width) * source.nChannels;
        stride_ = (samples_ + 63) & ~static_cast<ptrdiff_t>(63);
        offsets_ = ownTapOffsets(across, place.x, width, place.fromX, source.pixelStep);
        tapSamples_ = ownBuffer<Sample>(static_cast<int64_t>(stride_) * taps);
        rows_ = ownBuffer<Middle>(static_cast<int64_t>(stride_) * taps);
        return offsets_ != nullptr && tapSamples_ != nullptr && rows_ != nullptr;
    }

    ptrdiff_t samples() const { return samples_; }

    const Middle* row(int32_t y)
    {
        const int32_t slot = y % taps;
        Middle* const to = rows_.get() + slot * stride_;
        if (held_[slot] != y) makeRow(source_.first + y * source_.rowStep, to);
        held_[slot] = y;
        return to;
    }

private:
    void makeRow(const uint8_t* from, Middle* to)
    {
        uint8_t* const gathered = reinterpret_cast<uint8_t*>(tapSamples_.get());
        constexpr int32_t wordBytes = taps * static_cast<int32_t>(sizeof(Sample));
        if constexpr (wordBytes <= 4) {
            using Word = std::conditional_t<wordBytes == 4, uint32_t, uint16_t>;
            if (source_.nChannels == 1 && source_.pixelStep == static_cast<ptrdiff_t>(sizeof(Sample))) {
                ownGatherPixels(from, offsets_.get(), wordBytes, gathered, width_);
                return makeAlong(OwnTapWords<Sample, Word> { reinterpret_cast<const Word*>(gathered) }, to);
            }
        }
        OwnTapRows<Sample> tapRows;
        for (int32_t k = 0; k < 4; ++k) {
            const int32_t tap = k % taps;
            Sample* const tapRow = tapSamples_.get() + tap * stride_;
            tapRows.rows[k] = tapRow;
            if (k < taps) {
                ownGatherPixels(from + k * source_.pixelStep, offsets_.get(), source_.nChannels * source_.sampleBytes,
                                reinterpret_cast<uint8_t*>(tapRow), width_);
            }
        }
        makeAlong(tapRows, to);
    }

    template <class Taps> void makeAlong(const Taps& tapSamples, Middle* to)
    {
        ownForBlocks(samples_, [&](ptrdiff_t start, ptrdiff_t n) {
            Rows::along(tapSamples.from(start), *across_, firstWeight_ + start, to + start, n);
        });
    }

    const OwnAxis* across_ = nullptr;
    OwnView source_ = {};
    ptrdiff_t firstWeight_ = 0;
    ptrdiff_t width_ = 0; // destination pixels
    ptrdiff_t samples_ = 0;
    ptrdiff_t stride_ = 0;
    OwnBuffer<int32_t> offsets_;
    OwnBuffer<Sample> tapSamples_;
    OwnBuffer<Middle> rows_;
    int32_t held_[taps]; // the source row in each place, or -1
};

template <class Rows>
static bool ownInterpolatedView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                                const OwnView& destination, const OwnBits* mask)
{
    OwnRowRing<Rows> ring;
    if (!ring.open(scaling.across, place, source, destination.width)) return false;
    return ownMakeRows(destination, OwnBitForm::BYTES, mask, [&](int32_t y, uint8_t* row) {
        const ptrdiff_t at = static_cast<ptrdiff_t>(place.y) + y;
        const int32_t first = scaling.down.first[static_cast<size_t>(at)] - place.fromY;
        const typename Rows::Middle* rows[Rows::taps];
        for (int32_t k = 0; k < Rows::taps; ++k) rows[k] = ring.row(first + k);
        typename Rows::Sample* const to = reinterpret_cast<typename Rows::Sample*>(row);
        ownForBlocks(ring.samples(), [&](ptrdiff_t start, ptrdiff_t n) {
            const typename Rows::Middle* block[Rows::taps];
            for (int32_t k = 0; k < Rows::taps; ++k) block[k] = rows[k] + start;
            Rows::across(block, scaling.down, at, to + start, n);
        });
    });
}

bool ownScaleView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                  const OwnView& destination, const OwnBits* mask)
{
    const bool isWide = source.sampleBytes == 2;
    switch (scaling.interpolation) {
    case OwnInterpolation::LINEAR:
        return isWide ? ownInterpolatedView<OwnLinear<uint16_t>>(scaling, place, source, destination, mask)
                      : ownInterpolatedView<OwnLinear<uint8_t>>(scaling, place, source, destination, mask);
    case OwnInterpolation::CUBIC:
        return isWide ? ownInterpolatedView<OwnCubic<uint16_t>>(scaling, place, source, destination, mask)
                      : ownInterpolatedView<OwnCubic<uint8_t>>(scaling, place, source, destination, mask);
    case OwnInterpolation::MEAN: return ownMeanView(scaling, place, source, destination, mask);
    default: return ownNearestView(scaling, place, source, destination, mask);
    }
}
