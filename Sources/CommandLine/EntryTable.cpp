#include "CommandLine/EntryTable.h"

#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Text/Formatting.h"

namespace brimvale::commandLine {

void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries) {
    if (entries.empty())
        return;
    TextTable table({TextTable::sizeColumn("SIZE"), TextTable::ageColumn("MODIFIED"), {"PATH"}});
    for (const CleanupEntry &entry : entries)
        table.add({Fmt::byteFormatter(entry.size), Fmt::relativeDate(entry.modified),
                   terminalText(entry.url.path())});
    table.write(output);
}

} // namespace brimvale::commandLine
