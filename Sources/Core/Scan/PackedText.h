#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace brimvale {

/// Bytes that do not change, in as little memory as possible: a pointer here, and one byte more than they
/// have in `NodeMemory`. It reads like a std::string.
class PackedText {
public:
    PackedText() = default;
    explicit PackedText(std::string_view text);
    PackedText(PackedText &&other) noexcept;
    PackedText &operator=(PackedText &&other) noexcept;
    ~PackedText();

    /// The same bytes once more, without memory of their own where that is possible.
    [[nodiscard]] PackedText shared() const;

    /// Valid as long as this object is neither assigned nor destroyed.
    [[nodiscard]] std::string_view view() const;
    /// Where they are in memory, to request them in advance; null for none.
    [[nodiscard]] const void *place() const { return bytes_; }
    operator std::string_view() const { return view(); }
    operator std::string() const { return std::string(view()); }

    [[nodiscard]] std::size_t size() const { return view().size(); }
    [[nodiscard]] bool empty() const { return bytes_ == nullptr; }

    friend bool operator==(const PackedText &a, const PackedText &b) { return a.view() == b.view(); }
    friend bool operator==(const PackedText &a, std::string_view b) { return a.view() == b; }
    friend auto operator<=>(const PackedText &a, const PackedText &b) { return a.view() <=> b.view(); }
    friend auto operator<=>(const PackedText &a, std::string_view b) { return a.view() <=> b; }

private:
    /// The length, then the bytes; null for none. A length above 254 follows the byte 255.
    const char *bytes_ = nullptr;
};

} // namespace brimvale
