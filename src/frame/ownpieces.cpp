// SPDX-License-Identifier: BSD-2-Clause
#include "ownpieces.h"

#include <algorithm>

#include "ownbits.h"

// ---- pieces --------------------------------------------------------------------------------------------------------

// A rectangle of the work, which lies at `place` of a block of the destination.
static OwnWritten ownForPiece(const PxkImage* destination, const OwnBlock& block, const OwnRect& place,
                              const OwnRect& rect, const OwnBits* mask,
                              const OwnFunction<bool(const OwnDestination&)>& onPiece)
{
    OwnDestination piece = { rect, ownBlockView(destination, block, place), {}, nullptr };
    if (mask != nullptr) {
        piece.maskBits = ownBitsAt(*mask, rect.x, rect.y);
        piece.mask = &piece.maskBits;
    }
    return onPiece(piece) ? OwnWritten::ALL : OwnWritten::STOPPED;
}

OwnWritten ownForPieces(PxkImage* destination, OwnSize size, const OwnBits* mask,
                        OwnFunction<bool(const OwnDestination&)> onPiece)
{
    const OwnRect region = ownRegionRect(destination);
    const PxkTileInfo* const tiles = destination->tileInfo;
    OwnWritten written = OwnWritten::ALL;
    if (tiles == nullptr) {
        const OwnRect all = { 0, 0, size.width, size.height };
        const OwnRect place = { region.x, region.y, size.width, size.height };
        return size.isEmpty() ? written
                              : ownForPiece(destination, ownImageBlock(destination), place, all, mask, onPiece);
    }
    const OwnGrid grid = { tiles, region.x, region.y, false };
    ownWalkTiles(size, &grid, 1, [&](const OwnRect& rect) {
        const OwnRect place = { region.x + rect.x, region.y + rect.y, rect.width, rect.height };
        OwnTile tile;
        written = OwnWritten::TILE_REFUSED;
        if (tile.hold(destination, place.x, place.y, PXK_TILE_WRITE)) {
            written = ownForPiece(destination, tile.block(), ownInTile(tiles, place), rect, mask, onPiece);
        }
        return written == OwnWritten::ALL;
    });
    return written;
}

// ---- rows ----------------------------------------------------------------------------------------------------------

// Some rows of a view.
static OwnView ownRowsOf(const OwnView& view, int32_t y, int32_t height)
{
    OwnView rows = view;
    rows.first += y * view.rowStep;
    rows.height = height;
    return rows;
}

bool ownLieAsMade(const OwnView& view, const OwnRowForm& form)
{
    return view.sampleBytes != 0 && view.nChannels == form.unitSamples
        && view.pixelStep == static_cast<ptrdiff_t>(form.unitSamples) * view.sampleBytes
        && (view.nChannels == 1 || view.channelStep == view.sampleBytes);
}

OwnView ownMadeRows(const OwnView& view, const OwnRowForm& form)
{
    OwnView rows = view;
    rows.first = nullptr;
    rows.sampleBytes = form.isBits ? 0 : std::max(view.sampleBytes, 1);
    rows.pixelStep = static_cast<ptrdiff_t>(form.unitSamples) * rows.sampleBytes;
    rows.channelStep = rows.sampleBytes;
    rows.bit = 0;
    const ptrdiff_t rowBytes = form.isBits ? ownBytesOfBits(0, view.width) : view.width * rows.pixelStep;
    rows.rowStep = (rowBytes + 63) & ~static_cast<ptrdiff_t>(63);
    return rows;
}

bool OwnOutput::open(const OwnView& view, const OwnRowForm& form, int32_t height, const OwnBits* mask)
{
    rows_ = ownRowsOf(view, 0, height);
    if (mask == nullptr && ownLieAsMade(view, form)) return true;
    rows_ = ownMadeRows(rows_, form);
    buffer_ = ownBuffer<uint8_t>(static_cast<int64_t>(rows_.rowStep) * height);
    rows_.first = buffer_.get();
    return buffer_ != nullptr;
}

void OwnOutput::store(const OwnView& view, int32_t y, int32_t height, const OwnBits* mask) const
{
    if (isDirect()) return;
    OwnBits maskRows;
    if (mask != nullptr) maskRows = ownBitsAt(*mask, 0, y);
    const OwnView views[2] = { ownRowsOf(rows_, 0, height), ownRowsOf(view, y, height) };
    ownRunViews(views, 2, 1, mask != nullptr ? &maskRows : nullptr, OwnCopyRow { rows_.sampleBytes });
}

// ---- pixels --------------------------------------------------------------------------------------------------------

// The bits of `selected` that the mask selects too; n is at most 8 times the room.
static void ownSelectBits(const uint8_t* selected, const OwnBits* mask, int32_t n, uint8_t* to)
{
    ownPackBits(selected, to, 0, n);
    if (mask == nullptr) return;
    uint8_t aligned[256];
    ownAlignBits(mask->first, mask->bit, aligned, 0, n);
    for (ptrdiff_t i = 0; i < ownBytesOfBits(0, n); ++i) to[i] &= aligned[i];
}

void ownStorePixels(const OwnDestination& piece, int32_t x, int32_t y, int32_t n, const uint8_t* samples,
                    const uint8_t* selected)
{
    constexpr int32_t most = 2048;
    OwnView from = piece.view;
    from.sampleBytes = std::max(piece.view.sampleBytes, 1);
    from.pixelStep = static_cast<ptrdiff_t>(from.nChannels) * from.sampleBytes;
    from.channelStep = from.sampleBytes;
    from.bit = 0;
    from.height = 1;
    OwnView to = ownRowsOf(piece.view, y, 1);
    const int32_t step = selected != nullptr ? most : n;
    for (int32_t start = 0; start < n; start += step) {
        from.width = to.width = std::min(step, n - start);
        from.first = const_cast<uint8_t*>(samples) + start * from.pixelStep;
        const ptrdiff_t column = static_cast<ptrdiff_t>(x) + start;
        to.first = piece.view.first + y * piece.view.rowStep + column * piece.view.pixelStep;
        if (to.sampleBytes == 0) {
            to.first += (piece.view.bit + column) / 8;
            to.bit = static_cast<int32_t>((piece.view.bit + column) % 8);
        }
        OwnBits mask;
        if (piece.mask != nullptr) mask = ownBitsAt(*piece.mask, x + start, y);
        uint8_t bits[most / 8 + 1] = {};
        if (selected != nullptr) {
            ownSelectBits(selected + start, piece.mask != nullptr ? &mask : nullptr, from.width, bits);
            mask = { bits, 0, 0 };
        }
        const bool isMasked = piece.mask != nullptr || selected != nullptr;
        const OwnView views[2] = { from, to };
        ownRunViews(views, 2, 1, isMasked ? &mask : nullptr, OwnCopyRow { from.sampleBytes });
    }
}
