#pragma once

#include "Support/SampleTree.h"
#include "Views/Browse/Outline/OutlineModel.h"

#include <string>
#include <vector>

namespace brimvale::testing {

/// The names of the rows within a folder, as a view reads them.
[[nodiscard]] std::vector<std::string> rowsIn(const QAbstractItemModel &model,
                                              const QModelIndex &folder = {});

/// Takes `node` out of the tree as the application does.
void detach(OutlineModel &model, FSNode &node);

/// Whether the rows show the filter in the end.
[[nodiscard]] bool waitUntilFiltered(const OutlineModel &model);

} // namespace brimvale::testing
