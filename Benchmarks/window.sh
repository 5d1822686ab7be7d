#!/usr/bin/env bash
# How quickly the window answers on a tree of a million nodes. Run by ./bench, which says in $programs where
# everything was built. Takes no options.
set -euo pipefail
exec "${programs:?}/Window" "$@"
