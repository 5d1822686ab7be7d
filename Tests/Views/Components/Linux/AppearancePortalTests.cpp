#include "Support/PrivateBus.h"
#include "Support/Window.h"
#include "Views/Components/SystemAppearance.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QVariantMap>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace brimvale {

namespace {

const QString group = QStringLiteral("org.freedesktop.appearance");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");

QVariant accent(double red, double green, double blue) {
    QDBusArgument parts;
    parts.beginStructure();
    parts << red << green << blue;
    parts.endStructure();
    return QVariant::fromValue(parts);
}

} // namespace

TEST(AppearancePortalTest, FollowsTheSettingsOfThePortal) {
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    auto context = std::make_unique<QObject>();
    int changes = 0;
    if (!testing::onPrivateBus("user").isConnected())
        GTEST_SKIP() << "there is no dbus-daemon here";
    followSystemAppearance(context.get(), [&] { ++changes; });
    testing::FakeService portal("org.freedesktop.portal.Desktop", path);
    ASSERT_TRUE(portal.isConnected());
    const auto tellOfChange = [&](const QString &changedGroup) {
        QDBusMessage change =
            QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
        change << changedGroup << "color-scheme" << QVariant::fromValue(QDBusVariant(1U));
        portal.connection().send(change);
    };
    auto nextQuestion = [&, known = std::size_t{0}]() mutable {
        return testing::eventually([&] { return portal.calls.size() > known; }) &&
               portal.calls.size() == ++known &&
               portal.calls.back().arguments() == QList<QVariant>{QStringList{group}};
    };
    const auto change = [&](const QVariantMap &settings) {
        portal.answers["ReadAll"] = [settings](const QDBusMessage &) {
            return QVariantList{QVariant::fromValue(QMap<QString, QVariantMap>{{group, settings}})};
        };
        tellOfChange(group);
        EXPECT_TRUE(nextQuestion());
    };
    const auto becomes = [&](const SystemAppearance &expected) {
        return testing::eventually([&] { return systemAppearance() == expected; });
    };

    EXPECT_TRUE(nextQuestion()) << "it asks as soon as there is a portal";
    EXPECT_EQ(systemAppearance(), SystemAppearance()) << "and does not wait for the answer";

    change({{"color-scheme", 1U}, {"accent-color", accent(1, 0.5, 0)}, {"contrast", 1U}});
    EXPECT_TRUE(becomes({true, QColor::fromRgbF(1, 0.5F, 0), true}));
    EXPECT_EQ(changes, 1);
    change({{"color-scheme", 2U}, {"accent-color", accent(-1, -1, -1)}, {"contrast", 0U}});
    EXPECT_TRUE(becomes({false, std::nullopt, false}));
    change({{"color-scheme", 7U}, {"accent-color", accent(0, std::nan(""), 0)}, {"contrast", 2U}});
    EXPECT_TRUE(becomes({}));
    change({{"color-scheme", 1U}, {"accent-color", 1U}, {"new", 1U}});
    EXPECT_TRUE(becomes({true, std::nullopt, false}));
    tellOfChange("org.gnome.desktop.interface");
    change({});
    EXPECT_TRUE(becomes({}));
    EXPECT_EQ(changes, 5);

    change({{"color-scheme", 1U}});
    EXPECT_TRUE(becomes({true, std::nullopt, false}));
    context.reset();
    EXPECT_EQ(systemAppearance(), SystemAppearance());
}

} // namespace brimvale
