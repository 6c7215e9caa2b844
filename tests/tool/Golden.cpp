// SPDX-License-Identifier: MIT
#include "tool/Golden.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace yg::testing {

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

/// The lines of both texts between what they share at the beginning and at the end.
std::string difference(std::string_view expected, std::string_view actual) {
    constexpr std::ptrdiff_t most = 12;
    const auto left = linesOf(expected);
    const auto right = linesOf(actual);
    const auto [leftAt, rightAt] =
        std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    const auto [leftEnd, rightEnd] =
        std::mismatch(left.rbegin(), std::make_reverse_iterator(leftAt), right.rbegin(),
                      std::make_reverse_iterator(rightAt));
    const auto report = [&](char sign, auto line, auto end) {
        std::string text;
        for (std::ptrdiff_t count = 0; line != end; ++line, ++count) {
            if (count == most)
                return text + sign + " … " + std::to_string(end - line) + " more\n";
            text.append({sign, ' '}).append(*line);
            if (text.back() != '\n')
                text += "⏎ is missing\n";
        }
        return text;
    };
    return "line " + std::to_string(leftAt - left.begin() + 1) + ":\n" +
           report('-', leftAt, leftEnd.base()) + report('+', rightAt, rightEnd.base());
}

}  // namespace

::testing::AssertionResult isGolden(std::string_view text, const std::string& name) {
    const std::string path = YG_PROJECT_FOLDER "/tests/tool/golden/" + name;
    const char* update = std::getenv("YG_UPDATE_GOLDEN");
    if (update && std::string_view(update) == "1") {
        std::ofstream(path, std::ios::binary) << text;
        return ::testing::AssertionSuccess();
    }
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return ::testing::AssertionFailure() << "there is no file " << path;
    const std::string expected{std::istreambuf_iterator<char>(file), {}};
    if (expected == text)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << name << " differs (- expected, + printed) from " << difference(expected, text);
}

}  // namespace yg::testing
