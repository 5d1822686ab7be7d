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
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_set>
#include <utility>

namespace brimvale::BackupManifest {

namespace {

constexpr int formatVersion = 2;
constexpr int filesOnlyVersion = 1; ///< of files and links, without modes

/// The names of the kinds that have no content of their own.
constexpr std::array kindNames = {std::pair(EntryKind::folder, "folder"), std::pair(EntryKind::pipe, "pipe"),
                                  std::pair(EntryKind::socket, "socket"),
                                  std::pair(EntryKind::device, "device")};

/// Entries between two looks at the cancellation.
constexpr std::size_t entriesPerQuestion = 1024;

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

QString octalDigits(std::uint32_t permissions) {
    return QString::number(permissions, 8).rightJustified(4, '0');
}

std::optional<std::uint32_t> permissionsIn(const QJsonObject &object) {
    bool isNumber = false;
    const uint permissions = object.value("mode").toString().toUInt(&isNumber, 8);
    return isNumber ? std::optional<std::uint32_t>(permissions) : std::nullopt;
}

QJsonObject objectOf(const BackedUpEntry &entry) {
    QJsonObject object;
    putBytes(object, "path", entry.path);
    if (entry.kind == EntryKind::link)
        putBytes(object, "linkTarget", entry.linkTarget);
    for (const auto &[kind, name] : kindNames)
        if (entry.kind == kind)
            object["kind"] = name;
    if (entry.permissions)
        object["mode"] = octalDigits(*entry.permissions);
    if (entry.kind == EntryKind::file) {
        object["size"] = qint64{entry.size};
        object["sha256"] = QString::fromStdString(entry.sha256);
        object["modified"] = QString::fromStdString(iso8601(entry.modified));
    }
    return object;
}

/// An entry without its modification time, which is never compared.
std::optional<BackedUpEntry> entryIn(const QJsonObject &object) {
    const std::optional<std::string> path = bytesUnder(object, "path");
    if (!path)
        return std::nullopt;
    if (std::optional<std::string> target = bytesUnder(object, "linkTarget"))
        return BackedUpEntry{.path = *path, .kind = EntryKind::link, .linkTarget = *std::move(target)};
    if (const std::optional<std::string> kindName = textUnder(object, "kind")) {
        for (const auto &[kind, name] : kindNames)
            if (*kindName == name)
                return BackedUpEntry{.path = *path, .kind = kind, .permissions = permissionsIn(object)};
        return std::nullopt;
    }
    constexpr qint64 none = -1;
    const qint64 size = object.value("size").toInteger(none);
    const std::optional<std::string> sha256 = textUnder(object, "sha256");
    if (size == none || !sha256)
        return std::nullopt;
    return BackedUpEntry{
        .path = *path, .permissions = permissionsIn(object), .size = size, .sha256 = *sha256};
}

bool isAtOrUnderAny(const std::string &path, const std::vector<std::string> &places) {
    return std::any_of(places.begin(), places.end(),
                       [&](const std::string &place) { return isAtOrUnder(path, place); });
}

std::optional<std::string> contentOf(const std::string &path) {
    constexpr std::int64_t most = 1'000'000'000; // no manifest of ours is longer, but a stranger's could be
    FileReader reader(path);
    if (!reader.isOpen() || reader.length() > most)
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

/// Every entry of a backup except its own folder; nothing for one that cannot be read.
using Contents = std::map<std::string, std::optional<BackedUpEntry>>;

Contents readAll(const FileURL &folder, const FileListing &listing, Contents known, const StopFlag &cancelled,
                 const std::function<void(std::size_t)> &onRead) {
    std::vector<const std::string *> unknown;
    for (const ListedEntry &entry : listing.entries)
        if (!entry.path.empty() && !known.contains(entry.path))
            unknown.push_back(&entry.path);
    std::vector<std::optional<BackedUpEntry>> read(unknown.size());
    forEachInParallel(unknown.size(), threadsForReading(), [&](std::size_t i) {
        if (!cancelled.isSet())
            read[i] = readBackedUpEntry(folder.appending(*unknown[i]).path(), *unknown[i], cancelled,
                                        [&](std::string_view piece) { onRead(piece.size()); });
    });
    for (std::size_t i = 0; i < unknown.size(); ++i)
        known.emplace(*unknown[i], std::move(read[i]));
    return known;
}

FileError noManifest() {
    return {FileError::Domain::posix, ENOENT, "There is no readable backup manifest.", nullptr};
}

/// Whether both have the same content; their modification times may differ.
bool holdSame(const BackedUpEntry &a, const BackedUpEntry &b) {
    return a.kind == b.kind && a.size == b.size && a.sha256 == b.sha256 && a.linkTarget == b.linkTarget;
}

/// Compares an entry of the manifest with the one in the backup.
void judge(const BackedUpEntry &listed, const BackedUpEntry &found, Verification &verification) {
    if (!holdSame(found, listed)) {
        verification.changed.push_back(listed.path);
        return;
    }
    if (listed.permissions && found.permissions != listed.permissions)
        verification.otherModes.push_back(listed.path);
    ++verification.verified;
}

/// Removes the entries that the manifest does not have, and returns their paths, without folders.
std::vector<std::string> takeOthers(FileListing &listing, const std::vector<BackedUpEntry> &listed) {
    std::unordered_set<std::string_view> names;
    for (const BackedUpEntry &entry : listed)
        names.insert(entry.path);
    std::vector<std::string> others;
    std::erase_if(listing.entries, [&](const ListedEntry &entry) {
        const bool isListed = names.contains(entry.path);
        if (!isListed && entry.record.kind != EntryKind::folder && entry.path != fileName)
            others.push_back(entry.path);
        return !isListed;
    });
    return others;
}

} // namespace

std::string document(const std::vector<BackedUpEntry> &entries, const StopFlag &cancelled) {
    std::string text = "{\n\"version\": " + std::to_string(formatVersion) + ",\n\"files\": [\n";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % entriesPerQuestion == 0 && cancelled.isSet())
            return text;
        QByteArray object = QJsonDocument(objectOf(entries[i])).toJson();
        object.chop(1); // its line feed
        text.append(i == 0 ? "" : ",\n").append(object.constData(), static_cast<std::size_t>(object.size()));
    }
    return text + "\n]\n}\n";
}

