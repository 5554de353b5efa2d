// SPDX-License-Identifier: BSD-2-Clause
#include "ownscaleview.h"

#include <cstring>

#include "frame/ownbits.h"
#include "frame/ownscratch.h"
#include "owngather.h"
#include "ownpairs.h"
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

// What the rows of a view are made of, whatever their samples are.
struct OwnRowMaking {
    const OwnAxis* across;
    const OwnAxis& down;
    OwnScalePlace place;
    OwnView source;
    OwnAxis folded;
    OwnPairs pairs;     // none: rows are made as they are stored
    int32_t firstPixel; // on the axis across
    int32_t width;      // destination pixels
    int32_t height;
    ptrdiff_t samples; // of a row
    ptrdiff_t stride;
    OwnBuffer<int32_t> offsets; // of the pixels in no pair
    OwnScratch scratch;

    OwnRowMaking(const OwnScaling& scaling, const OwnScalePlace& where, const OwnView& from, const OwnView& to);
    // False: out of memory.
    [[nodiscard]] bool open();

    // Pixels of one sample without gaps.
    bool isPacked() const { return source.nChannels == 1 && source.pixelStep == source.sampleBytes; }
    bool isFolded() const { return pairs.count > 0; }
    int32_t firstRow(int32_t y) const { return down.first[static_cast<size_t>(place.y + y)] - place.fromY; }
};

OwnRowMaking::OwnRowMaking(const OwnScaling& scaling, const OwnScalePlace& where, const OwnView& from,
                           const OwnView& to)
    : across(&scaling.across)
    , down(scaling.down)
    , place(where)
    , source(from)
    , folded()
    , pairs()
    , firstPixel(where.x)
    , width(to.width)
    , height(to.height)
    , samples(static_cast<ptrdiff_t>(to.width) * from.nChannels)
    , stride((samples + 63) & ~static_cast<ptrdiff_t>(63))
{
}

bool OwnRowMaking::open()
{
    if (isPacked()) pairs = ownFindPairs(across->first.get() + place.x, width);
    if (isFolded()) {
        if (!ownFoldAxis(*across, place.x, width, pairs, folded)) return false;
        across = &folded;
        firstPixel = 0;
    }
    const int32_t nPaired = 2 * pairs.count;
    offsets = ownTapOffsets(*across, firstPixel + nPaired, width - nPaired, place.fromX, source.pixelStep);
    return offsets != nullptr;
}

