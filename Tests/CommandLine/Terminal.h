#pragma once

#include "CommandLine/Program.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace brimvale::testing {

/// A terminal of `columns` columns; what is written to `device` can be read back. It is read all the time: a
/// terminal takes only a few hundred bytes more than are read, and a Mac's forgets the rest when it is
/// closed.
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

    /// All that has been written, once every other holder of the device has closed it. The device is closed
    /// here.
    [[nodiscard]] std::string written();

private:
    void read();

    int controller_;
    int device_;
    std::array<int, 2> end_{}; ///< a pipe that is written to when nothing is to be read any more
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string seen_;      ///< what has been read back
    bool hasEnded_ = false; ///< nothing more will come
    std::thread reader_;
};

/// Runs brimvalectl on a terminal and answers its question, if an answer is given.
[[nodiscard]] Outcome runOnTerminal(const std::vector<std::string> &arguments, std::string_view answer,
                                    std::string_view typedAhead = "");

} // namespace brimvale::testing
