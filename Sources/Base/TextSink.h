#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// Takes a text piece by piece, such as a stream or a file.
class TextSink {
public:
    virtual ~TextSink() = default;
    virtual void write(std::string_view text) = 0;
};

/// Keeps the whole text.
class TextInMemory final : public TextSink {
public:
    void write(std::string_view more) override { text += more; }
    std::string text;
};

} // namespace brimvale
