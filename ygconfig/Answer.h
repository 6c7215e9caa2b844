// SPDX-License-Identifier: MIT
//
// What one run of the tool has to say. Commands answer values and print nothing themselves.
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace yg::tool {

/// The exit status of a run, which scripts rely on.
enum class ExitCode {
    answer = 0,
    noAnswer = 1,  ///< the answer is null or false
    unusable = 2,  ///< the command line, the root folder or host.json cannot be used
    failed = 3,    ///< the answer cannot be made, or not be written whole
};

/// Takes a text piece by piece. What it throws ends the text.
using Sink = std::function<void(std::string_view piece)>;

/// A text that is made while it is written, since a few records, each shown in many places, can
/// make a text that no memory holds. Whatever it is made from belongs to it.
class Text {
public:
    Text() : Text("") {}
    /// A short text, as it stands.
    Text(std::string whole)
        : write_([whole = std::move(whole)](const Sink& sink) { sink(whole); }) {}
    Text(const char* whole) : Text(std::string(whole)) {}
    /// What `writer` gives to the sink that it gets.
    template <std::invocable<const Sink&> Writer>
    Text(Writer writer) : write_(std::move(writer)) {}

    void writeTo(const Sink& sink) const { write_(sink); }

private:
    std::function<void(const Sink&)> write_;
};

struct Answer {
    /// For standard output, with its last line feed.
    Text output;
    ExitCode exitCode = ExitCode::answer;
    /// Lines for standard error, without the last line feed; empty for none.
    std::string complaint = {};
};

}  // namespace yg::tool
