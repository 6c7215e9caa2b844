// SPDX-License-Identifier: MIT
//
// Whether the dictionary given has every attribute of the layout files as an entry.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace {

template <class Record>
int missing(const std::string& dictionary) {
    int count = 0;
    for (const yg::AttributeInfo& row : yg::attributesOf<Record>.rows()) {
        const std::string entry = "\n\"" + std::string(row.name) + "=\\\"";
        if (dictionary.find(entry) == std::string::npos) {
            std::fprintf(stderr, "missing: \"%s=\\\"\n", std::string(row.name).c_str());
            ++count;
        }
    }
    return count;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2)
        return 2;
    std::ifstream file(arguments[1]);
    const std::string dictionary((std::istreambuf_iterator<char>(file)),
                                 std::istreambuf_iterator<char>());
    const int count = missing<yg::StyleConfigInfo>(dictionary) +
                      missing<yg::PanelConfigInfo>(dictionary) +
                      missing<yg::ElementConfigInfo>(dictionary);
    return count == 0 ? 0 : 1;
}
