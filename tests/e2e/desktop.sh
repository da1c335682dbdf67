#!/usr/bin/env bash
# Runs a test on a desktop of its own: an X server, a session bus and an accessibility bus, with a
# sample home. Arguments: the folder of the programs, the test, a Python script beside this one, and
# what that takes.
set -euo pipefail
here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
programs=$(readlink -f -- "$1")

work=$(mktemp -d /var/tmp/tidewright-desktop-test.XXXXXX)
trap 'chmod -R u+rwX "$work" && rm -rf "$work"' EXIT
mkdir -m 0700 "$work/runtime"
"$programs/tidewright-sample-home" "$work/home" >/dev/null

# Nothing of the desktop that the test is started on leads in here.
env -i PATH=/usr/bin:/bin:/usr/sbin:/sbin LC_ALL=C.UTF-8 \
    HOME="$work/home" TMPDIR="$work/home/.tmp" XDG_RUNTIME_DIR="$work/runtime" \
    QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 \
    QT_FORCE_STDERR_LOGGING=1 PROGRAMS="$programs" WORK="$work" PATIENCE="${PATIENCE:-120}" \
    xvfb-run -a -s "-screen 0 1280x860x24 -nolisten tcp" \
    dbus-run-session -- "$here/desktop-session.sh" "$here/$2" "${@:3}"
