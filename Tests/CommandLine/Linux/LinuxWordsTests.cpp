#include "CommandLine/Program.h"
#include "Support/EnvironmentVariable.h"
#include "Support/MacWords.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale::testing {

TEST(LinuxWords, NoCommandHasAWordOfAMac) {
    const TemporaryFolder disk;
    for (const char *file : {"usr/bin/program", "home/other/file", "home/anna/Documents/text",
                             "home/anna/.cache/pip/wheel", "home/anna/.local/share/Trash/files/old"})
        disk.makeFile(file, 100'000);
    const EnvironmentVariable root("BRIMVALE_TEST_ROOT", disk.path());
    const auto texts = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--system", "linux"});
        const Outcome outcome = runProgram(arguments, inHome(disk.path("home/anna")));
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
