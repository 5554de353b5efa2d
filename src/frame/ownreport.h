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

// The texts are literals, never #condition: renaming a variable must not change what a user reads.
// Functions with a result name it after the text.
#define OWN_REFUSE_IF(condition, status, text, ...)                                                                    \
    do {                                                                                                               \
        if (condition) {                                                                                               \
            OWN_REPORT(status, text);                                                                                  \
            return __VA_ARGS__;                                                                                        \
        }                                                                                                              \
    } while (0)

// Checks the headers in the order given; reports the first bad one. Never judges by the stored status, which may be
// stale.
[[nodiscard]] int32_t ownHeaderFault(const OwnSite& site, std::initializer_list<PxkImage*> images); // its status, or 0
[[nodiscard]] inline bool ownGoodHeaders(const OwnSite& site, std::initializer_list<PxkImage*> images)
{
    return ownHeaderFault(site, images) == PXK_StsOk;
}

#define OWN_REFUSE_BAD_HEADERS(...)                                                                                    \
    do {                                                                                                               \
        if (!ownGoodHeaders(OWN_HERE, { __VA_ARGS__ })) return;                                                        \
    } while (0)
