#include "Core/Find/FileFilter.h"

#include "Base/Text.h"
#include "Base/VisibleText.h"

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace brimvale {

namespace {

/// Without case, and composed, because a file system may return "é" as two characters, while a keyboard types
/// one.
QString comparable(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .normalized(QString::NormalizationForm_C)
        .toCaseFolded();
}

bool isAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char one) { return (one & 0x80) != 0; });
}

std::string loweredText(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowered);
    return lower;
}

struct Unit {
    char letter;
    double worth;
};

constexpr std::array sizeUnits{Unit{'b', 1}, Unit{'k', 1e3}, Unit{'m', 1e6}, Unit{'g', 1e9}, Unit{'t', 1e12}};
constexpr double day = 24.0 * 60 * 60;

/// A number and a unit, of which `rest` may follow ("100MB"); nothing if it is none.
template<std::size_t count>
std::optional<double> amount(std::string_view text, const std::array<Unit, count> &units,
                             std::string_view rest = {}) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789."), text.size());
    bool isNumber = false;
    const double number = QByteArray(text.data(), static_cast<qsizetype>(end)).toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    std::string unit = loweredText(text.substr(end));
    if (unit.size() > 1 && unit.substr(1) == rest)
        unit.resize(1);
    if (unit.empty())
        return number == 0 ? std::optional(0.0) : std::nullopt;
    const auto *found = std::find_if(units.begin(), units.end(),
                                     [&](const Unit &one) { return unit == std::string(1, one.letter); });
    return found == units.end() ? std::nullopt : std::optional(number * found->worth);
}

std::optional<std::int64_t> sizeIn(std::string_view text) {
    const std::optional<double> bytes = amount(text, sizeUnits, "b");
    if (!bytes || *bytes > 9e18)
        return std::nullopt;
    return static_cast<std::int64_t>(std::llround(*bytes));
}

std::optional<std::uint32_t> timeIn(std::string_view text) {
    static constexpr std::array units{Unit{'d', day}, Unit{'w', 7 * day}, Unit{'m', 30 * day},
                                      Unit{'y', 365 * day}};
    if (text == "6m" || text == "6M") // half a year, as in the ages
        return rangeOf(FileAge::halfYear).second;
    const std::optional<double> seconds = amount(text, units);
    if (!seconds || *seconds > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(*seconds);
}

std::string quoted(std::string_view term) {
    return std::string("“").append(visibleText(term)).append("”");
}

std::string typeList() {
    std::string list;
    for (std::size_t type = 0; type < fileTypeCount; ++type)
        list.append(type == 0 ? "" : ", ").append(wordsOf(static_cast<FileType>(type)).key);
    return list;
}

/// The terms of a filter: words, of which those in quotation marks are one.
std::vector<std::string> termsOf(std::string_view text) {
    std::vector<std::string> terms;
    std::string term;
    bool isQuoted = false;
    for (const char one : text) {
        if (one == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && (one == ' ' || one == '\t' || one == '\n')) {
            if (!term.empty())
                terms.push_back(std::exchange(term, {}));
        } else {
            term += one;
        }
    }
    if (!term.empty())
        terms.push_back(term);
    return terms;
}

/// Whether the files of an age at `moment` were changed before `then`; nothing where only some were.
std::optional<bool> areOlder(FileAge age, std::uint32_t then, std::uint32_t moment) {
    if (age == FileAge::unknown)
        return false;
    const std::uint32_t wanted = moment - std::min(moment, then);
    const auto [least, most] = rangeOf(age); // of the seconds that have passed
    if (least >= wanted)
        return true;
    return most <= wanted ? std::optional(false) : std::nullopt;
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(),
                                                     [](char a, char b) { return a == lowered(b); });
}

} // namespace

std::variant<FileFilter, FileFilter::Fault> FileFilter::read(std::string_view text, std::uint32_t moment) {
    return read(termsOf(text), moment);
}

std::variant<FileFilter, FileFilter::Fault> FileFilter::read(const std::vector<std::string> &terms,
                                                             std::uint32_t moment) {
    FileFilter filter;
    for (const std::string &term : terms)
        if (!term.empty())
            if (std::optional<Fault> fault = filter.readTerm(term, moment))
                return *std::move(fault);
    return filter;
}

/// Reads one term; what is wrong with it, if anything.
std::optional<FileFilter::Fault> FileFilter::readTerm(std::string_view term, std::uint32_t moment) {
    constexpr std::string_view older = "older:", newer = "newer:", type = "type:";
    if (term.front() == '>' || term.front() == '<')
        return readSize(term);
    if (startsWith(term, older) || startsWith(term, newer))
        return readTime(term, moment);
    if (startsWith(term, type))
        return readTypes(term.substr(type.size()));
    words_.push_back({comparable(term).toStdU16String(), isAscii(term) ? loweredText(term) : ""});
    return std::nullopt;
}

