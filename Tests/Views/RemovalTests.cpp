#include "Core/CorvelModel.h"
#include "Core/Updater.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"
#include "Views/BrowseView.h"
#include "Views/Components/Breadcrumb.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/RemovalModePicker.h"
#include "Views/Components/StateMessage.h"
#include "Views/ContentView.h"
#include "Views/OutlineView.h"
#include "Views/RemovalSheet.h"
#include "Views/ResultAlert.h"
#include "Views/TreemapView.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <semaphore>

namespace brimvale {

namespace {

using testing::RecordingActions;
using testing::TemporaryFolder;
using Nodes = std::vector<FSNode *>;

constexpr int patience = 20'000; // ms

std::vector<CleanupEntry> entries(int count, std::int64_t size) {
    std::vector<CleanupEntry> made;
    for (int i = 1; i <= count; ++i)
        made.push_back({.url = FileURL("/home/user/item" + std::to_string(i)), .size = size});
    return made;
}

QStringList labels(const QWidget &widget, const char *name) {
    QStringList texts;
    for (const QLabel *label : widget.findChildren<QLabel *>(QLatin1String(name)))
        texts.append(label->text());
    return texts;
}

FSNode *descendant(FSNode &root, std::initializer_list<const char *> names) {
    FSNode *found = &root;
    for (const char *name : names) {
        FSNode *next = nullptr;
        for (const auto &child : found->children())
            if (child->name == name)
                next = child.get();
        if (next == nullptr)
            return nullptr;
        found = next;
    }
    return found;
}

/// Whether the treemap draws nothing that has left the tree.
bool isSound(const TreemapView &treemap, const FSNode &root) {
    const auto isInside = [&](const FSNode *node) {
        while (node != nullptr && node != &root)
            node = node->parent();
        return node == &root;
    };
    return std::all_of(treemap.tiles().begin(), treemap.tiles().end(),
                       [&](const TreemapTile &tile) { return isInside(tile.node); });
}

/// A sheet over a window.
class RemovalSheetTest : public ::testing::Test {
protected:
    RemovalSheet &ask(RemovalRequest request) {
        window.show();
        sheet = new RemovalSheet(std::move(request), &window);
        QObject::connect(sheet, &RemovalSheet::confirmed,
                         [this](RemovalMode mode) { answers.push_back(mode); });
        sheet->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet));
        return *sheet;
    }
    QWidget &in(const char *name) const { return *sheet->findChild<QWidget *>(QLatin1String(name)); }

    QWidget window;
    QPointer<RemovalSheet> sheet;
    std::vector<RemovalMode> answers;
};

/// The page with a scanned folder whose removals the test only records.
class RemovalInBrowse : public ::testing::Test {
protected:
    RemovalInBrowse() {
        folder.makeFile("big/inner/file", 4'000'000);
        folder.makeFile("big/other", 2'000'000);
        folder.makeFile("big/little", 5'000); // too small for a row of its own
        folder.makeFile("middle/file", 3'000'000);
        folder.makeFile("small", 1'500'000);
        page.resize(1000, 700);
        page.show();
    }

    void scan() {
        model.startScan(folder.path());
        ASSERT_TRUE(QTest::qWaitFor([&] { return *model.tree != nullptr && !*model.isScanning; }, patience));
        activate();
        outline.setFocus();
    }

    /// Also after a sheet has been in front.
    void activate() {
        page.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    }

    [[nodiscard]] FSNode &root() const { return **model.tree; }
    [[nodiscard]] FSNode *node(std::initializer_list<const char *> names) const {
        return descendant(root(), names);
    }

    void choose(const Nodes &nodes) {
        activate();
        outline.clearSelection();
        for (const FSNode *one : nodes) {
            for (const FSNode *around = one->parent(); around != &root(); around = around->parent())
                outline.expand(rows().indexOf(*around));
            outline.selectionModel()->select(rows().indexOf(*one),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    [[nodiscard]] RemovalSheet *sheet() const { return page.findChild<RemovalSheet *>(); }
    void press(const char *button) {
        QTest::mouseClick(sheet()->findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
    }
    void confirm() {
        ASSERT_NE(sheet(), nullptr);
        press("confirm");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, patience));
        // What many removals have changed is drawn once, afterwards.
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return *model.tree == nullptr || treemap.node() != nullptr || !body.isVisible(); },
            patience));
    }
    [[nodiscard]] OutlineModel &rows() const { return static_cast<OutlineModel &>(*outline.model()); }
    QString detail() { return page.findChild<ElidedLabel *>("detailName")->text(); }

