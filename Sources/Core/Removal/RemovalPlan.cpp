#include "Core/Removal/RemovalPlan.h"

#include "Base/Date.h"
#include "Base/Text.h"
#include "Base/Version.h"
#include "Core/Removal/PlannedRemoval.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Scan/FileListing.h"
#include "Platform/Dataless.h"
#include "Platform/Digest.h"
#include "Platform/FileOperation.h"

#include <QString>
#include <QSysInfo>
#include <algorithm>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

using Failure = RemovalResult::Failure;

/// Whether a plan can have these signs: only paths can be written as bytes there.
bool hasOnlyText(const ProgramSigns &program) {
    const auto areText = [](const std::vector<std::string> &texts) {
        return std::all_of(texts.begin(), texts.end(),
                           [](const std::string &one) { return isValidUtf8(one); });
    };
    return areText(program.processes) && areText(program.locks) && areText(program.marks);
}

class PlanMaking {
public:
    PlanMaking(RemovalMode mode, const StopFlag &stopped) : mode_(mode), stopped_(stopped) {}

    void add(const CleanupEntry &entry) {
        const RemovalGate::Answer answer = gate_.open(entry.url, entry.pin);
        if (const auto *refusal = std::get_if<std::string>(&answer))
            return leaveOut(entry.url, *refusal);
        if (const int *error = std::get_if<int>(&answer))
            return leaveOut(
                entry.url,
                fileError(FileOperation::remove, entry.url.standardized(), *error).localizedDescription);
        const auto &item = std::get<OpenedItem>(answer);
        if (std::optional<std::string> refusal = refusalOf(item, entry))
            return leaveOut(entry.url, *std::move(refusal));
        Result<PlannedEntry, std::string> planned = plannedEntry(item, stopped_);
        if (auto *reason = std::get_if<std::string>(&planned))
            return leaveOut(entry.url, std::move(*reason));
        PlannedItem made{.entry = std::get<PlannedEntry>(std::move(planned)), .size = entry.size};
        if (entry.notes)
            if (std::optional<std::string> reason = addNotes(made, *entry.notes))
                return leaveOut(entry.url, *std::move(reason));
        items_.push_back(std::move(made));
    }

    [[nodiscard]] std::vector<PlannedItem> takeItems() { return std::move(items_); }
    [[nodiscard]] std::vector<Failure> takeLeftOut() { return std::move(leftOut_); }

private:
    void leaveOut(const FileURL &url, std::string reason) { leftOut_.push_back({url, std::move(reason)}); }

    std::optional<std::string> refusalOf(const OpenedItem &item, const CleanupEntry &entry) {
        if (mode_ == RemovalMode::deleteNow)
            if (std::optional<std::string> refusal = RemovalGate::refusalToDelete(item))
                return refusal;
        return entry.notes ? gate_.refusalOfTarget(item, *entry.notes, stopped_) : std::nullopt;
    }

    /// Adds what else is checked when the item is removed. Why it can't be in a plan; nothing if it can.
    std::optional<std::string> addNotes(PlannedItem &item, const CleanupNotes &notes) const {
        if (notes.program && notes.program->mustNotRun) {
            if (!hasOnlyText(*notes.program))
                return "A plan can't name the program that must not run then.";
            item.notWhile = *notes.program;
        }
        for (const ItemPin &pin : notes.companions)
            if (std::optional<PlannedEntry> companion = entryAt(OpenedItem::again(pin)))
                item.companions.push_back(*std::move(companion));
        if (notes.equal)
            item.equalTo = entryAt(OpenedItem::at(notes.equal->staying));
        return notes.equal && !item.equalTo
                   ? std::optional<std::string>("The equal file that stays can't be read.")
                   : std::nullopt;
    }

    [[nodiscard]] std::optional<PlannedEntry> entryAt(const Result<OpenedItem, int> &found) const {
        const auto *item = std::get_if<OpenedItem>(&found);
        if (item == nullptr)
            return std::nullopt;
        Result<PlannedEntry, std::string> planned = plannedEntry(*item, stopped_);
        auto *entry = std::get_if<PlannedEntry>(&planned);
        return entry != nullptr ? std::optional(std::move(*entry)) : std::nullopt;
    }

    RemovalMode mode_;
    const StopFlag &stopped_;
    RemovalGate gate_;
    std::vector<PlannedItem> items_;
    std::vector<Failure> leftOut_;
};

char letterOf(EntryKind kind) {
    switch (kind) {
    case EntryKind::file:
        return 'f';
    case EntryKind::folder:
        return 'd';
    case EntryKind::link:
        return 'l';
    case EntryKind::pipe:
    case EntryKind::socket:
    case EntryKind::device:
        break;
    }
    return 'o';
}

/// One entry of a folder as a part of the text that has the digest. The date of a folder inside says nothing
/// that the names do not say.
std::string textOf(const ListedEntry &entry, bool hasSteadyNumbers) {
    std::string text = entry.path;
    text.append(1, '\0').append(1, letterOf(entry.record.kind));
    if (hasSteadyNumbers)
        text.append(" ").append(std::to_string(entry.record.identity.inode));
    if (entry.record.kind != EntryKind::folder) {
        text.append(" ").append(std::to_string(entry.record.length));
        text.append(" ").append(std::to_string(entry.record.modified.time_since_epoch().count()));
    }
    return text.append(1, '\0');
}

} // namespace

MadePlan planFor(const std::vector<CleanupEntry> &entries, RemovalMode mode, const StopFlag &stopped) {
    PlanMaking making(mode, stopped);
    for (const CleanupEntry &entry : entries) {
        if (stopped.isSet())
            break;
        making.add(entry);
    }
    return {.plan = {.mode = mode,
                     .items = making.takeItems(),
                     .program = std::string("brimvale ").append(version),
                     .host = QSysInfo::machineHostName().toStdString(),
                     .made = iso8601(now())},
            .leftOut = making.takeLeftOut()};
}

std::optional<std::string> contentsDigest(const std::string &folder, bool hasSteadyNumbers,
                                          const StopFlag &stopped) {
    const NoMaterialization guard;
    const FileListing listing = listFiles(folder, stopped);
    if (stopped.isSet() || listing.entries.empty() || !listing.unreadable.empty())
        return std::nullopt;
    Sha256 digest;
    for (const ListedEntry &entry : listing.entries)
        if (!entry.path.empty()) // the folder itself has its own members
            digest.add(textOf(entry, hasSteadyNumbers));
    return digest.finish();
}

} // namespace brimvale
