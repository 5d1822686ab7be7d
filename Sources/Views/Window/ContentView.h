#pragma once

#include "Base/FileURL.h"
#include "Views/Components/WindowServices.h"
#include "Views/Window/Section.h"
#include "Views/Window/Sidebar.h"

#include <QMainWindow>
#include <QPointer>
#include <QSize>
#include <functional>
#include <optional>
#include <vector>

class QMenu;
class QStackedWidget;

namespace brimvale {

class BrowseView;
class ClosingQuestion;
class CorvelModel;
class NoticeBar;
class UpdateView;
class Updater;
struct StorageCategory;

/// The main window: the sidebar at the left, the current page at the right. A page is built when it is first
/// shown. The window follows changes of the system's light or dark appearance. During a removal or a backup
/// it asks before it closes or installs an update.
class ContentView : public QMainWindow, public WindowServices {
    Q_OBJECT

public:
    /// Both must outlive the window.
    ContentView(CorvelModel &model, Updater &updater, QWidget *parent = nullptr);

    /// The size in which all controls can be seen. The window is never smaller, unless the screen is.
    [[nodiscard]] static QSize smallestSize();

    /// Shows a page; does nothing if the window has no such page.
    void goTo(const Section &section);
    /// Shows the page that scans, and starts a scan of `folder`, or of the folder chosen there.
    void scan(const std::optional<FileURL> &folder);
    /// Says that the window shows a sample of a disk, in this folder, and not the computer.
    void showSample(const FileURL &disk);
    /// Shows a folder, or a file in its parent folder, on the page that scans; scans it if necessary.
    void showInBrowse(const FileURL &item) override;
    void showNotice(const QString &sentence) override;
    /// Shows the current theme. Needed only if that changes without the palette of the application.
    void applyTheme();
    [[nodiscard]] const Section &currentSection() const { return pages_[current_].section; }

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    struct Page {
        Section section;
        int row; ///< in the sidebar
        std::function<QWidget *()> make;
        QWidget *widget = nullptr; ///< null until it is first shown
    };

    void addPages();
    /// Adds a page to the sidebar and, if it has a shortcut, to the Go menu.
    void addPage(Section section, const Sidebar::Row &row, std::function<QWidget *()> make);
    void buildMenus();
    QMenu *addMenu(const QString &title);
    void addUndo(QMenu &menu);
    void addColumnMenu();
    void followModel();
    void showPageOfRow(int row);
    void rescan();
    void browse(const FileURL &folder);
    void chooseFolder();
    void scanAsAdministrator(const FileURL &folder);
    void showShortcuts();
    void showAbout();
    void addCategoryPage(const StorageCategory &category);
    void showTitle();
    void showCategorySizes();
    void checkForUpdates();
    void showUpdateWindow();
    void showUpdateLine();
    void installUpdate();

    CorvelModel &model_;
    Updater &updater_;
    Sidebar *sidebar_;
    QStackedWidget *stack_;
    QMenu *viewMenu_ = nullptr;
    NoticeBar *notice_;
    QMenu *goMenu_ = nullptr;
    BrowseView *browse_ = nullptr; ///< null until it is first shown
    std::vector<Page> pages_;
    std::size_t current_ = 0;
    ClosingQuestion *closing_;
    bool isSample_ = false;             ///< not the computer is shown
    bool mayClose_ = false;             ///< without a question
    QPointer<UpdateView> updateWindow_; ///< null unless open
};

} // namespace brimvale
