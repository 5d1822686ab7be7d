#include "Core/Update/UpdateEnvironment.h"

#include "Platform/SystemLog.h"

#include <QDir>
#include <QFile>
#include <QOperatingSystemVersion>

namespace brimvale {

namespace {

constexpr TransferLimits feedLimits{
    .bytes = 1024 * 1024, .silence = std::chrono::seconds(15), .whole = std::chrono::seconds(60)};
constexpr TransferLimits archiveLimits{.bytes = qint64{2} * 1024 * 1024 * 1024,
                                       .silence = std::chrono::seconds(60)};

std::optional<SystemVersion> runningMacOSVersion() {
    if (QOperatingSystemVersion::currentType() != QOperatingSystemVersion::MacOS)
        return std::nullopt;
    const auto version = QOperatingSystemVersion::current();
    return SystemVersion{version.majorVersion(), version.minorVersion()};
}

} // namespace

FileURL installLog() {
    return FileURL("/tmp/corvel-update.log");
}

QUrl UpdateEnvironment::releaseFeed() {
    return QUrl(QStringLiteral("https://updates.brimvale.example/appcast.json"));
}

UpdateEnvironment UpdateEnvironment::current() {
    return {.feedURL = releaseFeed(),
            .bundle = mainBundle(),
            .canInstallItself = brimvale::canInstallItself(),
            .macOSVersion = runningMacOSVersion(),
            .temporaryFolder = FileURL(QFile::encodeName(QDir::tempPath()).toStdString()),
            .installLog = brimvale::installLog(),
            .tools = platformTools(),
            .feedLimits = brimvale::feedLimits,
            .archiveLimits = brimvale::archiveLimits,
            .network = updateNetwork,
            .quit = std::make_shared<ApplicationQuit>(),
            .log = writeToSystemLog};
}

} // namespace brimvale
