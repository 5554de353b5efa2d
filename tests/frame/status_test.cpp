// SPDX-License-Identifier: BSD-2-Clause
// Status, texts, chains of reports and the handlers that need nobody to answer.
#include <string>
#include <thread>

#include "support/reports.h"

namespace {

// Passes on something that is no status.
int32_t record(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    recordReport(status, func, context, file, line);
    return 4711;
}

// Every test begins as a new thread does, but with the recording handler.
class Status : public testing::Test {
protected:
    void SetUp() override
    {
        startReports();
        pxkSetErrMode(PXK_ErrModeLeaf);
        pxkRedirectError(record);
    }
    void TearDown() override { startReports(); }
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
    using Reports = std::vector<Report>;
    EXPECT_EQ(pxkError(PXK_StsBadArg, "f", "c", "x.cpp", 7), 4711);
    EXPECT_EQ(pxkError(PXK_StsBackTrace, nullptr, nullptr, nullptr, -3), 4711);
    EXPECT_EQ(pxkError(PXK_StsAutoTrace, "f", nullptr, "x.cpp", 1), 4711);
    const Reports all = { { -5, "f", "c" }, { -1, "(null)", "(no file or line)" }, { -8, "f", "(null)" } };
    EXPECT_EQ(pxkGetErrStatus(), PXK_StsBadArg);
    EXPECT_EQ(recordedReports(), all);
    EXPECT_EQ(pxkError(PXK_StsOk, "f", "c", "x.cpp", 7), 0);
    EXPECT_EQ(pxkGetErrStatus(), 0);
    EXPECT_EQ(recordedReports(), all);
}

TEST_F(Status, modeIsTheHandlersMatter)
{
    for (const int32_t mode : { PXK_ErrModeSilent, PXK_ErrModeParent, 3, -1 }) {
        pxkSetErrMode(mode);
        EXPECT_EQ(pxkGetErrMode(), mode);
        EXPECT_EQ(pxkError(12345, "", "", "", 0), 4711); // positive statuses are reports like others
        EXPECT_EQ(pxkGetErrStatus(), 12345);
    }
    pxkSetErrStatus(-99);
    EXPECT_EQ(pxkGetErrStatus(), -99);
    EXPECT_EQ(recordedReports().size(), 4u);
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
        { "\tcalled from [:9]:f\n", -1, "f", nullptr, nullptr, 9 },
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
    std::thread([] {
        EXPECT_EQ(pxkGetErrStatus(), 0);
        EXPECT_EQ(pxkGetErrMode(), PXK_ErrModeLeaf);
        EXPECT_EQ(pxkRedirectError(pxkStdErrReport), &pxkGuiBoxReport);
        pxkSetErrMode(PXK_ErrModeSilent);
        pxkError(PXK_StsNoMem, "", "", "", 0);
    }).join();
    EXPECT_EQ(pxkGetErrStatus(), -5);
    EXPECT_EQ(pxkGetErrMode(), PXK_ErrModeParent);
    EXPECT_EQ(pxkRedirectError(record), &record);
}

} // namespace
