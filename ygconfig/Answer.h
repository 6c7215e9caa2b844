// SPDX-License-Identifier: MIT
//
// What one run of the tool answers. Commands answer values and print nothing themselves.
#pragma once

#include <concepts>
#include <cstddef>
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

/// A text on its way to a sink, which gets it in pieces of some size.
class Output {
public:
    /// The sink must outlive it.
    explicit Output(const Sink& sink) : sink_(sink) {}

    /// What has not gone to the sink yet. After appending to it, call `passOn`.
    std::string& pending() { return pending_; }
    void passOn() {
        if (pending_.size() >= pieceSize)
            flush();
    }

    void add(std::string_view text) {
        if (pending_.size() + text.size() < pieceSize) {
            pending_ += text;
        } else {
            flush();
            sink_(text);
        }
    }

    void flush() {
        if (!pending_.empty())
            sink_(pending_);
        pending_.clear();
    }

private:
    static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

    const Sink& sink_;
    std::string pending_;
};

/// A text that is made while it is written, since a few records, each shown in many places, can
/// make a text that no memory holds. Whatever it is made from belongs to it.
class Text {
public:
    Text() : Text("") {}
    /// A short text, as it stands.
    Text(std::string whole)
        : write_([whole = std::move(whole)](Output& output) { output.add(whole); }) {}
    Text(const char* whole) : Text(std::string(whole)) {}
    /// What `writer` puts out.
    template <std::invocable<Output&> Writer>
    Text(Writer writer) : write_(std::move(writer)) {}

    void writeTo(Output& output) const { write_(output); }

    void writeTo(const Sink& sink) const {
        Output output(sink);
        writeTo(output);
        output.flush();
    }

private:
    std::function<void(Output&)> write_;
};

/// Adds a line to those of a complaint; nothing when it is empty.
inline void addLine(std::string& lines, std::string_view line) {
    if (!lines.empty() && !line.empty())
        lines += '\n';
    lines += line;
}

struct Answer {
    /// For standard output, with its last line feed.
    Text output;
    ExitCode exitCode = ExitCode::answer;
    /// Lines for standard error, without the last line feed; empty for none.
    std::string complaint = {};
};

}  // namespace yg::tool
