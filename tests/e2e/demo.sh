#!/usr/bin/env bash
# Tests ./run --demo from outside: what it says, its exit status, that it neither reads nor writes
# anything of the user's, and that nothing is left of the sample home, also after Ctrl-C.
# Skips itself with status 77 where ./run has never built the programs: that would take long.
set -euo pipefail
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/tests/e2e/demo.sh}

if [[ ! -x $root/build/release/bin/tidewright-sample-home ]]; then
    echo "Skipped: there is no release build with a sample home yet; ./run makes one."
    exit 77
fi

work=$(mktemp -d /var/tmp/tidewright-demo-test.XXXXXX)
trap 'rm -rf "$work"' EXIT

# A user with clutter and an Android SDK, none of which may turn up. Homes are made in `place`.
user=$work/user
place=$work/place
mkdir -p "$place" "$user"/{Library/Logs,.config,sdk/ndk/99.0.1,avd/Mine.avd,tmp/metro-mine}
head -c 2000000 /dev/zero >"$user/Library/Logs/mine.log"
cp "$user/Library/Logs/mine.log" "$user/sdk/ndk/99.0.1/clang"

# demo PLACE ARGUMENTS…
demo() {
    local home_place=$1
    shift
    env -u DISPLAY -u WAYLAND_DISPLAY HOME="$user" TMPDIR="$home_place" LC_ALL=C.UTF-8 \
        XDG_CONFIG_HOME="$user/.config" XDG_DATA_HOME="$user/.config" \
        XDG_STATE_HOME="$user/.config" ANDROID_HOME="$user/sdk" ANDROID_AVD_HOME="$user/avd" \
        "$root/run" --demo "$@" </dev/null
}

failures=0
# check NAME COMMAND… runs a command that must succeed.
check() {
    local name=$1
    shift
    if "$@"; then
        echo "ok: $name"
    else
        echo "FAILED: $name"
        failures=$((failures + 1))
    fi
}

nothing_is_left() {
    [[ -z $(ls -A "$place") ]]
}

before=$(tar cf - -C "$work" user | cksum)
user_is_unchanged() {
    [[ $(tar cf - -C "$work" user | cksum) == "$before" ]]
}

# Everything that the report on standard input names lies in a sample home.
names_only_the_sample() {
    python3 -c '
import json, sys
report = json.load(sys.stdin)
urls = [url for item in report["items"] for url in item["urls"]]
urls += [found["url"] for key in ("projects", "largeFiles") for found in report[key]]
elsewhere = [url for url in urls if not url.startswith(sys.argv[1] + "/tidewright-demo.")]
print(*elsewhere, sep="\n", end="")
sys.exit(0 if urls and not elsewhere else 1)' "$1"
}

# A scan by default, with the exit status of the program.
status=0
demo "$place" >"$work/output" 2>"$work/errors" || status=$?
check "a scan ends with status 0" test "$status" == 0
check "it prints a report" grep -q " can be freed: " "$work/output"
check "it says where the home is" grep -q "^This is a sample home, in $place/tidewright-demo\." \
    "$work/errors"
check "nothing is left after a scan" nothing_is_left

status=0
demo "$place" nonsense >"$work/output" 2>"$work/errors" || status=$?
check "wrong usage is passed on" test "$status" == 2
check "with its sentence" grep -q 'there is no command "nonsense"' "$work/errors"
check "nothing is left after wrong usage" nothing_is_left

demo "$place" scan --json >"$work/report.json" 2>/dev/null
check "a report names nothing of the user's" names_only_the_sample "$place" <"$work/report.json"

if [[ -d /dev/shm && -w /dev/shm ]]; then
    memory=$(mktemp -d /dev/shm/tidewright-demo-test.XXXXXX)
    demo "$memory" rules >/dev/null 2>"$work/errors"
    check "a home is never made in memory" grep -q "in /var/tmp/tidewright-demo\." "$work/errors"
    check "nothing is left in memory" rmdir "$memory"
fi

# Ctrl-C reaches the whole group in front of a terminal; with job control each command is one. The
# report is longer than a pipe holds and nobody reads it, so no scan is over before the Ctrl-C.
check "a report fills a pipe" test "$(wc -c <"$work/report.json")" -gt 65536
mkfifo "$work/unread"
exec 8<>"$work/unread"
set -m

is_made() { compgen -G "$place/tidewright-demo.*" >/dev/null; }
is_running() { grep -q "^This is a sample home" "$work/errors" && sleep 1; }

# interrupted_when CONDITION starts a demo, waits for the condition, and types Ctrl-C until it ends.
interrupted_when() {
    local status=0 group
    : >"$work/errors"
    # When Ctrl-C ends the shell in the background, it must not clean up for this one.
    (trap - EXIT && demo "$place" scan --json) >"$work/unread" 2>"$work/errors" 8>&- &
    group=$!
    for _ in {1..3000}; do
        ! "$1" || break
        sleep 0.01
    done
    for _ in {1..30}; do
        kill -INT -- -"$group" 2>/dev/null || break
        sleep 1
    done
    wait "$group" || status=$?
    check "Ctrl-C when it $1 ends with status 130" test "$status" == 130
    check "Ctrl-C when it $1 leaves nothing" nothing_is_left
}
interrupted_when is_made
interrupted_when is_running

check "nothing of the user's was changed" user_is_unchanged
[[ $failures == 0 ]]
