#include "Views/Components/FolderChooser.h"

#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"
#include "Support/Window.h"

#include <QFileDialog>
#include <QStandardPaths>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

TEST(FolderChooser, LeavesNothingInTheHome) {
    const testing::TemporaryFolder home;
    const testing::EnvironmentVariable variable("HOME", home.path());
    const testing::EnvironmentVariable configuration("XDG_CONFIG_HOME", std::nullopt);
    QStandardPaths::setTestModeEnabled(false); // which moves such files
    std::string chosen;
    {
        QWidget window;
        window.show();
        chooseFolder(window, QStringLiteral("Choose"), "/", [&](const std::string &path) { chosen = path; });
        auto *dialog = window.findChild<QFileDialog *>("folderChooser");
        ASSERT_NE(dialog, nullptr);
        dialog->setDirectory(QString::fromStdString(home.path()));
        emit dialog->fileSelected(QString::fromStdString(home.path()));
        dialog->close();
        EXPECT_TRUE(testing::eventually([&] { return window.findChild<QFileDialog *>() == nullptr; }));
    }
    QStandardPaths::setTestModeEnabled(true);
    EXPECT_EQ(chosen, home.path());
    std::vector<std::string> left;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(home.path()))
        left.push_back(entry.path());
    EXPECT_THAT(left, ::testing::IsEmpty());
}

} // namespace brimvale
