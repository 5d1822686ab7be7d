#include "Core/Storage/HiddenSpace.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/Confinement.h"
#include "Platform/Host.h"

#include <cstddef>

namespace brimvale {

namespace {

/// Less does not explain anything, and a busy system has many such files.
constexpr std::int64_t smallestHolder = 1'000'000;

constexpr std::size_t mostHolders = 5; // to name

void addHolders(std::vector<std::string> &sentences, const DeletedFiles &deleted) {
    for (const DeletedFiles::Holder &holder : deleted.holders)
        if (holder.bytes >= smallestHolder && sentences.size() < mostHolders)
            sentences.push_back(displayText(holder.program) + " still uses " +
                                Fmt::byteFormatter(holder.bytes) +
                                " of deleted files. Close it to free the space.");
    if (deleted.unknownPrograms > 0)
        sentences.push_back(Fmt::counted(deleted.unknownPrograms, "program") +
                            (deleted.unknownPrograms == 1 ? " of another user" : " of other users") +
                            " may still use deleted files, which only an administrator can see.");
}

std::string snapshotsSentence(const std::vector<LocalSnapshot> &snapshots) {
    std::int64_t known = 0;
    for (const LocalSnapshot &one : snapshots)
        known = checkedAdd(known, one.exclusiveBytes.value_or(0));
    return Fmt::counted(static_cast<std::int64_t>(snapshots.size()), "snapshot") +
           (snapshots.size() == 1 ? " keeps" : " keep") + " older versions of files. " +
           (known > 0
                ? "Deleting what the Overview page lists frees at least " + Fmt::byteFormatter(known) + "."
                : "How much space that takes is unknown.");
}

} // namespace

bool explainsHiddenSpace() {
    return Host::currentSystem() == System::linux;
}

HiddenSpace HiddenSpace::on(const FileURL &volume) {
    // The programs of this machine do not run on a disk in a folder.
    const bool isKnown = explainsHiddenSpace() && !confinement();
    return isKnown ? HiddenSpace{deletedFilesOn(volume.path())} : HiddenSpace{};
}

std::vector<std::string> hiddenSpaceSentences(const HiddenSpace &hidden,
                                              const std::optional<VolumeInfo> &root,
                                              const std::vector<LocalSnapshot> &snapshots,
                                              std::size_t incompletePlaces) {
    std::vector<std::string> sentences;
    if (!explainsHiddenSpace())
        return sentences;
    addHolders(sentences, hidden.deletedFiles);
    if (!snapshots.empty())
        sentences.push_back(snapshotsSentence(snapshots));
    if (root && root->reserved > 0)
        sentences.push_back(Fmt::byteFormatter(root->reserved) +
                            " are reserved for the administrator and the file system. They are neither free "
                            "nor a part of System Data.");
    if (incompletePlaces > 0)
        sentences.push_back(Fmt::counted(static_cast<std::int64_t>(incompletePlaces), "place") +
                            (incompletePlaces == 1 ? " has" : " have") +
                            " folders that only an administrator may read. Their contents count as System "
                            "Data, and are not listed.");
    return sentences;
}

} // namespace brimvale
