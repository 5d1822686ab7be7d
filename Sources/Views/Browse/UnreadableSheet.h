#pragma once

#include "Core/Scan/UnreadableItems.h"
#include "Views/Components/Sheet.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// Lists what a scan could not read, and why.
class UnreadableSheet : public Sheet {
    Q_OBJECT

public:
    /// `count` is the number of all items, of which these are the first ones.
    UnreadableSheet(const std::vector<UnreadableItem> &items, std::int64_t count, QWidget *parent);
};

} // namespace brimvale
