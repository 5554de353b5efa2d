// SPDX-License-Identifier: BSD-2-Clause
// The report handlers that come with the library.
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>

#include "frame/owncontext.h"
#include "frame/ownversion.h"
#include "platform/ownplatform.h"

static bool ownIsTrace(int32_t status)
{
    return status == PXK_StsBackTrace || status == PXK_StsAutoTrace;
}

static const char* ownTextOr(const char* text, const char* otherwise)
{
    return text != nullptr ? text : otherwise;
}

int32_t pxkNulDevReport(int32_t status, const char*, const char*, const char*, int32_t)
{
    if (ownContext().mode == PXK_ErrModeLeaf) exit(1);
    return status;
}

int32_t pxkStdErrReport(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    const int32_t mode = ownContext().mode;
    if (mode == PXK_ErrModeSilent) return status;

    const bool isTrace = ownIsTrace(status);
    const bool isPlaced = line > 0 || file != nullptr;
    const bool isAuto = status == PXK_StsAutoTrace;
    const OwnDigits lineDigits = ownDigits(line);
    // In one go, so that reports of several threads don't mix.
    ownWriteError({
        isTrace ? "\tcalled from" : "\nPXK Library Error: ",
        isTrace ? "" : pxkErrorStr(status),
        isTrace ? "" : " \n\tin function",
        isPlaced ? " [" : "",
        ownTextOr(file, ""),
        isPlaced ? ":" : "",
        isPlaced ? lineDigits.text : "",
        isPlaced ? "]" : "",
        ":",
        ownTextOr(func, "<unknown>"),
        context == nullptr ? "" : (isAuto ? "(" : "(): "),
        ownTextOr(context, ""),
        context != nullptr && isAuto ? ")" : "",
        "\n",
    });

    if (mode == PXK_ErrModeLeaf) {
        ownWriteError({ "PXK Library Error\nErrMode=PXK_ErrModeLeaf\nterminating the application" });
        exit(1);
    }
    return status;
}

struct OwnFreeText {
    void operator()(char* text) const { free(text); }
};
using OwnText = std::unique_ptr<char, OwnFreeText>;

// The texts one behind the other; null when out of memory.
static OwnText ownJoin(std::initializer_list<const char*> texts)
{
    uint64_t length = 0; // the texts may be one and the same, so their sum may not fit into memory
    for (const char* text : texts) length += strlen(text);
    if (length >= PTRDIFF_MAX) return nullptr;
    OwnText joined(static_cast<char*>(malloc(static_cast<size_t>(length) + 1)));
    if (joined == nullptr) return nullptr;
    char* end = joined.get();
    for (const char* text : texts) {
        const size_t bytes = strlen(text);
        memcpy(end, text, bytes);
        end += bytes;
    }
    *end = '\0';
    return joined;
}

int32_t pxkGuiBoxReport(int32_t status, const char* func, const char* context, const char* file, int32_t line)
{
    const int32_t mode = ownContext().mode;
    const bool isLeaf = mode == PXK_ErrModeLeaf;
    if (!isLeaf && mode != PXK_ErrModeParent) return status;

    const char* const statusText = pxkErrorStr(status);
    const OwnDigits lineDigits = ownDigits(line < 0 ? 0 : line);
    const OwnDigits statusDigits = ownDigits(status);
    OwnText body = ownJoin({
        ownIsTrace(status) ? "Called from " : "In function ",
        ownTextOr(func, "<unknown>"),
        "(): [file ",
        ownTextOr(file, ""),
        ", line ",
        lineDigits.text,
        "]\n",
        ownTextOr(context, ""),
        "\n\n",
        statusText,
        "\n(status: ",
        statusDigits.text,
        isLeaf ? ")\n\nErrMode=PXK_ErrorModeLeaf\n\nTerminate the application?"
               : ")\n\nErrMode=PXK_ErrorModeParent\n\nContinue?",
    });
    // The question is asked even when memory is too short for its text.
    const char* const shown = ownTextOr(body.get(), statusText);
    const uint32_t buttons = isLeaf ? OWN_BOX_YES_NO : OWN_BOX_OK_CANCEL;
    const int32_t ending = isLeaf ? OWN_BUTTON_YES : OWN_BUTTON_CANCEL;
    if (ownShowBox(shown, "PXK " OWN_VERSION_TEXT, OWN_BOX_TASK_MODAL | OWN_BOX_STOP | buttons) == ending) {
        ownShowBox("PXK Library: terminating the application", "Win32: Application exit",
                   OWN_BOX_TASK_MODAL | OWN_BOX_INFORMATION | OWN_BOX_OK);
        body.reset();
        exit(1);
    }
    return status;
}
