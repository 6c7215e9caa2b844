// SPDX-License-Identifier: MIT
//
// Numbers of palettes as other programs write them: "#1F2A37", "50%", an alpha up to 255, "12px".
// What a loader found is explained; what it takes as it is written is reported.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "YGConfigManager/inspection/PaletteFiles.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

namespace {

/// A suggestion, and a sentence that says why.
struct Meant {
    std::optional<std::string> text;
    std::string why;
};

bool isComponent(std::string_view attribute) {
    return attribute == "R" || attribute == "G" || attribute == "B";
}

/// With two digits behind the point at most, none that are 0.
std::string shortNumber(double number) {
    std::string text = std::to_string(std::llround(number * 100));
    text.insert(0, text.size() < 3 ? 3 - text.size() : 0, '0');
    text.insert(text.size() - 2, 1, '.');
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

std::string wholeNumber(double number) {
    return std::to_string(std::llround(number));
}

/// A whole number in hexadecimal digits alone.
std::optional<unsigned> hexadecimal(std::string_view digits) {
    unsigned value = 0;
    const auto* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, value, 16);
    return read.ec == std::errc() && read.ptr == end ? std::optional(value) : std::nullopt;
}

/// What stands behind "#" or "0x", and two digits without that if one is a letter; "" for others.
std::string_view hexadecimalDigits(std::string_view text) {
    if (text.starts_with('#'))
        return text.substr(1);
    if (text.starts_with("0x") || text.starts_with("0X"))
        return text.substr(2);
    const bool isByte =
        text.size() == 2 && hexadecimal(text) && !std::ranges::all_of(text, text::isDigit);
    return isByte ? text : std::string_view();
}

/// The component of "RRGGBB", "RGB" or "RRGGBBAA" that an attribute stands for, or that of "RR".
std::optional<unsigned> hexadecimalComponent(std::string_view attribute, std::string_view text) {
    if (!hexadecimal(text))
        return std::nullopt;
    const std::size_t at = std::string_view("RGBA").find(attribute);
    if (text.size() <= 2)
        return hexadecimal(text);
    if (text.size() == 3 && at < 3)
        return *hexadecimal(text.substr(at, 1)) * 17;
    if (text.size() == 8 || (text.size() == 6 && at < 3))
        return hexadecimal(text.substr(at * 2, 2));
    return std::nullopt;
}

Meant meantByComponent(std::string_view attribute, std::string_view text, double number) {
    const bool isAlpha = attribute == "A";
    const std::string range = isAlpha ? "0 to 1" : "0 to 255";
    if (const std::string_view digits = hexadecimalDigits(text); !digits.empty()) {
        const auto component = hexadecimalComponent(attribute, digits);
        Meant meant{{}, "hexadecimal digits are not read; write a decimal number from " + range};
        if (component)
            meant.text = isAlpha ? shortNumber(*component / 255.0) : wholeNumber(*component);
        return meant;
    }
    if (text.ends_with('%') && number >= 0 && number <= 100) {
        return {isAlpha ? shortNumber(number / 100) : wholeNumber(number * 255 / 100),
                "percent are not read; write a number from " + range};
    }
    if (isAlpha && number > 1 && number <= 255 && number == std::floor(number)) {
        const std::string ofBytes = shortNumber(number / 255);
        const std::string ofPercent = shortNumber(number / 100);
        if (number > 100)
            return {ofBytes, text::format("A goes from 0 to 1; %@ is %@ of 255", ofBytes,
                                          wholeNumber(number))};
        return {{},
                text::format("A goes from 0 to 1; %@ is %@ of 255, and %@ is %@ percent", ofBytes,
                             wholeNumber(number), ofPercent, wholeNumber(number))};
    }
    if (number < 0)
        return {"0", attribute == "A" ? "A goes from 0 to 1" : "it goes from 0 to 255"};
    if (number > (isAlpha ? 1 : 255))
        return {isAlpha ? "1" : "255", isAlpha ? "A goes from 0 to 1" : "it goes from 0 to 255"};
    return {};
}

/// What is left when the unit is taken away.
Meant meantBySize(std::string_view text) {
    for (const std::string_view unit : {"px", "pt", "PX", "PT", "Pt", "Px"}) {
        if (!text.ends_with(unit))
            continue;
        text.remove_suffix(unit.size());
        while (!text.empty() && text::isWhiteSpace(text.back()))
            text.remove_suffix(1);
        const auto number = text::readLeadingDouble(text);
        if (number.oddity == text::NumberOddity::none && number.value > 0)
            return {std::string(text), "HEIGHT is a number of points, written without a unit"};
    }
    return {};
}

/// "0,5" for "0.5".
Meant meantByComma(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos)
        return {};
    std::string pointed(text);
    pointed[comma] = '.';
    if (text::readLeadingDouble(pointed).oddity != text::NumberOddity::none)
        return {};
    return {pointed, "fractions are written with a point"};
}

/// The share of 255 that colours of other programs have: "0.5".
void checkFractions(const PaletteFile& file, Gathering& findings) {
    for (const auto& [name, use] : file.defined(Naming::color)) {
        std::string_view first;
        bool areShares = true;
        bool isBlack = true;
        for (const std::string_view attribute : {"R", "G", "B"}) {
            const std::string_view text = use->element.attribute(attribute).value_or("");
            const auto number = text::readLeadingDouble(text);
            areShares = areShares && number.oddity == text::NumberOddity::none &&
                        number.value >= 0 && number.value <= 1;
            isBlack = isBlack && number.value == 0;
            if (first.empty() && text.find('.') != std::string_view::npos)
                first = attribute;
        }
        if (!areShares || isBlack || first.empty())
            continue;
        const double share =
            text::readLeadingDouble(use->element.attribute(first).value_or("")).value;
        findings.onAttribute("color-in-fractions"_rule, use->element, first,
                             {.suggestion = wholeNumber(share * 255)});
    }
}

}  // namespace

void checkPaletteNumbers(const std::vector<PaletteFile>& files, Gathering& findings) {
    std::set<std::string, std::less<>> paths;
    for (const PaletteFile& file : files) {
        paths.insert(file.path());
        checkFractions(file, findings);
    }
    for (std::size_t at = 0; at < findings.found().size(); ++at) {
        const Finding& finding = findings.found()[at].finding;
        const std::string_view rule = finding.rule.name;
        if ((rule != "odd-number" && rule != "number-out-of-range" &&
             rule != "font-without-size") ||
            !paths.contains(finding.place.file))
            continue;
        const std::string& text = finding.value;
        Meant meant = meantByComma(text);
        if (!meant.text && finding.attribute == "HEIGHT")
            meant = meantBySize(text);
        else if (!meant.text && (isComponent(finding.attribute) || finding.attribute == "A"))
            meant = meantByComponent(finding.attribute, text, text::readLeadingDouble(text).value);
        if (!meant.why.empty())
            findings.explain(
                at, {.message = text::format("%@=\"%@\": %@.", finding.attribute, text, meant.why),
                     .suggestion = std::move(meant.text)});
    }
}

}  // namespace yg
