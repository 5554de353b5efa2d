// SPDX-License-Identifier: BSD-2-Clause
#include "ownmeasure.h"

#include <algorithm>

#include "ownbitcount.h"
#include "ownbits.h"
#include "owndepth.h"
#include "ownstage.h"

// A walk over the stretches of a piece.
struct OwnMeasuring {
    const OwnPiece& piece;
    int32_t count; // images
    OwnSamplesCount samples;
    OwnFunction<void(const OwnSampleStretch&)> measure;
};

// ---- one-bit rows --------------------------------------------------------------------------------------------------

static void ownMeasureBits(const OwnMeasuring& m)
{
    alignas(64) uint8_t stage[4][ownStageBytes];
    alignas(64) uint8_t selected[ownStageBytes];
    uint8_t* const rows[4] = { stage[0], stage[1], stage[2], stage[3] };
    constexpr int32_t most = 8 * static_cast<int32_t>(ownStageBytes);
    const OwnPiece& piece = m.piece;
    for (int32_t y = 0; y < piece.views[0].height; ++y) {
        for (int64_t start = 0; start < piece.views[0].width; start += most) { // rows may end at the last 32-bit number
            const int32_t x = static_cast<int32_t>(start);
            const int32_t n = std::min(most, piece.views[0].width - x);
            const ptrdiff_t bytes = ownBytesOfBits(0, n);
            memset(selected, 0xFF, static_cast<size_t>(bytes));
            if (piece.mask != nullptr) {
                const OwnBits mask = ownBitsAt(*piece.mask, x, y);
                ownAlignBits(mask.first, mask.bit, selected, 0, n);
            }
            selected[bytes - 1] &= static_cast<uint8_t>(0xFF << (8 * bytes - n));
            for (int32_t k = 0; k < m.count; ++k) {
                const OwnView& view = piece.views[k];
                const OwnBits bits = ownBitsAt({ view.first, view.rowStep, view.bit }, x, y);
                ownAlignBits(bits.first, bits.bit, stage[k], 0, n);
                for (ptrdiff_t i = 0; i < bytes; ++i) stage[k][i] &= selected[i];
            }
            const int64_t measured = piece.mask != nullptr ? static_cast<int64_t>(ownCountOnes(selected, bytes)) : n;
            m.measure({ rows, bytes, piece.x + x, piece.y + y, 0, measured });
        }
    }
}

// ---- rows of samples -----------------------------------------------------------------------------------------------

// Part of a row: views of one channel each, or of whole pixels where samples count alike. Several channels only where
// there is one image.
struct OwnMeasuredRow {
    OwnView views[4];
    int32_t nViews;
    int32_t channel; // of the first view
    int32_t y;
    int32_t unitSamples; // samples of a pixel that lie together

    bool isPlain() const
    {
        bool isAll = true;
        for (int32_t k = 0; k < nViews; ++k) {
            isAll = isAll && views[k].pixelStep == static_cast<ptrdiff_t>(unitSamples) * views[k].sampleBytes;
        }
        return isAll;
    }
};

static void ownZeroUnselected(uint8_t* samples, const uint8_t* mask, ptrdiff_t bytes)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < bytes; ++i) samples[i] &= mask[i];
}

// Pixels of which some are selected: at most a stage of them.
static void ownMeasureMixed(const OwnMeasuring& m, int32_t unitSamples, const OwnBits& mask, OwnSampleStretch stretch)
{
    alignas(64) uint8_t stage[4][ownStageBytes];
    alignas(64) uint8_t selected[ownStageBytes + 64];
    uint8_t* const staged[4] = { stage[0], stage[1], stage[2], stage[3] };
    const ptrdiff_t pixels = stretch.n / unitSamples;
    ownMaskToBytes(&mask, 0, pixels, { 1, 1 }, selected);
    int32_t nSelected = 0;
    for (ptrdiff_t i = 0; i < pixels; ++i) nSelected += selected[i] & 1;
    stretch.selected = static_cast<int64_t>(nSelected) * unitSamples;
    const int32_t pixelBytes = unitSamples * m.piece.views[0].sampleBytes;
    if (pixelBytes > 1) ownMaskToBytes(&mask, 0, pixels, { pixelBytes, pixelBytes }, selected);
    for (int32_t k = 0; k < m.count; ++k) {
        memcpy(stage[k], stretch.rows[k], static_cast<size_t>(pixels * pixelBytes));
        ownZeroUnselected(stage[k], selected, pixels * pixelBytes);
    }
    stretch.rows = staged;
    m.measure(stretch);
}

