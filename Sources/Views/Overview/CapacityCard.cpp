#include "Views/Overview/CapacityCard.h"

#include "Catalogs/StorageCategory.h"
#include "Core/Storage/VolumeInfo.h"
#include "Views/Components/CategoryStyle.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/Theme.h"
#include "Views/Overview/Legend.h"
#include "Views/Overview/SegmentedBar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int tileSize = 32;

std::vector<BarSegment> segmentsOf(const std::vector<MeasuredCategory> &categories) {
    std::vector<BarSegment> segments;
    for (const MeasuredCategory &one : categories)
        if (one.measured && one.size > 0)
            segments.push_back(
                {QString::fromStdString(one.category.title), one.size, categoryColor(one.category)});
    return segments;
}

} // namespace

CapacityCard::CapacityCard(QWidget *parent)
    : Card(parent), name_(new ElidedLabel(Type::Size::heading, QFont::DemiBold, Qt::ElideMiddle, this)),
      used_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      free_(new TextLabel(Type::Size::title, QFont::DemiBold, this)), bar_(new SegmentedBar(this)),
      legend_(new Legend(this)),
      purgeable_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      reserved_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)) {
    setObjectName(QStringLiteral("capacityCard"));
    name_->setObjectName(QStringLiteral("capacityName"));
    used_->setObjectName(QStringLiteral("capacityUsed"));
    free_->setObjectName(QStringLiteral("capacityFree"));
    purgeable_->setObjectName(QStringLiteral("purgeable"));
    purgeable_->setWordWrap(true);
    reserved_->setObjectName(QStringLiteral("reserved"));
    reserved_->setWordWrap(true);
    auto *available = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    available->setText(u"free"_s);

    auto *left = new QVBoxLayout;
    left->setContentsMargins(tileSize + 12, 0, 0, 0);
    left->setSpacing(3);
    left->addWidget(name_);
    left->addWidget(used_);
    auto *right = new QVBoxLayout;
    right->setSpacing(0);
    right->addWidget(free_, 0, Qt::AlignRight);
    right->addWidget(available, 0, Qt::AlignRight);
    auto *head = new QHBoxLayout;
    head->addLayout(left, 1);
    head->addLayout(right);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::cardMargin, Metrics::cardMargin - 2, Metrics::cardMargin,
                               Metrics::cardMargin - 4);
    layout->setSpacing(12);
    layout->addLayout(head);
    layout->addWidget(bar_);
    layout->addWidget(legend_);
    layout->addWidget(purgeable_);
    layout->addWidget(reserved_);
}

void CapacityCard::show(const std::optional<VolumeInfo> &volume,
                        const std::vector<MeasuredCategory> &categories) {
    const std::vector<BarSegment> segments = segmentsOf(categories);
    const std::int64_t capacity = volume ? volume->totalCapacity : 0;
    name_->setText(volume ? displayedText(volume->name) : u"No volume"_s);
    const std::optional<std::string> details = volume ? volumeDetails(*volume) : std::nullopt;
    setToolTip(details ? asToolTip(displayedText(*details)) : QString());
    used_->setText(u"%1 of %2 used"_s.arg(sizeText(volume ? volume->used() : 0), sizeText(capacity)));
    free_->setText(sizeText(volume ? volume->shownAvailable() : 0));
    bar_->setSegments(segments, capacity);
    legend_->setSegments(segments);
    legend_->setHidden(segments.empty());
    const std::optional<std::string> sentence = volume ? purgeableSentence(*volume) : std::nullopt;
    purgeable_->setText(QString::fromStdString(sentence.value_or("")));
    purgeable_->setHidden(!sentence);
    const std::optional<std::string> reserved = volume ? reservedSentence(*volume) : std::nullopt;
    reserved_->setText(QString::fromStdString(reserved.value_or("")));
    reserved_->setHidden(!reserved);
}

void CapacityCard::paintEvent(QPaintEvent *event) {
    Card::paintEvent(event);
    QPainter painter(this);
    Icons::paintTile(painter, QRectF(Metrics::cardMargin, Metrics::cardMargin, tileSize, tileSize),
                     QStringLiteral("hard-drive"), Theme::current().tertiaryText);
}

} // namespace brimvale
