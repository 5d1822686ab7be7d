#include "Views/Components/Linux/DesktopFont.h"

#include "Base/KeyFile.h"
#include "Platform/ProcessRunner.h"
#include "Views/Components/Linux/SessionBus.h"
#include "Views/Components/Linux/SettingsPortal.h"

#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <array>

namespace brimvale {

namespace {

constexpr qint64 mostSettingsBytes = 1 << 20;
constexpr double pointsOfPixel = 0.75;

/// What the settings say about the font.
struct NamedFont {
    QString words;        ///< the family, and perhaps the style
    double points = 0;    ///< 0: not named
    double textScale = 1; ///< of all texts
};

/// A desktop whose settings are in a schema of GSettings.
struct SchemaDesktop {
    QLatin1String name; ///< in XDG_CURRENT_DESKTOP
    QLatin1String schema;
    double usualPoints;
};

constexpr std::array schemaDesktops = {
    SchemaDesktop{QLatin1String("GNOME"), QLatin1String("org.gnome.desktop.interface"), 11},
    SchemaDesktop{QLatin1String("Unity"), QLatin1String("org.gnome.desktop.interface"), 11},
    SchemaDesktop{QLatin1String("X-Cinnamon"), QLatin1String("org.cinnamon.desktop.interface"), 10},
    SchemaDesktop{QLatin1String("MATE"), QLatin1String("org.mate.interface"), 10}};
constexpr double usualPointsElsewhere = 10; // of KDE and GTK

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

/// "Noto Sans,10,-1,5": the family, its size in points and, if that is negative, in pixels.
NamedFont readAsKde(const QString &text) {
    const double points = text.section(u',', 1, 1).toDouble();
    const double pixels = text.section(u',', 2, 2).toDouble();
    return {text.section(u',', 0, 0), points > 0 ? points : std::max(pixels * pointsOfPixel, 0.0)};
}

/// "Noto Sans Bold 10", "Noto Sans,  10", "Noto Sans 13px" or "Noto Sans 10 @wght=400".
NamedFont readAsPango(const QString &text) {
    QStringList words = text.section(u'@', 0, 0).split(u' ', Qt::SkipEmptyParts);
    QString size = words.value(words.size() - 1);
    const bool isInPixels = size.endsWith(QStringLiteral("px"));
    if (isInPixels)
        size.chop(2);
    bool isSize = false;
    const double number = size.toDouble(&isSize);
    if (!isSize || number <= 0)
        return {words.join(u' ')};
    words.removeLast();
    return {words.join(u' ').section(u',', 0, 0), isInPixels ? number * pointsOfPixel : number};
}

/// What `gsettings` prints for a key: "'Cantarell 11'", "1.25"; empty if it cannot.
QString printedSetting(const Tools &tools, QLatin1String schema, const char *key) {
    const auto printed = runProcess(tools.settings, {"get", schema.data(), key}, StandardError::discarded, {},
                                    mostSettingsBytes);
    if (!printed || !printed->hasSucceeded())
        return {};
    QString value = QString::fromStdString(printed->output).trimmed();
    if (value.size() > 1 && value.startsWith(u'\''))
        value = value.mid(1, value.size() - 2);
    return value;
}

NamedFont readSchema(const Tools &tools, QLatin1String schema) {
    constexpr const char *fontKey = "font-name";
    constexpr const char *scaleKey = "text-scaling-factor";
    QVariantMap settings =
        SettingsPortal::settingsIn(
            SessionBus::wait(SettingsPortal::question(schema), SettingsPortal::longestWait), schema)
            .value_or(QVariantMap());
    if (settings.isEmpty())
        settings = {{fontKey, printedSetting(tools, schema, fontKey)},
                    {scaleKey, printedSetting(tools, schema, scaleKey)}};
    NamedFont font = readAsPango(settings.value(fontKey).toString());
    // On X11 the desktop makes it part of the resolution, by which Qt enlarges everything.
    const double factor = settings.value(scaleKey).toDouble();
    if (factor > 0 && QGuiApplication::platformName() != QStringLiteral("xcb"))
        font.textScale = factor;
    return font;
}

/// The installed family with which the words begin. Style and size may follow it without a mark between them.
QString installedFamily(const QString &text) {
    QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    while (!words.isEmpty() && !QFontDatabase::hasFamily(words.join(u' ')))
        words.removeLast();
    return words.join(u' ');
}

DesktopFont usedFont(const NamedFont &font, double usualPoints) {
    const double scale = font.points > 0 ? font.points / usualPoints : 1;
    return {installedFamily(font.words), scale * font.textScale};
}

} // namespace

DesktopFont desktopFont(const Tools &tools) {
    const QStringList current = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    if (current.contains(QStringLiteral("KDE")))
        return usedFont(readAsKde(setting("kdeglobals", "General", "font")), usualPointsElsewhere);
    for (const SchemaDesktop &one : schemaDesktops)
        if (current.contains(one.name))
            return usedFont(readSchema(tools, one.schema), one.usualPoints);
    return usedFont(readAsPango(setting("gtk-3.0/settings.ini", "Settings", "gtk-font-name")),
                    usualPointsElsewhere);
}

} // namespace brimvale
