#pragma once

#include "Core/Update/UpdateState.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace brimvale {

class Card;
class ProgressLine;
class TextLabel;
class Updater;

/// The update window: the updater's state, the button for the next step, and one that stops a check. Closing
/// it stops nothing. Deletes itself when it is closed.
class UpdateView : public QDialog {
    Q_OBJECT

public:
    /// The updater must outlive the window.
    UpdateView(Updater &updater, QWidget *parent);

    /// Checks for an update. If a silent check is running and ends without a result, checks once more.
    void check();

signals:
    /// The user wants to install the ready update, which quits the program.
    void installAsked();

private:
    /// The contents of the window for one state.
    struct Content {
        QString title;
        QString text;
        QString notes;  ///< may be empty
        QString action; ///< the button's title; empty for no button
    };

    void arrange();
    [[nodiscard]] Content content() const;
    [[nodiscard]] Content offer(const updateState::Available &update, const QString &running) const;
    void showState();
    void answer();
    void act();
    void stop();

    Updater &updater_;
    bool isAnswerDue_ = false; ///< the user's check has no result yet
    TextLabel *title_;
    TextLabel *text_;
    Card *notesCard_;
    QPlainTextEdit *notes_;
    ProgressLine *progress_;
    TextLabel *lastChecked_;
    QPushButton *stop_;
    QPushButton *action_;
};

} // namespace brimvale
