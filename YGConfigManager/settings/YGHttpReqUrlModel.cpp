// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/JsonEntry.h"
#include "YGConfigManager/settings/Storage.h"

namespace yg {

std::shared_ptr<YGHttpReqUrlModel> YGHttpReqUrlModel::modelWithJSON(OptionalText bytes) {
    return guarded("read request urls", [bytes] {
        return read({*bytes, {}}, "unreadable-url-list"_rule, Reporter(nullptr));
    });
}

std::shared_ptr<YGHttpReqUrlModel> YGHttpReqUrlModel::read(const JsonText& text,
                                                           const Rule& unreadable,
                                                           const Reporter& reporter) {
    std::shared_ptr<YGHttpReqUrlModel> model;
    readingJson(reporter, text, unreadable, [&](JsonEntry& list) {
        model = std::make_shared<YGHttpReqUrlModel>();
        list.read(*model);
        if (!model->md5Value_ || model->md5Value_->empty())
            list.report("list-without-digest"_rule, "md5Value");
        const JsonList urls = model->urlConfigList_.json();
        if (!urls)
            return;
        const auto entries = std::make_shared<List::Items>();
        RecordMap<Place> places;
        list.forEachObject("urlConfigList", *urls, [&](JsonEntry& url) {
            entries->push_back(std::make_shared<YGHttpUrlConfigModel>());
            url.read(*entries->back());
            const std::optional<std::string>& key = entries->back()->urlKey();
            const std::optional<std::string>& address = entries->back()->urlValue();
            if (!key && !url.has("urlKey"))
                url.report("url-without-key"_rule);
            const Place* const earlier = key ? url.define(*key, places) : nullptr;
            if (earlier)
                url.report("duplicate-url-key"_rule, {}, *key, earlier);
            if (!address && !url.has("urlValue"))
                url.report("url-without-value"_rule, {}, key ? *key : "");
            else if (address && hasBlanksAround(*address))
                url.report("blanks-around-address"_rule, "urlValue", *address);
        });
        model->urlConfigList_ = List(entries);
    });
    return model;
}

std::string YGHttpReqUrlModel::description() const {
    return modelToJSONString(*this);
}

}  // namespace yg
