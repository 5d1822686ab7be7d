#pragma once

#include "Base/FileURL.h"
#include "Core/Model/Part.h"

#include <functional>
#include <optional>
#include <string>

namespace brimvale {

class RemovalActions;
class ScanSession;
class Workers;

struct AdministratorScanState {
    bool isRunning = false; ///< the system's question may be open
};

/// Scans a folder as administrator, who may read what the user may not. Our own command line tool does that,
/// and only reads.
class AdministratorScan : public Part<AdministratorScanState> {
    Q_OBJECT

public:
    /// All must outlive it.
    AdministratorScan(Workers &workers, RemovalActions &actions, ScanSession &scan);

    /// Whether this system can ask for an administrator's password, and our command line tool is there.
    [[nodiscard]] static bool isPossible();

    /// Scans a folder (absolute) after the system has asked for the password, and shows its tree in the
    /// session, where nothing of it can be removed (`ScanSession::showImported`). Calls `failed` with a
    /// sentence where that did not work. Does nothing while it is running.
    void start(const FileURL &folder, const std::function<void(const std::string &)> &failed);

private:
    Workers &workers_;
    RemovalActions &actions_;
    ScanSession &scan_;
};

} // namespace brimvale
