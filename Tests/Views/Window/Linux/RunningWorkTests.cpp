#include "Core/Model/Backups.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/PrivateBus.h"
#include "Support/SampleHome.h"
#include "Support/Window.h"
#include "Views/Window/RunningWork.h"

#include <QDBusObjectPath>
#include <QWidget>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace brimvale {

namespace {

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString requestPath = portalPath + QStringLiteral("/request/1_2/three");

/// The desktop of a user who removes a file.
class RunningWorkTest : public ::testing::Test {
protected:
    RunningWorkTest() {
        home.makeFile("file", 5000);
        portal.answers["Inhibit"] = [](const QDBusMessage &) {
            return QVariantList{QVariant::fromValue(QDBusObjectPath(requestPath))};
        };
    }

    void SetUp() override {
        if (!portal.isConnected())
            GTEST_SKIP() << "there is no dbus-daemon here";
    }

    void remove() {
        model.removals.removeCleanupEntries({{FileURL(home.path("file")), 5000, {}}}, RemovalMode::deleteNow);
        ASSERT_TRUE(model.removals.isRemoving());
    }

    /// The methods that the portal was asked for, in order.
    [[nodiscard]] std::vector<std::string> asked() const {
        std::vector<std::string> methods;
        for (const QDBusMessage &call : portal.calls)
            methods.push_back(call.member().toStdString());
        return methods;
    }

    [[nodiscard]] bool becomes(const std::vector<std::string> &methods) const {
        return testing::eventually([&] { return asked() == methods; });
    }

    testing::FakeService portal{QStringLiteral("org.freedesktop.portal.Desktop"), portalPath};
    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions};
    QWidget window;
    RunningWork work{model.removals, model.backups, model.trash, window, std::chrono::milliseconds(0)};
};

/// What the notifications say.
std::vector<std::string> shownBy(const testing::FakeService &notifications) {
    std::vector<std::string> shown;
    for (const QDBusMessage &call : notifications.calls)
        shown.push_back(call.arguments()[3].toString().toStdString() + ": " +
                        call.arguments()[4].toString().toStdString());
    return shown;
}

} // namespace

TEST_F(RunningWorkTest, KeepsTheSessionAwakeDuringARemoval) {
    testing::HeldRemoval held(actions);
    remove();
    ASSERT_TRUE(becomes({"Inhibit"}));
    const QList<QVariant> arguments = portal.calls.front().arguments();
    ASSERT_EQ(arguments.size(), 3);
    EXPECT_EQ(arguments[1].toUInt(), 1U | 4U) << "neither logout nor suspend";
    held.letGoOn();
    ASSERT_TRUE(becomes({"Inhibit", "Close"}));
    EXPECT_EQ(portal.calls.back().path(), requestPath);
    EXPECT_EQ(portal.calls.back().interface(), "org.freedesktop.portal.Request");
}

TEST_F(RunningWorkTest, WithdrawsARequestThatIsAnsweredTooLate) {
    portal.answers.clear();
    remove();
    ASSERT_TRUE(testing::waitUntilRemoved(model));
    ASSERT_TRUE(becomes({"Inhibit"})) << "nothing to withdraw yet";
    portal.connection().send(
        portal.calls.front().createReply(QVariant::fromValue(QDBusObjectPath(requestPath))));
    EXPECT_TRUE(becomes({"Inhibit", "Close"}));
}

TEST_F(RunningWorkTest, NotifiesOfLongWorkOnlyWhileAnotherProgramIsUsed) {
    const testing::FakeService notifications("org.freedesktop.Notifications",
                                             "/org/freedesktop/Notifications");
    remove();
    ASSERT_TRUE(testing::waitUntilRemoved(model));
    const std::vector<std::string> expected = {"Done: Removed 1 item, reclaiming 5 KB"};
    EXPECT_TRUE(testing::eventually([&] { return shownBy(notifications) == expected; }));
    EXPECT_EQ(notifications.calls.front().signature(), "susssasa{sv}i");

    testing::activate(window);
    remove();
    ASSERT_TRUE(testing::waitUntilRemoved(model));
    window.hide();
    RunningWork patient(model.removals, model.backups, model.trash, window);
    QObject::disconnect(&model.removals, nullptr, &work, nullptr);
    remove();
    ASSERT_TRUE(testing::waitUntilRemoved(model));

    const FileURL folder(home.makeFolder("backups"));
    home.makeFile("kept", 8192);
    model.backups.archiveThenReview("test", folder, {{FileURL(home.path("kept")), 8192, {}}},
                                    RemovalMode::trash);
    ASSERT_TRUE(testing::eventually([&] { return !model.backups->isArchiving; }));
    EXPECT_TRUE(testing::eventually([&] { return notifications.calls.size() == 2; }));
    EXPECT_EQ(shownBy(notifications).back(),
              "Backup complete: 1 item copied, 8 KB. Nothing has been deleted yet.");
}

} // namespace brimvale
