#include "Core/Scan/SubtreeSizes.h"
#include "Platform/Posix/Descriptor.h"
#include "Support/TemporaryFolder.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sys/inotify.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// Counts how often each of some folders is opened.
class Openings {
public:
    explicit Openings(const std::vector<std::string> &folders)
        : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        for (const std::string &folder : folders)
            folders_[inotify_add_watch(events_.number(), folder.c_str(), IN_OPEN | IN_CLOSE_NOWRITE)] =
                folder;
    }

    /// By folder, since the last call. A folder's opening is told by its parent as well, which is left out.
    std::map<std::string, int> take() {
        std::map<std::string, int> counts;
        alignas(inotify_event) std::array<char, 65536> buffer{};
        ssize_t length = 0;
        while ((length = read(events_.number(), buffer.data(), buffer.size())) > 0)
            for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
                inotify_event event{};
                std::memcpy(&event, buffer.data() + at, sizeof event);
                if (event.len == 0 && (event.mask & IN_OPEN) != 0)
                    ++counts[folders_[event.wd]];
                at += sizeof event + event.len;
            }
        return counts;
    }

private:
    Descriptor events_;
    std::map<int, std::string> folders_;
};

} // namespace

TEST(SubtreeSizes, VisitEachFolderOnce) {
    const testing::TemporaryFolder folder;
    for (int i = 0; i < 60; ++i)
        folder.makeFile(std::to_string(i % 3) + "/" + std::to_string(i % 12) + "/" + std::to_string(i) +
                        "/file");
    std::vector<std::string> paths = {folder.path()};
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.path()))
        if (entry.is_directory())
            paths.push_back(entry.path().native());
    Openings openings(paths);
    for (const int workers : {0, 7}) {
        WalkPool pool(workers);
        // Every folder is wanted, in both orders and twice.
        SubtreeSizes::measure(
            {paths, {paths.rbegin(), paths.rend()}}, {}, {}, [](std::size_t, const auto &) {}, pool);
        const std::map<std::string, int> counts = openings.take();
        EXPECT_EQ(counts.size(), paths.size());
        for (const auto &[path, count] : counts)
            EXPECT_EQ(count, 1) << path << ", " << workers << " workers";
    }
}

} // namespace brimvale
