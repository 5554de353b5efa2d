// SPDX-License-Identifier: BSD-2-Clause
#include "ownreport.h"

enum class OwnTold { FIRST, EVERY };

static int32_t ownTellFaults(const OwnSite& site, std::initializer_list<OwnCheck> checks, OwnTold told)
{
    int32_t status = PXK_StsOk;
    for (const OwnCheck& check : checks) {
        if (!check.fails) continue;
        ownReport(site, check.status, check.text);
        status = check.status;
        if (told == OwnTold::FIRST) break;
    }
    return status;
}

// One after the other: a header check stores a status, and must not do so before an earlier one is reported.
static int32_t ownTellHeaderFaults(const OwnSite& site, std::initializer_list<PxkImage*> images, OwnTold told)
{
    int32_t status = PXK_StsOk;
    for (PxkImage* image : images) {
        const int32_t fault = pxkCheckImageHeader(image);
        if (fault == PXK_StsOk) continue;
        status = ownTellFaults(site, { { true, fault, "Incorrect Image" } }, told);
        if (told == OwnTold::FIRST) break;
    }
    return status;
}

int32_t ownFirstFault(const OwnSite& site, std::initializer_list<OwnCheck> checks)
{
    return ownTellFaults(site, checks, OwnTold::FIRST);
}

int32_t ownEveryFault(const OwnSite& site, std::initializer_list<OwnCheck> checks)
{
    return ownTellFaults(site, checks, OwnTold::EVERY);
}

int32_t ownFirstHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    return ownTellHeaderFaults(site, images, OwnTold::FIRST);
}

int32_t ownEveryHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    return ownTellHeaderFaults(site, images, OwnTold::EVERY);
}
