#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"

#include <vector>

namespace brimvale {

class Workers;

struct BasketState {
    std::vector<CleanupEntry> entries = {}; ///< none inside another one
};

/// The items that the user gathers from all pages, to remove them together. Each keeps the pin that it had
/// when it was shown.
class Basket : public Part<BasketState> {
    Q_OBJECT

public:
    explicit Basket(Workers &workers) : workers_(workers) {}

    /// Adds items; those without a pin are pinned in the background first. One inside an item of the basket
    /// is in it already; one around others takes their place.
    void add(const std::vector<CleanupEntry> &entries);
    void clear();

    /// Drops items that are gone.
    void drop(const GonePaths &gone);
    /// Drops items that changed since the user added them, their descendants and ancestors.
    void dropChanged(const GonePaths &changed);

private:
    void addPinned(const std::vector<CleanupEntry> &entries);

    Workers &workers_;
    int emptied_ = 0; ///< how often; what was added before does not arrive after
};

} // namespace brimvale
