// The conversations on the sample of a Mac.

#include "Platform/FileContents.h"
#include "Sample/MacDisk.h"
#include "Sample/MessagesDatabase.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace brimvale::sample {

namespace {

constexpr const char *database = "~/Library/Messages/chat.db";

const std::vector<Chat> chats = {{1, std::nullopt, "anna@example.org"},
                                 {2, "Hiking on Sunday", "chat481516"},
                                 {3, std::nullopt, "+15550134"}};

struct Line {
    int chat;
    bool fromMe;
    const char *text;
};

constexpr Line lines[] = {
    {1, false, "Have you seen the photos from the wedding?"},
    {1, true, "Not yet. Can you send me the best ones?"},
    {1, false, "Sure, they are on their way."},
    {1, true, "These are lovely, thank you!"},
    {2, false, "Who has a map of the lake trail?"},
    {2, true, "I do. The bus leaves at 8:40."},
    {2, false, "I will bring the tea ☕"},
    {2, false, "It may rain after three."},
    {2, true, "Then we turn round at the hut."},
    {3, false, "Your parcel is at the neighbour’s."},
    {3, true, "Thanks, I will pick it up tonight."},
};

constexpr std::size_t mostBytes = 16'000'000;

constexpr int rounds = 36; ///< how often the conversations go on

std::int64_t nanosecondsSince2001(Date date) {
    constexpr std::chrono::sys_days start{std::chrono::year{2001} / 1 / 1};
    return std::chrono::duration_cast<std::chrono::nanoseconds>(date - start).count();
}

std::vector<Message> messages(Date today) {
    std::vector<Message> all;
    const Date start = today - std::chrono::days(rounds * 21);
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < std::size(lines); ++i) {
            const Date date = start + std::chrono::days(round * 21) + std::chrono::minutes(17 * i);
            all.push_back({.chat = lines[i].chat,
                           .text = lines[i].text,
                           .date = nanosecondsSince2001(date),
                           .fromMe = lines[i].fromMe,
                           .hasAttachment = i == 2});
        }
    return all;
}

} // namespace

/// sqlite3 writes page by page, which leaves the file in pieces, so its content is written again as a whole.
void makeMacMessages(DiskBuilder &disk) {
    const std::string draft = disk.placeOf(database) + ".new";
    std::optional<std::string> content;
    const std::string statements =
        "PRAGMA synchronous=OFF; BEGIN; " + statementsOf(chats, messages(disk.today())) + "COMMIT;";
    if (!disk.failure() && runStatements(draft, statements))
        content = contentsOfFile(draft, mostBytes);
    std::error_code ignored;
    std::filesystem::remove(draft, ignored);
    disk.writeFile(database, content.value_or("There was no sqlite3 to make this database.\n"), 0);
}

} // namespace brimvale::sample
