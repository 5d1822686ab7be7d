#include "Core/Duplicates/DuplicateEntries.h"

#include <memory>
#include <utility>

namespace brimvale {

CleanupEntry entryToRemove(const DuplicateGroup &group, std::size_t index, std::size_t staying) {
    const DuplicateFile &file = group.files[index];
    const DuplicateFile &kept = group.files[staying];
    CleanupNotes notes{.freesLess = file.freesLess};
    notes.equal = std::make_shared<const EqualFile>(EqualFile{file.record, kept.url, kept.record});
    if (!group.mayGo(index, staying)) // nobody may ask for it, but then it is refused
        notes.keptBecause = file.keptBecause.empty() ? "It is the file that stays." : file.keptBecause;
    return {.url = file.url,
            .size = file.size,
            .modified = file.record.modified,
            .pin = file.pin,
            .notes = std::make_shared<const CleanupNotes>(std::move(notes))};
}

} // namespace brimvale
