#include "Core/Backup/BackupManifest.h"

#include "Base/Hex.h"
#include "Core/Scan/FileListing.h"
#include "Core/Scan/ParallelLoop.h"
#include "Platform/AtomicFile.h"
#include "Platform/FileReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cerrno>
#include <map>
#include <utility>

namespace brimvale::BackupManifest {

namespace {

constexpr int formatVersion = 1;

/// Writes bytes under `key`. Bytes that would not survive as JSON text, such as invalid UTF-8 or a leading
/// byte order mark, are written as digits under a key of their own.
void putBytes(QJsonObject &object, const QString &key, const std::string &bytes) {
    const QString text = QString::fromStdString(bytes);
    if (text.toStdString() == bytes)
        object[key] = text;
    else
        object[key + "Hex"] = QString::fromStdString(hexString(bytes));
}

std::optional<std::string> textUnder(const QJsonObject &object, const QString &key) {
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

std::optional<std::string> bytesUnder(const QJsonObject &object, const QString &key) {
    if (std::optional<std::string> bytes = textUnder(object, key))
        return bytes;
    const std::optional<std::string> digits = textUnder(object, key + "Hex");
    return digits ? bytesOfHex(*digits) : std::nullopt;
}

QJsonObject entryOf(const BackedUpFile &file) {
    QJsonObject entry;
    putBytes(entry, "path", file.path);
    if (file.linkTarget) {
        putBytes(entry, "linkTarget", *file.linkTarget);
        return entry;
    }
    entry["size"] = qint64{file.size};
    entry["sha256"] = QString::fromStdString(file.sha256);
    entry["modified"] = QString::fromStdString(iso8601(file.modified));
    return entry;
}

/// An entry without its modification time, which is never compared.
std::optional<BackedUpFile> fileOf(const QJsonObject &entry) {
    const std::optional<std::string> path = bytesUnder(entry, "path");
    if (!path)
        return std::nullopt;
    if (std::optional<std::string> target = bytesUnder(entry, "linkTarget"))
        return BackedUpFile{.path = *path, .linkTarget = std::move(target)};
    constexpr qint64 none = -1;
    const qint64 size = entry.value("size").toInteger(none);
    const std::optional<std::string> sha256 = textUnder(entry, "sha256");
    if (size == none || !sha256)
        return std::nullopt;
    return BackedUpFile{.path = *path, .size = size, .sha256 = *sha256};
}

bool isAtOrUnderAny(const std::string &path, const std::vector<std::string> &places) {
    return std::any_of(places.begin(), places.end(),
                       [&](const std::string &place) { return isAtOrUnder(path, place); });
}

std::optional<std::string> contentOf(const std::string &path) {
    FileReader reader(path);
    if (!reader.isOpen())
        return std::nullopt;
    std::string content;
    std::vector<char> buffer(65'536);
    while (true) {
        const std::optional<std::string_view> piece = reader.read(buffer);
        if (!piece)
            return std::nullopt;
        if (piece->empty())
            return content;
        content += *piece;
    }
}

/// Every file and link of a backup except the manifest; nothing for one that cannot be read.
using Contents = std::map<std::string, std::optional<BackedUpFile>>;

Contents readAll(const FileURL &folder, const FileListing &listing, Contents known,
                 const StopFlag &cancelled) {
    std::vector<const std::string *> unknown;
    for (const ListedFile &file : listing.files)
        if (file.path != fileName && !known.contains(file.path))
            unknown.push_back(&file.path);
    std::vector<std::optional<BackedUpFile>> read(unknown.size());
    forEachInParallel(unknown.size(), threadsForReading(), [&](std::size_t i) {
        read[i] = readBackedUpFile(folder.appending(*unknown[i]).path(), *unknown[i], cancelled);
    });
    for (std::size_t i = 0; i < unknown.size(); ++i)
        known.emplace(*unknown[i], std::move(read[i]));
    return known;
}

FileError noManifest() {
    return {FileError::Domain::posix, ENOENT, "There is no manifest of a backup that can be read.", nullptr};
}

/// Whether both have the same content; their modification times may differ.
bool holdSame(const BackedUpFile &a, const BackedUpFile &b) {
    return a.size == b.size && a.sha256 == b.sha256 && a.linkTarget == b.linkTarget;
}

} // namespace

std::string document(const std::vector<BackedUpFile> &files) {
    QJsonArray entries;
    for (const BackedUpFile &file : files)
        entries.append(entryOf(file));
    const QJsonObject manifest{{"version", formatVersion}, {"files", entries}};
    return QJsonDocument(manifest).toJson().toStdString();
}

std::optional<std::vector<BackedUpFile>> filesOf(std::string_view document) {
    const auto bytes = QByteArray::fromRawData(document.data(), static_cast<qsizetype>(document.size()));
    const QJsonObject manifest = QJsonDocument::fromJson(bytes).object();
    const QJsonValue entries = manifest.value("files");
    if (manifest.value("version") != formatVersion || !entries.isArray())
        return std::nullopt;
    std::vector<BackedUpFile> files;
    for (const QJsonValueConstRef entry : entries.toArray()) {
        // An entry that is no object counts as one without a path.
        std::optional<BackedUpFile> file = fileOf(entry.toObject());
        if (!file)
            return std::nullopt;
        files.push_back(*std::move(file));
    }
    return files;
}

std::optional<FileError> write(const FileURL &folder, std::vector<BackedUpFile> known,
                               const std::vector<std::string> &leftOut, const StopFlag &cancelled) {
    FileListing listing = listFiles(folder.path(), cancelled);
    const auto isLeftOut = [&](const auto &path) { return isAtOrUnderAny(path, leftOut); };
    std::erase_if(listing.files, [&](const ListedFile &file) { return isLeftOut(file.path); });
    std::erase_if(listing.unreadable, isLeftOut);
    if (!listing.unreadable.empty())
        return FileError::posix(EACCES); // with an incomplete list the other files would look like additions
    Contents contents;
    for (BackedUpFile &file : known)
        contents.emplace(file.path, std::move(file));
    contents = readAll(folder, listing, std::move(contents), cancelled);
    std::vector<BackedUpFile> files;
    for (auto &[path, file] : contents) {
        if (!file)
            return FileError::posix(cancelled.isSet() ? ECANCELED : EIO);
        files.push_back(*std::move(file));
    }
    return writeFileAtomically(folder.appending(fileName).path(), document(files));
}

Result<Verification> verify(const FileURL &folder, const StopFlag &cancelled) {
    const std::optional<std::string> manifest = contentOf(folder.appending(fileName).path());
    const auto listed = manifest ? filesOf(*manifest) : std::nullopt;
    if (!listed)
        return noManifest();

    const FileListing listing = listFiles(folder.path(), cancelled);
    Contents present = readAll(folder, listing, {}, cancelled);
    Verification verification;
    verification.unreadable = listing.unreadable;
    for (const BackedUpFile &file : *listed) {
        const auto found = present.find(file.path);
        if (found == present.end() && !isAtOrUnderAny(file.path, listing.unreadable))
            verification.missing.push_back(file.path);
        else if (found == present.end() || !found->second)
            verification.unreadable.push_back(file.path);
        else if (!holdSame(*found->second, file))
            verification.changed.push_back(file.path);
        else
            ++verification.verified;
        if (found != present.end())
            present.erase(found);
    }
    for (const auto &[path, file] : present)
        verification.extra.push_back(path);
    for (auto *paths : {&verification.missing, &verification.changed, &verification.unreadable})
        std::sort(paths->begin(), paths->end());
    verification.isCancelled = cancelled.isSet();
    return verification;
}

} // namespace brimvale::BackupManifest
