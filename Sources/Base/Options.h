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

/// An option, declared once for both the parser and the help.
struct Option {
    /// The value it takes: none, a whole number from 0 up, any text, or a text only after "=".
    enum class Value { none, number, text, attachedText };

    std::string_view name; ///< "--depth"
    Value value = Value::none;
    std::string_view valueName = {}; ///< "N": the name of its value in the help
    std::string_view help = {};      ///< a sentence
    bool endsReading = false;        ///< the words after it are ignored
};

/// A fault on a command line. Holds views of its words and of the options.
struct UsageError {
    enum class Kind { unknownOption, needsValue, takesNoValue, takesNumber };

    Kind kind;
    Option option;               ///< for an unknown option, only the name as typed
    std::string_view value = {}; ///< the given value, if any
};

/// The options and operands of a command line. Holds views of its words.
class Arguments {
public:
    /// Whether options may follow operands. If not, every word after the first operand is an operand too.
    enum class Order { mixed, optionsFirst };

    /// Reads `words`. The value of an option is the next word, or follows "=" in the same word. If an option
    /// is given twice, the last one counts. After "--" every word is an operand; "-" always is.
    [[nodiscard]] static std::variant<Arguments, UsageError>
    parse(std::span<const char *const> words, std::span<const Option> options, Order order);

    /// Whether the option was given.
    [[nodiscard]] bool has(std::string_view option) const { return text(option).has_value(); }
    /// Its value; nothing if it was not given.
    [[nodiscard]] std::optional<std::string_view> text(std::string_view option) const;
    /// Its value as a number; nothing if it was not given or takes no number.
    [[nodiscard]] std::optional<std::int64_t> number(std::string_view option) const;

    [[nodiscard]] const std::vector<const char *> &operands() const { return operands_; }

private:
    std::vector<std::pair<std::string_view, std::string_view>> values_;
    std::vector<const char *> operands_;
};

/// Rows for a help text.
using HelpRows = std::vector<std::pair<std::string, std::string_view>>;

/// The option as shown in the help: "--depth N".
[[nodiscard]] std::string withValue(const Option &option);

/// One row per option.
[[nodiscard]] HelpRows helpRows(std::span<const Option> options);

/// The rows as indented lines in two columns. The first column is as wide as its longest text.
[[nodiscard]] std::string inColumns(const HelpRows &rows);

} // namespace brimvale
