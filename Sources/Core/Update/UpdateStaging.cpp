#include "Core/Update/UpdateStaging.h"

#include "Core/Text/Shell.h"
#include "Core/Update/CodeSignature.h"
#include "Core/Update/SigningTeam.h"
#include "Core/Update/UpdateManifest.h"
#include "Platform/Bundle.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QUuid>
#include <string_view>
#include <utility>

namespace brimvale {

namespace {

UpdateResult<std::string> sha256Of(const FileURL &file, const Tools &tools) {
    const auto result = Shell::runWithStatus(tools.shasum, {"-a", "256", file.path()});
    const std::string digest =
        result && result->hasSucceeded() ? result->output.substr(0, result->output.find(' ')) : "";
    if (digest.empty())
        return UpdateError::checksumMismatch;
    return digest;
}

std::optional<UpdateFailure> verifyChecksum(const FileURL &archive, const std::string &sha256,
                                            const Tools &tools) {
    const auto digest = sha256Of(archive, tools);
    if (const auto *failure = std::get_if<UpdateFailure>(&digest))
        return *failure;
    const auto lowerCase = [](const std::string &text) { return QByteArray::fromStdString(text).toLower(); };
    if (lowerCase(std::get<std::string>(digest)) != lowerCase(sha256))
        return UpdateError::checksumMismatch;
    return std::nullopt;
}

/// Creates a folder that only this user can ever enter.
UpdateResult<FileURL> makeUnpackFolder(const FileURL &temporaryFolder) {
    const FileURL folder =
        temporaryFolder.appending(std::string(unpackFolderPrefix) +
                                  QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString());
    const QDir parent(QFile::decodeName(temporaryFolder.path().c_str()));
    const auto onlyOwner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!parent.mkpath(QStringLiteral(".")) ||
        !parent.mkdir(QFile::decodeName(folder.path().c_str()), onlyOwner))
        return UpdateFailure("The folder " + folder.path() + " could not be made for unpacking the update.");
    return folder;
}

/// A link with an application's name could point outside the private folder, where another user could change
/// what was verified.
bool isApplication(const FileURL &item) {
    const auto status = fileStatus(item.path());
    return item.path().ends_with(".app") && status && status->kind == FileKind::directory;
}

UpdateResult<FileURL> unpack(const FileURL &archive, const FileURL &temporaryFolder, const Tools &tools) {
    auto made = makeUnpackFolder(temporaryFolder);
    const auto *folder = std::get_if<FileURL>(&made);
    if (folder == nullptr)
        return made;
    const auto result = Shell::runWithStatus(tools.unpacker, {"-x", "-k", archive.path(), folder->path()});
    if (!result || !result->hasSucceeded())
        return UpdateError::unpackFailed;
    Folder listing = Folder::at(folder->path(), Folder::Links::refuse);
    if (!listing.isOpen())
        return UpdateError::unpackFailed;
    while (const char *name = listing.nextName())
        if (FileURL item = folder->appending(name); isApplication(item))
            return item;
    return UpdateError::unpackFailed;
}

/// Names are part of what codesign prints, even over several lines, and anybody chooses those. The line that
/// it prints itself comes after them.
bool saysOwnTeam(const std::string &details) {
    constexpr std::string_view begin = "\nTeamIdentifier=";
    const std::string lines = "\n" + details + "\n";
    const std::size_t last = lines.rfind(begin);
    if (details.find(teamLine) == std::string::npos || last == std::string::npos)
        return false;
    return lines.substr(last + 1, lines.find('\n', last + 1) - last - 1) == teamLine;
}

std::optional<UpdateFailure> verifySignature(const FileURL &app, const Tools &tools) {
    if (!isValidlySigned(app, tools))
        return UpdateError::signatureInvalid;
    // The tool prints the details to its standard error.
    const auto details = Shell::runWithStatus(tools.codesign, {"-dv", app.path()}, StandardError::withOutput);
    if (!details || !details->hasSucceeded() || details->output.empty())
        return UpdateError::signatureInvalid;
    if (!saysOwnTeam(details->output) || !isSignedByOurTeam(app, tools))
        return UpdateError::wrongTeam;
    return std::nullopt;
}

/// An older release and another program of the same team are validly signed, too.
std::optional<UpdateFailure> verifyRelease(const FileURL &app, const ExpectedRelease &expected) {
    const BundleInfo info = bundleInfo(app).value_or(BundleInfo{});
    if (!info.identifier || info.identifier != expected.identifier)
        return UpdateFailure("The downloaded app is a different program and was discarded.");
    if (const std::int64_t build = buildNumber(info.version); build != expected.build)
        return UpdateFailure("The downloaded app is build " + std::to_string(build) + ", but build " +
                             std::to_string(expected.build) + " was announced. It was discarded.");
    return std::nullopt;
}

} // namespace

UpdateResult<FileURL> stageUpdate(const FileURL &archive, const ExpectedRelease &expected,
                                  const FileURL &temporaryFolder, const Tools &tools) {
    if (expected.sha256)
        if (const auto failure = verifyChecksum(archive, *expected.sha256, tools))
            return *failure;
    auto unpacked = unpack(archive, temporaryFolder, tools);
    const auto *app = std::get_if<FileURL>(&unpacked);
    if (app == nullptr)
        return unpacked;
    if (const auto failure = verifySignature(*app, tools))
        return *failure;
    if (const auto failure = verifyRelease(*app, expected))
        return *failure;
    return unpacked;
}

} // namespace brimvale
