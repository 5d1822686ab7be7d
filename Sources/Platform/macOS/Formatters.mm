#include "Platform/Formatters.h"

#include "Platform/macOS/Text.h"

#include <mutex>

namespace brimvale::Formatters {

namespace {

/// Locked, because Foundation does not promise that formatters are thread-safe.
struct NativeFormatters {
    std::mutex lock;
    NSByteCountFormatter *sizes = [[NSByteCountFormatter alloc] init];
    NSNumberFormatter *numbers = [[NSNumberFormatter alloc] init];
    NSRelativeDateTimeFormatter *dates = [[NSRelativeDateTimeFormatter alloc] init];

    NativeFormatters() {
        sizes.countStyle = NSByteCountFormatterCountStyleFile;
        sizes.allowedUnits = NSByteCountFormatterUseKB | NSByteCountFormatterUseMB |
                             NSByteCountFormatterUseGB | NSByteCountFormatterUseTB;
        numbers.numberStyle = NSNumberFormatterDecimalStyle;
        dates.unitsStyle = NSRelativeDateTimeFormatterUnitsStyleFull;
    }
};

NativeFormatters &native() {
    static NativeFormatters formatters;
    return formatters;
}

NSDate *dateOf(Date date) {
    const std::chrono::duration<double> seconds = date.time_since_epoch();
    return [NSDate dateWithTimeIntervalSince1970:seconds.count()];
}

} // namespace

std::string fileSize(std::int64_t bytes) {
    @autoreleasepool {
        const std::lock_guard guard(native().lock);
        return bytesOf([native().sizes stringFromByteCount:bytes]);
    }
}

std::string number(std::int64_t number) {
    @autoreleasepool {
        const std::lock_guard guard(native().lock);
        return bytesOf([native().numbers stringFromNumber:@(number)]);
    }
}

std::string relativeDate(Date date, Date reference) {
    @autoreleasepool {
        const std::lock_guard guard(native().lock);
        return bytesOf([native().dates localizedStringForDate:dateOf(date) relativeToDate:dateOf(reference)]);
    }
}

} // namespace brimvale::Formatters
