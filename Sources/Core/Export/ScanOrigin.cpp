#include "Core/Export/ScanOrigin.h"

#include "Base/Version.h"

#include <QString>
#include <QSysInfo>
#include <chrono>

namespace brimvale {

ScanOrigin ScanOrigin::here(std::int64_t unreadableCount) {
    return {.program = std::string("brimvale ") + version,
            .host = QSysInfo::machineHostName().toStdString(),
            .date = now(),
            .unreadable = unreadableCount};
}

std::int64_t secondsOf(Date date) {
    return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}

std::optional<Date> dateOfSeconds(std::int64_t seconds) {
    constexpr std::int64_t latest = 9'000'000'000; // in the year 2255; a date has nanoseconds in 64 bits
    if (seconds < 0 || seconds > latest)
        return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

} // namespace brimvale
