#include "Views/Overview/VolumesCard.h"

#include "Views/Components/CapacityBar.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/IconLabel.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/ItemActions.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int usageBarWidth = 120;
constexpr int freeWidth = 190;

} // namespace

VolumesCard::VolumesCard(QWidget *parent) : Card(parent) {
    setObjectName(QStringLiteral("volumesCard"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::cardMargin, 12, Metrics::cardMargin, 12);
    layout->setSpacing(10);
}

void VolumesCard::setVolumes(const std::vector<VolumeInfo> &volumes) {
    if (volumes == shown_)
        return;
    shown_ = volumes;
    while (QLayoutItem *row = layout()->takeAt(0)) {
        row->widget()->deleteLater();
        delete row;
    }
    for (const VolumeInfo &volume : volumes)
        layout()->addWidget(makeRow(volume));
}

QWidget *VolumesCard::makeRow(const VolumeInfo &volume) {
    auto *row = new QWidget(this);
    row->setObjectName(QStringLiteral("volumeRow"));
    row->setToolTip(asToolTip(displayedText(volume.url.path())));
    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this, [this, row, volume = volume.url](QPoint place) {
        ItemActions::menuFor({volume}, this)->popup(row->mapToGlobal(place));
    });
    auto *name = new ElidedLabel(Type::Size::body, TextLabel::Tone::primary, Qt::ElideMiddle, row);
    name->setText(displayedText(volume.name));
    auto *words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(name);
    if (const std::optional<std::string> details = volumeDetails(volume)) {
        auto *caption =
            new ElidedLabel(Type::Size::caption, TextLabel::Tone::secondary, Qt::ElideMiddle, row);
        caption->setObjectName(QStringLiteral("volumeDetails"));
        caption->setText(displayedText(*details));
        words->addWidget(caption);
    }
    auto *bar = new CapacityBar(row);
    bar->setFixedWidth(usageBarWidth);
    bar->setAccessibleName(u"Capacity of %1"_s.arg(name->text()));
    const double total = static_cast<double>(std::max<std::int64_t>(volume.totalCapacity, 1));
    bar->setUsedShare(1 - static_cast<double>(volume.trueFree) / total);
    auto *free = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, row);
    free->setText(u"%1 free of %2"_s.arg(sizeText(volume.shownAvailable()), sizeText(volume.totalCapacity)));
    free->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    free->setMinimumWidth(Type::scaled(freeWidth));
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 4, 0, 4);
    layout->setSpacing(12);
    layout->addWidget(new IconLabel(QStringLiteral("hard-drive"), IconLabel::Tone::accent, row));
    layout->addLayout(words, 1);
    layout->addWidget(bar);
    layout->addWidget(free);
    return row;
}

} // namespace brimvale
