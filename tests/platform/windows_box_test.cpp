// SPDX-License-Identifier: BSD-2-Clause
// The default handler's boxes, answered by a hook that presses a button as soon as a box becomes active.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include "pxk/pxk.h"

namespace {

struct Box {
    std::string title, text;
    std::vector<int> buttons;
};

// What the hook of this process has seen, and the button that it presses in a box that has it.
std::vector<Box> boxes;
int pressed;

HWND shown;

BOOL CALLBACK lookAtPart(HWND part, LPARAM box)
{
    char kind[32] = "", text[4096] = "";
    GetClassNameA(part, kind, sizeof kind);
    GetWindowTextA(part, text, sizeof text);
    if (!IsWindowVisible(part)) return TRUE;
    if (lstrcmpiA(kind, "Button") == 0)
        reinterpret_cast<Box*>(box)->buttons.push_back(GetDlgCtrlID(part));
    else
        reinterpret_cast<Box*>(box)->text += text;
    return TRUE;
}

VOID CALLBACK answer(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    Box seen;
    char title[256] = "";
    GetWindowTextA(shown, title, sizeof title);
    seen.title = title;
    EnumChildWindows(shown, lookAtPart, reinterpret_cast<LPARAM>(&seen));
    // For the parent of a process that ends here.
    fprintf(stderr, "<%s|%s>", seen.title.c_str(), seen.text.c_str());
    fflush(stderr);
    boxes.push_back(seen);
    PostMessageA(shown, WM_COMMAND, static_cast<WPARAM>(seen.buttons.size() > 1 ? pressed : IDOK), 0);
}

// A box is complete when it waits for messages, so the answer comes by a timer.
LRESULT CALLBACK watch(int code, WPARAM window, LPARAM details)
{
    const HWND box = reinterpret_cast<HWND>(window);
    char kind[32] = "";
    if (code == HCBT_ACTIVATE && box != shown && GetClassNameA(box, kind, sizeof kind) != 0
        && lstrcmpA(kind, "#32770") == 0) {
        shown = box;
        SetTimer(nullptr, 0, USER_TIMER_MINIMUM, answer);
    }
    return CallNextHookEx(nullptr, code, window, details);
}

class WindowsBox : public testing::Test {
protected:
    void SetUp() override
    {
        boxes.clear();
        pxkRedirectError(nullptr);
        hook = SetWindowsHookExA(WH_CBT, watch, nullptr, GetCurrentThreadId());
        ASSERT_NE(hook, nullptr);
    }
    void TearDown() override
    {
        UnhookWindowsHookEx(hook);
        pxkSetErrStatus(0);
        pxkSetErrMode(PXK_ErrModeLeaf);
    }
    HHOOK hook;
};

int32_t report(int32_t mode, int button, int32_t status = PXK_StsBadArg)
{
    pressed = button;
    pxkSetErrMode(mode);
    return pxkError(status, "f", "c", "a.cpp", -7);
}

const std::string body = "In function f(): [file a.cpp, line 0]\nc\n\nBad argument\n(status: -5)\n\n";
const std::string leaf = body + "ErrMode=PXK_ErrorModeLeaf\n\nTerminate the application?";
const std::string parent = body + "ErrMode=PXK_ErrorModeParent\n\nContinue?";
const std::string ending = "<Win32: Application exit|PXK Library: terminating the application>";

TEST_F(WindowsBox, answersThatLetTheProcessLive)
{
    EXPECT_EQ(report(PXK_ErrModeLeaf, IDNO), PXK_StsBadArg);
    EXPECT_EQ(report(PXK_ErrModeParent, IDOK), PXK_StsBadArg);
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].title, "PXK 2.1");
    EXPECT_EQ(boxes[0].text, leaf);
    EXPECT_EQ(boxes[0].buttons, std::vector<int>({ IDYES, IDNO }));
    EXPECT_EQ(boxes[1].text, parent);
    EXPECT_EQ(boxes[1].buttons, std::vector<int>({ IDOK, IDCANCEL }));

    EXPECT_EQ(report(3, IDYES), PXK_StsBadArg);
    EXPECT_EQ(report(PXK_ErrModeSilent, IDYES), PXK_StsBadArg);
    EXPECT_EQ(boxes.size(), 2u);
}

TEST_F(WindowsBox, longTextIsWhole)
{
    const std::string func(500, 'f'), context(1500, 'c'), file(600, 'a');
    pressed = IDNO;
    pxkSetErrMode(PXK_ErrModeLeaf);
    EXPECT_EQ(pxkError(PXK_StsBackTrace, func.c_str(), context.c_str(), file.c_str(), 2147483647), PXK_StsBackTrace);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text,
              "Called from " + func + "(): [file " + file + ", line 2147483647]\n" + context
                  + "\n\nBacktrace\n(status: -1)\n\nErrMode=PXK_ErrorModeLeaf\n\nTerminate the application?");
}

using WindowsBoxDeathTest = WindowsBox;

TEST_F(WindowsBoxDeathTest, answersThatEndTheProcess)
{
    EXPECT_EXIT(report(PXK_ErrModeLeaf, IDYES), testing::ExitedWithCode(1),
                testing::Matcher<const std::string&>("<PXK 2.1|" + leaf + ">" + ending));
    EXPECT_EXIT(report(PXK_ErrModeParent, IDCANCEL), testing::ExitedWithCode(1),
                testing::Matcher<const std::string&>("<PXK 2.1|" + parent + ">" + ending));
}

} // namespace
