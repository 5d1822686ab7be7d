#include "CommandLine/RecordJson.h"

#include <string_view>
#include <variant>

namespace brimvale::commandLine {

namespace {

std::string_view nameOf(CleanupRisk risk) {
    switch (risk) {
    case CleanupRisk::safe:
        return "safe";
    case CleanupRisk::review:
        return "review";
    case CleanupRisk::careful:
        break;
    }
    return "careful";
}

void writeDate(JsonWriter &json, std::string_view name, const std::optional<Date> &date) {
    json.member(name, date ? std::optional(iso8601(*date)) : std::nullopt);
}

/// What the catalog knows about an entry; an empty text is a missing value.
void writeNotes(JsonWriter &json, const CleanupEntry &entry) {
    const auto member = [&](std::string_view name, const std::string &text) {
        json.member(name, text.empty() ? std::nullopt : std::optional(text));
    };
    member("name", entry.notes->name);
    member("keptBecause", entry.keptBecause());
    member("command", entry.notes->command);
    json.member("mayFreeLess", entry.freesLess());
    member("runningProgram", entry.isInUse() ? entry.notes->program->name : "");
}

/// The members of each kind of action, after its case.
struct ActionWriter {
    JsonWriter &json;

    void operator()(const ReadOnlyAction &action) const {
        json.member("case", "readOnly");
        json.member("reason", action.reason);
    }
    void operator()(const BackupThenRemoveAction &action) const {
        json.member("case", "backupThenRemove");
        json.member("quitFirst", action.quitFirst);
        json.member("warning", action.warning);
    }
    void operator()(const ApplicationsAction &) const { json.member("case", "applications"); }
    void operator()(const RemovableAction &) const { json.member("case", "removable"); }
    void operator()(const TrashAction &) const { json.member("case", "trash"); }
};

} // namespace

void writeRecord(JsonWriter &json, const VolumeInfo &volume) {
    json.beginObject();
    json.path("url", volume.url.path());
    json.member("name", volume.name);
    json.member("totalCapacity", volume.totalCapacity);
    json.member("availableForImportantUsage", volume.availableForImportantUsage);
    json.member("trueFree", volume.trueFree);
    json.member("isInternal", volume.isInternal);
    json.member("isRootVolume", volume.isRootVolume);
    json.member("reserved", volume.reserved);
    json.member("fileSystem", volume.fileSystem);
    json.member("device", volume.device);
    json.end();
}

void writeRecord(JsonWriter &json, const LocalSnapshot &snapshot) {
    json.beginObject();
    json.member("name", snapshot.name);
    writeDate(json, "date", snapshot.date);
    json.member("tool", snapshot.tool);
    json.member("description", snapshot.description);
    json.member("exclusiveBytes", snapshot.exclusiveBytes);
    json.end();
}

void writeRecord(JsonWriter &json, const CleanupEntry &entry) {
    json.beginObject();
    json.path("url", entry.url.path());
    json.member("size", entry.size);
    writeDate(json, "modified", entry.modified);
    json.member("isFolder", entry.isFolder);
    if (entry.notes)
        writeNotes(json, entry);
    json.end();
}

void writeRecord(JsonWriter &json, const CleanupTarget &target) {
    json.beginObject();
    json.member("id", target.id);
    json.member("title", target.title);
    json.member("detail", target.detail);
    json.member("risk", nameOf(target.risk));
    json.paths("roots", target.roots);
    json.member("contentsOnly", target.contentsOnly);
    json.key("entries");
    writeRecords(json, target.entries);
    json.member("scanned", target.scanned);
    if (!target.commands.empty()) {
        json.key("commands");
        json.beginArray();
        for (const std::string &command : target.commands)
            json.value(command);
        json.end();
    }
    json.end();
}

void writeRecord(JsonWriter &json, const StorageCategory &category) {
    json.beginObject();
    json.member("id", category.id);
    json.member("title", category.title);
    json.member("symbol", category.symbol);
    json.member("colorName", category.colorName);
    json.member("detail", category.detail);
    json.paths("roots", category.roots);
    json.member("listsContents", category.listsContents);
    json.member("risk", nameOf(category.risk));
    json.member("measurement",
                category.measurement == CategoryMeasurement::measured ? "measured" : "remainder");
    json.key("action");
    json.beginObject();
    std::visit(ActionWriter{json}, category.action);
    json.end();
    json.member("caveat", category.caveat);
    json.end();
}

void writeRecord(JsonWriter &json, const MeasuredCategory &category) {
    json.beginObject();
    json.key("category");
    writeRecord(json, category.category);
    json.member("size", category.size);
    json.key("entries");
    writeRecords(json, category.entries);
    json.member("measured", category.measured);
    json.end();
}

} // namespace brimvale::commandLine
