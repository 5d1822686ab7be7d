#pragma once

#include "Core/Removal/RemovalMode.h"
#include "Views/Components/Bar.h"

#include <cstdint>

namespace brimvale {

class DestructiveButton;
class RemovalModePicker;
class TextLabel;

/// The bar at the bottom of a page that says what is ticked, and removes it, asked by button or by key.
class ActionBar : public Bar {
    Q_OBJECT

public:
    explicit ActionBar(QWidget *parent = nullptr);

    /// How many items are ticked, and their bytes together. With none the button is dead.
    void setSelection(std::int64_t count, std::int64_t bytes);
    /// What the user should know before; an empty text for nothing.
    void setNote(const QString &note);
    /// Shows whether a removal runs, during which no other can be asked for.
    void setBusy(bool isBusy);
    /// Goes back to the Trash, which everything starts from.
    void resetMode();

signals:
    void removalAsked(RemovalMode mode);

private:
    void showSelection();

    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
    bool isBusy_ = false;
    TextLabel *selection_;
    TextLabel *note_;
    RemovalModePicker *picker_;
    DestructiveButton *remove_;
};

} // namespace brimvale
