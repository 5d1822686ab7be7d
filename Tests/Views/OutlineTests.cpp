#include "Core/Formatting.h"
#include "Core/NodeExplanation.h"
#include "Views/OutlineDelegate.h"
#include "Views/OutlineModel.h"
#include "Views/OutlineView.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

FSNode &add(FSNode &parent, const std::string &name, std::int64_t size, bool isDirectory = false) {
    parent.adopt(std::make_unique<FSNode>(name, parent, isDirectory));
    FSNode &node = *parent.children().back();
    node.size = size;
    node.fileCount = isDirectory ? 0 : 1;
    for (FSNode *folder = &parent; folder != nullptr; folder = folder->parent()) {
        folder->size += node.size;
        folder->fileCount += node.fileCount;
    }
    return node;
}

FSNode &addFolder(FSNode &parent, const std::string &name) {
    return add(parent, name, 0, true);
}

FSNode &addAggregate(FSNode &parent, std::int64_t count, std::int64_t size) {
    parent.adopt(FSNode::aggregate(parent, count));
    parent.children().back()->size = size;
    return *parent.children().back();
}

std::shared_ptr<FSNode> makeRoot() {
    return std::make_shared<FSNode>("root", "/root", true);
}

/// Takes `node` out of the tree as the application does.
void detach(OutlineModel &model, FSNode &node) {
    FSNode *parent = node.parent();
    model.aboutToRemove(node);
    const std::unique_ptr<FSNode> released = parent->release(node);
    for (FSNode *folder = parent; folder != nullptr; folder = folder->parent()) {
        folder->size -= released->size;
        folder->fileCount -= released->fileCount;
    }
    model.removed();
}

