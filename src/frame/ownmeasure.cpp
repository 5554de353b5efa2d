#include "ownmeasure.h"

#include <algorithm>

#include "ownbits.h"
#include "owndepth.h"
#include "ownstage.h"

// A walk over the stretches of a piece.
struct OwnMeasuring {
    const OwnPiece& piece;
    int32_t count; // images
    OwnUnselected unselected;
    OwnFunction<void(const OwnSampleStretch&)> measure;
};

// ---- one-bit rows --------------------------------------------------------------------------------------------------

static int32_t ownCountBits(const uint8_t* bytes, ptrdiff_t n)
{
    int32_t count = 0;
    for (ptrdiff_t i = 0; i < n; ++i) count += __builtin_popcount(bytes[i]);
    return count;
}

static void ownMeasureBits(const OwnMeasuring& m)
{
    alignas(64) uint8_t stage[4][ownStageBytes];
    alignas(64) uint8_t selected[ownStageBytes];
    uint8_t* const rows[4] = { stage[0], stage[1], stage[2], stage[3] };
    constexpr int32_t most = 8 * static_cast<int32_t>(ownStageBytes);
    const OwnPiece& piece = m.piece;
    for (int32_t y = 0; y < piece.views[0].height; ++y) {
        for (int32_t x = 0; x < piece.views[0].width; x += most) {
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
            const int32_t measured = piece.mask != nullptr ? ownCountBits(selected, bytes) : n;
            m.measure({ rows, bytes, piece.x + x, piece.y + y, 0, measured });
        }
    }
}

// ---- rows of samples -----------------------------------------------------------------------------------------------

static void ownZeroUnselected(uint8_t* samples, const uint8_t* mask, ptrdiff_t bytes)
{
    OWN_IVDEP
    for (ptrdiff_t i = 0; i < bytes; ++i) samples[i] &= mask[i];
}

// The selected samples close up. `mask` has a byte a pixel, of unitSamples samples each. Gives their number.
template <class T>
static ptrdiff_t ownDropUnselected(const T* from, T* to, const uint8_t* mask, ptrdiff_t pixels, ptrdiff_t unitSamples)
{
    ptrdiff_t kept = 0;
    for (ptrdiff_t i = 0; i < pixels; ++i) {
        for (ptrdiff_t c = 0; c < unitSamples; ++c) to[kept + c] = from[i * unitSamples + c];
        kept += mask[i] != 0 ? unitSamples : 0;
    }
    return kept;
}

// Pixels of which some are selected: at most a stage of them. `unitSamples` a pixel, one after the other.
static void ownMeasureMixed(const OwnMeasuring& m, uint8_t* const* rows, ptrdiff_t n, int32_t unitSamples,
                            const OwnBits& mask, OwnSampleStretch stretch)
{
    alignas(64) uint8_t stage[4][ownStageBytes];
    alignas(64) uint8_t selected[ownStageBytes + 64];
    uint8_t* const staged[4] = { stage[0], stage[1], stage[2], stage[3] };
    const ptrdiff_t pixels = n / unitSamples;
    stretch.rows = staged;
    stretch.n = n;
    ownMaskToBytes(&mask, 0, pixels, { 1, 1 }, selected);
    int32_t nSelected = 0;
    for (ptrdiff_t i = 0; i < pixels; ++i) nSelected += selected[i] & 1;
    stretch.selected = nSelected * unitSamples;
    if (m.unselected == OwnUnselected::ZEROED) {
        const int32_t sampleBytes = m.piece.views[0].sampleBytes;
        const int32_t pixelBytes = unitSamples * sampleBytes;
        if (pixelBytes > 1) ownMaskToBytes(&mask, 0, pixels, { pixelBytes, pixelBytes }, selected);
        for (int32_t k = 0; k < m.count; ++k) {
            memcpy(stage[k], rows[k], static_cast<size_t>(n * sampleBytes));
            ownZeroUnselected(stage[k], selected, n * sampleBytes);
        }
    } else {
        stretch.n = stretch.selected;
        for (int32_t k = 0; k < m.count; ++k) {
            ownForSampleBytes(m.piece.views[k].sampleBytes, [&](auto tag) {
                using T = typename decltype(tag)::Sample;
                ownDropUnselected(reinterpret_cast<const T*>(rows[k]), reinterpret_cast<T*>(stage[k]), selected, pixels,
                                  unitSamples);
            });
        }
    }
    m.measure(stretch);
}

