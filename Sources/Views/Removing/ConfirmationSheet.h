#pragma once

#include <QDialog>

namespace brimvale {

/// Asks before something is done that cannot be undone. The way out is the default. Deletes itself when it is
/// closed; `accepted` means yes.
class ConfirmationSheet : public QDialog {
    Q_OBJECT

public:
    /// `action` is the title of the button that does it.
    ConfirmationSheet(const QString &question, const QString &explanation, const QString &action,
                      QWidget *parent);
};

/// Tells something that only has to be read. Deletes itself when it is closed.
class NoticeSheet : public QDialog {
    Q_OBJECT

public:
    NoticeSheet(const QString &title, const QString &text, QWidget *parent);
};

} // namespace brimvale
