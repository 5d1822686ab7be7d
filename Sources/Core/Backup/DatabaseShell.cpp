#include "Core/Backup/DatabaseShell.h"

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/ProcessRunner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace brimvale::DatabaseShell {

namespace {

/// The checks print these lines, in this order, before the rows of the query.
constexpr std::string_view opened = "opened", plainTables = "tables", plainColumns = "columns",
                           measured = "measured", fits = "fits";
constexpr std::array checkLines = {opened, plainTables, plainColumns, measured, fits};

/// SQL in the database cannot call dangerous functions after this. Needs SQLite 3.31.
const std::string distrust = "PRAGMA trusted_schema=OFF;";

/// Without "-init" sqlite3 would read ~/.sqliterc. It takes the home folder from the user database, so
/// setting $HOME would not help.
const std::vector<std::string> quietOptions = {"-batch", "-bail", "-init", "/dev/null"};

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string> &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// Why the file at this path is not safe to open, as a sentence.
std::optional<std::string> faultOf(const std::string &path) {
    if (linkTarget(path))
        return "It is a link. Choose the file that it leads to.";
    const std::optional<FileStatus> status = fileStatus(path);
    if (status && status->kind != FileKind::regularFile)
        return "It is not a file.";
    if (!status || !FileReader(path).isOpen())
        return FileError::posix(errno).localizedDescription + ".";
    // sqlite3 opens these too, and would wait for a writer if one were a pipe.
    for (const char *ending : {"-wal", "-shm", "-journal"}) {
        const std::string companion = path + ending;
        const std::optional<FileStatus> beside = fileStatus(companion);
        if (beside && beside->kind != FileKind::regularFile)
            return "“" + displayText(FileURL(companion).fileName()) + "” beside it is not a file.";
    }
    return std::nullopt;
}

/// The options for safe reading that this sqlite3 supports; nothing if it supports none. The probe takes a
/// few milliseconds, so it is repeated for every database.
std::optional<std::vector<std::string>> safeOptions(const Tools &tools) {
    const std::vector<std::string> probe = {":memory:", distrust + "PRAGMA trusted_schema;"};
    for (std::vector<std::string> options :
         {joined(quietOptions, {"-safe"}), std::vector<std::string>(quietOptions)}) {
        const auto result = runProcess(tools.databaseShell, joined(options, probe), StandardError::discarded);
        if (result && result->exitStatus == 0 && result->output == "0\n")
            return options;
    }
    return std::nullopt;
}

std::string listOf(const std::vector<std::string_view> &names, std::string_view before,
                   std::string_view between, std::string_view after) {
    std::string list;
    for (const std::string_view name : names)
        list.append(list.empty() ? "" : between).append(before).append(name).append(after);
    return list;
}

/// SQL that prints `word` if the condition holds. Otherwise it is an error, which ends sqlite3 before the
/// query.
std::string require(std::string_view word, const std::string &condition) {
    return "SELECT substr('" + std::string(word) + "', 1 + abs(CASE WHEN " + condition +
           " THEN 0 ELSE -9223372036854775808 END)) ";
}

/// The checks before the query. They run in the same transaction, so the tables cannot be replaced in
/// between. The first check uses only the list of tables. It also rejects tables and views that would replace
/// the function `pragma_table_xinfo` in the second check. SQLite itself writes "CREATE TABLE" in this form,
/// and a virtual table can pretend to have pages. The last check protects the temporary files of sqlite3,
/// which holds all rows while it sorts them.
std::string checksOf(const Question &question) {
    const std::vector<std::string_view> &tables = question.tables;
    const std::string count = std::to_string(tables.size());
    return distrust + "BEGIN;" + "SELECT 'opened' FROM (SELECT count(*) FROM sqlite_master);" +
           require(
               "tables",
               "count(*) = " + count +
                   " AND total(type = 'table' AND rootpage > 0 AND sql GLOB 'CREATE TABLE *') = " + count) +
           "FROM sqlite_master WHERE lower(name) IN (" + listOf(tables, "'", ",", "'") +
           ") OR name LIKE 'pragma%';" + require("columns", "count(*) = 0") + "FROM (" +
           listOf(tables, "SELECT hidden FROM pragma_table_xinfo('", " UNION ALL ", "')") +
           ") WHERE hidden <> 0;CREATE TEMP TABLE measured AS SELECT (" + question.sizeQuery +
           ") AS bytes;SELECT 'measured';" +
           require("fits", "bytes <= " + std::to_string(question.mostBytes)) + "FROM temp.measured;";
}

/// Divides the output of sqlite3 into the lines of the checks and the rows, as it comes.
class RowReader {
public:
    explicit RowReader(const TakeRow &take) : take_(take) {}

    void read(std::string_view piece) {
        while (!piece.empty() && wantsMore_ && !hasFailed_) {
            const std::size_t end = piece.find('\n');
            const bool isWhole = end != std::string_view::npos;
            begun_ += piece.substr(0, end);
            piece.remove_prefix(isWhole ? end + 1 : piece.size());
            if (isWhole)
                finishLine();
        }
    }

    /// Call at the end: the last row of a shell that was stopped has no line feed.
    void finish() {
        if (!begun_.empty() && wantsMore_ && !hasFailed_)
            finishLine();
    }

    [[nodiscard]] bool wantsMore() const { return wantsMore_; }

    /// Whether the check that prints this line has passed, and all before it.
    [[nodiscard]] bool hasPassed(std::string_view check) const {
        const auto found = std::find(checkLines.begin(), checkLines.end(), check);
        return passed_ > static_cast<std::size_t>(found - checkLines.begin());
    }

private:
    void finishLine() {
        if (passed_ == checkLines.size())
            wantsMore_ = take_(begun_);
        else if (begun_ == checkLines[passed_])
            ++passed_;
        else
            hasFailed_ = true;
        begun_.clear();
    }

    const TakeRow &take_;
    std::size_t passed_ = 0; ///< of the checks
    std::string begun_;      ///< the line that is not complete yet
    bool hasFailed_ = false; ///< a check has: nothing that follows is a row
    bool wantsMore_ = true;
};

/// Why rows are missing, or an empty text.
std::string reasonOf(const ProcessResult &result, const Question &question, const RowReader &reader) {
    if (result.isTooLong || (reader.hasPassed(measured) && !reader.hasPassed(fits)))
        return "It holds more than " + Fmt::byteFormatter(static_cast<std::int64_t>(question.mostBytes)) +
               " of text, too much to read.";
    if (!result.exitStatus)
        return "sqlite3 was stopped before it had read everything.";
    if (!reader.hasPassed(opened))
        return "sqlite3 can’t read it as a database.";
    if (!reader.hasPassed(plainColumns))
        return "It does not have the plain tables of a Messages database.";
    return result.exitStatus == 0 ? "" : "sqlite3 could not read all of it.";
}

} // namespace

Answer ask(const Tools &tools, const std::string &path, const Question &question, const TakeRow &take,
           const StopFlag &cancelled) {
    if (std::optional<std::string> fault = faultOf(path))
        return {.reason = *std::move(fault)};
    if (!fileStatus(tools.databaseShell))
        return {.reason = "sqlite3 is not installed."};
    const auto options = safeOptions(tools);
    if (!options)
        return {.reason = "The installed sqlite3 does not work or is older than 3.31."};

    std::vector<std::string> arguments = {"-readonly", "-separator", std::string(1, question.separator)};
    arguments = joined(std::move(arguments), *options);
    arguments = joined(std::move(arguments), {"-cmd", checksOf(question), path, question.query});
    RowReader reader(take);
    // Read as bytes: as text, a single ill-formed value would make everything unreadable.
    const std::optional<ProcessResult> result = runProcessInPieces(
        tools.databaseShell, arguments, StandardError::discarded,
        [&](std::string_view piece) { reader.read(piece); },
        [&] { return cancelled.isSet() || !reader.wantsMore(); }, question.mostBytes);
    if (!result)
        return {.reason = "sqlite3 could not be started."};
    reader.finish();
    return {.reason = reasonOf(*result, question, reader), .isTooLong = result->isTooLong};
}

} // namespace brimvale::DatabaseShell
