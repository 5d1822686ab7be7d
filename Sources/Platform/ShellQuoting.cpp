#include "Platform/ShellQuoting.h"

namespace brimvale {

std::string quotedForShell(std::string_view text) {
    std::string word = "'";
    for (const char byte : text) {
        // Nothing escapes a quote between quotes: they end, an escaped one follows, and they begin again.
        if (byte == '\'')
            word.append("'\\''");
        else
            word.push_back(byte);
    }
    return word.append("'");
}

} // namespace brimvale
