#include "Views/Browse/UnreadableSheet.h"

#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/ItemActions.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr QSize sheetSize{720, 420};
constexpr int reasonWidth = 280;

/// Thousands of items, of which a view asks only for those that it shows.
class UnreadableModel : public QAbstractTableModel {
public:
    UnreadableModel(std::vector<UnreadableItem> items, QObject *parent)
        : QAbstractTableModel(parent), items_(std::move(items)) {}

    [[nodiscard]] const UnreadableItem &itemAt(const QModelIndex &index) const {
        return items_[static_cast<std::size_t>(index.row())];
    }
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(items_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : 2;
    }
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
            return {};
        const UnreadableItem &item = itemAt(index);
        const QString words = index.column() == 0 ? displayedText(item.path) : text(reasonFor(item));
        return role == Qt::ToolTipRole ? asToolTip(words) : words;
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        return section == 0 ? u"Path"_s : u"Reason"_s;
    }

private:
    std::vector<UnreadableItem> items_;
};

/// Rows as high as in the lists of the window.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const override {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), Metrics::rowHeight()};
    }
};

QTreeView *makeTable(UnreadableModel &model, QWidget *sheet) {
    auto *table = new QTreeView(sheet);
    table->setObjectName(QStringLiteral("unreadableItems"));
    table->setAccessibleName(u"Items that could not be read"_s);
    table->setItemDelegate(new RowDelegate(table));
    table->setFont(Type::font(Type::Size::body));
    table->header()->setFont(Type::font(Type::Size::caption));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    table->setModel(&model);
    table->header()->setStretchLastSection(false);
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->header()->resizeSection(1, Type::scaled(reasonWidth));
    QObject::connect(table, &QWidget::customContextMenuRequested, sheet,
                     [table, &model, sheet](const QPoint &place) {
                         std::vector<FileURL> items;
                         for (const QModelIndex &row : table->selectionModel()->selectedRows())
                             items.emplace_back(model.itemAt(row).path);
                         if (!items.empty())
                             ItemActions::menuFor(items, sheet)->popup(table->viewport()->mapToGlobal(place));
                     });
    return table;
}

} // namespace

UnreadableSheet::UnreadableSheet(const std::vector<UnreadableItem> &items, std::int64_t count,
                                 QWidget *parent)
    : Sheet("unreadableSheet", u"Unreadable Items"_s, parent),
      administrator_(makeButton("scanAsAdministrator", u"Scan as Administrator…"_s, this)) {
    resize(sheetSize);
    administrator_->setToolTip(u"Asks for an administrator’s password once, and only reads."_s);
    administrator_->hide();
    connect(administrator_, &QPushButton::clicked, this, [this] {
        accept();
        emit administratorAsked();
    });
    auto *words = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    words->setObjectName(QStringLiteral("unreadableWords"));
    words->setWordWrap(true);
    QString sentence = u"Their sizes are missing, so the folders that contain them show “≥” before their "
                       "sizes."_s;
    const auto listed = static_cast<std::int64_t>(items.size());
    constexpr auto most = static_cast<std::int64_t>(UnreadableItems::mostListed);
    const bool isCut = count > most; // and then the count is not kept exact
    if (items.empty())
        sentence += u" The imported file has only their number."_s;
    else if (isCut)
        sentence += u" The first %1 are listed."_s.arg(counted(listed, "item"));
    words->setText(sentence);
    auto *model = new UnreadableModel(items, this);
    QVBoxLayout *layout = makeLayout();
    layout->addWidget(makeHeading(
        "unreadableTitle", u"%1 could not be read"_s.arg(isCut ? u"More than %1"_s.arg(counted(most, "item"))
                                                               : counted(count, "item"))));
    layout->addWidget(words);
    layout->addWidget(makeTable(*model, this), 1);
    addButtons(*layout, {administrator_, makeCloseButton("close", u"Close"_s)});
}

void UnreadableSheet::offerAdministrator() {
    administrator_->show();
}

} // namespace brimvale
