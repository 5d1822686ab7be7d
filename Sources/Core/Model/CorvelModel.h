#pragma once

#include <memory>

namespace brimvale {

class Apps;
class Backups;
class Cleanup;
class RemovalActions;
class Removals;
class ScanSession;
class Storage;
class Volumes;

/// The one observable object of the application. It owns the parts that pages read, listen to and call, and
/// ties them: what a removal takes away leaves every part. Lives on the main thread.
class CorvelModel {
    struct Parts;
    std::unique_ptr<Parts> parts_;

public:
    /// With the removals of the platform.
    CorvelModel();
    /// `actions` carries out removals and outlives the model.
    explicit CorvelModel(RemovalActions &actions);
    /// Cancels what runs and waits for it, also for an administrator's command.
    ~CorvelModel();
    CorvelModel(const CorvelModel &) = delete;
    CorvelModel &operator=(const CorvelModel &) = delete;

    Volumes &volumes;
    ScanSession &scan;
    Removals &removals;
    Cleanup &cleanup;
    Storage &storage;
    Apps &apps;
    Backups &backups;
};

} // namespace brimvale
