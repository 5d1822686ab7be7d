#pragma once

#include "Sample/MessagesDatabase.h"

#include <string>
#include <vector>

namespace brimvale::testing {

using SampleMessage = sample::Message;
using SampleChat = sample::Chat;
using sample::attributedBodyOf;
using sample::runStatements;
using sample::statementsOf;

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

/// What would be done by somebody whose messages were taken for markup. Each leaves a mark on the document,
/// "data-harmed".
[[nodiscard]] std::vector<std::string> hostileTexts();

} // namespace brimvale::testing
