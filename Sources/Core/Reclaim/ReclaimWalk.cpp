#include "Core/Reclaim/ReclaimWalk.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Core/Scan/Summing.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brimvale {

ReclaimWalk::~ReclaimWalk() {
    run_.add(ownBytes_, files_, unreadable_);
}

void ReclaimWalk::enter(FolderHandle, const std::string &path, int) {
    path_ = path;
    folder_ = Folder();
    isOpened_ = false;
    isInLayer_ = isInLayer(path);
}

bool ReclaimWalk::isInLayer(std::string_view path) const {
    if (run_.used.layers.empty())
        return false;
    for (; !path.empty(); path = path.substr(0, path.rfind('/')))
        if (run_.used.layers.contains(std::string(path)))
            return true;
    return run_.used.layers.contains("/");
}

/// Whether something may have a file open that is not known to have it.
bool ReclaimWalk::mayBeOpen(const FileStatus &status) const {
    return isInLayer_ || (run_.used.unknownPrograms > 0 && status.owner != run_.used.user);
}

bool ReclaimWalk::leavesUnseen(FolderHandle, const std::string &folderPath, std::string_view name) {
    const bool isUnseen = run_.skipped.unseen(joinPath(folderPath, name)).has_value();
    unreadable_ += isUnseen ? 1 : 0;
    return isUnseen;
}

std::optional<FolderHandle> ReclaimWalk::subfolder(FolderHandle, const std::string &folderPath,
                                                   std::string_view name, const FileIdentity &identity,
                                                   SubfolderKind kind) {
    const bool isEntered = kind == SubfolderKind::walkable && !run_.skipped.contains(folderPath, name) &&
                           run_.addFolder(identity);
    return isEntered ? std::optional<FolderHandle>(nullptr) : std::nullopt;
}

/// What another program has removed since its folder was read holds nothing any more.
void ReclaimWalk::noteUnreadable() {
    if (errno != ENOENT)
        ++unreadable_;
}

void ReclaimWalk::file(FolderHandle, std::string_view name, const FileStatus &status) {
    ++files_;
    run_.progress.files.fetch_add(1, std::memory_order_relaxed);
    if (!run_.limit.admits(status)) {
        ++unreadable_;
        return;
    }
    const bool isLinked = hasOtherNames(status);
    if (isLinked && !run_.addName(status))
        return;
    FileHoldings holdings = holdingsOf(std::string(name), status);
    if (isLinked)
        run_.setLinked(status.identity, std::move(holdings));
    else if (holdings.own == status.allocatedBytes && holdings.program == nullptr)
        ownBytes_ = checkedAdd(ownBytes_, holdings.own);
    else
        run_.add(holdings);
}

FileHoldings ReclaimWalk::holdingsOf(const std::string &name, const FileStatus &status) {
    FileHoldings file{.own = status.allocatedBytes};
    if (status.kind != FileKind::regularFile || status.isDataless || status.allocatedBytes == 0)
        return file;
    if (const auto used = run_.used.programs.find(status.identity); used != run_.used.programs.end())
        file.program = &used->second;
    const BlockSharing told = sharing(status.identity.device);
    if (told == BlockSharing::told)
        addShared(file, name, status.identity.device);
    else if (told == BlockSharing::untold)
        file.uncertain = std::exchange(file.own, 0);
    if (mayBeOpen(status))
        file.uncertain = checkedAdd(file.uncertain, std::exchange(file.own, 0));
    return file;
}

/// The folder is opened only where its files may share anything.
BlockSharing ReclaimWalk::sharing(std::uint64_t device) {
    const bool isKnown = device_ == device;
    if (isKnown && sharing_ == BlockSharing::never)
        return sharing_;
    if (!std::exchange(isOpened_, true))
        folder_ = Folder::at(path_, Folder::Links::refuse);
    if (!folder_.isOpen())
        return BlockSharing::untold;
    if (!isKnown)
        sharing_ = blockSharingIn(folder_);
    device_ = device;
    return sharing_;
}

/// Divides the bytes of a file into what it has alone and what others have, too.
void ReclaimWalk::addShared(FileHoldings &file, const std::string &name, std::uint64_t device) {
    const StopFlag &cancelled = run_.progress.cancelled;
    std::optional<SharedBlocks> blocks = sharedBlocksOf(folder_, name.c_str(), cancelled);
    if (!blocks) {
        file.uncertain = std::exchange(file.own, 0);
        return;
    }
    const std::int64_t shared = std::min(blocks->bytes, file.own);
    file.own -= shared;
    file.uncertain = std::min(blocks->packedBytes, file.own);
    file.own -= file.uncertain;
    if (blocks->places.empty()) {
        file.elsewhere = shared;
        return;
    }
    file.places = std::move(blocks->places);
    file.reach = blocks->reach;
    file.storage = run_.storage(device, path_);
    for (const ReclaimRun::Copy &copy : run_.copiesOf(device, path_)) {
        const Folder kept = Folder::at(copy.folder, Folder::Links::refuse);
        if (!kept.isOpen())
            continue;
        const std::optional<SharedBlocks> found = sharedBlocksOf(kept, name.c_str(), cancelled);
        if (!found)
            continue;
        const bool isWhole = areCovered(file.places, found->places);
        file.kept.emplace(copy.snapshot, found->places);
        if (isWhole)
            break;
    }
}

} // namespace brimvale
