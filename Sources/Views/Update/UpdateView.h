#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace brimvale {

class Card;
class ProgressLine;
class TextLabel;
class Updater;

/// The update window: what the updater is doing or has found, and the button that takes the next step.
/// Closing it stops nothing. Deletes itself when it is closed.
class UpdateView : public QDialog {
    Q_OBJECT

public:
    /// The updater must outlive the window.
    UpdateView(Updater &updater, QWidget *parent);

    /// Looks for an update. Where a silent look is under way that ends without a word, looks once more.
    void check();

signals:
    /// The user wants what is ready to be installed, which ends the program.
    void installAsked();

private:
    /// What the window shows of one state.
    struct Content {
        QString title;
        QString text;
        QString notes;  ///< empty for none
        QString action; ///< the button's title; empty for no button
    };

    void arrange();
    [[nodiscard]] Content content() const;
    void showState();
    void answer();
    void act();

    Updater &updater_;
    bool isAnswerDue_ = false; ///< the user has asked, and was not told anything yet
    TextLabel *title_;
    TextLabel *text_;
    Card *notesCard_;
    QPlainTextEdit *notes_;
    ProgressLine *progress_;
    TextLabel *lastChecked_;
    QPushButton *action_;
};

} // namespace brimvale
