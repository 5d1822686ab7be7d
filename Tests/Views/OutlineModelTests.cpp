#include "Views/OutlineModel.h"

#include "Core/Formatting.h"
#include "Core/NodeExplanation.h"
#include "Views/Components/NodeIcon.h"
#include "Views/OutlineTree.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace brimvale {

namespace {

using namespace brimvale::testing;
using ::testing::ElementsAre;

} // namespace

TEST(OutlineModel, ShowsTheFiguresOfANode) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "folder");
    FSNode &file = add(folder, "not\xFFutf8", 3'000'000);
    add(*root, "file", 1'000'000);
    FSNode &empty = addFolder(*root, "empty");
    folder.fileCount = 1234;
    OutlineModel model;
    model.setTree(root);
    const auto text = [&](const FSNode &node, int column) {
        return model.indexOf(node, column).data().toString();
    };
    EXPECT_EQ(text(folder, OutlineModel::nameColumn), "folder");
    EXPECT_EQ(text(file, OutlineModel::nameColumn), "not\uFFFDutf8");
    EXPECT_EQ(text(folder, OutlineModel::sizeColumn).toStdString(), Fmt::byteFormatter(3'000'000));
    EXPECT_EQ(text(empty, OutlineModel::sizeColumn), "Zero KB");
    EXPECT_EQ(text(folder, OutlineModel::shareColumn), "75%");
    EXPECT_EQ(text(folder, OutlineModel::itemsColumn).toStdString(), Fmt::count(1234));
    EXPECT_DOUBLE_EQ(OutlineModel::share(file), 1);
    EXPECT_EQ(OutlineModel::share(*root), 0);
    EXPECT_EQ(OutlineModel::share(add(empty, "nothing", 0)), 0) << "nor is anything divided by zero";
}

TEST(OutlineModel, TellsSpecialStatesByIconAndWords) {
    const std::shared_ptr<FSNode> root = makeRoot();
    const auto folderThat = [&](bool isSkipped, bool isCloud, bool isUnreadable) {
        FSNode &folder = addFolder(*root, "folder");
        folder.isNotDescended = isSkipped;
        folder.isCloudProvider = isCloud;
        folder.unreadable = isUnreadable;
        return &folder;
    };
    struct Case {
        FSNode *node;
        const char *icon;
        const char *words;
    };
    const std::vector<Case> cases = {
        {folderThat(false, false, false), "folder", ""},
        {&add(*root, "file", 1), "file", ""},
        {&addAggregate(*root, 3, 1), "files", ""},
        {folderThat(true, false, false), "ban",
         "Skipped. System-managed location, not counted toward this scan."},
        {folderThat(true, true, false), "cloud-off",
         "Skipped. A cloud provider owns this folder, and measuring it would make the provider pull down the "
         "whole remote tree. Files that are not downloaded take no space here anyway."},
        {folderThat(false, false, true), "lock",
         "Not readable. Full Disk Access would let this be measured."},
    };
    OutlineModel model;
    model.setTree(root);
    for (const Case &one : cases) {
        SCOPED_TRACE(one.icon);
        EXPECT_EQ(nodeIconName(*one.node), one.icon);
        EXPECT_EQ(explanation(*one.node).value_or(""), one.words);
        for (int column = 0; column < OutlineModel::columns; ++column)
            EXPECT_EQ(model.indexOf(*one.node, column).data(Qt::ToolTipRole).toString(), one.words);
        EXPECT_EQ(model.indexOf(*one.node).data(Qt::AccessibleDescriptionRole).toString(), one.words);
    }
}

TEST(OutlineModel, SortsByEachColumnAndKeepsTheOrderOfEquals) {
    const std::shared_ptr<FSNode> root = makeRoot();
    add(*root, "img 10", 5).fileCount = 1;
    add(*root, "IMG 9", 5).fileCount = 3;
    add(*root, "apple", 7).fileCount = 2;
    add(*root, "Zebra", 1).fileCount = 2;
    add(*root,
        "\xC3\xA9"
        "clair",
        5)
        .fileCount = 2;
    root->sortRecursively();
    OutlineModel model;
    model.setTree(root);
    EXPECT_THAT(rowsIn(model), ElementsAre("apple", "img 10", "IMG 9", "éclair", "Zebra"))
        << "by size, the largest first, until told otherwise";
    struct Case {
        int column;
        Qt::SortOrder order;
        std::vector<std::string> rows;
    };
    const std::vector<Case> cases = {
        {OutlineModel::nameColumn, Qt::AscendingOrder, {"apple", "éclair", "IMG 9", "img 10", "Zebra"}},
        {OutlineModel::nameColumn, Qt::DescendingOrder, {"Zebra", "img 10", "IMG 9", "éclair", "apple"}},
        {OutlineModel::sizeColumn, Qt::AscendingOrder, {"Zebra", "img 10", "IMG 9", "éclair", "apple"}},
        {OutlineModel::shareColumn, Qt::DescendingOrder, {"apple", "img 10", "IMG 9", "éclair", "Zebra"}},
        {OutlineModel::itemsColumn, Qt::DescendingOrder, {"IMG 9", "apple", "éclair", "Zebra", "img 10"}},
        {OutlineModel::itemsColumn, Qt::AscendingOrder, {"img 10", "apple", "éclair", "Zebra", "IMG 9"}},
    };
    for (const Case &one : cases) {
        model.sort(one.column, one.order);
        EXPECT_EQ(rowsIn(model), one.rows) << "column " << one.column << (one.order == 0 ? " up" : " down");
    }
    EXPECT_EQ(root->children().front()->name, "apple") << "the tree's own order stays";
}

TEST(OutlineModel, SortsAVeryLargeFolderByTheSameRules) {
    constexpr std::size_t count = 12'000;
    std::vector<std::string> expected{""};
    for (std::size_t i = 0; i < count; ++i)
        expected.push_back((i % 2 == 0 ? "File " : "fILE ") + std::string(i % 3, '0') + std::to_string(i));
    expected.insert(expected.end(),
                    {"file " + std::string(300, '9'), "file x", "x", "x1y2", "X1Y10", "x2\xFF"});
    std::vector<std::string> shuffled = expected;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    const std::shared_ptr<FSNode> root = makeRoot();
    for (std::size_t i = 0; i < shuffled.size(); ++i)
        add(*root, shuffled[i], i % 2 == 0 ? 5 : 1);
    OutlineModel model;
    model.setTree(root);
    std::vector<FSNode *> bySize = everythingBeneath(*root);
    std::stable_partition(bySize.begin(), bySize.end(), [](const FSNode *node) { return node->size == 5; });
    EXPECT_EQ(model.rowsOf(*root), bySize) << "equal sizes are in the tree's order";

    model.sort(OutlineModel::nameColumn, Qt::AscendingOrder);
    EXPECT_EQ(namesOf(model.rowsOf(*root)), expected);
    model.sort(OutlineModel::nameColumn, Qt::DescendingOrder);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(namesOf(model.rowsOf(*root)), expected);
}

} // namespace brimvale
