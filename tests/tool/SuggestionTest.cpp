// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ygconfig/commandline/Suggestion.h"

namespace {

using yg::tool::suggestion;

const std::vector<std::string> commands{"dump", "show", "settings", "servers", "web-page"};

TEST(Suggestion, IsAQuestionOrNothing) {
    EXPECT_EQ(suggestion("dmup", commands), "; did you mean 'dump'?");
    EXPECT_EQ(suggestion("palette", commands), "");
}

}  // namespace
