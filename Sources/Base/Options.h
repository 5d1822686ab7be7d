#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale {

/// An option, as it is declared once for reading it and for the help.
struct Option {
    /// What follows it: nothing, a whole number from 0 up, or any text.
    enum class Value { none, number, text };

    std::string_view name; ///< "--depth"
    Value value = Value::none;
    std::string_view valueName = {}; ///< "N": stands for its value in the help
    std::string_view help = {};      ///< a sentence
    bool endsReading = false;        ///< what follows it is not looked at
};

/// What is wrong with the words of a command line. Views of those words and of the options.
struct UsageError {
    enum class Kind { unknownOption, needsValue, takesNoValue, takesNumber };

    Kind kind;
    Option option;               ///< of an unknown one the name as it was typed
    std::string_view value = {}; ///< that was given, if any
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

/// Rows for a help text.
using HelpRows = std::vector<std::pair<std::string, std::string_view>>;

/// The option as the help shows it: "--depth N".
[[nodiscard]] std::string withValue(const Option &option);

/// A row for each option.
[[nodiscard]] HelpRows helpRows(std::span<const Option> options);

/// The rows as indented lines in two columns, the first as wide as it has to be.
[[nodiscard]] std::string inColumns(const HelpRows &rows);

} // namespace brimvale
