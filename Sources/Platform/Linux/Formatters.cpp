#include "Platform/Formatters.h"

#include "Base/Diagnostics.h"
#include "Platform/Linux/UserLocale.h"

#include <QLocale>
#include <QString>
#include <array>
#include <memory>
#include <mutex>
#include <unicode/calendar.h>
#include <unicode/reldatefmt.h>

namespace brimvale::Formatters {

namespace {

struct SizeUnit {
    std::uint64_t from;         ///< bytes that the unit below would round up to 1,000
    std::uint64_t lastDigit;    ///< bytes that the last digit shown stands for
    std::int64_t lastDigitsPer; ///< how many of them make the unit
    const char *suffix;
};

constexpr std::array<SizeUnit, 4> sizeUnits = {{{999'995'000'000, 10'000'000'000, 100, " TB"},
                                                {999'950'000, 10'000'000, 100, " GB"},
                                                {999'500, 100'000, 10, " MB"},
                                                {0, 1'000, 1, " KB"}}};

struct DateUnit {
    UCalendarDateFields field;
    URelativeDateTimeUnit unit;
};

constexpr std::array<DateUnit, 7> dateUnits = {{{UCAL_YEAR, UDAT_REL_UNIT_YEAR},
                                                {UCAL_MONTH, UDAT_REL_UNIT_MONTH},
                                                {UCAL_WEEK_OF_MONTH, UDAT_REL_UNIT_WEEK},
                                                {UCAL_DATE, UDAT_REL_UNIT_DAY},
                                                {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR},
                                                {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE},
                                                {UCAL_SECOND, UDAT_REL_UNIT_SECOND}}};

/// Used under a lock: the calendar is set each time.
struct DateFormatters {
    std::mutex lock;
    std::unique_ptr<icu::Calendar> calendar;
    std::unique_ptr<const icu::RelativeDateTimeFormatter> relativeDate;

    DateFormatters() {
        // The program speaks English, so its dates do too.
        const icu::Locale &language = icu::Locale::getUS();
        UErrorCode status = U_ZERO_ERROR;
        calendar.reset(icu::Calendar::createInstance(language, status));
        relativeDate = std::make_unique<icu::RelativeDateTimeFormatter>(language, status);
        if (U_FAILURE(status))
            endProgram(std::string("ICU has no locale data: ") + u_errorName(status));
    }
};

/// Qt and not ICU writes the numbers: it takes a mebibyte less of memory.
const QLocale &numbers() {
    static const QLocale locale = userLocale("LC_NUMERIC");
    return locale;
}

DateFormatters &dates() {
    static DateFormatters formatters;
    return formatters;
}

/// Halves become even.
std::uint64_t dividedAndRounded(std::uint64_t dividend, std::uint64_t divisor) {
    const std::uint64_t quotient = dividend / divisor;
    const std::uint64_t rest = dividend % divisor;
    const std::uint64_t half = divisor / 2;
    return rest > half || (rest == half && quotient % 2 == 1) ? quotient + 1 : quotient;
}

/// ICU's moment: milliseconds since 1970.
UDate momentOf(Date date) {
    return static_cast<UDate>(std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch().count());
}

} // namespace

std::string fileSize(std::int64_t bytes) {
    if (bytes == 0)
        return "Zero KB";
    const std::uint64_t unsignedBytes = static_cast<std::uint64_t>(bytes);
    const std::uint64_t magnitude = bytes < 0 ? 0 - unsignedBytes : unsignedBytes;
    std::size_t unit = 0;
    while (magnitude < sizeUnits[unit].from)
        ++unit;
    const auto lastDigits =
        static_cast<std::int64_t>(dividedAndRounded(magnitude, sizeUnits[unit].lastDigit));
    // A few negative bytes are "0", not "-0".
    const double figure = static_cast<double>(bytes < 0 ? -lastDigits : lastDigits) /
                          static_cast<double>(sizeUnits[unit].lastDigitsPer);
    return numbers().toString(figure, 'f', QLocale::FloatingPointShortest).toStdString() +
           sizeUnits[unit].suffix;
}

std::string number(std::int64_t number) {
    return numbers().toString(static_cast<qlonglong>(number)).toStdString();
}

std::string relativeDate(Date date, Date reference) {
    const std::lock_guard guard(dates().lock);
    icu::Calendar &calendar = *dates().calendar;
    UErrorCode status = U_ZERO_ERROR;
    calendar.setTime(momentOf(reference), status);
    std::int32_t amount = 0;
    URelativeDateTimeUnit unit = UDAT_REL_UNIT_SECOND;
    for (std::size_t i = 0; i < dateUnits.size() && amount == 0; ++i) {
        amount = calendar.fieldDifference(momentOf(date), dateUnits[i].field, status);
        unit = dateUnits[i].unit;
    }
    icu::UnicodeString words;
    std::string text;
    dates().relativeDate->formatNumeric(amount, unit, words, status).toUTF8String(text);
    return text;
}

} // namespace brimvale::Formatters
