/* SPDX-License-Identifier: BSD-2-Clause */
// The version as texts are made of it.
#pragma once

#define OWN_VERSION_TEXT "2.1"
