#include "Completions.h"

#include "CommandLine/Brimvalectl.h"
#include "CommandLine/Command.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace brimvale::packaging {

namespace {

using commandLine::allCommands;
using commandLine::Command;

/// The names of options, with a space between them.
std::string names(std::span<const Option> options) {
    std::string all;
    for (const Option &option : options)
        all.append(all.empty() ? "" : " ").append(option.name);
    return all;
}

/// Whether the next word is its value.
bool takesValue(const Option &option) {
    return option.value == Option::Value::number || option.value == Option::Value::text;
}

/// The values of an option that names them: "macos|linux".
std::vector<std::string> choices(const Option &option) {
    std::vector<std::string> all;
    const std::string_view text = option.valueName;
    if (text.find('|') == text.npos)
        return all;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t end = std::min(text.find('|', from), text.size());
        all.emplace_back(text.substr(from, end - from));
        from = end + 1;
    }
    return all;
}

std::string joined(const std::vector<std::string> &words) {
    std::string all;
    for (const std::string &word : words)
        all.append(all.empty() ? "" : " ").append(word);
    return all;
}

/// What stands between single quotes for a text, in each of the three shells. `alsoEscaped` are characters
/// that the word's use there gives a meaning; they get a backslash.
std::string betweenQuotes(std::string_view text, std::string_view alsoEscaped = "") {
    std::string word;
    for (const char c : text) {
        if (alsoEscaped.find(c) != alsoEscaped.npos)
            word += '\\';
        word += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return word;
}

std::string quoted(std::string_view text, std::string_view alsoEscaped = "") {
    std::string word("'");
    return word.append(betweenQuotes(text, alsoEscaped)).append("'");
}

/// The options of all commands that a value follows, for a pattern of bash.
std::string patternOfValues() {
    std::vector<std::string_view> all;
    for (const Command *command : allCommands())
        for (const Option &option : command->options)
            if (takesValue(option) && std::find(all.begin(), all.end(), option.name) == all.end())
                all.push_back(option.name);
    std::string pattern;
    for (const std::string_view name : all)
        pattern.append(pattern.empty() ? "" : "|").append(name);
    return pattern;
}

/// What follows a value's name for zsh's _arguments: what it may be.
std::string zshValues(const Option &option) {
    if (const std::vector<std::string> words = choices(option); !words.empty())
        return std::string("(").append(joined(words)).append(")");
    return option.value == Option::Value::number ? "" : "_files";
}

/// "--depth=[Show N levels of folders.]:N:_files" for zsh's _arguments. Only the brackets of the sentence
/// itself are escaped.
std::string zshOption(const Option &option) {
    std::string word("'");
    const bool isAttached = option.value == Option::Value::attachedText;
    word.append(option.name).append(isAttached ? "=-[" : takesValue(option) ? "=[" : "[");
    word.append(betweenQuotes(option.help, "[]:")).append("]");
    if (takesValue(option) || isAttached)
        word.append(isAttached ? "::" : ":")
            .append(betweenQuotes(option.valueName, ":|"))
            .append(":")
            .append(zshValues(option));
    return word.append("'");
}

} // namespace

std::string bashCompletion() {
    std::string commandNames;
    std::string cases;
    for (const Command *command : allCommands()) {
        commandNames.append(commandNames.empty() ? "" : " ").append(command->name);
        cases += "        " + std::string(command->name) + ") options=" + quoted(names(optionsOf(*command))) +
                 " ;;\n";
    }
    std::string values;
    for (const Option &option : commandLine::programOptions())
        if (const std::vector<std::string> words = choices(option); takesValue(option) && !words.empty())
            values += "        " + std::string(option.name) + ") mapfile -t COMPREPLY < <(compgen -W " +
                      quoted(joined(words)) + " -- \"$current\"); return ;;\n";
    return "# Completes command lines of brimvalectl in bash.\n"
           "_brimvalectl() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' "
           "options word\n"
           "    local -i i\n"
           "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
           "        word=${COMP_WORDS[i]}\n"
           "        case $word in\n"
           "            --system) i+=1 ;;\n"
           "            -*) ;;\n"
           "            *) command=$word; break ;;\n"
           "        esac\n"
           "    done\n"
           "    case $previous in\n" +
           values + "        " + patternOfValues() +
           ") COMPREPLY=(); compopt -o default; return ;;\n"
           "    esac\n"
           "    case $command in\n"
           "        '') options=" +
           quoted(names(commandLine::programOptions()) + " " + commandNames) + " ;;\n" + cases +
           "        *) options='' ;;\n"
           "    esac\n"
           "    if [[ -z $command || $current == -* ]]; then\n"
           "        mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$current\")\n"
           "    else\n"
           "        COMPREPLY=()\n"
           "        compopt -o default # paths\n"
           "    fi\n"
           "}\n"
           "complete -F _brimvalectl brimvalectl\n";
}

std::string zshCompletion() {
    std::string script = "#compdef brimvalectl\n"
                         "# Completes command lines of brimvalectl in zsh.\n"
                         "local state\n"
                         "local -a commands=(\n";
    std::string cases;
    for (const Command *command : allCommands()) {
        script += "    " + quoted(std::string(command->name) + ":" + std::string(command->summary)) + "\n";
        cases += "        " + std::string(command->name) + ") _arguments";
        for (const Option &option : optionsOf(*command))
            cases += " \\\n            " + zshOption(option);
        cases += " \\\n            '*:path:_files' ;;\n";
    }
    script += ")\n_arguments -C";
    for (const Option &option : commandLine::programOptions())
        script += " \\\n    " + zshOption(option);
    return script +
           " \\\n    '1:command:->command' \\\n    '*::argument:->argument'\n"
           "case $state in\n"
           "    command) _describe command commands ;;\n"
           "    argument)\n"
           "        case $words[1] in\n" +
           cases + "        esac ;;\nesac\n";
}

std::string fishCompletion() {
    std::string script = "# Completes command lines of brimvalectl in fish.\n";
    const auto add = [&script](const std::string &condition, const Option &option) {
        script += "complete -c brimvalectl -n " + quoted(condition) + " -l " +
                  std::string(option.name.substr(2)) + " -d " + quoted(option.help, "\\");
        if (takesValue(option))
            script += " -r";
        if (const std::vector<std::string> words = choices(option); takesValue(option) && !words.empty())
            script += " -f -a " + quoted(joined(words));
        script += "\n";
    };
    for (const Option &option : commandLine::programOptions())
        add("__fish_use_subcommand", option);
    for (const Command *command : allCommands()) {
        const std::string name(command->name);
        script += "complete -c brimvalectl -n __fish_use_subcommand -f -a " + name + " -d " +
                  quoted(command->summary, "\\") + "\n";
        for (const Option &option : optionsOf(*command))
            add("__fish_seen_subcommand_from " + name, option);
    }
    return script;
}

} // namespace brimvale::packaging
