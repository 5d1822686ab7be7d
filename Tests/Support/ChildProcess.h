#pragma once

#include <functional>
#include <string>

namespace brimvale::testing {

/// What `answer` answers in a child of this process, so that what it does to its process (environment, user,
/// descriptors, what is read once and kept) ends with it. A child that ends otherwise answers "died". To be
/// called while this process has a single thread.
[[nodiscard]] std::string answerOfChild(const std::function<std::string()> &answer);

/// Gives up the rights of root for good where this process has them; for use in a child.
void becomeOrdinaryUser();

} // namespace brimvale::testing
