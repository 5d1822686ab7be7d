#include "Core/Scan/OutermostNodes.h"
#include "Support/SampleTree.h"

#include <gtest/gtest.h>
#include <map>

namespace brimvale {

TEST(OutermostNodes, LeavesOutDescendants) {
    FSNode root("root", "/root", true);
    std::map<std::string, FSNode *> nodes{{"root", &root}};
    for (const auto &[name, parent] : std::vector<std::pair<std::string, std::string>>{
             {"a", "root"}, {"b", "root"}, {"aa", "a"}, {"ab", "a"}, {"aaa", "aa"}, {"ba", "b"}})
        nodes[name] = &testing::addFolder(*nodes[parent], name);
    struct Case {
        std::vector<std::string> given;
        std::vector<std::string> outermost;
    };
    for (const Case &one :
         {Case{{}, {}}, Case{{"aa", "ab", "b"}, {"aa", "ab", "b"}}, Case{{"aaa", "a"}, {"a"}},
          Case{{"b", "aaa", "ab", "a", "ba"}, {"b", "a"}},
          Case{{"aa", "aaa", "ab", "ba"}, {"aa", "ab", "ba"}}, Case{{"aaa", "root", "b"}, {"root"}}}) {
        std::vector<FSNode *> given;
        for (const std::string &name : one.given)
            given.push_back(nodes[name]);
        EXPECT_EQ(testing::namesOf(outermostNodes(given)), one.outermost)
            << ::testing::PrintToString(one.given);
    }
}

} // namespace brimvale
