#include <zorvodsg/values/AttributeMap.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ZorvoDSG::System {
namespace {

using namespace std::string_literals;

std::vector<std::string> Names(const AttributeMap& map) {
    std::vector<std::string> names;
    for (const auto& [name, value] : map) {
        names.push_back(name);
    }
    return names;
}

TEST(AttributeMap, BuiltFromListsAndRangesKeepingTheFirstOfEachName) {
    const AttributeMap listed{{"units", "m"s}, {"scale_factor", 0.5}, {"units", "km"s}};
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(Names(listed), (std::vector<std::string>{"units", "scale_factor"}));
    EXPECT_EQ(std::get<std::string>(listed.at("units")), "m");

    const std::map<std::string, NcVariant> sorted{{"b", int32_t{2}}, {"a", int32_t{1}}};
    const AttributeMap fromMap(sorted);
    EXPECT_EQ(Names(fromMap), (std::vector<std::string>{"a", "b"}));
    const std::vector<std::pair<std::string, NcVariant>> pairs{{"b", int32_t{2}}, {"a", int32_t{1}}};
    const AttributeMap fromIterators(pairs.begin(), pairs.end());
    EXPECT_EQ(Names(fromIterators), (std::vector<std::string>{"b", "a"}));
    EXPECT_FALSE(fromMap == fromIterators);  // same attributes, other order
    EXPECT_TRUE(fromMap == AttributeMap(sorted));
    EXPECT_FALSE(listed == AttributeMap({{"units", int32_t{1}}, {"scale_factor", 0.5}}));  // no throw across types
}

TEST(AttributeMap, StandardMembersWithTheirStandardMeaning) {
    AttributeMap map{{"a", int32_t{1}}, {"b", int32_t{2}}, {"c", int32_t{3}}};
    const auto [kept, added] = map.insert({"a", int32_t{9}});
    EXPECT_FALSE(added);
    EXPECT_EQ(kept, map.find("a"));
    EXPECT_EQ(std::get<int32_t>(kept->second), 1);

    const auto [replaced, addedByAssign] = map.insert_or_assign("b", 2.5);
    EXPECT_FALSE(addedByAssign);
    EXPECT_EQ(std::get<double>(replaced->second), 2.5);
    EXPECT_TRUE(map.insert_or_assign("d", int32_t{4}).second);

    EXPECT_EQ(map.erase("b"), 1u);
    EXPECT_EQ(map.erase("b"), 0u);
    EXPECT_EQ(Names(map), (std::vector<std::string>{"a", "c", "d"}));
    EXPECT_EQ(std::get<int32_t>(map.find("d")->second), 4);  // indexes follow the removal
    EXPECT_EQ(map.get("b"), nullptr);
    EXPECT_EQ(map.count("c"), 1u);
    EXPECT_THROW(map.at("b"), std::out_of_range);

    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find("a"), map.cend());
}

}  // namespace
}  // namespace ZorvoDSG::System
