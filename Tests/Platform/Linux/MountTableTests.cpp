#include "Platform/Linux/MountTable.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

using ::testing::ElementsAre;

std::vector<std::string> pointsOf(const std::vector<Mount> &mounts) {
    std::vector<std::string> points;
    for (const Mount &mount : mounts)
        points.push_back(mount.point);
    return points;
}

std::vector<std::string> storagePoints(std::string_view table) {
    return pointsOf(storageMounts(mountsIn(table)));
}

} // namespace

TEST(MountTable, KnowsWhatIsNeverWalked) {
    const auto kindOf = [](const std::string &line) {
        const std::vector<Mount> mounts = mountsIn("30 1 0:40 / " + line);
        return mounts.size() == 1 ? kindOfUnwalked(mounts.front()) : std::nullopt;
    };
    for (const char *type :
         {"fuse.sshfs u@host:", "fuse.portal portal", "fuse.gvfsd-fuse gvfsd-fuse", "fuse x"})
        EXPECT_EQ(kindOf("/mnt/a rw - " + std::string(type)), UnwalkedMount::program) << type;
    for (const char *type : {"nfs4 host:/a", "cifs //host/a", "9p share", "virtiofs share"})
        EXPECT_EQ(kindOf("/mnt/a rw - " + std::string(type)), UnwalkedMount::otherMachine) << type;
    EXPECT_EQ(kindOf("/snap/core/1 ro - squashfs /dev/loop0"), UnwalkedMount::image);
    const std::string store = "/home/u/.local/share/containers/storage/overlay/1/merged";
    EXPECT_EQ(kindOf("/var/lib/docker/overlay2/1/merged rw - overlay overlay"), UnwalkedMount::container);
    EXPECT_EQ(kindOf(store + " rw - overlay overlay"), UnwalkedMount::container);
    for (const char *walked : {"/mnt/a rw - fuseblk /dev/sdb1", "/ rw - overlay overlay",
                               "/mnt/live rw - overlay overlay", "/home rw - btrfs /dev/sda2"})
        EXPECT_EQ(kindOf(walked), std::nullopt) << walked;
}

TEST(MountTable, DecodesEscapesInNames) {
    const std::vector<Mount> mounts = mountsIn(
        "30 1 8:2 / / rw,noatime shared:1 master:2 - ext4 /dev/sda2 rw\n"
        "31 30 8:17 /part\\040two /mnt/a\\040b\\134c\\011d\\012e\\777 rw - xfs /dev/sdb1 rw,logbufs=8\n"
        "32 30 0:50 / /no\\04digits rw - tmpfs\n"
        "not a line of the table\n33 30 0:51\n");
    ASSERT_EQ(mounts.size(), 3U);
    EXPECT_EQ(mounts[0].type, "ext4");
    EXPECT_EQ(mounts[0].source, "/dev/sda2");
    EXPECT_EQ(mounts[1].root, "/part two");
    EXPECT_EQ(mounts[1].point, "/mnt/a b\\c\td\ne\xFF");
    EXPECT_EQ(mounts[1].device, "8:17");
    EXPECT_EQ(mounts[2].point, "/no\\04digits");
    EXPECT_EQ(mounts[2].source, "");
}

TEST(MountTable, LeavesOutHiddenMounts) {
    // Kernel interfaces may stand before the root that they were moved to.
    EXPECT_THAT(pointsOf(mountsIn("22 27 0:21 / /proc rw - proc proc rw\n"
                                  "27 1 254:0 / / rw - ext4 /dev/vda rw\n"
                                  "30 27 8:1 / /data rw - ext4 /dev/sda1 rw\n"
                                  "31 30 8:2 / /data/inner rw - ext4 /dev/sdb1 rw\n"
                                  "32 31 8:3 / /data/inner/most rw - ext4 /dev/sdc1 rw\n"
                                  "33 27 8:4 / /database rw - ext4 /dev/sdd1 rw\n"
                                  "34 30 8:5 / /data rw - ext4 /dev/sde1 rw\n")),
                ElementsAre("/proc", "/", "/database", "/data"));
    // Mounted earlier than the folder above it.
    EXPECT_THAT(pointsOf(mountsIn("27 1 254:0 / / rw - ext4 /dev/vda rw\n"
                                  "30 27 8:1 / /a/b rw - ext4 /dev/sda1 rw\n"
                                  "31 27 8:2 / /a rw - ext4 /dev/sdb1 rw\n")),
                ElementsAre("/", "/a"));
    // A table that goes round in circles ends, too.
    EXPECT_EQ(mountsIn("1 2 8:1 / /a rw - ext4 /dev/a rw\n2 1 8:2 / /b rw - ext4 /dev/b rw\n"
                       "3 3 8:3 / /c rw - ext4 /dev/c rw\n")
                  .size(),
              3U);
}

