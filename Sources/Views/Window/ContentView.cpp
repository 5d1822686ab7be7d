#include "Views/Window/ContentView.h"

#include "Core/Model/AdministratorScan.h"
#include "Core/Model/Apps.h"
#include "Core/Model/Basket.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Trash.h"
#include "Core/Model/Volumes.h"
#include "Core/Update/Updater.h"
#include "Views/Apps/AppsView.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Category/CategoryDetailView.h"
#include "Views/Cleanup/CleanupView.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/CategoryStyle.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"
#include "Views/Components/VisualOrder.h"
#include "Views/Overview/OverviewView.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/SheetOrder.h"
#include "Views/Update/UpdateView.h"
#include "Views/Window/AboutSheet.h"
#include "Views/Window/BackupReviews.h"
#include "Views/Window/BasketBar.h"
#include "Views/Window/ClosingQuestion.h"
#include "Views/Window/DroppedItem.h"
#include "Views/Window/NoticeBar.h"
#include "Views/Window/RemovalBar.h"
#include "Views/Window/ResultBanner.h"
#include "Views/Window/RunningWork.h"
#include "Views/Window/SampleNote.h"
#include "Views/Window/ShortcutsSheet.h"
#include "Views/Window/SidebarFooter.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QStackedWidget>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr QSize defaultSize{1180, 760};
constexpr QSize minimumSizeOfWindow{900, 600};

/// The key that opens a page together with Command or Control; none for the storage categories.
QKeySequence shortcutOf(const Section &section) {
    switch (section.kind) {
    case Section::Kind::overview:
        return Shortcuts::page(1);
    case Section::Kind::browse:
        return Shortcuts::page(2);
    case Section::Kind::cleanup:
        return Shortcuts::page(3);
    case Section::Kind::apps:
        return Shortcuts::page(4);
    case Section::Kind::category:
        break;
    }
    return {};
}

} // namespace

ContentView::ContentView(CorvelModel &model, Updater &updater, QWidget *parent)
    : QMainWindow(parent), model_(model), updater_(updater), sidebar_(new Sidebar(this)),
      stack_(new QStackedWidget(this)), notice_(new NoticeBar(this)),
      closing_(new ClosingQuestion(model.removals, model.backups, model.volumes, *this)) {
    setObjectName(QStringLiteral("contentView"));
    applyTheme();
    const int widest = std::max(screen()->availableGeometry().width(), minimumSizeOfWindow.width());
    setMinimumSize(std::min(smallestSize().width(), widest), smallestSize().height());
    setAcceptDrops(true);
    resize(defaultSize);

    auto *content = new QWidget(this);
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(sidebar_);
    auto *page = new QVBoxLayout;
    page->setSpacing(0);
    page->addWidget(stack_, 1);
    page->addWidget(notice_);
    page->addWidget(new ResultBanner(model_.removals, model_.trash, this));
    page->addWidget(new BasketBar(model_.basket, model_.removals, this));
    page->addWidget(new RemovalBar(model_.removals, this));
    layout->addLayout(page, 1);
    setCentralWidget(content);

    buildMenus();
    addPages();
    followModel();
    new AccessNotice(*this);
    new BackupReviews(model_.backups, *this);
    new RunningWork(model_.removals, model_.backups, model_.trash, *this);
    connect(sidebar_, &Sidebar::currentRowChanged, this, &ContentView::showPageOfRow);
    goTo(pages_.front().section);
}

QSize ContentView::smallestSize() {
    return {Type::partlyScaled(minimumSizeOfWindow.width()), minimumSizeOfWindow.height()};
}

