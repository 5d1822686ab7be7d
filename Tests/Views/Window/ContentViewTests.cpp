#include "Views/Window/ContentView.h"

#include "Core/Model/Apps.h"
#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/OpenedAddresses.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleApps.h"
#include "Support/SampleHome.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Cleanup/CleanupView.h"
#include "Views/Components/Theme.h"
#include "Views/Entries/ItemActions.h"
#include "Views/Overview/OverviewView.h"
#include "Views/Window/WindowStyle.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QToolTip>
#include <QUrl>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <utility>

namespace brimvale {

namespace {

/// A window of a user who has an almost empty home, in the style of the program.
class ContentViewTest : public ::testing::Test {
protected:
    ContentViewTest() {
        QApplication::setStyle(new WindowStyle);
        home.makeFile("folder/file", 5000);
    }
    ~ContentViewTest() override {
        Theme::choose(Appearance::system);
        QApplication::setPalette(QPalette());
        QApplication::setStyle("Fusion");
    }

    void open() {
        window.reset();
        model = std::make_unique<CorvelModel>(actions);
        window = std::make_unique<testing::WholeWindow>(*model);
        testing::activate(*window);
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    std::unique_ptr<CorvelModel> model;
    std::unique_ptr<testing::WholeWindow> window;
};

/// Counts the events that all objects of the program get.
class EventCount : public QObject {
public:
    EventCount() { qApp->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override {
        ++byType[event->type()];
        return false;
    }

    std::map<QEvent::Type, int> byType;
};

QPalette systemPalette(const QColor &window, const QColor &text) {
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

} // namespace

TEST_F(ContentViewTest, OpensOnItsFirstPage) {
    open();
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::overview});
    EXPECT_TRUE(window->findChild<OverviewView *>()->isVisible());
    EXPECT_EQ(window->findChild<QListWidget *>("pages")->currentItem()->text(), "Overview");
    EXPECT_FALSE(model->storage->isMeasuringCategories);
    EXPECT_FALSE(model->scan->isScanning) << "nothing is read before the user asks";

    window->goTo({Section::Kind::category, "unknown"});
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::overview});
}

TEST_F(ContentViewTest, DoesNothingWhileIdle) {
    open();
    QTest::qWait(200);
    EventCount count;
    QTest::qWait(200);
    for (const QEvent::Type type :
         {QEvent::ApplicationPaletteChange, QEvent::PaletteChange, QEvent::StyleChange, QEvent::FontChange,
          QEvent::LayoutRequest, QEvent::UpdateRequest, QEvent::Paint})
        EXPECT_EQ(count.byType[type], 0) << type;
}

TEST_F(ContentViewTest, SaysThatItShowsASample) {
    open();
    window->showSample(FileURL("/caches/brimvale-sample/linux"));
    EXPECT_TRUE(window->windowTitle().endsWith(" — Sample"));
    const auto *note = window->findChild<QWidget *>("sampleNote");
    ASSERT_NE(note, nullptr);
    EXPECT_TRUE(testing::eventually([note] { return note->isVisible(); }));
    EXPECT_TRUE(note->toolTip().contains("/caches/brimvale-sample/linux"));
    EXPECT_TRUE(note->toolTip().contains("--sample=remove"));
}

