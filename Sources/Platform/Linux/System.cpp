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
            // A file or link that is in the way goes first: one that is read-only would stay, and one that
            // leads elsewhere would be written through.
            .copierOptions = {"-aT", "--remove-destination", "--reflink=auto", "--"},
            .shasum = "",
            .unpacker = "",
            .codesign = ""};
}

} // namespace brimvale
