// SPDX-License-Identifier: MIT
//
// Marks what the shared library exports; everything else stays hidden.
#pragma once

/// Stands before what the shared library exports.
#define YG_EXPORT __attribute__((visibility("default")))

/// A private part of an exported class, for the library's own sources: its signature may change in
/// every version.
#define YG_HIDDEN __attribute__((visibility("hidden")))
