// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Delivering.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/FileFaults.h"
#include "YGConfigManager/inspection/Html.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/Transport.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// How many names that are lost, or added, or changed, are reported.
constexpr std::size_t mostNames = 100;

/// A folder for one file, removed at the end.
class WriteFolder {
public:
    WriteFolder() {
        std::error_code error;
        const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
        path_ = (error ? "/tmp" : parent.string()) + "/yg-delivery-XXXXXX";
        isMade_ = ::mkdtemp(path_.data()) != nullptr;
    }
    ~WriteFolder() {
        if (!isMade_)
            return;
        if (!file_.empty())
            ::unlink(file_.c_str());
        ::rmdir(path_.c_str());
    }
    WriteFolder(const WriteFolder&) = delete;
    WriteFolder& operator=(const WriteFolder&) = delete;

    explicit operator bool() const { return isMade_; }
    const std::string& path() const { return path_; }

    /// The path of the file.
    const std::string& pathOf(std::string_view name) {
        file_ = text::joinPath(path_, name);
        return file_;
    }

private:
    std::string path_;
    std::string file_;
    bool isMade_ = false;
};

/// Reads the files of a root and writes into another folder.
class DeliveryHost final : public Host {
public:
    DeliveryHost(std::shared_ptr<StandAloneHost> files, WriteFolder& folder,
                 std::optional<std::string> right)
        : files_(std::move(files)), folder_(folder), right_(std::move(right)) {}

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override {
        auto path = files_->getStorageFilePath(area, subFolderPath, fileName, false);
        if (path && isNeedWrite)
            path = folder_.pathOf(*fileName);
        return path;
    }
    std::optional<std::string> getUserRightDescription() override {
        return right_ ? right_ : files_->getUserRightDescription();
    }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return nullptr;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return std::nullopt; }
    /// Nothing is asked of it: the delivery is the answer.
    std::optional<std::string> configServer() override { return "localhost"; }
    void writeLog(LogChannel, std::string_view) override {}

private:
    std::shared_ptr<StandAloneHost> files_;
    WriteFolder& folder_;
    std::optional<std::string> right_;
};

/// Points in a text in which "&" is "&amp;" for its parser, as points in the text itself.
class Ampersands {
public:
    explicit Ampersands(std::string_view text) {
        std::uint32_t line = 1;
        std::uint32_t column = 1;
        if (text.starts_with(text::byteOrderMark))
            text.remove_prefix(text::byteOrderMark.size());
        while (!text.empty()) {
            const char c = text.front();
            if (c == '&')
                columns_[line].push_back(column);
            column = c == '\n' ? 1 : column + (c == '&' ? 5 : 1);
            line += c == '\n' ? 1 : 0;
            text.remove_prefix(text::firstCharacter(text).size);
        }
    }

    TextPoint asWritten(TextPoint point) const {
        const auto line = columns_.find(point.line);
        if (line == columns_.end())
            return point;
        const auto next = std::ranges::lower_bound(line->second, point.column);
        const auto before = static_cast<std::uint32_t>(next - line->second.begin());
        if (before == 0)
            return point;
        const std::uint32_t last = *std::prev(next);
        // Inside of one, its end is meant.
        return {point.line, std::max(point.column, last + 5) - 4 * before};
    }

private:
    std::map<std::uint32_t, std::vector<std::uint32_t>> columns_;  ///< by line, as parsed
};

/// Gathers what is found about the delivery; what is wrong with the file that is there is another
/// matter, but its names count.
class DeliverySink final : public DiagnosticsSink {
public:
    explicit DeliverySink(const Delivery& delivery)
        : name_(delivery.name), delivered_(delivery.name) {
        if (delivery.kind == Delivery::Kind::webPages)
            ampersands_.emplace(delivery.bytes);
    }

    void beginDelivery() { isDelivering_ = true; }

    void report(const Finding& finding) override {
        if (!isDelivering_)
            return;
        Found found{finding};
        found.finding.place = ofDelivery(finding.place);
        found.finding.extent = ofDelivery(finding.extent);
        for (RelatedPlace& related : found.finding.related)
            related.place = ofDelivery(related.place);
        delivered_.add(std::move(found));
    }
    bool wantsUsed() const override { return false; }
    void named(const AttributeInfo& row, const xml::Element& element,
               std::string_view value) override {
        (isDelivering_ ? delivered_ : present_).named(row, element, value);
    }