// Source rows that have passed along the row axis are kept until their place is needed: as many as an output row
// depends on. `Rows` is OwnLinear or OwnCubic.
template <class Rows> class OwnRowMaker {
public:
    using Sample = typename Rows::Sample;
    using Middle = typename Rows::Middle;

    explicit OwnRowMaker(OwnRowMaking& making)
        : making_(making)
        , tapSamples_(making.scratch.take<Sample>(static_cast<int64_t>(making.stride) * taps))
        , rows_(making.scratch.take<Middle>(static_cast<int64_t>(making.stride) * taps))
        , made_(making.scratch.take<Sample>(static_cast<int64_t>(making.stride) * 2))
    {
        std::fill_n(held_, taps, -1);
    }

    bool isOpen() const { return tapSamples_ != nullptr && rows_ != nullptr && made_ != nullptr; }

    // Rows are asked for in ascending order. One that has the same taps as the next is made together with it.
    void make(int32_t y, Sample* row)
    {
        Sample* const second = made_ + making_.stride;
        if (y == waiting_) return store(second, row);
        Sample* const first = making_.isFolded() ? made_ : row;
        const bool isWorth = making_.isFolded() || taps > 2; // a row that is copied has to save more than its copy
        if (isWorth && y + 1 < making_.height && making_.firstRow(y + 1) == making_.firstRow(y)) {
            makeAcross<2>(y, { first, second });
            waiting_ = y + 1;
        } else {
            makeAcross<1>(y, { first });
        }
        store(first, row);
    }

private:
    static constexpr int32_t taps = Rows::taps;

    template <int32_t N> void makeAcross(int32_t y, Sample* const (&to)[N])
    {
        const Middle* rows[taps];
        for (int32_t k = 0; k < taps; ++k) rows[k] = row(making_.firstRow(y) + k);
        const ptrdiff_t at = static_cast<ptrdiff_t>(making_.place.y) + y;
        ownForBlocks(making_.samples, [&](ptrdiff_t start, ptrdiff_t n) {
            const Middle* from[taps];
            Sample* part[N];
            for (int32_t k = 0; k < taps; ++k) from[k] = rows[k] + start;
            for (int32_t k = 0; k < N; ++k) part[k] = to[k] + start;
            Rows::template across<N>(from, making_.down, at, part, n);
        });
    }

    void store(const Sample* made, Sample* row) const
    {
        if (making_.isFolded()) {
            ownUnfold(made, making_.pairs, row, making_.width);
        } else if (made != row) {
            memcpy(row, made, static_cast<size_t>(making_.samples) * sizeof(Sample));
        }
    }

    const Middle* row(int32_t y)
    {
        const int32_t slot = y % taps;
        Middle* const to = rows_ + slot * making_.stride;
        if (held_[slot] != y) makeAlong(making_.source.first + y * making_.source.rowStep, to);
        held_[slot] = y;
        return to;
    }

    void makeAlong(const uint8_t* from, Middle* to)
    {
        const int32_t nPairs = making_.pairs.count;
        if (nPairs > 0) {
            const OwnAxis& across = *making_.across;
            const Sample* const first = reinterpret_cast<const Sample*>(from) + across.first[0] - making_.place.fromX;
            ownForBlocks(nPairs, [&](ptrdiff_t start, ptrdiff_t n) {
                Rows::alongPairs(first + start, across, start, nPairs, to + start, n);
            });
        }
        gatherAlong(from, 2 * nPairs, to);
    }

    // Pixels from `start` on, whose taps are brought together first.
    void gatherAlong(const uint8_t* from, int32_t start, Middle* to)
    {
        const ptrdiff_t n = making_.width - start;
        const int32_t* const offsets = making_.offsets.get();
        uint8_t* const gathered = reinterpret_cast<uint8_t*>(tapSamples_);
        constexpr int32_t wordBytes = taps * static_cast<int32_t>(sizeof(Sample));
        if constexpr (wordBytes <= 4) {
            using Word = std::conditional_t<wordBytes == 4, uint32_t, uint16_t>;
            if (making_.isPacked()) {
                ownGatherPixels(from, offsets, wordBytes, gathered, n);
                return makeOfTaps(OwnTapWords<Sample, Word> { reinterpret_cast<const Word*>(gathered) }, start, to);
            }
        }
        const OwnView& source = making_.source;
        OwnTapRows<Sample> tapRows;
        for (int32_t k = 0; k < 4; ++k) {
            const int32_t tap = k % taps;
            Sample* const tapRow = tapSamples_ + tap * making_.stride;
            tapRows.rows[k] = tapRow;
            if (k < taps) {
                ownGatherPixels(from + k * source.pixelStep, offsets, source.nChannels * source.sampleBytes,
                                reinterpret_cast<uint8_t*>(tapRow), n);
            }
        }
        makeOfTaps(tapRows, start, to);
    }

    template <class Taps> void makeOfTaps(const Taps& tapSamples, int32_t firstPixel, Middle* to)
    {
        const ptrdiff_t first = static_cast<ptrdiff_t>(firstPixel) * making_.source.nChannels;
        const ptrdiff_t weights = static_cast<ptrdiff_t>(making_.firstPixel) * making_.source.nChannels + first;
        ownForBlocks(making_.samples - first, [&](ptrdiff_t start, ptrdiff_t n) {
            Rows::along(tapSamples.from(start), *making_.across, weights + start, to + first + start, n);
        });
    }

    OwnRowMaking& making_;
    Sample* const tapSamples_;
    Middle* const rows_;
    Sample* const made_;   // two rows
    int32_t waiting_ = -1; // the row that is made already, as the second one
    int32_t held_[taps];   // the source row in each place, or -1
};

template <class Rows>
static bool ownInterpolatedView(OwnRowMaking& making, const OwnView& destination, const OwnBits* mask)
{
    OwnRowMaker<Rows> maker(making);
    return maker.isOpen() && ownMakeRows(destination, OwnBitForm::BYTES, mask, [&](int32_t y, uint8_t* row) {
               maker.make(y, reinterpret_cast<typename Rows::Sample*>(row));
           });
}

static bool ownInterpolated(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                            const OwnView& destination, const OwnBits* mask)
{
    OwnRowMaking making(scaling, place, source, destination);
    if (!making.open()) return false;
    const bool isWide = source.sampleBytes == 2;
    if (scaling.interpolation == OwnInterpolation::LINEAR) {
        return isWide ? ownInterpolatedView<OwnLinear<uint16_t>>(making, destination, mask)
                      : ownInterpolatedView<OwnLinear<uint8_t>>(making, destination, mask);
    }
    return isWide ? ownInterpolatedView<OwnCubic<uint16_t>>(making, destination, mask)
                  : ownInterpolatedView<OwnCubic<uint8_t>>(making, destination, mask);
}

bool ownScaleView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                  const OwnView& destination, const OwnBits* mask)
{
    switch (scaling.interpolation) {
    case OwnInterpolation::NEAREST: return ownNearestView(scaling, place, source, destination, mask);
    case OwnInterpolation::MEAN: return ownMeanView(scaling, place, source, destination, mask);
    default: return ownInterpolated(scaling, place, source, destination, mask);
    }
}
