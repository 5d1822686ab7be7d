#pragma once

#include <functional>
#include <string>
#include <string_view>
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

/// A terminal of `columns` columns; what is written to `device` can be read back.
class Terminal {
public:
    explicit Terminal(int columns = 80);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /// The descriptor for a program's standard stream.
    [[nodiscard]] int device() const { return device_; }

    /// Types a few words, which the next reader of the device gets.
    void type(std::string_view text) const;

    /// Waits until `question` is the end of what has been written, and types the answer then. Nothing is
    /// typed once the program that had this terminal as its own has ended.
    void answer(std::string_view question, std::string_view text);

    /// All that has been written (a few thousand bytes at most), once every other holder of the device has
    /// closed it. The device is closed here.
    [[nodiscard]] std::string written();

private:
    int controller_;
    int device_;
    std::string seen_; ///< what has been read back
};

} // namespace brimvale::testing
