// The map and the pool under the ini model.
#include "MIniData_map.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <string>

#include "MIniData.h"
#include "MIniData_pool.h"

namespace {

using Map = MIniDataMap<int, MIniDataCaseSensitiveCompare>;
using Reference = std::map<std::string, int*>;

// Few enough that names come again, with long ones and bytes of every kind among them.
std::string random_name() {
    const auto number = *rc::gen::inRange(0, 400);
    std::string name = std::to_string(number);
    if (number % 3 == 0) name.insert(0, "a name too long to be kept inside ");
    if (number % 7 == 0) name += '\0';
    if (number % 11 == 0) name.insert(0, 1, '\xE4');
    return name;
}

void expect_same(const Map& map, const Reference& reference) {
    RC_ASSERT(map.size() == reference.size());
    RC_ASSERT(map.empty() == reference.empty());
    auto place = map.begin();
    for (const auto& [name, object] : reference) {
        RC_ASSERT(place != map.end());
        RC_ASSERT(place->first.view() == name);
        RC_ASSERT(place->second == object);
        ++place;
    }
    RC_ASSERT(place == map.end());
}

RC_GTEST_PROP(MIniDataMapTest, DoesWhatAnOrderedMapDoes, ()) {
    std::vector<int> objects(500);
    Map map;
    Reference reference;
    for (int& object : objects) {
        const std::string name = random_name();
        if (*rc::gen::inRange(0, 4) == 0) {
            const auto place = map.find(name);
            const auto expected = reference.find(name);
            RC_ASSERT((place == map.end()) == (expected == reference.end()));
            if (place == map.end()) continue;
            const auto next = map.erase(place);
            const auto expected_next = reference.erase(expected);
            RC_ASSERT((next == map.end()) == (expected_next == reference.end()));
            if (next != map.end()) RC_ASSERT(next->first.view() == expected_next->first);
        } else {
            map.emplace(name, &object);
            reference.emplace(name, &object);
        }
        RC_ASSERT(map.contains(name) == reference.contains(name));
    }
    expect_same(map, reference);
}

TEST(MIniDataMapTest, TakesNamesInOrderAndBackwards) {
    int object = 0;
    Map up;
    Map down;
    for (int i = 1000; i < 3000; ++i) {
        up.emplace(std::to_string(i), &object);
        down.emplace(std::to_string(3999 - i), &object);
    }
    int number = 1000;
    auto other = down.begin();
    for (const auto& [name, value] : up) {
        EXPECT_EQ(std::to_string(number++), name.view());
        EXPECT_EQ(name.view(), (other++)->first.view());
        EXPECT_EQ(&object, value);
    }
    EXPECT_EQ(3000, number);
    EXPECT_EQ(down.end(), other);
    EXPECT_EQ(up.end(), up.find("0999"));
    EXPECT_EQ("2999", up.lower_bound("29980")->first.view());
}

TEST(MIniDataMapTest, SwapsAndClears) {
    int object = 0;
    Map one;
    Map other;
    one.emplace("a name too long to be kept inside", &object);
    one.swap(other);
    EXPECT_TRUE(one.empty());
    EXPECT_EQ(one.begin(), one.end());
    EXPECT_TRUE(other.contains("a name too long to be kept inside"));
    other.clear();
    EXPECT_TRUE(other.empty());
    EXPECT_FALSE(other.contains("a name too long to be kept inside"));
}

TEST(MIniDataPoolTest, GivesTheRoomOfADroppedLineAgain) {
    MIniDataLinePool pool;
    std::vector<MIniDataLine*> lines;
    for (int i = 0; i < 1000; ++i) {
        lines.push_back(i % 2 == 0 ? pool.make<MIniDataLine>(std::to_string(i))
                                   : pool.make<MIniDataEntry>(std::to_string(i), std::size_t{1}));
    }
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(std::to_string(i), lines[static_cast<std::size_t>(i)]->text);
    MIniDataLine* const dropped = lines.back();
    pool.drop(dropped);
    lines.back() = pool.make<MIniDataLine>("another line, longer than what is kept inside a string");
    EXPECT_EQ(dropped, lines.back());
    for (MIniDataLine* line : lines) pool.drop(line);
    pool.clear();
    MIniDataLine* const line = pool.make<MIniDataLine>("after");
    EXPECT_EQ("after", line->text);
    pool.drop(line);
}

}  // namespace