// Contiguous samples of all views from pixel x on. Null mask: all are selected.
static void ownMeasureSome(const OwnMeasuring& m, const OwnMeasuredRow& row, uint8_t* const* rows, ptrdiff_t samples,
                           ptrdiff_t x, const OwnBits* mask)
{
    const int32_t workX = m.piece.x + static_cast<int32_t>(x);
    for (int32_t k = 0; k < row.nViews; k += m.count) {
        const OwnSampleStretch stretch = { rows + k, samples, workX, m.piece.y + row.y, row.channel + k / m.count,
                                           samples };
        if (mask == nullptr) {
            m.measure(stretch);
        } else {
            ownMeasureMixed(m, row.unitSamples, ownBitsAt(*mask, static_cast<int32_t>(x), 0), stretch);
        }
    }
}

// Pixels x to x + n of a row: as they lie, or a stage at a time.
static void ownMeasurePixels(const OwnMeasuring& m, const OwnMeasuredRow& row, ptrdiff_t x, ptrdiff_t n,
                             const OwnBits* mask)
{
    OwnView part[4] = {};
    uint8_t* rows[4];
    for (int32_t k = 0; k < row.nViews; ++k) {
        part[k] = row.views[k];
        part[k].first += x * part[k].pixelStep;
        part[k].width = static_cast<int32_t>(n);
        rows[k] = part[k].first;
    }
    if (row.isPlain()) return ownMeasureSome(m, row, rows, n * row.unitSamples, x, mask);
    ownRunViews(part, row.nViews, 0, nullptr, [&](uint8_t* const* staged, ptrdiff_t samples) {
        ownMeasureSome(m, row, staged, samples, x, mask);
        x += samples / row.unitSamples;
    });
}

static void ownMeasureRow(const OwnMeasuring& m, const OwnMeasuredRow& row)
{
    const ptrdiff_t width = row.views[0].width;
    if (m.piece.mask == nullptr) return ownMeasurePixels(m, row, 0, width, nullptr);
    const OwnBits mask = ownBitsAt(*m.piece.mask, 0, row.y);
    const ptrdiff_t mostMixed = ownStageBytes / (4 * row.unitSamples);
    for (ptrdiff_t x = 0; x < width;) {
        const OwnMaskStretch stretch = ownNextMaskStretch(mask, x, width, mostMixed);
        const bool isMixed = stretch.kind == OwnMaskStretch::Kind::MIXED;
        if (stretch.kind != OwnMaskStretch::Kind::NONE) {
            ownMeasurePixels(m, row, x, stretch.length, isMixed ? &mask : nullptr);
        }
        x += stretch.length;
    }
}

// True when all channels of a pixel are measured and lie together, so that a row is one stretch.
static bool ownIsPacked(const OwnMeasuring& m)
{
    if (m.samples == OwnSamplesCount::EACH) return false;
    for (int32_t k = 0; k < m.count; ++k) {
        const OwnView& view = m.piece.views[k];
        const bool isTogether = view.nChannels == 1 || view.channelStep == view.sampleBytes;
        if (!isTogether || view.pixelStep != static_cast<ptrdiff_t>(view.nChannels) * view.sampleBytes) return false;
    }
    constexpr int32_t mostTogether = 4; // more of them make stages of too few pixels
    return m.piece.views[0].nChannels <= mostTogether;
}

