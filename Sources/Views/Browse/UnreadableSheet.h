#pragma once

#include "Core/Scan/UnreadableItems.h"
#include "Views/Components/Sheet.h"

#include <cstdint>
#include <vector>

class QPushButton;

namespace brimvale {

/// Lists what a scan could not read, and why.
class UnreadableSheet : public Sheet {
    Q_OBJECT

public:
    /// `count` is the number of all items, of which these are the first ones. None for a list from elsewhere,
    /// which only counts them.
    UnreadableSheet(const std::vector<UnreadableItem> &items, std::int64_t count, QWidget *parent);

    /// Shows the button for `administratorAsked`. Call it before the sheet is shown.
    void offerAdministrator();

signals:
    /// The user wants to scan as administrator; the sheet has closed.
    void administratorAsked();

private:
    QPushButton *administrator_;
};

} // namespace brimvale
