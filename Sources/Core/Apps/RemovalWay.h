#pragma once

#include <string>
#include <variant>
#include <vector>

namespace brimvale {

/// The application is the item at its path, which is removed like any other item.
struct RemovedAsItem {
    std::string uninstaller = {}; ///< a program of its maker that removes it, by path; may be empty

    friend bool operator==(const RemovedAsItem &, const RemovedAsItem &) = default;
};

/// A program removes it, and asks for the rights that it needs.
struct RemovedByCommand {
    std::string program; ///< without a folder: "flatpak"
    std::vector<std::string> arguments;

    friend bool operator==(const RemovedByCommand &, const RemovedByCommand &) = default;
};

/// The user removes it with a command in a terminal, or in the program for software.
struct RemovedInTerminal {
    std::string command;           ///< empty where the package manager is not known
    std::string softwareLink = {}; ///< shows it in that program; empty where none opens such links

    friend bool operator==(const RemovedInTerminal &, const RemovedInTerminal &) = default;
};

/// The program that added it removes it again.
struct RemovedElsewhere {
    std::string program; ///< as a name: "Steam"

    friend bool operator==(const RemovedElsewhere &, const RemovedElsewhere &) = default;
};

/// How an application is removed.
using RemovalWay = std::variant<RemovedAsItem, RemovedByCommand, RemovedInTerminal, RemovedElsewhere>;

} // namespace brimvale
