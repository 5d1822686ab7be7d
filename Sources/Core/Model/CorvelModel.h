#pragma once

#include <memory>

namespace brimvale {

class AdministratorScan;
class Apps;
class Backups;
class Basket;
class Cleanup;
class Duplicates;
class OrphanSearch;
class RemovalActions;
class Removals;
class ScanSession;
class Storage;
class Trash;
class Volumes;
struct ModelSources;

/// The application model. It owns the parts that pages read, listen to and call, and connects them: what a
/// removal removes disappears from every part. Belongs to the main thread.
class CorvelModel {
    struct Parts;
    std::unique_ptr<Parts> parts_;

public:
    /// Uses the removal actions of the platform.
    CorvelModel();
    /// `actions` carries out removals and must outlive the model.
    explicit CorvelModel(RemovalActions &actions);
    CorvelModel(RemovalActions &actions, const ModelSources &sources);
    /// Cancels all running work and waits for it, even for a command run as administrator.
    ~CorvelModel();
    CorvelModel(const CorvelModel &) = delete;
    CorvelModel &operator=(const CorvelModel &) = delete;

    Volumes &volumes;
    ScanSession &scan;
    Removals &removals;
    Cleanup &cleanup;
    Storage &storage;
    Apps &apps;
    OrphanSearch &orphans;
    Backups &backups;
    Trash &trash;
    Basket &basket;
    Duplicates &duplicates;
    AdministratorScan &administratorScan;
};

} // namespace brimvale
