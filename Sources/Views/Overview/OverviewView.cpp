#include "Views/Overview/OverviewView.h"

#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/Card.h"
#include "Views/Components/MeasureButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageHeader.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/TextLabel.h"
#include "Views/Overview/CapacityCard.h"
#include "Views/Overview/CategoryRow.h"
#include "Views/Overview/SnapshotsCard.h"
#include "Views/Overview/VolumesCard.h"
#include "Views/Removing/ConfirmationSheet.h"

#include <QDateTime>
#include <QKeyEvent>
#include <QLocale>
#include <QPointer>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// The time of day, because "5 minutes ago" would become wrong while the page stays open.
QString timeText(Date date) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count();
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds).time(), QLocale::ShortFormat);
}

TextLabel *makeHeading(const QString &title, QWidget *parent) {
    auto *heading = new TextLabel(Type::Size::heading, QFont::DemiBold, parent);
    heading->setText(title);
    heading->setHeading();
    return heading;
}

TextLabel *makeSizesNote(QWidget *parent) {
    auto *note = new TextLabel(Type::Size::caption, TextLabel::Tone::tertiary, parent);
    note->setObjectName(QStringLiteral("sizesNote"));
    note->setWordWrap(true);
    note->setText(u"Sizes are measured in allocated blocks, so they match what deleting actually frees."_s);
    return note;
}

} // namespace

