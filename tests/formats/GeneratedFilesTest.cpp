// SPDX-License-Identifier: MIT
//
// The committed schemas and pages, and the sample.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "YGConfigManager/formats/Format.h"
#include "YGConfigManager/host/StandAloneHost.h"

#include "describe/Describe.h"
#include "formats/Loading.h"
#include "formats/Schemas.h"

namespace yg {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using ::testing::Not;
using yg::testing::RelaxNgSchema;
using yg::testing::XmlSchemaSchema;

const fs::path project = YG_PROJECT_FOLDER;
const fs::path sample = project / "examples/terminal";

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(GeneratedFiles, AreWhatTheTablesGive) {
    std::set<std::string> expected;
    for (const auto& [name, text] : describe::describe(formats())) {
        EXPECT_EQ(contentOf(project / name), text) << name << ": run scripts/describe";
        expected.insert(name);
    }
    for (const std::string_view schema : describe::writtenSchemas) {
        EXPECT_TRUE(fs::exists(project / schema)) << schema;
        expected.insert(std::string(schema));
    }
    for (const std::string_view folder : describe::generatedFolders) {
        for (const fs::directory_entry& entry : fs::directory_iterator(project / folder)) {
            EXPECT_TRUE(expected.contains(fs::relative(entry.path(), project).string()))
                << entry.path() << ": run scripts/describe";
        }
    }
}

/// Each file of the sample with its format.
struct SampleFile {
    std::string_view path;
    std::string_view format;
};

constexpr SampleFile sampleFiles[] = {
    {"base_optimize/reuse_panels.xml", "reuse_panels"},
    {"config/custompage_template.xml", "styles"},
    {"config/events.xml", "events"},
    {"config/magic_panels.xml", "magic_panels"},
    {"config/tab_styles.xml", "styles"},
    {"host.json", "host"},
    {"soft_optimize/custompage_template.xml", "styles"},
    {"soft_optimize/magic_panels.xml", "magic_panels"},
    {"storage/app_config.xml", "settings"},
    {"storage/palette_black.xml", "palette"},
    {"storage/palette_white.xml", "palette"},
    {"storage/request_urls_json.txt", "request_urls"},
    {"storage/skeleton_gray_v1.xml", "servers"},
    {"storage/skeleton_l2_gray_v1.xml", "servers"},
    {"storage/skeleton_l2_v1.xml", "servers"},
    {"storage/skeleton_v1.xml", "servers"},
    {"storage/web_page_urls.xml", "web_pages"},
};

/// The texts of a format: its example and the files of the sample.
std::vector<std::string> textsOf(const FormatInfo& format) {
    std::vector<std::string> texts{std::string(format.example)};
    for (const SampleFile& file : sampleFiles) {
        if (file.format == format.id)
            texts.push_back(contentOf(sample / file.path));
    }
    return texts;
}

TEST(GeneratedFiles, EveryFileOfTheSampleHasAFormat) {
    std::set<std::string> known;
    for (const SampleFile& file : sampleFiles)
        known.insert(std::string(file.path));
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(sample)) {
        const std::string suffix = entry.path().extension().string();
        if (suffix == ".xml" || suffix == ".json" || suffix == ".txt") {
            EXPECT_TRUE(known.contains(fs::relative(entry.path(), sample).string()))
                << entry.path();
        }
    }
}

TEST(GeneratedFiles, ExamplesAndTheSampleAreValid) {
    for (const FormatInfo* format : formats()) {
        if (format->kind != FormatKind::xml)
            continue;
        const RelaxNgSchema relaxNg(describe::relaxNg(*format));
        const XmlSchemaSchema xmlSchema(describe::xmlSchema(*format));
        for (const std::string& text : textsOf(*format)) {
            EXPECT_TRUE(relaxNg.accepts(text)) << format->id << ": " << text;
            EXPECT_TRUE(xmlSchema.accepts(text)) << format->id << ": " << text;
        }
    }
}

// ---- JSON ----

using Json = nlohmann::json;

bool isOfType(const Json& value, const std::string& type) {
    return type == "string"   ? value.is_string()
           : type == "object" ? value.is_object()
           : type == "array"  ? value.is_array()
                              : type == "null" && value.is_null();
}

/// Validates by the keywords that the schemas use; any other is a failure.
bool isValid(const Json& value, const Json& schema) {
    static const std::set<std::string> texts{"$schema", "$id", "$comment", "title", "description"};
    static const std::set<std::string> known{
        "type", "properties", "additionalProperties", "required", "items", "minLength", "pattern"};
    for (const auto& [keyword, content] : schema.items())
        EXPECT_TRUE(texts.contains(keyword) || known.contains(keyword)) << keyword;
    const Json types = schema["type"].is_array() ? schema["type"] : Json::array({schema["type"]});
    if (std::ranges::none_of(types, [&](const Json& type) { return isOfType(value, type); }))
        return false;
    if (value.is_string()) {
        const std::string text = value;
        return text.size() >= schema.value("minLength", std::size_t{0}) &&
               std::regex_search(text, std::regex(schema.value("pattern", "")));
    }
    for (const Json& name : schema.value("required", Json::array())) {
        if (value.is_object() && !value.contains(name))
            return false;
    }
    for (const auto& [name, member] : value.items()) {
        const Json& others = schema.value("additionalProperties", Json(true));
        const Json properties = schema.value("properties", Json::object());
        const Json own = value.is_array() ? schema["items"] : properties.value(name, others);
        if (own.is_boolean() ? !own.get<bool>() : !isValid(member, own))
            return false;
    }
    return true;
}

