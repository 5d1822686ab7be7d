#include "Platform/Linux/BlockDevice.h"
#include "Platform/Linux/VolumeName.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// The files of a kernel and a device manager with a few disks.
class SampleDevices {
public:
    /// Adds a device with a number and a node, at a place in the kernel's tree.
    void add(const std::string &number, const std::string &node, const std::string &place) const {
        folder.makeFolder("sys/devices/" + place);
        const std::string name = place.substr(place.rfind('/') + 1);
        link("sys/dev/block/" + number, "../../devices/" + place);
        link("sys/class/block/" + name, "../../devices/" + place);
        folder.writeFile("dev/" + name, "");
        if (node != name)
            link("dev/" + node, std::string(node.find('/') == node.npos ? "" : "../") + name);
    }

    void set(const std::string &place, const std::string &attribute, const std::string &value) const {
        folder.writeFile("sys/devices/" + place + "/" + attribute, value + "\n");
    }

    void link(const std::string &path, const std::string &target) const {
        folder.makeFolder(path.substr(0, path.rfind('/')));
        std::filesystem::create_symlink(target, folder.path(path));
    }

    [[nodiscard]] std::string name(const std::string &line) const {
        return volumeName(mountsIn(line).at(0), folder.path()).value_or("none");
    }

    [[nodiscard]] bool isInternal(const std::string &line) const {
        return isInternalDevice(deviceFolderOf(mountsIn(line).at(0), folder.path()).value());
    }

    testing::TemporaryFolder folder;
};

} // namespace

TEST(VolumeName, IsWhatPeopleKnow) {
    SampleDevices sample;
    sample.add("259:2", "nvme0n1p2", "pci0/nvme/nvme0n1/nvme0n1p2");
    sample.set("pci0/nvme/nvme0n1/nvme0n1p2", "partition", "2");
    sample.add("8:17", "sdb1", "pci0/usb2/host6/block/sdb/sdb1");
    sample.set("pci0/usb2/host6/block/sdb/sdb1", "partition", "1");
    sample.set("pci0/usb2/host6/block/sdb", "removable", "0");
    sample.set("pci0/usb2/host6/block/sdb", "device/vendor", "SanDisk ");
    sample.set("pci0/usb2/host6/block/sdb", "device/model", "Ultra Fit       ");
    sample.add("254:0", "mapper/luks-0a1b", "virtual/block/dm-0");
    sample.set("virtual/block/dm-0", "dm/uuid", "CRYPT-LUKS2-0a1b-luks-0a1b");
    sample.set("virtual/block/dm-0", "dm/name", "luks-0a1b");
    sample.link("sys/devices/virtual/block/dm-0/slaves/nvme0n1p2", "../../../../pci0/nvme/nvme0n1/nvme0n1p2");
    sample.add("254:1", "mapper/fedora--vg-root--a", "virtual/block/dm-1");
    sample.set("virtual/block/dm-1", "dm/uuid", "LVM-Zq1");
    sample.set("virtual/block/dm-1", "dm/name", "fedora--vg-root--a");
    sample.link("sys/devices/virtual/block/dm-1/slaves/dm-0", "../../dm-0");
    sample.add("254:2", "mapper/data-home", "virtual/block/dm-2");
    sample.set("virtual/block/dm-2", "dm/uuid", "LVM-Zq2");
    sample.set("virtual/block/dm-2", "dm/name", "data-home");

    EXPECT_EQ(sample.name("1 2 259:2 / /home rw - ext4 /dev/nvme0n1p2 rw"), "none") << "its folder says more";
    EXPECT_EQ(sample.name("1 2 8:17 / /mnt rw - vfat /dev/sdb1 rw"), "SanDisk Ultra Fit");
    EXPECT_EQ(sample.name("1 2 254:0 / /home rw - ext4 /dev/mapper/luks-0a1b rw"),
              "Encrypted volume nvme0n1p2");
    EXPECT_EQ(sample.name("1 2 254:1 / /home rw - xfs /dev/mapper/fedora--vg-root--a rw"),
              "Encrypted volume fedora-vg/root-a");
    EXPECT_EQ(sample.name("1 2 254:2 / /home rw - xfs /dev/mapper/data-home rw"), "Volume data/home");
    EXPECT_EQ(sample.name("1 2 0:50 / /srv rw - nfs4 nas:/export rw"), "none");
    EXPECT_EQ(sample.name("1 2 0:51 / /srv rw - zfs tank/media/films rw"), "tank");
    EXPECT_EQ(sample.name("1 2 9:9 / /srv rw - ext4 /dev/gone rw"), "none");
    EXPECT_TRUE(sample.isInternal("1 2 254:1 / /home rw - xfs /dev/mapper/fedora--vg-root--a rw"));
    EXPECT_FALSE(sample.isInternal("1 2 8:17 / /mnt rw - vfat /dev/sdb1 rw"));
}

TEST(VolumeName, IsTheLabelWhereThereIsOne) {
    SampleDevices sample;
    sample.add("8:17", "sdb1", "pci0/usb2/host6/block/sdb/sdb1");
    sample.add("8:33", "sdc1", "pci0/host7/block/sdc/sdc1");
    sample.add("8:49", "sdd1", "pci0/host8/block/sdd/sdd1");
    sample.set("pci0/usb2/host6/block/sdb", "device/model", "Ultra");
    sample.link("dev/disk/by-label/My\\x20stick\\x2f1", "../../sdb1");
    sample.link("dev/disk/by-label/gone", "../../sdz1");
    EXPECT_EQ(sample.name("1 2 8:17 / /mnt rw - vfat /dev/sdb1 rw"), "My stick/1");

    // A Btrfs on two disks: the device manager knows only one of them, and its number is no device's.
    sample.folder.writeFile("sys/fs/btrfs/features/raid1c34", "0");
    sample.folder.writeFile("sys/fs/btrfs/80e2/label", "Big pool\n");
    sample.link("sys/fs/btrfs/80e2/devices/sdc1", "../../../../devices/pci0/host7/block/sdc/sdc1");
    sample.link("sys/fs/btrfs/80e2/devices/sdd1", "../../../../devices/pci0/host8/block/sdd/sdd1");
    EXPECT_EQ(sample.name("1 2 0:41 /@home /home rw - btrfs /dev/sdc1 rw"), "Big pool");
    EXPECT_EQ(sample.name("1 2 0:41 /@home /home rw - btrfs /dev/sdd1 rw"), "Big pool");
    sample.folder.writeFile("sys/fs/btrfs/80e2/label", "");
    EXPECT_EQ(sample.name("1 2 0:41 /@home /home rw - btrfs /dev/sdd1 rw"), "none");
}

} // namespace brimvale
