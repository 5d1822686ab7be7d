#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"
#include "Views/Components/Sheet.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QLayout;

namespace brimvale {

class DestructiveButton;
class ReclaimLabel;
class RemovalModePicker;
class TextLabel;

/// The contents of a confirmation.
struct RemovalRequest {
    std::vector<CleanupEntry> items = {};
    RemovalMode mode = RemovalMode::trash; ///< the initial choice
    bool areInTrash = false;               ///< all of them are, so there is no choice
    /// A remark for the chosen mode; empty for none.
    std::function<std::string(RemovalMode mode)> remark = {};
    std::optional<Reclaim> reclaim = {}; ///< what deleting the items frees, where that is known
    bool uninstalls = false;             ///< a program removes the first item, which is no choice of the mode
};

/// Asks before a removal: which items, how many, how large, and how to remove them. Tells what deleting them
/// frees, and saves a plan to do it later. Cancel is the default.
class RemovalSheet : public Sheet {
    Q_OBJECT

public:
    RemovalSheet(RemovalRequest request, QWidget *parent);
    /// Stops making a plan.
    ~RemovalSheet() override;

signals:
    /// The user confirmed the removal in this mode, and was promised this, if it was known by then.
    void confirmed(RemovalMode mode, const std::optional<FreePromise> &promise);

private:
    QWidget *makeItemList();
    QLayout *makeModeRow();
    void fit();
    void showMode();
    void askForPlanFile();
    void savePlan(const std::string &path);
    void showPlanNote(const QString &note);
    void endPlan(const QString &note, const QString &toolTip = {});

    RemovalRequest request_;
    bool freesAtMost_; ///< not always the size of the items
    RemovalModePicker *picker_;
    TextLabel *remark_;
    ReclaimLabel *reclaim_;
    QPushButton *savePlan_;
    StopFlag closed_;     ///< stops the making of a plan
    TextLabel *planNote_; ///< what became of the plan
    DestructiveButton *remove_;
};

} // namespace brimvale
