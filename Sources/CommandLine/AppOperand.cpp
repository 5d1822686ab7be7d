#include "CommandLine/AppOperand.h"

#include "Catalogs/Catalog.h"
#include "CommandLine/GivenPath.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Apps/AppInventory.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

/// The application at a path as typed; nothing if there is none.
std::optional<InstalledApp> appAt(std::string_view typed) {
    const auto place = resolveGivenPath(typed);
    if (!std::holds_alternative<FileURL>(place))
        return std::nullopt;
    const std::string path = std::get<FileURL>(place).standardized().path();
    const Host host = Host::current();
    for (InstalledApp &app : AppInventory::scan(true, host))
        if (app.kind != AppKind::bundle && app.url.path() == path)
            return std::move(app);
    return AppInventory::describe(path, catalogOf(host.system).appRoots(host).isSystem(path));
}

/// Whether an application has this identifier, or is of this package.
bool isIdentifiedBy(const InstalledApp &app, std::string_view identifier) {
    const std::vector<std::string> &all = app.names.identifiers;
    return app.bundleID == identifier || (app.kind == AppKind::package && app.origin == identifier) ||
           std::find(all.begin(), all.end(), identifier) != all.end();
}

std::vector<InstalledApp> appsIdentifiedBy(std::string_view identifier) {
    std::vector<InstalledApp> apps = AppInventory::scan(true);
    std::erase_if(apps, [&](const InstalledApp &app) { return !isIdentifiedBy(app, identifier); });
    return apps;
}

} // namespace

std::optional<InstalledApp> appMeantBy(std::string_view typed) {
    if (typed.find('/') == std::string_view::npos) {
        const std::vector<InstalledApp> apps = appsIdentifiedBy(typed);
        if (apps.size() == 1)
            return apps.front();
        if (apps.size() > 1) {
            std::string paths;
            for (const InstalledApp &app : apps)
                paths.append(paths.empty() ? "" : ", ").append(inQuotes(app.url.path()));
            printError("several apps are identified by " + inQuotes(typed) +
                       "; give the path of one: " + paths);
            return std::nullopt;
        }
    }
    std::optional<InstalledApp> app = appAt(typed);
    if (!app)
        printError(inQuotes(typed) + " is neither an app nor the identifier of one");
    return app;
}

} // namespace brimvale::commandLine
