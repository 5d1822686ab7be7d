#include "Core/Apps/RunningApp.h"

#include "Core/Apps/Linux/AppProcesses.h"
#include "Platform/RunningApps.h"

#include <optional>

namespace brimvale {

namespace {

bool isRunningBundle(const InstalledApp &app) {
    return app.bundleID && !app.bundleID->empty() && isApplicationRunning(*app.bundleID);
}

} // namespace

bool isRunning(const InstalledApp &app, const Host &host) {
    return areRunning({app}, host).front();
}

std::vector<bool> areRunning(const std::vector<InstalledApp> &apps, const Host &host) {
    std::optional<linuxApps::AppProcesses> processes; // read once, and only where they are needed
    std::vector<bool> answers;
    for (const InstalledApp &app : apps) {
        if (app.kind == AppKind::bundle) {
            answers.push_back(isRunningBundle(app));
            continue;
        }
        if (!processes)
            processes.emplace(host.placeOf("/proc"));
        answers.push_back(processes->haveOneOf(app));
    }
    return answers;
}

} // namespace brimvale
