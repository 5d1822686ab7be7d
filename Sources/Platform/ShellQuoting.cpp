#include "Platform/ShellQuoting.h"

#include "Base/VisibleText.h"

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

std::string shownShellWord(std::string_view text) {
    if (visibleText(text) == text)
        return quotedForShell(text);
    const auto digit = [](unsigned char byte, int shift) {
        return static_cast<char>('0' + ((byte >> shift) & 7));
    };
    std::string word = "$'";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= ' ' && byte < 0x7F && byte != '\'' && byte != '\\')
            word.push_back(character);
        else
            word.append({'\\', digit(byte, 6), digit(byte, 3), digit(byte, 0)});
    }
    return word.append("'");
}

} // namespace brimvale
