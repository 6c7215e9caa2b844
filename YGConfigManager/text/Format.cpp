// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Format.h"

#include <charconv>

namespace yg::text::detail {

namespace {

constexpr std::string_view nullText = "(null)";

template <class Integer>
void appendInteger(std::string& out, Integer value, int base = 10) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value, base);
    out.append(digits, end.ptr);
}

/// Appends an argument in a place that it fits, which is what the check of the format ensures.
struct Append {
    std::string& out;
    FormatUse use;

    void operator()(std::monostate) const { out += nullText; }
    void operator()(std::string_view text) const { out += text; }
    void operator()(const char* text) const {
        if (use == usePointer)
            (*this)(static_cast<const void*>(text));
        else
            out += text ? std::string_view(text) : nullText;
    }
    void operator()(std::int64_t number) const { appendInteger(out, number); }
    void operator()(std::uint64_t number) const { appendInteger(out, number); }
    void operator()(const void* pointer) const {
        out += "0x";
        appendInteger(out, reinterpret_cast<std::uintptr_t>(pointer), 16);
    }
    void operator()(const DescribedObject& described) const {
        if (use == usePointer)
            (*this)(described.object);
        else if (!described.object)
            out += nullText;
        else
            out += described.describe(described.object);
    }
};

}  // namespace

std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments) {
    std::string out;
    auto argument = arguments.begin();
    std::size_t begin = 0;
    for (std::size_t at = format.find('%'); at != std::string_view::npos;
         at = format.find('%', begin)) {
        out += format.substr(begin, at - begin);
        const std::string_view rest = format.substr(at + 1);
        if (rest.starts_with('%')) {
            out += '%';
            begin = at + 2;
            continue;
        }
        const Placeholder placeholder = placeholderAt(rest);
        std::visit(Append{out, placeholder.use}, *argument);
        ++argument;
        begin = at + 1 + placeholder.size;
    }
    out += format.substr(begin);
    return out;
}

}  // namespace yg::text::detail
