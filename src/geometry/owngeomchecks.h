/* SPDX-License-Identifier: BSD-2-Clause */
// Checks that the geometry operations share. They go on after a fault, so one call can give several reports; the call
// stops at the status that is stored behind all of them, which may be a stale one.
#pragma once

#include "frame/ownreport.h"

// Reports every bad header. False: an image is null, and nothing else can be checked.
[[nodiscard]] inline bool ownCheckedHeaders(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    static_cast<void>(ownEveryHeaderFault(site, images));
    for (const PxkImage* image : images) {
        if (image == nullptr) return false;
    }
    return true;
}
