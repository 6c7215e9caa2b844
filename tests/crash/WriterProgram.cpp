// SPDX-License-Identifier: MIT
//
// Saves by one of the library's savers (WriterLoop.h).
#include <string_view>

#include "crash/WriterLoop.h"

int main(int count, char** arguments) {
    if (count < 4)
        return 2;
    yg::setHost(yg::testing::quietHost(arguments[2]));
    for (const yg::testing::Saver& saver : yg::testing::savers()) {
        if (saver.name == std::string_view(arguments[1]))
            return yg::testing::saveOnAndOn(saver.open(), count, arguments);
    }
    return 2;
}
