// SPDX-License-Identifier: MIT
//
// A copy of the sample terminal, without a download server.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "files/TemporaryFolder.h"

namespace yg::testing {

class SampleRoot {
public:
    SampleRoot() {
        std::filesystem::copy(YG_SAMPLE_FOLDER, path(), std::filesystem::copy_options::recursive);
        std::ofstream(path() + "/host.json")
            << R"({"rightLevel": "free", "mappings": {"模版通配": {"STOCK": ["SH990001"]}}})";
    }

    std::string path() const { return folder_ / "root"; }

private:
    files::TemporaryFolder folder_;
};

}  // namespace yg::testing
