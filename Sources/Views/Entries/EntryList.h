#pragma once

#include "Views/Entries/EntryListModel.h"
#include "Views/Entries/RowList.h"

#include <memory>
#include <vector>

namespace brimvale {

/// A list of entries: Return shows one in the system's file browser, the space bar selects it.
class EntryList : public RowList {
    Q_OBJECT

public:
    /// Without `ticked` the list is read-only.
    explicit EntryList(TickedEntries *ticked, QWidget *parent = nullptr);
    ~EntryList() override;

    void setEntries(const std::vector<CleanupEntry> &entries);
    [[nodiscard]] const std::vector<CleanupEntry> &entries() const { return model_->entries(); }

    /// The message in place of a list whose folder cannot be listed.
    [[nodiscard]] static QString unreadableText();

private:
    EntryList(std::unique_ptr<EntryListModel> model, QWidget *parent);
    [[nodiscard]] const FileURL &urlAt(const QModelIndex &row) const;

    std::unique_ptr<EntryListModel> model_;
};

} // namespace brimvale