    TemporaryFolder folder;
    RecordingActions actions;
    CorvelModel model{nullptr, actions};
    BrowseView page{model};
    OutlineView &outline = *page.findChild<OutlineView *>("outline");
    TreemapView &treemap = *page.findChild<TreemapView *>("treemap");
    QWidget &body = *page.findChild<QWidget *>("results");
    QPushButton &remove = *page.findChild<QPushButton *>("remove");
};

/// Holds a removal up until the test lets it go on, or is over.
class Held {
public:
    explicit Held(RecordingActions &actions) {
        actions.onItem = [gate = gate_](RemovalProgress *) {
            gate->begun.release();
            gate->goOn.acquire();
        };
    }
    ~Held() { letGoOn(100); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;

    void waitUntilCalled() { gate_->begun.acquire(); }
    void letGoOn(int calls = 1) { gate_->goOn.release(calls); }

private:
    struct Gate {
        std::counting_semaphore<> begun{0};
        std::counting_semaphore<> goOn{0};
    };
    std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

} // namespace

TEST_F(RemovalSheetTest, KeepsEverythingUnlessTheUserSaysSo) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
        ask({.items = entries(2, 1000)});
        EXPECT_TRUE(in("cancel").hasFocus());
        QTest::keyClick(sheet->windowHandle(), key);
        EXPECT_TRUE(QTest::qWaitFor([&] { return sheet == nullptr; }, patience)) << key;
    }
    // Return goes to the way out also from where the mode is chosen.
    ask({.items = entries(1, 1000)});
    in("modePicker").setFocus();
    QTest::keyClick(sheet->windowHandle(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet == nullptr; }, patience));
    EXPECT_TRUE(answers.empty());
}

TEST_F(RemovalSheetTest, OffersTheTrashFirstAndTellsWhatEachModeDoes) {
    ask({.items = entries(3, 1'400'000'000)});
    auto &picker = static_cast<RemovalModePicker &>(in("modePicker"));
    ASSERT_EQ(picker.count(), 2);
    EXPECT_EQ(picker.currentText(), QStringLiteral("Move to Trash"));
    EXPECT_EQ(picker.itemText(1), QStringLiteral("Delete immediately"));
    EXPECT_EQ(labels(*sheet, "question"), QStringList{QStringLiteral("Remove 3 items, 4.2 GB?")});
    EXPECT_EQ(labels(*sheet, "remark"),
              QStringList{QStringLiteral("This frees about 4.2 GB. Moving to Trash does not free space until "
                                         "the Trash is emptied.")});
    auto &confirm = static_cast<QPushButton &>(in("confirm"));
    EXPECT_EQ(confirm.text(), QStringLiteral("Move to Trash"));

    picker.setFocus();
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_EQ(confirm.text(), QStringLiteral("Delete Immediately"));
    EXPECT_FALSE(labels(*sheet, "remark").front().contains(QStringLiteral("Trash")));
    confirm.setFocus();
    QTest::keyClick(&confirm, Qt::Key_Space);
    EXPECT_EQ(answers, std::vector<RemovalMode>{RemovalMode::deleteNow});
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet == nullptr; }, patience));

    ask({.items = entries(1, 0)});
    EXPECT_EQ(static_cast<RemovalModePicker &>(in("modePicker")).mode(), RemovalMode::trash)
        << "whatever was chosen the time before";
}

TEST_F(RemovalSheetTest, NamesWhatGoesAndCountsTheRest) {
    struct Case {
        int count;
        QString question;
        bool hasRest;
    };
    for (const Case &one : {Case{1, QStringLiteral("Remove “item1”, 2 KB?"), false},
                            Case{6, QStringLiteral("Remove 6 items, 12 KB?"), false},
                            Case{1207, QStringLiteral("Remove 1,207 items, 2.4 MB?"), true}}) {
        ask({.items = entries(one.count, 2000)});
        EXPECT_EQ(labels(*sheet, "question"), QStringList{one.question});
        QStringList shown;
        for (const QLabel *label : sheet->findChildren<QLabel *>())
            shown.append(label->text());
        EXPECT_EQ(shown.contains(QStringLiteral("and 1,201 more")), one.hasRest);
        delete sheet;
    }
    // A name is no markup, and no longer than the sheet.
    ask({.items = {{.url = FileURL("/a/<b>" + std::string(240, 'W') + "</b>"), .size = 1}}});
    EXPECT_EQ(sheet->findChild<QLabel *>("question")->textFormat(), Qt::PlainText);
    EXPECT_LE(sheet->findChild<QLabel *>("question")->minimumSizeHint().width(), sheet->width());
}

