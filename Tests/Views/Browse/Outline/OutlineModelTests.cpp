#include "Views/Browse/Outline/OutlineModel.h"

#include "Core/Scan/NodeExplanation.h"
#include "Core/Text/Formatting.h"
#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineTree.h"
#include "Views/Components/NodeName.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <random>

namespace brimvale {

using namespace brimvale::testing;
using ::testing::ElementsAre;

TEST(OutlineModel, ShowsTheFiguresOfANode) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "folder");
    FSNode &file = add(folder, "not\xFFutf8\n\u202Egnp.exe", 3'000'000);
    add(*root, "file", 1'000'000);
    FSNode &empty = addFolder(*root, "empty");
    FSNode &crumb = add(*root, "crumb", 12);
    folder.fileCount = 1234;
    folder.setDirCount(5);
    folder.modified = FSNode::secondsOf(now() - std::chrono::days(100));
    OutlineModel model;
    model.setTree(root);
    const auto text = [&](const FSNode &node, int column) {
        return model.indexOf(node, column).data().toString();
    };
    EXPECT_EQ(text(folder, OutlineModel::nameColumn), "folder");
    EXPECT_EQ(text(file, OutlineModel::nameColumn), "not\uFFFDutf8␊\\u{202E}gnp.exe");
    EXPECT_EQ(text(folder, OutlineModel::sizeColumn).toStdString(), Fmt::byteFormatter(3'000'000));
    EXPECT_EQ(text(empty, OutlineModel::sizeColumn).toStdString(), Fmt::byteFormatter(0));
    EXPECT_EQ(text(folder, OutlineModel::shareColumn), "75%");
    EXPECT_EQ(text(folder, OutlineModel::percentColumn), "75.0%");
    EXPECT_EQ(text(folder, OutlineModel::filesColumn).toStdString(), Fmt::count(1234));
    EXPECT_EQ(text(folder, OutlineModel::itemsColumn).toStdString(), Fmt::count(1239));
    EXPECT_EQ(text(folder, OutlineModel::modifiedColumn), "3 months ago");
    EXPECT_EQ(text(empty, OutlineModel::modifiedColumn), "") << "nobody knows";
    EXPECT_EQ(text(crumb, OutlineModel::percentColumn), "<0.1%");
    EXPECT_DOUBLE_EQ(shareOfParent(file), 1);
    EXPECT_EQ(shareOfParent(*root), 0);
    EXPECT_EQ(shareOfParent(add(empty, "nothing", 0)), 0) << "nor is anything divided by zero";
}

TEST(OutlineModel, TellsSpecialStatesByIconAndWords) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &skipped = addFolder(*root, "skipped"), &cloud = addFolder(*root, "cloud");
    skipped.isNotDescended = cloud.isNotDescended = cloud.isCloudProvider = true;
    FSNode &locked = addFolder(*root, "locked");
    locked.unreadable = true;
    OutlineModel model;
    model.setTree(root);
    for (const auto &[node, icon, beginning] : {std::tuple(&addFolder(*root, "folder"), "folder", ""),
                                                {&add(*root, "file", 1), "file", ""},
                                                {&addAggregate(*root, 3, 1), "files", ""},
                                                {&skipped, "ban", "Skipped. System"},
                                                {&cloud, "cloud-off", "Skipped. A cloud"},
                                                {&locked, "lock", "Not readable."}}) {
        EXPECT_EQ(nodeIconName(*node), icon);
        const QModelIndex index = model.indexOf(*node, OutlineModel::sizeColumn);
        const std::string words = index.data(Qt::ToolTipRole).toString().toStdString();
        EXPECT_TRUE(words.starts_with(beginning)) << icon;
        EXPECT_EQ(words, explanation(*node).value_or(""));
        EXPECT_EQ(model.indexOf(*node).data(Qt::AccessibleDescriptionRole).toString().toStdString(), words);
    }
}

TEST(OutlineModel, SortsByEachColumnAndEqualsByName) {
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
    EXPECT_THAT(rowsIn(model), ElementsAre("apple", "éclair", "IMG 9", "img 10", "Zebra"))
        << "by size, the largest first, until told otherwise";
    struct Case {
        int column;
        Qt::SortOrder order;
        std::vector<std::string> rows;
    };
    const std::vector<Case> cases = {
        {OutlineModel::nameColumn, Qt::AscendingOrder, {"apple", "éclair", "IMG 9", "img 10", "Zebra"}},
        {OutlineModel::nameColumn, Qt::DescendingOrder, {"Zebra", "img 10", "IMG 9", "éclair", "apple"}},
        {OutlineModel::sizeColumn, Qt::AscendingOrder, {"Zebra", "éclair", "IMG 9", "img 10", "apple"}},
        {OutlineModel::shareColumn, Qt::DescendingOrder, {"apple", "éclair", "IMG 9", "img 10", "Zebra"}},
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

    model.sort(OutlineModel::nameColumn, Qt::AscendingOrder);
    EXPECT_EQ(namesOf(model.rowsOf(*root)), expected);
    std::vector<FSNode *> bySize = model.rowsOf(*root);
    std::stable_partition(bySize.begin(), bySize.end(), [](const FSNode *node) { return node->size == 5; });
    model.sort(OutlineModel::sizeColumn, Qt::DescendingOrder);
    EXPECT_EQ(model.rowsOf(*root), bySize) << "equal sizes are sorted by name";

    model.sort(OutlineModel::nameColumn, Qt::DescendingOrder);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(namesOf(model.rowsOf(*root)), expected);
}

} // namespace brimvale
