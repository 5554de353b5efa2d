/* SPDX-License-Identifier: BSD-2-Clause */
// Cosines and sines of the transforms' tables, the same bits wherever they are computed.
#pragma once

#include <cstdint>

struct OwnTurn {
    double cosine;
    double sine;
};

// Of the angle 2 pi k / n, n positive; right to some 1e-16, and exact at multiples of a quarter turn.
OwnTurn ownTurn(int64_t k, int64_t n);
