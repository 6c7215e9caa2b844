// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Terminal.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

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

}  // namespace yg::tool
