#include "Views/Window/StandardMenus.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// A page whose items have paths.
class Page : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;
    Q_INVOKABLE void copyPaths() { ++copies; }

    int copies = 0;
};

class StandardMenusTest : public ::testing::Test {
protected:
    StandardMenusTest() {
        QMenu *menu = window.menuBar()->addMenu("All");
        StandardMenus::addEditing(*menu);
        StandardMenus::addWindow(*menu, window);
        StandardMenus::addClosing(*menu, window);
        auto *content = new QWidget(&window);
        auto *layout = new QVBoxLayout(content);
        layout->addWidget(list = new QListWidget(content));
        layout->addWidget(page = new Page(content));
        auto *pageLayout = new QVBoxLayout(page);
        pageLayout->addWidget(pageList = new QListWidget(page));
        pageLayout->addWidget(field = new QLineEdit(page));
        for (QListWidget *one : {list, pageList})
            one->addItem("row");
        window.setCentralWidget(content);
        window.show();
        window.activateWindow();
    }

    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window)); }

    void choose(const char *name) { window.findChild<QAction *>(QLatin1String(name))->trigger(); }

    QMainWindow window;
    QListWidget *list = nullptr;
    Page *page = nullptr;
    QListWidget *pageList = nullptr;
    QLineEdit *field = nullptr;
};

} // namespace

TEST_F(StandardMenusTest, CopiesWhatTheFocusedWidgetIsAbout) {
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText("before");
    field->setText("text of the field");
    field->setSelection(0, 4);
    field->setFocus();
    choose("copy");
    EXPECT_EQ(clipboard->text(), "text");
    EXPECT_EQ(page->copies, 0) << "the field comes before the page that it is on";

    pageList->setCurrentRow(0);
    pageList->setFocus();
    choose("copy");
    EXPECT_EQ(page->copies, 1);
    EXPECT_EQ(clipboard->text(), "text");

    list->setFocus();
    list->setCurrentRow(-1);
    choose("copy");
    EXPECT_EQ(clipboard->text(), "text") << "nothing to copy leaves the clipboard alone";
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard->text(), "row");
}

TEST_F(StandardMenusTest, ClosesTheWindowInFront) {
    QDialog dialog(&window);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }));
    choose("closeWindow");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(window.isVisible());
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }));
    choose("closeWindow");
    EXPECT_FALSE(window.isVisible());
}

TEST_F(StandardMenusTest, ComesBackFromFullScreenAndZoom) {
    choose("fullScreen");
    EXPECT_TRUE(window.isFullScreen());
    QTest::keyClick(&window, Qt::Key_F11);
    EXPECT_FALSE(window.isFullScreen());
    choose("zoom");
    EXPECT_TRUE(window.isMaximized());
    choose("zoom");
    EXPECT_FALSE(window.isMaximized());
}

} // namespace brimvale

#include "StandardMenusTests.moc"