// ---- pieces --------------------------------------------------------------------------------------------------------

// Rows as they lie in memory.
struct OwnPlainRows {
    ptrdiff_t n; // samples, or bytes of one-bit pixels
    int32_t height;
    int64_t measured; // samples that a row has
};

// Rows of unitSamples samples a pixel, one behind the other where samples count alike and the rows touch. False: they
// do not lie as they are measured.
static bool ownFindPlainRows(const OwnMeasuring& m, int32_t unitSamples, OwnPlainRows& rows)
{
    const OwnView& first = m.piece.views[0];
    const bool isBits = first.sampleBytes == 0;
    rows = { isBits ? first.width / 8 : static_cast<ptrdiff_t>(first.width) * unitSamples, first.height,
             static_cast<int64_t>(first.width) * unitSamples };
    bool isTouching = m.samples == OwnSamplesCount::ALIKE;
    for (int32_t k = 0; k < m.count; ++k) {
        const OwnView& view = m.piece.views[k];
        const bool isPlain = isBits ? view.bit == 0 && view.width % 8 == 0
                                    : view.pixelStep == static_cast<ptrdiff_t>(unitSamples) * view.sampleBytes;
        if (m.piece.mask != nullptr || !isPlain) return false;
        isTouching = isTouching && view.rowStep == rows.n * std::max(view.sampleBytes, 1);
    }
    if (isTouching) rows = { rows.n * rows.height, 1, rows.measured * rows.height };
    return true;
}

static void ownMeasurePlainRow(const OwnMeasuring& m, const OwnPlainRows& rows, int32_t y, int32_t channel)
{
    const uint8_t* row[4];
    for (int32_t k = 0; k < m.count; ++k) {
        const OwnView& view = m.piece.views[k];
        row[k] = view.first + channel * view.channelStep + y * view.rowStep;
    }
    m.measure({ row, rows.n, m.piece.x, m.piece.y + y, channel, rows.measured });
}

// Of one image some channels are brought together: pixels that hold them are read once.
static void ownMeasureRowByRow(const OwnMeasuring& m, bool isPacked)
{
    const OwnView* const views = m.piece.views;
    constexpr int32_t mostTogether = 4;
    const int32_t walked = isPacked ? 1 : views[0].nChannels;
    const int32_t together = m.count == 1 ? std::min(walked, mostTogether) : 1;
    OwnMeasuredRow row = {};
    row.unitSamples = isPacked ? views[0].nChannels : 1;
    for (row.y = 0; row.y < views[0].height; ++row.y) {
        for (row.channel = 0; row.channel < walked; row.channel += together) {
            row.nViews = m.count * std::min(together, walked - row.channel);
            for (int32_t k = 0; k < row.nViews; ++k) {
                const OwnView& view = views[k % m.count];
                row.views[k] = isPacked ? view : ownChannelView(view, row.channel + k / m.count);
                row.views[k].first += row.y * view.rowStep;
                row.views[k].height = 1;
            }
            ownMeasureRow(m, row);
        }
    }
}

static void ownMeasurePiece(const OwnMeasuring& m)
{
    const OwnView& first = m.piece.views[0];
    const bool isPacked = ownIsPacked(m);
    OwnPlainRows plain;
    if (!ownFindPlainRows(m, isPacked ? first.nChannels : 1, plain)) {
        return first.sampleBytes == 0 ? ownMeasureBits(m) : ownMeasureRowByRow(m, isPacked);
    }
    for (int32_t y = 0; y < plain.height; ++y) {
        for (int32_t channel = 0; channel < (isPacked ? 1 : first.nChannels); ++channel) {
            ownMeasurePlainRow(m, plain, y, channel);
        }
    }
}

bool ownMeasureSamples(const OwnWork& work, OwnSamplesCount samples, OwnFunction<void(const OwnSampleStretch&)> measure)
{
    return ownSweepPieces(work, [&](const OwnPiece& piece) {
        ownMeasurePiece({ piece, work.count, samples, measure });
    });
}
