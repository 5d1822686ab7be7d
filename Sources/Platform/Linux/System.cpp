#include "Platform/Host.h"

namespace brimvale {

System platformSystem() {
    return System::linux;
}

Tools platformTools() {
    return {.shell = "/bin/sh",
            .administratorRunner = "/usr/bin/pkexec",
            .busCaller = "/usr/bin/dbus-send",
            .tmutil = "",
            .fileStatus = "/usr/bin/stat",
            .databaseShell = "/usr/bin/sqlite3",
            .copier = "/bin/cp",
            .shasum = "",
            .unpacker = "",
            .codesign = ""};
}

} // namespace brimvale