void ContentView::addPages() {
    addPage({Section::Kind::overview}, {u"Overview"_s, QStringLiteral("chart-pie")}, [this] {
        auto *page = new OverviewView(model_.storage, model_.volumes, this);
        connect(page, &OverviewView::categoryOpened, this, [this](const std::string &id) {
            goTo({Section::Kind::category, id});
        });
        return page;
    });
    addPage({Section::Kind::browse}, {u"Browse"_s, QStringLiteral("folder-tree")}, [this] {
        browse_ = new BrowseView(model_.scan, model_.removals, model_.duplicates, model_.volumes, this);
        connect(browse_, &BrowseView::categoryAsked, this, [this](const std::string &id) {
            goTo({Section::Kind::category, id});
        });
        viewMenu_->addAction(browse_->detailedMap());
        addColumnMenu();
        connect(browse_, &BrowseView::basketAsked, &model_.basket, &Basket::add);
        connect(browse_, &BrowseView::administratorScanAsked, this, &ContentView::scanAsAdministrator);
        return browse_;
    });
    addPage({Section::Kind::cleanup}, {u"Cleanup"_s, QStringLiteral("sparkles")}, [this] {
        auto *page = new CleanupView(model_.cleanup, model_.removals, this);
        connect(page, &CleanupView::browseAsked, this, &ContentView::browse);
        connect(page, &CleanupView::basketAsked, &model_.basket, &Basket::add);
        return page;
    });
    addPage({Section::Kind::apps}, {u"Apps"_s, QStringLiteral("layout-grid")}, [this] {
        auto *page = new AppsView(model_.apps, model_.orphans, model_.removals, this);
        connect(page, &AppsView::browseAsked, this, &ContentView::browse);
        connect(page, &AppsView::basketAsked, &model_.basket, &Basket::add);
        return page;
    });
    sidebar_->addHeading(u"Storage"_s);
    for (const MeasuredCategory &one : model_.storage->categories)
        addCategoryPage(one.category);
}

void ContentView::addCategoryPage(const StorageCategory &category) {
    addPage({Section::Kind::category, category.id},
            {QString::fromStdString(category.title), categoryIcon(category), categoryColor(category)},
            [this, id = category.id] {
                auto *page = new CategoryDetailView(id, model_.storage, model_.removals, model_.backups,
                                                    model_.trash, this);
                connect(page, &CategoryDetailView::appsAsked, this, [this] { goTo({Section::Kind::apps}); });
                connect(page, &CategoryDetailView::browseAsked, this, &ContentView::browse);
                connect(page, &CategoryDetailView::basketAsked, &model_.basket, &Basket::add);
                return page;
            });
}

void ContentView::addPage(Section section, const Sidebar::Row &row, std::function<QWidget *()> make) {
    if (const QKeySequence shortcut = shortcutOf(section); !shortcut.isEmpty()) {
        QAction *action = goMenu_->addAction(row.title, shortcut, this, [this, section] { goTo(section); });
        action->setObjectName(QStringLiteral("goTo") + row.title);
    }
    pages_.push_back({std::move(section), sidebar_->addRow(row), std::move(make)});
}

void ContentView::followModel() {
    SidebarFooter &footer = sidebar_->footer();
    const auto showVolumes = [this, &footer] {
        footer.setVolume(model_.volumes.rootVolume());
        footer.setHasFullDiskAccess(model_.volumes->hasFullDiskAccess);
    };
    const auto showFreed = [this, &footer] {
        footer.setFreed(model_.removals->deletedThisSession, model_.removals->movedToTrashThisSession);
    };
    connect(&model_.volumes, &Volumes::changed, this, showVolumes);
    connect(&model_.removals, &Removals::changed, this, showFreed);
    connect(&model_.storage, &Storage::changed, this, &ContentView::showCategorySizes);
    connect(&updater_, &Updater::stateChanged, this, &ContentView::showUpdateLine);
    connect(&footer, &SidebarFooter::updateAsked, this, &ContentView::showUpdateWindow);
    connect(&model_.scan, &ScanSession::treeChanged, this, &ContentView::showTitle);
    showTitle();
    showCategorySizes();
    showVolumes();
    showFreed();
    showUpdateLine();
}

/// Windows of several runs differ by the folder that was scanned.
void ContentView::showTitle() {
    const std::shared_ptr<FSNode> &tree = model_.scan->tree;
    const QString name = QApplication::applicationName() + (isSample_ ? u" — Sample"_s : QString());
    setWindowTitle(tree == nullptr ? name : displayedName(*tree) + u" — "_s + name);
}

void ContentView::showCategorySizes() {
    for (const Page &page : pages_) {
        const MeasuredCategory *category = model_.storage.category(page.section.id);
        if (category == nullptr)
            continue;
        sidebar_->setValue(page.row, category->measured ? sizeText(category->size) : QString());
        sidebar_->setRowHidden(page.row, !category->category.hasPlace());
    }
}

void ContentView::checkForUpdates() {
    showUpdateWindow();
    updateWindow_->check();
}

void ContentView::showUpdateWindow() {
    if (updateWindow_ == nullptr) {
        updateWindow_ = new UpdateView(updater_, this);
        connect(updateWindow_, &UpdateView::installAsked, this, &ContentView::installUpdate);
    }
    updateWindow_->show();
    updateWindow_->raise();
    updateWindow_->activateWindow();
}

