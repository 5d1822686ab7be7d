#include "Core/Removal/RemovalActions.h"

#include "Platform/FileRemoval.h"
#include "Platform/Host.h"
#include "Platform/Trash.h"

namespace brimvale {

namespace {

class PlatformActions final : public RemovalActions {
public:
    std::optional<FileError> removeItem(const FileURL &url, RemovalProgress *progress) override {
        return brimvale::removeItem(url, progress);
    }
    RemovalObstacle obstacle(const FileURL &url) override { return removalObstacle(url); }
    std::optional<FileError> moveToTrash(const FileURL &url) override { return brimvale::moveToTrash(url); }
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
