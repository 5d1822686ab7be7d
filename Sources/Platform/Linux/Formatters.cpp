#include "Platform/Formatters.h"

#include "Base/Diagnostics.h"
#include "Platform/Linux/UserLocale.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <unicode/calendar.h>
#include <unicode/numberformatter.h>
#include <unicode/reldatefmt.h>

namespace brimvale::Formatters {

namespace {

using icu::number::LocalizedNumberFormatter;

struct SizeUnit {
    std::uint64_t from; ///< bytes that the unit below would round up to 1,000
    int powerOfTen;
    int fractionDigits;
    const char *suffix;
};

constexpr std::array<SizeUnit, 4> sizeUnits = {
    {{999'995'000'000, 12, 2, " TB"}, {999'950'000, 9, 2, " GB"}, {999'500, 6, 1, " MB"}, {0, 3, 0, " KB"}}};

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

/// Used under a lock: some of these ICU functions are not fully thread-safe. QLocale is, and takes 2 MiB less
/// of memory, but that of Qt 6.4 writes 1234.567 in languages that do not group four digits, such as Spanish.
struct NumberFormatters {
    std::mutex lock;
    LocalizedNumberFormatter number = icu::number::NumberFormatter::withLocale(userLocale("LC_NUMERIC"));
    std::array<LocalizedNumberFormatter, sizeUnits.size()> sizes;

    NumberFormatters() {
        std::transform(sizeUnits.begin(), sizeUnits.end(), sizes.begin(), [this](const SizeUnit &unit) {
            // Scaled in decimal digits, so nothing is lost; a few negative bytes round to "0", not "-0".
            return number.scale(icu::number::Scale::powerOfTen(-unit.powerOfTen))
                .precision(icu::number::Precision::maxFraction(unit.fractionDigits))
                .sign(UNUM_SIGN_NEGATIVE);
        });
    }
};

/// Apart from numbers, because ICU takes another mebibyte of memory for dates. Used under a lock, too: the
/// calendar is set each time.
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

NumberFormatters &numbers() {
    static NumberFormatters formatters;
    return formatters;
}

DateFormatters &dates() {
    static DateFormatters formatters;
    return formatters;
}

std::string text(const LocalizedNumberFormatter &formatter, std::int64_t number) {
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter.formatInt(number, status).toString(status).toUTF8String(text);
    return text;
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
    const std::lock_guard guard(numbers().lock);
    return text(numbers().sizes[unit], bytes) + sizeUnits[unit].suffix;
}

std::string number(std::int64_t number) {
    const std::lock_guard guard(numbers().lock);
    return text(numbers().number, number);
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
