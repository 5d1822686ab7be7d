#include "CommandLine/EntryTable.h"

#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

namespace brimvale::commandLine {

namespace {

/// The characters of "11 months ago".
constexpr int usualAgeWidth = 14;

void writeEntry(Output &output, const std::string &size, const std::string &age, std::string_view path) {
    writeColumns(output, {{size, static_cast<int>(usualSizeWidth)}, {age, usualAgeWidth}}, path);
}

} // namespace

void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries) {
    if (entries.empty())
        return;
    writeEntry(output, "SIZE", "MODIFIED", "PATH");
    for (const CleanupEntry &entry : entries)
        writeEntry(output, Fmt::byteFormatter(entry.size), Fmt::relativeDate(entry.modified),
                   terminalText(entry.url.path()));
}

void writeColumns(Output &output, const std::vector<std::pair<std::string, int>> &cells,
                  std::string_view last) {
    for (const auto &[text, width] : cells) {
        if (width < 0) {
            const auto room = static_cast<std::size_t>(-width);
            const std::size_t count = characterCount(text);
            output.write(text + std::string(room > count ? room - count : 0, ' '));
        } else {
            output.write(rightAligned(text, static_cast<std::size_t>(width)));
        }
        output.write("  ");
    }
    output.write(last);
    output.write("\n");
}

} // namespace brimvale::commandLine
