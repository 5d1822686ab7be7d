#include "Core/Model/ScanSession.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Compare/ChangeList.h"
#include "Views/Browse/Duplicates/DuplicatesView.h"
#include "Views/Browse/Find/FindView.h"
#include "Views/Browse/Find/TabStrip.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int duplicatesTab = 4; ///< after the outline and the lists of `FindView`

/// Selects the rows of the outline's folder that are not selected and hold nothing selected. With a filter,
/// those that it accepts.
void invertRows(OutlineView &outline, const OutlineModel &model) {
    const QModelIndex root = outline.rootIndex();
    std::vector<bool> isTaken(static_cast<std::size_t>(model.rowCount(root)));
    for (int row = 0; row < model.rowCount(root); ++row)
        isTaken[static_cast<std::size_t>(row)] = !model.isMatch(*model.nodeAt(model.index(row, 0, root)));
    for (const QItemSelectionRange &range : outline.selectionModel()->selection()) {
        QModelIndex above = range.topLeft();
        while (above.isValid() && above.parent() != root)
            above = above.parent();
        const int last = range.parent() == root ? range.bottom() : above.row();
        for (int row = above.row(); above.isValid() && row <= last; ++row)
            isTaken[static_cast<std::size_t>(row)] = true;
    }
    QItemSelection inverted;
    const int count = static_cast<int>(isTaken.size());
    for (int first = 0, next = 0; first < count; first = next) {
        const bool isFree = !isTaken[static_cast<std::size_t>(first)];
        while (next < count && isTaken[static_cast<std::size_t>(next)] != isFree)
            ++next;
        if (isFree)
            inverted.append(QItemSelectionRange(model.index(first, 0, root),
                                                model.index(next - 1, model.columnCount() - 1, root)));
    }
    outline.selectionModel()->select(inverted, QItemSelectionModel::ClearAndSelect);
}

} // namespace

QWidget *BrowseView::makeLists() {
    tabs_->setObjectName(QStringLiteral("browseTabs"));
    tabs_->setAccessibleName(u"Lists"_s);
    for (const QString &title : {u"Folders"_s, u"Largest"_s, u"By Type"_s, u"By Age"_s, u"Duplicates"_s})
        tabs_->addTab(title);
    filterNote_->setObjectName(QStringLiteral("filterNote"));
    filterNote_->setWordWrap(true);
    filterNote_->setContentsMargins(12, 0, 12, 0);
    filterNote_->hide();
    auto *lists = new QWidget(this);
    auto *layout = new QVBoxLayout(lists);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    auto *tabRow = new QHBoxLayout;
    tabRow->setContentsMargins(4, 0, 4, 0);
    tabRow->addWidget(tabs_);
    tabRow->addStretch(1);
    layout->addLayout(tabRow);
    layout->addWidget(filterNote_);
    layout->addLayout(lists_, 1);
    lists_->addWidget(outline_);
    lists_->addWidget(find_);
    lists_->addWidget(duplicates_);
    filter_->setToolTip(u"Part of a name, or >100M, <1G, older:1y, newer:2w, type:video"_s);

    connect(tabs_, &QTabBar::currentChanged, this, &BrowseView::chooseList);
    connect(&outlineModel_, &OutlineModel::filtered, this, &BrowseView::showMatches);
    connect(find_, &FindView::selectionChangedTo, this, &BrowseView::select);
    connect(find_, &FindView::shownInFolder, this, &BrowseView::showInFolder);
    connect(find_, &FindView::menuRequested, this, &BrowseView::showMenu);
    connect(duplicates_, &DuplicatesView::shownInFolder, this, [this](const FileURL &file) {
        tabs_->setCurrentIndex(0);
        showItem(file);
    });
    return lists;
}

void BrowseView::applyFilter() {
    const QString fault = outlineModel_.setFilter(filter_->text(), scan_->ageMoment);
    filterNote_->setText(fault);
    filterNote_->setVisible(!fault.isEmpty());
    if (!fault.isEmpty())
        return;
    listFiles();
    if (!outlineModel_.isFiltering())
        showMatches();
}

/// Tells how much the filter has found. Does not replace what is wrong with a later one.
void BrowseView::showMatches() {
    markMatches();
    listChanges();
    if (filter_->text() != outlineModel_.filter())
        return;
    const FilterResult &result = outlineModel_.filterResult();
    QString words;
    if (!outlineModel_.fileFilter().acceptsAll())
        words = u"%1 %2, %3"_s.arg(text(Fmt::count(result.matches.count)),
                                   result.matches.count == 1 ? u"match"_s : u"matches"_s,
                                   sizeText(result.matches.bytes));
    if (result.unsearched > 0)
        words.append(u". %1 not searched."_s.arg(
            result.unsearched == 1 ? u"1 small file was"_s
                                   : counted(result.unsearched, "small file") + u" were"_s));
    filterNote_->setText(words);
    filterNote_->setVisible(!words.isEmpty());
}

/// In the map, what the outline hides stands back.
void BrowseView::markMatches() {
    if (outlineModel_.fileFilter().acceptsAll())
        treemap_->setHighlighted({});
    else
        treemap_->setHighlighted([this](const FSNode &node) { return leadsMapToMatch(node); });
}

/// Whether a tile is, is in, or contains something that the filter accepts. The tile for all smaller items
/// has no marks of its own, so the children without a tile are looked at.
bool BrowseView::leadsMapToMatch(const FSNode &node) const {
    if (isInTree(node))
        return !outlineModel_.hides(node);
    std::unordered_set<const FSNode *> tiles;
    for (const TreemapTile &tile : treemap_->tiles())
        tiles.insert(tile.node);
    const auto children = focus_->children();
    return std::any_of(children.begin(), children.end(), [&](const auto &child) {
        return child->size > 0 && !tiles.contains(child.get()) && !outlineModel_.hides(*child);
    });
}

void BrowseView::chooseList(int tab) {
    QWidget *const list = tab == 0               ? static_cast<QWidget *>(outline_)
                          : tab == duplicatesTab ? static_cast<QWidget *>(duplicates_)
                          : tab == changesTab_   ? static_cast<QWidget *>(changes_)
                                                 : find_;
    lists_->setCurrentWidget(list);
    outline_->select(nullptr);
    treemap_->setSelection(nullptr);
    changes_->clearSelection();
    if (list != find_)
        find_->letGo();
    listFiles();
    select({});
}

void BrowseView::listFiles() {
    listChanges();
    if (focus_ == nullptr)
        return;
    if (currentList() == duplicates_)
        duplicates_->setFolder(focus_->isImported() ? std::nullopt : std::optional(FileURL(focus_->path())));
    if (currentList() == find_)
        find_->showFiles(static_cast<FindModel::List>(tabs_->currentIndex() - 1), *focus_,
                         outlineModel_.fileFilter(), scan_->ageMoment);
}

/// Selects a file in the outline. A small file has no row there, so the row for all of them is selected.
void BrowseView::showInFolder(FSNode *file) {
    tabs_->setCurrentIndex(0);
    if (outlineModel_.hides(*file))
        filter_->clear();
    selectNode(file->parent()->isAggregate ? file->parent() : file);
    outline_->setFocus();
}

void BrowseView::invertSelection() {
    if (currentList() == find_)
        find_->invertSelection();
    else if (currentList() == outline_)
        invertRows(*outline_, outlineModel_);
}

QWidget *BrowseView::currentList() const {
    return lists_->currentWidget();
}

std::vector<FSNode *> BrowseView::selectedNodes() const {
    return currentList() == find_ ? find_->selectedNodes() : outline_->selectedNodes();
}

} // namespace brimvale
