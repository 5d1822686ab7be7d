#include "Views/Browse/Outline/OutlineView.h"

#include "Core/Scan/NodeExplanation.h"
#include "Platform/FileOwner.h"
#include "Support/TemporaryFolder.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineHeader.h"
#include "Views/Browse/Outline/OutlineWindow.h"
#include "Views/Components/AlignedSize.h"
#include "Views/Components/Theme.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <gmock/gmock.h>
#include <map>

namespace brimvale {

using namespace brimvale::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

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
                      QPoint(header.sectionViewportPosition(OutlineModel::shareColumn) + 20, 10));
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
    view_->collapse(at(small_));
    EXPECT_THAT(announced_.back(), ElementsAre("big")) << "nothing out of sight is";
    model_.setTree(nullptr);
    EXPECT_THAT(announced_.back(), IsEmpty());
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

TEST_F(OutlineWindow, LeavesTheKeysOfThePageToIt) {
    press(Qt::Key_Home);
    press(Qt::Key_Asterisk);
    EXPECT_FALSE(view_->isExpanded(at(big_))) << "there may be a million nodes beneath";
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(current(), "deep");
    press(Qt::Key_Left); // is closed, so goes out
    EXPECT_THAT(selected(), ElementsAre("big"));
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

TEST_F(OutlineWindow, FitsItsColumnsIntoAnyWidth) {
    std::map<int, int> narrowestWith; // by column
    for (int width = 1100; width >= 300; width -= 25) {
        SCOPED_TRACE(width);
        view_->resize(width, 400);
        EXPECT_FALSE(view_->horizontalScrollBar()->isVisible());
        EXPECT_EQ(view_->header()->length(), view_->viewport()->width());
        EXPECT_GE(view_->columnWidth(OutlineModel::nameColumn), std::min(width - 120, 300));
        for (int column = 0; column < model_.columnCount(); ++column)
            if (view_->columnWidth(column) > 0)
                narrowestWith[column] = width;
    }
    EXPECT_EQ(narrowestWith[OutlineModel::sizeColumn], 300);
    EXPECT_LE(narrowestWith[OutlineModel::shareColumn], 490) << "in the window as it opens";
    EXPECT_LT(narrowestWith[OutlineModel::shareColumn], narrowestWith[OutlineModel::modifiedColumn]);
    EXPECT_LT(narrowestWith[OutlineModel::shareColumn], narrowestWith[OutlineModel::itemsColumn]);
    EXPECT_THAT(narrowestWith, ::testing::SizeIs(5)) << "others only if the user chooses them";

    // What has no room is selected with its row too.
    view_->resize(300, 400);
    view_->selectAll();
    click(small_, Qt::ControlModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre("big", "file", "empty"));
    EXPECT_THAT(view_->selectionModel()->selectedRows(OutlineModel::itemsColumn), ::testing::SizeIs(3));
}

TEST_F(OutlineWindow, ShowsTheColumnsThatTheUserChooses) {
    auto &header = static_cast<OutlineHeader &>(*view_->header());
    view_->resize(480, 400);
    const auto shown = [&] {
        std::vector<int> columns;
        for (int column = 0; column < model_.columnCount(); ++column)
            if (view_->columnWidth(column) > 0)
                columns.push_back(column);
        return columns;
    };
    const std::vector<int> usual = shown();
    QMenu menu;
    header.addColumns(menu);
    const auto choose = [&](const QString &title) {
        for (QAction *action : menu.actions())
            if (action->text() == title)
                return action->trigger();
        FAIL() << title.toStdString();
    };
    choose(QStringLiteral("Share of Parent"));
    choose(QStringLiteral("% of Parent"));
    choose(QStringLiteral("Files"));
    EXPECT_THAT(shown(), ElementsAre(OutlineModel::nameColumn, OutlineModel::sizeColumn,
                                     OutlineModel::percentColumn, OutlineModel::filesColumn))
        << "though the names lose room";
    EXPECT_EQ(header.length(), view_->viewport()->width());
    header.moveSection(header.visualIndex(OutlineModel::filesColumn), 1);
    choose(QStringLiteral("Default Columns"));
    EXPECT_EQ(shown(), usual);
    EXPECT_EQ(header.visualIndex(OutlineModel::filesColumn), OutlineModel::filesColumn);
}

TEST_F(OutlineWindow, MovesTheEdgesOfColumnsWithThePointer) {
    const QHeaderView &header = *view_->header();
    view_->resize(700, 400);
    const int names = view_->columnWidth(OutlineModel::nameColumn);
    const int sizes = view_->columnWidth(OutlineModel::sizeColumn);
    const auto drag = [&](int column, int distance) {
        const QPoint edge(header.sectionViewportPosition(column), 10);
        QTest::mousePress(header.viewport(), Qt::LeftButton, {}, edge);
        QTest::mouseMove(header.viewport(), edge + QPoint(distance, 0));
        QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, edge + QPoint(distance, 0));
        EXPECT_EQ(header.length(), view_->viewport()->width());
    };
    drag(OutlineModel::sizeColumn, -30);
    EXPECT_EQ(view_->columnWidth(OutlineModel::nameColumn), names - 30);
    EXPECT_EQ(view_->columnWidth(OutlineModel::sizeColumn), sizes + 30);
    drag(OutlineModel::shareColumn, 10);
    EXPECT_EQ(view_->columnWidth(OutlineModel::nameColumn), names - 30);
    EXPECT_EQ(view_->columnWidth(OutlineModel::sizeColumn), sizes + 40);
    drag(OutlineModel::sizeColumn, -2000);
    EXPECT_GE(view_->columnWidth(OutlineModel::nameColumn), 140);
    EXPECT_THAT(rowsIn(model_), ElementsAre("big", "file", "small", "empty"))
        << "this is no click on a title";
}