bool waitUntilFiltered(const OutlineModel &model) {
    return QTest::qWaitFor([&] { return !model.isFiltering(); }, 20'000);
}

std::vector<std::string> namesOf(const std::vector<FSNode *> &nodes) {
    std::vector<std::string> names;
    for (const FSNode *node : nodes)
        names.push_back(node->name);
    return names;
}

/// The names of the rows within a folder, as a view reads them.
std::vector<std::string> rowsIn(const QAbstractItemModel &model, const QModelIndex &folder = {}) {
    std::vector<std::string> names;
    for (int row = 0; row < model.rowCount(folder); ++row)
        names.push_back(model.index(row, 0, folder).data().toString().toStdString());
    return names;
}

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

std::vector<FSNode *> everythingBeneath(FSNode &root) {
    std::vector<FSNode *> nodes{&root};
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (const auto &child : nodes[i]->children())
            nodes.push_back(child.get());
    nodes.erase(nodes.begin());
    return nodes;
}

/// Whether a filter shows a node, worked out in the plainest way.
bool isToBeShown(const FSNode &node, const QString &filter) {
    if (!node.isAggregate && QString::fromUtf8(node.name).toCaseFolded().contains(filter.toCaseFolded()))
        return true;
    return std::any_of(node.children().begin(), node.children().end(),
                       [&](const auto &child) { return isToBeShown(*child, filter); });
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

/// An outline in a shown window, with the tree
///
///     root  big  deep  needle   50
///                      thread    5
///                leaf           20
///           small  Needle case  10
///           empty
///           file                30
class OutlineWindow : public ::testing::Test {
protected:
    struct Host : QWidget {
        std::vector<int> keys; ///< that the outline left to it
        void keyPressEvent(QKeyEvent *event) override { keys.push_back(event->key()); }
    };

    OutlineWindow() {
        QApplication::setKeyboardInputInterval(60'000); // however slow the machine, keys follow on another
        tree_->sortRecursively();
        model_.setTree(tree_);
        host_.resize(600, 400);
        view_->resize(host_.size());
        host_.show();
        view_->setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&host_));
        QObject::connect(
            view_, &OutlineView::selectionChangedTo, view_,
            [this](const std::vector<FSNode *> &nodes) { announced_.push_back(namesOf(nodes)); });
        QObject::connect(view_, &OutlineView::opened, view_,
                         [this](FSNode *folder) { opened_.push_back(folder->name); });
    }

    QModelIndex at(const FSNode &node) const { return model_.indexOf(node); }
    std::string current() const {
        return view_->currentIndex().siblingAtColumn(0).data().toString().toStdString();
    }
    std::vector<std::string> selected() const { return namesOf(view_->selectedNodes()); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view_, key, modifiers);
    }
    void click(const FSNode &node, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, view_->visualRect(at(node)).center());
    }
    void filter(const QString &text) {
        model_.setFilter(text);
        EXPECT_TRUE(waitUntilFiltered(model_));
    }
    void detachNode(FSNode &node) { detach(model_, node); }

    std::shared_ptr<FSNode> tree_ = makeRoot();
    FSNode &big_ = addFolder(*tree_, "big");
    FSNode &deep_ = addFolder(big_, "deep");
    FSNode &needle_ = add(deep_, "needle", 50);
    FSNode &thread_ = add(deep_, "thread", 5);
    FSNode &leaf_ = add(big_, "leaf", 20);
    FSNode &small_ = addFolder(*tree_, "small");
    FSNode &otherNeedle_ = add(small_, "Needle case", 10);
    FSNode &empty_ = addFolder(*tree_, "empty");
    FSNode &file_ = add(*tree_, "file", 30);
    OutlineModel model_;
    Host host_;
    OutlineView *view_ = new OutlineView(model_, &host_);
    std::vector<std::vector<std::string>> announced_;
    std::vector<std::string> opened_;
};

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
            switch (random() % 7) {
            case 0:
                model.sort(static_cast<int>(random() % OutlineModel::columns),
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
    EXPECT_EQ(text(file, OutlineModel::nameColumn), QStringLiteral("not\uFFFDutf8"));
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
        EXPECT_EQ(OutlineModel::iconName(*one.node), one.icon);
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

TEST(OutlineModel, FiltersByNameWhateverTheCase) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "Holiday");
    add(folder, "beach.jpg", 3);
    add(folder,
        "U\xCC\x88"
        "bersicht",
        2); // Ü in two characters
    addAggregate(folder, 4, 1);
    add(*root, "not\xFFutf8", 1);
    OutlineModel model;
    model.setTree(root);
    const QModelIndex &top = QModelIndex();
    struct Case {
        const char *filter;
        qint64 matches;
        std::vector<std::string> rows;
        std::vector<std::string> rowsInFolder;
    };
    const std::vector<Case> cases = {
        {"BEACH", 1, {"Holiday"}, {"beach.jpg"}},
        {"übers", 1, {"Holiday"}, {"Übersicht"}},
        {"holi", 1, {"Holiday"}, {}},
        {"\uFFFD", 1, {"not\uFFFDutf8"}, {}},
        {"smaller item", 0, {}, {}}, // an aggregate's words are no name
        {"root", 0, {}, {}},         // nor has the root a row
        {".*", 0, {}, {}},
        {"i", 2, {"Holiday"}, {"Übersicht"}},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.filter);
        const QSignalSpy done(&model, &OutlineModel::filtered);
        model.setFilter(QString::fromUtf8(one.filter));
        ASSERT_TRUE(waitUntilFiltered(model));
        ASSERT_EQ(done.count(), 1);
        EXPECT_EQ(done.front().front().toLongLong(), one.matches);
        std::vector<std::string> rows = rowsIn(model);
        EXPECT_EQ(rows, one.rows);
        const QModelIndex index = model.indexOf(folder);
        std::vector<std::string> inside;
        if (index.isValid())
            for (const std::string &name : rowsIn(model, index))
                inside.push_back(
                    QString::fromStdString(name).normalized(QString::NormalizationForm_C).toStdString());
        EXPECT_EQ(inside, one.rowsInFolder);
        EXPECT_EQ(index.isValid() && model.hasChildren(index), !one.rowsInFolder.empty());
    }
    model.setFilter({});
    EXPECT_FALSE(model.isFiltering());
    EXPECT_EQ(model.rowCount(top), 2);
}

