#include "Views/Apps/AppsView.h"

#include "Base/Background.h"
#include "Base/Bytes.h"
#include "Catalogs/Words.h"
#include "Core/Apps/Orphans.h"
#include "Core/Apps/RunningApp.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Model/Apps.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Model/Removals.h"
#include "Views/Apps/AppDetail.h"
#include "Views/Apps/AppListDelegate.h"
#include "Views/Apps/OrphanDetail.h"
#include "Views/Apps/OrphanEntry.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/Card.h"
#include "Views/Components/MeasureButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageHeader.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/StateMessage.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/ItemActions.h"
#include "Views/Removing/ActionBar.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Removing/SelectionTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int listWidth = 260;
constexpr std::chrono::seconds runningInterval{2};

/// What the question says besides the items.
std::function<std::string(RemovalMode)> remarkFor(std::string words) {
    return [words = std::move(words)](RemovalMode mode) {
        return mode == RemovalMode::trash ? words : words + ". " + cannotBeUndone;
    };
}

} // namespace

AppsView::AppsView(Apps &apps, OrphanSearch &orphans, const Removals &removals, QWidget *parent)
    : QWidget(parent), apps_(apps), orphans_(orphans), removals_(removals),
      reload_(new MeasureButton(u"Analyzing apps"_s, MeasureButton::WhileMeasuring::hidden, this)),
      search_(new QLineEdit(this)), order_(new QComboBox(this)),
      system_(new QCheckBox(text(Words::current().includeSystemApps), this)), list_(new QListView(this)),
      noMatch_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      orphanEntry_(new OrphanEntry(this)), message_(new StateMessage(this)), detail_(new AppDetail(this)),
      orphanDetail_(new OrphanDetail(this)), bar_(new ActionBar(this)) {
    setObjectName(QStringLiteral("appsPage"));
    message_->setObjectName(QStringLiteral("noApp"));
    auto *sides = new QHBoxLayout;
    sides->setContentsMargins(Metrics::pageMargin, 0, 0, 0);
    sides->setSpacing(16);
    sides->addWidget(makeListSide());
    sides->addWidget(makeDetailSide(), 1);
    auto *header = new PageHeader(u"Apps"_s, this);
    reload_->setObjectName(QStringLiteral("reload"));
    reload_->setText(u"Reload"_s);
    reload_->setToolTip(u"Look for apps and their files again"_s);
    reload_->progress()->setObjectName(QStringLiteral("appProgress"));
    reload_->progress()->setFixedWidth(220);
    for (QWidget *control : {static_cast<QWidget *>(reload_), static_cast<QWidget *>(reload_->progress()),
                             static_cast<QWidget *>(reload_->stop())})
        header->addControl(control);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Metrics::pageGap);
    layout->addWidget(makePageHead(header, 0, this));
    layout->addLayout(sides, 1);
    layout->addWidget(bar_);

    runningTimer_.setInterval(runningInterval);
    connect(&runningTimer_, &QTimer::timeout, this, &AppsView::checkRunning);
    connect(reload_, &QPushButton::clicked, &apps_, &Apps::loadApps);
    connect(reload_->stop(), &QPushButton::clicked, &apps_, &Apps::stopAnalysis);
    connect(&apps_, &Apps::changed, this, &AppsView::showApps);
    connect(&removals_, &Removals::changed, this, &AppsView::showSelection);
    connect(detail_, &AppDetail::selectionChanged, this, &AppsView::showSelection);
    connect(detail_, &AppDetail::refused, bar_, &ActionBar::showRefusal);
    connect(detail_, &AppDetail::browseAsked, this, &AppsView::browseAsked);
    connect(detail_, &AppDetail::basketAsked, this, &AppsView::basketAsked);
    connect(bar_, &ActionBar::removalAsked, this, &AppsView::confirmRemoval);
    followOrphans();
    showApps();
}

