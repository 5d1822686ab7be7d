#include "Platform/Linux/RemovalRequest.h"

#include "Base/VisibleText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

namespace brimvale {

namespace {

constexpr std::string_view greeting = "brimvale removal 1";
constexpr std::string_view folderWord = "folder";
constexpr std::string_view otherWord = "other";
constexpr std::string_view unknownTime = "-";

constexpr std::string_view removedLine = "removed";
constexpr std::string_view keptStart = "kept: ";

void append(std::string &request, std::string_view field) {
    request.append(field).push_back('\0');
}

void append(std::string &request, const FileIdentity &identity) {
    append(request, std::to_string(identity.device));
    append(request, std::to_string(identity.inode));
}

/// Reads one field after the other. After the first one that is malformed it stays at fault.
class Fields {
public:
    explicit Fields(std::string_view bytes) : rest_(bytes) {}

    [[nodiscard]] bool areSound() const { return areSound_; }
    [[nodiscard]] bool areAllRead() const { return areSound_ && rest_.empty(); }

    std::string_view text() {
        const std::size_t end = rest_.find('\0');
        if (end == std::string_view::npos) {
            areSound_ = false;
            rest_ = {};
            return {};
        }
        const std::string_view field = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return field;
    }

    template<class Number>
    Number number() {
        return numberIn<Number>(text());
    }

    FileIdentity identity() {
        const auto device = number<std::uint64_t>();
        return {device, number<std::uint64_t>()};
    }

    /// Whether the field is the first of the words; at fault if it is neither.
    bool isFirst(std::string_view word, std::string_view other) {
        const std::string_view field = text();
        require(field == word || field == other);
        return field == word;
    }

    std::optional<std::int64_t> time() {
        const std::string_view field = text();
        return field == unknownTime ? std::nullopt : std::optional(numberIn<std::int64_t>(field));
    }

    /// A path in plain form to something that may be removed; "/" where it is at fault.
    FileURL place() {
        const std::string path(text());
        const bool isPlain = path.starts_with('/') && path.size() > 1 && !path.ends_with('/') &&
                             path.find("//") == std::string::npos && !hasDots(path);
        require(isPlain);
        return FileURL(isPlain ? path : "/");
    }

    void require(bool isMet) { areSound_ = areSound_ && isMet; }

private:
    template<class Number>
    Number numberIn(std::string_view field) {
        Number number = 0;
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
        // Only the shortest form: no zero in front, and no "-0".
        require(error == std::errc() && std::to_string(number) == field);
        return number;
    }

    /// Whether a component is "." or "..".
    static bool hasDots(const std::string &path) {
        return (path + "/").find("/./") != std::string::npos ||
               (path + "/").find("/../") != std::string::npos;
    }

    std::string_view rest_;
    bool areSound_ = true;
};

/// One statement for each field, because they must be read in this order.
ItemPin readItem(Fields &fields) {
    FileURL place = fields.place();
    const FileIdentity folder = fields.identity();
    const FileIdentity own = fields.identity();
    const bool isFolder = fields.isFirst(folderWord, otherWord);
    return {std::move(place), folder, {own, isFolder, fields.time()}};
}

} // namespace

std::string removalRequest(const std::vector<ItemPin> &items) {
    std::string request;
    append(request, greeting);
    append(request, std::to_string(items.size()));
    for (const ItemPin &pin : items) {
        append(request, pin.place.path());
        append(request, pin.folder);
        append(request, pin.item.file);
        append(request, pin.item.isFolder ? folderWord : otherWord);
        append(request, pin.item.created ? std::to_string(*pin.item.created) : unknownTime);
    }
    return request;
}

std::optional<std::vector<ItemPin>> itemsOfRequest(std::string_view request) {
    if (request.size() > longestRemovalRequest)
        return std::nullopt;
    Fields fields(request);
    fields.require(fields.text() == greeting);
    const auto count = fields.number<std::uint64_t>();
    std::vector<ItemPin> items;
    while (fields.areSound() && items.size() < count)
        items.push_back(readItem(fields));
    return fields.areAllRead() ? std::optional(std::move(items)) : std::nullopt;
}

std::string removalAnswer(const std::optional<std::string> &reason) {
    // A name in the reason may contain the end of a line.
    return (reason ? std::string(keptStart) + visibleText(*reason) : std::string(removedLine)) + "\n";
}

KeptReasons reasonsOfAnswer(std::string_view answer, std::size_t items) {
    KeptReasons reasons;
    for (std::size_t end = 0; (end = answer.find('\n')) != std::string_view::npos;
         answer.remove_prefix(end + 1)) {
        const std::string_view line = answer.substr(0, end);
        if (reasons.size() == items || (line != removedLine && !line.starts_with(keptStart)))
            return KeptReasons(items);
        reasons.emplace_back(line == removedLine ? std::string_view() : line.substr(keptStart.size()));
    }
    reasons.resize(items);
    return reasons;
}

} // namespace brimvale
