// SPDX-License-Identifier: MIT
//
// Writes images as the tool does (WriterLoop.h), to out.png in the user's folder. The width of the
// image goes round with the number.
#include <string>
#include <vector>

#include "crash/WriterLoop.h"
#include "ygconfig/Run.h"
#include "ygconfig/commandline/CommandLine.h"

int main(int count, char** arguments) {
    if (count < 4)
        return 2;
    const std::string root = arguments[2];
    const auto save = [&](long number) {
        const std::vector<std::string> words = {
            "--root",  root,
            "image",   "strip",
            "-o",      root + "/user/out.png",
            "--width", std::to_string(number % yg::testing::imageWidths + 1)};
        return yg::tool::run(yg::tool::readCommandLine(words), {}).exitCode ==
               yg::tool::ExitCode::answer;
    };
    return yg::testing::saveOnAndOn(save, count, arguments);
}
