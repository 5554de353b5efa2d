// SPDX-License-Identifier: BSD-2-Clause
// Status, texts, chains of reports and the handlers that need nobody to answer.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "pxk/pxk.h"

namespace {

struct Report {
    int32_t status;
    const char *func, *context, *file;
    int32_t line;
};

std::vector<Report> reports;

int32_t record(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    reports.push_back({ status, func, context, file, line });
    return 4711;
}

// Every test begins as a new thread does, but with the recording handler.
class Status : public testing::Test {
protected:
    void SetUp() override
    {
        reports.clear();
        pxkSetErrStatus(0);
        pxkSetErrMode(PXK_ErrModeLeaf);
        pxkRedirectError(record);
    }
    void TearDown() override
    {
        pxkSetErrStatus(0);
        pxkRedirectError(nullptr);
    }
};

TEST_F(Status, texts)
{
    const std::string unknown = "Unknown error or status code";
    for (int32_t status = -9; status >= -25; --status) {
        const bool hasMaskText = status != -9 && status != -16 && status != -22 && status != -23;
        EXPECT_NE(pxkErrorStr(status), unknown) << status;
        EXPECT_EQ(pxkErrorStr(status - 100), hasMaskText ? std::string("Mask. ") + pxkErrorStr(status) : unknown);
    }
    EXPECT_STREQ(pxkErrorStr(-9), "Null pointer to an image header");
    EXPECT_STREQ(pxkErrorStr(-25), "Incorrect size of ROI in the image header");
    EXPECT_STREQ(pxkErrorStr(-26), "Mask image is taled");
    EXPECT_STREQ(pxkErrorStr(-124), "Mask. Incorrect COI of the image");
    EXPECT_STREQ(pxkErrorStr(0), "No Error");
    for (const int32_t status : { 1, 26, 109, INT32_MAX, INT32_MIN, INT32_MIN + 100, -126, -127, -200, -209, -2 })
        EXPECT_EQ(pxkErrorStr(status), unknown) << status;
    for (int32_t status = -27; status >= -109; --status) EXPECT_EQ(pxkErrorStr(status), unknown) << status;
}

TEST_F(Status, chainKeepsTheFirstFailure)
{
    const char *func = "f", *context = "c", *file = "x.cpp";
    EXPECT_EQ(pxkError(PXK_StsBadArg, func, context, file, 7), 4711);
    EXPECT_EQ(pxkError(PXK_StsBackTrace, nullptr, nullptr, nullptr, -3), 4711);
    EXPECT_EQ(pxkError(PXK_StsAutoTrace, func, context, file, 0), 4711);
    EXPECT_EQ(pxkGetErrStatus(), PXK_StsBadArg);
    ASSERT_EQ(reports.size(), 3u);
    EXPECT_EQ(reports[0].func, func);
    EXPECT_EQ(reports[0].context, context);
    EXPECT_EQ(reports[0].file, file);
    EXPECT_EQ(reports[0].line, 7);
    EXPECT_EQ(reports[1].status, PXK_StsBackTrace);
    EXPECT_EQ(reports[1].func, nullptr);
    EXPECT_EQ(reports[1].line, -3);
    EXPECT_EQ(reports[2].status, PXK_StsAutoTrace);

    EXPECT_EQ(pxkError(PXK_StsOk, func, context, file, 7), 0);
    EXPECT_EQ(pxkGetErrStatus(), 0);
    EXPECT_EQ(reports.size(), 3u);
}

TEST_F(Status, modeIsTheHandlersMatter)
{
    for (const int32_t mode : { PXK_ErrModeSilent, PXK_ErrModeParent, 3, -1 }) {
        pxkSetErrMode(mode);
        EXPECT_EQ(pxkGetErrMode(), mode);
        EXPECT_EQ(pxkError(12345, "", "", "", 0), 4711); // positive statuses are reports like others
        EXPECT_EQ(pxkGetErrStatus(), 12345);
    }
    EXPECT_EQ(reports.size(), 4u);
    pxkSetErrStatus(-99);
    EXPECT_EQ(pxkGetErrStatus(), -99);
    EXPECT_EQ(reports.size(), 4u);
}

TEST_F(Status, redirecting)
{
    EXPECT_EQ(pxkRedirectError(nullptr), &record);
    EXPECT_EQ(pxkRedirectError(pxkNulDevReport), &pxkGuiBoxReport);
    EXPECT_EQ(pxkRedirectError(record), &pxkNulDevReport);
}

TEST_F(Status, version)
{
    const PxkLibVersion* version = pxkGetLibVersion();
    EXPECT_EQ(version, pxkGetLibVersion());
    EXPECT_EQ(std::vector<int32_t>({ version->major, version->minor, version->build }),
              std::vector<int32_t>({ 2, 1, 58 }));
    EXPECT_STREQ(version->fileName, "pxkQ6.dll");
    EXPECT_STREQ(version->versionText, "2.1");
    EXPECT_STREQ(version->buildText, "[2.1.058, 02/02/99]");
    EXPECT_STREQ(version->buildDate, "Feb  6 1999");
    EXPECT_STREQ(version->linkage, "DLL");
}

// What a handler prints, and that it returns the status it was given.
std::string printed(PxkErrorCallBack handler, int32_t status, const char* func, const char* context, const char* file,
                    int32_t line)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(handler(status, func, context, file, line), status);
    return testing::internal::GetCapturedStderr();
}

