// SPDX-License-Identifier: MIT
//
// The server configuration when memory runs out: a load or a delivery counts as a whole or not at
// all.
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

std::string servers(std::string_view name) {
    return "<application md5='" + testing::longText + std::string(name) +
           "'><server type='1' domain='" + testing::longText + "'><s key='1' name='" +
           std::string(name) + ";" + testing::longText + "' addrs='1:" + testing::longText +
           ":80'/></server><server type='8'><s key='2' name='b' addrs='b:1'/></server>"
           "</application>";
}

class ServerMemory : public testing::MemoryTest {
protected:
    ServerMemory() { put("skeleton_v1.xml", servers("old")); }

    static std::string textOf(const std::shared_ptr<YGServerCfgLoader>& loader) {
        return testing::wholeText(loader);
    }
    std::string file() const { return files::contentOf(root.at("skeleton_v1.xml")); }

    std::shared_ptr<YGServerCfgLoader> loader;
};

}  // namespace
}  // namespace yg

#endif
