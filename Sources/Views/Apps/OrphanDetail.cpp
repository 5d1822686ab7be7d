#include "Views/Apps/OrphanDetail.h"

#include "Core/Apps/Uninstall.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Text/Formatting.h"
#include "Views/Apps/LeftoverGroup.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/StateMessage.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

LeftoverGroup::Heading orphanHeading() {
    return {"orphanLeftovers", u"Possibly left by removed apps"_s,
            u"No installed app seems to use these, judging by their names. Something else may "
            "still use them, so check each one before you remove it."_s};
}

/// Why there may be more; empty where everything was looked at.
QString incompleteness(const OrphanState &state) {
    QStringList sentences;
    if (state.wasStopped && !state.isSearching)
        sentences.append(u"The search was stopped, so there may be more. Reload to search again."_s);
    for (const std::string &folder : state.unreadFolders)
        sentences.append(u"%1 can’t be read, so its contents are not listed."_s.arg(displayedText(folder)));
    return sentences.join(QLatin1Char('\n'));
}

} // namespace

OrphanDetail::OrphanDetail(QWidget *parent)
    : QWidget(parent), progress_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      stop_(makeButton("stopOrphanSearch", u"Stop"_s, this)),
      incomplete_(new TextLabel(Type::Size::body, TextLabel::Tone::warning, this)),
      message_(new StateMessage(this)), group_(new LeftoverGroup(orphanHeading(), ticked_, this)) {
    setObjectName(QStringLiteral("orphanDetail"));
    incomplete_->setObjectName(QStringLiteral("orphansIncomplete"));
    incomplete_->setWordWrap(true);
    message_->setObjectName(QStringLiteral("orphanMessage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(makeOrphanHead());
    layout->addWidget(incomplete_);
    layout->addWidget(message_, 1);
    layout->addWidget(group_);
    layout->addStretch(1);
    connect(&ticked_, &TickedEntries::changed, this, &OrphanDetail::selectionChanged);
    connect(&ticked_, &TickedEntries::refused, this, &OrphanDetail::refused);
    connect(group_, &LeftoverGroup::browseAsked, this, &OrphanDetail::browseAsked);
    connect(group_, &LeftoverGroup::basketAsked, this, &OrphanDetail::basketAsked);
    connect(stop_, &QPushButton::clicked, this, &OrphanDetail::stopAsked);
}

QWidget *OrphanDetail::makeOrphanHead() {
    auto *title = new TextLabel(Type::Size::title, QFont::Bold, this);
    title->setText(u"Leftovers of removed apps"_s);
    title->setWordWrap(true);
    progress_->setObjectName(QStringLiteral("orphanProgress"));
    progress_->setText(u"Searching…"_s);
    stop_->setAccessibleName(u"Stop searching for leftovers"_s);
    auto *head = new QWidget(this);
    auto *layout = new QHBoxLayout(head);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title, 1);
    layout->addWidget(progress_);
    layout->addWidget(stop_);
    return head;
}

void OrphanDetail::show(const OrphanState &state) {
    progress_->setVisible(state.isSearching);
    stop_->setVisible(state.isSearching);
    const QString reason = incompleteness(state);
    incomplete_->setText(reason);
    incomplete_->setHidden(reason.isEmpty());
    showRows(state);
    showMessage(state);
}

void OrphanDetail::showRows(const OrphanState &state) {
    std::vector<LeftoverListModel::Row> rows;
    std::vector<CleanupEntry> entries;
    items_.clear();
    for (const Orphan &orphan : state.orphans) {
        rows.push_back({orphan.item, {}, text(Fmt::relativeDate(orphan.lastChange))});
        entries.push_back(Uninstall::entryOf(orphan.item));
        items_.push_back(orphan.item);
    }
    ticked_.retain({&entries});
    group_->setRows(rows);
}

void OrphanDetail::showMessage(const OrphanState &state) {
    message_->setHidden(!state.orphans.empty());
    if (state.isSearching || !state.wasSearched)
        message_->setMessage(QStringLiteral("search"), u"Looking for leftovers…"_s,
                             u"Comparing settings, data and caches with the installed apps."_s);
    else if (state.wasStopped || !state.unreadFolders.empty())
        message_->setMessage(QStringLiteral("triangle-alert"), u"Nothing found so far"_s,
                             u"Some places were not searched."_s);
    else
        message_->setMessage(QStringLiteral("circle-check"), u"No leftovers found"_s,
                             u"All settings, data and caches belong to installed apps, to commands, or to "
                             "several programs."_s);
}

std::vector<LeftoverItem> OrphanDetail::leftovers() const {
    std::vector<LeftoverItem> ticked;
    for (const LeftoverItem &item : items_)
        if (ticked_.contains(item.url))
            ticked.push_back(item);
    return ticked;
}

} // namespace brimvale
