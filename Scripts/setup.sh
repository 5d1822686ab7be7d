# Finds what is missing on this machine and installs only that. To be sourced by a script that then calls
#
#   set_up run|test|bench
#
# If something is missing and cannot be installed, one sentence says so and the script ends with status 1. When
# nothing is missing, the check takes a few milliseconds and asks no package manager. $top is the top of the tree.
# Written for bash 3.2, the version of macOS.
# shellcheck shell=bash

top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# One requirement per row: its purpose (with a question mark if optional), how to see that it is installed, and the
# packages to install, with commas between several and a dash where that system needs or has none. `test` and
# `bench` also need everything for `run`.
needs='
#        what shows it           apt-get          dnf                      pacman      brew
run      compiler                g++              gcc-c++                  gcc         -
run      cmake                   cmake            cmake                    cmake       cmake
run      command:ninja           ninja-build      ninja-build              ninja       ninja
run      config:Qt6              qt6-base-dev     qt6-qtbase-devel         qt6-base    qtbase
run      config:Qt6Svg           qt6-svg-dev      qt6-qtsvg-devel          qt6-svg     qtsvg
run      header:unicode/ucol.h   libicu-dev       libicu-devel             icu         -
run      header:plist/plist.h    libplist-dev     libplist-devel           libplist    -
run      header:nettle/sha2.h    nettle-dev       nettle-devel             nettle      -
test     config:GTest            libgtest-dev     gtest-devel              gtest       googletest
test     header:gmock/gmock.h    libgmock-dev     gmock-devel              gtest       googletest
test     command:sqlite3         sqlite3          sqlite                   sqlite      -
test     file:/usr/share/zoneinfo/Europe/Berlin tzdata tzdata              tzdata      -
test?    command:dbus-daemon      dbus-daemon      dbus-daemon              dbus        -
test?    command:chromium        chromium         chromium                 chromium    -
test     library:tsan            -                libasan,libubsan,libtsan -           -
test?    command:clang-format-14 clang-format-14  -                        -           -
test?    command:clang-tidy-14   clang-tidy-14    -                        -           -
test?    command:shellcheck      shellcheck       ShellCheck               shellcheck  shellcheck
test?    command:python3         python3          python3                  python      -
test?    command:plistutil       libplist-utils   libplist                 libplist    -
test?    command:desktop-file-validate desktop-file-utils desktop-file-utils desktop-file-utils -
test?    command:appstreamcli    appstream        appstream                appstream   -
test?    command:man             man-db                man-db                man-db      -
test?    command:xmllint         libxml2-utils    libxml2                  libxml2     -
bench    config:benchmark        libbenchmark-dev google-benchmark-devel   benchmark   google-benchmark
bench?   command:ncdu            ncdu             ncdu                     ncdu        ncdu
bench?   command:gdu             gdu              -                        gdu         -
'

set_up() {
    local purpose=$1 manager column missing
    manager=$(package_manager)
    column=$manager
    [ "$(uname -s)" != Darwin ] || column=brew # a Mac's requirements, even without Homebrew
    missing=$(missing_for "$purpose" "$column" packages)
    if [ -n "$missing" ]; then
        [ "$manager" != brew ] || refuse_long_build "$missing"
        [ -n "$manager" ] || end_set_up "No package manager is known here (on a Mac that is Homebrew); please install" \
            "$(missing_for "$purpose" "$column" names), then start again."
        install_packages "$manager" "$missing" ||
            end_set_up "Installing with $manager failed; please install $missing, then start again."
    fi
    missing=$(missing_for "$purpose" "$column" names)
    [ -z "$missing" ] || end_set_up "Please install $missing (${manager:-this machine} brings none), then start again."
    add_optional "$purpose" "$manager"
}

end_set_up() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Homebrew has nothing ready-made for macOS 13 any more: it would compile Qt for hours, and fail without Xcode.
refuse_long_build() {
    local version
    version=$(sw_vers -productVersion)
    case " $1" in
        *' qt'*) [ "${version%%.*}" -ge 14 ] ||
            end_set_up "Homebrew has no ready-made Qt for macOS $version. Please install Qt 6.4 or newer with the Qt" \
                "Company's installer, set CMAKE_PREFIX_PATH to its folder (such as ~/Qt/6.9.3/macos)," \
                "then start again." ;;
    esac
}

# The name of the package manager, as in the header of its column; nothing where there is none.
package_manager() {
    local manager managers='apt-get dnf pacman'
    [ "$(uname -s)" != Darwin ] || managers=brew
    for manager in $managers; do
        if command -v "$manager" >/dev/null; then
            echo "$manager"
            return
        fi
    done
}

