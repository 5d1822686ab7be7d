#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Duplicates/DuplicateGroup.h"
#include "Core/Duplicates/SpaceSharing.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"

#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brimvale {

class Workers;
struct DuplicateProgress;

/// A file of a group that was found.
struct DuplicatePlace {
    std::size_t group = 0;
    std::size_t file = 0;
};

struct DuplicatesState {
    DuplicatesFound found;
    std::vector<std::size_t> staying;   ///< for each group, the file that stays
    std::optional<FileURL> folder = {}; ///< that is searched, or was searched last
    bool isSearching = false;
    bool isSharing = false;
    // Of a running search:
    std::int64_t filesSeen = 0;
    bool isReading = false; ///< the files are known, and their contents are compared
    std::int64_t bytesToRead = 0;
    std::int64_t bytesRead = 0;

    /// Whether the file can go.
    [[nodiscard]] bool mayGo(DuplicatePlace place) const {
        return found.groups[place.group].mayGo(place.file, staying[place.group]);
    }
    /// What removing all files that can go would free, in allocated bytes.
    [[nodiscard]] std::int64_t removableBytes() const;
};

/// The files with equal contents in one folder. Nothing is searched before the first `search`.
class Duplicates : public Part<DuplicatesState> {
    Q_OBJECT

public:
    /// The workers must outlive it.
    explicit Duplicates(Workers &workers);
    /// Stops the running work.
    ~Duplicates() override;

    /// Searches a folder in the background for equal files of at least `leastLength` bytes. What was found
    /// before is dropped. Does nothing while a search is running, or sharing.
    void search(const FileURL &folder, std::int64_t leastLength);

    /// Stops the running search or the sharing soon. What is complete stays.
    void stop();

    /// Lets another file of a group stay. Does nothing for a file that can't go anyway.
    void letStay(DuplicatePlace place);

    /// The files as entries to remove; those that can't go are left out.
    [[nodiscard]] std::vector<CleanupEntry> entriesOf(const std::vector<DuplicatePlace> &places) const;

    /// Lets the files of all groups share their space, where the file system can. Files that do drop out of
    /// what was found, and so do groups without others. Does nothing while a search is running, or sharing.
    void share();

    /// Drops removed files, and groups with fewer than two others.
    void drop(const GonePaths &gone);

signals:
    /// The sharing has ended.
    void shared(const SpaceSharing &done);

private:
    [[nodiscard]] bool isBusy() const { return state().isSearching || state().isSharing; }
    void showProgress();
    void show(DuplicatesFound found);
    void dropWhere(const std::function<bool(const DuplicateFile &)> &isDropped);

    Workers &workers_;
    StopFlag stopSharing_;
    std::shared_ptr<DuplicateProgress> progress_; ///< of a running search
    GonePaths goneSinceBegin_;
    QTimer timer_;
};

} // namespace brimvale
