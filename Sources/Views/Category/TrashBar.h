#pragma once

#include "Views/Components/Bar.h"

#include <cstdint>

class QPushButton;

namespace brimvale {

class DestructiveButton;
class TextLabel;

/// The bar of the Trash: the selection, and what can be done with it or with all items.
class TrashBar : public Bar {
    Q_OBJECT

public:
    explicit TrashBar(QWidget *parent = nullptr);

    /// The number of selected items, and their bytes in total.
    void setSelection(std::int64_t count, std::int64_t bytes);
    /// What the last action did, or what the user should know; empty for nothing.
    void setNote(const QString &note);
    /// What is being done; empty for nothing. Nothing else can be asked for then.
    void setBusy(const QString &work);
    /// Whether there is anything to empty.
    void setFilled(bool isFilled);

signals:
    void putBackAsked();
    void deletionAsked();
    void emptyingAsked();

private:
    void showState();

    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
    QString work_;
    bool isFilled_ = false;
    TextLabel *selection_;
    TextLabel *note_;
    QPushButton *putBack_;
    DestructiveButton *delete_;
    DestructiveButton *empty_;
};

} // namespace brimvale
