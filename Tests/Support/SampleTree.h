#pragma once

#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

/// A folder to make a tree of.
[[nodiscard]] std::shared_ptr<FSNode> makeRoot();

/// Adds a child of this size, and adds its figures to its ancestors.
FSNode &add(FSNode &parent, const std::string &name, std::int64_t size, bool isDirectory = false);
FSNode &addFolder(FSNode &parent, const std::string &name, std::int64_t size = 0);
FSNode &addAggregate(FSNode &parent, std::int64_t count, std::int64_t size);

/// What these names lead to from `folder`; null where nothing is.
[[nodiscard]] FSNode *descendant(FSNode &folder, std::initializer_list<std::string_view> names);

[[nodiscard]] std::vector<FSNode *> everythingBeneath(FSNode &root);
[[nodiscard]] std::vector<std::string> namesOf(const std::vector<FSNode *> &nodes);
[[nodiscard]] std::vector<std::string> namesIn(const FSNode &folder);

} // namespace brimvale::testing
