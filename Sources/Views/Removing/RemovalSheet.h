#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Components/Sheet.h"

#include <functional>
#include <string>
#include <vector>

namespace brimvale {

class DestructiveButton;
class RemovalModePicker;
class TextLabel;

/// What a page asks the user to confirm.
struct RemovalRequest {
    std::vector<CleanupEntry> items = {};
    RemovalMode mode = RemovalMode::trash; ///< that is chosen at first
    /// What the user should know before, for the chosen mode; an empty text for nothing.
    std::function<std::string(RemovalMode mode)> remark = {};
};

/// Asks before anything is removed: what, how many, how much, and how. The way out is the default.
class RemovalSheet : public Sheet {
    Q_OBJECT

public:
    RemovalSheet(RemovalRequest request, QWidget *parent);

signals:
    /// The user wants the items gone, in this way.
    void confirmed(RemovalMode mode);

private:
    QWidget *makeItemList();
    void showMode();

    RemovalRequest request_;
    RemovalModePicker *picker_;
    TextLabel *remark_;
    DestructiveButton *remove_;
};

} // namespace brimvale
