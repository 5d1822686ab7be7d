#pragma once

#include "Views/Entries/EntryListModel.h"
#include "Views/Entries/RowList.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// A list of entries: Return shows one in the system's file browser, or in Browse if it is locked, and the
/// space bar selects it.
class EntryList : public RowList {
    Q_OBJECT

public:
    /// Without `ticked` the list is read-only.
    explicit EntryList(TickedEntries *ticked, QWidget *parent = nullptr);
    ~EntryList() override;

    void setEntries(const std::vector<CleanupEntry> &entries);
    [[nodiscard]] const std::vector<CleanupEntry> &entries() const { return model_->entries(); }

    /// What rows say instead of what their entries say.
    void setWords(std::unordered_map<FileURL, RowWords> words);

    /// Offers to put entries that can be ticked into the basket. Only for entries that are removed without
    /// anything before, such as a backup, and that are not in the Trash.
    void offerBasket() { offersBasket_ = true; }

    /// The message in place of a list whose folder cannot be listed.
    [[nodiscard]] static QString unreadableText();

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

private:
    void open(const QModelIndex &row);
    void showMenu(const QModelIndex &row, const QPoint &place);
    EntryList(std::unique_ptr<EntryListModel> model, QWidget *parent);
    [[nodiscard]] const FileURL &urlAt(const QModelIndex &row) const;
    [[nodiscard]] bool isFolder(const QModelIndex &row) const;

    std::unique_ptr<EntryListModel> model_;
    bool offersBasket_ = false;
};

} // namespace brimvale