    const std::vector<NameUse>& present() const { return present_.names(); }
    Gathering& delivered() { return delivered_; }

    Place ofDelivery(Place place) const {
        place.file = name_;
        if (ampersands_) {
            place.begin = ampersands_->asWritten(place.begin);
            place.end = ampersands_->asWritten(place.end);
        }
        return place;
    }
    StoredNames ofDelivery(StoredNames names) const {
        for (StoredName& name : names) {
            name.place = ofDelivery(name.place);
            name.contentPlace = ofDelivery(name.contentPlace);
        }
        return names;
    }

private:
    const std::string name_;
    std::optional<Ampersands> ampersands_;
    Gathering present_;
    Gathering delivered_;
    bool isDelivering_ = false;
};

/// What came of a delivery.
struct Tried {
    bool isTaken;
    StoredNames present;
    StoredNames delivered;
};

std::optional<Tried> tryServers(const Delivery& delivery, DeliverySink& sink) {
    const auto loader = YGServerCfgLoader::initWithIsGray(delivery.isGray, &sink);
    if (!loader)
        return std::nullopt;
    sink.beginDelivery();
    const bool isTaken = loader->reloadServerConfigWithData(delivery.bytes, "");
    return Tried{isTaken, serverNames(sink.present(), loader->configPath().value_or("")),
                 sink.ofDelivery(serverNames(sink.delivered().names(), ""))};
}

std::optional<Tried> tryWebPages(const Delivery& delivery, DeliverySink& sink) {
    const auto table = YGWebPageUrlConfig::initWithFileName(delivery.table, &sink);
    if (!table)
        return std::nullopt;
    const std::string path = YGWebPageUrlConfig::getFilePath(delivery.table, false).value_or("");
    sink.beginDelivery();
    const bool isTaken = table->replaceDataFromServer(delivery.bytes);
    return Tried{isTaken, webPageNames(sink.present(), path),
                 sink.ofDelivery(webPageNames(sink.delivered().names(), ""))};
}

std::optional<Tried> tryRequestUrls(const Delivery& delivery, DeliverySink& sink) {
    const RequestUrlsOver transport{[&](const std::string&, const YGHttpReqUrlMgr::Finish& finish) {
        finish(delivery.bytes, std::nullopt, std::nullopt);
    }};
    const auto manager = transport.make(&sink);
    if (!manager)
        return std::nullopt;
    manager->readUrlModelFromFile();
    const auto before = manager->urlModel();
    sink.beginDelivery();
    manager->updateHttpReqUrls();
    const std::string path =
        currentHost()
            ->getStorageFilePath(1, std::nullopt, "request_urls_json.txt", false)
            .value_or("");
    const std::string present = files::readWholeFile(path).bytes;
    return Tried{manager->urlModel() != before,
                 requestUrlNames(present, path).value_or(StoredNames()),
                 sink.ofDelivery(requestUrlNames(delivery.bytes, "").value_or(StoredNames()))};
}

std::string valueOf(const StoredName& name) {
    return name.group.empty() ? name.name : name.group + "/" + name.name;
}

/// Calls `report(name, more)` for the first of the names, with a text on those that are left out.
template <class Report>
void forTheFirst(const StoredNames& names, Report&& report) {
    for (std::size_t at = 0; at < std::min(names.size(), mostNames); ++at) {
        const std::size_t further = at + 1 == mostNames ? names.size() - mostNames : 0;
        report(names[at], further > 0 ? " and " + std::to_string(further) + " more" : "");
    }
}

void reportDifferences(const Delivery& delivery, const Tried& tried, Gathering& findings) {
    forTheFirst(missingFrom(tried.delivered, tried.present), [&](const StoredName& name,
                                                                 const std::string& more) {
        findings.onFile("lost-by-delivery"_rule, delivery.name,
                        {.value = valueOf(name),
                         .message = described(name) + more +
                                    ": the present file has this, the delivery has not.",
                         .related = {{name.place, "the present file has it here"}}});
    });
    forTheFirst(missingFrom(tried.present, tried.delivered), [&](const StoredName& name,
                                                                 const std::string& more) {
        findings.onPlace(
            "added-by-delivery"_rule, name.place,
            {.value = valueOf(name),
             .message = described(name) + more + ": the present file does not have this."});
    });
    std::map<decltype(std::declval<const StoredName&>().key()), const StoredName*> present;
    for (const StoredName& name : tried.present)
        present.emplace(name.key(), &name);
    StoredNames changed;
    for (const StoredName& name : tried.delivered) {
        const auto found = present.find(name.key());
        if (found != present.end() && name.content && found->second->content &&
            *name.content != *found->second->content)
            changed.push_back(name);
    }
    forTheFirst(changed, [&](const StoredName& name, const std::string& more) {
        findings.onPlace("changed-by-delivery"_rule, name.place,
                         {.value = valueOf(name),
                          .message = described(name) + more +
                                     ": the delivery gives this another value than the present "
                                     "file.",
                          .related = {{present.at(name.key())->place, "the present value"}}});
    });
}

