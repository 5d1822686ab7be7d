// The sample of a disk has something for every page.

#include "Core/Apps/AppInventory.h"
#include "Core/Duplicates/DuplicateSearch.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/StorageCategories.h"
#include "Platform/Confinement.h"
#include "Sample/LinuxDisk.h"
#include "Sample/MacDisk.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <set>
#include <string>

namespace brimvale {

namespace {

using ::testing::IsEmpty;
using testing::TemporaryFolder;
using Names = std::set<std::string>;

/// Large files are smaller than in the sample that people see.
constexpr std::int64_t divisor = 20;

/// A sample in a temporary folder, to which this test is confined.
class Sample {
public:
    explicit Sample(System system) {
        const bool isMac = system == System::macOS;
        sample::DiskBuilder disk(folder_.path(), isMac ? sample::macHome : sample::linuxHome, now(), divisor);
        isMac ? sample::makeMacDisk(disk) : sample::makeLinuxDisk(disk);
        EXPECT_FALSE(disk.failure()) << disk.failure()->entry << disk.failure()->localizedDescription;
        Tools tools = platformTools();
        tools.tmutil = folder_.path("usr/bin/tmutil");
        tools.snapper = folder_.path("usr/bin/snapper");
        host = {system, FileURL(disk.placeOf("~")), tools, folder_.path()};
        EXPECT_TRUE(confine(
            Confinement{FileURL(folder_.path()), tools, [] { return std::vector<MountedVolume>(); }}));
    }
    ~Sample() { static_cast<void>(confine(std::nullopt)); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;

    Host host{System::linux, FileURL("/"), {}};

private:
    TemporaryFolder folder_;
};

Names emptyTargets(const Host &host) {
    Names empty;
    CleanupCatalog::measureAll(
        CleanupCatalog::definitions(host),
        [&](const CleanupTarget &target) {
            if (target.entries.empty())
                empty.insert(target.id);
        },
        {}, host);
    return empty;
}

Names emptyCategories(const Host &host) {
    Names empty;
    static_cast<void>(StorageCategories::measureAll(
        StorageCategories::all(host),
        [&](const MeasuredCategory &category) {
            if (category.size == 0)
                empty.insert(category.category.id);
        },
        {}, host));
    return empty;
}

/// The names of the files in the home folder that have duplicates, among those that the window would show.
Names duplicates(const Host &host) {
    constexpr std::int64_t leastLength = 2'000'000 / divisor;
    DuplicateProgress progress;
    Names names;
    for (const DuplicateGroup &group :
         findDuplicates({host.home}, leastLength, ScanOptions(), progress).groups)
        names.insert(std::string(group.files.front().url.fileName())
                         .append(", ")
                         .append(std::to_string(group.files.size())));
    return names;
}

} // namespace

TEST(SampleDisk, FillsEveryPageOnLinux) {
    const Sample sample(System::linux);
    EXPECT_THAT(emptyTargets(sample.host), IsEmpty());
    EXPECT_THAT(emptyCategories(sample.host), IsEmpty());
    Names names;
    for (const InstalledApp &app : AppInventory::scan(false, sample.host)) {
        names.insert(app.name);
        EXPECT_FALSE(app.iconPath.empty()) << app.name;
    }
    EXPECT_EQ(names,
              (Names{"Blender", "Firefox ESR", "GIMP", "Inkscape", "Joplin", "Krita", "LibreOffice Writer",
                     "Maps", "Pine Valley", "Spotify", "Steam", "Thunderbird", "VLC", "Visual Studio Code"}));
    EXPECT_EQ(duplicates(sample.host), (Names{"Holiday.mp4, 2", "Lake.png, 3", "Measurements.ods, 2",
                                              "PXL_1001.jpg, 2", "Passport.pdf, 2"}));
    const std::size_t snapshots = platformSystem() == System::linux ? 3 : 0;
    EXPECT_EQ(LocalSnapshot::list("/", sample.host).size(), snapshots);
}

TEST(SampleDisk, FillsEveryPageOfAMac) {
    const Sample sample(System::macOS);
    EXPECT_THAT(emptyTargets(sample.host), IsEmpty());
    EXPECT_THAT(emptyCategories(sample.host), IsEmpty());
    EXPECT_EQ(AppInventory::scan(false, sample.host).size(), 7U);
    EXPECT_EQ(duplicates(sample.host), (Names{"01 Harbour.m4a, 2", "Contracts.pdf, 2", "Holiday.mov, 2"}));
    EXPECT_EQ(LocalSnapshot::list("/", sample.host).size(), 3U);
}

} // namespace brimvale
