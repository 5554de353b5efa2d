/* SPDX-License-Identifier: BSD-2-Clause */
// What the library reports: a handler that records, and comparison with the expected list.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pxk/pxk.h>

#include "ofthread.h"

struct Report {
    int32_t status;
    std::string func, context;
    bool operator==(const Report& other) const
    {
        return status == other.status && func == other.func && context == other.context;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Report& report)
{
    return out << "{ " << report.status << ", \"" << report.func << "\", \"" << report.context << "\" }";
}

inline std::vector<Report>& recordedReports()
{
    return ofThread<std::vector<Report>>();
}

inline int32_t recordReport(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    const bool hasPlace = file != nullptr && file[0] != 0 && line > 0;
    recordedReports().push_back({ status, func != nullptr ? func : "(null)",
                                  hasPlace ? (context != nullptr ? context : "(null)") : "(no file or line)" });
    return status;
}

// Status 0, no reports, and no handler but the recorder: to be called in front of what is watched.
inline void startReports()
{
    pxkSetErrMode(PXK_ErrModeSilent);
    pxkRedirectError(recordReport);
    pxkSetErrStatus(PXK_StsOk);
    recordedReports().clear();
}

// The status that is stored behind reports: the last one that is not -1.
inline int32_t statusBehind(const std::vector<Report>& reports)
{
    int32_t status = PXK_StsOk;
    for (const Report& report : reports) {
        if (report.status != PXK_StsBackTrace) status = report.status;
    }
    return status;
}

// These reports came, in this order, since the last start or expectation, with their status. Then starts anew.
inline void expectReports(const std::vector<Report>& expected, const char* file = __builtin_FILE(),
                          int line = __builtin_LINE())
{
    ::testing::ScopedTrace trace(file, line, "reports expected here");
    EXPECT_EQ(recordedReports(), expected);
    EXPECT_EQ(pxkGetErrStatus(), statusBehind(expected));
    startReports();
}

inline void expectNoReports(const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    expectReports({}, file, line);
}
