#include "Core/Scan/DiskScanner.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Catalogs/Words.h"
#include "Core/Scan/Counter.h"
#include "Core/Scan/InodeSet.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Core/Scan/TreeBuilder.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"
#include "Platform/Folder.h"

#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

std::vector<std::string> namesIn(Folder &folder) {
    std::vector<std::string> names;
    while (const char *name = folder.nextName())
        names.emplace_back(name);
    return names;
}

void setFigures(FSNode &node, const FileStatus &status) {
    node.size = status.allocatedBytes;
    node.logicalSize = status.length;
    node.fileCount = 1;
}

/// Adds the skipped entries directly in the scan root.
void addSkipped(FSNode &root, const std::vector<std::string> &names, const std::string &path,
                const ScanState &state) {
    for (const std::string &name : names) {
        if (!state.skipped.contains(path, name))
            continue;
        auto node = std::make_unique<FSNode>(name, root, true);
        node->isNotDescended = true;
        node->isCloudProvider = state.options.cloudProviderPaths.contains(joinPath(path, name));
        root.adopt(std::move(node));
    }
}

/// A file directly in the scan root always gets a node, and counts under each of its names.
void addFile(FSNode &root, FSNode &node, const FileStatus &status, ScanStats &stats) {
    setFigures(node, status);
    root.size = checkedAdd(root.size, node.size);
    root.logicalSize = checkedAdd(root.logicalSize, node.logicalSize);
    root.fileCount = checkedAdd(root.fileCount, 1);
    stats.add(1, node.size);
}

/// Adds the other entries directly in the scan root, and returns the folders among them for the walk. Each
/// folder sets the device that its own walk stays on.
PendingFolders addEntries(FSNode &root, Folder folder, const std::vector<std::string> &names,
                          const std::string &path, ScanState &state) {
    std::vector<std::unique_ptr<FSNode>> nodes;
    std::vector<std::pair<FSNode *, FileIdentity>> folders;
    for (const std::string &name : names) {
        if (state.stats.cancelled())
            break;
        if (state.skipped.contains(path, name))
            continue;
        const std::optional<FileStatus> status = folder.statusOfEntry(name.c_str());
        if (!status)
            continue;
        const bool isDirectory = status->kind == FileKind::directory;
        nodes.push_back(std::make_unique<FSNode>(name, root, isDirectory));
        if (!isDirectory)
            addFile(root, *nodes.back(), *status, state.stats);
        else if (!status->isDataless)
            folders.emplace_back(nodes.back().get(), status->identity);
    }
    root.adopt(nodes);

    PendingFolders pending(std::move(folder), path);
    for (const auto &[node, identity] : folders)
        pending.add(node->name, node, identity);
    return pending;
}

/// Sums up one walk.
class Summing final : public WalkVisitor {
public:
    Summing(const SkipList &skipped, Counter &total) : skipped_(skipped), total_(total) {}
    ~Summing() override { total_.add(bytes_); }

    void enter(FolderHandle, const std::string &, int) override {}
    void file(FolderHandle, std::string_view, const FileStatus &status) override {
        bytes_ = checkedAdd(bytes_, status.allocatedBytes);
    }
    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath, std::string_view name,
                                          bool) override {
        return skipped_.contains(folderPath, name) ? std::nullopt : std::optional<FolderHandle>(nullptr);
    }
    void noStatus(FolderHandle) override {}
    void unreadable(FolderHandle) override {}
    void leave(FolderHandle) override {}
    void interrupted(FolderHandle) override {}
    void abandoned(FolderHandle) override {}

private:
    const SkipList &skipped_;
    Counter &total_;
    std::int64_t bytes_ = 0;
};

} // namespace

std::unique_ptr<FSNode> DiskScanner::scan(const std::string &root, const ScanOptions &options,
                                          ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    const std::string path = FileURL(root).standardized().path();
    auto node = std::make_unique<FSNode>(displayName(path), path, true);
    Folder folder = Folder::at(path, Folder::Links::follow);
    if (!folder.isOpen()) {
        const int error = errno;
        const std::optional<FileStatus> status = fileStatus(path);
        // A folder that cannot be listed and a link that leads nowhere stay empty.
        if (status && (error == ENOTDIR || status->kind == FileKind::regularFile))
            setFigures(*node, *status);
        return node;
    }

    ScanState state(options, stats);
    const std::vector<std::string> names = namesIn(folder);
    addSkipped(*node, names, path, state);
    pool.walk(addEntries(*node, std::move(folder), names, path, state), options.crossesMountPoints,
              stats.stopFlag(), [&] { return std::make_unique<TreeBuilder>(state); });
    rollUp(*node, state);
    return node;
}

std::int64_t DiskScanner::quickSize(const std::string &path, const ScanOptions &options,
                                    const StopFlag &cancelled, WalkPool &pool) {
    const NoMaterialization guard;
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status)
        return 0;
    if (status->kind != FileKind::directory)
        return status->allocatedBytes;
    const std::string standardised = FileURL(path).standardized().path();
    const SkipList skipped(options.skippedPaths);
    if (skipped.contains(standardised) || status->isDataless)
        return 0;

    Counter total;
    pool.walk(PendingFolders(placeOfWalk(path), nullptr, status->identity), false, cancelled,
              [&] { return std::make_unique<Summing>(skipped, total); });
    return total.value();
}

std::string DiskScanner::displayName(const std::string &path) {
    return path == "/" ? Words::current().rootName : std::string(FileURL(path).fileName());
}

} // namespace brimvale
