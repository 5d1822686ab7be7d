#include "Core/Removal/RemovalPlan.h"

#include "Base/ByteSource.h"
#include "Base/FileError.h"
#include "Base/Hex.h"
#include "Core/Text/JsonReader.h"
#include "Platform/FileContents.h"
#include "Platform/FileStatus.h"

#include <cerrno>
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

/// The members of one item that have been read.
struct ReadItem {
    std::optional<std::string> path, pathHex;
    std::optional<bool> isFolder, inodeMayChange;
    std::optional<std::int64_t> size, length, created, modified;
    std::optional<std::uint64_t> device, inode, parentDevice, parentInode;
};

/// Nothing where a member is missing, or no plan would have this path.
std::optional<PlannedItem> itemOf(const ReadItem &read) {
    const std::optional<std::string> path = read.pathHex ? bytesOfHex(*read.pathHex) : read.path;
    if (!path || !path->starts_with('/') || !read.isFolder || !read.inodeMayChange || !read.size ||
        !read.length || !read.device || !read.inode || !read.parentDevice || !read.parentInode ||
        *read.size < 0)
        return std::nullopt;
    const FileURL place(*path);
    if (!place.namesEntry() || place.standardized() != place)
        return std::nullopt;
    PlannedItem item{
        .pin = {place,
                {*read.parentDevice, *read.parentInode},
                {.file = {*read.device, *read.inode}, .isFolder = *read.isFolder, .created = read.created}},
        .size = *read.size,
        .change = {*read.length, read.modified}};
    if (*read.inodeMayChange)
        item.pin.item.details = item.change;
    return item;
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
        Token token = json_.next();
        for (; token == Token::beginObject; token = json_.next()) {
            ReadItem read;
            while (json_.next() == Token::key)
                readMemberOf(read, std::string(json_.text()));
            std::optional<PlannedItem> item = itemOf(read);
            if (!item)
                json_.fail("an item is not complete");
            else
                plan_.items.push_back(*std::move(item));
        }
        if (token != Token::endArray)
            json_.fail("an item is not an object");
    }

    void readMemberOf(ReadItem &item, const std::string &key) {
        const Token value = json_.next();
        if (value == Token::text)
            readText(item, key, json_.text());
        else if (value == Token::number && key == "size")
            item.size = json_.integer();
        else if (value == Token::number && key == "length")
            item.length = json_.integer();
        else if (value == Token::truth && key == "isFolder")
            item.isFolder = json_.text() == "true";
        else if (value == Token::truth && key == "inodeMayChange")
            item.inodeMayChange = json_.text() == "true";
        else
            json_.skip(value);
    }

    void readText(ReadItem &item, std::string_view key, const std::string &text) {
        if (key == "path")
            item.path = text;
        else if (key == "pathHex")
            item.pathHex = text;
        else if (key == "device")
            item.device = numberIn<std::uint64_t>(text);
        else if (key == "inode")
            item.inode = numberIn<std::uint64_t>(text);
        else if (key == "parentDevice")
            item.parentDevice = numberIn<std::uint64_t>(text);
        else if (key == "parentInode")
            item.parentInode = numberIn<std::uint64_t>(text);
        else if (key == "created")
            readMoment(item.created, text);
        else if (key == "modified")
            readMoment(item.modified, text);
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
    if (!fileStatus(path))
        return FileError::posix(errno).localizedDescription;
    const std::optional<std::string> text = contentsOfFile(path, longestPlan);
    if (!text)
        return std::string("This file can’t be read as a plan.");
    return planIn(*text);
}

} // namespace brimvale
