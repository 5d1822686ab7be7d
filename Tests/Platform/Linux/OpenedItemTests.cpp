#include "Platform/OpenedItem.h"

#include "Platform/Linux/FileSystemTypes.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;

bool othersMayExchangeAt(const std::string &path) {
    const Result<OpenedItem, int> found = OpenedItem::at(FileURL(path));
    const auto *item = std::get_if<OpenedItem>(&found);
    EXPECT_NE(item, nullptr) << path;
    return item == nullptr || othersMayExchange(*item);
}

} // namespace

TEST(OpenedItem, MayBeExchangedByThoseWhoMayChangeAFolderOnTheWay) {
    const TemporaryFolder folder;
    const std::string item = folder.makeFile("outer/inner/item");
    EXPECT_FALSE(othersMayExchangeAt(item)) << "the folder for temporary files is sticky";
    for (const char *name : {"outer", "outer/inner"}) {
        const auto with = [&](unsigned mode) {
            fs::permissions(folder.path(name), fs::perms(mode));
            return othersMayExchangeAt(item);
        };
        SCOPED_TRACE(name);
        EXPECT_TRUE(with(0707));
        EXPECT_FALSE(with(01777)) << "where all may add but none remove what is not theirs";
        // The administrator's group may do as it likes.
        ASSERT_EQ(
            chown(folder.path(name).c_str(), static_cast<uid_t>(-1), geteuid() == 0 ? 12345 : getegid()), 0);
        EXPECT_TRUE(with(0770));
        EXPECT_FALSE(with(0755));
        if (geteuid() == 0) {
            ASSERT_EQ(chown(folder.path(name).c_str(), 12345, 0), 0);
            EXPECT_TRUE(othersMayExchangeAt(item)) << "another user's folder";
            ASSERT_EQ(chown(folder.path(name).c_str(), 0, 0), 0);
            EXPECT_FALSE(with(0775)) << "the administrator's group";
        }
    }
    // What anybody may do to the item itself is no matter.
    fs::permissions(item, fs::perms::all);
    EXPECT_FALSE(othersMayExchangeAt(item));
}

TEST(OpenedItem, IsKnownByItsNumberWhereThatIsKept) {
    for (const std::uint32_t type : {0xEF53U, 0x9123683EU, 0x01021994U, 0x6969U, 0x58465342U})
        EXPECT_TRUE(keepsFileNumbers(type)) << type;
    for (const std::uint32_t type : {0x4D44U, 0x2011BAB0U, 0xFF534D42U, 0xFE534D42U, 0x65735546U})
        EXPECT_FALSE(keepsFileNumbers(type)) << type;

    const TemporaryFolder folder;
    const auto pin = pinOf(FileURL(folder.makeFile("file", 10)));
    ASSERT_TRUE(pin);
    EXPECT_FALSE(pin->item.details) << "on an ordinary disk";
    ItemIdentity other = pin->item;
    ++other.file.inode;
    other.details = {10, {}}; // as the tree of a scan has them
    EXPECT_FALSE(pin->item.isSameAs(other));
    EXPECT_FALSE(other.isSameAs(pin->item));
}

TEST(OpenedItem, IsKnownByItsDetailsWhereNumbersChange) {
    const ItemIdentity file{{1, 7}, false, 100, ItemDetails{10, 200}};
    const auto changed = [&](auto change) {
        ItemIdentity other = file;
        other.file.inode = 8;
        change(other);
        EXPECT_EQ(file.isSameAs(other), other.isSameAs(file));
        return !file.isSameAs(other);
    };
    EXPECT_FALSE(changed([](ItemIdentity &) {}));
    EXPECT_FALSE(changed([](ItemIdentity &one) { one.created.reset(); }));
    EXPECT_FALSE(changed([](ItemIdentity &one) { one.details->modified.reset(); }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.created = 101; }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.details->modified = 201; }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.details->length = 11; }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.file.device = 2; }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.isFolder = true; }));
    EXPECT_TRUE(changed([](ItemIdentity &one) { one.details.reset(); })) << "as a request as root has none";

    // Its date changes with its contents, and its length has no meaning.
    const ItemIdentity inner{{1, 7}, true, 100, ItemDetails{4096, 200}};
    EXPECT_TRUE(inner.isSameAs({{1, 8}, true, 100, ItemDetails{8192, 300}}));
    EXPECT_FALSE(inner.isSameAs({{1, 8}, true, 101, ItemDetails{4096, 200}}));
}

} // namespace brimvale
