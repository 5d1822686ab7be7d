#include "Platform/AppleScript.h"
#include "Platform/ShellQuoting.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// What AppleScript makes of the literal in the script: the command that the shell gets.
std::string commandIn(const std::string &script) {
    constexpr std::string_view before = "do shell script \"", after = "\" with administrator privileges";
    if (!script.starts_with(before) || !script.ends_with(after))
        return "no such script";
    std::string command;
    const std::string literal = script.substr(before.size(), script.size() - before.size() - after.size());
    for (std::size_t i = 0; i < literal.size(); ++i) {
        if (literal[i] == '"')
            return "ends early";
        command.push_back(literal[i] == '\\' ? literal.at(++i) : literal[i]);
    }
    return command;
}

} // namespace

TEST(AppleScript, AdministratorScriptHasExpectedForm) {
    EXPECT_EQ(administratorScript("/bin/rm -rf -- " + quotedForShell("/Users/a/it's \"b\\")),
              R"(do shell script "/bin/rm -rf -- '/Users/a/it'\\''s \"b\\'" with administrator privileges)");
}

TEST(AppleScript, EscapingKeepsEveryByteOfTheCommand) {
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        everyByte.push_back(static_cast<char>(byte));
    for (const std::string &command :
         {std::string(), std::string("\""), std::string("\\"), std::string("\\\""), std::string("\\\\\"\"\\"),
          std::string("\" & quit & \""), everyByte})
        EXPECT_EQ(commandIn(administratorScript(command)), command);
}

} // namespace brimvale
