#include "Platform/PropertyListBounds.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

namespace {

/// Large applications have a few thousand. Each level takes some hundred bytes of the parser's stack.
constexpr std::size_t mostXmlContainers = 10'000;
constexpr std::ptrdiff_t mostXmlReferences = 20'000;

constexpr int mostBinaryLevels = 64;
constexpr std::uint64_t mostBinaryBytes = 8'000'000; ///< in memory, roughly
constexpr std::uint64_t bytesPerObject = 64;
constexpr std::uint64_t mostBytesPerUnit = 4; ///< of a text converted from UTF-16 to UTF-8

std::size_t occurrences(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// Walks a binary property list as the parser will, without building anything. Numbers are big-endian. Gives
/// up on inconsistent data.
class BinaryOutline {
public:
    explicit BinaryOutline(std::string_view bytes) : bytes_(bytes) {}

    bool isModest() {
        if (!readTrailer())
            return false;
        while (!waiting_.empty()) {
            const Reference next = waiting_.back();
            waiting_.pop_back();
            if (next.level > mostBinaryLevels || !visit(next))
                return false;
        }
        return true;
    }

private:
    struct Reference {
        std::uint64_t object;
        int level;
    };

    /// The number of `width` bytes (at most 8) at `at`, if it ends before `end`.
    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t width,
                                                      std::uint64_t end) const {
        if (width == 0 || width > 8 || at > end || end - at < width)
            return std::nullopt;
        std::uint64_t value = 0;
        for (const char byte : bytes_.substr(at, width))
            value = value << 8 | static_cast<unsigned char>(byte);
        return value;
    }

    bool readTrailer() {
        constexpr std::size_t trailerSize = 32;
        if (bytes_.size() < trailerSize)
            return false;
        const std::uint64_t end = bytes_.size() - trailerSize;
        offsetWidth_ = *number(end + 6, 1, bytes_.size());
        referenceWidth_ = *number(end + 7, 1, bytes_.size());
        objectCount_ = *number(end + 8, 8, bytes_.size());
        table_ = *number(end + 24, 8, bytes_.size());
        waiting_.push_back({*number(end + 16, 8, bytes_.size()), 0});
        return offsetWidth_ > 0 && offsetWidth_ <= 8 && table_ <= end &&
               objectCount_ <= (end - table_) / offsetWidth_;
    }

    /// Counts the memory of an object's contents, and queues the objects it refers to. False to give up.
    bool visit(const Reference &reference) {
        if (reference.object >= objectCount_)
            return false;
        const auto offset = number(table_ + reference.object * offsetWidth_, offsetWidth_, bytes_.size());
        const auto marker = offset ? number(*offset, 1, table_) : std::nullopt;
        if (!marker)
            return false;
        std::uint64_t at = *offset + 1;
        std::uint64_t length = *marker & 0xF;
        switch (*marker >> 4) {
        case 0x4: // data
        case 0x5: // ASCII
        case 0x6: // UTF-16
            return readLength(length, at) && claim(mostBytesPerUnit * length);
        case 0xA: // array
        case 0xC: // set
            return readLength(length, at) && addReferences(at, length, reference.level + 1);
        case 0xD: // dictionary: keys, then values
            return readLength(length, at) && addReferences(at, 2 * length, reference.level + 1);
        default:
            return true;
        }
    }

    /// A length of 15 or more is stored in a number object of its own.
    bool readLength(std::uint64_t &length, std::uint64_t &at) const {
        if (length == 0xF) {
            const auto marker = number(at, 1, table_);
            if (!marker || *marker >> 4 != 0x1)
                return false;
            const std::uint64_t width = std::uint64_t{1} << (*marker & 0xF);
            const auto value = number(at + 1, width, table_);
            if (!value)
                return false;
            length = *value;
            at += 1 + width;
        }
        return length <= bytes_.size();
    }

    bool addReferences(std::uint64_t at, std::uint64_t count, int level) {
        if (!claim(bytesPerObject * count))
            return false;
        for (std::uint64_t i = 0; i < count; ++i) {
            const auto object = number(at + i * referenceWidth_, referenceWidth_, table_);
            if (!object)
                return false;
            waiting_.push_back({*object, level});
        }
        return true;
    }

    bool claim(std::uint64_t bytes) {
        claimed_ += bytes;
        return claimed_ <= mostBinaryBytes;
    }

    std::string_view bytes_;
    std::uint64_t offsetWidth_ = 0;
    std::uint64_t referenceWidth_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t table_ = 0; ///< the table of the objects' offsets, after the objects
    std::uint64_t claimed_ = 0;
    std::vector<Reference> waiting_;
};

} // namespace

bool isModestXmlPropertyList(std::string_view bytes) {
    // Counted without regard to comments or closing tags, so no trick makes the count too low. Some parsers
    // let the outermost element contain itself.
    return occurrences(bytes, "<dict") + occurrences(bytes, "<array") + occurrences(bytes, "<plist") <=
               mostXmlContainers &&
           std::count(bytes.begin(), bytes.end(), '&') <= mostXmlReferences;
}

bool isModestBinaryPropertyList(std::string_view bytes) {
    return BinaryOutline(bytes).isModest();
}

} // namespace brimvale
