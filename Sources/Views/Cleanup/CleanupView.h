#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Entries/TickedEntries.h"

#include <QWidget>
#include <cstddef>
#include <string>
#include <vector>

class QComboBox;
class QPushButton;
class QVBoxLayout;

namespace brimvale {

class ActionBar;
class Cleanup;
class MeasureButton;
class Removals;
class TargetCard;
class TextLabel;

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
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

private:
    QWidget *makeHeader();
    QWidget *makeChoices();
    QWidget *makeCards();
    void showTargets();
    void showTotal();
    void orderCards();
    void showSelection();
    void selectAllSafe();
    void confirmRemoval(RemovalMode mode);
    void ask(const std::vector<CleanupEntry> &entries, RemovalMode mode,
             const std::vector<std::string> &running);
    [[nodiscard]] std::vector<CleanupEntry> safeEntries() const;
    [[nodiscard]] std::vector<CleanupEntry> tickedEntries() const;
    [[nodiscard]] std::size_t countInTrash(const std::vector<CleanupEntry> &entries) const;

    Cleanup &cleanup_;
    Removals &removals_;
    TickedEntries ticked_;
    bool wasMeasuring_ = false; ///< the state shown
    MeasureButton *measure_;
    QVBoxLayout *cards_ = nullptr;
    ActionBar *bar_;
    TextLabel *total_ = nullptr;
    QComboBox *order_ = nullptr;
    QPushButton *selectSafe_ = nullptr;
    bool isAsking_ = false;             ///< looks which programs are running
    std::vector<TargetCard *> targets_; ///< in catalog order
};

} // namespace brimvale
