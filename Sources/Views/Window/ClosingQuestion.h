#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class QDialog;

namespace brimvale {

class Backups;
class Removals;
class Volumes;

/// Asks before the window closes during a removal or a backup, which closing ends, or during a command run as
/// administrator, whose result would not be shown.
class ClosingQuestion : public QObject {
    Q_OBJECT

public:
    /// All must outlive the question.
    ClosingQuestion(const Removals &removals, const Backups &backups, const Volumes &volumes,
                    QWidget &window);

    /// Whether anything is running that needs the question.
    [[nodiscard]] bool isDue() const;

    /// Asks in a sheet of the window, one at a time; calls `then` if the user agrees. `action` is the title
    /// of the confirming button. The sheet closes by itself when nothing is running any more.
    void ask(const QString &action, std::function<void()> then);

private:
    [[nodiscard]] bool administratorRuns() const;
    [[nodiscard]] QString question() const;
    [[nodiscard]] QString loss() const;
    void withdrawWhenIdle();

    const Removals &removals_;
    const Backups &backups_;
    const Volumes &volumes_;
    QWidget &window_;
    QPointer<QDialog> sheet_;
};

} // namespace brimvale
