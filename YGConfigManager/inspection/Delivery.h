// SPDX-License-Identifier: MIT
//
// Something that a server delivers in place of a file of the storage, to be tried before it is
// delivered: Inspection::ofDelivery. Plain values.
#pragma once

#include <optional>
#include <string>

namespace yg {

struct Delivery {
    /// What is delivered, by the operation that takes it.
    enum class Kind {
        servers,      ///< YGServerCfgLoader::reloadServerConfigWithData
        webPages,     ///< YGWebPageUrlConfig::replaceDataFromServer
        requestUrls,  ///< what a download of YGHttpReqUrlMgr does
    };

    Kind kind = Kind::servers;  ///< what is delivered
    std::string name;           ///< what findings call the file that was delivered
    std::string bytes;          ///< as delivered
    /// For servers: the user's right level, that of host.json when it is absent, and whether the
    /// user belongs to the grey release. They select the file that is replaced.
    std::optional<std::string> right = {};
    bool isGray = false;
    /// For web pages: the name of the table.
    std::string table = "web_page_urls.xml";
};

}  // namespace yg
