#include "Views/Window/Sidebar.h"

#include "Views/Components/Theme.h"
#include "Views/Window/SidebarDelegate.h"
#include "Views/Window/SidebarFooter.h"

#include <QListWidget>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sidebarWidth = 220;

/// A list in which one row is always selected: every action on a row selects it, and a click beside the rows
/// does nothing.
class PageList : public QListWidget {
public:
    using QListWidget::QListWidget;

protected:
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                                       const QEvent *) const override {
        return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
    }
};

} // namespace

Sidebar::Sidebar(QWidget *parent)
    : QWidget(parent), list_(new PageList(this)), footer_(new SidebarFooter(this)) {
    setObjectName(QStringLiteral("sidebar"));
    setFixedWidth(Type::partlyScaled(sidebarWidth));
    list_->setObjectName(QStringLiteral("pages"));
    list_->setAccessibleName(u"Pages"_s);
    list_->setItemDelegate(new SidebarDelegate(list_));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setMouseTracking(true);
    list_->viewport()->setAutoFillBackground(false);
    connect(list_, &QListWidget::currentRowChanged, this, &Sidebar::currentRowChanged);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 1, 0);
    layout->setSpacing(0);
    auto *inset = new QVBoxLayout;
    inset->setContentsMargins(10, 12, 10, 8);
    inset->addWidget(list_);
    layout->addLayout(inset, 1);
    layout->addWidget(footer_);
}

int Sidebar::addRow(const Row &row) {
    auto *item = new QListWidgetItem(row.title);
    item->setData(SidebarDelegate::iconRole, row.icon);
    item->setData(SidebarDelegate::tintRole, row.tint);
    list_->addItem(item);
    return list_->row(item);
}

void Sidebar::addHeading(const QString &title) {
    auto *item = new QListWidgetItem(title, list_);
    item->setFlags(Qt::NoItemFlags);
}

void Sidebar::setValue(int row, const QString &value) {
    QListWidgetItem *item = list_->item(row);
    item->setData(SidebarDelegate::valueRole, value);
    item->setData(Qt::AccessibleTextRole,
                  value.isEmpty() ? item->text() : u"%1, %2"_s.arg(item->text(), value));
}

void Sidebar::setRowHidden(int row, bool isHidden) {
    list_->item(row)->setHidden(isHidden);
}

void Sidebar::addNote(QWidget *note) {
    static_cast<QVBoxLayout *>(layout())->insertWidget(layout()->indexOf(footer_), note);
}

void Sidebar::setCurrentRow(int row) {
    list_->setCurrentRow(row);
}

void Sidebar::paintEvent(QPaintEvent *) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.sidebar);
    painter.fillRect(QRect(width() - 1, 0, 1, height()), theme.border);
}

} // namespace brimvale
