#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Entries/TickedEntries.h"

#include <QWidget>
#include <vector>

class QVBoxLayout;

namespace brimvale {

class ActionBar;
class Cleanup;
class MeasureButton;
class Removals;
class TargetCard;

/// The page of the places whose contents programs create again: one card per place with its entries, and the
/// bar that removes the selected ones.
class CleanupView : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the page.
    CleanupView(Cleanup &cleanup, Removals &removals, QWidget *parent = nullptr);

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);

private:
    QWidget *makeHeader();
    QWidget *makeCards();
    void showTargets();
    void showSelection();
    void confirmRemoval(RemovalMode mode);
    [[nodiscard]] std::vector<CleanupEntry> tickedEntries() const;

    Cleanup &cleanup_;
    Removals &removals_;
    TickedEntries ticked_;
    bool wasMeasuring_ = false; ///< the state shown
    MeasureButton *measure_;
    QVBoxLayout *cards_ = nullptr;
    ActionBar *bar_;
    std::vector<TargetCard *> targets_;
};

} // namespace brimvale