TEST(MountTable, ListsEachStorageDeviceOnce) {
    // A desktop: subvolumes of one file system, packaged software, and the services of a session.
    EXPECT_THAT(storagePoints("25 1 0:30 /@ / rw - btrfs /dev/nvme0n1p2 rw\n"
                              "26 25 0:30 /@home /home rw - btrfs /dev/nvme0n1p2 rw\n"
                              "27 25 0:5 / /dev rw - devtmpfs udev rw\n"
                              "28 25 0:31 / /run rw - tmpfs tmpfs rw\n"
                              "29 25 7:3 / /snap/core/17 ro - squashfs /dev/loop3 ro\n"
                              "30 25 0:40 / /var/snap/x ro - fuse.snapfuse snapfuse ro\n"
                              "31 25 259:1 / /boot/efi rw - vfat /dev/nvme0n1p1 rw\n"
                              "32 28 8:17 / /run/media/u/STICK rw - exfat /dev/sdb1 rw\n"
                              "33 28 8:33 / /run/media/u/Disk rw - fuseblk /dev/sdc1 rw\n"
                              "34 28 0:41 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                              "35 28 0:42 / /run/user/1000/doc rw - fuse.portal portal rw\n"
                              "36 25 0:43 / /net rw - autofs /etc/auto.net rw\n"
                              "37 25 0:44 / /srv/nfs rw - nfs4 server:/export rw\n"
                              "38 25 0:44 /sub /srv/again rw - nfs4 server:/export/sub rw\n"
                              "39 25 0:45 / /tank rw - zfs tank rw\n"
                              "40 26 0:46 / /home/u/far rw - fuse.sshfs u@host: rw\n"),
                ElementsAre("/", "/boot/efi", "/run/media/u/STICK", "/run/media/u/Disk", "/srv/nfs", "/tank",
                            "/home/u/far"));
    // A pool has one row, whatever is mounted of it; the rest of its name is a data set or a snapshot.
    EXPECT_THAT(storagePoints("26 1 0:30 / / rw - zfs rpool/ROOT/os rw\n"
                              "27 26 0:31 / /home rw - zfs rpool/home rw\n"
                              "28 26 0:32 / /srv/a/.zfs/snapshot/x ro - zfs tank/a@x ro\n"
                              "29 26 0:33 / /srv/a rw - zfs tank/a rw\n"
                              "30 26 0:34 / /tank rw - zfs tank rw\n"),
                ElementsAre("/", "/tank"));
    // A container: the root is an overlay, and of one disk there are only parts.
    EXPECT_THAT(storagePoints("50 1 0:60 / / rw - overlay overlay rw\n"
                              "51 50 8:1 /volumes/a /data rw - ext4 /dev/sda1 rw\n"
                              "52 50 8:1 /volumes/b /cache rw - ext4 /dev/sda1 rw\n"
                              "53 50 8:2 /part /first rw - ext4 /dev/sda2 rw\n"
                              "54 50 8:2 / /whole rw - ext4 /dev/sda2 rw\n"),
                ElementsAre("/", "/data", "/whole"));
    // The device of "/" is shown there, even where something lies at another place in whole.
    EXPECT_THAT(storagePoints("51 50 8:1 / /host rw - ext4 /dev/sda1 rw\n"
                              "50 1 8:1 /root / rw - ext4 /dev/sda1 rw\n"),
                ElementsAre("/"));
}

