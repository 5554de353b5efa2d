/* SPDX-License-Identifier: BSD-2-Clause */
// Row kernels: plain loops over contiguous samples, which the compiler vectorises.
#pragma once

#include <cstddef>
#include <cstdint>

// Promises that different samples of the loop do not depend on each other. It holds for equal addresses too, which
// `restrict` does not; the roads keep shifted overlaps away.
#if defined(__clang__)
#define OWN_IVDEP _Pragma("clang loop vectorize(assume_safety)")
#else
#define OWN_IVDEP _Pragma("GCC ivdep")
#endif
