#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Trash/PuttingBack.h"
#include "Views/Entries/EntryListModel.h"

#include <QObject>
#include <functional>
#include <unordered_map>
#include <vector>

namespace brimvale {

class Removals;
class Trash;
class TrashBar;
struct TrashRecord;

/// The rows of the Trash with their old places and dates, and the actions on them: what the page of the Trash
/// has, and other categories have not.
class TrashPage : public QObject {
    Q_OBJECT

public:
    using Entries = std::vector<CleanupEntry>;

    /// The model must outlive the page. Sheets open over `page`.
    TrashPage(Trash &trash, Removals &removals, QWidget &page);

    [[nodiscard]] TrashBar &bar() const { return *bar_; }

    /// All rows, and those that are selected.
    void setRows(const Entries &all);
    void setSelection(const Entries &selected, std::int64_t count, std::int64_t bytes);

    /// What the rows say beside their sizes.
    [[nodiscard]] std::unordered_map<FileURL, RowWords> words() const;

signals:
    void wordsChanged();

private:
    void showState();
    void confirmDeletion();
    void confirmEmptying();
    void ask(const QString &question, const QString &action, const Entries &entries,
             const std::function<void(const Entries &)> &act);
    void showPutBack(const PutBackResult &result);

    Trash &trash_;
    Removals &removals_;
    QWidget &page_;
    TrashBar *bar_;
    QString outcome_; ///< of putting back, until something else is done
    Entries all_, selected_;
};

} // namespace brimvale
