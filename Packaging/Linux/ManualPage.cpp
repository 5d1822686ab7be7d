#include "ManualPage.h"

#include "CommandLine/Brimvalectl.h"
#include "CommandLine/Command.h"

#include <sstream>
#include <string_view>
#include <vector>

namespace brimvale::packaging {

namespace {

/// Text that groff prints as it is: no requests, no escapes, and hyphens that can be copied into a shell.
std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        if ((c == '.' || c == '\'') && (safe.empty() || safe.back() == '\n'))
            safe += "\\&";
        if (c == '\\')
            safe += "\\e";
        else if (c == '-')
            safe += "\\-";
        else
            safe += c;
    }
    return safe;
}

/// Paragraphs, which an empty line divides. A line that is indented in the help stays a line of its own.
std::string paragraphs(std::string_view text) {
    std::istringstream lines{std::string(text)};
    std::string page, line;
    bool isBegun = false;
    while (std::getline(lines, line)) {
        if (line.empty()) {
            isBegun = false;
            continue;
        }
        if (!isBegun)
            page += ".PP\n";
        else if (line.front() == ' ')
            page += ".br\n";
        isBegun = true;
        page += escaped(line) + "\n";
    }
    return page;
}

std::string optionList(std::span<const Option> options) {
    std::string page;
    for (const Option &option : options) {
        page.append(".TP\n\\fB").append(escaped(option.name)).append("\\fR");
        const bool isAttached = option.value == Option::Value::attachedText;
        if (option.value != Option::Value::none)
            page.append(isAttached ? "[=" : " ")
                .append("\\fI")
                .append(escaped(option.valueName))
                .append("\\fR");
        if (isAttached)
            page.append("]");
        page.append("\n").append(escaped(option.help)).append("\n");
    }
    return page;
}

std::string section(const commandLine::Command &command) {
    std::string heading(command.name);
    if (!command.operands.empty())
        heading.append(" ").append(command.operands);
    return ".SS " + escaped(heading) + "\n" + escaped(command.summary) + "\n" + paragraphs(command.help) +
           optionList(command.options);
}

} // namespace

std::string manualPage(const std::string &version, const std::string &date) {
    std::string page =
        ".TH BRIMVALECTL 1 " + date + " \"Brimvale " + version + "\" \"User Commands\"\n" +
        ".SH NAME\nbrimvalectl \\- shows where disk space has gone and gets it back safely\n"
        ".SH SYNOPSIS\n.B brimvalectl\n[\\fIOPTION\\fR]...\n.I COMMAND\n"
        "[\\fIARGUMENT\\fR]...\n"
        ".SH DESCRIPTION\n"
        ".B brimvalectl\ndoes in a terminal and in scripts what the window of\n.BR brimvale (1)\ndoes. "
        "Sizes are the space that files take on the disk, and 1 KB is 1,000 bytes.\n"
        ".PP\nMeasuring changes nothing. A removal asks first, and refuses places that the system needs.\n"
        ".SH OPTIONS\nThese come before the command.\n" +
        optionList(commandLine::programOptions()) +
        ".PP\nThe sample is a disk in a folder of the user's caches, on which everything can be tried. "
        "Nothing "
        "outside that folder is changed while it is shown, and no password is asked for.\n"
        ".SH COMMANDS\nEvery command takes\n.BR \\-\\-json ,\n"
        "which prints one JSON document instead, and\n.BR \\-\\-help .\n"
        "Everything after \"\\-\\-\" is an argument and not an option.\n";
    for (const commandLine::Command *command : commandLine::allCommands())
        page += section(*command);
    return page +
           ".SH EXIT STATUS\n.TP\n0\nDone.\n.TP\n1\nSomething was refused or failed.\n.TP\n2\nWrong usage.\n"
           ".TP\n130\nInterrupted.\n.SH SEE ALSO\n.BR du (1),\n.BR df (1)\n";
}

} // namespace brimvale::packaging
