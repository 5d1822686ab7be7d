#include "Core/Backup/DatabaseShell.h"

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/ProcessRunner.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace brimvale::DatabaseShell {

namespace {

/// The checks print these lines, in this order, before the rows of the query.
constexpr std::string_view opened = "opened\n";
constexpr std::string_view plain = "tables\ncolumns\n";
constexpr std::string_view measured = "measured\n";
constexpr std::string_view fits = "fits\n";

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

/// Separates the rows from the output of the checks. Returns why rows are missing, or an empty text.
std::string reasonOf(const ProcessResult &result, const Question &question, std::string &rows) {
    std::string_view rest = rows;
    const auto take = [&](std::string_view lines) {
        const bool isThere = rest.starts_with(lines);
        rest.remove_prefix(isThere ? lines.size() : 0);
        return isThere;
    };
    const bool hasOpened = take(opened);
    const bool isPlain = hasOpened && take(plain);
    const bool isMeasured = isPlain && take(measured);
    const bool isShort = isMeasured && take(fits) && !result.isTooLong;
    rows.erase(0, isShort ? rows.size() - rest.size() : std::string::npos);
    if (result.isTooLong || (isMeasured && !isShort))
        return "It holds more than " + Fmt::byteFormatter(static_cast<std::int64_t>(question.mostBytes)) +
               " of text, too much to read.";
    if (!result.exitStatus)
        return "sqlite3 was stopped before it had read everything.";
    if (!hasOpened)
        return "sqlite3 can't read it as a database.";
    if (!isPlain)
        return "It does not have the plain tables of a Messages database.";
    return result.exitStatus == 0 ? "" : "sqlite3 could not read all of it.";
}

} // namespace

Answer ask(const Tools &tools, const std::string &path, const Question &question, const StopFlag &cancelled) {
    if (std::optional<std::string> fault = faultOf(path))
        return {.rows = {}, .reason = *std::move(fault)};
    if (!fileStatus(tools.databaseShell))
        return {.rows = {}, .reason = "sqlite3 is not installed."};
    const auto options = safeOptions(tools);
    if (!options)
        return {.rows = {}, .reason = "The installed sqlite3 does not work or is older than 3.31."};

    std::vector<std::string> arguments = {"-readonly", "-separator", std::string(1, question.separator)};
    arguments = joined(std::move(arguments), *options);
    arguments = joined(std::move(arguments), {"-cmd", checksOf(question), path, question.query});
    // Read as bytes: as text, a single ill-formed value would make everything unreadable.
    std::optional<ProcessResult> result = runProcess(
        tools.databaseShell, arguments, StandardError::discarded, [&] { return cancelled.isSet(); },
        question.mostBytes);
    if (!result)
        return {.rows = {}, .reason = "sqlite3 could not be started."};
    Answer answer{.rows = std::move(result->output), .reason = {}};
    answer.reason = reasonOf(*result, question, answer.rows);
    return answer;
}

} // namespace brimvale::DatabaseShell
