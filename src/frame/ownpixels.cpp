// SPDX-License-Identifier: BSD-2-Clause
#include "ownpixels.h"

OwnPixelChannels ownSomeChannels(const OwnView& view, int32_t first, int32_t count)
{
    OwnPixelChannels pixels = { &view, 0, {} };
    for (int32_t c = 0; c < count; ++c) ownAddChannel(pixels, first + c);
    return pixels;
}

void ownAddChannel(OwnPixelChannels& pixels, int32_t channel)
{
    pixels.channels[pixels.count++] = channel;
}

void ownRunPixels(std::initializer_list<OwnPixelChannels> groups, int32_t nDestinations, const OwnBits* mask,
                  const OwnRowFunction& rowFunction)
{
    OwnView views[ownMostViews];     // of each group in the order of the channels, so that they are moved together
    int32_t viewOfRow[ownMostViews]; // the row function's rows
    int32_t count = 0;
    int32_t nDestinationViews = 0;
    bool isInOrder = true;
    const OwnPixelChannels* const firstDestination = groups.end() - nDestinations;
    for (const OwnPixelChannels& group : groups) {
        for (int32_t k = 0; k < group.count; ++k) {
            const int32_t channel = group.channels[k];
            int32_t rank = 0; // among equal ones, which may occur, in their order
            for (int32_t other = 0; other < group.count; ++other) {
                rank += group.channels[other] < channel || (group.channels[other] == channel && other < k);
            }
            views[count + rank] = ownChannelView(*group.view, channel);
            viewOfRow[count + k] = count + rank;
            isInOrder = isInOrder && rank == k;
        }
        count += group.count;
        if (&group >= firstDestination) nDestinationViews += group.count;
    }
    if (count == 0) return;
    if (isInOrder) return ownRunViews(views, count, nDestinationViews, mask, rowFunction);
    const auto reordered = [&](uint8_t* const* rows, ptrdiff_t n) {
        uint8_t* ordered[ownMostViews];
        for (int32_t k = 0; k < count; ++k) ordered[k] = rows[viewOfRow[k]];
        rowFunction(ordered, n);
    };
    ownRunViews(views, count, nDestinationViews, mask, OwnRowFunction(reordered, rowFunction.updates));
}