/// The line stays until the update is downloaded, also when its window has been closed.
void ContentView::showUpdateLine() {
    const UpdateState &state = *updater_.state;
    QString line;
    if (const auto *available = std::get_if<updateState::Available>(&state))
        line = u"Version %1 is available"_s.arg(displayedText(available->version));
    else if (std::holds_alternative<updateState::ReadyToRelaunch>(state))
        line = u"Update ready to install"_s;
    sidebar_->footer().setUpdate(line);
}

/// Installing quits the program, which ends running work.
void ContentView::installUpdate() {
    if (!closing_->isDue())
        return updater_.installAndRelaunch();
    closing_->ask(u"Quit and Install"_s, [this] {
        mayClose_ = true;
        updater_.installAndRelaunch();
        mayClose_ = !isVisible(); // installing may have failed
    });
}

void ContentView::goTo(const Section &section) {
    for (const Page &page : pages_)
        if (page.section == section)
            sidebar_->setCurrentRow(page.row);
}

void ContentView::showPageOfRow(int row) {
    const auto page =
        std::find_if(pages_.begin(), pages_.end(), [row](const Page &one) { return one.row == row; });
    if (page == pages_.end())
        return;
    if (page->widget == nullptr) {
        page->widget = page->make();
        putChildrenInVisualOrder(*page->widget);
        stack_->addWidget(page->widget);
    }
    current_ = static_cast<std::size_t>(page - pages_.begin());
    stack_->setCurrentWidget(page->widget);
}

/// Reads the applications again on their page, and scans again from any other.
void ContentView::rescan() {
    if (currentSection().kind == Section::Kind::apps)
        return AccessNotice::beforeLook(*this, [this] { model_.apps.loadApps(); });
    scan(std::nullopt);
}

void ContentView::scan(const std::optional<FileURL> &folder) {
    goTo({Section::Kind::browse});
    const auto path = folder ? std::optional(folder->path()) : std::nullopt;
    AccessNotice::beforeLook(*this, [this, path] { model_.scan.startScan(path); });
}

void ContentView::showSample(const FileURL &disk) {
    isSample_ = true;
    showTitle();
    sidebar_->addNote(new SampleNote(disk, sidebar_));
}

void ContentView::browse(const FileURL &folder) {
    goTo({Section::Kind::browse});
    browse_->open(folder);
}

void ContentView::showInBrowse(const FileURL &item) {
    goTo({Section::Kind::browse});
    AccessNotice::beforeLook(*this, [this, item] { browse_->showItem(item); });
}

void ContentView::showNotice(const QString &sentence) {
    notice_->showNotice(sentence);
}

void ContentView::scanAsAdministrator(const FileURL &folder) {
    showNotice(u"Scanning “%1” as administrator…"_s.arg(displayedText(folder.path())));
    model_.administratorScan.start(folder, [window = QPointer(this)](const std::string &reason) {
        if (!window.isNull())
            showNoticeSheet(*window, u"Nothing was scanned as administrator"_s, displayedText(reason));
    });
}

void ContentView::chooseFolder() {
    goTo({Section::Kind::browse});
    browse_->chooseFolder();
}

void ContentView::dragEnterEvent(QDragEnterEvent *event) {
    if (!isSheetOpen() && droppedItem(*event->mimeData()))
        event->acceptProposedAction();
}

/// A drop only shows the item. It moves and copies nothing.
void ContentView::dropEvent(QDropEvent *event) {
    const std::optional<FileURL> item = droppedItem(*event->mimeData());
    if (!item)
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    goTo({Section::Kind::browse});
    AccessNotice::beforeLook(*this, [this, item = *item] { browse_->scanItem(item); });
}

void ContentView::showShortcuts() {
    if (!isSheetOpen())
        (new ShortcutsSheet(this))->open();
}

void ContentView::showAbout() {
    if (!isSheetOpen())
        (new AboutSheet(this))->open();
}

/// Tool tips and the menus that Qt adds to fields do not follow the window, and would keep the system's
/// palette.
void ContentView::applyTheme() {
    const QPalette palette = Theme::current().palette();
    setPalette(palette);
    QToolTip::setPalette(palette);
    if (QApplication::palette("QMenu") != palette) // setting it announces a change, which leads here again
        QApplication::setPalette(palette, "QMenu");
}

void ContentView::closeEvent(QCloseEvent *event) {
    if (mayClose_ || !closing_->isDue()) {
        QMainWindow::closeEvent(event);
        return;
    }
    event->ignore();
    closing_->ask(u"Quit"_s, [this] {
        mayClose_ = true;
        close();
    });
}

bool ContentView::event(QEvent *event) {
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyTheme();
    return QMainWindow::event(event);
}

} // namespace brimvale
