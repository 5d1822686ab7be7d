#pragma once

#include "Support/RemovalOutcome.h"
#include "Support/TemporaryFolder.h"

#include <functional>
#include <map>
#include <string>

namespace brimvale::testing {

/// Moves an item to the trash: "trashed", or the codes of the error.
[[nodiscard]] std::string outcome(const std::string &path);

/// What a file manager reads in a trash: for each item in it the path that it came from. An info file without
/// an item, an item without one, and an info file of another form are listed as such.
[[nodiscard]] std::map<std::string, std::string> originalPaths(const std::string &trash);

enum class As { whoeverRunsIt, ordinaryUser };

/// Passes a test in a child whose user has the home trash home/data/Trash in the folder that the test gets.
void inHome(const std::function<void(const TemporaryFolder &)> &test, As user = As::whoeverRunsIt);

} // namespace brimvale::testing
