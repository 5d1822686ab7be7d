#include "Core/Apps/RunningApp.h"

#include "Core/Apps/Linux/RunningPrograms.h"
#include "Platform/RunningApps.h"

namespace brimvale {

bool isRunning(const InstalledApp &app, const Host &host) {
    if (app.kind == AppKind::bundle)
        return app.bundleID && !app.bundleID->empty() && isApplicationRunning(*app.bundleID);
    return linuxApps::isRunningIn(host.placeOf("/proc"), app);
}

} // namespace brimvale
