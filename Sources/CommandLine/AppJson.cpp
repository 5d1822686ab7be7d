#include "CommandLine/AppJson.h"

#include <optional>
#include <string>

namespace brimvale::commandLine {

namespace {

void writeApp(JsonWriter &json, const InstalledApp &app) {
    json.beginObject();
    json.path("url", app.url.path());
    json.member("name", app.name);
    json.member("bundleID", app.bundleID);
    json.member("version", app.version);
    json.member("isSystemApp", app.isSystemApp);
    json.member("isMASApp", app.isMASApp);
    json.member("lastUsed", app.lastUsed ? std::optional(iso8601(*app.lastUsed)) : std::nullopt);
    json.end();
}

} // namespace

void writeAppRow(JsonWriter &json, const AppRow &row) {
    json.beginObject();
    json.key("app");
    writeApp(json, row.app);
    json.member("bundleSize", row.bundleSize);
    json.key("leftovers");
    writeLeftovers(json, row.leftovers);
    json.member("analyzed", row.analyzed);
    json.end();
}

void writeLeftovers(JsonWriter &json, const std::vector<LeftoverItem> &items) {
    json.beginArray();
    for (const LeftoverItem &item : items) {
        json.beginObject();
        json.path("url", item.url.path());
        json.member("category", item.category);
        json.member("confidence", item.confidence == MatchConfidence::exact ? "exact" : "likely");
        json.member("size", item.size);
        json.member("requiresAdmin", item.requiresAdmin);
        json.member("isFolder", item.isFolder);
        json.member("isVague", item.isVague);
        json.end();
    }
    json.end();
}

} // namespace brimvale::commandLine
