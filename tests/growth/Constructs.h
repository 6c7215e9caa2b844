// SPDX-License-Identifier: MIT
//
// What XML files can be made of, one construct again and again.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace yg::testing {

/// What a reader has to say of a file.
enum class Verdict {
    accepted,
    refused,
    limited,  ///< accepted, or refused because there is too much
};

/// Who it is for: what a reader takes apart comes to a loader as something else.
enum class Readers { all, xmlOnly };

struct Construct {
    std::string_view name;
    /// Content of an element, about so many bytes of it.
    std::string (*content)(std::size_t bytes);
    Readers readers = Readers::all;
    Verdict verdict = Verdict::accepted;
    /// What the error of a refusal names.
    std::string_view refusal = "";
    /// What the file begins with.
    std::string_view prolog = "";
    bool isUtf16 = false;
    /// How many times as large its files are as those of others.
    std::size_t scale = 1;
};

std::span<const Construct> constructs();

/// The construct as a file whose content stands between the two texts given.
std::string documentOf(const Construct& construct, std::string_view open, std::string_view close,
                       std::size_t bytes);

/// A plain page of the layout, with which all others are compared.
std::string plainLayout(std::size_t bytes);

template <class... Parts>
std::string joined(const Parts&... parts) {
    std::string text;
    ((text += parts), ...);
    return text;
}

inline std::string number(std::size_t value) {
    return std::to_string(value);
}

std::string copies(std::size_t count, std::string_view part);

/// The text of a part of each number from 0 on, until there are so many bytes.
std::string repeated(std::size_t bytes, const std::function<std::string(std::size_t)>& part);

/// The same text again and again.
std::string repeated(std::size_t bytes, std::string_view part);

}  // namespace yg::testing
