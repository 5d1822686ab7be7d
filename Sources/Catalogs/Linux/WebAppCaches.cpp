// Caches of applications that are made of web pages, and of code editors.

#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/Folder.h"

#include <algorithm>

namespace brimvale::linuxCatalog {

namespace {

/// What such an application makes again. Not "Local Storage", "IndexedDB", "User", "Partitions",
/// "Session Storage" and "Backups": these are the user's.
const std::vector<std::string> webCacheNames = {"Cache",
                                                "Code Cache",
                                                "GPUCache",
                                                "DawnCache",
                                                "DawnGraphiteCache",
                                                "DawnWebGPUCache",
                                                "CachedData",
                                                "CachedExtensionVSIXs",
                                                "CachedProfilesData",
                                                "CachedConfigurations",
                                                "blob_storage",
                                                "Crashpad",
                                                "logs"};
const std::vector<std::string> workerCacheNames = {"CacheStorage", "ScriptCache"};

/// Web browsers have their caches elsewhere; their settings are left alone.
bool isOfBrowser(const std::string &name) {
    constexpr const char *browsers[] = {"google-chrome*",  "chromium", "BraveSoftware",
                                        "microsoft-edge*", "vivaldi*", "opera*"};
    return std::any_of(std::begin(browsers), std::end(browsers),
                       [&](const char *pattern) { return fitsPattern(name, pattern); });
}

bool isWebApp(const std::string &folder) {
    return fileStatus(joinPath(folder, "Local State")) || fileStatus(joinPath(folder, "Code Cache"));
}

std::string inLowerCase(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char byte) {
        return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
    });
    return name;
}

void addNamed(CleanupSearch &search, const std::string &folder, const std::vector<std::string> &names,
              const std::string &app, const std::shared_ptr<const ProgramSigns> &program) {
    const auto rule = std::make_shared<const CleanupRule>(CleanupRule{.folder = folder, .takes = names});
    for (const std::string &name : names)
        if (const std::string path = joinPath(folder, name); fileStatus(path))
            search.add(path, {.name = app + ": " + name, .program = program, .rule = rule});
}

void addWebApp(CleanupSearch &search, const std::string &folder) {
    const std::string app(FileURL(folder).fileName());
    const auto program = search.signsOf(
        {.name = app, .processes = {app, inLowerCase(app)}, .locks = {joinPath(folder, "SingletonLock")}});
    addNamed(search, folder, webCacheNames, app, program);
    addNamed(search, joinPath(folder, "Service Worker"), workerCacheNames, app, program);
}

/// The applications with settings in a folder: each has its own in it, or one level deeper, in that of its
/// maker.
void addWebAppsIn(CleanupSearch &search, const std::string &settings) {
    for (const std::string &name : namesIn(settings).value_or(std::vector<std::string>())) {
        const std::string folder = joinPath(settings, name);
        const std::optional<FileStatus> status = fileStatus(folder);
        if (isOfBrowser(name) || !status || status->kind != FileKind::directory)
            continue;
        if (isWebApp(folder)) {
            addWebApp(search, folder);
            continue;
        }
        for (const std::string &inside : namesIn(folder).value_or(std::vector<std::string>()))
            if (const std::string deeper = joinPath(folder, inside); isWebApp(deeper))
                addWebApp(search, deeper);
    }
}

/// The index of one version of an editor; beside it is the history of the user's files.
void addEditor(CleanupSearch &search, const std::string &folder) {
    const std::string version(FileURL(folder).fileName());
    const auto rule = std::make_shared<const CleanupRule>(
        CleanupRule{.folder = folder, .leaves = {"LocalHistory", ".pid", ".port", "port", ".lock"}});
    const auto program =
        search.signsOf({.name = version,
                        .processes = {"idea", "pycharm", "clion", "webstorm", "phpstorm", "goland", "rider",
                                      "rubymine", "datagrip", "rustrover", "studio"}});
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
        if (allowsName(*rule, name))
            search.add(joinPath(folder, name),
                       {.name = version + ": " + name, .program = program, .rule = rule});
}

} // namespace

void findWebAppCaches(CleanupSearch &search) {
    for (const char *settings : {"$CONFIG", "~/.var/app/*/config"})
        for (const std::string &folder : search.places().pathsOf(settings))
            addWebAppsIn(search, folder);
    for (const std::string &folder :
         search.find({"$CACHE/JetBrains/*", "~/.var/app/*/cache/JetBrains/*", "$CACHE/Google/*"})) {
        const FileURL url(folder);
        const bool isOfGoogle = url.parent().fileName() == "Google";
        const std::optional<FileStatus> status = fileStatus(folder);
        if (status && status->kind == FileKind::directory &&
            (!isOfGoogle || url.fileName().starts_with("AndroidStudio")))
            addEditor(search, folder);
    }
}

} // namespace brimvale::linuxCatalog
