#include "Core/Backup/Archiver.h"

#include "Base/Bytes.h"
#include "Base/FileError.h"
#include "Base/Text.h"
#include "Core/Backup/BackupManifest.h"
#include "Core/Backup/BackupPlan.h"
#include "Core/Backup/CopyComparison.h"
#include "Core/Backup/CopyVerdict.h"
#include "Core/Backup/DatabaseSearch.h"
#include "Core/Backup/DiskFlush.h"
#include "Core/Backup/MessagesExport.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/FileListing.h"
#include "Core/Text/Shell.h"
#include "Platform/AtomicFile.h"
#include "Platform/EntryMaking.h"
#include "Platform/EntryRecord.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"
#include "Platform/LocalTime.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace brimvale::Archiver {

namespace {

constexpr const char *exportName = "index.html";
constexpr const char *cancelledReason = "The backup was cancelled.";

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
          options_(ScanOptions::standard(host)), result_{.destination = destination} {}

    void archive(const FileURL &source, std::size_t index);
    void finish();
    ArchiveResult take() { return std::move(result_); }

private:
    using Phase = ArchiveProgress::Phase;

    void fail(const FileURL &source, std::string reason) {
        result_.failed.emplace_back(source, std::move(reason));
    }
    void tell(Phase phase, std::size_t index, std::int64_t bytesOfItem = 0);
    [[nodiscard]] std::int64_t sizeOf(const FileURL &item) const;
    [[nodiscard]] CopyRun copy(const FileURL &source, const FileURL &target, std::size_t index);
    void runCopier(const FileURL &source, const FileURL &target, std::size_t index, CopyRun &run);
    void verify(ArchivedItem item, std::size_t index, const CopyRun &run);
    void judge(ArchivedItem item, CopyComparison comparison, const CopyRun &run);
    void writeExport();
    void writeExport(const std::string &database);
    void listCopies();
    void writeManifest();
    void remarkNoManifest(const std::string &reason);
    [[nodiscard]] std::vector<std::string> namesOfCopies() const;
    [[nodiscard]] bool isTaken(std::string_view name) const;

    const FileURL &destination_;
    const ArchiveWatch &watch_;
    const Host &host_;
    ScanOptions options_;
    ArchiveResult result_;
    std::vector<BackedUpEntry> compared_; ///< the verified contents of the backup; at the end all of them
    std::vector<VerifiedBackup::Original> originals_;
};

void Run::tell(Phase phase, std::size_t index, std::int64_t bytesOfItem) {
    watch_.onProgress({phase, index, checkedAdd(result_.bytes, bytesOfItem)});
}

std::int64_t Run::sizeOf(const FileURL &item) const {
    return DiskScanner::quickSize(item.path(), options_, watch_.cancelled);
}

void Run::runCopier(const FileURL &source, const FileURL &target, std::size_t index, CopyRun &run) {
    std::vector<std::string> arguments = host_.tools.copierOptions;
    arguments.push_back(source.path());
    arguments.push_back(target.path());
    CopyMeter meter([&] { tell(Phase::copying, index, sizeOf(target)); });
    const auto result = Shell::runWithStatus(host_.tools.copier, arguments, StandardError::withOutput, [&] {
        meter.look();
        return watch_.cancelled.isSet();
    });
    run.words = result ? std::string(trimmed(result->output)) : "";
    run.hasFailed = !result || !result->hasSucceeded();
}

/// Makes the copy. A link is copied here, because some copiers would follow it.
CopyRun Run::copy(const FileURL &source, const FileURL &target, std::size_t index) {
    CopyRun run{.started = now(), .words = {}, .bytesDecide = platformSystem() == System::linux};
    const std::optional<EntryRecord> record = entryRecord(source.path());
    if (!record || record->kind != EntryKind::link) {
        runCopier(source, target, index, run);
    } else if (const auto error = copyLink(source.path(), target.path())) {
        run.words = error->localizedDescription;
        run.hasFailed = true;
    }
    return run;
}

