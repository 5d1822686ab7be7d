#include "Support/UpdateScene.h"

#include <QJsonDocument>

namespace brimvale::testing {

UpdateScene::UpdateScene() {
    makeApp(folder, "release/Brimvale.app");
    archive = archiveOf(folder.path("release"));
    server.put("/app.zip", {.body = archive});
    feed = {{"version", "1.4.2"},
            {"build", 42},
            {"url", server.url("/app.zip").toString()},
            {"sha256", QString::fromStdString(sha256Of(archive))},
            {"notes", "New."}};
    environment.feedURL = server.url("/appcast.json");
    environment.bundle = {.url = FileURL(makeApp(folder, "My Applications/Brimvale.app", {.content = "old"})),
                          .identifier = "example.brimvale.Brimvale",
                          .version = "1.4.1",
                          .build = "41"};
    environment.canInstallItself = true;
    environment.macOSVersion = SystemVersion{14, 6};
    environment.temporaryFolder = FileURL(folder.makeFolder("tmp"));
    environment.installLog = FileURL(folder.path("install.log"));
    environment.tools = makeUpdateTools(folder);
    environment.quit = record;
    environment.log = [record = record](const std::string &line) { record->add(line); };
}

void UpdateScene::publish() {
    server.put("/appcast.json", {.body = QJsonDocument(feed).toJson().toStdString()});
}

} // namespace brimvale::testing
