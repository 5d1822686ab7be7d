#include "Core/Storage/CategoryPolicies.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

std::string idOf(const CategoryPolicies &policies, const std::string &path) {
    const std::optional<CategoryPolicy> policy = policies.of(FileURL(path));
    return policy ? policy->id : "";
}

} // namespace

TEST(CategoryPolicies, ProtectsThePlacesOfACategoryByAnyPath) {
    const testing::TemporaryFolder home;
    home.makeFile("Pictures/Trip.photoslibrary/database");
    home.makeFile("Pictures2/file");
    home.makeFile("Documents/file");
    home.makeFile("Library/Messages/chat.db");
    home.makeLink("album", "Pictures/Trip.photoslibrary");
    home.makeLink("Pictures/elsewhere", "../Documents");
    const CategoryPolicies policies(Host{System::macOS, FileURL(home.path()), {}});
    for (const auto &[path, id] : {std::pair("Pictures", "photos"),
                                   {"Pictures/Trip.photoslibrary/database", "photos"},
                                   {"Pictures/Trip.photoslibrary/../Trip.photoslibrary", "photos"},
                                   {"Pictures/not there", "photos"},
                                   {"Pictures/elsewhere", "photos"},
                                   {"album/database", "photos"},
                                   {"album", ""}, // the link itself is no part of the library
                                   {"Pictures2/file", ""},
                                   {"Documents/file", ""},
                                   {"Library/Messages", "messages"},
                                   {"Library/Messages/chat.db", "messages"},
                                   {"Library", ""}})
        EXPECT_EQ(idOf(policies, home.path(path)), id) << path;
    for (const auto &[path, id] : {std::pair("/System/Library/x", "macos"),
                                   {"/usr/x/y", "macos"},
                                   {"/usr/local/x", ""},
                                   {"/opt/x/y", ""},
                                   {"/Users/Shared/x", "othersShared"}})
        EXPECT_EQ(idOf(policies, path), id) << path;

    EXPECT_TRUE(policies.of(FileURL(home.path("Library/Messages")))->backsUpFirst);
    const CategoryPolicy photos = *policies.of(FileURL(home.path("Pictures/x")));
    EXPECT_FALSE(photos.backsUpFirst);
    EXPECT_TRUE(photos.warning.starts_with("A photo library is a bundle"));
}

TEST(CategoryPolicies, FollowsAFolderThatIsElsewhere) {
    const testing::TemporaryFolder home;
    home.makeFile("disk/My pictures/file");
    home.makeLink("Pictures", "disk/My pictures");
    const CategoryPolicies policies(Host{System::macOS, FileURL(home.path()), {}});
    EXPECT_EQ(idOf(policies, home.path("disk/My pictures/file")), "photos");
    EXPECT_EQ(idOf(policies, home.path("disk/My pictures")), "photos");
    EXPECT_EQ(idOf(policies, home.path("disk/other")), "");
}

} // namespace brimvale
