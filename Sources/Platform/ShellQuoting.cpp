#include "Platform/ShellQuoting.h"

namespace brimvale {

std::string quotedForShell(std::string_view text) {
    std::string word = "'";
    for (const char byte : text) {
        // Nothing escapes a quote between quotes: close them, add an escaped quote, and open them again.
        if (byte == '\'')
            word.append("'\\''");
        else
            word.push_back(byte);
    }
    return word.append("'");
}

} // namespace brimvale
