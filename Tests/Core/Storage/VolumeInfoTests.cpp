#include "Core/Storage/VolumeInfo.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

std::vector<std::string> namesOf(const std::vector<VolumeInfo> &volumes) {
    std::vector<std::string> names;
    for (const VolumeInfo &volume : volumes)
        names.push_back(volume.name);
    return names;
}

MountedVolume mounted(const char *path, std::optional<std::string> name) {
    return {.url = FileURL(path), .name = std::move(name), .totalCapacity = 1};
}

} // namespace

TEST(VolumeInfo, ListsUsableVolumesRootFirst) {
    MountedVolume root = mounted("/", "z");
    root.isRootFileSystem = true;
    MountedVolume hidden = mounted("/hidden", "hidden");
    hidden.isBrowsable = false;
    MountedVolume empty = mounted("/empty", "empty");
    empty.totalCapacity = 0;
    MountedVolume silent = mounted("/silent", "silent");
    silent.totalCapacity.reset();
    const std::vector<VolumeInfo> volumes =
        VolumeInfo::from({mounted("/1", "b"), hidden, mounted("/Volumes/a\xFF/", std::nullopt),
                          mounted("/2", "A"), empty, root, silent, mounted("/3", "B"), mounted("/0", "b")});
    EXPECT_THAT(namesOf(volumes), ::testing::ElementsAre("z", "A", "B", "a\xFF", "b", "b"));
    EXPECT_EQ(volumes[4].url.path(), "/1") << "equal names keep the system's order";
    const VolumeInfo &plain = volumes[1];
    EXPECT_TRUE(plain.availableForImportantUsage == 0 && plain.trueFree == 0 && !plain.isInternal &&
                !plain.isRootVolume);

    EXPECT_EQ(volumeDetails(plain), std::nullopt);
    const std::vector<VolumeInfo> named = VolumeInfo::from({root, mounted("/b", "b")}, "Fedora Linux 43");
    EXPECT_THAT(namesOf(named), ::testing::ElementsAre("Fedora Linux 43", "b"));

    EXPECT_EQ(VolumeInfo::root(volumes)->name, "z");
    EXPECT_EQ(VolumeInfo::root({plain})->name, "A");
    EXPECT_FALSE(VolumeInfo::root({}));
}

TEST(VolumeInfo, ShowsPurgeableSpace) {
    struct Case {
        std::int64_t important, free, shown;
        bool hasSentence;
    };
    for (const Case &one : {Case{5000, 5000, 5000, false}, Case{5001, 5000, 5001, true},
                            Case{0, 5000, 5000, false}, Case{4000, 5000, 4000, false}}) {
        const VolumeInfo volume{.url = FileURL("/"),
                                .name = "",
                                .availableForImportantUsage = one.important,
                                .trueFree = one.free};
        EXPECT_EQ(volume.shownAvailable(), one.shown);
        EXPECT_EQ(purgeableSentence(volume).has_value(), one.hasSentence) << one.important;
    }
}

} // namespace brimvale
