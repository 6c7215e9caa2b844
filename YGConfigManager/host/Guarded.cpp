// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Guarded.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>

#include "YGConfigManager/host/Log.h"

namespace yg {

namespace {

/// A log line in memory of its own; cut at its end when it does not fit.
class Line {
public:
    Line& add(std::string_view part) {
        part = part.substr(0, text_.size() - size_);
        std::copy(part.begin(), part.end(), text_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += part.size();
        return *this;
    }
    std::string_view text() const { return {text_.data(), size_}; }

private:
    std::array<char, 500> text_;
    std::size_t size_ = 0;
};

}  // namespace

void logException(std::string_view what) noexcept {
    Line line;
    line.add(what).add(" fail:");
    try {
        throw;
    } catch (const std::bad_alloc&) {
        line.add(outOfMemory);
    } catch (const std::exception& error) {
        line.add(error.what());
    } catch (...) {
        line.add("unknown exception");
    }
    writeLogMessage(LogChannel::runtime, LogSeverity::error, line.text());
}

}  // namespace yg