# missing_for PURPOSE MANAGER packages|names: what is missing, on one line (without a manager, with Debian's
# package names). A requirement with a dash in the manager's column counts as met, except the compiler, which a Mac
# gets elsewhere.
missing_for() {
    local purpose shows apt dnf pacman brew package packages='' names=''
    while read -r purpose shows apt dnf pacman brew; do
        [ "$purpose" = run ] || [ "$purpose" = "$1" ] || continue
        case $2 in
            dnf) package=$dnf ;;
            pacman) package=$pacman ;;
            brew) package=$brew ;;
            *) package=$apt ;;
        esac
        if { [ "$package" = - ] && [ "$shows" != compiler ]; } || is_there "$shows"; then
            continue
        fi
        names="$names${names:+, }$(name_of "$shows")"
        [ "$package" = - ] || packages="$packages${packages:+ }${package//,/ }"
    done <<<"$needs"
    if [ "$3" = names ]; then echo "$names"; else echo "$packages"; fi
}

is_there() {
    case $1 in
        compiler) has_compiler ;;
        cmake) has_recent_cmake ;;
        command:*) command -v "${1#*:}" >/dev/null ;;
        config:*) is_below_prefix "lib/cmake/${1#*:}" "lib64/cmake/${1#*:}" "lib/*/cmake/${1#*:}" ;;
        header:*) is_below_prefix "include/${1#*:}" "include/*/${1#*:}" ;;
        file:*) [ -e "${1#*:}" ] ;;
        library:*) [ -e "$(${CXX:-c++} -print-file-name="lib${1#*:}.so")" ] ;;
    esac
}

name_of() {
    case $1 in
        compiler) echo 'a C++20 compiler (on a Mac: xcode-select --install)' ;;
        cmake) echo 'CMake 3.25 or newer' ;;
        config:*) echo "the development files of ${1#*:}" ;;
        *) echo "${1#*:}" ;;
    esac
}

# Whether there is a compiler at all; CMake checks that it supports C++20.
has_compiler() {
    # macOS always has a c++, but without the real compiler it only offers to install it.
    if [ "$(uname -s)" = Darwin ]; then
        xcode-select -p >/dev/null 2>&1
    else
        command -v "${CXX:-c++}" >/dev/null || command -v g++ >/dev/null || command -v clang++ >/dev/null
    fi
}

has_recent_cmake() {
    local version major minor
    version=$(cmake --version 2>/dev/null) || return 1
    version=${version#cmake version }
    major=${version%%.*}
    minor=${version#*.}
    minor=${minor%%.*}
    [ "$major" -gt 3 ] || { [ "$major" -eq 3 ] && [ "$minor" -ge 25 ]; }
}

# is_below_prefix PATTERN…: whether one of them matches a file where CMake searches by default. CMake also searches
# the parents of the folders in PATH.
is_below_prefix() {
    local prefix pattern file prefixes brew
    brew=$(command -v brew) || brew=
    IFS=':;' read -r -a prefixes <<<"/usr:/usr/local:/opt/homebrew:${brew%/bin/brew}:${CMAKE_PREFIX_PATH:-}"
    for prefix in "${prefixes[@]}"; do
        for pattern in "$@"; do
            for file in "$prefix"/$pattern; do # expand the pattern, not the prefix
                [ ! -e "$file" ] || return 0
            done
        done
    done
    return 1
}

# Installs the optional packages. Tried once per machine and build folder; otherwise a package that does not exist
# there would be requested at every start.
add_optional() {
    local tried package
    tried="$top/build/.tried-$1-$(uname -n)"
    [ ! -e "$tried" ] || return 0
    if [ -n "$2" ]; then
        for package in $(missing_for "$1?" "$2" packages); do
            install_packages "$2" "$package" || echo "Going on without $package." >&2
        done
    fi
    mkdir -p "$top/build"
    : >"$tried"
}

# install_packages MANAGER "PACKAGE…": quiet on success; otherwise prints the whole log and returns false.
install_packages() {
    local log="$top/build/set-up.log"
    if [ "$1" != brew ] && [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        echo "Only root can install $2, and there is no sudo." >&2
        return 1
    fi
    mkdir -p "$top/build"
    echo "Installing $2 (as told in build/set-up.log)" >&2
    "install_with_${1%-get}" $2 >"$log" 2>&1 || {
        cat "$log" >&2
        return 1
    }
}

install_with_apt() {
    if [ -z "${package_lists_are_fresh:-}" ]; then
        # It fails even if only one of several sources fails; the next step shows whether that one was needed.
        as_root apt-get update || true
        package_lists_are_fresh=yes
    fi
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -o DPkg::Lock::Timeout=120 install -y --no-install-recommends "$@"
}

install_with_dnf() {
    as_root dnf install -y "$@"
}

install_with_pacman() {
    # New lists without a full upgrade could install libraries that do not fit together, so only if there are no
    # lists yet.
    if [ -e /var/lib/pacman/sync/core.db ]; then
        as_root pacman -S --needed --noconfirm "$@"
    else
        as_root pacman -Sy --needed --noconfirm "$@"
    fi
}

install_with_brew() {
    local package packages=''
    brew install "$@" && return
    # An outdated Homebrew from before Qt was split has all of Qt in one package.
    ! brew info --formula qtbase >/dev/null 2>&1 || return
    for package in "$@"; do
        case $package in
            qt*) packages="qt $packages" ;;
            *) packages="$packages $package" ;;
        esac
    done
    brew install $packages
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}