TEST_F(ContentViewTest, RescansTheCurrentRootOnTheShortcut) {
    home.makeFolder("Library/Messages"); // with Full Disk Access
    open();
    for (const std::string &root : {home.path(), home.path("folder")}) {
        model->scan.chooseScanRoot(root);
        QTest::keyClick(window.get(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_TRUE(model->scan->isScanning);
        EXPECT_EQ(window->currentSection(), Section{Section::Kind::browse});
        ASSERT_TRUE(testing::eventually([&] { return !model->scan->isScanning; }));
        EXPECT_EQ(model->scan->tree->path(), root);
    }
}

TEST_F(ContentViewTest, TellsBeforeTheFirstScanWhatTheSystemWillAsk) {
    const testing::OpenedAddresses opened("x-apple.systempreferences");
    const auto notice = [this] { return QPointer(window->findChild<QDialog *>("accessNotice")); };
    const auto answer = [&](const char *button) {
        const QPointer<QDialog> sheet = notice();
        testing::click(*sheet, button);
        EXPECT_TRUE(testing::eventually([&] { return sheet == nullptr; }));
    };
    const auto rescan = [this] {
        window->findChild<QAction *>("rescan")->trigger();
        return model->scan->isScanning;
    };
    open();
    EXPECT_EQ(notice(), nullptr);
    EXPECT_FALSE(rescan());
    ASSERT_NE(notice(), nullptr);
    testing::click(*notice(), "grantAccess");
    EXPECT_EQ(opened.all.size(), 1);
    EXPECT_TRUE(notice()->isVisible());
    answer("cancelLook");
    EXPECT_FALSE(model->scan->isScanning);
    EXPECT_TRUE(rescan()) << "it appears once";
    EXPECT_EQ(notice(), nullptr);

    open();
    testing::click(*window, "measure");
    EXPECT_FALSE(model->storage->isMeasuringCategories);
    answer("look");
    EXPECT_TRUE(testing::eventually([&] { return model->storage->lastCategoryScan.has_value(); }));

    Host::useSystem(System::linux);
    open();
    EXPECT_TRUE(rescan()) << "only macOS asks";
    EXPECT_EQ(notice(), nullptr);
}

TEST_F(ContentViewTest, LeadsFromPageToPage) {
    testing::makeBundle(home, "Applications/Acme.app");
    home.makeFolder("Library/Messages"); // with Full Disk Access
    open();
    QTest::keyClick(window.get(), Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::apps});
    ASSERT_TRUE(
        testing::eventually([&] { return !model->apps->apps.empty() && !model->apps->isLoadingApps; }));
    for (const auto &[key, modifier] :
         {std::pair(Qt::Key_R, Qt::ControlModifier), std::pair(Qt::Key_F5, Qt::NoModifier)}) {
        QTest::keyClick(window.get(), key, modifier);
        EXPECT_TRUE(model->apps->isLoadingApps) << "its page reads the apps again";
        EXPECT_EQ(window->currentSection(), Section{Section::Kind::apps});
        ASSERT_TRUE(testing::eventually([&] { return !model->apps->isLoadingApps; }));
    }

    // A locked row opens in Browse: with a scan, or in the tree that is there.
    window->goTo({Section::Kind::cleanup});
    emit window->findChild<CleanupView *>()->browseAsked(FileURL(home.path()));
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::browse});
    ASSERT_TRUE(testing::eventually([&] { return model->scan->tree != nullptr; }));
    EXPECT_EQ(model->scan->tree->path(), home.path());
    const FSNode *tree = model->scan->tree.get();
    emit window->findChild<CleanupView *>()->browseAsked(FileURL(home.path("folder")));
    EXPECT_EQ(model->scan->tree.get(), tree) << "it is not scanned again";
    EXPECT_EQ(window->findChild<OutlineView *>("outline")->focusFolder()->path(), home.path("folder"));
    emit window->findChild<BrowseView *>()->categoryAsked("photos");
    EXPECT_EQ(window->currentSection(), (Section{Section::Kind::category, "photos"}));
}