void AppsView::makeListControls() {
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(u"Search"_s);
    search_->setAccessibleName(u"Search the apps"_s);
    search_->setClearButtonEnabled(true);
    search_->setTextMargins(4, 0, 4, 0);
    system_->setObjectName(QStringLiteral("includeSystemApps"));
    order_->setObjectName(QStringLiteral("sortApps"));
    order_->setAccessibleName(u"Sort the apps"_s);
    order_->addItem(u"Sorted by name"_s, QVariant::fromValue(AppListModel::Order::name));
    order_->addItem(u"Sorted by size"_s, QVariant::fromValue(AppListModel::Order::size));
    order_->addItem(u"Sorted by last use"_s, QVariant::fromValue(AppListModel::Order::lastUsed));
}

QWidget *AppsView::makeListSide() {
    makeListControls();
    list_->setObjectName(QStringLiteral("apps"));
    list_->setAccessibleName(u"Apps"_s);
    list_->setModel(&listModel_);
    list_->setItemDelegate(new AppListDelegate(icons_, list_));
    list_->setUniformItemSizes(true);
    list_->setMouseTracking(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setAttribute(Qt::WA_MacShowFocusRect, false);
    list_->viewport()->setAutoFillBackground(false);
    auto *card = new Card(this);
    card->setFixedWidth(Type::scaled(listWidth));
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 10, 1, 8);
    layout->setSpacing(8);
    auto *controls = new QVBoxLayout;
    controls->setContentsMargins(10, 0, 10, 0);
    controls->addWidget(search_);
    controls->addWidget(order_);
    controls->addWidget(system_);
    layout->addLayout(controls);
    layout->addWidget(list_, 1);
    noMatch_->setObjectName(QStringLiteral("noMatch"));
    noMatch_->setText(u"No apps match the search."_s);
    noMatch_->setAlignment(Qt::AlignHCenter);
    noMatch_->setContentsMargins(10, 24, 10, 0);
    layout->addWidget(noMatch_, 1, Qt::AlignTop);
    layout->addWidget(orphanEntry_);
    followListSide();
    return card;
}

void AppsView::followListSide() {
    connect(search_, &QLineEdit::textChanged, this, [this](const QString &words) {
        listModel_.setSearch(words);
        showMatches();
        showChosen();
    });
    connect(system_, &QCheckBox::toggled, &apps_, &Apps::setIncludeSystemApps);
    connect(order_, &QComboBox::currentIndexChanged, this,
            [this] { listModel_.setOrder(order_->currentData().value<AppListModel::Order>()); });
    connect(&icons_, &AppIcons::arrived, list_->viewport(), qOverload<>(&QWidget::update));
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &row) { choose(row); });
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &selected) { choose(selected.indexes().value(0)); });
    connect(list_, &QAbstractItemView::activated, this,
            [this](const QModelIndex &row) { ItemActions::reveal(listModel_.rowAt(row).app.url, this); });
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &QWidget::customContextMenuRequested, this, &AppsView::showMenu);
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, search_, [this] {
        search_->setFocus(Qt::ShortcutFocusReason);
        search_->selectAll();
    });
    auto *clear = new QShortcut(QKeySequence(Qt::Key_Escape), search_);
    clear->setContext(Qt::WidgetShortcut);
    connect(clear, &QShortcut::activated, search_, [this] {
        search_->clear();
        list_->setFocus(Qt::ShortcutFocusReason);
    });
}

void AppsView::showMenu(const QPoint &place) {
    const QModelIndex row = list_->indexAt(place);
    if (row.isValid())
        ItemActions::menuFor({listModel_.rowAt(row).app.url}, this)
            ->popup(list_->viewport()->mapToGlobal(place));
}

