#include "Views/Overview/SnapshotsCard.h"

#include "Catalogs/Words.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int snapshotSizeWidth = 100;

/// A second line with what made the snapshot, and why.
void addDetails(const LocalSnapshot &snapshot, QVBoxLayout &words, QWidget *row) {
    auto *details = new ElidedLabel(Type::Size::caption, TextLabel::Tone::secondary, Qt::ElideRight, row);
    details->setObjectName(QStringLiteral("snapshotDetails"));
    QString line = displayedText(snapshot.tool.value_or(""));
    if (snapshot.description)
        line += u" · "_s + displayedText(*snapshot.description);
    else if (!snapshot.canBeDeleted())
        line += u" · delete it with the program that made it"_s;
    details->setText(line);
    words.addWidget(details);
}

} // namespace

SnapshotsCard::SnapshotsCard(QWidget *parent)
    : Card(parent), note_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      rows_(new QVBoxLayout) {
    setObjectName(QStringLiteral("snapshotsCard"));
    auto *title = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    title->setText(text(Words::current().snapshotsTitle));
    title->setHeading();
    note_->setObjectName(QStringLiteral("snapshotsNote"));
    note_->setWordWrap(true);
    auto *remark = new TextLabel(Type::Size::caption, TextLabel::Tone::tertiary, this);
    remark->setObjectName(QStringLiteral("snapshotsRemark"));
    remark->setText(text(Words::current().snapshotsRemark));
    remark->setWordWrap(true);
    rows_->setSpacing(6);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::cardMargin, 16, Metrics::cardMargin, 16);
    layout->setSpacing(8);
    layout->addWidget(title);
    layout->addWidget(note_);
    layout->addLayout(rows_);
    layout->addWidget(remark);
    hide();
}

void SnapshotsCard::setSnapshots(const std::vector<LocalSnapshot> &snapshots, bool isBusy) {
    setHidden(snapshots.empty());
    if (snapshots == shown_ && isBusy == isBusy_)
        return;
    shown_ = snapshots;
    isBusy_ = isBusy;
    note_->setText(text(snapshotNote(snapshots.size()).value_or("")));
    while (QLayoutItem *row = rows_->takeAt(0)) {
        row->widget()->deleteLater();
        delete row;
    }
    for (const LocalSnapshot &snapshot : snapshots)
        rows_->addWidget(makeRow(snapshot, isBusy));
}

QWidget *SnapshotsCard::makeRow(const LocalSnapshot &snapshot, bool isBusy) {
    auto *row = new QWidget(this);
    auto *name = new ElidedLabel(Type::Size::body, TextLabel::Tone::primary, Qt::ElideMiddle, row);
    name->setObjectName(QStringLiteral("snapshotName"));
    name->setText(displayedText(snapshot.name));
    auto *date = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, row);
    date->setText(snapshot.date ? text(Fmt::relativeDate(snapshot.date)) : QString());
    auto *words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(name);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addLayout(words, 1);
    layout->addWidget(date);
    if (snapshot.tool) {
        addDetails(snapshot, *words, row);
        auto *size = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, row);
        size->setObjectName(QStringLiteral("snapshotSize"));
        size->setText(snapshot.exclusiveBytes ? sizeText(*snapshot.exclusiveBytes) : u"size unknown"_s);
        size->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        size->setMinimumWidth(Type::scaled(snapshotSizeWidth));
        layout->addWidget(size);
        layout->setContentsMargins(0, 3, 0, 3);
    }
    if (snapshot.canBeDeleted())
        layout->addWidget(makeButton(snapshot, isBusy, row));
    return row;
}

QWidget *SnapshotsCard::makeButton(const LocalSnapshot &snapshot, bool isBusy, QWidget *row) {
    auto *remove = new DestructiveButton(row);
    remove->setObjectName(QStringLiteral("deleteSnapshot"));
    remove->setText(u"Delete…"_s);
    remove->setAccessibleName(u"Delete %1"_s.arg(displayedText(snapshot.name)));
    remove->setEnabled(!isBusy);
    connect(remove, &QPushButton::clicked, this, [this, snapshot] { emit deletionAsked(snapshot); });
    return remove;
}

} // namespace brimvale
