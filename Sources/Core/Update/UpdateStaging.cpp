#include "Core/Update/UpdateStaging.h"

#include "Core/Text/Shell.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QUuid>
#include <cerrno>

namespace brimvale {

namespace {

/// From the certificate that signs the program's releases.
constexpr const char *ownTeam = "TeamIdentifier=QK4M7ZP2TX";

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
    const FileURL folder = temporaryFolder.appending(
        "update-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString());
    const QDir enclosing(QFile::decodeName(temporaryFolder.path().c_str()));
    const auto onlyOwner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!enclosing.mkpath(QStringLiteral(".")) ||
        !enclosing.mkdir(QFile::decodeName(folder.path().c_str()), onlyOwner))
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

std::optional<UpdateFailure> verifySignature(const FileURL &app, const Tools &tools) {
    const auto verified =
        Shell::runWithStatus(tools.codesign, {"--verify", "--deep", "--strict", app.path()});
    if (!verified || !verified->hasSucceeded())
        return UpdateError::signatureInvalid;
    // The tool prints the details to its standard error.
    const auto details = Shell::runWithStatus(tools.codesign, {"-dv", app.path()}, StandardError::withOutput);
    if (!details || !details->hasSucceeded() || details->output.empty())
        return UpdateError::signatureInvalid;
    if (details->output.find(ownTeam) == std::string::npos)
        return UpdateError::wrongTeam;
    return std::nullopt;
}

} // namespace

UpdateResult<FileURL> stageUpdate(const FileURL &archive, const std::optional<std::string> &sha256,
                                  const FileURL &temporaryFolder, const Tools &tools) {
    if (sha256)
        if (const auto failure = verifyChecksum(archive, *sha256, tools))
            return *failure;
    auto unpacked = unpack(archive, temporaryFolder, tools);
    if (const auto *app = std::get_if<FileURL>(&unpacked))
        if (const auto failure = verifySignature(*app, tools))
            return *failure;
    return unpacked;
}

} // namespace brimvale