// One row of views that are one channel each, or whole pixels where channels count alike.
static void ownMeasureRow(const OwnMeasuring& m, const OwnView* row, int32_t y, int32_t channel)
{
    const int32_t unitSamples = row[0].nChannels;
    OwnView part[4];
    const auto runPart = [&](int32_t x, int32_t n, const OwnBits* mask) {
        for (int32_t k = 0; k < m.count; ++k) {
            part[k] = row[k];
            part[k].first += x * row[k].pixelStep;
            part[k].width = n;
        }
        OwnSampleStretch stretch = { nullptr, 0, m.piece.x + x, m.piece.y + y, channel, 0 };
        ownRunViews(part, m.count, 0, nullptr, [&](uint8_t* const* rows, ptrdiff_t samples) {
            stretch.rows = rows;
            stretch.n = samples;
            stretch.selected = static_cast<int32_t>(samples);
            if (mask == nullptr) {
                m.measure(stretch);
            } else {
                const OwnBits here = ownBitsAt(*mask, stretch.x - m.piece.x, 0);
                ownMeasureMixed(m, rows, samples, unitSamples, here, stretch);
            }
            stretch.x += static_cast<int32_t>(samples / unitSamples);
        });
    };
    if (m.piece.mask == nullptr) return runPart(0, row[0].width, nullptr);
    const OwnBits mask = ownBitsAt(*m.piece.mask, 0, y);
    const ptrdiff_t mostMixed = ownStageBytes / (4 * unitSamples);
    for (ptrdiff_t x = 0; x < row[0].width;) {
        const OwnMaskStretch stretch = ownNextMaskStretch(mask, x, row[0].width, mostMixed);
        const bool isMixed = stretch.kind == OwnMaskStretch::Kind::MIXED;
        if (stretch.kind != OwnMaskStretch::Kind::NONE) {
            runPart(static_cast<int32_t>(x), static_cast<int32_t>(stretch.length), isMixed ? &mask : nullptr);
        }
        x += stretch.length;
    }
}

// True when all channels of a pixel are measured and lie together, so that a row is one stretch.
static bool ownIsPacked(const OwnMeasuring& m)
{
    for (int32_t k = 0; k < m.count; ++k) {
        const OwnView& view = m.piece.views[k];
        const bool isTogether = view.nChannels == 1 || view.channelStep == view.sampleBytes;
        if (!isTogether || view.pixelStep != static_cast<ptrdiff_t>(view.nChannels) * view.sampleBytes) return false;
    }
    constexpr int32_t mostTogether = 4; // more of them make stages of too few pixels
    return m.piece.views[0].nChannels <= mostTogether;
}

static void ownMeasurePiece(const OwnMeasuring& m, OwnChannelUse channels)
{
    const OwnView& first = m.piece.views[0];
    if (first.sampleBytes == 0) return ownMeasureBits(m);
    const bool isWhole = channels == OwnChannelUse::ALIKE && ownIsPacked(m);
    OwnView row[4];
    for (int32_t y = 0; y < first.height; ++y) {
        for (int32_t channel = 0; channel < (isWhole ? 1 : first.nChannels); ++channel) {
            for (int32_t k = 0; k < m.count; ++k) {
                row[k] = isWhole ? m.piece.views[k] : ownChannelView(m.piece.views[k], channel);
                row[k].first += y * row[k].rowStep;
                row[k].height = 1;
            }
            ownMeasureRow(m, row, y, channel);
        }
    }
}

bool ownMeasureSamples(const OwnWork& work, OwnUnselected unselected, OwnChannelUse channels,
                       OwnFunction<void(const OwnSampleStretch&)> measure)
{
    return ownSweepPieces(work, [&](const OwnPiece& piece) {
        ownMeasurePiece({ piece, work.count, unselected, measure }, channels);
    });
}
