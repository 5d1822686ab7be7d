#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/PrivateBus.h"
#include "Support/SampleHome.h"
#include "Support/Window.h"
#include "Views/Window/RunningWork.h"

#include <QDBusObjectPath>
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
    RunningWork work{model.removals, model.backups, model.trash, nullptr};
};

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

} // namespace brimvale
