#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// A sheet with a heading and a text.
class TextSheet : public Sheet {
    Q_OBJECT

protected:
    TextSheet(const char *objectName, const QString &title, const QString &text, QWidget *parent);
    /// Add the buttons to this layout.
    [[nodiscard]] QVBoxLayout &content() { return *content_; }

private:
    QVBoxLayout *content_;
};

/// Asks before an action that cannot be undone. Cancel is the default. `accepted` means yes.
class ConfirmationSheet : public TextSheet {
    Q_OBJECT

public:
    /// `action` is the title of the button that confirms.
    ConfirmationSheet(const QString &question, const QString &explanation, const QString &action,
                      QWidget *parent);
};

/// Shows a message with nothing to decide.
class NoticeSheet : public TextSheet {
    Q_OBJECT

public:
    NoticeSheet(const QString &title, const QString &text, QWidget *parent);
};

/// Shows a message over a window as soon as no other sheet is open there.
void showNoticeSheet(QWidget &window, const QString &title, const QString &text);

} // namespace brimvale
