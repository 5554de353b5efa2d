/* SPDX-License-Identifier: BSD-2-Clause */
// Reports: one line states a check, its status and its text; the macros add function, file and line.
#pragma once

#include <initializer_list>

#include "pxk/pxk.h"

// Where a report comes from. Functions that report for an exported one take its site.
struct OwnSite {
    const char* func;
    const char* file;
    int32_t line;
};

// The source file's name without its folders; folds at compile time.
#define OWN_FILE (__builtin_strrchr("/" __FILE__, '/') + 1)
#define OWN_HERE                                                                                                       \
    OwnSite                                                                                                            \
    {                                                                                                                  \
        __func__, OWN_FILE, __LINE__                                                                                   \
    }

inline void ownReport(const OwnSite& site, int32_t status, const char* text)
{
    pxkError(status, site.func, text, site.file, site.line);
}

#define OWN_REPORT(status, text) ownReport(OWN_HERE, status, text)

// A check of a call's arguments: what is reported where it fails. The texts are literals, never #condition: renaming a
// variable must not change what a user reads.
struct OwnCheck {
    bool fails;
    int32_t status;
    const char* text;
};

// There is one of these functions for all processor levels.
extern "C" {

// Reports the first check that fails: its status, or PXK_StsOk. Rows are evaluated together, so what one row looks at
// must not depend on another one: such checks are lists of their own, joined by &&.
[[nodiscard]] int32_t ownFirstFault(const OwnSite& site, std::initializer_list<OwnCheck> checks);

// Reports every check that fails: the status of the last one, or PXK_StsOk.
[[nodiscard]] int32_t ownEveryFault(const OwnSite& site, std::initializer_list<OwnCheck> checks);

// The same for headers, in the order given, with "Incorrect Image" and the status of pxkCheckImageHeader. Never judges
// by the stored status, which may be stale.
[[nodiscard]] int32_t ownFirstHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images);
[[nodiscard]] int32_t ownEveryHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images);

} // extern "C"

[[nodiscard]] inline bool ownPassed(const OwnSite& site, std::initializer_list<OwnCheck> checks)
{
    return ownFirstFault(site, checks) == PXK_StsOk;
}

[[nodiscard]] inline bool ownGoodHeaders(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    return ownFirstHeaderFault(site, images) == PXK_StsOk;
}

// A check in an exported function's body. Functions with a result name it after the text.
#define OWN_REFUSE_IF(condition, status, text, ...)                                                                    \
    do {                                                                                                               \
        if (!ownPassed(OWN_HERE, { { condition, status, text } })) return __VA_ARGS__;                                 \
    } while (0)

#define OWN_REFUSE_BAD_HEADERS(...)                                                                                    \
    do {                                                                                                               \
        if (!ownGoodHeaders(OWN_HERE, { __VA_ARGS__ })) return;                                                        \
    } while (0)
