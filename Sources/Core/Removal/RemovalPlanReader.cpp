#include "Core/Removal/RemovalPlan.h"

#include "Base/ByteSource.h"
#include "Base/FileError.h"
#include "Base/Hex.h"
#include "Core/Text/JsonReader.h"
#include "Platform/FileContents.h"
#include "Platform/OpenedItem.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

constexpr std::size_t longestPlan = std::size_t{1} << 30; // in bytes

constexpr std::int64_t newestVersion = 1;

/// A text as the source of its bytes.
class TextSource final : public ByteSource {
public:
    explicit TextSource(std::string_view text) : text_(text) {}
    std::optional<std::string_view> next() override { return std::exchange(text_, {}); }

private:
    std::string_view text_;
};

template<class Number>
std::optional<Number> numberIn(const std::string &digits) {
    Number number = 0;
    const char *end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && rest == end && !digits.empty() ? std::optional(number) : std::nullopt;
}

/// The members of one entry that have been read.
struct ReadEntry {
    std::optional<std::string> path, pathHex, contents;
    std::optional<bool> isFolder, inodeMayChange;
    std::optional<std::int64_t> size, length, created, modified;
    std::optional<std::uint64_t> device, inode, parentDevice, parentInode;
};

/// What else is read of an item.
struct ItemParts {
    std::optional<PlannedEntry> equalTo;
    std::optional<ProgramSigns> notWhile;
    std::vector<PlannedEntry> companions;
};

/// Nothing where a member is missing, or no plan would have this path.
std::optional<PlannedEntry> entryOf(const ReadEntry &read) {
    const std::optional<std::string> path = read.pathHex ? bytesOfHex(*read.pathHex) : read.path;
    if (!path || !path->starts_with('/') || path->find('\0') != std::string::npos || !read.isFolder ||
        !read.inodeMayChange || !read.length || !read.device || !read.inode || !read.parentDevice ||
        !read.parentInode || *read.isFolder != read.contents.has_value())
        return std::nullopt;
    const FileURL place(*path);
    if (!place.namesEntry() || place.standardized() != place)
        return std::nullopt;
    PlannedEntry entry{
        .pin = {place,
                {*read.parentDevice, *read.parentInode},
                {.file = {*read.device, *read.inode}, .isFolder = *read.isFolder, .created = read.created}},
        .change = {*read.length, read.modified},
        .contents = read.contents.value_or("")};
    if (*read.inodeMayChange)
        entry.pin.item.details = entry.change;
    return entry;
}

class PlanReader {
    using Token = JsonReader::Token;

public:
    explicit PlanReader(std::string_view text) : source_(text), json_(source_) {}

    Result<RemovalPlan, std::string> read() {
        if (json_.next() == Token::beginObject)
            while (json_.next() == Token::key)
                readMember(std::string(json_.text())); // the value replaces this text
        const bool isWellFormed = json_.fault().empty() && json_.next() == Token::end;
        if (format_ != "brimvale removal plan")
            return std::string("This file is no removal plan.");
        if (version_ > newestVersion)
            return std::string("A later version of Brimvale made this plan.");
        if (!isWellFormed)
            return "The plan is damaged. " + json_.fault();
        if (version_ != newestVersion || !mode_ || !hasItems_)
            return std::string("The plan is damaged: a part of it is missing.");
        plan_.mode = *mode_;
        return std::move(plan_);
    }

private:
    void readMember(const std::string &key) {
        const Token value = json_.next();
        if (key == "items" && value == Token::beginArray)
            return readItems();
        if (key == "version" && value == Token::number)
            version_ = json_.integer().value_or(0);
        if (value != Token::text)
            return json_.skip(value);
        if (key == "format")
            format_ = json_.text();
        else if (key == "program")
            plan_.program = json_.text();
        else if (key == "host")
            plan_.host = json_.text();
        else if (key == "made")
            plan_.made = json_.text();
        else if (key == "mode")
            mode_ = modeNamed(json_.text());
    }

    static std::optional<RemovalMode> modeNamed(std::string_view name) {
        if (name == "trash")
            return RemovalMode::trash;
        return name == "delete" ? std::optional(RemovalMode::deleteNow) : std::nullopt;
    }

    void readItems() {
        hasItems_ = true;
        forEachObject([this] { readItem(); });
    }

    /// Reads the rest of an array of objects; `readObject` reads one from its first key on.
    template<class ReadObject>
    void forEachObject(ReadObject readObject) {
        Token token = json_.next();
        for (; token == Token::beginObject; token = json_.next())
            readObject();
        if (token != Token::endArray)
            json_.fail("an item is not an object");
    }

    void readItem() {
        ItemParts parts;
        const ReadEntry read = readEntry(&parts);
        std::optional<PlannedEntry> entry = entryOf(read);
        if (!entry || read.size.value_or(-1) < 0) {
            json_.fail("an item is not complete");
            return;
        }
        plan_.items.push_back({.entry = *std::move(entry),
                               .size = *read.size,
                               .equalTo = std::move(parts.equalTo),
                               .notWhile = std::move(parts.notWhile),
                               .companions = std::move(parts.companions)});
    }

