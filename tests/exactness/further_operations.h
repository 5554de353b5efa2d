/* SPDX-License-Identifier: BSD-2-Clause */
// Operations without a row in the table, because other tests compare them with their models.
#pragma once

#include "support/operations.h"

std::vector<Operation> furtherOperations();
