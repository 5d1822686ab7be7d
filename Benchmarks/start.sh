#!/usr/bin/env bash
# How long the window takes to appear, from the start of the process to the first paint. Run by ./bench, which
# says in $programs where everything was built.
#
# Options:
#   --rounds N     how often it is started
#   --at-most MS   the target in milliseconds (60)
set -euo pipefail
exec "${programs:?}/StartWindow" --at-most 60 "$@"