TEST(ResultAlertTest, TellsWhatBecameOfEveryItem) {
    struct Case {
        int removed;
        int failed;
        int needAdmin;
        QString title;
        QString summary;
        int lines;
    };
    const QString done = QStringLiteral("Done"), problems = QStringLiteral("Finished with problems");
    for (const Case &one : {Case{0, 0, 0, done, QStringLiteral("Removed 0 items, reclaiming Zero KB"), 0},
                            Case{1, 0, 0, done, QStringLiteral("Removed 1 item, reclaiming 3 MB"), 0},
                            Case{2, 1, 0, problems, QStringLiteral("Removed 2 items, reclaiming 6 MB"), 1},
                            Case{0, 4, 1, problems, QStringLiteral("Removed 0 items, reclaiming Zero KB"), 4},
                            Case{0, 5, 9, problems, QStringLiteral("Removed 0 items, reclaiming Zero KB"), 5},
                            Case{1, 0, 2, done, QStringLiteral("Removed 1 item, reclaiming 3 MB"), 0}}) {
        RemovalResult result;
        for (int i = 0; i < one.removed; ++i)
            result.succeeded.emplace_back("/gone");
        result.bytesFreed = 3'000'000 * one.removed;
        for (int i = 1; i <= one.failed; ++i)
            result.failed.push_back({FileURL("/a/<i>" + std::to_string(i)), "It is in use."});
        for (int i = 0; i < one.needAdmin; ++i)
            result.needsAdmin.emplace_back("/b/locked" + std::to_string(i));
        QWidget window;
        window.show();
        auto *alert = new ResultAlert(result, &window);
        alert->open();
        EXPECT_EQ(labels(*alert, "resultTitle"), QStringList{one.title});
        EXPECT_EQ(labels(*alert, "resultSummary"), QStringList{one.summary});
        const QStringList failures = labels(*alert, "failure");
        EXPECT_EQ(failures.size(), one.lines);
        if (one.failed > 0) {
            EXPECT_EQ(failures.front(), QStringLiteral("/a/<i>1: It is in use."));
            EXPECT_EQ(failures.contains(QStringLiteral("and 1 more.")), one.failed == 5);
        }
        for (const QLabel *line : alert->findChildren<QLabel *>("failure"))
            EXPECT_EQ(line->textFormat(), Qt::PlainText);
        const bool offers = one.needAdmin > 0;
        EXPECT_EQ(labels(*alert, "adminTitle"),
                  offers ? QStringList{QStringLiteral("Some items need admin rights")} : QStringList());
        EXPECT_EQ(alert->findChild<QPushButton *>("authenticate") != nullptr, offers);
        EXPECT_EQ(alert->findChild<QPushButton *>("skip") != nullptr, offers);
        EXPECT_EQ(alert->findChild<QPushButton *>("ok") != nullptr, !offers);
    }
}

TEST(ResultAlertTest, TriesAgainOnlyWhenAskedTo) {
    RemovalResult result;
    result.needsAdmin = {FileURL("/b/one"), FileURL("/b/two")};
    std::vector<FileURL> escalated;
    QWidget window;
    window.show();
    const auto open = [&] {
        auto *alert = new ResultAlert(result, &window);
        QObject::connect(alert, &ResultAlert::escalated,
                         [&](const std::vector<FileURL> &items) { escalated = items; });
        alert->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(alert));
        return QPointer<ResultAlert>(alert);
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        const QPointer<ResultAlert> alert = open();
        QTest::keyClick(alert->windowHandle(), key);
        EXPECT_TRUE(QTest::qWaitFor([&] { return alert == nullptr; }, patience));
        EXPECT_TRUE(escalated.empty()) << key;
    }
    const QPointer<ResultAlert> alert = open();
    auto *authenticate = alert->findChild<QPushButton *>("authenticate");
    EXPECT_EQ(authenticate->text(), QStringLiteral("Authenticate and remove"));
    QTest::mouseClick(authenticate, Qt::LeftButton);
    EXPECT_EQ(escalated, result.needsAdmin);
    EXPECT_TRUE(QTest::qWaitFor([&] { return alert == nullptr; }, patience));
}