/// Copies one source and verifies the copy.
void Run::archive(const FileURL &source, std::size_t index) {
    tell(Phase::copying, index);
    if (watch_.cancelled.isSet())
        return fail(source, cancelledReason);
    if (BackupPlan::holds(source, destination_))
        return fail(source, "An item can’t be backed up into itself.");
    const FileURL target = destination_.appending(source.fileName());
    if (fileStatus(target.path()))
        return fail(source, "The backup already holds an item of that name.");
    const CopyRun run = copy(source, target, index);
    if (watch_.cancelled.isSet())
        return fail(source, cancelledReason);
    if (!fileStatus(target.path()))
        return fail(source, run.words.empty() ? "The copy did not appear at the destination." : run.words);
    verify({source, target}, index, run);
}

/// Measures and compares a copy.
void Run::verify(ArchivedItem item, std::size_t index, const CopyRun &run) {
    // Some file systems allocate space only when they write the data out.
    tell(Phase::writingOut, index);
    flushToDisk(item.destination.path(), watch_.cancelled);
    tell(Phase::measuring, index);
    item.originalBytes = sizeOf(item.source);
    item.copiedBytes = sizeOf(item.destination);
    tell(Phase::comparing, index, item.copiedBytes);
    CopyComparison comparison = compareCopy(item.source.path(), item.destination.path(),
                                            std::string(item.source.fileName()), watch_.cancelled);
    if (watch_.cancelled.isSet())
        return fail(item.source, cancelledReason);
    judge(std::move(item), std::move(comparison), run);
}

void Run::judge(ArchivedItem item, CopyComparison comparison, const CopyRun &run) {
    if (std::optional<std::string> reason = CopyVerdict::failure(item, comparison, run)) {
        for (const CopyDifference &difference : comparison.differing)
            result_.differing.push_back(
                {difference.path.empty() ? item.source : item.source.appending(difference.path),
                 CopyVerdict::differenceText(item, comparison, difference, run)});
        return fail(item.source, *std::move(reason));
    }
    item.isSameByBytes = run.bytesDecide;
    std::vector<std::string> remarks = CopyVerdict::remarks(item, comparison, run);
    std::move(remarks.begin(), remarks.end(), std::back_inserter(result_.remarks));
    std::move(comparison.copies.begin(), comparison.copies.end(), std::back_inserter(compared_));
    originals_.push_back({item.source, std::move(comparison.originals),
                          keepsFileNumbers(Folder::at(item.source.parent().path(), Folder::Links::follow))});
    result_.copied.push_back(item.source);
    result_.bytes = checkedAdd(result_.bytes, item.copiedBytes);
    result_.items.push_back(std::move(item));
}

void Run::finish() {
    result_.isCancelled = watch_.cancelled.isSet();
    if (result_.isCancelled || result_.items.empty())
        return;
    writeExport();
    tell(Phase::finishing, result_.items.size());
    listCopies();
    result_.isCancelled = watch_.cancelled.isSet();
}

std::vector<std::string> Run::namesOfCopies() const {
    std::vector<std::string> names;
    for (const ArchivedItem &item : result_.items)
        names.emplace_back(item.destination.fileName());
    return names;
}

/// Whether something in the backup has that name, or a name that is the same on another disk.
bool Run::isTaken(std::string_view name) const {
    const std::vector<std::string> names = namesOfCopies();
    return fileStatus(destination_.appending(name).path()) ||
           std::any_of(names.begin(), names.end(),
                       [&](const std::string &other) { return BackupPlan::isSameName(other, name); });
}

/// Writes the page of conversations if the copies include a Messages database.
void Run::writeExport() {
    const auto database =
        messagesDatabaseIn(listFiles(destination_.path(), watch_.cancelled), namesOfCopies());
    if (!database)
        return;
    tell(Phase::readingMessages, result_.items.size());
    writeExport(*database);
    // Even reading a database changes its index of the newest changes. The other files have to stay as they
    // are.
    std::erase_if(compared_, [&](const BackedUpEntry &entry) { return entry.path == *database + "-shm"; });
}

