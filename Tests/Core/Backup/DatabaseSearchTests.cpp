#include "Core/Backup/DatabaseSearch.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(DatabaseSearch, TakesTheDatabaseAndNoneThatWasSent) {
    struct Case {
        std::vector<std::string> files; ///< sorted
        std::string found;              ///< empty for none
    };
    for (const Case &one : {
             Case{{"Attachments/aa/chat.db", "chat.db"}, "chat.db"},
             Case{{"Attachments/aa/chat.db"}, ""},
             Case{{"Messages/Attachments/chat.db", "Messages/attachments/x/chat.db"}, ""},
             Case{{"Messages/Archive/chat.db", "Messages/chat.db", "Z/chat.db"}, "Messages/chat.db"},
             Case{{"A/b/c/chat.db", "Z/y/chat.db"}, "Z/y/chat.db"},
             Case{{"A/chat.db", "chat.db"}, "chat.db"},
             Case{{"failed/chat.db", "Messages/a/b/chat.db"}, "Messages/a/b/chat.db"},
             Case{{"Messages/mychat.db", "Messages/chat.db-wal", "Messages/Chat.db"}, ""},
         }) {
        FileListing listing;
        for (const std::string &file : one.files)
            listing.entries.push_back({file, {}});
        listing.entries.push_back({"A/chat.db.link/chat.db", {.kind = EntryKind::link}});
        const auto found = messagesDatabaseIn(listing, {"A", "Attachments", "Messages", "Z", "chat.db"});
        EXPECT_EQ(found.value_or(""), one.found) << one.files.front();
    }
}

} // namespace brimvale
