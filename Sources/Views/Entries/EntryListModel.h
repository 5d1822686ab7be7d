#pragma once

#include "Catalogs/CleanupEntry.h"

#include <QAbstractListModel>
#include <unordered_map>
#include <vector>

namespace brimvale {

class TickedEntries;

/// A row's tool tip: a line, and in a second one why the row is locked, if it is.
[[nodiscard]] QString withLock(const QString &words, const QString &lock);

/// What a row says about its entry instead of what its path and its last change say.
struct RowWords {
    QString name = {};     ///< empty for its own name
    QString line = {};     ///< a second line
    QString date = {};     ///< formatted; empty if it is not known
    QString dateWord = {}; ///< what happened on that date
    QString toolTip = {};  ///< empty for its path

    friend bool operator==(const RowWords &, const RowWords &) = default;
};

/// The rows of a list of entries that can be selected with tick boxes.
class EntryListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        sizeRole = Qt::UserRole, ///< formatted
        dateRole,                ///< formatted; empty if it is not known
        folderRole,              ///< a second line; empty for none
        noteRole,                ///< further lines with warnings; may be empty
        iconRole,                ///< the name of an icon
        lockRole,                ///< why the row can never be ticked; empty if it can
        commandRole              ///< the command that removes it in its own way; empty for none
    };

    /// Without `ticked` nothing can be ticked.
    explicit EntryListModel(TickedEntries *ticked, QObject *parent = nullptr);

    void setEntries(const std::vector<CleanupEntry> &entries);
    [[nodiscard]] const std::vector<CleanupEntry> &entries() const { return entries_; }
    /// Whether a row has more lines than others.
    [[nodiscard]] bool hasNotes() const;

    /// Rows without words say what their entries say.
    void setWords(std::unordered_map<FileURL, RowWords> words);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    [[nodiscard]] QString accessibleText(const CleanupEntry &entry) const;
    [[nodiscard]] QString lockOf(const CleanupEntry &entry) const;

    [[nodiscard]] RowWords wordsOf(const CleanupEntry &entry) const;

    TickedEntries *ticked_;
    std::vector<CleanupEntry> entries_;
    std::unordered_map<FileURL, RowWords> words_;
    bool showsFolders_ = false;
};

} // namespace brimvale