    /// Reads an entry that belongs to an item.
    [[nodiscard]] std::optional<PlannedEntry> readInnerEntry() {
        std::optional<PlannedEntry> entry = entryOf(readEntry(nullptr));
        if (!entry)
            json_.fail("an item is not complete");
        return entry;
    }

    /// The members of an entry. `item` gets the parts that only an item has; null for an entry inside one.
    [[nodiscard]] ReadEntry readEntry(ItemParts *item) {
        ReadEntry read;
        while (json_.next() == Token::key) {
            const std::string key = json_.text(); // the value replaces this text
            const Token value = json_.next();
            if (item == nullptr || !readPartOf(*item, key, value))
                readMemberOf(read, key, value);
        }
        return read;
    }

    /// Reads a member that is not a plain value; false for any other.
    bool readPartOf(ItemParts &item, std::string_view key, Token value) {
        if (value == Token::beginObject && key == "equalTo")
            item.equalTo = readInnerEntry();
        else if (value == Token::beginObject && key == "notWhile")
            item.notWhile = readProgram();
        else if (value == Token::beginArray && key == "companions")
            forEachObject([&] {
                if (std::optional<PlannedEntry> companion = readInnerEntry())
                    item.companions.push_back(*std::move(companion));
            });
        else if (key == "equalTo" || key == "notWhile" || key == "companions")
            json_.fail("an item is not complete");
        else
            return false;
        return true;
    }

    [[nodiscard]] ProgramSigns readProgram() {
        ProgramSigns program;
        program.mustNotRun = true;
        while (json_.next() == Token::key) {
            const std::string key = json_.text();
            const Token value = json_.next();
            if (value == Token::beginArray && key == "processes")
                program.processes = readTexts();
            else if (value == Token::beginArray && key == "locks")
                program.locks = readTexts();
            else if (value == Token::beginArray && key == "marks")
                program.marks = readTexts();
            else if (value == Token::text && key == "name")
                program.name = json_.text();
            else if (value == Token::text && key == "openFolder")
                program.openFolder = json_.text();
            else if (value == Token::text && key == "openFolderHex")
                program.openFolder = bytesOfHex(json_.text()).value_or("");
            else
                json_.skip(value);
        }
        return program;
    }

    [[nodiscard]] std::vector<std::string> readTexts() {
        std::vector<std::string> texts;
        Token token = json_.next();
        for (; token == Token::text; token = json_.next())
            texts.push_back(json_.text());
        if (token != Token::endArray)
            json_.fail("a text was expected");
        return texts;
    }

    void readMemberOf(ReadEntry &entry, std::string_view key, Token value) {
        if (value == Token::text)
            readText(entry, key, json_.text());
        else if (value == Token::number && key == "size")
            entry.size = json_.integer();
        else if (value == Token::number && key == "length")
            entry.length = json_.integer();
        else if (value == Token::truth && key == "isFolder")
            entry.isFolder = json_.text() == "true";
        else if (value == Token::truth && key == "inodeMayChange")
            entry.inodeMayChange = json_.text() == "true";
        else
            json_.skip(value);
    }

    void readText(ReadEntry &entry, std::string_view key, const std::string &text) {
        if (key == "path")
            entry.path = text;
        else if (key == "pathHex")
            entry.pathHex = text;
        else if (key == "contents")
            entry.contents = text;
        else if (key == "device")
            entry.device = numberIn<std::uint64_t>(text);
        else if (key == "inode")
            entry.inode = numberIn<std::uint64_t>(text);
        else if (key == "parentDevice")
            entry.parentDevice = numberIn<std::uint64_t>(text);
        else if (key == "parentInode")
            entry.parentInode = numberIn<std::uint64_t>(text);
        else if (key == "created")
            readMoment(entry.created, text);
        else if (key == "modified")
            readMoment(entry.modified, text);
    }

    /// These may be missing, but what is there must be understood.
    void readMoment(std::optional<std::int64_t> &moment, const std::string &text) {
        moment = numberIn<std::int64_t>(text);
        if (!moment)
            json_.fail("a date is no number");
    }

    TextSource source_;
    JsonReader json_;
    RemovalPlan plan_;
    std::string format_;
    std::int64_t version_ = 0;
    std::optional<RemovalMode> mode_;
    bool hasItems_ = false;
};

} // namespace

Result<RemovalPlan, std::string> planIn(std::string_view text) {
    return PlanReader(text).read();
}

Result<RemovalPlan, std::string> planAt(const std::string &path) {
    const Result<OpenedItem, int> found = OpenedItem::at(FileURL(path).standardized());
    if (const int *error = std::get_if<int>(&found))
        return FileError::posix(*error).localizedDescription;
    const auto &file = std::get<OpenedItem>(found);
    if (othersMayChange(file))
        return std::string(
            "Somebody else may change this file or a folder that contains it. Copy it to a place "
            "that only you can write to.");
    const std::optional<std::string> text = contentsOfFile(file.place().path(), longestPlan);
    if (!text)
        return std::string("This file can’t be read as a plan.");
    return planIn(*text);
}

} // namespace brimvale