TEST(MountTable, KnowsThePlacesOfBindMountsInTheirFileSystem) {
    const auto places = [](std::string_view table, const char *path) {
        return widerPathsOf(mountsIn(table), path);
    };
    const std::string root = "27 1 254:0 / / rw - ext4 /dev/vda rw\n";
    const std::string binds = root + "30 27 254:0 /usr/share/x /tmp/y rw - ext4 /dev/vda rw\n"
                                     "31 27 254:0 /etc/hosts /tmp/hosts rw - ext4 /dev/vda rw\n"
                                     "32 27 8:1 /usr/share/x /other rw - ext4 /dev/sda1 rw\n";
    EXPECT_THAT(places(binds, "/tmp/y/z"), ElementsAre("/usr/share/x/z"));
    EXPECT_THAT(places(binds, "/tmp/y"), ElementsAre("/usr/share/x"));
    EXPECT_THAT(places(binds, "/tmp/hosts"), ElementsAre("/etc/hosts"));
    for (const char *path : {"/usr/share/x/z", "/tmp/yy", "/etc/hosts", "/", "/other/z"})
        EXPECT_THAT(places(binds, path), ElementsAre()) << path;

    // Subvolumes of Btrfs, one of them mounted in part a second time.
    const std::string subvolumes = "27 1 0:30 /@ / rw - btrfs /dev/sda2 rw\n"
                                   "28 27 0:30 /@home /home rw - btrfs /dev/sda2 rw\n"
                                   "29 27 0:30 /@/etc/x /srv/x rw - btrfs /dev/sda2 rw\n";
    EXPECT_THAT(places(subvolumes, "/home/u/file"), ElementsAre());
    EXPECT_THAT(places(subvolumes, "/srv/x/file"), ElementsAre("/etc/x/file"));

    // An image-based system; its /usr is known, and its home is not taken for a part of it.
    const std::string image =
        "27 1 8:3 /ostree/deploy/os/deploy/1.0 / rw - xfs /dev/sda3 rw\n"
        "28 27 8:3 / /sysroot ro - xfs /dev/sda3 rw\n"
        "29 27 8:3 /ostree/deploy/os/deploy/1.0/usr /usr ro - xfs /dev/sda3 rw\n"
        "30 27 8:3 /ostree/deploy/os/var /var rw - xfs /dev/sda3 rw\n"
        "31 27 8:3 /ostree/deploy/os/deploy/1.0/usr/share /tmp/y rw - xfs /dev/sda3 rw\n";
    EXPECT_THAT(places(image, "/var/home/u/file"), ElementsAre());
    EXPECT_THAT(places(image, "/tmp/y/z"), ElementsAre("/usr/share/z", "/usr/share/z"));

    // In a container; and in one that sees its host.
    EXPECT_THAT(places("40 1 0:50 / / rw - overlay overlay rw\n"
                       "41 40 254:0 /var/lib/docker/containers/1/hosts /etc/hosts rw - ext4 /dev/vda rw\n"
                       "42 40 254:0 /home/u/data /data rw - ext4 /dev/vda rw\n",
                       "/data/file"),
                ElementsAre());
    EXPECT_THAT(places("40 1 0:50 / / rw - overlay overlay rw\n"
                       "41 40 254:0 / /run/host rw - ext4 /dev/vda rw\n"
                       "42 40 254:0 /home /home rw - ext4 /dev/vda rw\n",
                       "/home/u/file"),
                ElementsAre());
}

TEST(MountTable, KnowsWhichStorageAnotherProgramServes) {
    const auto kindOf = [](const std::string &typeAndSource) {
        return storageKind(mountsIn("60 1 0:70 / /place rw - " + typeAndSource + " rw\n").front());
    };
    EXPECT_EQ(kindOf("ext4 /dev/sda1"), StorageKind::local);
    for (const char *served : {"nfs4 server:/", "fuseblk /dev/sdb1", "fuse.exfat /dev/sdb1", "9p C:\\134"})
        EXPECT_EQ(kindOf(served), StorageKind::distant) << served;
    for (const char *other : {"tmpfs tmpfs", "squashfs /dev/loop3", "fuse.portal portal"})
        EXPECT_EQ(kindOf(other), StorageKind::none) << other;
}

} // namespace brimvale
