#pragma once

#include "Views/Window/Section.h"
#include "Views/Window/Sidebar.h"

#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <vector>

class QMenu;
class QStackedWidget;

namespace brimvale {

class ClosingQuestion;
class CorvelModel;
class UpdateView;
class Updater;
struct StorageCategory;

/// The one window: the sidebar at the left, the current page at the right. A page is built when it is first
/// gone to. The window follows the system's light or dark appearance while it runs. While something is
/// removed or backed up it asks before it closes, or lets an update be installed.
class ContentView : public QMainWindow {
    Q_OBJECT

public:
    /// Both must outlive the window.
    ContentView(CorvelModel &model, Updater &updater, QWidget *parent = nullptr);

    /// Shows a page; nothing happens where the window has no such page.
    void goTo(const Section &section);
    [[nodiscard]] const Section &currentSection() const { return pages_[current_].section; }

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    struct Page {
        Section section;
        int row; ///< in the sidebar
        std::function<QWidget *()> make;
        QWidget *widget = nullptr; ///< null until it is first gone to
    };

    void addPages();
    /// Adds a page to the sidebar, and to the Go menu if it has a shortcut there.
    void addPage(Section section, const Sidebar::Row &row, std::function<QWidget *()> make);
    void buildMenus();
    QMenu *addMenu(const QString &title);
    void followModel();
    void showPageOfRow(int row);
    void rescan();
    void showShortcuts();
    void showAbout();
    void addCategoryPage(const StorageCategory &category);
    void showCategorySizes();
    void checkForUpdates();
    void installUpdate();
    void applyTheme();

    CorvelModel &model_;
    Updater &updater_;
    Sidebar *sidebar_;
    QStackedWidget *stack_;
    QMenu *goMenu_ = nullptr;
    std::vector<Page> pages_;
    std::size_t current_ = 0;
    ClosingQuestion *closing_;
    bool mayClose_ = false;             ///< whatever is going on
    QPointer<UpdateView> updateWindow_; ///< where it is open
};

} // namespace brimvale
