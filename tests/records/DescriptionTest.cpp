// SPDX-License-Identifier: MIT
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/records/Description.h"

namespace yg {
namespace {

struct Place {
    std::string name;
    int row = 0;
    int doubled() const { return 2 * row; }
};

}  // namespace

template <>
struct Description<Place> {
    static constexpr std::tuple fields{
        Field{"row", &Place::row},
        Field{"name", &Place::name},
        Field{"doubled", &Place::doubled},
    };
};

namespace {

TEST(Fields, AreVisitedInTheOrderOfTheDescription) {
    std::vector<std::string> seen;
    forEachField(Place{"here", 3}, [&](std::string_view name, const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, int>)
            seen.push_back(std::string(name) + '=' + std::to_string(value));
        else
            seen.push_back(std::string(name) + '=' + value);
    });
    EXPECT_THAT(seen, ::testing::ElementsAre("row=3", "name=here", "doubled=6"));
}

TEST(Fields, AMemberIsVisitedWhereItStands) {
    const Place place{"here", 3};
    const void* visited = nullptr;
    forEachField(place, [&](std::string_view name, const auto& value) {
        if (name == "name")
            visited = &value;
    });
    EXPECT_EQ(visited, &place.name);
}

}  // namespace
}  // namespace yg
