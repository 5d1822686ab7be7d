#include "Views/Components/Linux/DesktopFont.h"

#include "Support/EnvironmentVariable.h"
#include "Support/PrivateBus.h"
#include "Support/TemporaryFolder.h"
#include "Support/Window.h"
#include "Views/Components/SystemStyle.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QFont>
#include <QFontDatabase>
#include <QStandardPaths>
#include <QVariantMap>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <string>

namespace brimvale {

namespace {

/// An installed family of two words, if there is one.
QString someFamily() {
    for (const QString &family : QFontDatabase::families())
        if (family.count(' ') == 1 && !family.contains('[') && QFontDatabase::hasFamily(family))
            return family;
    return systemFont().font.families().value(0);
}

class DesktopFontTest : public ::testing::Test {
protected:
    DesktopFontTest() {
        QStandardPaths::setTestModeEnabled(false);
        config.makeFolder("gtk-3.0");
    }
    ~DesktopFontTest() override { QStandardPaths::setTestModeEnabled(true); }

    DesktopFont fontFor(const char *desktop, const std::string &kde, const std::string &gtk,
                        const Tools &tools = platformTools()) {
        const testing::EnvironmentVariable current("XDG_CURRENT_DESKTOP", desktop);
        config.writeFile("kdeglobals", "[General]\nfont=" + kde + "\n");
        config.writeFile("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=" + gtk + "\n");
        return desktopFont(tools);
    }

    void expect(const DesktopFont &font, const QString &family, double scale) {
        EXPECT_EQ(font.family, family);
        EXPECT_DOUBLE_EQ(font.scale, scale);
    }

    const QString named = someFamily();
    const std::string name = named.toStdString();
    testing::TemporaryFolder config;
    testing::EnvironmentVariable folder{"XDG_CONFIG_HOME", config.path()};
    testing::EnvironmentVariable system{"XDG_CONFIG_DIRS", config.path("none")};
};

} // namespace

TEST_F(DesktopFontTest, IsInTheFilesOfKdeAndGtk) {
    expect(fontFor("KDE", name + ",10,-1,5,50,0,0,0,0,0", "none 10"), named, 1);
    expect(fontFor("KDE", name + ",14.5,-1,5,400", ""), named, 1.45);
    expect(fontFor("KDE", name + ",-1,20,5,400", ""), named, 1.5);
    expect(fontFor("KDE", "Not Installed Anywhere,12", name), "", 1.2);
    expect(fontFor("KDE", name, ""), named, 1);
    expect(fontFor("XFCE", "none", name + " Bold 10"), named, 1);
    expect(fontFor("XFCE", "none", name + ",  9"), named, 0.9);
    expect(fontFor("", "none", name + " 16px @wght=400"), named, 1.2);
    expect(fontFor("XFCE", "none", name + " Bold"), named, 1);
    expect(fontFor("XFCE", name, ""), "", 1);
    expect(fontFor("XFCE", name, "-5"), "", 1);
}

TEST_F(DesktopFontTest, ComesFromGSettingsWithoutAPortal) {
    Tools tools;
    const auto settings = [&](const std::string &font, const std::string &scale) {
        tools.settings =
            config.makeScript("gsettings", "[ \"$1 $2\" = 'get org.gnome.desktop.interface' ] && "
                                           "case $3 in font-name) echo \"" +
                                               font + "\" ;; *) echo " + scale + " ;; esac");
        return fontFor("ubuntu:GNOME", name + ",20", name + " 20", tools);
    };
    expect(settings("'" + name + " 11'", "1.0"), named, 1);
    expect(settings("'" + name + " Bold 22'", "0.5"), named, 1);
    expect(settings("'Nowhere 5.5'", "1.5"), "", 0.75);
    expect(settings("", "none"), "", 1);
    tools.settings = config.path("missing");
    expect(fontFor("ubuntu:GNOME", name + ",20", name + " 20", tools), "", 1);
}

TEST_F(DesktopFontTest, ComesFromThePortal) {
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    testing::FakeService portal("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop");
    if (!portal.isConnected())
        GTEST_SKIP() << "there is no dbus-daemon here";
    portal.answers["ReadAll"] = [this](const QDBusMessage &call) {
        EXPECT_EQ(call.arguments().constFirst(), QStringList{"org.gnome.desktop.interface"});
        const QVariantMap settings{{"font-name", named + " 13.75"}, {"text-scaling-factor", 1.2}};
        return QVariantList{
            QVariant::fromValue(QMap<QString, QVariantMap>{{"org.gnome.desktop.interface", settings}})};
    };
    // The portal of this test answers on this thread.
    auto answer = std::async(std::launch::async, [this] { return fontFor("GNOME", "", ""); });
    ASSERT_TRUE(testing::eventually(
        [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    expect(answer.get(), named, 1.5);
}

TEST_F(DesktopFontTest, GivesTheWindowItsFontOrTheBundledOneInReadableSizes) {
    const auto given = [&](const std::string &kde) {
        config.writeFile("kdeglobals", "[General]\nfont=" + kde + "\n");
        return systemFont();
    };
    const testing::EnvironmentVariable current("XDG_CURRENT_DESKTOP", "KDE");
    EXPECT_EQ(given(name + ",10").font.families().value(0), named);
    EXPECT_TRUE(given("Nowhere,10").font.families().value(0).startsWith("Inter"));
    for (const auto &[points, pixels] : {std::pair(10, 13), {14, 18}, {5, 10}, {40, 21}})
        EXPECT_EQ(given(name + "," + std::to_string(points)).font.pixelSize(), pixels) << points;
}

} // namespace brimvale
