#pragma once

#include <string_view>

namespace brimvale {

/// Takes a text piece by piece, such as a stream or a file.
class TextSink {
public:
    virtual ~TextSink() = default;
    virtual void write(std::string_view text) = 0;
};

} // namespace brimvale
