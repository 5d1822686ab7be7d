#!/usr/bin/env bash
# Builds the Debian package into build/dist, on Debian or a system made from it:
#
#   Packaging/Linux/package.sh [CMAKE-OPTION]...
#
# What the program needs is found with dpkg-shlibdeps, so the package suits the release it is built on.
set -euo pipefail
top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$top"

for tool in dpkg-shlibdeps dpkg-deb gzip; do
    command -v "$tool" >/dev/null || {
        echo "$tool is not installed (packages dpkg-dev and gzip)." >&2
        exit 2
    }
done
cmake --preset package "$@"
cmake --build build/package
rm -rf build/package/packed
cpack -G DEB --config build/package/CPackConfig.cmake -B build/package/packed
mkdir -p build/dist
mv build/package/packed/*.deb build/dist/
ls build/dist/*.deb
