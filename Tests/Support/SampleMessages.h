#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale::testing {

struct SampleMessage {
    int chat = 1;
    std::optional<std::string> text; ///< any bytes
    std::int64_t date = 700'000'000;
    std::string attributedBody = {}; ///< none where empty
    bool fromMe = false;
    bool hasAttachment = false;
    std::string service = "iMessage";
    int associatedType = 0; ///< other than 0 for a reaction
};

struct SampleChat {
    int id = 1;
    std::optional<std::string> displayName;
    std::string identifier;
};

/// Text as it stands in a message that holds nothing but rich text.
[[nodiscard]] std::string attributedBodyOf(const std::string &text);

/// The statements that make such a database.
[[nodiscard]] std::string statementsOf(const std::vector<SampleChat> &chats,
                                       const std::vector<SampleMessage> &messages);

/// Makes the database at `path` with the system's own sqlite3. False where there is none.
[[nodiscard]] bool makeDatabase(const std::string &path, const std::vector<SampleChat> &chats,
                                const std::vector<SampleMessage> &messages);

/// A database that does harm to a careless reader.
struct HostileDatabase {
    std::string name;
    std::string statements; ///< that make it
};

/// Databases that pass for one of messages and start a program, `command`, when they are read, or that hide
/// behind ordinary names what is no table.
[[nodiscard]] std::vector<HostileDatabase> hostileDatabases(const std::string &command);

/// Runs statements in the system's own sqlite3 on the database at `path`. False where there is none or it
/// fails.
[[nodiscard]] bool runStatements(const std::string &path, const std::string &statements);

/// What would be done by somebody whose messages were taken for markup. Each leaves a mark on the document,
/// "data-harmed".
[[nodiscard]] std::vector<std::string> hostileTexts();

} // namespace brimvale::testing
