#include "Core/Scan/DiskScanner.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Catalogs/Words.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Core/Scan/SumLimit.h"
#include "Core/Scan/Summing.h"
#include "Core/Scan/TreeBuilder.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

/// A cancelled scan reads only so many more names in its root, to find the skipped folders there.
constexpr int namesAfterCancelling = 1024;

void setFigures(FSNode &node, const FileStatus &status, ScanState &state) {
    if (!state.sums.admits(status)) {
        node.unreadable = true;
        state.stats.addUnreadable(node.path(), UnreadableItem::claimsTooMuch);
        return;
    }
    node.size = status.allocatedBytes;
    node.logicalSize = status.length;
    node.fileCount = 1;
    node.modified = FSNode::secondsOf(status.modified);
}

/// An entry directly in the scan root that is skipped for its path; null for any other. Of its status only
/// its identity is read, if any.
std::unique_ptr<FSNode> skippedNode(FSNode &root, const Folder &folder, const std::string &path,
                                    const char *name, const ScanState &state) {
    const std::optional<SkipReason> unseen = state.skipped.unseen(joinPath(path, name));
    if (!unseen && !state.skipped.contains(path, name))
        return nullptr;
    auto node = std::make_unique<FSNode>(name, root, true);
    if (unseen) {
        node->markSkipped(false, *unseen);
        return node;
    }
    if (const std::optional<FileStatus> status = folder.statusOfEntry(name))
        node->setIdentity(status->identity);
    node->markSkipped(state.options.cloudProviderPaths.contains(joinPath(path, name)));
    return node;
}

/// A file directly in the scan root always gets a node, and counts under each of its names.
std::unique_ptr<FSNode> fileNode(FSNode &root, const char *name, const FileStatus &status, ScanState &state) {
    auto node = std::make_unique<FSNode>(name, root, false);
    node->setIdentity(status.identity);
    setFigures(*node, status, state);
    root.size = checkedAdd(root.size, node->size);
    root.logicalSize = checkedAdd(root.logicalSize, node->logicalSize);
    root.fileCount = checkedAdd(root.fileCount, node->fileCount);
    root.modified = std::max(root.modified, node->modified);
    state.stats.add(node->fileCount, node->size);
    state.stats.growing().addFile(name, node->fileCount, node->size);
    return node;
}

/// Makes the nodes of everything directly in the scan root, skipped ones first, and returns the folders among
/// them for the walk. Each folder sets the device that its own walk stays on.
PendingFolders listRoot(FSNode &root, Folder folder, const std::string &path, ScanState &state) {
    PendingFolders pending(std::move(folder), path);
    std::vector<std::unique_ptr<FSNode>> nodes;
    int namesLeft = namesAfterCancelling;
    const std::uint64_t device = pending.folder().identity().value_or(FileIdentity()).device;
    while (const char *name = pending.folder().nextName()) {
        if (std::unique_ptr<FSNode> skipped = skippedNode(root, pending.folder(), path, name, state)) {
            root.adopt(std::move(skipped));
            continue;
        }
        if (state.stats.cancelled()) {
            if (--namesLeft < 0)
                break;
            continue;
        }
        const std::optional<FileStatus> status = pending.folder().statusOfEntry(name);
        if (!status)
            continue;
        if (status->kind != FileKind::directory) {
            nodes.push_back(fileNode(root, name, *status, state));
            continue;
        }
        nodes.push_back(std::make_unique<FSNode>(name, root, true));
        nodes.back()->setIdentity(status->identity);
        if (status->isDataless)
            nodes.back()->markSkipped(true);
        else if (status->identity.device != device &&
                 kindOnOtherDevice(pending.folder(), name) == SubfolderKind::snapshot)
            nodes.back()->markSkipped(false, SkipReason::snapshot);
        else {
            pending.add(name, nodes.back().get(), status->identity);
            state.stats.growing().addFolder(name, nodes.back().get());
        }
    }
    root.adopt(nodes);
    return pending;
}

} // namespace

std::unique_ptr<FSNode> DiskScanner::scan(const std::string &root, const ScanOptions &options,
                                          ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    const std::string path = usualPath(FileURL(root)).path();
    auto node = std::make_unique<FSNode>(displayName(path), path, true);
    ScanState state(options, stats);
    Folder folder = Folder::at(path, Folder::Links::follow);
    if (!folder.isOpen()) {
        const int error = errno;
        const std::optional<FileStatus> status = fileStatus(path);
        // A folder that cannot be listed and a link that leads nowhere stay empty.
        if (status && (error == ENOTDIR || status->kind == FileKind::regularFile))
            setFigures(*node, *status, state);
        if (status && status->isDataless && status->kind == FileKind::directory)
            node->markSkipped(true);
        return node;
    }

    if (const std::optional<FileIdentity> identity = folder.identity())
        node->setIdentity(*identity);
    pool.walk(listRoot(*node, std::move(folder), path, state), options.crossesMountPoints, stats.stopFlag(),
              [&] { return std::make_unique<TreeBuilder>(state); });
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
    const std::string standardised = usualPath(FileURL(path)).path();
    const SkipList skipped(options);
    if (skipped.contains(standardised) || status->isDataless)
        return 0;

    Sums sums(skipped, nullptr);
    pool.walk(PendingFolders(placeOfWalk(path), nullptr, status->identity), false, cancelled,
              [&] { return std::make_unique<Summing>(sums); });
    return sums.bytes.value();
}

DiskScanner::QuickFigures DiskScanner::quickFigures(const std::string &path, const ScanOptions &options,
                                                    const StopFlag &cancelled, WalkPool &pool) {
    const NoMaterialization guard;
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status)
        return {};
    if (status->kind != FileKind::directory)
        return {.bytes = status->allocatedBytes,
                .freedBytes = hasOtherNames(*status) ? 0 : status->allocatedBytes,
                .entries = 1};
    const std::string standardised = usualPath(FileURL(path)).path();
    const SkipList skipped(options);
    if (skipped.contains(standardised) || status->isDataless)
        return {.entries = 1};

    LinkedFiles linked;
    Sums sums(skipped, &linked);
    pool.walk(PendingFolders(placeOfWalk(path), nullptr, status->identity), false, cancelled,
              [&] { return std::make_unique<Summing>(sums); });
    return {.bytes = sums.bytes.value(),
            .freedBytes = sums.bytes.value() - linked.bytesNotFreed(),
            .entries = checkedAdd(sums.entries.value(), 1),
            .unreadable = sums.unreadable.value()};
}

std::unique_ptr<FSNode> DiskScanner::scanInside(const std::string &path, const ScanOptions &options,
                                                ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status || status->kind != FileKind::directory)
        return nullptr;
    const FileURL url(path);
    FSNode parent("", url.parent().path(), true);
    parent.adopt(std::make_unique<FSNode>(url.fileName(), parent, true));
    FSNode &folder = *parent.children().front();
    folder.setIdentity(status->identity);
    if (status->isDataless) {
        folder.markSkipped(true);
    } else {
        ScanState state(options, stats);
        pool.walk(PendingFolders(path, &folder, status->identity), options.crossesMountPoints,
                  stats.stopFlag(), [&] { return std::make_unique<TreeBuilder>(state); });
        rollUp(parent, state);
    }
    return parent.release(folder);
}

std::string DiskScanner::displayName(const std::string &path) {
    return path == "/" ? Words::current().rootName : std::string(FileURL(path).fileName());
}

} // namespace brimvale
