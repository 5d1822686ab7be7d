#include "Core/Update/InstallScript.h"

namespace brimvale {

namespace {

/// The body of the script; the paths are defined before it.
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

std::string singleQuoted(const std::string &text) {
    return "'" + text + "'";
}

} // namespace

std::string installScript(const Installation &installation) {
    const std::string log = singleQuoted(installation.log.path());
    return "# The log may belong to another account. The update matters more than what is written about it.\n"
           "(: >>" +
           log +
           ") 2>/dev/null &&\n"
           "exec >>" +
           log +
           " 2>&1\n"
           "staged=" +
           singleQuoted(installation.staged.path()) +
           "\n"
           "current=" +
           singleQuoted(installation.current.path()) +
           "\n"
           "staging=" +
           singleQuoted(installation.staged.parent().path()) +
           "\n"
           "executable=" +
           singleQuoted(installation.executable) +
           "\n"
           "process=" +
           std::to_string(installation.process) + "\n" + steps;
}

} // namespace brimvale