/// The entry is only there where orphans can be found.
void AppsView::followOrphans() {
    orphanEntry_->setVisible(hasOrphanSearch());
    connect(orphanEntry_, &OrphanEntry::clicked, this, &AppsView::chooseOrphans);
    connect(reload_, &QPushButton::clicked, &orphans_, &OrphanSearch::searchAgain);
    connect(&orphans_, &OrphanSearch::changed, this, &AppsView::showOrphans);
    connect(orphanDetail_, &OrphanDetail::stopAsked, &orphans_, &OrphanSearch::stop);
    connect(orphanDetail_, &OrphanDetail::selectionChanged, this, &AppsView::showSelection);
    connect(orphanDetail_, &OrphanDetail::refused, bar_, &ActionBar::showRefusal);
    connect(orphanDetail_, &OrphanDetail::browseAsked, this, &AppsView::browseAsked);
    connect(orphanDetail_, &OrphanDetail::basketAsked, this, &AppsView::basketAsked);
    showOrphans();
}

QScrollArea *AppsView::makeDetailArea(QWidget *detail) {
    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 4, Metrics::pageMargin, 16);
    layout->addWidget(detail);
    return makeScrollArea(content, this);
}

QWidget *AppsView::makeDetailSide() {
    detailArea_ = makeDetailArea(detail_);
    orphanArea_ = makeDetailArea(orphanDetail_);
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(message_);
    layout->addWidget(detailArea_);
    layout->addWidget(orphanArea_);
    return side;
}

/// The applications are listed when the page is first shown.
void AppsView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    if (apps_->apps.empty())
        AccessNotice::beforeLook(*this, [this] { apps_.loadApps(); });
    runningTimer_.start();
    checkRunning();
}

void AppsView::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    runningTimer_.stop();
}

const AppRow *AppsView::chosen() const {
    const auto row = std::find_if(apps_->apps.begin(), apps_->apps.end(),
                                  [this](const AppRow &one) { return chosen_ && one.app.url == *chosen_; });
    return row == apps_->apps.end() ? nullptr : &*row;
}

void AppsView::choose(const QModelIndex &row) {
    if (!row.isValid() || chosen_ == listModel_.rowAt(row).app.url)
        return;
    chosen_ = listModel_.rowAt(row).app.url;
    orphanEntry_->setChecked(false);
    orphanDetail_->clearTicks();
    bar_->setNote({});
    showChosen();
    checkRunning();
}

void AppsView::showApps() {
    listModel_.setApps(apps_->apps);
    showMatches();
    system_->setChecked(apps_->includeSystemApps);
    reload_->showState(apps_->isLoadingApps, apps_->appProgress);
    showChosen();
}

/// Shows a message if no application matches the search.
void AppsView::showMatches() {
    const bool hasNone = listModel_.rowCount() == 0 && !apps_->apps.empty();
    noMatch_->setVisible(hasNone);
    list_->setHidden(hasNone);
}

bool AppsView::hasChosenOrphans() const {
    return orphanEntry_->isChecked();
}

void AppsView::chooseOrphans() {
    chosen_.reset();
    list_->clearSelection();
    detail_->clearTicks();
    if (!orphans_->wasSearched && !orphans_->isSearching)
        AccessNotice::beforeLook(*this, [this] { orphans_.search(); });
    showChosen();
}

void AppsView::showOrphans() {
    orphanEntry_->showState(*orphans_);
    orphanDetail_->show(*orphans_);
    showSelection();
}

void AppsView::showChosen() {
    const AppRow *row = chosen();
    detailArea_->setVisible(row != nullptr);
    orphanArea_->setVisible(hasChosenOrphans());
    message_->setVisible(row == nullptr && !hasChosenOrphans());
    if (row != nullptr) {
        detail_->show(*row, apps_->apps, apps_->isLoadingApps);
        const QModelIndex place = listModel_.indexOf(row->app.url);
        // When a key moves the focus into a list, its current row is not selected.
        if (place.isValid() && !list_->selectionModel()->isSelected(place))
            list_->setCurrentIndex(place);
    } else {
        showNoApp();
        bar_->setNote({});
    }
    showSelection();
}

