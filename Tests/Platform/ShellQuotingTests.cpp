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
    // One call for all: each word is printed with a zero byte after it, which no name holds.
    std::string command = "printf '%s\\0'";
    std::string expected;
    for (const std::string &name : names) {
        command += " " + quotedForShell(name);
        expected += name + '\0';
    }
    const auto result = runProcess(platformTools().shell, {"-c", command}, StandardError::withOutput);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, expected);
    EXPECT_EQ(result->exitStatus, 0);
}

} // namespace brimvale