void Run::writeExport(const std::string &database) {
    const auto remark = [&](const std::string &reason) {
        result_.remarks.push_back("There is no readable transcript of “" + displayText(database) + "”. " +
                                  reason);
    };
    if (isTaken(exportName))
        return remark("An item of the backup has the name of its page, “index.html”.");
    const MessagesExport::Reading reading =
        MessagesExport::readChecked(destination_.appending(database).path(),
                                    MessagesExport::usualLimitPerChat, host_.tools, watch_.cancelled);
    if (!reading.isComplete)
        return remark(reading.reason);
    const FileURL file = destination_.appending(exportName);
    GrowingFile page(file.path(), Existing::stays, Readers::owner);
    MessagesExport::writePage(page, reading.conversations, watch_.cancelled);
    if (watch_.cancelled.isSet())
        return;
    if (const auto error = page.finish())
        return remark("Its page could not be written: " + error->localizedDescription + ".");
    result_.readableExport = file;
}

/// Comes last, because reading the messages may change files beside the database.
void Run::listCopies() {
    // A failed item can have the name of a copy.
    const std::vector<std::string> names = namesOfCopies();
    std::vector<std::string> leftOut;
    for (const auto &[source, reason] : result_.failed)
        if (std::find(names.begin(), names.end(), source.fileName()) == names.end())
            leftOut.emplace_back(source.fileName());
    auto listed = BackupManifest::list(destination_, std::move(compared_), leftOut, watch_.cancelled);
    if (const auto *error = std::get_if<FileError>(&listed))
        return remarkNoManifest(error->localizedDescription);
    compared_ = std::get<std::vector<BackedUpEntry>>(std::move(listed));
    writeManifest();
    if (result_.failed.empty())
        result_.verified = std::make_shared<const VerifiedBackup>(VerifiedBackup{
            .originals = std::move(originals_),
            .folder = destination_,
            .copies = listFiles(destination_.path(), watch_.cancelled),
            .keepsFileNumbers = keepsFileNumbers(Folder::at(destination_.path(), Folder::Links::refuse)),
            .entries = std::move(compared_)});
}

void Run::writeManifest() {
    if (isTaken(BackupManifest::fileName))
        return remarkNoManifest("an item of the backup has its name");
    if (const auto error = BackupManifest::write(destination_, compared_, watch_.cancelled))
        return remarkNoManifest(error->localizedDescription);
    result_.manifest = destination_.appending(BackupManifest::fileName);
}

void Run::remarkNoManifest(const std::string &reason) {
    result_.remarks.push_back(
        "The manifest was not written, so the backup can’t be verified later: " + reason + ".");
}

/// Makes the backup's folder; the reason where that is not possible.
std::optional<std::string> makeFolder(const FileURL &folder, const std::string &label) {
    std::error_code error;
    std::filesystem::create_directories(folder.parent().path(), error);
    std::optional<FileError> failure = error ? std::optional(FileError::posix(error.value())) : std::nullopt;
    if (!failure)
        failure = makePrivateFolder(folder.path());
    if (!failure)
        return std::nullopt;
    if (failure->code == EEXIST)
        return "There already is a backup “" + displayText(folder.fileName()) +
               "”. Use another label, such as “" + displayText(label) + " 2”, or wait a minute.";
    return "Could not create " + displayText(folder.path()) + ": " + failure->localizedDescription;
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

bool isMismatched(const ArchivedItem &item) {
    if (item.isSameByBytes)
        return false;
    return item.originalBytes == 0 ? item.copiedBytes != 0
                                   : CopyVerdict::isTooShort(item.originalBytes, item.copiedBytes);
}

ArchiveResult archive(const std::vector<FileURL> &sources, const std::string &label, const FileURL &root,
                      const ArchiveWatch &watch, const Host &host, Date date) {
    const FileURL destination = root.appending(folderName(label, date));
    if (const std::optional<std::string> reason = makeFolder(destination, label)) {
        ArchiveResult result{.destination = destination};
        for (const FileURL &source : sources)
            result.failed.emplace_back(source, *reason);
        return result;
    }
    Run run(destination, watch, host);
    for (std::size_t i = 0; i < sources.size(); ++i)
        run.archive(sources[i], i);
    run.finish();
    ArchiveResult result = run.take();
    std::error_code notEmpty;
    if (result.items.empty())
        std::filesystem::remove(destination.path(), notEmpty); // fails if anything is in the folder
    return result;
}

} // namespace brimvale::Archiver
