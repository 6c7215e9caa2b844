// SPDX-License-Identifier: MIT
//
// The files of the layout: everything is loaded and looked up twice, without and with a listener,
// and the answers and log lines must be the same.
//
// The input is cut at lines "=====" into the main style file, the soft-optimize style file, the tab
// file, the magic panels, the reuse panels, and the names of pages to look up, one to a line.
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <tuple>
#include <type_traits>
#include <unistd.h>
#include <vector>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::require;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

/// A file in memory that has a path.
class MemoryFile {
public:
    MemoryFile() : number_(::memfd_create("layout", MFD_CLOEXEC)) {
        require(number_ >= 0, "there is a file in memory");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(number_); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(number_); }

    void put(std::string_view bytes) const {
        const bool isWritten =
            ::ftruncate(number_, 0) == 0 &&
            ::pwrite(number_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
        require(isWritten, "the file in memory is written");
    }

private:
    int number_;
};

struct Files {
    MemoryFile style, softStyle, tab, magic, reuse;
};

class FuzzHost : public Host {
public:
    explicit FuzzHost(const Files& files) : files_(files) {}

    std::vector<std::string> log;
    std::shared_ptr<const MappingDic> mapping;

    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view>, bool) override {
        return std::nullopt;
    }
    std::optional<std::string> getUserRightDescription() override { return std::nullopt; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view name) override {
        // The soft-optimize file of magic panels is the reuse file, which is as good as any.
        return (files_.style.path().ends_with(name) ? files_.softStyle : files_.reuse).path();
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return files_.reuse.path();
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return mapping;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return std::nullopt; }
    void writeLog(LogChannel, std::string_view message) override { log.emplace_back(message); }

private:
    const Files& files_;
};

/// Looks at everything that is reported.
class Listener : public DiagnosticsSink {
public:
    std::size_t seen = 0;

    void report(const Finding& finding) override {
        seen += finding.rule.name.size() + finding.element.size() + finding.attribute.size() +
                finding.value.size() + finding.place.file.size() + finding.extent.file.size();
        for (const RelatedPlace& related : finding.related)
            require(related.place.begin.line > 0, "an earlier definition has a place");
    }
    void used(const Place& place) override { seen += place.file.size(); }
};

/// Writes records out, each once: panels may stand at many places.
class Describer {
public:
    std::string text;

    void add(const std::optional<std::string>& value) {
        text += value ? "\"" + *value + "\"" : "absent";
    }
    void add(const std::string& value) { text += value; }
    void add(bool value) { text += value ? "yes" : "no"; }
    void add(std::int32_t value) { text += std::to_string(value); }
    void add(float value) { text += std::to_string(value); }
    template <class Value>
    void add(const std::shared_ptr<Value>& value) {
        if (!value) {
            text += "null";
            return;
        }
        held_.push_back(value);
        const auto [known, isNew] = seen_.emplace(value.get(), seen_.size());
        text += '#' + std::to_string(known->second);
        if (isNew)
            add(*value);
    }
    template <class Value>
    void add(const std::vector<Value>& values) {
        text += '[';
        for (const Value& value : values) {
            add(value);
            text += ' ';
        }
        text += ']';
    }
    template <class Value>
    void add(const RecordMap<Value>& values) {
        for (const auto& [key, value] : values) {
            text += key + ": ";
            add(value);
            text += '\n';
        }
    }
    template <class Record>
    auto add(const Record& record) -> decltype(Description<Record>::fields, void()) {
        text += '{';
        forEachField(record, [&](std::string_view name, const auto& value) {
            text += std::string(name) + '=';
            add(value);
            text += ' ';
        });
        text += '}';
    }

private:
    std::map<const void*, std::size_t> seen_;
    std::vector<std::shared_ptr<const void>> held_;  ///< so that no address is used again
};

std::vector<std::string> pageNames(const YGStyleConfigLoad& loader, std::string_view given) {
    std::vector<std::string> names{"", "-", "--"};
    while (!given.empty() && names.size() < 40)
        names.emplace_back(takeUntil(given, "\n"));
    std::vector<std::string> members{"通配", ""};
    for (const auto& [group, panels] : *loader.magicPanelInfos()) {
        for (const auto& [member, panel] : *panels) {
            if (members.size() < 6)
                members.push_back(member);
        }
    }
    if (loader.styleInfos()) {
        for (const auto& [style, record] : *loader.styleInfos()) {
            names.push_back(style);
            for (const std::string& member : members) {
                names.push_back(style + "-" + member);
                names.push_back(style + "-" + member + "-" + members.back());
            }
            if (names.size() > 120)
                break;
        }
    }
    return names;
}

std::string answers(FuzzHost& host, const Files& files, std::string_view given,
                    DiagnosticsSink* sink) {
    host.log.clear();
    YGStyleConfigLoad loader(sink);
    loader.initWithStyleConfigPath(files.style.path(), files.tab.path(), files.magic.path());
    Describer describer;
    describer.add(loader.defaultStyleName());
    describer.add(loader.magicPanelInfos());
    describer.add(loader.styleInfos());
    describer.add(loader.tabStyleInfos());
    for (const std::string& name : pageNames(loader, given)) {
        describer.text += "page " + name + ": ";
        const std::shared_ptr<StyleConfigInfo> page = loader.loadStyleConfigInfoWithName(name);
        describer.add(page);
        if (page) {
            const std::shared_ptr<StyleConfigInfo> copy = page->copyWithZone();
            bool isFind = false;
            YGStyleConfigLoad::replaceMagicPanel(copy->stylePanes(),
                                                 std::make_shared<PanelConfigInfo>(), isFind);
            describer.add(isFind);
        }
    }
    for (const std::string& line : host.log)
        describer.text += line + "\n";
    return describer.text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Files files;
    static const auto host = std::make_shared<FuzzHost>(files);
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);

    std::string_view rest = textOf(data, size);
    for (const MemoryFile* file :
         {&files.style, &files.softStyle, &files.tab, &files.magic, &files.reuse})
        file->put(takeUntil(rest, "=====\n"));
    auto mapping = std::make_shared<MappingDic>();
    (*mapping)["通配"] = {"x", "a&b", std::string(rest.substr(0, rest.find('\n')))};
    host->mapping = mapping;

    Listener listener;
    const std::string silent = answers(*host, files, rest, nullptr);
    require(silent == answers(*host, files, rest, &listener), "a listener changes no answer");
    return 0;
}
