#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateInstallation.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateTransfer.h"
#include "Platform/MainBundle.h"
#include "Platform/Tools.h"

#include <QUrl>
#include <memory>
#include <optional>

namespace brimvale {

/// Everything that a self-update takes from the world around it.
struct UpdateEnvironment {
    QUrl feedURL;
    MainBundle bundle;                         ///< the application that runs
    bool canInstallItself = false;             ///< else an update is only announced
    std::optional<SystemVersion> macOSVersion; ///< nothing on another system, which no feed asks about
    FileURL temporaryFolder;                   ///< of the user
    FileURL installLog;                        ///< written to by the install script
    Tools tools;
    TransferLimits feedLimits;
    TransferLimits archiveLimits;
    std::shared_ptr<ApplicationQuit> quit;
    LogLine log; ///< thread-safe

    /// Where releases look for the feed.
    [[nodiscard]] static QUrl releaseFeed();

    /// The one that releases run in: the feed of Brimvale, this program, this system.
    [[nodiscard]] static UpdateEnvironment current();
};

} // namespace brimvale