TEST(OutlineModel, ShowsTheOldRowsUntilAFilterIsDone) {
    const std::shared_ptr<FSNode> root = makeRoot();
    for (const char *name : {"abc", "ab", "b"})
        add(*root, name, 1);
    OutlineModel model;
    model.setTree(root);
    QSignalSpy done(&model, &OutlineModel::filtered);
    model.setFilter(QStringLiteral("a"));
    EXPECT_EQ(model.rowCount(), 3);
    model.setFilter(QStringLiteral("ab")); // typed on before the first was done
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_EQ(done.count(), 1);
    EXPECT_THAT(rowsIn(model), ElementsAre("abc", "ab"));

    model.setFilter(QStringLiteral("abc"));
    EXPECT_THAT(rowsIn(model), ElementsAre("abc", "ab"));
    model.setFilter(QStringLiteral("b"));
    model.setFilter(QStringLiteral("abc"));
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_THAT(rowsIn(model), ElementsAre("abc"));

    model.setFilter(QStringLiteral("b"));
    model.setFilter({});
    QCoreApplication::processEvents();
    EXPECT_EQ(model.rowCount(), 3) << "an abandoned filter has no effect";

    // The text stays in force for the next tree.
    model.setFilter(QStringLiteral("new"));
    const std::shared_ptr<FSNode> next = makeRoot();
    add(*next, "new", 1);
    add(*next, "old", 1);
    model.setTree(next);
    EXPECT_EQ(model.rowCount(), 2);
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_THAT(rowsIn(model), ElementsAre("new"));
}

TEST(OutlineModel, FoldersLookedIntoMeanwhileShowTheOldFilterToo) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "folder");
    for (int i = 0; i < 100'000; ++i)
        add(folder, i % 1000 == 0 ? "old" : "new", 1);
    OutlineModel model;
    model.setTree(root);
    model.setFilter(QStringLiteral("OLD"));
    ASSERT_TRUE(waitUntilFiltered(model));
    model.setFilter(QStringLiteral("NEW"));
    QCoreApplication::processEvents(); // a part of the search
    EXPECT_TRUE(model.isFiltering());
    EXPECT_EQ(model.rowCount(model.indexOf(folder)), 100);
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_EQ(model.rowCount(model.indexOf(folder)), 99'900);
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

TEST_F(OutlineWindow, SelectsNothingUntilTheUserDoes) {
    EXPECT_THAT(selected(), IsEmpty());
    press(Qt::Key_Down);
    EXPECT_THAT(selected(), ElementsAre("big")) << "the first row, not the second";
    press(Qt::Key_Down);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre("file", "small"));
    click(empty_, Qt::ControlModifier);
    EXPECT_THAT(announced_.back(), UnorderedElementsAre("file", "small", "empty"));
}

TEST_F(OutlineWindow, KeepsTheSelectionOverSortAndFilter) {
    view_->expand(at(small_));
    click(otherNeedle_);
    click(big_, Qt::ControlModifier);
    click(file_, Qt::ControlModifier);
    announced_.clear();
    const QHeaderView &header = *view_->header();
    const QPoint nameHeader(header.sectionViewportPosition(OutlineModel::nameColumn) + 20, 10);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, nameHeader);
    EXPECT_THAT(rowsIn(model_), ElementsAre("big", "empty", "file", "small"));
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, nameHeader);
    EXPECT_THAT(rowsIn(model_), ElementsAre("small", "file", "empty", "big"));
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      QPoint(header.sectionViewportPosition(OutlineModel::itemsColumn) + 20, 10));
    EXPECT_THAT(rowsIn(model_), ElementsAre("big", "file", "small", "empty"))
        << "figures start at the largest";
    EXPECT_THAT(selected(), UnorderedElementsAre("Needle case", "big", "file"));
    EXPECT_THAT(announced_, IsEmpty());

    filter("needle");
    EXPECT_THAT(selected(), UnorderedElementsAre("Needle case", "big"));
    ASSERT_EQ(announced_.size(), 1U) << "what is hidden is selected no more";
    EXPECT_THAT(announced_.back(), UnorderedElementsAre("Needle case", "big"));
    filter("");
    EXPECT_THAT(selected(), UnorderedElementsAre("Needle case", "big"));
}

