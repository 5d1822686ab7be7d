#include "Core/Removal/RemovalActions.h"

#include "Core/Removal/ConfinedActions.h"
#include "Platform/Confinement.h"
#include "Platform/FileRemoval.h"
#include "Platform/FileSystem.h"
#include "Platform/Host.h"
#include "Platform/TrashContents.h"

namespace brimvale {

namespace {

/// More than a package manager has to say.
constexpr std::size_t mostPrintedBytes = 8 << 20;

class PlatformActions final : public RemovalActions {
public:
    std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override {
        std::optional<FileError> error = brimvale::removeItem(item, progress);
        if (!error)
            brimvale::forgetTrashed(item.place());
        return error;
    }
    Result<TrashedItem> moveToTrash(const OpenedItem &item) override { return brimvale::moveToTrash(item); }
    RemovalObstacle obstacle(const FileURL &url) override { return removalObstacle(url); }
    Result<KeptReasons, PrivilegedRunError>
    removeAsAdministrator(const std::vector<ItemPin> &items) override {
        auto outcome = brimvale::removeAsAdministrator(items, platformTools());
        for (const ItemPin &item : items)
            brimvale::forgetTrashed(item.place);
        return outcome;
    }
    std::size_t longestPrivilegedRemoval() override { return brimvale::longestPrivilegedRemoval(); }
    std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command) override {
        return brimvale::runAsAdministrator(command, platformTools());
    }
    Result<ProcessResult, PrivilegedRunError>
    runProgramAsAdministrator(const std::vector<std::string> &words) override {
        return brimvale::runProgramAsAdministrator(words, platformTools());
    }
    std::optional<ProcessResult> runPackageManager(const std::string &program,
                                                   const std::vector<std::string> &arguments,
                                                   const std::function<bool()> &isStopped) override {
        return runProcessWithTerminal(program, arguments, isStopped, mostPrintedBytes);
    }
    void forgetTrashed(const FileURL &item) override { brimvale::forgetTrashed(item); }
    std::optional<std::int64_t> freeSpace(const FileURL &folder) override {
        return brimvale::freeSpace(folder.path());
    }
    bool awaitFreeSpace(const FileURL &folder) override { return brimvale::awaitFreeSpace(folder.path()); }
    void settle(const FileURL &folder) override { syncFileSystem(folder.path()); }
};

} // namespace

RemovalActions &RemovalActions::platform() {
    static PlatformActions actions;
    static ConfinedActions confined(actions);
    if (confinement())
        return confined;
    return actions;
}

} // namespace brimvale
