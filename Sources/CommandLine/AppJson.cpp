#include "CommandLine/AppJson.h"

#include <optional>
#include <string>
#include <variant>

namespace brimvale::commandLine {

namespace {

void writeTexts(JsonWriter &json, const char *name, const std::vector<std::string> &texts) {
    json.key(name);
    json.beginArray();
    for (const std::string &text : texts)
        json.value(text);
    json.end();
}

/// Writes each way of removal with what it needs.
struct RemovalJson {
    JsonWriter &json;

    void operator()(const RemovedAsItem &way) const {
        json.member("way", "item");
        if (!way.uninstaller.empty())
            json.path("uninstaller", way.uninstaller);
    }
    void operator()(const RemovedByCommand &way) const {
        json.member("way", "command");
        json.member("program", way.program);
        writeTexts(json, "arguments", way.arguments);
    }
    void operator()(const RemovedInTerminal &way) const {
        json.member("way", "terminal");
        json.member("command", way.command);
        if (!way.softwareLink.empty())
            json.member("link", way.softwareLink);
    }
    void operator()(const RemovedElsewhere &way) const {
        json.member("way", "program");
        json.member("program", way.program);
    }
};

/// What only applications have that are no bundles.
void writeInstallation(JsonWriter &json, const InstalledApp &app, bool isRunning) {
    json.member("kind", identifier(app.kind));
    json.member("origin", app.origin);
    json.member("knownSize", app.knownSize);
    json.member("isRunning", isRunning);
    if (!app.iconPath.empty())
        json.path("icon", app.iconPath);
    json.key("removal");
    json.beginObject();
    std::visit(RemovalJson{json}, app.removal);
    json.end();
}

void writeApp(JsonWriter &json, const InstalledApp &app, bool isRunning) {
    json.beginObject();
    json.path("url", app.url.path());
    json.member("name", app.name);
    json.member("bundleID", app.bundleID);
    json.member("version", app.version);
    json.member("isSystemApp", app.isSystemApp);
    json.member("isMASApp", app.isMASApp);
    json.member("lastUsed", app.lastUsed ? std::optional(iso8601(*app.lastUsed)) : std::nullopt);
    if (app.kind != AppKind::bundle)
        writeInstallation(json, app, isRunning);
    json.end();
}

} // namespace

void writeAppRow(JsonWriter &json, const AppRow &row, bool isRunning) {
    json.beginObject();
    json.key("app");
    writeApp(json, row.app, isRunning);
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
        if (!item.reason.empty()) {
            json.member("reason", item.reason);
            json.member("isCareful", item.isCareful);
            writeTexts(json, "alsoClaimedBy", item.alsoClaimedBy);
        }
        json.end();
    }
    json.end();
}

} // namespace brimvale::commandLine
