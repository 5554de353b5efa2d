/* SPDX-License-Identifier: BSD-2-Clause */
// All that the library wants of the operating system. No other room includes a system header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

// Notifications, given by the platform and answered by the frame. A false from an attach fails it.
[[nodiscard]] bool ownProcessAttach();
[[nodiscard]] bool ownThreadAttach();
void ownThreadDetach();
void ownProcessDetach();

// A slot holds one pointer for each thread, null until it is set.
constexpr uint32_t OWN_NO_SLOT = ~uint32_t(0);

[[nodiscard]] uint32_t ownTakeSlot(); // OWN_NO_SLOT when none is left
void ownGiveSlotBack(uint32_t slot);
void* ownSlotValue(uint32_t slot);
[[nodiscard]] bool ownSetSlotValue(uint32_t slot, void* value);

// Zeroed memory for records that live as long as a thread; null when it could not be had.
[[nodiscard]] void* ownAllocateZeroed(size_t bytes);
void ownFreeZeroed(void* block);

// Shows the text and ends the process at once: no exit handler runs, since they may need what could not be had.
[[noreturn]] void ownFatalExit(const char* text);

// Writes the texts one behind the other to the standard-error stream and flushes it. A stream that is closed, or a pipe
// that nobody reads any more, does no harm; a process that began without the stream writes nothing.
void ownWriteError(std::initializer_list<const char*> texts);

// Decimal digits of a number.
struct OwnDigits {
    char text[12];
};
OwnDigits ownDigits(int32_t number);

// The processor's time-stamp counter as it stands; where there is none, nanoseconds of a clock that never goes back.
extern "C" uint64_t ownProcessorCounter();

// Styles and buttons of a modal box have the numbers of the system that knows such boxes.
constexpr uint32_t OWN_BOX_OK = 0x0;
constexpr uint32_t OWN_BOX_OK_CANCEL = 0x1;
constexpr uint32_t OWN_BOX_YES_NO = 0x4;
constexpr uint32_t OWN_BOX_BUTTONS = 0xF; // bits that hold the buttons
constexpr uint32_t OWN_BOX_STOP = 0x10;
constexpr uint32_t OWN_BOX_INFORMATION = 0x40;
constexpr uint32_t OWN_BOX_TASK_MODAL = 0x2000;

constexpr int32_t OWN_BUTTON_OK = 1;
constexpr int32_t OWN_BUTTON_CANCEL = 2;
constexpr int32_t OWN_BUTTON_YES = 6;
constexpr int32_t OWN_BUTTON_NO = 7;

// Shows a box and returns the button pressed; any other number when the box could not be shown.
int32_t ownShowBox(const char* text, const char* title, uint32_t style);
