#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"

#include <vector>

namespace brimvale {

struct BasketState {
    std::vector<CleanupEntry> entries = {}; ///< none inside another one
};

/// The items that the user gathers from all pages, to remove them together. Each keeps the pin that it had
/// when it was shown.
class Basket : public Part<BasketState> {
    Q_OBJECT

public:
    Basket() = default;

    /// Adds items. One inside an item of the basket is in it already; one around others takes their place.
    void add(const std::vector<CleanupEntry> &entries);
    void clear();

    /// Drops items that are gone.
    void drop(const GonePaths &gone);
    /// Drops items that changed since the user added them, their descendants and ancestors.
    void dropChanged(const GonePaths &changed);
};

} // namespace brimvale
