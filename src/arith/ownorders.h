/* SPDX-License-Identifier: BSD-2-Clause */
#pragma once

// Whether an operation takes images of unlike data order, each addressed by its own rule.
enum class OwnOrders { MUST_AGREE, MAY_DIFFER };
