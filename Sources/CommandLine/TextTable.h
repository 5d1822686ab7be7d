#pragma once

#include "Base/TextSink.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brimvale::commandLine {

/// A table as text: one line per row. The columns are two spaces apart and as wide as their widest cells.
class TextTable {
public:
    struct Column {
        std::string_view title;
        enum class Side { left, right } side = Side::left;
        std::size_t minimumWidth = 0;
    };

    /// A column of formatted sizes.
    [[nodiscard]] static Column sizeColumn(std::string_view title);

    /// A column of ages, such as "11 months ago".
    [[nodiscard]] static Column ageColumn(std::string_view title);

    explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with a cell for each column. The cells must already be harmless on a terminal
    /// (`terminalText`).
    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    /// Writes the titles and the rows.
    void write(TextSink &output) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace brimvale::commandLine
