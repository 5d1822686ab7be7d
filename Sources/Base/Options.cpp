#include "Base/Options.h"

#include "Base/Text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace brimvale {

namespace {

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && number >= 0 ? std::optional(number) : std::nullopt;
}

bool isOption(std::string_view word) {
    return word.size() > 1 && word.starts_with('-');
}

bool takesNextWord(const Option &option) {
    return option.value == Option::Value::number || option.value == Option::Value::text;
}

/// The fault in an option's value, if any. `value` is nothing if none was given.
std::optional<UsageError> faultOf(const Option &option, std::optional<std::string_view> value) {
    using Kind = UsageError::Kind;
    if (option.value == Option::Value::none)
        return value ? std::optional(UsageError{Kind::takesNoValue, option, *value}) : std::nullopt;
    if (option.value == Option::Value::attachedText)
        return std::nullopt;
    if (!value)
        return UsageError{Kind::needsValue, option};
    if (option.value == Option::Value::number && !wholeNumber(*value))
        return UsageError{Kind::takesNumber, option, *value};
    return std::nullopt;
}

} // namespace

std::variant<Arguments, UsageError> Arguments::parse(std::span<const char *const> words,
                                                     std::span<const Option> options, Order order) {
    Arguments arguments;
    bool isPastOptions = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (isPastOptions || !isOption(word)) {
            arguments.operands_.push_back(words[i]);
            isPastOptions = isPastOptions || order == Order::optionsFirst;
            continue;
        }
        if (word == "--") {
            isPastOptions = true;
            continue;
        }
        const std::string_view name = word.substr(0, word.find('='));
        const auto option =
            std::find_if(options.begin(), options.end(), [&](const Option &one) { return one.name == name; });
        if (option == options.end())
            return UsageError{UsageError::Kind::unknownOption, {.name = name}};
        std::optional<std::string_view> value;
        if (name.size() < word.size())
            value = word.substr(name.size() + 1);
        else if (takesNextWord(*option) && i + 1 < words.size())
            value = words[++i];
        if (const std::optional<UsageError> fault = faultOf(*option, value))
            return *fault;
        arguments.values_.emplace_back(option->name, value.value_or(""));
        if (option->endsReading)
            break;
    }
    return arguments;
}

std::optional<std::string_view> Arguments::text(std::string_view option) const {
    const auto last = std::find_if(values_.rbegin(), values_.rend(),
                                   [&](const auto &value) { return value.first == option; });
    return last == values_.rend() ? std::nullopt : std::optional(last->second);
}

std::optional<std::int64_t> Arguments::number(std::string_view option) const {
    const std::optional<std::string_view> value = text(option);
    return value ? wholeNumber(*value) : std::nullopt;
}

std::string withValue(const Option &option) {
    std::string text(option.name);
    if (option.valueName.empty())
        return text;
    return option.value == Option::Value::attachedText
               ? text.append("[=").append(option.valueName).append("]")
               : text.append(" ").append(option.valueName);
}

HelpRows helpRows(std::span<const Option> options) {
    HelpRows rows;
    for (const Option &option : options)
        rows.emplace_back(withValue(option), option.help);
    return rows;
}

std::string inColumns(const HelpRows &rows) {
    std::size_t width = 0;
    for (const auto &[left, right] : rows)
        width = std::max(width, characterCount(left));
    std::string text;
    for (const auto &[left, right] : rows)
        text.append("  ").append(left).append(width - characterCount(left) + 2, ' ').append(right) += "\n";
    return text;
}

} // namespace brimvale