TEST_F(RemovalInBrowse, AsksForASelectionAndForNothingElse) {
    scan();
    EXPECT_FALSE(remove.isEnabled()) << "the folder that is shown is no selection";
    EXPECT_EQ(remove.text(), QStringLiteral("Remove…"));
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);

    choose({node({"big", "1 smaller item"})});
    EXPECT_FALSE(remove.isEnabled()) << "it stands for many files";
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);

    // What lies in another folder that is selected goes with it, and counts once.
    choose({node({"big"}), node({"big", "inner"}), node({"big", "1 smaller item"}), node({"small"})});
    EXPECT_TRUE(remove.text().startsWith(QStringLiteral("Remove 2 Items, "))) << qPrintable(remove.text());
    QTest::keyClick(&outline, Qt::Key_Delete);
    ASSERT_NE(sheet(), nullptr);
    press("cancel");
    EXPECT_FALSE(model.isRemoving());
    EXPECT_EQ(outline.selectedNodes().size(), 4U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet() == nullptr; }, patience));

    // The key belongs to the filter while that is being written.
    auto &filter = *page.findChild<QLineEdit *>("filter");
    filter.setFocus();
    QTest::keyClick(&filter, Qt::Key_Delete);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(RemovalInBrowse, TakesWhatIsGoneFromEverythingItShows) {
    scan();
    const std::int64_t before = root().size;
    FSNode *big = node({"big"});
    const std::int64_t gone = node({"big", "inner"})->size + node({"middle"})->size;
    choose({node({"middle"}), node({"big", "inner"}), node({"big", "inner", "file"}), node({"small"})});
    actions.errors.emplace(folder.path("small"), FileError{FileError::Domain::cocoa, 4, "Gone.", nullptr});
    QTest::keyClick(&outline, Qt::Key_Delete);
    confirm();

    std::sort(actions.calls.begin(), actions.calls.end());
    EXPECT_EQ(actions.calls,
              (std::vector<std::string>{"trash " + folder.path("big/inner"), "trash " + folder.path("middle"),
                                        "trash " + folder.path("small")}));
    EXPECT_EQ(node({"middle"}), nullptr);
    EXPECT_EQ(node({"big", "inner"}), nullptr);
    EXPECT_EQ(root().size, before - gone);
    EXPECT_EQ(rows().rowCount(), 2);
    EXPECT_EQ(rows().nodeAt(rows().index(0, 0)), big) << "still the larger one";
    EXPECT_TRUE(outline.isExpanded(rows().indexOf(*big)));
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"small"})}) << "what could not be removed stays selected";
    EXPECT_EQ(detail(), QStringLiteral("small"));
    EXPECT_EQ(treemap.tiles().size(), 2U);
    EXPECT_TRUE(isSound(treemap, root()));
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, node({"small"}));
}

TEST_F(RemovalInBrowse, ComesOutOfAFolderThatGoesAway) {
    scan();
    FSNode *big = node({"big"});
    // The nodes are detached from the last to the first.
    Held held(actions);
    choose({big, node({"middle"}), node({"small"})});
    QTest::keyClick(&outline, Qt::Key_Delete);
    press("confirm");
    held.waitUntilCalled();
    EXPECT_FALSE(remove.isEnabled());
    QTest::keyClick(&outline, Qt::Key_Delete);
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet() == nullptr; }, patience)) << "one at a time";

    // The user goes on meanwhile, into what is about to go.
    emit page.findChild<Breadcrumb *>("breadcrumb")->chosen(descendant(*big, {"inner"}));
    ASSERT_EQ(treemap.node(), descendant(*big, {"inner"}));
    int detached = 0;
    QObject::connect(&model, &CorvelModel::nodeDetached, &page, [&] {
        ++detached;
        EXPECT_TRUE(isSound(treemap, root())) << "after " << detached;
        EXPECT_TRUE(treemap.node() == nullptr || treemap.node() == &root());
    });
    held.letGoOn(3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, patience));
    EXPECT_EQ(detached, 3);
    EXPECT_EQ(outline.focusFolder(), &root());
    EXPECT_TRUE(QTest::qWaitFor([&] { return page.findChild<StateMessage *>()->isVisible(); }, patience))
        << "nothing is left";
    EXPECT_FALSE(remove.isEnabled());
}

