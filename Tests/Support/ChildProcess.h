#pragma once

#include <functional>
#include <string>

namespace brimvale::testing {

/// What `answer` answers in a child of this process, so that what it does to its process (environment, user,
/// descriptors, what is read once and kept) ends with it. A child that ends otherwise answers "died". To be
/// called while this process has a single thread.
[[nodiscard]] std::string answerOfChild(const std::function<std::string()> &answer);

/// Passes a test in a child of this process. It skips itself, with GTEST_SKIP, as any test does; whatever
/// comes after the call would not be skipped with it.
void inChild(const std::function<void()> &test);

/// Gives up the rights of root for good where this process has them; for use in a child.
void becomeOrdinaryUser();

} // namespace brimvale::testing
