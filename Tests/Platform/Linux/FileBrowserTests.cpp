#include "Platform/FileBrowser.h"

#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

TEST(FileBrowser, TellsAFileManagerThatIsSilentFromOneThatIsMissing) {
    const testing::TemporaryFolder folder;
    const FileURL item(folder.makeFile("a file"));
    struct Case {
        const char *script;
        FileBrowser::Answer answer;
    };
    for (const Case &one : {
             Case{"exit 0", FileBrowser::Answer::shown},
             Case{"echo Error org.freedesktop.DBus.Error.NoReply: no reply >&2; exit 1",
                  FileBrowser::Answer::silent},
             Case{"echo Error org.freedesktop.DBus.Error.ServiceUnknown: none >&2; exit 1",
                  FileBrowser::Answer::none},
         }) {
        Tools tools;
        tools.busCaller = folder.makeScript("caller", one.script);
        EXPECT_EQ(FileBrowser::reveal(item, tools), one.answer) << one.script;
        EXPECT_EQ(FileBrowser::showProperties(item, tools), one.answer) << one.script;
    }
    Tools none;
    none.busCaller = folder.path("missing");
    EXPECT_EQ(FileBrowser::reveal(item, none), FileBrowser::Answer::none);
}

TEST(FileBrowser, KnowsWhatIsThere) {
    const testing::TemporaryFolder folder;
    folder.makeFolder("folder");
    folder.makeFile("file");
    folder.makeLink("link", "folder");
    folder.makeLink("dangling", "gone");
    using FileBrowser::Kind;
    for (const auto &[name, kind] :
         {std::pair("folder", Kind::folder), std::pair("file", Kind::file), std::pair("link", Kind::folder),
          std::pair("dangling", Kind::file), std::pair("gone", Kind::gone)})
        EXPECT_EQ(FileBrowser::kindOf(FileURL(folder.path(name))), kind) << name;
}

} // namespace brimvale
