#pragma once

#include "Catalogs/CleanupTarget.h"
#include "Views/Components/Card.h"

namespace brimvale {

class CommandList;
class DisclosureButton;
class EntryList;
class TextLabel;
class TickBox;
class TickedEntries;

/// One cleanup target: always its header, and its entries when it is expanded.
class TargetCard : public Card {
    Q_OBJECT

public:
    TargetCard(const CleanupTarget &target, TickedEntries &ticked, QWidget *parent = nullptr);

    /// Shows the same target with other entries.
    void setTarget(const CleanupTarget &target);
    [[nodiscard]] const CleanupTarget &target() const { return target_; }

    void setOpen(bool isOpen);
    [[nodiscard]] bool isOpen() const;

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QWidget *makeHead();
    void showEntries();
    void showCommands();
    void showTicks();

    CleanupTarget target_;
    TickedEntries &ticked_;
    DisclosureButton *disclosure_;
    TickBox *all_;
    TextLabel *total_;
    QWidget *head_ = nullptr;
    QWidget *body_;
    EntryList *entries_;
    TextLabel *state_; ///< why there are no entries
    CommandList *commands_;
};

} // namespace brimvale
