#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineTree.h"
#include "Views/Browse/Outline/OutlineView.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <random>

namespace brimvale {

namespace {

using namespace brimvale::testing;

/// Names of few letters in either case and of numbers; sizes of which many are equal.
std::shared_ptr<FSNode> makeRandomTree(std::mt19937 &random, std::size_t nodes) {
    static constexpr std::array parts = {"a", "B", "b", "C", "10", "9", "É", "é", "\xFF", " "};
    std::shared_ptr<FSNode> root = makeRoot();
    std::vector<FSNode *> folders{root.get()};
    for (std::size_t i = 0; i < nodes; ++i) {
        FSNode &parent = *folders[random() % folders.size()];
        const std::string name =
            parts[random() % parts.size()] + std::string(parts[random() % parts.size()]) + std::to_string(i);
        if (random() % 3 == 0)
            folders.push_back(&addFolder(parent, name));
        else if (random() % 5 == 0)
            addAggregate(parent, static_cast<std::int64_t>(random() % 3), 0);
        else
            add(parent, name, static_cast<std::int64_t>(random() % 4));
    }
    root->sortRecursively();
    return root;
}

bool hasMatchingName(const FSNode &node, const QString &filter) {
    return node.parent() != nullptr && !node.isAggregate &&
           QString::fromStdString(node.name).toCaseFolded().contains(filter.toCaseFolded());
}

bool hasMatchWithin(const FSNode &node, const QString &filter) {
    return hasMatchingName(node, filter) ||
           std::any_of(node.children().begin(), node.children().end(),
                       [&](const auto &child) { return hasMatchWithin(*child, filter); });
}

/// Whether a filter shows a node, worked out in the plainest way.
bool isToBeShown(const FSNode &node, const QString &filter) {
    for (const FSNode *folder = node.parent(); folder != nullptr; folder = folder->parent())
        if (hasMatchingName(*folder, filter))
            return true;
    return hasMatchWithin(node, filter);
}

/// Expects that the model has, at every level, exactly the rows that it should, in order of their sizes.
void expectRows(const OutlineModel &model, const FSNode &folder, const QString &filter,
                const QModelIndex &index = {}) {
    std::vector<FSNode *> expected;
    for (const auto &child : folder.children())
        if (filter.isEmpty() || isToBeShown(*child, filter))
            expected.push_back(child.get());
    std::vector<FSNode *> rows;
    for (int row = 0; row < model.rowCount(index); ++row)
        rows.push_back(model.nodeAt(model.index(row, 0, index)));
    EXPECT_THAT(rows, ::testing::UnorderedElementsAreArray(expected)) << folder.path();
    EXPECT_EQ(model.hasChildren(index), !expected.empty()) << folder.path();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        EXPECT_TRUE(row == 0 || rows[row - 1]->size >= rows[row]->size) << folder.path();
        const QModelIndex child = model.index(static_cast<int>(row), 0, index);
        EXPECT_EQ(model.indexOf(*rows[row]), child);
        EXPECT_EQ(child.parent(), index);
        expectRows(model, *rows[row], filter, child);
    }
}

/// Gives a folder other children, as the application does.
void replaceContents(OutlineModel &model, OutlineView &view, FSNode &folder, FSNode &found) {
    std::vector<FSNode *> children;
    for (const auto &child : folder.children())
        children.push_back(child.get());
    view.deselectWithin(children);
    model.aboutToReplaceContents(folder);
    folder.swapContents(found);
    model.replacedContents(folder);
}

} // namespace

TEST(OutlineModel, StaysSoundWhateverIsDoneToIt) {
    static const std::array filters = {QStringLiteral("b"), QStringLiteral("é"), QStringLiteral("10"),
                                       QStringLiteral("no such name"), QString()};
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const std::shared_ptr<FSNode> tree = makeRandomTree(random, 60);
        OutlineModel model;
        model.setTree(tree);
        const QAbstractItemModelTester tester(&model,
                                              QAbstractItemModelTester::FailureReportingMode::Warning);
        OutlineView view(model);
        view.expandAll();
        for (int step = 0; step < 30; ++step) {
            const std::vector<FSNode *> nodes = everythingBeneath(*tree);
            if (nodes.empty())
                break;
            FSNode &node = *nodes[random() % nodes.size()];
            switch (random() % 8) {
            case 7: // another scan of the folder has found other children
                if (const std::shared_ptr<FSNode> found = makeRandomTree(random, 6); node.isDirectory)
                    replaceContents(model, view, node, *found);
                break;
            case 0:
                model.sort(static_cast<int>(random() % outlineColumns().size()),
                           random() % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
                break;
            case 1:
                model.setFilter(filters[random() % filters.size()]);
                break;
            case 2:
                detach(model, node);
                break;
            case 3:
                view.setFocusFolder(node.isDirectory ? &node : nullptr);
                break;
            case 4:
                view.select(&node);
                break;
            case 5:
                view.selectAll();
                break;
            default:
                view.setExpanded(model.indexOf(node), random() % 2 == 0);
            }
            view.viewport()->grab();
            for (const FSNode *selected : view.selectedNodes())
                EXPECT_FALSE(view.visualRect(model.indexOf(*selected)).isEmpty()) << "is out of sight";
        }
        view.setFocusFolder(nullptr);
        ASSERT_TRUE(waitUntilFiltered(model));
        model.sort(OutlineModel::sizeColumn, Qt::DescendingOrder);
        expectRows(model, *tree, model.filter());
    }
}

TEST(OutlineModel, LetsGoOfTheTreeAtOnce) {
    std::mt19937 random(1);
    std::shared_ptr<FSNode> tree = makeRandomTree(random, 100);
    const std::weak_ptr<FSNode> watch = tree;
    OutlineModel model;
    OutlineView view(model);
    model.setTree(tree);
    view.expandAll();
    view.selectAll();
    view.setFocusFolder(tree->children().front()->parent());
    model.setFilter(QStringLiteral("b")); // under way
    tree.reset();
    EXPECT_FALSE(watch.expired());
    model.setTree(nullptr);
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(view.focusFolder(), nullptr);
    view.select(nullptr);
    view.grab();
    QCoreApplication::processEvents();
}

} // namespace brimvale
