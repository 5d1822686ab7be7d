#include "Views/Category/TrashPage.h"

#include "Core/Model/Removals.h"
#include "Core/Model/Trash.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Trash/TrashTexts.h"
#include "Views/Category/TrashBar.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/SelectionTexts.h"

#include <QStringList>
#include <QWidget>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// What a row says about its item.
RowWords wordsOf(const TrashRecord &record, const FileURL &item) {
    RowWords words;
    if (record.deleted)
        words.date = text(Fmt::recentDate(record.deleted));
    words.dateWord = u"deleted"_s;
    if (!record.oldPlace) {
        words.line = text(TrashTexts::whyNotPutBack(record.state));
        return words;
    }
    words.name = displayedText(record.oldPlace->fileName());
    words.line = u"From %1"_s.arg(displayedText(record.oldPlace->parent().path()));
    words.toolTip = u"%1\nNow %2"_s.arg(displayedText(record.oldPlace->path()), displayedText(item.path()));
    return words;
}

/// Why the first few items stay, and the number of the others.
QStringList failureLines(const std::vector<RemovalResult::Failure> &failed) {
    constexpr std::size_t mostShown = 5;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(failed.size(), mostShown); ++i)
        lines.append(u"“%1”: %2"_s.arg(displayedText(failed[i].url.fileName()), text(failed[i].reason)));
    if (failed.size() > mostShown)
        lines.append(u"and %1 more."_s.arg(failed.size() - mostShown));
    return lines;
}

} // namespace

TrashPage::TrashPage(Trash &trash, Removals &removals, QWidget &page)
    : QObject(&page), trash_(trash), removals_(removals), page_(page), bar_(new TrashBar(&page)) {
    connect(&trash_, &Trash::changed, this, [this] {
        showState();
        emit wordsChanged();
    });
    connect(&removals_, &Removals::changed, this, &TrashPage::showState);
    connect(&trash_, &Trash::putBackEnded, this, &TrashPage::showPutBack);
    connect(bar_, &TrashBar::putBackAsked, this, [this] {
        outcome_.clear();
        trash_.putBack(CleanupEntries::outermost(selected_));
    });
    connect(bar_, &TrashBar::deletionAsked, this, &TrashPage::confirmDeletion);
    connect(bar_, &TrashBar::emptyingAsked, this, &TrashPage::confirmEmptying);
    showState();
}

void TrashPage::setRows(const Entries &all) {
    all_ = all;
    showState();
}

void TrashPage::setSelection(const Entries &selected, std::int64_t count, std::int64_t bytes) {
    if (!selected.empty() && selected != selected_)
        outcome_.clear();
    selected_ = selected;
    bar_->setSelection(count, bytes);
    showState();
}

void TrashPage::showState() {
    bar_->setBusy(trash_->isPuttingBack    ? u"Putting back…"_s
                  : removals_.isRemoving() ? u"Removing…"_s
                                           : QString());
    bar_->setFilled(!all_.empty() || trash_->lostItems > 0);
    bar_->setNote(!outcome_.isEmpty() ? outcome_ : text(TrashTexts::lostItems(trash_->lostItems)));
}

std::unordered_map<FileURL, RowWords> TrashPage::words() const {
    std::unordered_map<FileURL, RowWords> words;
    for (const auto &record : trash_->records)
        words.emplace(record.first, wordsOf(record.second, record.first));
    return words;
}

void TrashPage::confirmDeletion() {
    ask(selected_.size() == 1 ? u"Delete the selected item immediately?"_s
                              : u"Delete the selected items immediately?"_s,
        u"Delete Immediately"_s, selected_,
        [this](const Entries &entries) { removals_.removeCategoryEntries(entries, RemovalMode::deleteNow); });
}

void TrashPage::confirmEmptying() {
    if (all_.empty())
        return trash_.empty({});
    ask(u"Empty the Trash?"_s, u"Empty Trash"_s, all_,
        [this](const Entries &entries) { trash_.empty(entries); });
}

/// Asks, and then acts on the entries as they are now.
void TrashPage::ask(const QString &question, const QString &action, const Entries &entries,
                    const std::function<void(const Entries &)> &act) {
    auto *sheet = new ConfirmationSheet(question, deletionText(entries), action, &page_);
    connect(sheet, &QDialog::accepted, this, [this, entries, act] {
        outcome_.clear();
        act(entries);
    });
    sheet->open();
}

/// Success is quiet. For items that stay in the Trash it shows the reason.
void TrashPage::showPutBack(const PutBackResult &result) {
    const std::string summary = TrashTexts::summary(result);
    QStringList lines;
    for (const std::string &line : RemovalReport::remarkLines({.remarks = result.remarks}))
        lines.append(displayedText(line));
    outcome_ = lines.isEmpty() ? text(summary) : text(summary) + u' ' + lines.join(u' ');
    showState();
    if (result.failed.empty())
        return;
    const QStringList failures = QStringList(text(summary)) + failureLines(result.failed);
    showNoticeSheet(page_, u"Some items are still in the Trash"_s, failures.join(u"\n\n"_s));
}

} // namespace brimvale
