#include "Core/Removal/RemovalPlan.h"

#include "Core/Text/JsonWriter.h"
#include "Platform/AtomicFile.h"

namespace brimvale {

namespace {

// As texts: some programs read only numbers up to 2^53.
void writeNumber(JsonWriter &json, const char *name, std::uint64_t value) {
    json.member(name, std::to_string(value));
}

void writeMoment(JsonWriter &json, const char *name, const std::optional<std::int64_t> &time) {
    json.member(name, time ? std::optional(std::to_string(*time)) : std::nullopt);
}

/// The members of an entry, in an open object.
void writeEntry(JsonWriter &json, const PlannedEntry &entry) {
    const ItemIdentity &identity = entry.pin.item;
    json.path("path", entry.pin.place.path());
    json.member("isFolder", identity.isFolder);
    writeNumber(json, "device", identity.file.device);
    writeNumber(json, "inode", identity.file.inode);
    writeNumber(json, "parentDevice", entry.pin.folder.device);
    writeNumber(json, "parentInode", entry.pin.folder.inode);
    writeMoment(json, "created", identity.created);
    writeMoment(json, "modified", entry.change.modified);
    json.member("length", entry.change.length);
    json.member("inodeMayChange", identity.details.has_value());
    if (identity.isFolder)
        json.member("contents", entry.contents);
}

void writeTexts(JsonWriter &json, std::string_view name, const std::vector<std::string> &texts) {
    json.key(name);
    json.beginArray();
    for (const std::string &text : texts)
        json.value(text);
    json.end();
}

void writeProgram(JsonWriter &json, const ProgramSigns &program) {
    json.key("notWhile");
    json.beginObject();
    json.member("name", program.name);
    writeTexts(json, "processes", program.processes);
    writeTexts(json, "locks", program.locks);
    writeTexts(json, "marks", program.marks);
    json.path("openFolder", program.openFolder);
    json.end();
}

void writeItem(JsonWriter &json, const PlannedItem &item) {
    json.beginObject();
    writeEntry(json, item.entry);
    json.member("size", item.size);
    if (item.equalTo) {
        json.key("equalTo");
        json.beginObject();
        writeEntry(json, *item.equalTo);
        json.end();
    }
    if (item.notWhile)
        writeProgram(json, *item.notWhile);
    if (!item.companions.empty()) {
        json.key("companions");
        json.beginArray();
        for (const PlannedEntry &companion : item.companions) {
            json.beginObject();
            writeEntry(json, companion);
            json.end();
        }
        json.end();
    }
    json.end();
}

} // namespace

void writePlan(TextSink &sink, const RemovalPlan &plan) {
    JsonWriter json(sink);
    writePlan(json, plan);
}

void writePlan(JsonWriter &json, const RemovalPlan &plan) {
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
    TextInMemory sink;
    writePlan(sink, plan);
    return writeFileAtomically(path, sink.text);
}

} // namespace brimvale