TEST_F(RemovalInBrowse, LetsGoOfALargeSelectionAtOnce) {
    for (int i = 0; i < 20; ++i)
        folder.makeFile("many/file" + std::to_string(i), 1'100'000);
    scan();
    Nodes many{node({"small"}), node({"many", "file3"})};
    for (int i = 4; i < 20; ++i)
        many.push_back(node({"many", ("file" + std::to_string(i)).c_str()}));
    choose(many);
    actions.errors.emplace(folder.path("small"), FileError{FileError::Domain::cocoa, 4, "Gone.", nullptr});
    QTest::keyClick(&outline, Qt::Key_Delete);
    const QSignalSpy selections(&outline, &OutlineView::selectionChangedTo);
    confirm();
    EXPECT_EQ(node({"many"})->children().size(), 3U);
    EXPECT_LE(selections.size(), 2) << "not once for each";
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"small"})});
    EXPECT_EQ(detail(), QStringLiteral("small"));
}

TEST_F(RemovalInBrowse, KeepsWhatIsSelectedMeanwhile) {
    scan();
    Held held(actions);
    choose({node({"middle"})});
    QTest::keyClick(&outline, Qt::Key_Delete);
    press("confirm");
    held.waitUntilCalled();
    choose({node({"big", "other"})});
    held.letGoOn();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving() && treemap.node() != nullptr; }, patience));
    ASSERT_EQ(node({"middle"}), nullptr);
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"big", "other"})});
    EXPECT_EQ(detail(), QStringLiteral("other"));
    ASSERT_TRUE(treemap.selectedTile().has_value());
    EXPECT_EQ(treemap.tiles()[*treemap.selectedTile()].node, node({"big"}));
    EXPECT_TRUE(remove.isEnabled());
}

TEST_F(RemovalInBrowse, LeavesATreeAloneThatCameWhileItAsked) {
    scan();
    choose({node({"middle"})});
    QTest::keyClick(&outline, Qt::Key_Delete);
    const QPointer<RemovalSheet> asking = sheet();
    ASSERT_NE(asking, nullptr);
    model.startScan();
    EXPECT_TRUE(asking == nullptr || !asking->isVisible()) << "it asked about a tree that is gone";
    EXPECT_FALSE(remove.isEnabled());
    QTest::keyClick(&page, Qt::Key_Delete);
    ASSERT_TRUE(QTest::qWaitFor([&] { return *model.tree != nullptr && asking == nullptr; }, patience));
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(actions.calls.empty());

    // And where the scan begins while the removal is under way, its tree stays as it was found.
    Held held(actions);
    choose({node({"middle"})});
    QTest::keyClick(&outline, Qt::Key_Delete);
    press("confirm");
    held.waitUntilCalled();
    scan();
    choose({node({"small"})});
    EXPECT_FALSE(remove.isEnabled()) << "one removal at a time";
    held.letGoOn();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, patience));
    EXPECT_NE(node({"middle"}), nullptr);
    EXPECT_EQ(outline.selectedNodes(), Nodes{node({"small"})});
    EXPECT_TRUE(remove.isEnabled());
}

TEST_F(RemovalInBrowse, HoldsWithAFilterAndAnotherOrder) {
    scan();
    auto &filter = *page.findChild<QLineEdit *>("filter");
    filter.setText(QStringLiteral("file")); // big/inner/file and middle/file
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().rowCount() == 2; }, patience));
    outline.sortByColumn(OutlineModel::nameColumn, Qt::DescendingOrder);
    EXPECT_EQ(rows().nodeAt(rows().index(0, 0)), node({"middle"}));
    choose({node({"big", "inner", "file"})});
    QTest::mouseClick(&remove, Qt::LeftButton);
    confirm();
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().rowCount() == 1; }, patience)) << "nothing in it matches";
    EXPECT_EQ(page.focusWidget(), &outline) << "the button cannot keep it";

    filter.clear();
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().rowCount() == 3; }, patience));
    Nodes order;
    for (int row = 0; row < 3; ++row)
        order.push_back(rows().nodeAt(rows().index(row, 0)));
    EXPECT_EQ(order, (Nodes{node({"small"}), node({"middle"}), node({"big"})}));
    EXPECT_EQ(node({"big", "inner"})->size, 0);

    // From a tile, through its menu.
    treemap.setFocus();
    emit treemap.selected(node({"middle"}));
    emit treemap.contextMenuRequested(node({"middle"}), page.mapToGlobal(QPoint(5, 5)));
    const auto *menu = page.findChild<QMenu *>("nodeMenu");
    ASSERT_NE(menu, nullptr);
    menu->actions().back()->trigger();
    confirm();
    EXPECT_EQ(actions.calls.back(), "trash " + folder.path("middle"));
    EXPECT_EQ(node({"middle"}), nullptr);
}

