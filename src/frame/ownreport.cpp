// SPDX-License-Identifier: BSD-2-Clause
#include "ownreport.h"

int32_t ownFirstFault(const OwnSite& site, std::initializer_list<OwnCheck> checks)
{
    for (const OwnCheck& check : checks) {
        if (!check.fails) continue;
        ownReport(site, check.status, check.text);
        return check.status;
    }
    return PXK_StsOk;
}

int32_t ownEveryFault(const OwnSite& site, std::initializer_list<OwnCheck> checks)
{
    int32_t status = PXK_StsOk;
    for (const OwnCheck& check : checks) {
        if (!check.fails) continue;
        ownReport(site, check.status, check.text);
        status = check.status;
    }
    return status;
}

// A header check stores a status, and must not do so before an earlier one is reported: one after the other.

int32_t ownFirstHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    for (PxkImage* image : images) {
        const int32_t fault = pxkCheckImageHeader(image);
        if (fault != PXK_StsOk) return ownFirstFault(site, { { true, fault, "Incorrect Image" } });
    }
    return PXK_StsOk;
}

int32_t ownEveryHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    int32_t status = PXK_StsOk;
    for (PxkImage* image : images) {
        const int32_t fault = pxkCheckImageHeader(image);
        if (fault != PXK_StsOk) status = ownFirstFault(site, { { true, fault, "Incorrect Image" } });
    }
    return status;
}
