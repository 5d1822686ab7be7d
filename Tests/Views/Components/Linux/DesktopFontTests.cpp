#include "Views/Components/Linux/DesktopFont.h"

#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"
#include "Views/Components/SystemStyle.h"

#include <QFont>
#include <QFontDatabase>
#include <QStandardPaths>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace brimvale {

TEST(DesktopFont, IsTheOneOfTheDesktopOrTheBundledOne) {
    const QString own = applicationFont().families().value(0);
    ASSERT_TRUE(own.startsWith("Inter")) << "these settings are the test's";
    const testing::TemporaryFolder config;
    const testing::EnvironmentVariable folder("XDG_CONFIG_HOME", config.path());
    const testing::EnvironmentVariable system("XDG_CONFIG_DIRS", config.path("none"));
    QStandardPaths::setTestModeEnabled(false);
    QString named; // of two words
    for (const QString &family : QFontDatabase::families())
        if (family.count(' ') == 1 && !family.contains('[') && QFontDatabase::hasFamily(family))
            named = family;
    if (named.isEmpty())
        named = own;
    config.makeFolder("gtk-3.0");
    const auto familyFor = [&](const char *desktop, const std::string &kde, const std::string &gtk) {
        const testing::EnvironmentVariable current("XDG_CURRENT_DESKTOP", desktop);
        config.writeFile("kdeglobals", "[General]\nfont=" + kde + "\n");
        config.writeFile("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=" + gtk + "\n");
        return applicationFont().families().value(0);
    };
    const std::string name = named.toStdString();
    EXPECT_EQ(familyFor("KDE", name + ",10,-1,5,50,0,0,0,0,0", "none 10"), named);
    EXPECT_EQ(familyFor("XFCE", "none", name + " Bold 10"), named);
    EXPECT_EQ(familyFor("XFCE", "none", name + ",  10"), named);
    EXPECT_EQ(familyFor("ubuntu:GNOME", name, name), own) << "old files of another desktop";
    EXPECT_EQ(familyFor("KDE", "Not Installed Anywhere,10", name), own);
    EXPECT_EQ(familyFor("XFCE", name, ""), own);
    QStandardPaths::setTestModeEnabled(true);
}

} // namespace brimvale