TEST_F(OutlineWindow, LaysFewMatchesOpenAndGoesBackToWhatTheUserHadOpened) {
    view_->expand(at(big_));
    filter("needle");
    EXPECT_TRUE(view_->isExpanded(at(deep_)));
    EXPECT_TRUE(view_->isExpanded(at(small_)));
    filter("file"); // hides the open folder for a while
    filter("");
    EXPECT_TRUE(view_->isExpanded(at(big_)));
    EXPECT_FALSE(view_->isExpanded(at(deep_)));
    EXPECT_FALSE(view_->isExpanded(at(small_)));

    filter("case");
    click(otherNeedle_);
    for (int i = 0; i < 200; ++i)
        add(empty_, "e", 0);
    filter("e"); // matches too many to lay open
    EXPECT_FALSE(view_->isExpanded(at(empty_)));
    EXPECT_TRUE(view_->isExpanded(at(small_))) << "what was found stays in sight";
    filter("");
    EXPECT_TRUE(view_->isExpanded(at(small_)));
    EXPECT_THAT(selected(), ElementsAre("Needle case"));
}

TEST_F(OutlineWindow, KeepsSelectionAndExpansionWhenANodeIsRemoved) {
    view_->expand(at(big_));
    view_->expand(at(deep_));
    click(thread_);
    click(file_, Qt::ControlModifier);
    detachNode(needle_);
    EXPECT_TRUE(view_->isExpanded(at(deep_)));
    EXPECT_THAT(selected(), UnorderedElementsAre("thread", "file"));
    EXPECT_THAT(rowsIn(model_), ElementsAre("file", "big", "small", "empty")) << "still the largest first";
    EXPECT_THAT(rowsIn(model_, at(big_)), ElementsAre("leaf", "deep"));
    EXPECT_EQ(model_.indexOf(big_, OutlineModel::shareColumn).data().toString(), "38%");

    announced_.clear();
    detachNode(thread_);
    EXPECT_THAT(announced_, ElementsAre(ElementsAre("file")));
    EXPECT_FALSE(model_.hasChildren(at(deep_)));
    view_->setFocusFolder(&deep_);
    detachNode(big_);
    EXPECT_EQ(view_->focusFolder(), tree_.get());
    EXPECT_THAT(rowsIn(model_), ElementsAre("file", "small", "empty"));
    view_->viewport()->grab();
}

TEST_F(OutlineWindow, FiltersAgainOnceANodeIsRemoved) {
    filter("needle");
    detachNode(otherNeedle_);
    ASSERT_TRUE(waitUntilFiltered(model_));
    EXPECT_THAT(rowsIn(model_), ElementsAre("big")) << "nothing in the other folder matches any more";
    detachNode(file_); // which the filter hides
    model_.setFilter(QStringLiteral("e"));
    detachNode(deep_); // while it is searched
    ASSERT_TRUE(waitUntilFiltered(model_));
    EXPECT_THAT(rowsIn(model_), ElementsAre("big", "empty"));
    EXPECT_THAT(rowsIn(model_, at(big_)), ElementsAre("leaf"));
}