TEST_F(ContentViewTest, ScansWhatIsDroppedOnIt) {
    home.makeFolder("Library/Messages"); // with Full Disk Access
    const std::string file = home.makeFile("folder/a #1%", 5000);
    open();
    const auto drop = [&](const QList<QUrl> &urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(window.get(), &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent dropped({9, 9}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &dropped);
        EXPECT_EQ(dropped.dropAction(), Qt::CopyAction) << "the other program must not delete it";
        return true;
    };
    const QUrl one = QUrl::fromLocalFile(QString::fromStdString(file));
    EXPECT_FALSE(drop({QUrl("https://example.com/")}));
    EXPECT_FALSE(drop({one, QUrl::fromLocalFile("/")}));
    EXPECT_TRUE(drop({one}));
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::browse});
    ASSERT_TRUE(testing::eventually([&] { return model->scan->tree != nullptr; }));
    EXPECT_EQ(model->scan->tree->path(), home.path("folder"));
    const auto selected = window->findChild<OutlineView *>("outline")->selectedNodes();
    ASSERT_EQ(selected.size(), 1U);
    EXPECT_EQ(selected.front()->path(), file);

    EXPECT_TRUE(drop({QUrl::fromLocalFile(QString::fromStdString(home.path("gone")))}));
    ASSERT_TRUE(testing::eventually([&] { return !testing::shown(*window, "windowNotice").empty(); }));
    EXPECT_NE(testing::shown(*window, "windowNotice").find("no longer there"), std::string::npos);
    testing::click(*window, "closeNotice");
    EXPECT_EQ(testing::shown(*window, "windowNotice"), "");
}

TEST_F(ContentViewTest, OffersItsActionsForEveryRow) {
    home.makeFolder("Library/Messages"); // with Full Disk Access
    home.makeFile("folder/file");
    open();
    window->goTo({Section::Kind::cleanup});
    Host::useSystem(System::linux);
    const FileURL file(home.path("folder/file"));
    const std::unique_ptr<QMenu> menu(ItemActions::menuFor({file}, window->findChild<CleanupView *>()));
    for (const char *action : {"openItem", "openTerminal", "showInBrowse"})
        EXPECT_NE(menu->findChild<QAction *>(action), nullptr) << action;
    menu->findChild<QAction *>("showInBrowse")->trigger();
    EXPECT_EQ(window->currentSection(), Section{Section::Kind::browse});
    ASSERT_TRUE(testing::eventually([&] { return model->scan->tree != nullptr; }));
    EXPECT_EQ(model->scan->tree->path(), home.path("folder"));

    std::filesystem::remove(file.path());
    menu->findChild<QAction *>("openItem")->trigger();
    ASSERT_TRUE(testing::eventually([&] { return !testing::shown(*window, "windowNotice").empty(); }));
}

TEST_F(ContentViewTest, OffersThePermissionUntilItIsGranted) {
    for (const System system : {System::macOS, System::linux}) {
        Host::useSystem(system);
        open();
        const auto *button = window->findChild<QPushButton *>("grantFullDiskAccess");
        EXPECT_EQ(button->isHidden(), model->volumes->hasFullDiskAccess);
        EXPECT_TRUE(button->isHidden() || system == System::macOS) << "only there is such a permission";

        home.makeFolder("Library/Messages");
        model->volumes.refreshVolumes();
        EXPECT_TRUE(button->isHidden());
    }
}

TEST_F(ContentViewTest, FollowsTheSystemsAppearance) {
    open();
    const auto paintedAt = [this](QPoint where) {
        return window->grab().toImage().pixelColor(where * window->devicePixelRatioF());
    };
    const QPalette light = systemPalette(Qt::white, Qt::black);
    const QPalette dark = systemPalette(Qt::black, Qt::white);
    const QMenu *menu = window->menuBar()->findChild<QMenu *>();
    for (const QPalette &system : {dark, light, dark}) {
        QApplication::setPalette(system);
        QCoreApplication::processEvents();
        const Theme &theme = Theme::matching(system);
        EXPECT_EQ(QApplication::palette().color(QPalette::Window), system.color(QPalette::Window))
            << "the system's palette stays as it is";
        EXPECT_EQ(window->palette().color(QPalette::Window), theme.window);
        EXPECT_EQ(menu->palette().color(QPalette::Window), theme.window) << "menus go along";
        EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), theme.card) << "and so do tool tips";
        EXPECT_EQ(paintedAt({40, window->height() / 2}), theme.sidebar);
        EXPECT_EQ(paintedAt(window->menuBar()->geometry().center()), theme.window);
        const QWidget *list = window->findChild<QListWidget *>("pages");
        EXPECT_EQ(paintedAt(list->mapTo(window.get(), QPoint(list->width() - 30, 16))), theme.accent)
            << "the current row";
    }
}

