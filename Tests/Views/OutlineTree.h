#pragma once

#include "Core/FSNode.h"
#include "Views/OutlineModel.h"

#include <memory>
#include <string>
#include <vector>

namespace brimvale::testing {

/// Adds a child of this size, and its figures to those of the folders around it.
FSNode &add(FSNode &parent, const std::string &name, std::int64_t size, bool isDirectory = false);
FSNode &addFolder(FSNode &parent, const std::string &name);
FSNode &addAggregate(FSNode &parent, std::int64_t count, std::int64_t size);

/// A folder to make a tree of.
[[nodiscard]] std::shared_ptr<FSNode> makeRoot();

[[nodiscard]] std::vector<FSNode *> everythingBeneath(FSNode &root);
[[nodiscard]] std::vector<std::string> namesOf(const std::vector<FSNode *> &nodes);

/// The names of the rows within a folder, as a view reads them.
[[nodiscard]] std::vector<std::string> rowsIn(const QAbstractItemModel &model,
                                              const QModelIndex &folder = {});

/// Takes `node` out of the tree as the application does.
void detach(OutlineModel &model, FSNode &node);

/// Whether the rows show the filter in the end.
[[nodiscard]] bool waitUntilFiltered(const OutlineModel &model);

} // namespace brimvale::testing
