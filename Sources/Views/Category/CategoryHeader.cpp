#include "Views/Category/CategoryHeader.h"

#include "Views/Components/CategoryStyle.h"
#include "Views/Components/Icons.h"
#include "Views/Components/RiskBadge.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace brimvale {

namespace {

constexpr int tileSize = 44;
constexpr int gap = 14;

} // namespace

CategoryHeader::CategoryHeader(const StorageCategory &category, QWidget *parent)
    : QWidget(parent), category_(category), size_(new TextLabel(Type::Size::title, QFont::DemiBold, this)),
      controls_(new QHBoxLayout) {
    auto *title = new TextLabel(Type::Size::title, QFont::Bold, this);
    title->setObjectName(QStringLiteral("pageTitle"));
    title->setText(QString::fromStdString(category.title));
    title->setHeading();
    auto *detail = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    detail->setObjectName(QStringLiteral("categoryDetail"));
    detail->setText(QString::fromStdString(category.detail));
    detail->setWordWrap(true);
    size_->setObjectName(QStringLiteral("categorySize"));

    auto *firstLine = new QHBoxLayout;
    firstLine->setSpacing(10);
    firstLine->addWidget(title);
    firstLine->addWidget(new RiskBadge(category.risk, this), 0, Qt::AlignVCenter);
    firstLine->addStretch(1);
    auto *words = new QVBoxLayout;
    words->setSpacing(2);
    words->addLayout(firstLine);
    words->addWidget(detail);
    controls_->setSpacing(8);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(tileSize + gap, 0, 0, 0);
    layout->setSpacing(16);
    layout->addLayout(words, 1);
    layout->addWidget(size_, 0, Qt::AlignTop);
    layout->addLayout(controls_);
    setMinimumHeight(tileSize);
}

void CategoryHeader::showSize(const MeasuredCategory &category) {
    size_->setText(category.measured ? sizeText(category.size) : QStringLiteral("—"));
}

void CategoryHeader::addControl(QWidget *control) {
    controls_->addWidget(control, 0, Qt::AlignTop);
}

void CategoryHeader::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    Icons::paintTile(painter, QRectF(0, 1, tileSize, tileSize), categoryIcon(category_),
                     categoryColor(category_));
}

} // namespace brimvale
