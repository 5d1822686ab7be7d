#!/usr/bin/env bash
# How long the window takes to appear, from the start of the process to the first paint, and how long brimvalectl
# takes for the least that it can do. Run by ./bench, which says in $programs where everything was built.
#
# Options:
#   --rounds N     how often the window is started (15)
#   --at-most MS   the target for the window in milliseconds (40)
set -euo pipefail
exec "${programs:?}/StartWindow" --at-most 40 --memory 45 --command "$programs/brimvalectl" 2 "$@"