TEST_F(Status, standardErrorText)
{
    const struct {
        const char* want;
        int32_t status;
        const char *func, *context, *file;
        int32_t line;
    } cases[] = {
        { "\nPXK Library Error: Bad argument \n\tin function [a.cpp:12]:f(): c\n", -5, "f", "c", "a.cpp", 12 },
        { "\tcalled from [a.cpp:12]:f(): c\n", -1, "f", "c", "a.cpp", 12 },
        { "\tcalled from [a.cpp:12]:f(c)\n", -8, "f", "c", "a.cpp", 12 },
        { "\tcalled from [a.cpp:12]:f\n", -8, "f", nullptr, "a.cpp", 12 },
        { "\nPXK Library Error: Unknown error or status code \n\tin function:<unknown>\n", -2, nullptr, nullptr,
          nullptr, -7 },
        { "\nPXK Library Error: Out of memory \n\tin function [:-2147483648]:%s(): %n%d\n", -4, "%s", "%n%d", "",
          INT32_MIN },
    };
    pxkSetErrMode(3);
    for (const auto& c : cases)
        EXPECT_EQ(printed(pxkStdErrReport, c.status, c.func, c.context, c.file, c.line), c.want);
    pxkSetErrMode(PXK_ErrModeSilent);
    EXPECT_EQ(printed(pxkStdErrReport, -5, "f", "c", "a.cpp", 12), "");
}

TEST_F(Status, handlersThatAskNobody)
{
    for (const int32_t mode : { PXK_ErrModeSilent, 3 }) {
        pxkSetErrMode(mode);
        EXPECT_EQ(printed(pxkGuiBoxReport, -5, nullptr, nullptr, nullptr, -1), "");
    }
    for (const int32_t mode : { PXK_ErrModeParent, PXK_ErrModeSilent, 3, -1 }) {
        pxkSetErrMode(mode);
        EXPECT_EQ(printed(pxkNulDevReport, -5, "f", "c", "a.cpp", 12), "");
    }
}

using StatusDeathTest = Status;

TEST_F(StatusDeathTest, leafModeEndsTheProcess)
{
    pxkRedirectError(pxkNulDevReport);
    EXPECT_EXIT(pxkError(PXK_StsBadArg, "f", "c", "a.cpp", 1), testing::ExitedWithCode(1), std::string());
    EXPECT_EXIT(pxkError(PXK_StsAutoTrace, "f", "c", "a.cpp", 1), testing::ExitedWithCode(1), std::string());
    pxkRedirectError(pxkStdErrReport);
    EXPECT_EXIT(pxkError(PXK_StsBadArg, "f", "c", "a.cpp", 1), testing::ExitedWithCode(1),
                testing::Matcher<const std::string&>(
                    "\nPXK Library Error: Bad argument \n\tin function [a.cpp:1]:f(): c\n"
                    "PXK Library Error\nErrMode=PXK_ErrModeLeaf\nterminating the application"));
}

TEST_F(Status, newThreadsBeginAfresh)
{
    pxkSetErrMode(PXK_ErrModeParent);
    pxkSetErrStatus(-5);
    int32_t status = 1, mode = 1;
    PxkErrorCallBack handler = nullptr;
    std::thread([&] {
        status = pxkGetErrStatus();
        mode = pxkGetErrMode();
        handler = pxkRedirectError(pxkStdErrReport);
        pxkSetErrMode(PXK_ErrModeSilent);
        pxkError(PXK_StsNoMem, "", "", "", 0);
    }).join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(mode, PXK_ErrModeLeaf);
    EXPECT_EQ(handler, &pxkGuiBoxReport);
    EXPECT_EQ(pxkGetErrStatus(), -5);
    EXPECT_EQ(pxkGetErrMode(), PXK_ErrModeParent);
    EXPECT_EQ(pxkRedirectError(record), &record);
}

} // namespace
