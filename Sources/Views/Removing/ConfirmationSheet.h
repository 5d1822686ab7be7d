#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// A sheet of a heading and a text under it.
class TextSheet : public Sheet {
    Q_OBJECT

protected:
    TextSheet(const char *objectName, const QString &title, const QString &text, QWidget *parent);
    /// To add the buttons to.
    [[nodiscard]] QVBoxLayout &content() { return *content_; }

private:
    QVBoxLayout *content_;
};

/// Asks before something is done that cannot be undone. The way out is the default. `accepted` means yes.
class ConfirmationSheet : public TextSheet {
    Q_OBJECT

public:
    /// `action` is the title of the button that does it.
    ConfirmationSheet(const QString &question, const QString &explanation, const QString &action,
                      QWidget *parent);
};

/// Tells something that only has to be read.
class NoticeSheet : public TextSheet {
    Q_OBJECT

public:
    NoticeSheet(const QString &title, const QString &text, QWidget *parent);
};

} // namespace brimvale
