#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

/// An option, as it is declared once for reading it and for the help.
struct Option {
    /// What follows it: nothing, a whole number from 0 up, or any text.
    enum class Value { none, number, text };

    std::string_view name; ///< "--depth"
    Value value = Value::none;
    std::string_view valueName = {}; ///< "N": stands for its value in the help
    std::string_view help = {};      ///< a sentence
};

/// What is wrong with the words of a command line, in one sentence that is harmless on a terminal.
struct UsageError {
    std::string sentence;
};

/// What the words of a command line say: options and operands. Views of those words.
class Arguments {
public:
    /// Whether options may stand among the operands, or whatever comes after the first operand is one too.
    enum class Order { mixed, optionsFirst };

    /// Reads `words`. An option's value is the next word, or stands behind "=" in the same one; of an option
    /// that is given twice the last one counts; after "--" every word is an operand, and so is "-".
    [[nodiscard]] static std::variant<Arguments, UsageError>
    parse(std::span<const char *const> words, std::span<const Option> options, Order order);

    /// Whether the option was given.
    [[nodiscard]] bool has(std::string_view option) const { return text(option).has_value(); }
    /// Its value; nothing where it was not given.
    [[nodiscard]] std::optional<std::string_view> text(std::string_view option) const;
    /// Its value as a number; nothing where it was not given, or does not take one.
    [[nodiscard]] std::optional<std::int64_t> number(std::string_view option) const;

    [[nodiscard]] const std::vector<const char *> &operands() const { return operands_; }

private:
    std::vector<std::pair<std::string_view, std::string_view>> values_;
    std::vector<const char *> operands_;
};

} // namespace brimvale::commandLine
