#include "Views/Entries/EntryListModel.h"

#include "Core/Text/Formatting.h"
#include "Views/Components/Icons.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Entries/TickedEntries.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

QString dateText(const CleanupEntry &entry) {
    return entry.modified ? text(Fmt::relativeDate(entry.modified)) : QString();
}

bool lieInSeveralFolders(const std::vector<CleanupEntry> &entries) {
    return std::any_of(entries.begin(), entries.end(), [&](const CleanupEntry &entry) {
        return entry.url.parent() != entries.front().url.parent();
    });
}

/// What the catalog knows to say about an entry, one note a line.
QString noteLines(const CleanupEntry &entry) {
    QStringList notes;
    if (entry.isInUse() && entry.keptBecause().empty())
        notes.append(u"%1 is running. Quit it before you remove this."_s.arg(
            displayedText(entry.notes->program->name)));
    if (entry.freesLess())
        notes.append(u"Other files share its space: removing it may free less."_s);
    return notes.join(u'\n');
}

bool sayTheSame(const std::vector<CleanupEntry> &some, const std::vector<CleanupEntry> &others) {
    return std::equal(some.begin(), some.end(), others.begin(), others.end(),
                      [](const CleanupEntry &a, const CleanupEntry &b) {
                          return a == b &&
                                 (a.notes == b.notes || (a.notes && b.notes && *a.notes == *b.notes));
                      });
}

} // namespace

QString withLock(const QString &words, const QString &lock) {
    return lock.isEmpty() ? words : words + u'\n' + lock;
}

EntryListModel::EntryListModel(TickedEntries *ticked, QObject *parent)
    : QAbstractListModel(parent), ticked_(ticked) {
    if (ticked_ != nullptr)
        connect(ticked_, &TickedEntries::changed, this, [this] {
            if (!entries_.empty())
                emit dataChanged(index(0), index(rowCount() - 1));
        });
}

void EntryListModel::setEntries(const std::vector<CleanupEntry> &entries) {
    if (sayTheSame(entries, entries_))
        return;
    beginResetModel();
    entries_ = entries;
    showsFolders_ = lieInSeveralFolders(entries_);
    endResetModel();
}

bool EntryListModel::hasNotes() const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [](const CleanupEntry &entry) { return !noteLines(entry).isEmpty(); });
}

void EntryListModel::setWords(std::unordered_map<FileURL, RowWords> words) {
    if (words == words_)
        return;
    words_ = std::move(words);
    emit layoutAboutToBeChanged(); // rows may have got a second line
    emit layoutChanged();
}

/// What the row says, by its entry and by what was set for it.
RowWords EntryListModel::wordsOf(const CleanupEntry &entry) const {
    const auto set = words_.find(entry.url);
    RowWords words =
        set != words_.end() ? set->second : RowWords{.date = dateText(entry), .dateWord = u"modified"_s};
    if (words.name.isEmpty())
        words.name = displayedText(entry.title());
    if (words.line.isEmpty() && showsFolders_)
        words.line = displayedText(entry.url.parent().path());
    if (words.toolTip.isEmpty())
        words.toolTip = displayedText(entry.url.path());
    return words;
}

int EntryListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant EntryListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const CleanupEntry &entry = entries_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return wordsOf(entry).name;
    case Qt::ToolTipRole:
        return withLock(wordsOf(entry).toolTip, lockOf(entry));
    case Qt::AccessibleTextRole:
        return accessibleText(entry);
    case Qt::CheckStateRole:
        return ticked_ == nullptr || !lockOf(entry).isEmpty()
                   ? QVariant()
                   : QVariant(ticked_->contains(entry.url) ? Qt::Checked : Qt::Unchecked);
    case sizeRole:
        return sizeText(entry.size);
    case dateRole:
        return wordsOf(entry).date;
    case folderRole:
        return wordsOf(entry).line;
    case noteRole:
        return noteLines(entry);
    case iconRole:
        return Icons::nameFor(entry.isFolder);
    case lockRole:
        return lockOf(entry);
    case commandRole:
        return entry.notes ? displayedText(entry.notes->command) : QString();
    default:
        return {};
    }
}

QString EntryListModel::accessibleText(const CleanupEntry &entry) const {
    const RowWords words = wordsOf(entry);
    QStringList parts = {words.name, sizeText(entry.size)};
    if (!words.date.isEmpty())
        parts.append(words.dateWord + u' ' + words.date);
    if (words_.contains(entry.url))
        parts.append(words.line);
    if (const QString lock = lockOf(entry); !lock.isEmpty())
        parts.append(u"locked: %1"_s.arg(lock));
    parts.append(noteLines(entry).split(u'\n', Qt::SkipEmptyParts));
    return parts.join(QStringLiteral(", "));
}

QString EntryListModel::lockOf(const CleanupEntry &entry) const {
    return ticked_ != nullptr ? ticked_->lockReason(entry) : QString();
}

bool EntryListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole || ticked_ == nullptr)
        return false;
    const CleanupEntry &entry = entries_[static_cast<std::size_t>(index.row())];
    if (!lockOf(entry).isEmpty()) {
        ticked_->explainLock(entry);
        return false;
    }
    ticked_->setTicked({entry}, value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

Qt::ItemFlags EntryListModel::flags(const QModelIndex &index) const {
    Qt::ItemFlags flags = QAbstractListModel::flags(index) | Qt::ItemNeverHasChildren;
    if (ticked_ != nullptr && index.isValid() &&
        lockOf(entries_[static_cast<std::size_t>(index.row())]).isEmpty())
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

} // namespace brimvale
