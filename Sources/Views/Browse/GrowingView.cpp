#include "Views/Browse/GrowingView.h"

#include "Core/Model/ScanSession.h"
#include "Core/Scan/DiskScanner.h"
#include "Views/Browse/Outline/OutlineView.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/Card.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"
#include "Views/Entries/ItemActions.h"

#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>
#include <cstddef>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// The order of the rows and the treemap change no more often, so that people can follow them.
constexpr int stableFor = 1000; // milliseconds

/// The name that the row of all further entries has.
constexpr const char *otherEntries = "More items";

std::unique_ptr<FSNode> nodeOf(const GrowingRow &row, FSNode &root) {
    auto node = std::make_unique<FSNode>(row.name.empty() ? otherEntries : row.name, root, row.isDirectory);
    if (row.name.empty())
        node->markAggregate();
    return node;
}

} // namespace

GrowingView::GrowingView(const ScanSession &scan, QWidget *parent)
    : QWidget(parent), scan_(scan), outline_(new OutlineView(model_, this)), treemap_(new TreemapView(this)),
      words_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      chosen_(new ElidedLabel(Type::Size::body, TextLabel::Tone::primary, Qt::ElideMiddle, this)) {
    setObjectName(QStringLiteral("growing"));
    outline_->setObjectName(QStringLiteral("growingOutline"));
    outline_->setSelectionMode(QAbstractItemView::SingleSelection);
    treemap_->setObjectName(QStringLiteral("growingTreemap"));
    words_->setObjectName(QStringLiteral("growingWords"));
    words_->setWordWrap(true);
    chosen_->setObjectName(QStringLiteral("growingSelection"));
    auto *sides = new QSplitter(Qt::Horizontal, this);
    sides->setChildrenCollapsible(false);
    sides->setHandleWidth(16);
    sides->addWidget(makeRows());
    sides->addWidget(makeMap());
    sides->setSizes({1000, 1000});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(words_);
    layout->addWidget(sides, 1);

    connect(&scan_, &ScanSession::grown, this, &GrowingView::follow);
    connect(outline_, &OutlineView::selectionChangedTo, this, &GrowingView::showSelection);
    connect(outline_, &OutlineView::menuRequested, this, &GrowingView::showMenu);
    connect(treemap_, &TreemapView::selected, this, [this](const FSNode *node) { select(node->name); });
    connect(treemap_, &TreemapView::contextMenuRequested, this,
            [this](const FSNode *, QPoint place) { showMenu(place); });
    follow();
}

QWidget *GrowingView::makeRows() {
    auto *card = new Card(this);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 8, 1, 8);
    layout->addWidget(outline_);
    card->setMinimumWidth(Type::partlyScaled(320));
    return card;
}

QWidget *GrowingView::makeMap() {
    auto *card = new Card(this);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(8);
    layout->addWidget(treemap_, 1);
    layout->addWidget(chosen_);
    card->setMinimumWidth(Type::partlyScaled(260));
    return card;
}

bool GrowingView::hasRows() const {
    return tree_ != nullptr;
}

std::optional<std::string> GrowingView::selection() const {
    const std::vector<FSNode *> nodes = outline_->selectedNodes();
    return nodes.empty() ? std::nullopt : std::optional(std::string(nodes.front()->name));
}

void GrowingView::follow() {
    const ScanGrowth &growth = scan_.growth();
    const bool hadRows = hasRows();
    if (tree_ != nullptr && (growth.rows().size() < tree_->children().size() || growth.rows().empty() ||
                             tree_->path() != growth.rootPath())) {
        treemap_->setNode(nullptr);
        model_.setTree(nullptr);
        tree_ = nullptr;
    }
    if (!growth.rows().empty())
        showRows();
    showWords();
    if (hadRows != hasRows())
        emit filled();
}

void GrowingView::showRows() {
    const ScanGrowth &growth = scan_.growth();
    bool isNew = false;
    if (tree_ == nullptr) {
        tree_ =
            std::make_shared<FSNode>(DiskScanner::displayName(growth.rootPath()), growth.rootPath(), true);
        model_.setTree(tree_);
        isNew = true;
    }
    if (growth.rows().size() > tree_->children().size()) {
        addRows();
        isNew = true;
    }
    showFigures();
    const bool isDue = isNew || growth.isStopped() || sinceOrdered_.elapsed() >= stableFor;
    model_.showFigures(isDue);
    if (isDue) {
        sinceOrdered_.start();
        treemap_->setNode(tree_.get());
    }
    showSelection();
}

/// The rows are known soon after the scan began, so this happens seldom.
void GrowingView::addRows() {
    const std::optional<std::string> selected = selection();
    treemap_->setNode(nullptr);
    const std::vector<GrowingRow> &rows = scan_.growth().rows();
    model_.aboutToReplaceContents(*tree_);
    for (std::size_t i = tree_->children().size(); i < rows.size(); ++i)
        tree_->adopt(nodeOf(rows[i], *tree_));
    model_.replacedContents(*tree_);
    if (selected)
        select(*selected);
}

/// What is not finished has at least the size counted so far.
void GrowingView::showFigures() {
    const std::vector<GrowingRow> &rows = scan_.growth().rows();
    tree_->size = tree_->fileCount = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        FSNode &node = *tree_->children()[i];
        node.size = rows[i].size;
        node.fileCount = rows[i].files;
        node.holdsUnreadable = !rows[i].isFinished;
        tree_->size += node.size;
        tree_->fileCount += node.fileCount;
    }
}

void GrowingView::showWords() {
    const ScanGrowth &growth = scan_.growth();
    QString words = growth.isStopped()
                        ? u"Stopped early: %1 in %2 counted. Scan again to see everything."_s.arg(
                              sizeText(growth.bytes()), counted(growth.files(), "file"))
                        : u"Sizes grow until the scan is done."_s;
    if (growth.earlier())
        words += u" The last complete scan found %1 in %2."_s.arg(sizeText(growth.earlier()->bytes),
                                                                  counted(growth.earlier()->files, "file"));
    words_->setText(words);
}

void GrowingView::showSelection() {
    const std::vector<FSNode *> nodes = outline_->selectedNodes();
    treemap_->setSelection(nodes.empty() ? nullptr : nodes.front());
    if (nodes.empty())
        return chosen_->setText(u"Select a row to see its size."_s);
    const FSNode &node = *nodes.front();
    QString words = u"%1: %2"_s.arg(displayedName(node), nodeSizeText(node));
    const auto &earlier = scan_.growth().earlier();
    const auto before = earlier ? earlier->sizes.find(node.name) : decltype(earlier->sizes.end())();
    if (earlier && before != earlier->sizes.end())
        words += u", %1 in the last complete scan"_s.arg(sizeText(before->second));
    chosen_->setText(words);
}

void GrowingView::select(const std::string &name) {
    for (const std::unique_ptr<FSNode> &child : tree_->children())
        if (child->name == name) {
            outline_->select(child.get());
            return showSelection();
        }
}

/// Nothing can be removed from what is not counted to its end.
void GrowingView::showMenu(const QPoint &place) {
    const std::vector<FSNode *> nodes = outline_->selectedNodes();
    if (!nodes.empty() && !nodes.front()->isAggregate)
        ItemActions::menuFor({FileURL(nodes.front()->path())}, this)->popup(place);
}

} // namespace brimvale