std::optional<std::vector<BackedUpEntry>> entriesOf(std::string_view document) {
    const auto bytes = QByteArray::fromRawData(document.data(), static_cast<qsizetype>(document.size()));
    const QJsonObject manifest = QJsonDocument::fromJson(bytes).object();
    const QJsonValue listed = manifest.value("files");
    const QJsonValue version = manifest.value("version");
    if ((version != formatVersion && version != filesOnlyVersion) || !listed.isArray())
        return std::nullopt;
    std::vector<BackedUpEntry> entries;
    for (const QJsonValueConstRef value : listed.toArray()) {
        // A value that is no object counts as one without a path.
        std::optional<BackedUpEntry> entry = entryIn(value.toObject());
        if (!entry)
            return std::nullopt;
        entries.push_back(*std::move(entry));
    }
    return entries;
}

Result<std::vector<BackedUpEntry>> list(const FileURL &folder, std::vector<BackedUpEntry> known,
                                        const std::vector<std::string> &leftOut, const StopFlag &cancelled) {
    FileListing listing = listFiles(folder.path(), cancelled);
    const auto isLeftOut = [&](const auto &path) { return isAtOrUnderAny(path, leftOut); };
    std::erase_if(listing.entries, [&](const ListedEntry &entry) { return isLeftOut(entry.path); });
    std::erase_if(listing.unreadable, isLeftOut);
    if (!listing.unreadable.empty())
        return FileError::posix(EACCES); // with an incomplete list the other files would look like additions
    Contents contents;
    for (BackedUpEntry &entry : known)
        contents.emplace(entry.path, std::move(entry));
    contents = readAll(folder, listing, std::move(contents), cancelled, [](std::size_t) {});
    std::vector<BackedUpEntry> entries;
    for (auto &[path, entry] : contents) {
        if (!entry)
            return FileError::posix(cancelled.isSet() ? ECANCELED : EIO);
        entries.push_back(*std::move(entry));
    }
    return entries;
}

std::optional<FileError> write(const FileURL &folder, const std::vector<BackedUpEntry> &entries,
                               const StopFlag &cancelled) {
    const std::string text = document(entries, cancelled);
    if (cancelled.isSet())
        return FileError::posix(ECANCELED);
    return writeFileAtomically(folder.appending(fileName).path(), text, cancelled);
}

Verification compare(const FileURL &folder, const std::vector<BackedUpEntry> &listed,
                     const StopFlag &cancelled, const std::function<void(std::size_t)> &onRead) {
    FileListing listing = listFiles(folder.path(), cancelled);
    Verification verification;
    verification.unreadable = listing.unreadable;
    verification.extra = takeOthers(listing, listed);
    const Contents present = readAll(folder, listing, {}, cancelled, onRead);
    for (const BackedUpEntry &entry : listed) {
        const auto found = present.find(entry.path);
        if (found == present.end() && !isAtOrUnderAny(entry.path, listing.unreadable))
            verification.missing.push_back(entry.path);
        else if (found == present.end() || !found->second)
            verification.unreadable.push_back(entry.path);
        else
            judge(entry, *found->second, verification);
    }
    for (auto *paths :
         {&verification.missing, &verification.changed, &verification.unreadable, &verification.otherModes})
        std::sort(paths->begin(), paths->end());
    verification.isCancelled = cancelled.isSet();
    return verification;
}

Result<Verification> verify(const FileURL &folder, const StopFlag &cancelled) {
    const std::optional<std::string> manifest = contentOf(folder.appending(fileName).path());
    const auto listed = manifest ? entriesOf(*manifest) : std::nullopt;
    return listed ? Result<Verification>(compare(folder, *listed, cancelled)) : noManifest();
}

} // namespace brimvale::BackupManifest
