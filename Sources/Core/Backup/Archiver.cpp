#include "Core/Backup/Archiver.h"

#include "Base/Bytes.h"
#include "Base/FileError.h"
#include "Base/Text.h"
#include "Core/Backup/BackupManifest.h"
#include "Core/Backup/BackupPlan.h"
#include "Core/Backup/MessagesExport.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/FileListing.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/Shell.h"
#include "Platform/AtomicFile.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"
#include "Platform/LocalTime.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace brimvale::Archiver {

namespace {

/// The smallest share of its original that a good copy may have.
constexpr double leastShare = 0.98;

constexpr const char *databaseName = "chat.db";
constexpr const char *exportName = "index.html";

std::string tooShortReason(std::int64_t originalBytes, std::int64_t copiedBytes) {
    const std::string copy = copiedBytes < 1 ? "Zero KB" : Fmt::byteFormatter(copiedBytes);
    return "The copy is " + copy + " against an original of " + Fmt::byteFormatter(originalBytes) + ".";
}

/// Measures a growing copy, rarely enough to take at most a tenth of the time.
class CopyMeter {
public:
    using Clock = std::chrono::steady_clock;

    explicit CopyMeter(std::function<void()> measure) : measure_(std::move(measure)) {}

    void look() {
        const Clock::time_point start = Clock::now();
        if (start < next_)
            return;
        measure_();
        const Clock::time_point end = Clock::now();
        next_ = end + std::max<Clock::duration>(std::chrono::milliseconds(500), 10 * (end - start));
    }

private:
    std::function<void()> measure_;
    Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);
};

/// One run of `archive` in an existing destination.
class Run {
public:
    Run(const FileURL &destination, const ArchiveWatch &watch, const Host &host)
        : destination_(destination), watch_(watch), host_(host),
          options_(ScanOptions::standard(host)), result_{.destination = destination,
                                                         .readableExport = {},
                                                         .manifest = {}} {}

    void archive(const FileURL &source, std::size_t index);
    void finish();
    ArchiveResult take() { return std::move(result_); }

private:
    void fail(const FileURL &source, std::string reason) {
        result_.failed.emplace_back(source, std::move(reason));
    }
    void tell(ArchiveProgress::Phase phase, std::size_t index, std::int64_t bytesOfItem);
    [[nodiscard]] std::int64_t sizeOf(const FileURL &item) const;
    [[nodiscard]] std::string copy(const FileURL &source, const FileURL &target, std::size_t index);
    bool compare(const FileURL &source, const FileURL &target);
    void writeExport();
    void writeManifest();
    [[nodiscard]] bool isNameOfCopy(std::string_view name) const;

    const FileURL &destination_;
    const ArchiveWatch &watch_;
    const Host &host_;
    ScanOptions options_;
    ArchiveResult result_;
    std::vector<BackedUpFile> compared_; ///< the verified contents of the backup
};

void Run::tell(ArchiveProgress::Phase phase, std::size_t index, std::int64_t bytesOfItem) {
    watch_.onProgress({phase, index, checkedAdd(result_.bytes, bytesOfItem)});
}

std::int64_t Run::sizeOf(const FileURL &item) const {
    return DiskScanner::quickSize(item.path(), options_, watch_.cancelled);
}

/// Runs the copier and returns its output.
std::string Run::copy(const FileURL &source, const FileURL &target, std::size_t index) {
    std::vector<std::string> arguments = host_.tools.copierOptions;
    arguments.push_back(source.path());
    arguments.push_back(target.path());
    CopyMeter meter([&] { tell(ArchiveProgress::Phase::copying, index, sizeOf(target)); });
    const std::optional<std::string> output = Shell::runCombined(host_.tools.copier, arguments, [&] {
        meter.look();
        return watch_.cancelled.isSet();
    });
    return std::string(trimmed(output.value_or("")));
}

/// Copies one source and verifies the copy.
void Run::archive(const FileURL &source, std::size_t index) {
    const std::string cancelled = "The backup was cancelled.";
    tell(ArchiveProgress::Phase::copying, index, 0);
    if (watch_.cancelled.isSet())
        return fail(source, cancelled);
    if (BackupPlan::holds(source, destination_))
        return fail(source, "An item cannot be backed up into itself.");

    const FileURL target = destination_.appending(source.fileName());
    const std::string output = copy(source, target, index);
    if (watch_.cancelled.isSet())
        return fail(source, cancelled);
    if (!fileStatus(target.path()))
        return fail(source, output.empty() ? "The copy did not appear at the destination." : output);

    // Some file systems allocate space only when they write the data out.
    syncFileSystem(destination_.path());
    const ArchivedItem item{source, target, sizeOf(source), sizeOf(target)};
    if (isTooShort(item.originalBytes, item.copiedBytes))
        return fail(source, tooShortReason(item.originalBytes, item.copiedBytes));
    tell(ArchiveProgress::Phase::comparing, index, item.copiedBytes);
    if (!compare(source, target))
        return fail(source, cancelled);
    result_.copied.push_back(source);
    result_.items.push_back(item);
    result_.bytes = checkedAdd(result_.bytes, item.copiedBytes);
}

