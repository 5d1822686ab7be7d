#include "Core/Removal/RemovalActions.h"

#include "Platform/FileRemoval.h"
#include "Platform/FileSystem.h"
#include "Platform/Host.h"

namespace brimvale {

namespace {

class PlatformActions final : public RemovalActions {
public:
    std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override {
        return brimvale::removeItem(item, progress);
    }
    Result<TrashedItem> moveToTrash(const OpenedItem &item) override { return brimvale::moveToTrash(item); }
    RemovalObstacle obstacle(const FileURL &url) override { return removalObstacle(url); }
    Result<KeptReasons, PrivilegedRunError>
    removeAsAdministrator(const std::vector<ItemPin> &items) override {
        return brimvale::removeAsAdministrator(items, platformTools());
    }
    std::size_t longestPrivilegedRemoval() override { return brimvale::longestPrivilegedRemoval(); }
    std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command) override {
        return brimvale::runAsAdministrator(command, platformTools());
    }
    Result<ProcessResult, PrivilegedRunError>
    runProgramAsAdministrator(const std::vector<std::string> &words) override {
        return brimvale::runProgramAsAdministrator(words, platformTools());
    }
    std::optional<std::int64_t> freeSpace(const FileURL &folder) override {
        return brimvale::freeSpace(folder.path());
    }
    bool awaitFreeSpace(const FileURL &folder) override { return brimvale::awaitFreeSpace(folder.path()); }
    void settle(const FileURL &folder) override { syncFileSystem(folder.path()); }
};

} // namespace

RemovalActions &RemovalActions::platform() {
    static PlatformActions actions;
    return actions;
}

} // namespace brimvale
