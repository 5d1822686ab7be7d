#include "Core/Update/UpdateAddress.h"

#include <QStringList>
#include <algorithm>

namespace brimvale {

namespace {

/// Whether this is a number of this machine: 127.x.x.x or ::1. `QUrl` has written it in the usual form.
bool isLoopback(const QString &host) {
    const QStringList numbers = host.split(QLatin1Char('.'));
    const bool isAddress =
        numbers.size() == 4 && std::all_of(numbers.begin(), numbers.end(), [](auto &number) {
            bool isNumber = false;
            return number.toUShort(&isNumber) <= 255 && isNumber;
        });
    return host == QLatin1String("::1") || (isAddress && numbers.front() == QLatin1String("127"));
}

} // namespace

bool isSafeUpdateURL(const QUrl &url) {
    if (!url.isValid() || url.host().isEmpty())
        return false;
    if (url.scheme() == QLatin1String("https"))
        return true;
    return url.scheme() == QLatin1String("http") &&
           (url.host() == QLatin1String("localhost") || isLoopback(url.host()));
}

} // namespace brimvale
