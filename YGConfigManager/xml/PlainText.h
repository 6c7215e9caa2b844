// SPDX-License-Identifier: MIT
//
// A quick look at a text, for what libxml2 need not judge. Internal. Any thread may call.
#pragma once

#include <string>

namespace yg::xml {

/// Whether a text is one of those that are well-formed and within all limits beyond doubt:
/// elements, attributes, text, comments and the five entities, with names in ASCII and without
/// prefixes, and a declaration of the usual form. False says nothing about it. The text is valid
/// UTF-8.
bool isPlainText(const std::string& text);

}  // namespace yg::xml
