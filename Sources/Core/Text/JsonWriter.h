#pragma once

#include "Base/FileURL.h"
#include "Base/TextSink.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Writes one JSON document (RFC 8259) piece by piece, and adds commas and closing brackets itself. The
/// output is valid UTF-8 and plain text on a terminal. Only the open brackets are kept in memory, so a
/// document may have any length and any depth.
class JsonWriter {
public:
    explicit JsonWriter(TextSink &sink) : sink_(sink) {}

    void beginObject() { begin('{'); }
    void beginArray() { begin('['); }
    /// Closes the innermost object or array; the last one ends the line.
    void end();

    /// The name of the next value, in an object.
    void key(std::string_view name);

    /// A string. Bytes that are not UTF-8 become U+FFFD.
    void value(std::string_view bytes);
    void value(const char *text) { value(std::string_view(text)); }
    void value(const std::string &bytes) { value(std::string_view(bytes)); }
    void value(std::int64_t number);
    /// A finite number; any other is null.
    void value(double number);
    void value(bool truth);
    void null();

    /// One member of an object: its name and its value.
    template<class T>
    void member(std::string_view name, const T &memberValue) {
        key(name);
        value(memberValue);
    }

    /// The same for a value that may be missing, which is written as null.
    template<class T>
    void member(std::string_view name, const std::optional<T> &memberValue) {
        key(name);
        if (memberValue)
            value(*memberValue);
        else
            null();
    }

    /// A member that is a path or the name of a file. If its bytes are not UTF-8, a member with their
    /// hexadecimal digits follows: "pathHex" after "path" and "url", "nameHex" after "name", and so on.
    void path(std::string_view name, std::string_view bytes);

    /// A member that is an array of paths (`FileURL` or bytes). If one of them is not UTF-8, an array of the
    /// same length follows, such as "copiedHex" after "copied": its digits for such a path, null for others.
    template<class Path>
    void paths(std::string_view name, const std::vector<Path> &all) {
        std::vector<std::string_view> bytes;
        for (const Path &one : all)
            bytes.push_back(bytesOf(one));
        writePaths(name, bytes);
    }

private:
    static std::string_view bytesOf(const FileURL &url) { return url.path(); }
    static std::string_view bytesOf(const std::string &bytes) { return bytes; }

    void writePaths(std::string_view name, const std::vector<std::string_view> &all);
    void begin(char bracket);
    void separate();
    void writeText(std::string_view text);

    TextSink &sink_;
    std::string open_; ///< the brackets that are open, outermost first
    bool needsComma_ = false;
};

} // namespace brimvale
