// SPDX-License-Identifier: MIT
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "ygconfig/files/DroppedNodes.h"
#include "ygconfig/files/UnreadableFiles.h"
#include "ygconfig/report/Model.h"

namespace yg::tool {

namespace {

bool isUsers(std::string_view file) {
    return file.starts_with("user/");
}

std::string_view nameOf(std::string_view file) {
    return file.substr(file.rfind('/') + 1);
}

/// A file of the storage, read alone: by `read`, and as the terminal does.
template <class Write>
void writeFile(JsonWriter& json, ModelSource& source, const std::string& file, const Write& write) {
    using Storage = RootContents::Storage;
    source.contents.asTerminal(isUsers(file) ? Storage::user : Storage::shipped, [&] {
        json.object([&] {
            json.member("file", file);
            json.member("name", nameOf(file));
            json.member("isUsers", isUsers(file));
            write();
        });
    });
}

/// A table that Loader reads from XML. `writeContent` writes what is in its root.
template <class Loader, class WriteContent>
void writeTable(JsonWriter& json, ModelSource& source, const std::string& file,
                std::string_view member, const WriteContent& writeContent) {
    writeFile(json, source, file, [&] {
        UnreadableFiles unreadable;
        DroppedNodes dropped(unreadable);
        const auto loader = Loader::initWithFileName(nameOf(file), &dropped);
        const xml::Document document = loader ? loader->docment() : xml::Document();
        xml::Element root = document.root();
        if (root && dropped.contains(root))
            root = {};
        json.member("isRead", static_cast<bool>(root));
        json.member(member, [&] { writeContent(root, dropped); });
    });
}

/// From the start tag to the end tag: the text is a part of it.
void writeAt(JsonWriter& json, ModelSource& source, const std::string& file,
             const xml::Element& element) {
    const auto place = element.place();
    source.places.writeAt(
        json, place ? std::optional(RootPlace{file, place->begin, place->end, ""}) : std::nullopt);
}

}  // namespace

void writeSettings(JsonWriter& json, ModelSource& source) {
    json.list(source.contents.settingsFiles(), [&](const std::string& file) {
        const auto writeSections = [&](const xml::Element& root, const DroppedNodes& dropped) {
            json.list(root.elements(), [&](const xml::Element& section) {
                json.object([&] {
                    json.member("name", section.name());
                    json.member("items", [&] {
                        json.list(section.elements(), [&](const xml::Element& item) {
                            json.object([&] {
                                json.member("name", item.name());
                                json.member("text", item.stringValue());
                                if (const auto description = item.attribute("description"))
                                    json.member("description", *description);
                                if (dropped.contains(item))
                                    json.member("isSkipped", true);
                                writeAt(json, source, file, item);
                            });
                        });
                    });
                });
            });
        };
        writeTable<YGReadonlyAppConfigManager>(json, source, file, "sections", writeSections);
    });
}

void writeWebPages(JsonWriter& json, ModelSource& source) {
    json.list(source.contents.webPageFiles(), [&](const std::string& file) {
        const auto writePages = [&](const xml::Element& root, const DroppedNodes& dropped) {
            json.list(root.elements(), [&](const xml::Element& page) {
                json.object([&] {
                    json.member("key", page.attribute("key"));
                    json.member("url", page.stringValue());
                    if (dropped.contains(page))
                        json.member("isSkipped", true);
                    writeAt(json, source, file, page);
                });
            });
        };
        writeTable<YGWebPageUrlConfig>(json, source, file, "pages", writePages);
    });
}

void writeRequestUrls(JsonWriter& json, ModelSource& source) {
    json.list(source.contents.requestUrlFiles(), [&](const std::string& file) {
        writeFile(json, source, file, [&] {
            std::shared_ptr<const YGHttpReqUrlModel> list;
            if (const auto manager = YGHttpReqUrlMgr::make()) {
                manager->readUrlModelFromFile();
                list = manager->urlModel();
            }
            json.member("isRead", static_cast<bool>(list));
            if (list)
                json.member("md5", list->md5Value());
            const auto entries = list ? list->urlConfigs() : nullptr;
            const auto places = source.contents.requestUrlPlaces(file);
            std::set<std::string> seen;
            json.member("urls", [&] {
                json.list(entries ? *entries : YGHttpReqUrlModel::List::Items(),
                          [&](const auto& entry) {
                              const auto& key = entry->urlKey();
                              const bool isFirst = key && seen.insert(*key).second;
                              const auto place = isFirst ? places.find(*key) : places.end();
                              json.object([&] {
                                  json.member("key", key);
                                  json.member("url", entry->urlValue());
                                  if (!isFirst)
                                      json.member("isSkipped", true);
                                  source.places.writeAt(json, place == places.end()
                                                                  ? std::nullopt
                                                                  : std::optional(place->second));
                              });
                          });
            });
        });
    });
}

}  // namespace yg::tool
