#include "Core/DiskScanner.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Core/TreeBuilder.h"
#include "Platform/DirectoryWalk.h"
#include "Platform/Folder.h"

#include <atomic>
#include <filesystem>
#include <system_error>
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

/// A scan root that is no folder: its own figures, as far as they can be had.
void measureFile(FSNode &root, const std::string &path) {
    if (const std::optional<FileStatus> status = fileStatus(path)) {
        root.size = status->allocatedBytes;
        root.logicalSize = status->length;
        root.fileCount = 1;
    }
}

/// The entries right in the scan root: the skipped ones, unseen, then the others. Answers the folders among
/// those, to be walked; each founds the device that its own walk stays on.
PendingFolders addTopLevel(FSNode &root, Folder folder, const std::string &path, ScanState &state) {
    const std::vector<std::string> names = namesIn(folder);
    for (const std::string &name : names) {
        const std::string entryPath = joinPath(path, name);
        if (!state.skipped.contains(entryPath))
            continue;
        auto node = std::make_unique<FSNode>(name, root, true);
        node->isNotDescended = true;
        node->isCloudProvider = state.options.cloudProviderPaths.contains(entryPath);
        root.adopt(std::move(node));
    }

    Folder entries = std::move(folder);
    std::vector<std::pair<FSNode *, FileIdentity>> found;
    std::vector<std::unique_ptr<FSNode>> nodes;
    for (const std::string &name : names) {
        if (state.stats.cancelled())
            break;
        if (state.skipped.contains(path, name))
            continue;
        const std::optional<FileStatus> status = entries.statusOfEntry(name.c_str());
        if (!status)
            continue;
        const bool isDirectory = status->kind == FileKind::directory;
        nodes.push_back(std::make_unique<FSNode>(name, root, isDirectory));
        if (isDirectory) {
            if (!status->isDataless)
                found.emplace_back(nodes.back().get(), status->identity);
            continue;
        }
        FSNode &node = *nodes.back();
        node.size = status->allocatedBytes;
        node.logicalSize = status->length;
        node.fileCount = 1;
        root.size = checkedAdd(root.size, node.size);
        root.logicalSize = checkedAdd(root.logicalSize, node.logicalSize);
        root.fileCount = checkedAdd(root.fileCount, 1);
        state.stats.add(1, node.size);
    }
    root.adopt(nodes);

    PendingFolders pending(std::move(entries), path);
    for (const auto &[node, identity] : found)
        pending.add(node->name, node, identity);
    return pending;
}

/// Adds up what one walk meets.
class Summing final : public WalkVisitor {
public:
    Summing(const SkipList &skipped, const std::function<bool()> &cancelled, Counter &total)
        : skipped_(skipped), cancelled_(cancelled), total_(total) {}
    ~Summing() override { total_.add(bytes_); }

    bool isCancelled() override { return cancelled_(); }
    void enter(FolderHandle, const std::string &, int) override {}
    void file(FolderHandle, std::string_view, const FileStatus &status) override {
        bytes_ = checkedAdd(bytes_, status.allocatedBytes);
    }
    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath,
                                          std::string_view name) override {
        return skipped_.contains(folderPath, name) ? std::nullopt : std::optional<FolderHandle>(nullptr);
    }
    void noStatus(FolderHandle) override {}
    void unreadable(FolderHandle) override {}
    void leave(FolderHandle) override {}
    void interrupted(FolderHandle) override {}
    void abandoned(FolderHandle) override {}

private:
    const SkipList &skipped_;
    const std::function<bool()> &cancelled_;
    Counter &total_;
    std::int64_t bytes_ = 0;
};

} // namespace

std::unique_ptr<FSNode> DiskScanner::scan(const std::string &root, const ScanOptions &options,
                                          ScanStats &stats, WalkPool &pool) {
    const std::string path = FileURL(root).standardized().path();
    auto node = std::make_unique<FSNode>(displayName(path), path, true);
    std::error_code error;
    const std::filesystem::file_status kind = std::filesystem::status(path, error);
    if (!std::filesystem::exists(kind) && kind.type() != std::filesystem::file_type::none)
        return node;
    if (!std::filesystem::is_directory(kind)) {
        measureFile(*node, path);
        return node;
    }

    ScanState state(options, stats);
    Folder folder = Folder::at(path, Folder::Links::follow);
    if (folder.isOpen()) {
        PendingFolders pending = addTopLevel(*node, std::move(folder), path, state);
        pool.walk(std::move(pending), options.crossesMountPoints,
                  [&] { return std::make_unique<TreeBuilder>(state); });
        rollUp(*node, state);
    }
    return node;
}

std::int64_t DiskScanner::quickSize(const std::string &path, const ScanOptions &options,
                                    const std::function<bool()> &cancelled, WalkPool &pool) {
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
    pool.walk(PendingFolders(standardised, nullptr, status->identity), false,
              [&] { return std::make_unique<Summing>(skipped, cancelled, total); });
    return total.value();
}

std::string DiskScanner::displayName(const std::string &path) {
    return path == "/" ? "Macintosh HD" : std::string(FileURL(path).lastPathComponent());
}

} // namespace brimvale
