#include "Views/Apps/LeftoverGroup.h"

#include "Catalogs/CleanupEntry.h"
#include "Core/Apps/Uninstall.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/ItemActions.h"
#include "Views/Entries/RowList.h"
#include "Views/Entries/TickedEntries.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

LeftoverGroup::LeftoverGroup(const Heading &heading, TickedEntries &ticked, QWidget *parent)
    : Card(parent), ticked_(ticked), model_(ticked), all_(new TickBox(this)),
      list_(new RowList(model_, this)) {
    setObjectName(QLatin1String(heading.objectName));
    list_->setObjectName(QStringLiteral("leftovers"));
    list_->setAccessibleName(heading.words);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 12, 1, 8);
    layout->setSpacing(6);
    layout->addWidget(makeHead(heading));
    layout->addWidget(list_);

    connect(&ticked_, &TickedEntries::changed, this, &LeftoverGroup::showTicks);
    connect(all_, &TickBox::asked, this, [this](bool tick) { ticked_.setTicked(entriesOfBox(), tick); });
    connect(list_, &QAbstractItemView::activated, this, &LeftoverGroup::open);
    connect(list_, &RowList::menuRequested, this, &LeftoverGroup::showMenu);
    hide();
}

void LeftoverGroup::open(const QModelIndex &row) {
    const LeftoverItem &item = model_.itemAt(row);
    if (item.isFolder && !ticked_.lockReason(item.url).isEmpty())
        emit browseAsked(item.url);
    else
        ItemActions::reveal(item.url, this);
}

void LeftoverGroup::showMenu(const QModelIndex &row, const QPoint &place) {
    QMenu *menu = ItemActions::menuFor({model_.itemAt(row).url}, this);
    if (row.data(Qt::CheckStateRole).isValid())
        menu->addAction(u"Add to Basket"_s, this,
                        [this, entry = Uninstall::entryOf(model_.itemAt(row))] { emit basketAsked({entry}); })
            ->setObjectName(QStringLiteral("addToBasket"));
    menu->popup(place);
}

QWidget *LeftoverGroup::makeHead(const Heading &heading) {
    all_->setObjectName(QStringLiteral("tickAll"));
    all_->setAccessibleName(u"All of: %1"_s.arg(heading.words));
    auto *words = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    words->setObjectName(QStringLiteral("confidence"));
    words->setText(heading.words);
    words->setHeading();
    auto *why = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    why->setText(heading.explanation);
    why->setWordWrap(true);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(words);
    texts->addWidget(why);
    auto *head = new QWidget(this);
    auto *layout = new QHBoxLayout(head);
    layout->setContentsMargins(Metrics::tickBoxLine - tickBoxMargin - 1, 0, 16, 0); // 1: the edge of the card
    layout->setSpacing(8);
    layout->addWidget(all_, 0, Qt::AlignTop);
    layout->addLayout(texts, 1);
    return head;
}

void LeftoverGroup::setRows(const std::vector<LeftoverListModel::Row> &rows) {
    rows_ = rows;
    model_.setRows(rows);
    setHidden(rows.empty());
    showTicks();
}

/// What the group's tick box selects: not what may belong to others, and not what people make.
std::vector<CleanupEntry> LeftoverGroup::entriesOfBox() const {
    std::vector<CleanupEntry> entries;
    for (const LeftoverListModel::Row &row : rows_)
        if (Uninstall::isPlain(row.item))
            entries.push_back(Uninstall::entryOf(row.item));
    return entries;
}

void LeftoverGroup::showTicks() {
    const std::vector<CleanupEntry> entries = entriesOfBox();
    all_->setState(ticked_.stateOf(entries));
    all_->setEnabled(ticked_.canTickAny(entries));
}

} // namespace brimvale