OverviewView::OverviewView(Storage &storage, Volumes &volumes, QWidget *parent)
    : QWidget(parent), storage_(storage), volumes_(volumes),
      measure_(new MeasureButton(u"Measuring storage"_s, MeasureButton::WhileMeasuring::hidden, this)),
      capacity_(new CapacityCard(this)), snapshots_(new SnapshotsCard(this)),
      otherVolumesTitle_(makeHeading(u"Other volumes"_s, this)), otherVolumes_(new VolumesCard(this)) {
    setObjectName(QStringLiteral("overviewPage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    layout->addWidget(makeContent(), 1);

    connect(measure_, &QPushButton::clicked, this,
            [this] { AccessNotice::beforeLook(*this, [this] { storage_.measureCategories(); }); });
    connect(measure_->stop(), &QPushButton::clicked, &storage_, &Storage::stopMeasuring);
    connect(&storage_, &Storage::changed, this, &OverviewView::showCategories);
    connect(&volumes_, &Volumes::changed, this, &OverviewView::showVolumes);
    connect(&volumes_, &Volumes::changed, this, &OverviewView::showSnapshots);
    connect(snapshots_, &SnapshotsCard::deletionAsked, this, &OverviewView::confirmDeletion);
    showCategories();
    showVolumes();
    showSnapshots();
}

QWidget *OverviewView::makeHead() {
    header_ = new PageHeader(u"Overview"_s, this);
    measure_->setDefault(true);
    measure_->progress()->setObjectName(QStringLiteral("categoryProgress"));
    measure_->progress()->setFixedWidth(220);
    header_->addControl(measure_);
    header_->addControl(measure_->progress());
    header_->addControl(measure_->stop());
    return makePageHead(header_, Metrics::pageGap, this);
}

QWidget *OverviewView::makeContent() {
    auto *content = new QWidget(this);
    auto *categories = new Card(content);
    rowLayout_ = new QVBoxLayout(categories);
    rowLayout_->setContentsMargins(0, 4, 0, 4);
    rowLayout_->setSpacing(0);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(Metrics::pageMargin, 0, Metrics::pageMargin, Metrics::pageMargin);
    layout->setSpacing(Metrics::pageGap);
    layout->addWidget(capacity_);
    layout->addWidget(makeHeading(u"Categories"_s, content));
    layout->addWidget(categories);
    layout->addWidget(makeSizesNote(content));
    layout->addWidget(snapshots_);
    layout->addWidget(otherVolumesTitle_);
    layout->addWidget(otherVolumes_);
    layout->addStretch(1);
    area_ = makeScrollArea(content, this);
    area_->setObjectName(QStringLiteral("overviewContent"));
    return area_;
}

void OverviewView::showCategories() {
    const std::vector<MeasuredCategory> &categories = storage_->categories;
    const std::optional<VolumeInfo> volume = volumes_.rootVolume();
    const double used = volume ? static_cast<double>(std::max<std::int64_t>(volume->used(), 1)) : 1;
    for (std::size_t i = rows_.size(); i < categories.size(); ++i) {
        rows_.push_back(new CategoryRow(this));
        rowLayout_->addWidget(rows_.back());
        connect(rows_.back(), &QAbstractButton::clicked, this,
                [this, i] { emit categoryOpened(storage_->categories[i].category.id); });
    }
    for (std::size_t i = 0; i < categories.size(); ++i)
        rows_[i]->setCategory(categories[i], static_cast<double>(categories[i].size) / used,
                              i + 1 == categories.size());
    for (std::size_t i = 0; i < categories.size(); ++i)
        rows_[i]->setHidden(!categories[i].category.hasPlace());
    capacity_->show(volume, categories);

    const bool isMeasuring = storage_->isMeasuringCategories;
    measure_->showState(isMeasuring, storage_->categoryProgress);
    if (isMeasuring)
        header_->setSubtitle(u"Categories appear as they are measured."_s);
    else if (storage_->wasStopped)
        header_->setSubtitle(u"Stopped. Categories without a size were not measured."_s);
    else if (storage_->lastCategoryScan)
        header_->setSubtitle(u"Measured at %1"_s.arg(timeText(*storage_->lastCategoryScan)));
    else
        header_->setSubtitle(
            u"Not measured yet. Press Measure to start. Measuring never changes your files."_s);
}

void OverviewView::showVolumes() {
    std::vector<VolumeInfo> others = volumes_->volumes;
    const std::optional<VolumeInfo> root = volumes_.rootVolume();
    std::erase_if(others, [&](const VolumeInfo &volume) { return root && volume.url == root->url; });
    otherVolumes_->setVolumes(others);
    otherVolumes_->setHidden(others.empty());
    otherVolumesTitle_->setHidden(others.empty());
    capacity_->show(root, storage_->categories);
}

void OverviewView::showSnapshots() {
    snapshots_->setSnapshots(volumes_->snapshots, volumes_->isDeletingSnapshot);
}

/// A letter moves to the next category that begins with it.
void OverviewView::keyPressEvent(QKeyEvent *event) {
    const auto focused =
        std::find_if(rows_.begin(), rows_.end(), [](const CategoryRow *row) { return row->hasFocus(); });
    const QString typed = event->text();
    if (focused == rows_.end() || typed.isEmpty() || !typed.front().isLetter()) {
        QWidget::keyPressEvent(event);
        return;
    }
    std::vector<CategoryRow *> others(std::next(focused), rows_.end());
    others.insert(others.end(), rows_.begin(), focused);
    const auto next = std::find_if(others.begin(), others.end(), [&](const CategoryRow *row) {
        return !row->isHidden() && row->text().startsWith(typed, Qt::CaseInsensitive);
    });
    if (next == others.end())
        return;
    (*next)->setFocus(Qt::TabFocusReason);
    area_->ensureWidgetVisible(*next);
}

void OverviewView::confirmDeletion(const LocalSnapshot &snapshot) {
    auto *sheet = new ConfirmationSheet(
        u"Delete this snapshot?"_s,
        u"“%1” will be deleted, with the file versions that only it keeps. This can’t be "
        "undone. The system asks for an administrator’s password."_s.arg(displayedText(snapshot.name)),
        u"Delete"_s, this);
    connect(sheet, &QDialog::accepted, this, [this, snapshot] {
        volumes_.deleteSnapshot(snapshot, [this, page = QPointer(this), snapshot](bool isDeleted) {
            if (isDeleted || page.isNull())
                return;
            showNoticeSheet(*this, u"The snapshot is still there"_s,
                            u"“%1” could not be deleted, or no password was entered."_s.arg(
                                displayedText(snapshot.name)));
        });
    });
    sheet->open();
}

} // namespace brimvale
