#include "CommandLine/Program.h"
#include "Support/MacWords.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace brimvale::testing {

TEST(LinuxWords, NoCommandHasAWordOfAMac) {
    const TemporaryFolder place;
    const auto inPlace = [&] {
        setenv("HOME", place.path().c_str(), 1);
        setenv("XDG_CACHE_HOME", place.path("caches").c_str(), 1);
    };
    // On a sample, because the applications of this computer may have any name.
    const auto texts = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--sample");
        const Outcome outcome = runProgram(arguments, inPlace);
        return QString::fromStdString(outcome.out + outcome.err).split('\n');
    };

    QStringList commands;
    for (const QString &line : texts({"--help"}))
        if (line.startsWith("  ") && line.at(2).isLower())
            commands << line.simplified().section(' ', 0, 0);
    EXPECT_GT(commands.size(), 10);
    EXPECT_EQ(macTexts(texts({"--help"})), "");
    for (const QString &command : commands)
        EXPECT_EQ(macTexts(texts({command.toStdString(), "--help"})), "") << command.toStdString();
    for (const char *command : {"cleanup", "overview", "apps", "volumes", "snapshots"})
        for (const std::vector<std::string> &options : {std::vector<std::string>{}, {"--json"}}) {
            std::vector<std::string> arguments{command};
            arguments.insert(arguments.end(), options.begin(), options.end());
            EXPECT_EQ(macTexts(texts(arguments)), "") << command;
        }
}

} // namespace brimvale::testing
