// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Terminal.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

#include "YGConfigManager/text/Utf8.h"

#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

std::size_t terminalWidth() {
    if (::isatty(STDOUT_FILENO) != 1)
        return usualColumns;
    if (const char* variable = std::getenv("COLUMNS")) {
        const std::string_view text = variable;
        std::uint16_t columns = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), columns);
        if (end.ec == std::errc() && end.ptr == text.data() + text.size() && columns > 0)
            return columns;
    }
    winsize size{};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualColumns;
}

std::string folded(std::string_view text, std::size_t width, std::size_t column,
                   std::size_t indent) {
    std::string lines;
    std::size_t begin = 0;       // of the line
    std::size_t breakAt = 0;     // where it may end; `begin` for nowhere yet
    std::size_t sinceBreak = 0;  // columns behind that
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t size = text::firstCharacter(text.substr(at)).size;
        const std::size_t columns = displayWidth(text.substr(at, size));
        if (columns > 1 && at > begin) {
            breakAt = at;
            sinceBreak = 0;
        }
        if (column + columns > width && breakAt > begin && text[at] != ' ') {
            std::size_t end = breakAt;
            while (end > begin && text[end - 1] == ' ')
                --end;
            lines.append(text.substr(begin, end - begin)).append("\n").append(indent, ' ');
            begin = breakAt;
            column = indent + sinceBreak;
        }
        at += size;
        column += columns;
        sinceBreak += columns;
        if (columns > 1 || text[at - 1] == ' ') {
            breakAt = at;
            sinceBreak = 0;
        }
    }
    return lines.append(text.substr(begin));
}

}  // namespace yg::tool
