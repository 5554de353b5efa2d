/* SPDX-License-Identifier: BSD-2-Clause */
// Tells a sanitizer which of the library's own memory nobody may touch. Does nothing in other builds.
#pragma once

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif
