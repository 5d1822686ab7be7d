#include "Core/Removal/EnclosingFolders.h"

namespace brimvale {

bool EnclosingFolders::areOrEnclose(const FileURL &folder) {
    if (const auto known = known_.find(folder.path()); known != known_.end())
        return known->second;
    const FileURL around = folder.parent();
    const bool answer = folders_.contains(folder) || (around != folder && areOrEnclose(around));
    known_.emplace(folder.path(), answer);
    return answer;
}

} // namespace brimvale