/// False when it was cancelled.
bool Run::compare(const FileURL &source, const FileURL &target) {
    CopyComparison comparison =
        compareCopy(source.path(), target.path(), std::string(target.fileName()), watch_.cancelled);
    if (watch_.cancelled.isSet())
        return false;
    for (std::string &path : comparison.differing)
        result_.differing.emplace_back(std::move(path));
    std::move(comparison.copies.begin(), comparison.copies.end(), std::back_inserter(compared_));
    return true;
}

void Run::finish() {
    result_.isCancelled = watch_.cancelled.isSet();
    if (result_.isCancelled)
        return;
    tell(ArchiveProgress::Phase::finishing, result_.items.size(), 0);
    writeExport();
    writeManifest();
    result_.isCancelled = watch_.cancelled.isSet();
}

bool Run::isNameOfCopy(std::string_view name) const {
    return std::any_of(result_.items.begin(), result_.items.end(), [&](const ArchivedItem &item) {
        return BackupPlan::isSameName(item.destination.fileName(), name);
    });
}

/// Writes the page of conversations if the copies include a Messages database.
void Run::writeExport() {
    const FileListing listing = listFiles(destination_.path(), watch_.cancelled);
    const auto database =
        std::find_if(listing.files.begin(), listing.files.end(), [&](const ListedFile &file) {
            return !file.isLink && destination_.appending(file.path).fileName() == databaseName;
        });
    if (database == listing.files.end() || isNameOfCopy(exportName))
        return;
    const std::string page = MessagesExport::html(MessagesExport::read(
        destination_.appending(database->path).path(), MessagesExport::usualLimitPerChat, host_.tools));
    // Even reading a database changes the files beside it.
    std::erase_if(compared_, [&](const BackedUpFile &file) { return file.path.starts_with(database->path); });
    const FileURL file = destination_.appending(exportName);
    if (!writeFileAtomically(file.path(), page))
        result_.readableExport = file;
}

void Run::writeManifest() {
    if (isNameOfCopy(BackupManifest::fileName))
        return;
    std::vector<std::string> leftOut;
    for (const auto &[source, reason] : result_.failed)
        leftOut.emplace_back(source.fileName());
    if (!BackupManifest::write(destination_, std::move(compared_), leftOut, watch_.cancelled))
        result_.manifest = destination_.appending(BackupManifest::fileName);
}

} // namespace

FileURL defaultDestination(const Host &host) {
    return userDirectories(host.home)
        .documents.value_or(host.home.appending("Documents"))
        .appending("Brimvale Backups");
}

std::string folderName(const std::string &label, Date date) {
    const LocalTime time = LocalTimeZone().at(date);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), " %04d-%02d-%02d %02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute);
    return label + text.data();
}

bool sameVolume(const FileURL &a, const FileURL &b) {
    const std::optional<FileStatus> first = fileStatus(a.path());
    const std::optional<FileStatus> second = fileStatus(b.path());
    return first && second && first->identity.device == second->identity.device;
}

bool isTooShort(std::int64_t originalBytes, std::int64_t copiedBytes) {
    return originalBytes >= 1 &&
           static_cast<double>(copiedBytes) < leastShare * static_cast<double>(originalBytes);
}

bool isMismatched(const ArchivedItem &item) {
    return item.originalBytes == 0 ? item.copiedBytes != 0 : isTooShort(item.originalBytes, item.copiedBytes);
}

ArchiveResult archive(const std::vector<FileURL> &sources, const std::string &label, const FileURL &root,
                      const ArchiveWatch &watch, const Host &host, Date date) {
    const FileURL destination = root.appending(folderName(label, date));
    std::error_code error;
    std::filesystem::create_directories(destination.path(), error);
    if (error) {
        ArchiveResult result{.destination = destination};
        const std::string reason = "Could not create " + displayText(destination.path()) + ": " +
                                   FileError::posix(error.value()).localizedDescription;
        for (const FileURL &source : sources)
            result.failed.emplace_back(source, reason);
        return result;
    }
    Run run(destination, watch, host);
    for (std::size_t i = 0; i < sources.size(); ++i)
        run.archive(sources[i], i);
    run.finish();
    return run.take();
}

} // namespace brimvale::Archiver