TEST(RemovalInWindow, TellsTheOutcomeAndOffersTheAdministrator) {
    const TemporaryFolder folder;
    const std::string large = folder.makeFile("large", 3'000'000),
                      locked = folder.makeFile("locked", 2'000'000);
    RecordingActions actions;
    actions.errors.emplace(locked, FileError{FileError::Domain::cocoa, 513, "No.", nullptr});
    actions.privilegedRunError = PrivilegedRunError{"Not today."};
    CorvelModel model(nullptr, actions);
    Updater updater;
    ContentView window(model, updater);
    window.goTo({Section::Kind::browse});
    window.show();
    const auto &freed = *window.findChild<QLabel *>("freedThisSession");
    EXPECT_FALSE(freed.isVisible());
    model.startScan(folder.path());
    ASSERT_TRUE(QTest::qWaitFor([&] { return *model.tree != nullptr && !*model.isScanning; }, patience));
    FSNode &root = **model.tree;
    const QString size = QString::number(static_cast<double>(root.children()[0]->size) / 1e6, 'f', 0);

    model.removeNodes({descendant(root, {"large"}), descendant(root, {"locked"})}, RemovalMode::trash);
    const auto alert = [&] { return QPointer(window.findChild<ResultAlert *>()); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving() && alert() != nullptr; }, patience));
    EXPECT_TRUE(freed.isVisible());
    EXPECT_EQ(labels(*alert(), "resultSummary"),
              QStringList{QStringLiteral("Removed 1 item, reclaiming %1 MB").arg(size)});
    EXPECT_EQ(labels(*alert(), "adminItem").size(), 1);

    const QPointer<ResultAlert> first = alert();
    QTest::mouseClick(first->findChild<QPushButton *>("authenticate"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return first == nullptr && alert() != nullptr; }, patience));
    EXPECT_EQ(actions.calls.back(), "admin /bin/rm -rf -- '" + locked + "'");
    EXPECT_EQ(labels(*alert(), "failure"), QStringList{QString::fromStdString(locked + ": Not today.")});
    EXPECT_EQ(alert()->findChild<QPushButton *>("authenticate"), nullptr) << "nothing is tried a third time";
    EXPECT_NE(descendant(root, {"locked"}), nullptr);
}

TEST(RemovalInWindow, OffersTheAdministratorOnlyWhileNothingIsRemoved) {
    const TemporaryFolder folder;
    const std::string locked = folder.makeFile("locked", 2'000'000);
    RecordingActions actions;
    actions.errors.emplace(locked, FileError{FileError::Domain::cocoa, 642, "No.", nullptr});
    CorvelModel model(nullptr, actions);
    Updater updater;
    ContentView window(model, updater);
    window.show();
    model.removeCategoryEntries({{.url = FileURL(locked), .size = 1}}, RemovalMode::trash);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !model.isRemoving() && window.findChild<ResultAlert *>() != nullptr; }, patience));
    const auto *authenticate = window.findChild<QPushButton *>("authenticate");
    EXPECT_TRUE(authenticate->isEnabled());

    // Another page's removal begins behind the alert: what is asked for then would be lost.
    Held held(actions);
    model.removeCategoryEntries({{.url = FileURL(locked), .size = 1}}, RemovalMode::trash);
    held.waitUntilCalled();
    EXPECT_FALSE(authenticate->isEnabled());
    held.letGoOn();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, patience));
}

TEST(RemovalInWindow, TellsTheOutcomeOnceTheSheetInFrontHasEnded) {
    const TemporaryFolder folder;
    RecordingActions actions;
    CorvelModel model(nullptr, actions);
    Updater updater;
    ContentView window(model, updater);
    window.show();
    window.findChild<QAction *>("about")->trigger();
    for (const char *name : {"first", "second"}) {
        model.removeCategoryEntries({{.url = FileURL(folder.makeFile(name)), .size = 1}}, RemovalMode::trash);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !model.isRemoving(); }, patience));
    }
    EXPECT_EQ(window.findChild<ResultAlert *>(), nullptr);

    QTest::keyClick(window.findChild<QDialog *>("aboutSheet"), Qt::Key_Escape);
    for (const char *result : {"first", "second"}) {
        const auto alert = [&] { return QPointer(window.findChild<ResultAlert *>()); };
        ASSERT_TRUE(QTest::qWaitFor([&] { return alert() != nullptr; }, patience)) << result;
        QTest::keyClick(alert(), Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace brimvale