/// Says why no application is shown.
void AppsView::showNoApp() {
    if (!apps_->apps.empty())
        message_->setMessage(QStringLiteral("app-window"), u"No app selected"_s,
                             text(Words::current().chooseApp));
    else if (apps_->isLoadingApps)
        message_->setMessage(QStringLiteral("search"), u"Looking for apps…"_s,
                             u"The list appears in a moment."_s);
    else
        message_->setMessage(QStringLiteral("app-window"), u"No apps found"_s,
                             u"Apps that you install appear here."_s);
}

void AppsView::showSelection() {
    const AppRow *row = chosen();
    std::vector<LeftoverItem> leftovers;
    if (hasChosenOrphans())
        leftovers = orphanDetail_->leftovers();
    else if (row != nullptr)
        leftovers = detail_->leftovers();
    auto count = static_cast<std::int64_t>(leftovers.size());
    std::int64_t bytes = 0;
    for (const LeftoverItem &item : leftovers)
        bytes = checkedAdd(bytes, item.size);
    if (row != nullptr && detail_->includesBundle()) {
        ++count;
        bytes = checkedAdd(bytes, row->bundleSize);
    }
    bar_->setSelection(count, bytes);
    bar_->setBusy(removals_.isRemoving());
}

/// Checks in the background whether the chosen application is running, because this may take a while.
void AppsView::checkRunning() {
    const AppRow *row = chosen();
    if (row == nullptr || row->app.isSystemApp) {
        bar_->setNote({});
        return;
    }
    if (isCheckingRunning_)
        return;
    isCheckingRunning_ = true;
    inBackground(
        *QThreadPool::globalInstance(), this, [app = row->app] { return isRunning(app); },
        [this, url = row->app.url](bool isRunning) {
            isCheckingRunning_ = false;
            if (chosen_ != url)
                checkRunning();
            else
                bar_->setNote(isRunning
                                  ? u"The app is running. Quit it first so it does not rewrite its files."_s
                                  : QString());
        });
}

void AppsView::confirmRemoval(RemovalMode mode) {
    if (hasChosenOrphans())
        confirmOrphans(mode);
    else if (const AppRow *row = chosen())
        confirmUninstall(*row, mode);
}

void AppsView::confirmOrphans(RemovalMode mode) {
    const std::vector<LeftoverItem> items = orphanDetail_->leftovers();
    RemovalRequest request{.mode = mode, .remark = remarkFor(orphanConfirmation(items))};
    for (const LeftoverItem &item : items)
        request.items.push_back(Uninstall::entryOf(item));
    auto *sheet = new RemovalSheet(request, this);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, items](RemovalMode chosenMode, const std::optional<FreePromise> &promise) {
                orphans_.remove(items, chosenMode, promise);
                bar_->resetMode();
            });
    sheet->open();
}

void AppsView::confirmUninstall(const AppRow &row, RemovalMode mode) {
    const std::vector<LeftoverItem> leftovers = detail_->leftovers();
    const bool includeBundle = detail_->includesBundle();
    RemovalRequest request{.mode = mode,
                           .remark = remarkFor(Uninstall::confirmation(row, leftovers, includeBundle)),
                           .uninstalls = includeBundle && Uninstall::isRemovedByCommand(row.app)};
    if (includeBundle)
        request.items.push_back({.url = row.app.url, .size = row.bundleSize});
    for (const LeftoverItem &item : leftovers)
        request.items.push_back(Uninstall::entryOf(item));
    auto *sheet = new RemovalSheet(request, this);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, app = row.app, leftovers, includeBundle](RemovalMode chosenMode,
                                                            const std::optional<FreePromise> &promise) {
                apps_.uninstall(app, leftovers, includeBundle, chosenMode, promise);
                bar_->resetMode();
            });
    sheet->open();
}

} // namespace brimvale