std::optional<FileFilter::Fault> FileFilter::readSize(std::string_view term) {
    const std::optional<std::int64_t> bytes = sizeIn(term.substr(1));
    if (!bytes)
        return Fault{quoted(term) + " is not a size. Write >100M or <1.5G, for example."};
    if (term.front() == '>')
        moreThan_ = std::max(moreThan_, *bytes);
    else
        lessThan_ = std::min(lessThan_, *bytes);
    return std::nullopt;
}

std::optional<FileFilter::Fault> FileFilter::readTime(std::string_view term, std::uint32_t moment) {
    const std::optional<std::uint32_t> seconds = timeIn(term.substr(term.find(':') + 1));
    if (!seconds)
        return Fault{quoted(term) +
                     " is not a time. Write older:1y or newer:2w, for example, with d, w, m or y."};
    const std::uint32_t then = moment - std::min(moment, *seconds);
    if (lowered(term.front()) == 'o')
        changedBefore_ = std::min(changedBefore_.value_or(then), then);
    else
        changedAfter_ = std::max(changedAfter_.value_or(then), then);
    return std::nullopt;
}

/// Reads keys with commas between them.
std::optional<FileFilter::Fault> FileFilter::readTypes(std::string_view keys) {
    std::bitset<fileTypeCount> types;
    for (;;) {
        const std::string_view key = keys.substr(0, keys.find(','));
        const std::optional<FileType> type = fileTypeWithKey(key);
        if (!type)
            return Fault{quoted(key) + " is not a type. Types are " + typeList() + "."};
        types.set(static_cast<std::size_t>(*type));
        if (key.size() == keys.size())
            break;
        keys.remove_prefix(key.size() + 1);
    }
    types_ &= types;
    return std::nullopt;
}

bool FileFilter::hasConditions() const {
    return moreThan_ >= 0 || lessThan_ != std::numeric_limits<std::int64_t>::max() || changedBefore_ ||
           changedAfter_ || !types_.all();
}

bool FileFilter::matchesFigures(std::int64_t bytes, std::uint32_t modified) const {
    return bytes > moreThan_ && bytes < lessThan_ &&
           (!changedBefore_ || (modified != 0 && modified < *changedBefore_)) &&
           (!changedAfter_ || modified >= *changedAfter_);
}

bool FileFilter::matchesName(std::string_view name) const {
    if (words_.empty())
        return true;
    // Most names are plain, and looking into these takes no memory.
    if (isAscii(name))
        return std::all_of(words_.begin(), words_.end(), [&](const Word &word) {
            return !word.ascii.empty() &&
                   std::search(name.begin(), name.end(), word.ascii.begin(), word.ascii.end(),
                               [](char a, char b) { return lowered(a) == b; }) != name.end();
        });
    const QString text = comparable(name);
    return std::all_of(words_.begin(), words_.end(),
                       [&](const Word &word) { return text.contains(QStringView(word.text)); });
}

bool FileFilter::acceptsFile(std::string_view name, std::int64_t bytes, std::uint32_t modified) const {
    return matchesFigures(bytes, modified) &&
           (types_.all() || types_.test(static_cast<std::size_t>(fileTypeOf(name)))) && matchesName(name);
}

bool FileFilter::acceptsFolder(std::string_view name, std::int64_t bytes, std::uint32_t modified) const {
    return hasWords() && types_.all() && matchesFigures(bytes, modified) && matchesName(name);
}

std::optional<bool> FileFilter::acceptsSmall(FileType type, FileAge age, std::int64_t limit,
                                             std::uint32_t moment) const {
    if (!types_.test(static_cast<std::size_t>(type)) || moreThan_ >= limit)
        return false;
    const bool sizeMatters = moreThan_ >= 0 || lessThan_ < limit;
    std::optional<bool> isOfAge = true;
    if (changedBefore_)
        isOfAge = areOlder(age, *changedBefore_, moment);
    if (changedAfter_ && isOfAge != false) {
        const std::optional<bool> isOlder = areOlder(age, *changedAfter_, moment);
        const bool isNewer = isOlder == false && age != FileAge::unknown;
        isOfAge = !isOlder ? std::nullopt : isNewer ? isOfAge : std::optional(false);
    }
    if (isOfAge != true || (!sizeMatters && !hasWords()))
        return isOfAge;
    return std::nullopt;
}

} // namespace brimvale
