#include "Core/Scan/PackedText.h"

#include "Core/Scan/NodeMemory.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace brimvale {

namespace {

constexpr unsigned char longText = 255;

} // namespace

PackedText::PackedText(std::string_view text) {
    if (text.empty())
        return;
    const std::size_t length = text.size();
    const bool isLong = length >= longText;
    char *bytes = NodeMemory::takeBytes(1 + (isLong ? sizeof length : 0) + length);
    bytes_ = bytes;
    *bytes++ = static_cast<char>(isLong ? longText : length);
    if (isLong) {
        std::memcpy(bytes, &length, sizeof length);
        bytes += sizeof length;
    }
    std::copy(text.begin(), text.end(), bytes);
}

PackedText::PackedText(PackedText &&other) noexcept : bytes_(std::exchange(other.bytes_, nullptr)) {}

PackedText &PackedText::operator=(PackedText &&other) noexcept {
    std::swap(bytes_, other.bytes_);
    return *this;
}

PackedText PackedText::shared() const {
    PackedText other;
    if (NodeMemory::share(bytes_))
        other.bytes_ = bytes_;
    else
        other = PackedText(view());
    return other;
}

PackedText::~PackedText() {
    NodeMemory::giveBack(bytes_);
}

std::string_view PackedText::view() const {
    if (bytes_ == nullptr)
        return {};
    const auto first = static_cast<unsigned char>(*bytes_);
    if (first < longText)
        return {bytes_ + 1, first};
    std::size_t length = 0;
    std::memcpy(&length, bytes_ + 1, sizeof length);
    return {bytes_ + 1 + sizeof length, length};
}

} // namespace brimvale
