// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGHttpReqUrlModel> YGHttpReqUrlModel::modelWithJSON(OptionalText bytes) {
    return guarded("read request urls", [bytes] { return read(*bytes); });
}

std::shared_ptr<YGHttpReqUrlModel> YGHttpReqUrlModel::read(std::string_view bytes) {
    const JsonValue::Parsed parsed = orOutOfMemory(JsonValue::parse(bytes));
    const auto object = parsed ? parsed.value->object() : nullptr;
    if (!object)
        return nullptr;
    auto model = detail::modelWithObject<YGHttpReqUrlModel>(*object);
    if (const JsonList list = model->urlConfigList_.json())
        model->urlConfigList_ = detail::modelsOf<YGHttpUrlConfigModel>(*list);
    return model;
}

std::string YGHttpReqUrlModel::description() const {
    return modelToJSONString(*this);
}

}  // namespace yg
