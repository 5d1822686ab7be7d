#include "Core/Duplicates/SpaceSharing.h"

#include "Base/Bytes.h"
#include "Base/ErrorReason.h"
#include "Base/Text.h"
#include "Platform/SharedSpace.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

std::string reasonOf(const SharingFailure &failure, const FileURL &file) {
    const std::string name = "“" + displayText(file.fileName()) + "”";
    if (!failure.error)
        return name + " is not equal to the file that it should share its space with.";
    if (*failure.error == EOPNOTSUPP || *failure.error == EINVAL || *failure.error == ENOTTY)
        return "The file system can’t let " + name + " share its space.";
    return name + " can’t share its space, because " + reasonOfError(*failure.error) + ".";
}

/// Shares the space of one group.
class GroupSharing {
public:
    GroupSharing(SpaceSharing &done, const StopFlag &stopped) : done_(done), stopped_(stopped) {}

    /// Lets the file share the space of an earlier one on the same file system; the first one there only
    /// lends its own.
    void add(const DuplicateFile &file) {
        SteadyFile opened(file.url.path());
        if (!opened.isOpen() || opened.record() != file.record)
            return fail(file, "“" + displayText(file.url.fileName()) +
                                  "” has changed since it was compared. Search again.");
        for (const SteadyFile &original : originals_) {
            const auto result = shareBytes(original, opened, stopped_);
            if (const auto *bytes = std::get_if<std::int64_t>(&result))
                return count(*bytes, file);
            const auto &failure = std::get<SharingFailure>(result);
            if (failure.error != EXDEV)
                return fail(file, reasonOf(failure, file.url));
        }
        originals_.push_back(std::move(opened));
    }

private:
    void count(std::int64_t bytes, const DuplicateFile &file) {
        if (bytes < file.record.length)
            return; // it was stopped
        done_.shared.push_back(file.url);
        done_.bytes = checkedAdd(done_.bytes, file.size);
    }
    void fail(const DuplicateFile &file, std::string reason) {
        done_.failed.push_back({file.url, std::move(reason)});
    }

    SpaceSharing &done_;
    const StopFlag &stopped_;
    std::vector<SteadyFile> originals_; ///< one for each file system
};

} // namespace

std::vector<const DuplicateFile *> filesToShare(const DuplicateGroup &group) {
    std::vector<const DuplicateFile *> files;
    for (const DuplicateFile &file : group.files)
        if (file.mayShare)
            files.push_back(&file);
    std::stable_partition(files.begin(), files.end(), [](const DuplicateFile *file) { return file->lends; });
    if (files.size() < 2)
        files.clear();
    return files;
}

SharingFigures sharingIn(const std::vector<DuplicateGroup> &groups) {
    SharingFigures figures;
    for (const DuplicateGroup &group : groups) {
        const std::vector<const DuplicateFile *> files = filesToShare(group);
        for (std::size_t i = 1; i < files.size(); ++i) {
            ++figures.files;
            figures.bytes = checkedAdd(figures.bytes, files[i]->size);
        }
    }
    return figures;
}

SpaceSharing shareSpace(const std::vector<DuplicateGroup> &groups, const StopFlag &stopped,
                        const std::function<void()> &step) {
    SpaceSharing done;
    for (const DuplicateGroup &group : groups) {
        GroupSharing sharing(done, stopped);
        for (const DuplicateFile *file : filesToShare(group)) {
            done.wasStopped = stopped.isSet();
            if (done.wasStopped)
                return done;
            sharing.add(*file);
            if (step)
                step();
        }
    }
    done.wasStopped = stopped.isSet();
    return done;
}

} // namespace brimvale