TEST_F(ContentViewTest, TakesTheAppearanceThatIsChosenInItsMenu) {
    open();
    const auto choose = [this](const char *entry) { testing::find<QAction>(*window, entry).trigger(); };
    const auto appearance = [this] {
        const QPalette palette = window->palette();
        const QMenu ofField; // as Qt makes them
        QList<const QMenu *> menus = {&ofField, &testing::find<QMenu>(*window, "appearances")};
        for (const QAction *entry : window->menuBar()->actions())
            menus.append(entry->menu());
        for (const QMenu *menu : std::as_const(menus)) {
            menu->ensurePolished();
            EXPECT_EQ(menu->palette().color(QPalette::Window), palette.color(QPalette::Window))
                << menu->title().toStdString();
        }
        EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), palette.color(QPalette::ToolTipBase));
        return Theme::matching(palette).isDark ? "dark" : "light";
    };
    EXPECT_TRUE(testing::find<QAction>(*window, "systemAppearance").isChecked());
    EXPECT_STREQ(appearance(), "light");
    choose("darkAppearance");
    EXPECT_FALSE(testing::find<QAction>(*window, "systemAppearance").isChecked());
    EXPECT_STREQ(appearance(), "dark");
    QApplication::setPalette(systemPalette(Qt::black, Qt::white));
    QCoreApplication::processEvents();
    EXPECT_STREQ(appearance(), "dark") << "also if the system changes";
    choose("lightAppearance");
    EXPECT_STREQ(appearance(), "light");
    choose("systemAppearance");
    EXPECT_STREQ(appearance(), "dark");
    QApplication::setPalette(systemPalette(Qt::white, Qt::black));
    QCoreApplication::processEvents();
    EXPECT_STREQ(appearance(), "light") << "it follows the system again";
}

// What keeps a colour or a picture in an old colour differs.
TEST_F(ContentViewTest, LooksTheSameHoweverItBecameDark) {
    home.makeFolder("Library/Messages"); // with Full Disk Access
    testing::makeBundle(home, "Applications/Acme.app");
    const std::vector<Section> sections = {{Section::Kind::overview},
                                           {Section::Kind::browse},
                                           {Section::Kind::cleanup},
                                           {Section::Kind::apps},
                                           {Section::Kind::category, "documents"}};
    const auto visitPages = [&] {
        std::vector<QImage> pictures;
        for (const Section &section : sections) {
            window->goTo(section);
            EXPECT_TRUE(testing::eventually([&] { return !model->apps->isLoadingApps; }));
            // What shows the free space of this machine is another picture at any moment.
            for (QWidget *part : window->findChildren<QWidget *>())
                if (part->inherits("brimvale::SidebarFooter") || part->inherits("brimvale::CapacityCard") ||
                    part->inherits("brimvale::VolumesCard"))
                    part->hide();
            pictures.push_back(window->grab().toImage());
        }
        return pictures;
    };
    open();
    const std::vector<QImage> light = visitPages();
    testing::find<QAction>(*window, "darkAppearance").trigger();
    const std::vector<QImage> changed = visitPages();
    open(); // a window that is dark from the start
    visitPages();
    const std::vector<QImage> dark = visitPages();
    for (std::size_t page = 0; page < sections.size(); ++page) {
        EXPECT_NE(light[page], dark[page]) << page;
        EXPECT_EQ(changed[page], dark[page]) << page;
    }
}

TEST_F(ContentViewTest, TellsAboutItselfInSheets) {
    open();
    EXPECT_EQ(window->findChild<QAction *>("about")->text(), "&About " + QApplication::applicationName());
    QApplication::setPalette(systemPalette(Qt::black, Qt::white));
    QCoreApplication::processEvents();
    for (const auto &[entry, name] :
         {std::pair("about", "aboutSheet"), {"keyboardShortcuts", "shortcutsSheet"}}) {
        window->findChild<QAction *>(entry)->trigger();
        const QPointer<QDialog> sheet = window->findChild<QDialog *>(name);
        ASSERT_TRUE(sheet);
        EXPECT_TRUE(sheet->isVisible());
        EXPECT_EQ(sheet->windowModality(), Qt::WindowModal);
        EXPECT_EQ(sheet->palette().color(QPalette::Window), Theme::current().window);
        QTest::keyClick(sheet, Qt::Key_Escape);
        EXPECT_TRUE(testing::eventually([&] { return sheet.isNull(); }));
    }
}

