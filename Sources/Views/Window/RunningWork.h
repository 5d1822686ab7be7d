#pragma once

#include <QObject>
#include <memory>

namespace brimvale {

class Backups;
class Removals;
class Trash;

/// Keeps the computer awake while something is removed, put back or copied into a backup.
class RunningWork : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    RunningWork(const Removals &removals, const Backups &backups, const Trash &trash, QObject *parent);

private:
    void follow();

    const Removals &removals_;
    const Backups &backups_;
    const Trash &trash_;
    std::unique_ptr<QObject> awake_; ///< null while nothing runs
};

} // namespace brimvale
