// SPDX-License-Identifier: MIT
#include <cstdint>
#include <optional>
#include <string>

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Json.h"
#include "ygconfig/Palette.h"
#include "ygconfig/WriteOutput.h"

namespace yg::tool {

namespace {

/// What is wrong with the options as a whole; empty for nothing.
std::string faultIn(const Arguments& arguments) {
    if (!arguments.output)
        return "-o is required";
    if (arguments.groupCount.has_value() != arguments.indexInGroup.has_value())
        return "--group and --index go together";
    if (arguments.width && arguments.height)
        return "--width or --height, not both";
    return "";
}

/// The image asked for, by the operation of the library that makes it.
std::optional<Image> imageOf(const YGPaletteLoad& loader, const Arguments& arguments) {
    const bool isScaled = arguments.width || arguments.height;
    const std::uint32_t type = arguments.width ? 0 : 1;
    const double value = arguments.width ? *arguments.width : arguments.height.value_or(0);
    const std::optional<Image> image = loader.getCustomImage(arguments.name);
    if (!arguments.groupCount)
        return isScaled ? loader.getImageByScale(arguments.name, type, value) : image;
    const std::uint64_t count = *arguments.groupCount;
    const std::uint64_t index = *arguments.indexInGroup;
    return isScaled ? YGPaletteLoad::getImageInGroupByScale(image, count, index, type, value)
                    : YGPaletteLoad::getImageByImageAndGroupIndex(image, count, index);
}

}  // namespace

Answer writeImage(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (const std::string fault = faultIn(arguments); !fault.empty())
        return {"", ExitCode::unusable, "ygconfig image: " + fault};
    const auto loader = loadPalette(arguments);
    const auto image = loader ? imageOf(*loader, arguments) : std::nullopt;
    const auto png = image ? image->toPng() : std::nullopt;
    if (!png)
        return jsonAnswer(nullptr);
    if (const std::string error = writeOutput(*arguments.output, *png); !error.empty())
        return {"", ExitCode::failed,
                "ygconfig image: \"" + printable(*arguments.output) + "\": " + error};
    return jsonAnswer(*image);
}

}  // namespace yg::tool
