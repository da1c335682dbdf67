#!/usr/bin/env bash
# Inside the session that window.sh has made: the window manager, the program, and who drives it.
set -uo pipefail
here=$1 programs=$2 work=$3

openbox &
manager=$!
"$programs/tidewright-app" 2>"$work/warnings" &
program=$!
/usr/bin/python3 -B "$here/window.py"
status=$?
kill "$program" "$manager"
wait "$program" "$manager" 2>/dev/null

if [[ -s $work/warnings ]]; then
    echo "FAILED: the program has warned:"
    cat "$work/warnings"
    status=1
fi
exit "$status"
