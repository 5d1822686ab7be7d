#include "CommandLine/TextTable.h"

#include "Base/Text.h"
#include "CommandLine/TerminalText.h"

#include <algorithm>
#include <cstddef>

namespace brimvale::commandLine {

TextTable::Column TextTable::sizeColumn(std::string_view title) {
    return {.title = title, .side = Column::Side::right, .minimumWidth = usualSizeWidth};
}

TextTable::Column TextTable::ageColumn(std::string_view title) {
    return {.title = title, .side = Column::Side::right, .minimumWidth = 14};
}

void TextTable::write(TextSink &output) const {
    std::vector<std::string> titles;
    std::vector<std::size_t> widths;
    for (const Column &column : columns_) {
        titles.emplace_back(column.title);
        widths.push_back(std::max(column.minimumWidth, characterCount(column.title)));
    }
    for (const auto &row : rows_)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], characterCount(row[i]));

    const auto writeRow = [&](const std::vector<std::string> &cells) {
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            line += i == 0 ? "" : "  ";
            if (columns_[i].side == Column::Side::right)
                line += rightAligned(cells[i], widths[i]);
            else
                line += cells[i];
            if (i + 1 < cells.size() && columns_[i].side == Column::Side::left)
                line.append(widths[i] - characterCount(cells[i]), ' ');
        }
        output.write(line.append("\n"));
    };
    writeRow(titles);
    for (const auto &row : rows_)
        writeRow(row);
}

} // namespace brimvale::commandLine
