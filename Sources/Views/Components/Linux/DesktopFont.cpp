#include "Views/Components/Linux/DesktopFont.h"

#include "Base/KeyFile.h"

#include <QFile>
#include <QFontDatabase>
#include <QStandardPaths>
#include <QStringList>

namespace brimvale {

namespace {

constexpr qint64 mostSettingsBytes = 1 << 20;

/// The value of a key in the first of the user's and the system's files of that name that has it.
QString setting(const char *file, const char *group, const char *key) {
    for (const QString &path :
         QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, QLatin1String(file))) {
        QFile settings(path);
        if (!settings.open(QIODevice::ReadOnly))
            continue;
        const std::string value = KeyFile(settings.read(mostSettingsBytes).toStdString()).text(group, key);
        if (!value.empty())
            return QString::fromStdString(value);
    }
    return {};
}

/// "Noto Sans,10,-1,5" or "Noto Sans Bold 10". GNOME's setting is in no file that can be read.
QString describedFont() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    if (desktops.contains(QStringLiteral("KDE")))
        return setting("kdeglobals", "General", "font");
    if (desktops.contains(QStringLiteral("GNOME")))
        return {};
    return setting("gtk-3.0/settings.ini", "Settings", "gtk-font-name");
}

} // namespace

QString desktopFontFamily() {
    // Style and size may follow the family without a mark between them.
    QStringList words = describedFont().section(u',', 0, 0).split(u' ', Qt::SkipEmptyParts);
    while (!words.isEmpty() && !QFontDatabase::hasFamily(words.join(u' ')))
        words.removeLast();
    return words.join(u' ');
}

} // namespace brimvale
