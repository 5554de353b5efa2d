// SPDX-License-Identifier: BSD-2-Clause
#include "ownviews.h"

#include "ownstage.h"

void ownRunViews(const OwnView* views, int32_t count, int32_t nDestinations, const OwnBits* mask,
                 const OwnRowFunction& rowFunction)
{
    bool isAllBits = true;
    for (int32_t k = 0; k < count; ++k) isAllBits = isAllBits && views[k].sampleBytes == 0;
    if (isAllBits) return ownRunBits(views, count, nDestinations, mask, rowFunction);
    ownRunSamples(views, count, nDestinations, mask, rowFunction);
}
