// SPDX-License-Identifier: BSD-2-Clause
// Super-sampling: each destination pixel is the mean of its box of the source, parts of pixels by the area they cover.
#include <algorithm>
#include <cstring>

#include "frame/owndepth.h"
#include "frame/ownivdep.h"
#include "owngather.h"
#include "ownresample.h"
#include "ownscaleview.h"

// Sums of samples times parts, and the mean of `total` parts: to the nearest, halves upward.
struct OwnPartsNarrow {
    using Sum = uint32_t; // below 2^31; sums of whole rows may wrap, their differences are right
    uint32_t half;
    double inverse;
    explicit OwnPartsNarrow(double total)
        : half(static_cast<uint32_t>(total / 2))
        , inverse(1.0 / total)
    {
    }
    // The added 0.5 keeps the quotient half a part away from every integer, where rounding errors do not reach.
    int32_t operator()(Sum sum) const
    {
        return static_cast<int32_t>((static_cast<int32_t>(sum + half) + 0.5) * inverse);
    }
};

struct OwnPartsWide {
    using Sum = double;
    double total;
    explicit OwnPartsWide(double parts)
        : total(parts)
    {
    }
    int32_t operator()(Sum sum) const { return static_cast<int32_t>((sum + total / 2) / total); }
};

// Sums of the columns of one row of boxes, then of the boxes.
template <class T, class Mean> class OwnBoxRows {
public:
    using Sum = typename Mean::Sum;

    OwnBoxRows(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source, int32_t width)
        : scaling_(scaling)
        , place_(place)
        , source_(source)
        , width_(width)
        , unit_(source.nChannels)
        , samples_(static_cast<ptrdiff_t>(source.width) * source.nChannels)
        , mean_(static_cast<double>(scaling.across.ratio.from) * scaling.down.ratio.from)
    {
    }

    [[nodiscard]] bool open()
    {
        columns_ = ownBuffer<Sum>(samples_);
        sums_ = ownBuffer<Sum>(samples_ + unit_);
        if (columns_ == nullptr || sums_ == nullptr) return false;
        if (source_.pixelStep == unit_ * static_cast<ptrdiff_t>(sizeof(T))) return true;
        packed_ = ownBuffer<T>(samples_);
        offsets_ = ownBuffer<int32_t>(source_.width);
        if (packed_ == nullptr || offsets_ == nullptr) return false;
        for (int32_t x = 0; x < source_.width; ++x) {
            offsets_[static_cast<size_t>(x)] = x * static_cast<int32_t>(source_.pixelStep);
        }
        return true;
    }

    void makeRow(int32_t y, T* to)
    {
        const size_t at = static_cast<size_t>(place_.y + y);
        const OwnAxis& down = scaling_.down;
        std::fill_n(columns_.get(), samples_, Sum { 0 });
        for (int32_t k = down.first[at]; k <= down.last[at]; ++k) {
            const bool isFirst = k == down.first[at];
            const int32_t parts = isFirst ? down.firstParts[at]
                : k == down.last[at]      ? down.lastParts[at]
                                          : down.ratio.to;
            addRow(source_.first + (k - place_.fromY) * source_.rowStep, static_cast<Sum>(parts));
        }
        addColumns();
        makePixels(to);
    }

private:
    void addRow(const uint8_t* row, Sum parts)
    {
        if (packed_ != nullptr) {
            uint8_t* const packed = reinterpret_cast<uint8_t*>(packed_.get());
            ownGatherPixels(row, offsets_.get(), unit_ * source_.sampleBytes, packed, source_.width);
            row = packed;
        }
        const T* const from = reinterpret_cast<const T*>(row);
        Sum* const columns = columns_.get();
        const ptrdiff_t n = samples_;
        OWN_IVDEP
        for (ptrdiff_t i = 0; i < n; ++i) columns[i] += parts * static_cast<Sum>(from[i]);
    }

    // Stores may lie over members, as far as a compiler knows: loops have copies of their own.
    void addColumns()
    {
        const Sum* const columns = columns_.get();
        Sum* const sums = sums_.get();
        const ptrdiff_t n = samples_, unit = unit_;
        std::fill_n(sums, unit, Sum { 0 });
        for (ptrdiff_t i = 0; i < n; ++i) sums[i + unit] = sums[i] + columns[i];
    }

    void makePixels(T* to) const
    {
        const OwnAxis& across = scaling_.across;
        const int32_t* const firsts = across.first.get() + place_.x;
        const int32_t* const lasts = across.last.get() + place_.x;
        const int32_t* const firstParts = across.firstParts.get() + place_.x;
        const int32_t* const lastParts = across.lastParts.get() + place_.x;
        const Sum* const columns = columns_.get();
        const Sum* const sums = sums_.get();
        const Sum wholeParts = static_cast<Sum>(across.ratio.to);
        const ptrdiff_t from = place_.fromX, unit = unit_, width = width_;
        const Mean mean = mean_;
        for (ptrdiff_t x = 0; x < width; ++x) {
            const ptrdiff_t first = (firsts[x] - from) * unit;
            const ptrdiff_t last = (lasts[x] - from) * unit;
            const Sum* const behindFirst = sums + first + unit;
            const Sum* const beforeLast = sums + std::max(last, first + unit);
            for (ptrdiff_t c = 0; c < unit; ++c) {
                const Sum whole = (beforeLast[c] - behindFirst[c]) * wholeParts;
                const Sum sum = columns[first + c] * static_cast<Sum>(firstParts[x]) + whole
                    + columns[last + c] * static_cast<Sum>(lastParts[x]);
                to[x * unit + c] = static_cast<T>(mean(sum));
            }
        }
    }

    const OwnScaling& scaling_;
    const OwnScalePlace place_;
    const OwnView source_;
    const int32_t width_; // destination pixels
    const int32_t unit_;
    const ptrdiff_t samples_; // of a source row
    const Mean mean_;
    OwnBuffer<Sum> columns_; // sums of the box's rows
    OwnBuffer<Sum> sums_;    // of all columns before each one
    OwnBuffer<T> packed_;    // a source row whose pixels do not follow each other
    OwnBuffer<int32_t> offsets_;
};

template <class T, class Mean>
static bool ownMeanRows(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                        const OwnView& destination, const OwnBits* mask)
{
    OwnBoxRows<T, Mean> boxes(scaling, place, source, destination.width);
    if (!boxes.open()) return false;
    return ownMakeRows(destination, OwnBitForm::BYTES, mask,
                       [&](int32_t y, uint8_t* row) { boxes.makeRow(y, reinterpret_cast<T*>(row)); });
}

bool ownMeanView(const OwnScaling& scaling, const OwnScalePlace& place, const OwnView& source,
                 const OwnView& destination, const OwnBits* mask)
{
    // Sums and half the parts of a box stay in 31 bits; beyond 53 bits doubles lose what no sample can show.
    const double parts = static_cast<double>(scaling.across.ratio.from) * scaling.down.ratio.from;
    const bool isNarrow = parts * (source.sampleBytes == 1 ? 256 : 65536) < 0x1p31;
    if (source.sampleBytes == 1) {
        return isNarrow ? ownMeanRows<uint8_t, OwnPartsNarrow>(scaling, place, source, destination, mask)
                        : ownMeanRows<uint8_t, OwnPartsWide>(scaling, place, source, destination, mask);
    }
    return isNarrow ? ownMeanRows<uint16_t, OwnPartsNarrow>(scaling, place, source, destination, mask)
                    : ownMeanRows<uint16_t, OwnPartsWide>(scaling, place, source, destination, mask);
}
