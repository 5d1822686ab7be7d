#include "Support/EnvironmentVariable.h"

#include <QApplication>
#include <QNetworkProxy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// A Qt warning is a fault: it fails the test that runs. What cannot be done without a display is none.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if (message.startsWith(QLatin1String("This plugin does not support ")))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        ADD_FAILURE() << message.toStdString();
}

} // namespace

int main(int argc, char **argv) {
    brimvale::testing::useTheLocaleOfTheTests();
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir runtimeFolder;
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    QStandardPaths::setTestModeEnabled(true);
    const QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion")); // now that there is one to own it
    QApplication::setKeyboardInputInterval(60'000);   // however slow the machine, keys follow on another
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); // whatever the environment says
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
