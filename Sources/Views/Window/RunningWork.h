#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <chrono>
#include <memory>

class QString;
class QWidget;

namespace brimvale {

class Backups;
class Removals;
class Trash;

/// Keeps the computer awake while something is removed, put back or copied into a backup, and notifies the
/// user when a long removal or backup has ended while another program is used.
class RunningWork : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds longWork{10'000};

    /// All must outlive it. Work that takes at least `noticed` is long.
    RunningWork(const Removals &removals, const Backups &backups, const Trash &trash, QWidget &window,
                std::chrono::milliseconds noticed = longWork);

private:
    void follow();
    void announceBackup();
    void announceResult();
    void announce(const QString &title, const QString &words);

    const Removals &removals_;
    const Backups &backups_;
    const Trash &trash_;
    QWidget &window_;
    std::chrono::milliseconds noticed_;
    std::unique_ptr<QObject> awake_; ///< null while nothing runs
    QElapsedTimer since_;            ///< since the beginning of what runs, or ran last
    bool isArchiving_ = false;
};

} // namespace brimvale
