#pragma once

#include "Base/Bytes.h"
#include "Core/Scan/FileTally.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brimvale {

/// A number of files and their allocated bytes.
struct FileFigures {
    std::int64_t count = 0;
    std::int64_t bytes = 0;

    void add(const FileFigures &more) {
        count = checkedAdd(count, more.count);
        bytes = checkedAdd(bytes, more.bytes);
    }

    friend bool operator==(const FileFigures &, const FileFigures &) = default;
};

/// The files of a folder by type and age.
class FileSums {
public:
    void add(const FileTallyEntry &entry) {
        figures_[static_cast<std::size_t>(entry.type)][static_cast<std::size_t>(entry.age)].add(
            {entry.count, entry.bytes});
    }

    void add(const FileSums &others) {
        for (std::size_t type = 0; type < fileTypeCount; ++type)
            for (std::size_t age = 0; age < fileAgeCount; ++age)
                figures_[type][age].add(others.figures_[type][age]);
    }

    [[nodiscard]] FileFigures of(FileType type, FileAge age) const {
        return figures_[static_cast<std::size_t>(type)][static_cast<std::size_t>(age)];
    }
    [[nodiscard]] FileFigures of(FileType type) const {
        FileFigures sum;
        for (std::size_t age = 0; age < fileAgeCount; ++age)
            sum.add(of(type, static_cast<FileAge>(age)));
        return sum;
    }
    [[nodiscard]] FileFigures of(FileAge age) const {
        FileFigures sum;
        for (std::size_t type = 0; type < fileTypeCount; ++type)
            sum.add(of(static_cast<FileType>(type), age));
        return sum;
    }
    [[nodiscard]] FileFigures total() const {
        FileFigures sum;
        for (std::size_t age = 0; age < fileAgeCount; ++age)
            sum.add(of(static_cast<FileAge>(age)));
        return sum;
    }

private:
    std::array<std::array<FileFigures, fileAgeCount>, fileTypeCount> figures_{};
};

} // namespace brimvale
