#include "Base/VisibleText.h"
#include "Platform/ProcessRunner.h"
#include "Platform/ShellQuoting.h"
#include "Platform/Tools.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(ShellQuoting, NamesSurviveARealShell) {
    std::vector<std::string> names = {"",           "it's",      "'",    "''",    "-rf",
                                      "\\'",        "\"$HOME\"", "`id`", "$(id)", "a  b\n\tc\n",
                                      "*?[a]{b,c}", "~",         "!!",   "#",     "caf\u00E9"};
    for (int byte = 1; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        names.push_back({character});
        names.push_back({'a', character, '\'', character, character});
    }
    names.emplace_back("zero\u200Bwidth and \u202Eback'\\7");
    // One call for all: each word is printed with a zero byte after it, which no name holds.
    std::string command = "printf '%s\\0'", shown = command;
    std::string expected;
    for (const std::string &name : names) {
        command += " " + quotedForShell(name);
        const std::string word = shownShellWord(name);
        EXPECT_EQ(visibleText(word), word);
        shown += " " + word;
        expected += name + '\0';
    }
    for (const auto &[shell, line] : {std::pair(platformTools().shell, command), {"/bin/bash", shown}}) {
        const auto result = runProcess(shell, {"-c", line}, StandardError::withOutput);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->output, expected);
        EXPECT_EQ(result->exitStatus, 0);
    }
}

} // namespace brimvale
