#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateInstallation.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateNetwork.h"
#include "Platform/MainBundle.h"
#include "Platform/Tools.h"

#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

namespace brimvale {

/// The file to which the installer and the install script write.
[[nodiscard]] FileURL installLog();

/// Everything that a self-update takes from outside.
struct UpdateEnvironment {
    QUrl feedURL;
    MainBundle bundle;                         ///< the running application
    bool canInstallItself = false;             ///< otherwise an update is only announced
    std::optional<SystemVersion> macOSVersion; ///< nothing on other systems, which feeds do not mention
    FileURL temporaryFolder;                   ///< of the user
    FileURL installLog;                        ///< the install script writes to it
    Tools tools;
    TransferLimits feedLimits;
    TransferLimits archiveLimits;
    std::function<UpdateNetwork &()> network; ///< called when a transfer starts
    std::shared_ptr<ApplicationQuit> quit;
    LogLine log; ///< thread-safe

    /// The address of the feed for releases.
    [[nodiscard]] static QUrl releaseFeed();

    /// The environment of releases: the feed of Brimvale, this program, this system.
    [[nodiscard]] static UpdateEnvironment current();
};

} // namespace brimvale
