// SPDX-License-Identifier: MIT
//
// From the bytes of an XML file to UTF-8 text. Internal.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/xml/Document.h"

namespace yg::xml {

/// UTF-8 text without a mark, or the error by which there is none.
struct Decoded {
    std::string text;
    std::vector<ParseError> errors;  ///< empty on success
};

/// Decodes by the byte-order mark (UTF-8, UTF-16), else by the encoding that the declaration names,
/// else as UTF-8. gb2312, gbk and gb18030 are all decoded as GB18030, because files marked gb2312
/// often hold GBK characters. Errors are unknown encodings, invalid bytes, an end within a
/// character or a shift sequence, a declaration that reads otherwise in the encoding that it names,
/// and code points that are not Unicode's. Time and memory grow with the number of bytes alone.
/// UTF-8 bytes become the text without a copy.
Decoded decodeXml(std::string bytes);

/// The same for what is UTF-8 already, whatever the declaration says.
Decoded decodeUtf8(std::string text);

/// The encoding that the declaration names, a part of the text; absent without one. The text is in
/// an encoding that has ASCII, and has no mark.
std::optional<std::string_view> declaredEncoding(std::string_view text);

}  // namespace yg::xml