TEST_F(OutlineWindow, FindsOwnersOfVisibleRowsInTheBackground) {
    const TemporaryFolder folder;
    const auto tree = std::make_shared<FSNode>("top", folder.path(), true);
    FSNode &file = add(*tree, "file", 1);
    FSNode &gone = add(*tree, "gone", 2);
    FSNode &some = addAggregate(*tree, 3, 1);
    folder.makeFile("file");
    model_.setTree(tree);
    const auto owner = [&](const FSNode &node) {
        return model_.indexOf(node, OutlineModel::ownerColumn).data().toString();
    };
    EXPECT_EQ(owner(file), "");
    EXPECT_EQ(owner(gone), "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !owner(file).isEmpty(); }));
    EXPECT_EQ(owner(file).toStdString(), ownerOf(folder.path("file")));
    EXPECT_EQ(owner(gone), "");
    EXPECT_EQ(owner(some), "");
    QSignalSpy arrived(&model_, &OutlineModel::textsArrived);
    view_->header()->setSortIndicator(OutlineModel::ownerColumn, Qt::AscendingOrder);
    EXPECT_EQ(view_->header()->sortIndicatorSection(), OutlineModel::sizeColumn)
        << "most owners are not known";
    model_.setTree(tree);
    EXPECT_EQ(owner(file), "") << "another scan may find another owner";
    EXPECT_TRUE(arrived.wait());
}

TEST_F(OutlineWindow, TellsANameThatIsCut) {
    FSNode &file = add(*tree_, std::string(200, 'x') + " <b>", 1'000'000);
    model_.setTree(tree_);
    const auto tip = [&](int column) {
        const QPoint point = view_->visualRect(model_.indexOf(file, column)).center();
        QHelpEvent event(QEvent::ToolTip, point, view_->viewport()->mapToGlobal(point));
        const QtMessageHandler handler =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        QApplication::sendEvent(view_->viewport(), &event);
        qInstallMessageHandler(handler);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        return text;
    };
    EXPECT_EQ(tip(OutlineModel::sizeColumn), "");
    EXPECT_EQ(tip(OutlineModel::nameColumn), QStringLiteral("<p>%1 &lt;b&gt;</p>").arg(QString(200, u'x')));
}

TEST_F(OutlineWindow, AlignsThePointsOfSizes) {
    // Sizes that differ in a trailing digit have equal pixels before it.
    const auto drawn = [](const char *size) {
        QImage image(120, 24, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(Type::font(Type::Size::body));
        drawAlignedSize(painter, image.rect(), QString::fromUtf8(size));
        return image;
    };
    const auto leftmost = [](const QImage &image) {
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y) != QColor(Qt::white))
                    return x;
        return -1;
    };
    const int one = leftmost(drawn("3 GB"));
    EXPECT_GT(one, 0);
    for (const char *size : {"3.1 GB", "3.14 GB", "3,14 GB", "3 KB", "3 TB"})
        EXPECT_EQ(leftmost(drawn(size)), one) << size;
    EXPECT_LT(leftmost(drawn("33.1 GB")), one);
    for (const char *size : {"Zero KB", "0 bytes", "—", ""})
        drawn(size);
}

TEST_F(OutlineWindow, LeavesRoomForTheNamesOfDeepRows) {
    FSNode *folder = &small_;
    for (int depth = 0; depth < 40; ++depth)
        folder = &addFolder(*folder, "folder");
    add(*folder, "bottom", 1);
    model_.setTree(tree_);
    view_->select(folder);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view_->verticalScrollBar()->isVisible(); }));
    const auto name = [&] { return view_->visualRect(at(*folder)); };
    EXPECT_TRUE(view_->viewport()->rect().contains(name().center()));
    EXPECT_GE(name().width(), 80);
    for (const bool isToBeOpen : {true, false}) {
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, name().center() - QPoint(60, 0));
        EXPECT_EQ(view_->isExpanded(at(*folder)), isToBeOpen);
    }
}

TEST_F(OutlineWindow, NeverMovesAColumnForWhatItShows) {
    const auto widths = [&] {
        std::vector<int> all;
        for (int column = 0; column < model_.columnCount(); ++column)
            all.push_back(view_->columnWidth(column));
        return all;
    };
    file_.fileCount = tree_->fileCount = 9'999'999;
    model_.setTree(tree_);
    view_->resize(900, 400);
    const std::vector<int> before = widths();
    file_.size = 888'880'000'000;
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
