// SPDX-License-Identifier: BSD-2-Clause
#include "ownresample.h"

#include <algorithm>

bool ownResample(const OwnResampling& resampling, OwnFunction<OwnRect(const OwnRect& part)> sourceOf,
                 OwnFunction<bool(const OwnSource&, const OwnDestination&)> make)
{
    PxkImage* const image = resampling.source;
    OwnSource source = {};
    const bool isShared = ownSharePixels(image, resampling.destination);
    const bool isReadByPiece = image->tileInfo != nullptr && !isShared;
    const OwnRect all = { 0, 0, resampling.size.width, resampling.size.height };
    const OwnReading reading = isShared ? OwnReading::AS_COPY : OwnReading::IN_PLACE;
    bool isGood = isReadByPiece || ownReadSource(source, image, sourceOf(all), reading);
    if (isGood) {
        const auto onPiece = [&](const OwnDestination& piece) {
            if (isReadByPiece && !ownReadSource(source, image, sourceOf(piece.rect), reading)) return false;
            return make(source, piece);
        };
        const OwnWritten written = ownForPieces(resampling.destination, resampling.size, resampling.mask, onPiece);
        if (written == OwnWritten::TILE_REFUSED) {
            ownReport(resampling.site, PXK_StsBadArg, "Error get tile to write");
            return false;
        }
        isGood = written == OwnWritten::ALL;
    }
    if (!isGood) ownReport(resampling.site, PXK_StsNoMem, "Out of memory");
    return isGood;
}

bool ownMakeRows(const OwnView& view, OwnBitForm oneBit, const OwnBits* mask,
                 OwnFunction<void(int32_t y, uint8_t* row)> makeRow)
{
    constexpr int32_t bandRows = 16;
    OwnOutput output;
    if (!output.open(view, { view.nChannels, view.sampleBytes == 0 && oneBit == OwnBitForm::BITS },
                     std::min(bandRows, view.height), mask))
        return false;
    for (int32_t y = 0; y < view.height; ++y) {
        makeRow(y, output.row(output.isDirect() ? y : y % bandRows));
        const int32_t waiting = y % bandRows + 1;
        if (waiting == bandRows || y == view.height - 1) output.store(view, y - waiting + 1, waiting, mask);
    }
    return true;
}
