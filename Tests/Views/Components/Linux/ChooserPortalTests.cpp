#include "Support/PrivateBus.h"
#include "Support/Window.h"
#include "Views/Components/FileChooser.h"
#include "Views/Components/FolderChooser.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFileDialog>
#include <QVariantMap>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

const QString portalOfFiles = QStringLiteral("/org/freedesktop/portal/desktop");

/// A window whose desktop has a portal for files.
class ChooserPortalTest : public ::testing::Test {
protected:
    ChooserPortalTest() {
        answerVersion(3);
        for (const char *method : {"OpenFile", "SaveFile"})
            portal.answers[method] = [](const QDBusMessage &call) {
                return QVariantList{QVariant::fromValue(QDBusObjectPath(requestOf(call)))};
            };
    }

    void SetUp() override {
        if (!portal.isConnected())
            GTEST_SKIP() << "there is no dbus-daemon here";
    }

    void answerVersion(uint version) {
        portal.answers["Get"] = [version](const QDBusMessage &) {
            return QVariantList{QVariant::fromValue(QDBusVariant(version))};
        };
    }

    static QVariantMap optionsOf(const QDBusMessage &call) {
        return qdbus_cast<QVariantMap>(call.arguments().at(2));
    }

    static QString requestOf(const QDBusMessage &call) {
        return portalOfFiles + "/request/" + call.service().mid(1).replace('.', '_') + '/' +
               optionsOf(call).value("handle_token").toString();
    }

    void choose() {
        chooseFolder(*window, "Choose", "/home/a b",
                     [this](const std::string &path) { chosen.push_back(path); });
    }

    [[nodiscard]] bool isAsked(const char *method) const {
        return testing::eventually(
            [&] { return !portal.calls.empty() && portal.calls.back().member() == method; });
    }

    [[nodiscard]] QFileDialog *dialogOfQt() const { return window->findChild<QFileDialog *>(); }

    /// The user's answer to the latest question.
    void answer(uint response, const QStringList &uris) {
        QDBusMessage signal = QDBusMessage::createSignal(requestOf(portal.calls.back()),
                                                         "org.freedesktop.portal.Request", "Response");
        signal << response << QVariantMap{{"uris", uris}};
        portal.connection().send(signal);
    }

    testing::FakeService portal{QStringLiteral("org.freedesktop.portal.Desktop"), portalOfFiles};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::vector<std::string> chosen;
};

} // namespace

TEST_F(ChooserPortalTest, LetsTheDesktopAskForAFolder) {
    choose();
    choose(); // one at a time
    ASSERT_TRUE(isAsked("OpenFile"));
    EXPECT_EQ(portal.calls.size(), 2U);
    const QVariantMap options = optionsOf(portal.calls.back());
    EXPECT_EQ(portal.calls.back().arguments().at(1), "Choose");
    EXPECT_TRUE(options.value("directory").toBool());
    EXPECT_EQ(options.value("current_folder").toByteArray(), QByteArray("/home/a b", 10));
    answer(0, {"file:///home/a%20b/%FF%25"});
    EXPECT_TRUE(testing::eventually([&] { return chosen == std::vector<std::string>{"/home/a b/\xFF%"}; }));

    for (const auto &[response, uri] : {std::pair(1U, "file:///home"), {0U, "https://host/home"}}) {
        EXPECT_TRUE(testing::eventually([&] { return window->children().isEmpty(); }));
        portal.calls.clear();
        choose();
        ASSERT_TRUE(isAsked("OpenFile"));
        answer(response, {uri});
    }
    EXPECT_TRUE(testing::eventually([&] { return window->children().isEmpty(); }));
    EXPECT_EQ(chosen.size(), 1U);
    EXPECT_EQ(portal.calls.back().member(), "OpenFile") << "nothing to withdraw";
}

TEST_F(ChooserPortalTest, LetsTheDesktopAskForAFile) {
    answerVersion(1);
    const auto take = [this](const std::string &path) { chosen.push_back(path); };
    chooseFileToSave(*window, "Save", "list.json", "json", take);
    ASSERT_TRUE(isAsked("SaveFile"));
    QVariantMap options = optionsOf(portal.calls.back());
    EXPECT_EQ(options.value("current_name"), "list.json");
    EXPECT_FALSE(options.contains("directory"));
    answer(0, {"file:///home/other"});
    EXPECT_TRUE(testing::eventually([&] { return chosen == std::vector<std::string>{"/home/other"}; }))
        << "as the user agreed to it";

    EXPECT_TRUE(testing::eventually([&] { return window->children().isEmpty(); }));
    chooseFileToOpen(*window, "Open", {{"Lists", {"*.json", "*.scan"}}, {"All files", {"*"}}}, take);
    ASSERT_TRUE(isAsked("OpenFile"));
    options = optionsOf(portal.calls.back());
    EXPECT_FALSE(options.contains("current_name"));
    const auto kinds = options.value("filters").value<QDBusArgument>();
    ASSERT_EQ(kinds.currentSignature(), "a(sa(us))");
    QStringList titles;
    for (kinds.beginArray(); !kinds.atEnd(); kinds.endStructure()) {
        QString title;
        kinds.beginStructure();
        kinds >> title;
        titles.append(title);
        for (kinds.beginArray(); !kinds.atEnd(); kinds.endStructure()) {
            uint type = 9;
            QString pattern;
            kinds.beginStructure();
            kinds >> type >> pattern;
            titles.append(QString::number(type) + pattern);
        }
        kinds.endArray();
    }
    kinds.endArray();
    EXPECT_EQ(titles, QStringList({"Lists", "0*.json", "0*.scan", "All files", "0*"}));
    answer(0, {"file:///home/list.json"});
    EXPECT_TRUE(testing::eventually([&] { return chosen.size() == 2; }));
}

TEST_F(ChooserPortalTest, WithdrawsTheQuestionWithTheWindow) {
    choose();
    ASSERT_TRUE(isAsked("OpenFile"));
    const QString request = requestOf(portal.calls.back());
    window.reset();
    ASSERT_TRUE(isAsked("Close"));
    EXPECT_EQ(portal.calls.back().path(), request);
}

TEST_F(ChooserPortalTest, ShowsTheDialogOfQtWithoutAPortalThatKnowsFolders) {
    answerVersion(2);
    choose();
    EXPECT_TRUE(testing::eventually([&] { return dialogOfQt() != nullptr; }));
    EXPECT_EQ(portal.calls.size(), 1U);
    window = std::make_unique<QWidget>();
    portal.connection().unregisterService("org.freedesktop.portal.Desktop");
    choose();
    EXPECT_TRUE(testing::eventually([&] { return dialogOfQt() != nullptr; }));
    window = std::make_unique<QWidget>();
    chooseFileToSave(*window, "Save", "list.json", "json", {});
    EXPECT_TRUE(testing::eventually([&] { return dialogOfQt() != nullptr; }));
    EXPECT_EQ(dialogOfQt()->defaultSuffix(), "json");
}

} // namespace brimvale
