#include "Core/Text/Decimal.h"

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

namespace brimvale {

// std::to_chars could do this, but on a Mac its floating-point forms need macOS 13.3.

std::string shortestDecimal(double number) {
    using Limits = std::numeric_limits<double>;
    std::string text;
    for (int digits = Limits::digits10; digits <= Limits::max_digits10; ++digits) {
        std::stringstream stream;
        stream.imbue(std::locale::classic());
        stream << std::setprecision(digits) << number;
        text = stream.str();
        double readBack = 0;
        if (stream >> readBack && readBack == number)
            break;
    }
    return text;
}

std::string fixedDecimal(double number, int places) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << std::setprecision(places) << number;
    return stream.str();
}

} // namespace brimvale
