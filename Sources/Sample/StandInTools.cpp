// Stand-ins for package managers, Snapper and Time Machine's tool. Each finds the disk by its own place,
// takes only the commands that Brimvale uses, and touches nothing outside the disk.

#include "Sample/LinuxDisk.h"
#include "Sample/MacDisk.h"

#include <string>

namespace brimvale::sample {

namespace {

constexpr const char *beginning =
    R"sh(root=$(CDPATH='' cd -P -- "$(dirname -- "$0")/../.." && pwd -P) || exit 1
refuse() {
    echo "error: $*" >&2
    exit 1
}
is_name() {
    case $1 in
        '' | .* | */*) refuse "$1 is no name" ;;
    esac
}
# enter FOLDER: none of the folders on the way may lead out of the disk
enter() {
    cd -P -- "$root/$1" || refuse "$1 is missing"
    case $PWD/ in
        "$root"/*) ;;
        *) refuse "$1 is not on this disk" ;;
    esac
}
# remove_in FOLDER NAME
remove_in() {
    [ ! -d "$root/$1" ] || (enter "$1" && rm -rf -- "./$2") || exit 1
}
)sh";

constexpr const char *flatpak = R"sh([ "$1 $3 $#" = 'uninstall -y 4' ] || refuse 'the sample only uninstalls'
case $2 in
    --user) base=home/sam/.local/share/flatpak ;;
    --system) base=var/lib/flatpak ;;
    *) refuse "unknown installation $2" ;;
esac
is_name "$4"
[ -d "$root/$base/app/$4" ] || refuse "$4 is not installed"
remove_in "$base/app" "$4"
remove_in "$base/exports/share/applications" "$4.desktop"
remove_in "$base/exports/share/icons/hicolor/scalable/apps" "$4.svg"
)sh";

constexpr const char *snap = R"sh([ "$1 $#" = 'remove 2' ] || refuse 'the sample only removes'
is_name "$2"
[ -d "$root/snap/$2" ] || refuse "$2 is not installed"
for file in "$root/var/lib/snapd/snaps/$2"_*.snap; do
    remove_in var/lib/snapd/snaps "${file##*/}"
done
remove_in var/lib/snapd/desktop/applications "$2_$2.desktop"
remove_in snap "$2"
)sh";

constexpr const char *snapper = R"sh(enter var/lib/snapper
case "$*" in
    *list-configs) printf 'config,subvolume\nroot,/\n' ;;
    *'-c root list '*) cat sample.csv ;;
    '-c root delete '*)
        grep -q "^$4," sample.csv || refuse "there is no snapshot $4"
        grep -v "^$4," sample.csv >new.csv
        mv new.csv sample.csv
        ;;
    *) refuse 'unknown command' ;;
esac
)sh";

constexpr const char *tmutil = R"sh(enter private/var/db
case $1 in
    listlocalsnapshots)
        echo 'Snapshots for disk /:'
        cat sample-snapshots
        ;;
    deletelocalsnapshots)
        grep -v -F -e ".$2." sample-snapshots >new-snapshots
        mv new-snapshots sample-snapshots
        ;;
    *) refuse 'unknown command' ;;
esac
)sh";

} // namespace

void makeMacTools(DiskBuilder &disk) {
    disk.writeScript("/usr/bin/tmutil", std::string(beginning) + tmutil, 60);
}

void makeLinuxTools(DiskBuilder &disk) {
    for (const auto &[name, commands] : {std::pair("flatpak", flatpak), {"snap", snap}, {"snapper", snapper}})
        disk.writeScript(std::string("/usr/bin/") + name, std::string(beginning) + commands, 300);
}

} // namespace brimvale::sample
