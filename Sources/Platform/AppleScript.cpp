#include "Platform/AppleScript.h"

namespace brimvale {

std::string administratorScript(std::string_view command) {
    std::string script = "do shell script \"";
    for (const char byte : command) {
        if (byte == '\\' || byte == '"')
            script.push_back('\\');
        script.push_back(byte);
    }
    return script.append("\" with administrator privileges");
}

} // namespace brimvale
