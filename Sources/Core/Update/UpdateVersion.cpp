#include "Core/Update/UpdateVersion.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <vector>

namespace brimvale {

namespace {

std::optional<std::int64_t> parseInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t number = 0;
    const char *const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsed == end ? std::optional(number) : std::nullopt;
}

std::vector<std::int64_t> numbersIn(std::string_view dotted) {
    std::vector<std::int64_t> numbers;
    while (!dotted.empty()) {
        const std::size_t end = std::min(dotted.find('.'), dotted.size());
        if (const auto number = parseInteger(dotted.substr(0, end)))
            numbers.push_back(*number);
        dotted.remove_prefix(std::min(end + 1, dotted.size()));
    }
    return numbers;
}

} // namespace

std::int64_t buildNumber(const std::optional<std::string> &text) {
    return text ? parseInteger(*text).value_or(0) : 0;
}

bool systemMeets(std::string_view minimum, const SystemVersion &system) {
    const std::vector<std::int64_t> required = numbersIn(minimum);
    if (required.empty())
        return true;
    if (required[0] != system.major)
        return required[0] < system.major;
    return system.minor >= (required.size() > 1 ? required[1] : 0);
}

} // namespace brimvale
