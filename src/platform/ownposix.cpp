// SPDX-License-Identifier: BSD-2-Clause
// The platform on POSIX systems.
#include "platform/ownplatform.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

// The value is read from the thread-local pointer; the key is there for its destructor, the end of a thread.
static __thread void* ownValue;

// A process started without the stream may since have got its number for a file of its own.
static bool ownErrorStreamWasOpen;

// First and last within a program that links the library statically, around the program's own constructors.
__attribute__((constructor(101))) static void ownLoad()
{
    ownErrorStreamWasOpen = fcntl(STDERR_FILENO, F_GETFD) != -1;
    // Nothing can refuse to be loaded here. A failed attach is made good on first access.
    static_cast<void>(ownProcessAttach());
}

__attribute__((destructor(101))) static void ownUnload()
{
    ownProcessDetach();
}

static void ownThreadEnds(void*)
{
    ownThreadDetach();
}

uint32_t ownTakeSlot()
{
    pthread_key_t key;
    return pthread_key_create(&key, ownThreadEnds) == 0 ? static_cast<uint32_t>(key) : OWN_NO_SLOT;
}

void ownGiveSlotBack(uint32_t slot)
{
    pthread_key_delete(static_cast<pthread_key_t>(slot));
}

void* ownSlotValue(uint32_t)
{
    return ownValue;
}

bool ownSetSlotValue(uint32_t slot, void* value)
{
    // Without a slot the value still serves its thread, for as long as the process lasts.
    if (slot != OWN_NO_SLOT && pthread_setspecific(static_cast<pthread_key_t>(slot), value) != 0) return false;
    ownValue = value;
    return true;
}

void* ownAllocateZeroed(size_t bytes)
{
    return calloc(1, bytes);
}

void ownFreeZeroed(void* block)
{
    free(block);
}

void ownFatalExit(const char* text)
{
    ownWriteError({ text, "\n" });
    _exit(1);
}

// While it lives, writing to a pipe that nobody reads fails and does not end the process.
struct OwnPipeGuard {
    sigset_t pipeSignal, before;
    bool wasPending;

    OwnPipeGuard()
    {
        sigset_t pending;
        sigemptyset(&pipeSignal);
        sigaddset(&pipeSignal, SIGPIPE);
        wasPending = sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    }
    ~OwnPipeGuard()
    {
        const timespec now = {};
        if (!wasPending) {
            while (sigtimedwait(&pipeSignal, nullptr, &now) == -1 && errno == EINTR) { }
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    OwnPipeGuard(const OwnPipeGuard&) = delete;
    OwnPipeGuard& operator=(const OwnPipeGuard&) = delete;
};

void ownWriteError(std::initializer_list<const char*> texts)
{
    if (!ownErrorStreamWasOpen) return;
    const OwnPipeGuard guard;
    flockfile(stderr);
    for (const char* text : texts) fputs(text, stderr);
    fflush(stderr);
    funlockfile(stderr);
}

OwnDigits ownDigits(int32_t number)
{
    OwnDigits digits;
    snprintf(digits.text, sizeof digits.text, "%d", static_cast<int>(number));
    return digits;
}

uint64_t ownProcessorCounter()
{
#if defined(__x86_64__) || defined(__i386__)
    return __builtin_ia32_rdtsc();
#else
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
#endif
}

// The buttons of a box as a question on the terminal.
struct OwnQuestion {
    const char* prompt;
    char letter[2];
    int32_t button[2];
    const char* harmless; // the answer that lets the process go on, where nobody can be asked
    int32_t harmlessButton;
};

static constexpr OwnQuestion ownYesNo = {
    "[Y]es, [N]o: ", { 'y', 'n' }, { OWN_BUTTON_YES, OWN_BUTTON_NO }, "No", OWN_BUTTON_NO
};
static constexpr OwnQuestion ownOkCancel = {
    "[O]K, [C]ancel: ", { 'o', 'c' }, { OWN_BUTTON_OK, OWN_BUTTON_CANCEL }, "OK", OWN_BUTTON_OK
};

// Whether somebody can be asked: input and error stream are one terminal, and reading it would not stop the process as
// it does with a job in the background.
static bool ownOnTerminal()
{
    struct stat input, error;
    if (!isatty(STDIN_FILENO) || !isatty(STDERR_FILENO)) return false;
    if (fstat(STDIN_FILENO, &input) != 0 || fstat(STDERR_FILENO, &error) != 0) return false;
    if (input.st_rdev != error.st_rdev) return false;
    const pid_t foreground = tcgetpgrp(STDIN_FILENO);
    return foreground == -1 || foreground == getpgrp(); // -1: not this session's terminal, which never stops a reader
}

// One character from the terminal, also when the application has made the stream non-blocking; -1 at the end of input.
static int ownReadCharacter()
{
    for (;;) {
        unsigned char character;
        const ssize_t count = read(STDIN_FILENO, &character, 1);
        if (count == 1) return character;
        if (count == 0) return -1;
        if (errno == EAGAIN) {
            pollfd input = { STDIN_FILENO, POLLIN, 0 };
            if (poll(&input, 1, -1) == -1 && errno != EINTR) return -1;
        } else if (errno != EINTR) {
            return -1;
        }
    }
}

// The first letter of a line, in lower case; 0 for an empty line, -1 at the end of input.
static int ownReadLetter()
{
    int letter = 0;
    for (;;) {
        const int character = ownReadCharacter();
        if (character == -1) return -1;
        if (character == '\n' || character == '\r') return letter;
        if (letter == 0 && character != ' ' && character != '\t') letter = character | 0x20;
    }
}

static int32_t ownAsk(const OwnQuestion& question)
{
    if (!ownOnTerminal()) {
        ownWriteError({ question.prompt, question.harmless, " (no terminal to ask)\n" });
        return question.harmlessButton;
    }
    tcflush(STDIN_FILENO, TCIFLUSH); // what was typed for something else is no answer
    for (;;) {
        ownWriteError({ question.prompt });
        const int letter = ownReadLetter();
        if (letter == question.letter[0]) return question.button[0];
        if (letter == question.letter[1]) return question.button[1];
        if (letter == -1) {
            ownWriteError({ question.harmless, " (end of input)\n" });
            return question.harmlessButton;
        }
    }
}

int32_t ownShowBox(const char* text, const char* title, uint32_t style)
{
    const uint32_t buttons = style & OWN_BOX_BUTTONS;
    const OwnQuestion& question = buttons == OWN_BOX_YES_NO ? ownYesNo : ownOkCancel;
    if (!ownErrorStreamWasOpen) return question.harmlessButton;
    ownWriteError({ "\n", title, "\n", text, "\n" });
    return buttons == OWN_BOX_OK ? OWN_BUTTON_OK : ownAsk(question);
}
