// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"

namespace yg {

std::shared_ptr<YGHttpReqUrlModel> YGHttpReqUrlModel::modelWithJSON(std::string_view bytes) {
    auto model = yg::modelWithJSON<YGHttpReqUrlModel>(bytes);
    if (model)
        model->urlConfigList_ =
            modelArrayWithClass<YGHttpUrlConfigModel>(model->urlConfigList_.json());
    return model;
}

std::string YGHttpReqUrlModel::description() const {
    return modelToJSONString(*this);
}

}  // namespace yg