// There, entries with a role and those that are called like them leave for the application's menu, and a menu
// that has none left is not shown.
TEST_F(ContentViewTest, KeepsEveryMenuOnAMac) {
    open();
    const QStringList moved = {"about",   "config", "preference", "options",
                               "setting", "setup",  "quit",       "exit"};
    for (const QAction *menu : window->menuBar()->actions()) {
        int stays = 0;
        for (const QAction *entry : menu->menu()->actions()) {
            const QString text = entry->text().remove('&').toLower();
            const bool isNamedSo = std::any_of(moved.begin(), moved.end(), [&](const QString &word) {
                return text.startsWith(word) || text.endsWith("about");
            });
            const bool hasRole = entry->menuRole() != QAction::TextHeuristicRole;
            EXPECT_TRUE(hasRole || !isNamedSo) << text.toStdString();
            stays += entry->isSeparator() || hasRole ? 0 : 1;
        }
        EXPECT_GT(stays, 0) << menu->text().toStdString();
    }
}

TEST_F(ContentViewTest, AsksBeforeItClosesOnARemoval) {
    open();
    testing::HeldRemoval held(actions);
    const FileURL item(home.path("folder/file"));
    const auto closeAndAnswer = [&](const char *answer) {
        window->close();
        EXPECT_TRUE(window->isVisible());
        const QPointer<QDialog> question = window->findChild<QDialog *>("confirmationSheet");
        ASSERT_TRUE(question);
        window->close();
        EXPECT_EQ(window->findChildren<QDialog *>("confirmationSheet").size(), 1) << "one question at a time";
        testing::click(*question, answer);
        EXPECT_TRUE(testing::eventually([&] { return question.isNull(); }));
    };
    const auto remove = [&] {
        model->removals.removeCleanupEntries({{item, 5000, {}}}, RemovalMode::deleteNow);
        ASSERT_TRUE(model->removals.isRemoving());
    };
    remove();
    closeAndAnswer("cancel");
    EXPECT_TRUE(window->isVisible());

    // The question ends with what it is about, which is told of then.
    window->close();
    held.letGoOn();
    EXPECT_TRUE(testing::eventually([&] { return testing::find(*window, "resultBanner").isVisible(); }));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(window->isVisible());

    remove();
    closeAndAnswer("confirm");
    EXPECT_FALSE(window->isVisible());
    held.letGoOn();
    EXPECT_TRUE(testing::waitUntilRemoved(*model));

    open();
    window->close();
    EXPECT_FALSE(window->isVisible()) << "nothing to lose";
}

TEST_F(ContentViewTest, SaysWhatWouldEndWithIt) {
    open();
    const std::string backup = "The backup will be incomplete. Your original files are not changed.";
    const auto expectQuestion = [&](const std::string &question, const std::string &loss) {
        window->close();
        auto *sheet = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(sheet, nullptr);
        EXPECT_EQ(testing::shown(*sheet, "question"), question);
        EXPECT_EQ(testing::shown(*sheet, "explanation"), loss);
        sheet->reject(); // and may ask again at once
    };
    PublishedWriter::set(model->backups, &BackupState::isArchiving, true);
    expectQuestion("Stop the backup and quit?", backup);
    PublishedWriter::set(model->removals, &RemovalState::removalActivity, RemovalActivity::asAdministrator);
    expectQuestion("Quit while an administrator task is running?",
                   "It will finish, but you won’t see the result. " + backup);
    PublishedWriter::set(model->backups, &BackupState::isArchiving, false);
    PublishedWriter::set(model->removals, &RemovalState::removalActivity, RemovalActivity::none);
    window->close();
    EXPECT_FALSE(window->isVisible());
}

} // namespace brimvale
