#include "Core/Text/Formatting.h"

#include "Catalogs/Words.h"
#include "Platform/Formatters.h"

#include <chrono>
#include <cmath>

namespace brimvale {

std::string Fmt::byteFormatter(std::int64_t bytes) {
    return bytes == 0 ? Words::current().noBytes : Formatters::fileSize(bytes);
}

std::string Fmt::count(std::int64_t number) {
    return Formatters::number(number);
}

std::string Fmt::counted(std::int64_t number, std::string_view noun) {
    return count(number).append(" ").append(noun).append(number == 1 ? "" : "s");
}

std::string Fmt::relativeDate(std::optional<Date> date, Date reference) {
    return date ? Formatters::relativeDate(*date, reference) : "unknown";
}

std::string Fmt::recentDate(std::optional<Date> date, Date reference) {
    using Seconds = std::chrono::duration<double>; // in which no distance is too large
    if (date &&
        std::abs((Seconds(date->time_since_epoch()) - Seconds(reference.time_since_epoch())).count()) < 1)
        return "just now";
    return relativeDate(date, reference);
}

Color Palette::color(std::string_view key) {
    std::uint64_t hash = 5381; // djb2: unlike std::hash it is the same in every build
    for (const char byte : key)
        hash = hash * 33 + static_cast<unsigned char>(byte);
    return ramp[hash % ramp.size()];
}

} // namespace brimvale
