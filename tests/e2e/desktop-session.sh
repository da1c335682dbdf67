#!/usr/bin/env bash
# Inside the session that desktop.sh has made: the window manager and the test.
set -uo pipefail

openbox &
manager=$!
/usr/bin/python3 -B "$@"
status=$?
kill "$manager"
wait "$manager" 2>/dev/null
exit "$status"
