#include "Core/Removal/RemovalPlan.h"

#include "Base/Date.h"
#include "Base/Version.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/AtomicFile.h"
#include "Platform/EntryRecord.h"
#include "Platform/FileOperation.h"

#include <QString>
#include <QSysInfo>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

class PlanText final : public TextSink {
public:
    void write(std::string_view more) override { text += more; }
    std::string text;
};

/// What tells later whether the item has changed.
ItemDetails changeOf(const EntryRecord &record) {
    return {record.length, record.modified.time_since_epoch().count()};
}

/// Adds the entry as it is now, or why it cannot be in a plan.
void addTo(MadePlan &made, const CleanupEntry &entry, const RemovalGate &gate) {
    const RemovalGate::Answer answer = gate.open(entry.url, entry.pin);
    if (const auto *refusal = std::get_if<std::string>(&answer))
        return made.leftOut.push_back({entry.url, *refusal});
    if (const int *error = std::get_if<int>(&answer))
        return made.leftOut.push_back(
            {entry.url,
             fileError(FileOperation::remove, entry.url.standardized(), *error).localizedDescription});
    const auto &item = std::get<OpenedItem>(answer);
    const std::optional<EntryRecord> record = entryRecord(item.folder(), item.name().c_str());
    if (!record || !item.isStillThere())
        return made.leftOut.push_back({entry.url, "It changed while the plan was made."});
    made.plan.items.push_back({item.pin(), entry.size, changeOf(*record)});
}

void writeItem(JsonWriter &json, const PlannedItem &item) {
    const ItemIdentity &identity = item.pin.item;
    // As texts: some programs read only numbers up to 2^53.
    const auto number = [&](const char *name, std::uint64_t value) {
        json.member(name, std::to_string(value));
    };
    const auto moment = [&](const char *name, const std::optional<std::int64_t> &time) {
        json.member(name, time ? std::optional(std::to_string(*time)) : std::nullopt);
    };
    json.beginObject();
    json.path("path", item.pin.place.path());
    json.member("isFolder", identity.isFolder);
    json.member("size", item.size);
    number("device", identity.file.device);
    number("inode", identity.file.inode);
    number("parentDevice", item.pin.folder.device);
    number("parentInode", item.pin.folder.inode);
    moment("created", identity.created);
    moment("modified", item.change.modified);
    json.member("length", item.change.length);
    json.member("inodeMayChange", identity.details.has_value());
    json.end();
}

} // namespace

MadePlan planFor(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    MadePlan made{.plan = {.mode = mode,
                           .program = std::string("brimvale ").append(version),
                           .host = QSysInfo::machineHostName().toStdString(),
                           .made = iso8601(now())}};
    const RemovalGate gate;
    for (const CleanupEntry &entry : entries) {
        if (const std::string reason = entry.keptBecause(); !reason.empty()) {
            made.leftOut.push_back({entry.url, reason});
            continue;
        }
        addTo(made, entry, gate);
        if (entry.notes)
            for (const ItemPin &companion : entry.notes->companions)
                addTo(made, {.url = companion.place, .pin = companion}, gate);
    }
    return made;
}

void writePlan(TextSink &sink, const RemovalPlan &plan) {
    JsonWriter json(sink);
    json.beginObject();
    json.member("format", "brimvale removal plan");
    json.member("version", std::int64_t{1});
    json.member("program", plan.program);
    json.member("host", plan.host);
    json.member("made", plan.made);
    json.member("mode", plan.mode == RemovalMode::trash ? "trash" : "delete");
    json.key("items");
    json.beginArray();
    for (const PlannedItem &item : plan.items)
        writeItem(json, item);
    json.end();
    json.end();
}

std::optional<FileError> savePlan(const std::string &path, const RemovalPlan &plan) {
    PlanText sink;
    writePlan(sink, plan);
    return writeFileAtomically(path, sink.text);
}

bool isUnchanged(const PlannedItem &item) {
    if (item.pin.item.created || item.pin.item.details)
        return true;
    const std::optional<EntryRecord> record = entryRecord(item.pin.place.path());
    if (!record)
        return false;
    const ItemDetails change = changeOf(*record);
    return change.modified == item.change.modified &&
           (item.pin.item.isFolder || change.length == item.change.length);
}

} // namespace brimvale
