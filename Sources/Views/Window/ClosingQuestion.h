#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class QDialog;

namespace brimvale {

class Backups;
class Removals;
class Volumes;

/// Asks before the window goes while something is removed or backed up, which ends with it, or while an
/// administrator's command runs, whose end nobody would be told of.
class ClosingQuestion : public QObject {
    Q_OBJECT

public:
    /// All must outlive the question.
    ClosingQuestion(const Removals &removals, const Backups &backups, const Volumes &volumes,
                    QWidget &window);

    /// Whether there is anything to ask about.
    [[nodiscard]] bool isDue() const;

    /// Asks in a sheet of the window, one at a time; `then` is called when the user agrees. `action` is what
    /// the button for that says. The sheet ends by itself once there is nothing left to ask about.
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
