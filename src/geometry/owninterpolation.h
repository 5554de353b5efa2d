/* SPDX-License-Identifier: BSD-2-Clause */
#pragma once

// How samples between pixels are made. MEAN, that of all pixels a new one covers, is for changes of scale.
enum class OwnInterpolation { NEAREST, LINEAR, CUBIC, MEAN };
