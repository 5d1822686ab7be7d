#pragma once

#include "Core/Apps/LeftoverItem.h"
#include "Views/Entries/TickedEntries.h"

#include <QWidget>
#include <vector>

class QPushButton;

namespace brimvale {

class LeftoverGroup;
class StateMessage;
class TextLabel;
struct OrphanState;

/// The leftovers of applications that are gone, which can be selected.
class OrphanDetail : public QWidget {
    Q_OBJECT

public:
    explicit OrphanDetail(QWidget *parent = nullptr);

    /// Keeps the selection of what is still there.
    void show(const OrphanState &state);

    /// The selected ones, in the order of the page.
    [[nodiscard]] std::vector<LeftoverItem> leftovers() const;
    void clearTicks() { ticked_.clear(); }

signals:
    void selectionChanged();
    /// The user tried to select what can never be removed.
    void refused(const QString &reason);
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);
    void stopAsked();

private:
    QWidget *makeOrphanHead();
    void showMessage(const OrphanState &state);
    void showRows(const OrphanState &state);

    TickedEntries ticked_;
    std::vector<LeftoverItem> items_;
    TextLabel *progress_;
    QPushButton *stop_;
    TextLabel *incomplete_; ///< why there may be more than is shown
    StateMessage *message_;
    LeftoverGroup *group_;
};

} // namespace brimvale