TEST(JsonSchemas, AcceptExamplesAndTheSample) {
    for (const FormatInfo* format : formats()) {
        if (format->kind != FormatKind::json)
            continue;
        const Json schema = Json::parse(describe::jsonSchema(*format));
        for (const std::string& text : textsOf(*format))
            EXPECT_TRUE(isValid(Json::parse(text), schema)) << format->id << ": " << text;
    }
}

/// Whether what reads the format has nothing to say.
bool isLoaded(std::string_view format, std::string_view text) {
    if (format == "request_urls")
        return yg::testing::findingsOfRequestUrls(text).empty();
    const yg::files::TemporaryFolder root;
    root.write("host.json", text);
    return static_cast<bool>(StandAloneHost::open(root.path()));
}

bool accepts(std::string_view format, std::string_view text) {
    const bool isAccepted =
        isValid(Json::parse(text), Json::parse(describe::jsonSchema(*formatNamed(format))));
    EXPECT_EQ(isAccepted, isLoaded(format, text)) << text;
    return isAccepted;
}

TEST(JsonSchemas, OfTheHostRefuseWhatItCannotOpenWith) {
    EXPECT_TRUE(accepts("host", "{}"));
    EXPECT_TRUE(accepts("host", R"({"rightLevel": null, "mappings": null, "other": 1})"));
    EXPECT_FALSE(accepts("host", "[]"));
    EXPECT_FALSE(accepts("host", R"({"rightLevel": 1})"));
    EXPECT_FALSE(accepts("host", R"({"mappings": []})"));
    EXPECT_FALSE(accepts("host", R"({"mappings": {"a": null}})"));
    EXPECT_FALSE(accepts("host", R"({"mappings": {"a": {"b": [1]}}})"));
}

TEST(JsonSchemas, OfRequestUrlsRefuseWhatIsReported) {
    EXPECT_TRUE(accepts("request_urls", R"({"md5Value": "1", "urlConfigList": []})"));
    EXPECT_FALSE(accepts("request_urls", R"({"urlConfigList": []})"));
    EXPECT_FALSE(accepts("request_urls", R"({"md5Value": ""})"));
    EXPECT_FALSE(accepts("request_urls", R"({"md5Value": 1})"));
    EXPECT_FALSE(accepts("request_urls", R"({"md5Value": "1", "other": 1})"));
    const auto acceptsEntry = [](std::string_view entry) {
        return accepts("request_urls",
                       R"({"md5Value": "1", "urlConfigList": [)" + std::string(entry) + "]}");
    };
    EXPECT_TRUE(acceptsEntry(R"({"urlKey": "a", "urlValue": ""})"));
    EXPECT_FALSE(acceptsEntry("1"));
    EXPECT_FALSE(acceptsEntry(R"({"urlValue": "b"})"));
    EXPECT_FALSE(acceptsEntry(R"({"urlKey": "a"})"));
    EXPECT_FALSE(acceptsEntry(R"({"urlKey": "a", "urlValue": 1})"));
    EXPECT_FALSE(acceptsEntry(R"({"urlKey": "a", "urlValue": "b "})"));
    EXPECT_FALSE(acceptsEntry(R"({"urlKey": "a", "urlValue": "b", "other": 1})"));
}

// ---- Other programs ----

/// What a program prints, and what it ends with.
std::pair<int, std::string> run(const std::string& command) {
    std::array<char, 4096> part{};
    std::string text;
    FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    while (std::fgets(part.data(), part.size(), pipe))
        text += part.data();
    return {::pclose(pipe), text};
}

std::string inQuotes(const fs::path& path) {
    return " '" + path.string() + '\'';
}

std::string samplesOf(const FormatInfo& format) {
    std::string files;
    for (const SampleFile& file : sampleFiles) {
        if (file.format == format.id)
            files += inQuotes(sample / file.path);
    }
    return files;
}

TEST(OtherPrograms, XmllintFindsTheSampleValid) {
    for (const FormatInfo* format : formats()) {
        if (format->kind != FormatKind::xml)
            continue;
        const fs::path schema = project / "schemas" / format->id;
        for (const std::string& option : {" --relaxng" + inQuotes(schema.string() + ".rng"),
                                          " --schema" + inQuotes(schema.string() + ".xsd")}) {
            const auto [end, text] = run("xmllint --noout" + option + samplesOf(*format));
            EXPECT_EQ(end, 0) << text;
        }
    }
}

TEST(OtherPrograms, JingFindsTheSampleValid) {
    for (const FormatInfo* format : formats()) {
        if (format->kind != FormatKind::xml)
            continue;
        const fs::path schema = project / "schemas" / (std::string(format->id) + ".rng");
        const auto [end, text] = run("jing" + inQuotes(schema) + samplesOf(*format));
        EXPECT_EQ(end, 0) << text;
    }
}

TEST(OtherPrograms, TheCatalogueNamesEachSchema) {
    const fs::path folder = project / "schemas";
    for (const FormatInfo* format : formats()) {
        const std::string id(format->id);
        const auto check = [&](const std::string& kind, const std::string& suffix) {
            const auto [end, text] = run("xmlcatalog" + inQuotes(folder / "catalog.xml") +
                                         " urn:ygconfigmanager:" + id + ':' + kind);
            EXPECT_EQ(end, 0);
            EXPECT_THAT(text, ::testing::HasSubstr("schemas/" + id + suffix + '\n'));
        };
        if (format->kind == FormatKind::json) {
            check("json", ".schema.json");
        } else {
            check("rng", ".rng");
            check("xsd", ".xsd");
        }
    }
}

}  // namespace
}  // namespace yg
