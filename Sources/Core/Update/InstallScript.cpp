#include "Core/Update/InstallScript.h"

#include "Core/Update/SigningTeam.h"

#include <string_view>

namespace brimvale {

namespace {

/// Opens the log, around the line that does so.
constexpr const char *beforeLog = R"sh(
# Everybody can put something at the place of the log: a link would lead the messages into another file, a pipe
# would stop this script. So the log is used only if it is new or an ordinary file of this user. Nobody else can
# replace such a file there. The update matters more than its log.
[ -e "$log" ] || [ -L "$log" ] || (set -C; : >"$log") 2>/dev/null
if [ -n "$(find "$log" -prune -type f -links 1 -user "$(id -u)" 2>/dev/null)" ] && (: >>"$log") 2>/dev/null; then
)sh";
constexpr const char *afterLog = R"sh(
fi
)sh";

/// The body of the script.
constexpr const char *steps = R"(
printf '%s\n' "--- $(date) update starting: $current <- $staged"

# Wait for the application to exit, but never without end. An earlier version looped forever: when the
# application failed to quit, this helper stayed around and fired at some unrelated moment later, swapping
# bundles out from under whatever was running by then.
waited=0
while kill -0 "$process" 2>/dev/null; do
    sleep 0.2
    waited=$((waited + 1))
    if [ "$waited" -gt 150 ]; then
        echo "ABORT: app still running after 30s, touching nothing"
        exit 1
    fi
done

# Before anything is moved, prove that the replacement is there and valid now. This is the check whose absence
# destroyed the application: the old script moved the installed copy aside first and only then discovered that
# it had nothing to put in its place.
if [ ! -d "$staged" ]; then
    echo "ABORT: staged copy is gone, installed app untouched"
    exit 1
fi
if [ ! -x "$staged/$executable" ]; then
    echo "ABORT: staged copy has no executable, installed app untouched"
    exit 1
fi
if ! codesign --verify --strict "$staged"; then
    echo "ABORT: staged signature invalid, installed app untouched"
    exit 1
fi
if ! codesign --verify --deep --strict -R "$requirement" "$staged"; then
    echo "ABORT: staged copy signed by someone else, installed app untouched"
    exit 1
fi

# From the first move on, nothing but the end of the machine may stop this script halfway: not the end of the
# session, and not a log that cannot be written.
trap '' HUP INT TERM PIPE

# A backup from an earlier update is stale by now. Where it cannot be removed, the move would put the installed
# copy inside it, where nobody looks for it.
rm -rf "$current.old"
if [ -e "$current.old" ] || ! mv "$current" "$current.old"; then
    echo "FAIL: could not move the old bundle aside"
    exit 1
fi

ditto "$staged" "$current"
echo "ditto exit=$?"

# Verify rather than trust: a copy can fail halfway and still report success.
ok=1
if [ ! -d "$current" ]; then
    echo "FAIL: no bundle after copy"
    ok=0
fi
if [ ! -x "$current/$executable" ]; then
    echo "FAIL: no executable after copy"
    ok=0
fi
if ! codesign --verify --strict "$current"; then
    echo "FAIL: signature invalid after copy"
    ok=0
elif ! codesign --verify --deep --strict -R "$requirement" "$current"; then
    echo "FAIL: signed by someone else after copy"
    ok=0
fi

if [ "$ok" -ne 1 ]; then
    echo "restoring backup"
    rm -rf "$current"
    # Onto what could not be removed the move would put the backup inside it.
    if [ ! -e "$current" ] && mv "$current.old" "$current"; then
        echo "restored"
    else
        echo "FAIL: restore failed"
    fi
    exit 1
fi

# Without this the system would ask about an application from the internet at every update.
xattr -dr com.apple.quarantine "$current" 2>/dev/null

# Only now, with the new copy in place and verified, does the backup go.
rm -rf "$current.old" "$staging"
echo "OK: updated, relaunching"
open "$current"
)";

std::string variable(std::string_view name, std::string_view value) {
    return std::string(name) + "='" + std::string(value) + "'\n";
}

} // namespace

std::string installScript(const Installation &installation) {
    const std::string &log = installation.log.path();
    return variable("log", log) + variable("staged", installation.staged.path()) +
           variable("current", installation.current.path()) +
           variable("staging", installation.staged.parent().path()) +
           variable("executable", installation.executable) + variable("requirement", teamRequirement) +
           "process=" + std::to_string(installation.process) + "\n" + beforeLog + "    exec >>'" + log +
           "' 2>&1" + afterLog + steps;
}

} // namespace brimvale