TEST_F(OutlineWindow, OpensFoldersByDoubleClickAndReturn) {
    const auto doubleClick = [&](const FSNode &node) {
        click(node);
        QTest::mouseDClick(view_->viewport(), Qt::LeftButton, {}, view_->visualRect(at(node)).center());
    };
    doubleClick(big_);
    EXPECT_THAT(opened_, ElementsAre("big"));
    EXPECT_FALSE(view_->isExpanded(at(big_)));
    doubleClick(file_);
    press(Qt::Key_Return);
    EXPECT_THAT(opened_, ElementsAre("big")) << "a file cannot be entered";
    click(small_);
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_THAT(opened_, ElementsAre("big", "small", "small"));
}

TEST_F(OutlineWindow, GoesAboutByKeyboard) {
    press(Qt::Key_Home);
    press(Qt::Key_Right); // opens
    press(Qt::Key_Right); // goes in
    EXPECT_EQ(current(), "deep");
    press(Qt::Key_Left); // is closed, so goes out
    EXPECT_EQ(current(), "big");
    EXPECT_THAT(selected(), ElementsAre("big"));
    press(Qt::Key_Left);
    EXPECT_FALSE(view_->isExpanded(at(big_)));
    press(Qt::Key_End);
    EXPECT_EQ(current(), "empty");
    press(Qt::Key_Home);
    EXPECT_EQ(current(), "big");

    press(Qt::Key_Asterisk);
    EXPECT_FALSE(view_->isExpanded(at(big_))) << "there may be a million nodes beneath";
    press(Qt::Key_Delete);
    press(Qt::Key_Up, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_THAT(host_.keys, ::testing::IsSupersetOf({Qt::Key_Delete, Qt::Key_Up, Qt::Key_Escape}));
    EXPECT_EQ(current(), "big");
}

TEST_F(OutlineWindow, FindsRowsAsTheirNamesAreTyped) {
    const auto type = [&](const char *text) {
        press(Qt::Key_Escape); // so that a new name starts
        QTest::keyClicks(view_, QString::fromUtf8(text));
        return current();
    };
    view_->expand(at(small_));
    press(Qt::Key_Home);
    EXPECT_EQ(type("FI"), "file");
    EXPECT_THAT(selected(), ElementsAre("file"));
    EXPECT_EQ(type("needle c"), "Needle case");
    EXPECT_EQ(type("needlex"), "Needle case") << "there is none, so it stays at the nearest";
    EXPECT_EQ(type("th"), "Needle case") << "inside a folder that is closed";
    EXPECT_EQ(type("e"), "empty");
    EXPECT_EQ(type("b"), "big") << "on from the top";
    addFolder(*tree_, "bin");
    model_.setTree(tree_);
    press(Qt::Key_Home);
    EXPECT_EQ(type("b"), "bin");
    EXPECT_EQ(type("b"), "big");
    EXPECT_EQ(type("bb"), "big") << "the same letter goes through all of them";
}

TEST_F(OutlineWindow, SelectsANodeWhereverItIs) {
    view_->select(&needle_);
    EXPECT_THAT(selected(), ElementsAre("needle"));
    EXPECT_TRUE(view_->isExpanded(at(deep_)));
    EXPECT_TRUE(view_->viewport()->rect().contains(view_->visualRect(at(needle_))));
    EXPECT_THAT(announced_, IsEmpty()) << "only what the user does is announced";

    view_->setFocusFolder(&small_);
    EXPECT_EQ(view_->focusFolder(), &small_);
    EXPECT_THAT(selected(), IsEmpty());
    view_->select(&otherNeedle_);
    EXPECT_THAT(selected(), ElementsAre("Needle case"));
    view_->select(&needle_); // outside
    EXPECT_THAT(selected(), IsEmpty());
    view_->setFocusFolder(nullptr);
    EXPECT_TRUE(view_->isExpanded(at(deep_))) << "what was open is so on coming back";
    filter("leaf");
    view_->select(&needle_);
    EXPECT_THAT(selected(), IsEmpty());
    view_->select(nullptr);
}

TEST_F(OutlineWindow, StaysFocusedOnAFolderThatAFilterHides) {
    view_->setFocusFolder(&small_);
    filter("leaf");
    EXPECT_EQ(view_->focusFolder(), &small_);
    EXPECT_EQ(model_.rowCount(view_->rootIndex()), 0);
    view_->setFocusFolder(&empty_); // as one may from a treemap, which is not filtered
    EXPECT_EQ(view_->focusFolder(), &empty_);
    view_->setFocusFolder(nullptr);
    EXPECT_THAT(rowsIn(model_), ElementsAre("big"));
    view_->setFocusFolder(&deep_);
    filter("file");
    detachNode(deep_);
    ASSERT_TRUE(waitUntilFiltered(model_));
    EXPECT_THAT(rowsIn(model_), ElementsAre("file"));
    filter("");
    EXPECT_EQ(model_.rowCount(view_->rootIndex()), 4);
}

TEST_F(OutlineWindow, SelectsNothingOutOfSight) {
    view_->expand(at(big_));
    view_->expand(at(deep_));
    click(needle_);
    click(file_, Qt::ControlModifier);
    view_->collapse(at(big_));
    EXPECT_THAT(selected(), ElementsAre("file"));
    EXPECT_THAT(announced_.back(), ElementsAre("file"));
    model_.setTree(nullptr);
    EXPECT_THAT(announced_.back(), IsEmpty());
}

TEST_F(OutlineWindow, AsksForAContextMenuOfTheSelection) {
    QSignalSpy asked(view_, &OutlineView::menuRequested);
    const auto askAt = [&](QContextMenuEvent::Reason reason, QPoint point) {
        QContextMenuEvent event(reason, point, view_->viewport()->mapToGlobal(point));
        QApplication::sendEvent(view_->viewport(), &event);
    };
    const QPoint onFile = view_->visualRect(at(file_)).center();
    QTest::mouseClick(view_->viewport(), Qt::RightButton, {}, onFile);
    askAt(QContextMenuEvent::Mouse, onFile);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_THAT(selected(), ElementsAre("file"));
    EXPECT_EQ(asked.front().front().toPoint(), view_->viewport()->mapToGlobal(onFile));
    askAt(QContextMenuEvent::Mouse, QPoint(300, 380)); // beneath the rows
    EXPECT_EQ(asked.count(), 1);
    askAt(QContextMenuEvent::Keyboard, QPoint(0, 0));
    ASSERT_EQ(asked.count(), 2);
    EXPECT_EQ(asked.back().front().toPoint(), view_->viewport()->mapToGlobal(onFile));
}

TEST_F(OutlineWindow, ExplainsASpecialStateInATooltip) {
    file_.unreadable = true;
    const QPoint point = view_->visualRect(at(file_)).center();
    QHelpEvent event(QEvent::ToolTip, point, view_->viewport()->mapToGlobal(point));
    // Without a display, Qt warns that it cannot raise the tooltip.
    const QtMessageHandler handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication::sendEvent(view_->viewport(), &event);
    qInstallMessageHandler(handler);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("<p>%1</p>").arg(QString::fromStdString(*explanation(file_))));
    QToolTip::hideText();
}

TEST_F(OutlineWindow, NeverMovesAColumnForWhatItShows) {
    const auto widths = [&] {
        std::vector<int> all;
        for (int column = 0; column < OutlineModel::columns; ++column)
            all.push_back(view_->columnWidth(column));
        return all;
    };
    const std::vector<int> before = widths();
    file_.size = 999'990'000'000;
    file_.fileCount = 9'999'999;
    model_.sort(OutlineModel::nameColumn);
    view_->viewport()->grab();
    EXPECT_EQ(widths(), before);
    for (const int column : {OutlineModel::sizeColumn, OutlineModel::itemsColumn}) {
        const QString figure = model_.indexOf(file_, column).data().toString();
        EXPECT_LE(view_->fontMetrics().horizontalAdvance(figure) + 2 * OutlineDelegate::margin,
                  view_->columnWidth(column));
    }
}

} // namespace brimvale
