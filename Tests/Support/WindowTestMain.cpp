#include "Platform/Host.h"
#include "Support/TestProgram.h"

#include <QApplication>
#include <QFont>
#include <QNetworkProxy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// The offscreen plug-in asks for two fonts that a Mac does not have.
void replaceMissingFonts() {
    if (brimvale::platformSystem() != brimvale::System::macOS)
        return;
    QFont::insertSubstitution(QStringLiteral("Sans Serif"), QStringLiteral("Helvetica"));
    QFont::insertSubstitution(QStringLiteral("monospace"), QStringLiteral("Menlo"));
}

/// A Qt warning is a fault: it fails the test that runs. Exceptions are what cannot be done without a
/// display, and how long a Mac looks for a font that it does not have.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message) {
    for (const QLatin1String harmless : {QLatin1String("This plugin does not support "),
                                         QLatin1String("Populating font family aliases took ")})
        if (message.startsWith(harmless))
            return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        ADD_FAILURE() << message.toStdString();
}

} // namespace

int main(int argc, char **argv) {
    brimvale::testing::startTestProgram(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir runtimeFolder;
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // the desktop takes no part
    QStandardPaths::setTestModeEnabled(true);
    replaceMissingFonts();
    const QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion")); // now that there is one to own it
    QApplication::setKeyboardInputInterval(60'000);   // however slow the machine, keys follow on another
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); // whatever the environment says
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
