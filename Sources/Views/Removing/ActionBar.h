#pragma once

#include "Core/Removal/RemovalMode.h"
#include "Views/Components/Bar.h"

#include <cstdint>

namespace brimvale {

class DestructiveButton;
class RemovalModePicker;
class TextLabel;

/// The bar at the bottom of a page. It shows the selection, and removes it by button or by key.
class ActionBar : public Bar {
    Q_OBJECT

public:
    explicit ActionBar(QWidget *parent = nullptr);

    /// The number of selected items, and their bytes in total. With none, the button is disabled.
    void setSelection(std::int64_t count, std::int64_t bytes);
    /// A remark for the confirmation; empty for none.
    void setNote(const QString &note);
    /// Tells why something cannot be selected, until the selection changes.
    void showRefusal(const QString &reason);
    /// Sets whether a removal is running. No other can be requested then.
    void setBusy(bool isBusy);
    /// Resets the mode to the Trash, the default.
    void resetMode();

signals:
    void removalAsked(RemovalMode mode);

private:
    void showSelection();

    /// Whether less may be freed than is selected. The pages with this bar show what is on the volume of the
    /// home.
    const bool freesAtMost_;
    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
    bool isBusy_ = false;
    TextLabel *selection_;
    TextLabel *note_;
    TextLabel *refusal_;
    RemovalModePicker *picker_;
    DestructiveButton *remove_;
};

} // namespace brimvale