constexpr std::string_view changesNothing = " The delivery changes nothing until then.";

/// Why a list that is not JSON is refused.
Found unreadableList(const Finding& finding, const Delivery& delivery) {
    const Rule& refused = "refused-delivery"_rule;
    auto fault = encodingFaultOfJson(delivery.bytes);
    if (!fault)
        fault = jsonFault(delivery.bytes, refused);
    if (!fault)
        return {
            {refused, finding.place, finding.place, {}, {}, {}, {}},
            {},
            "Write one JSON object; this is " + finding.value + '.' + std::string(changesNothing)};
    fault->rule = &refused;
    fault->message += changesNothing;
    return foundOf(std::move(*fault), delivery.name);
}

/// One finding for what is not taken as a whole. Of a list the loader warns only, since the one
/// that is there stays.
void reportRefusal(const Delivery& delivery, Gathering& findings) {
    std::vector<Found> kept;
    std::optional<std::size_t> unreadable;
    for (Found& found : findings.found()) {
        const Finding& finding = found.finding;
        if (&finding.rule == &"list-without-digest"_rule) {
            Found refused{
                {"refused-delivery"_rule, finding.place, finding.extent, {}, "md5Value", {}, {}}};
            kept.push_back(std::move(refused));
            kept.back().message =
                "Add the member \"md5Value\": without a digest the delivery changes nothing.";
        } else if (&finding.rule == &"failed-download"_rule) {
            kept.push_back(unreadableList(finding, delivery));
        } else if (&finding.rule != &"unreadable-delivery"_rule &&
                   &finding.rule != &"unreadable-web-pages"_rule) {
            kept.push_back(std::move(found));
        } else if (unreadable) {
            // It may follow from the first.
            std::vector<RelatedPlace>& related = kept[*unreadable].finding.related;
            if (finding.place.begin.line > kept[*unreadable].finding.place.begin.line)
                related.push_back({finding.place, "a further error, which may follow"});
        } else {
            unreadable = kept.size();
            found.message =
                (finding.value.empty() ? std::string("Deliver a document: this is empty.")
                                       : plainXmlError(finding.value)) +
                std::string(changesNothing);
            kept.push_back(std::move(found));
        }
    }
    findings.found().swap(kept);
}

}  // namespace

bool tryDelivery(const Delivery& delivery, const std::string& root, Gathering& findings,
                 std::string& error) {
    const files::UnsavedTexts none;
    const files::UnsavedTextsScope asStored(none);
    const StandAloneHost::Opened opened = StandAloneHost::open(root);
    if (!opened) {
        error = opened.error;
        return false;
    }
    WriteFolder folder;
    if (!folder) {
        error = folder.path() + ": " + std::generic_category().message(errno);
        return false;
    }
    const auto host = std::make_shared<DeliveryHost>(opened.host, folder, delivery.right);
    const HostOfThread hostOfThread(host);
    DeliverySink sink(delivery);
    const auto attempt = delivery.kind == Delivery::Kind::servers    ? tryServers
                         : delivery.kind == Delivery::Kind::webPages ? tryWebPages
                                                                     : tryRequestUrls;
    const std::optional<Tried> tried = attempt(delivery, sink);
    if (!tried) {
        error = "the host does not say where the file is that the delivery replaces";
        return false;
    }
    Gathering& delivered = sink.delivered();
    reportHtml(delivered, [&](std::string_view) -> std::string_view { return delivery.bytes; });
    reportRefusal(delivery, delivered);
    if (delivery.kind == Delivery::Kind::servers)
        checkServerAddresses(delivered);
    else
        checkAddresses(tried->delivered, delivered);
    if (tried->isTaken)
        reportDifferences(delivery, *tried, delivered);
    for (Found& found : delivered.takeFound())
        findings.add(std::move(found));
    return true;
}

}  // namespace yg
