#include "Support/Window.h"
#include "Views/Components/SystemAppearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QVariantMap>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace brimvale {

namespace {

const QString group = QStringLiteral("org.freedesktop.appearance");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");

/// A portal with these settings, or one that never answers.
class FakePortal : public QDBusVirtualObject {
public:
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        const QList<QVariant> groups = {QStringList{group}};
        if (message.member() != QStringLiteral("ReadAll") || message.arguments() != groups)
            return false;
        ++questions;
        if (settings)
            connection.send(
                message.createReply(QVariant::fromValue(QMap<QString, QVariantMap>{{group, *settings}})));
        return true;
    }
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    int questions = 0;
    std::optional<QVariantMap> settings;
};

QVariant accent(double red, double green, double blue) {
    QDBusArgument parts;
    parts.beginStructure();
    parts << red << green << blue;
    parts.endStructure();
    return QVariant::fromValue(parts);
}

/// A session bus of its own, as long as it lives.
class PrivateBus {
public:
    PrivateBus() {
        daemon_.start(QStringLiteral("dbus-daemon"), {"--session", "--nofork", "--print-address=1"});
        daemon_.waitForReadyRead();
        address_ = daemon_.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address_);
    }
    ~PrivateBus() {
        daemon_.kill();
        daemon_.waitForFinished();
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    [[nodiscard]] QDBusConnection connection(const QString &name) const {
        return QDBusConnection::connectToBus(QString::fromLatin1(address_), name);
    }

private:
    QProcess daemon_;
    QByteArray address_;
};

} // namespace

TEST(AppearancePortalTest, FollowsTheSettingsOfThePortal) {
    if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
        GTEST_SKIP() << "there is no dbus-daemon here";
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    const PrivateBus bus;
    QDBusConnection connection = bus.connection("portal");
    FakePortal portal;
    ASSERT_TRUE(connection.registerVirtualObject(path, &portal));
    const auto tellOfChange = [&](const QString &changedGroup) {
        QDBusMessage change =
            QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
        change << changedGroup << "color-scheme" << QVariant::fromValue(QDBusVariant(1U));
        connection.send(change);
    };
    auto nextQuestion = [&, known = 0]() mutable {
        return testing::eventually([&] { return portal.questions > known; }) && portal.questions == ++known;
    };
    const auto change = [&](const QVariantMap &settings) {
        portal.settings = settings;
        tellOfChange(group);
        EXPECT_TRUE(nextQuestion());
    };
    const auto becomes = [&](const SystemAppearance &expected) {
        return testing::eventually([&] { return systemAppearance() == expected; });
    };

    auto context = std::make_unique<QObject>();
    int changes = 0;
    followSystemAppearance(context.get(), [&] { ++changes; });
    ASSERT_TRUE(connection.registerService("org.freedesktop.portal.Desktop"));
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
