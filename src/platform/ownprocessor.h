/* SPDX-License-Identifier: BSD-2-Clause */
// Processor levels: the library holds its operations once for each, and chooses when it is loaded.
#pragma once

// The names are those of the System V ABI for x86-64: V3 has AVX2 and what came with it, V4 has AVX-512 F, BW, CD, DQ
// and VL.
enum class OwnLevel { BASELINE, V3, V4 };

// The highest level that processor and operating system support.
OwnLevel ownProcessorLevel();

// From here on calls are answered by this level's operations. Not while another thread may call one.
void ownTakeLevel(OwnLevel level);
