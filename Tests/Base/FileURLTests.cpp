#include "Base/FileURL.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(FileURL, SplitsAndJoinsPaths) {
    struct Case {
        std::string path, last, parent;
    };
    for (const Case &one : {Case{"/", "/", "/"}, Case{"/a", "a", "/"}, Case{"/a/b", "b", "/a"},
                            Case{"/a/b//", "b", "/a"}, Case{"/a\n/\xFF", "\xFF", "/a\n"}}) {
        EXPECT_EQ(FileURL(one.path).fileName(), one.last) << one.path;
        EXPECT_EQ(FileURL(one.path).parent().path(), one.parent) << one.path;
    }
    EXPECT_EQ(FileURL("/").appending("a").path(), "/a");
    EXPECT_EQ(FileURL("/a").appending("b/c").path(), "/a/b/c");
    EXPECT_EQ(FileURL::resolving("b", FileURL("/a")).path(), "/a/b");
    EXPECT_EQ(FileURL::resolving("/b", FileURL("/a")).path(), "/b");
    EXPECT_EQ(expandingTilde("~/x", "/home/u"), "/home/u/x");
    EXPECT_EQ(expandingTilde("~", "/home/u"), "/home/u");
    EXPECT_EQ(expandingTilde("~other/x", "/home/u"), "~other/x");
}

TEST(FileURL, StandardizedResolvesLinksOnlyBeforeDotDot) {
    const testing::TemporaryFolder folder;
    folder.makeFolder("real/inner");
    folder.makeFile("real/x");
    folder.makeLink("link", "real/inner");
    struct Case {
        std::string path, standardised;
    };
    for (const Case &one :
         {Case{"/", "/"}, Case{"//", "/"}, Case{"/..", "/"}, Case{"/./nowhere//at/./all/", "/nowhere/at/all"},
          Case{"/nowhere/at/../all", "/nowhere/all"}, Case{folder.path("link/"), folder.path("link")},
          Case{folder.path("link/x"), folder.path("link/x")},
          Case{folder.path("link/.."), folder.path("real")},
          Case{folder.path("link/../x"), folder.path("real/x")},
          Case{folder.path("gone/../real"), folder.path("real")}})
        EXPECT_EQ(FileURL(one.path).standardized().path(), one.standardised) << one.path;
    // /private stands for the top only where macOS has it so, never for a folder that merely has the name.
    EXPECT_EQ(FileURL("/private/Users").standardized().path(), "/private/Users");
    EXPECT_EQ(FileURL("/private/nowhere").standardized().path(), "/private/nowhere");
}

TEST(FileURL, IsAtOrUnderAFolder) {
    for (const auto &[path, folder] :
         {std::pair("/a", "/a"), {"/a/b", "/a"}, {"/a", "/"}, {"/", "/"}, {"a/b", "a"}, {"a", ""}, {"", ""}})
        EXPECT_TRUE(isAtOrUnder(path, folder)) << path << " in " << folder;
    for (const auto &[path, folder] : {std::pair("/ab", "/a"), {"/", "/a"}, {"/a", "/a/b"}, {"", "a"}})
        EXPECT_FALSE(isAtOrUnder(path, folder)) << path << " in " << folder;
}

TEST(FileURL, DeletesPathExtension) {
    struct Case {
        const char *name, *rest;
    };
    for (const Case &one :
         {Case{"a.b.c", "a.b"}, Case{"Safari.app", "Safari"}, Case{"none", "none"},
          Case{".hidden", ".hidden"}, Case{".hidden.plist", ".hidden"}, Case{"end.", "end."},
          Case{"Dr. Who", "Dr. Who"}, Case{"Version 1.2", "Version 1"}, Case{"a..b", "a."}, Case{"", ""},
          Case{".", "."}})
        EXPECT_EQ(deletingPathExtension(one.name), one.rest) << one.name;
}

} // namespace brimvale
