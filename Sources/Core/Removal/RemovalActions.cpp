#include "Core/Removal/RemovalActions.h"

#include "Platform/FileRemoval.h"
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
};

} // namespace

RemovalActions &RemovalActions::platform() {
    static PlatformActions actions;
    return actions;
}

} // namespace brimvale
