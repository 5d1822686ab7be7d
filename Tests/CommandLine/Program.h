#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace brimvale::testing {

/// How a run of the program went.
struct Outcome {
    int status = 0; ///< the exit status; of a program that a signal has ended, the signal's negative number
    std::string out;
    std::string err;
};

/// Runs brimvalectl with these arguments and waits for its end. `prepare` is called in the child before the
/// program takes its place, for whatever the program is to inherit. Where it closes or replaces standard
/// output or standard error, nothing is captured from there.
[[nodiscard]] Outcome runProgram(
    const std::vector<std::string> &arguments, const std::function<void()> &prepare = [] {});

/// The same with the catalogs of macOS, for a Mac whose disk is the folder `root`.
[[nodiscard]] Outcome runProgramOnMac(
    const std::string &root, const std::vector<std::string> &arguments,
    const std::function<void()> &prepare = [] {});

/// The same with the catalogs of Linux.
[[nodiscard]] Outcome runProgramOnLinux(
    const std::string &root, const std::vector<std::string> &arguments,
    const std::function<void()> &prepare = [] {});

/// The same as a user without special rights, whoever runs the tests. `folder` has to be open to all users;
/// a copy of the program is left there.
[[nodiscard]] Outcome runProgramUnprivileged(const std::string &folder,
                                             const std::vector<std::string> &arguments);

// What a program may find when it starts, for `prepare`: the folder that it is in, which is the user's home
// as well, and a signal that is waiting as soon as it listens, that is before the first entry; and a file as
// standard input.
[[nodiscard]] std::function<void()> inFolder(const std::string &path);
[[nodiscard]] std::function<void()> inHome(const std::string &path);
[[nodiscard]] std::function<void()> pending(int signal);
[[nodiscard]] std::function<void()> withInput(const std::string &bytes);

/// The document that a program printed.
[[nodiscard]] QJsonDocument jsonIn(const Outcome &outcome);

/// The elements of an array that are texts, or the URLs of those that are records.
[[nodiscard]] std::vector<std::string> pathsIn(const QJsonValue &array);

} // namespace brimvale::testing
