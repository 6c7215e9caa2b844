// SPDX-License-Identifier: MIT
//
// Marks what the shared library exports; everything else stays hidden.
#pragma once

#define YG_EXPORT __attribute__((visibility("default")))
