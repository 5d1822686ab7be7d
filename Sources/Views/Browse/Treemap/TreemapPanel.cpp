#include "Views/Browse/Treemap/TreemapPanel.h"

#include "Views/Browse/Treemap/MapLegend.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

TreemapPanel::TreemapPanel(TreemapView &map, QWidget *parent)
    : Card(parent), map_(map),
      hovered_(new ElidedLabel(Type::Size::caption, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      detailedMap_(new QAction(u"Detailed Map"_s, this)), colors_(makeColors()),
      legend_(new MapLegend(this)) {
    hovered_->setObjectName(QStringLiteral("hovered"));
    detailedMap_->setObjectName(QStringLiteral("detailedMap"));
    detailedMap_->setIconText(u"\u00a0Detailed Map"_s); // a button puts its title close to the icon
    detailedMap_->setCheckable(true);
    detailedMap_->setToolTip(u"Also show what is inside the folders"_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(8);
    layout->addWidget(makeHead());
    layout->addWidget(&map_, 1);
    layout->addWidget(legend_);
    connect(detailedMap_, &QAction::toggled, this, &TreemapPanel::showState);
    connect(colors_, &QComboBox::currentIndexChanged, this, &TreemapPanel::showState);
    connect(&map_, &TreemapView::legendChanged, this, &TreemapPanel::showLegend);
    connect(&map_, &TreemapView::hovered, hovered_, &ElidedLabel::setText);
    drawIcon();
    showState();
}

/// In the order of `MapColors::By`.
QComboBox *TreemapPanel::makeColors() {
    auto *colors = new QComboBox(this);
    colors->setObjectName(QStringLiteral("mapColors"));
    colors->setAccessibleName(u"Colors of the map"_s);
    colors->setToolTip(u"What the colors mean"_s);
    colors->addItems({u"By folder"_s, u"By type"_s, u"By age"_s});
    return colors;
}

QWidget *TreemapPanel::makeHead() {
    auto *head = new QWidget(this);
    head->setMinimumHeight(colors_->sizeHint().height()); // also while they are hidden
    auto *layout = new QHBoxLayout(head);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto *detailed = new QToolButton(head);
    detailed->setObjectName(QStringLiteral("detailedMapButton"));
    detailed->setDefaultAction(detailedMap_);
    detailed->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    detailed->setIconSize({Metrics::iconSize, Metrics::iconSize});
    detailed->setAccessibleName(detailedMap_->text());
    detailed->setAutoRaise(true);
    detailed->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(hovered_, 1);
    layout->addWidget(colors_);
    layout->addWidget(detailed);
    return head;
}

void TreemapPanel::showState() {
    const bool isDetailed = detailedMap_->isChecked();
    const auto by = static_cast<MapColors::By>(colors_->currentIndex());
    colors_->setVisible(isDetailed);
    legend_->setVisible(isDetailed && by != MapColors::By::folder);
    map_.setColors(by);
    map_.setDetailed(isDetailed);
}

void TreemapPanel::setComparing(bool isComparing) {
    constexpr int growth = static_cast<int>(MapColors::By::growth);
    if (isComparing) {
        wasDetailed_ = detailedMap_->isChecked();
        colorsBefore_ = colors_->currentIndex();
        colors_->insertItem(growth, u"By growth"_s);
        colors_->setCurrentIndex(growth);
        detailedMap_->setChecked(true);
        return;
    }
    if (colors_->currentIndex() == growth)
        colors_->setCurrentIndex(colorsBefore_);
    colors_->removeItem(growth);
    detailedMap_->setChecked(wasDetailed_);
}

void TreemapPanel::showLegend() {
    if (!legend_->isHidden())
        legend_->setEntries(map_.legend());
}

void TreemapPanel::changeEvent(QEvent *event) {
    Card::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcon();
}

void TreemapPanel::drawIcon() {
    detailedMap_->setIcon(
        Icons::icon(QStringLiteral("layout-grid"), Theme::current().text, Metrics::iconSize));
}

} // namespace brimvale
