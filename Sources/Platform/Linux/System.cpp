#include "Platform/Host.h"

#include "Platform/Posix/PersonalAccounts.h"

namespace brimvale {

System platformSystem() {
    return System::linux;
}

Tools platformTools() {
    return {.shell = "/bin/sh",
            .administratorRunner = "/usr/bin/pkexec",
            .busCaller = "/usr/bin/dbus-send",
            .settings = "/usr/bin/gsettings",
            .tmutil = "",
            .snapper = "/usr/bin/snapper",
            .timeshift = "/usr/bin/timeshift",
            .fileStatus = "/usr/bin/stat",
            .databaseShell = "/usr/bin/sqlite3",
            .copier = "/bin/cp",
            // An existing file or link is removed first: a read-only file would stay, and a link would be
            // written through.
            .copierOptions = {"-aT", "--remove-destination", "--reflink=auto", "--"},
            .shasum = "",
            .unpacker = "",
            .codesign = "",
            .attributeRemover = "",
            .opener = ""};
}

uid_t firstPersonalAccount() {
    return 1000; // UID_MIN of login.defs(5)
}

bool isAdministratorGroup(gid_t group) {
    return group == 0;
}

} // namespace brimvale
