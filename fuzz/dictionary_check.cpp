// SPDX-License-Identifier: MIT
//
// Whether the dictionary given has every attribute of the layout files as an entry.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "YGConfigManager/layout/LayoutAttributes.h"

namespace {

template <class Record, std::size_t size>
int missing(const std::string& dictionary, const yg::AttributeRow<Record> (&table)[size]) {
    int count = 0;
    for (const yg::AttributeRow<Record>& row : table) {
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
    const int count = missing(dictionary, yg::styleAttributes) +
                      missing(dictionary, yg::panelAttributes) +
                      missing(dictionary, yg::elementAttributes);
    return count == 0 ? 0 : 1;
}
