#pragma once

#include "Views/Components/Sheet.h"
#include "Views/Entries/TickedEntries.h"

namespace brimvale {

class Basket;
class DestructiveButton;
class EntryList;
class Removals;

/// Shows what is in the basket, all of it ticked, and removes what stays ticked after a question.
class BasketSheet : public Sheet {
    Q_OBJECT

public:
    /// Both must outlive the sheet.
    BasketSheet(Basket &basket, Removals &removals, QWidget *parent);

private:
    void showContents();
    void showSelection();
    void ask();

    Basket &basket_;
    Removals &removals_;
    TickedEntries ticked_;
    EntryList *list_;
    DestructiveButton *remove_;
};

} // namespace brimvale
