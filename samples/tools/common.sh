# shellcheck shell=sh
# What the stand-in tools share. Sourced, never run.
#
# The tools stand in for those of a developer in a sample home: they answer and act as the real ones
# would, on that home alone. They find it by their own place in it, not by the environment, and
# refuse whatever would touch anything outside.

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# The home, without links on the way to it. What is not marked as a sample home is nobody's to try
# things out on, even if a copy of the tools lies in it.
tools=$(CDPATH='' cd -- "${0%/*}" && pwd -P) || exit 1
home=${tools%/.volta/bin}
if [ "$home" = "$tools" ] || [ ! -f "$home/.sample-home/about.txt" ]; then
    fail "This is a stand-in that works in a sample home only, and $tools lies in none."
fi

# Whether a folder of the home, given by its full path, is there. Fails when a link on the way to it
# leads elsewhere: that may be anywhere.
inside() {
    [ -d "$1" ] || return 1
    real=$(CDPATH='' cd -- "$1" && pwd -P) || fail "$1 can't be entered."
    [ "$real" = "$1" ] || fail "$1 leads to $real: nothing is touched."
    case $1 in
        "$home"/*) ;;
        *) fail "$1 lies outside of the sample home: nothing is touched." ;;
    esac
}

# Deletes what a folder of the home holds. Links in it are deleted, never followed.
empty() {
    inside "$1" || return 0
    for entry in "$1"/* "$1"/.[!.]* "$1"/..?*; do
        if [ -e "$entry" ] || [ -L "$entry" ]; then
            rm -rf -- "$entry" || exit 1
        fi
    done
}

# Deletes a folder of the home.
remove() {
    inside "$1" || return 0
    rm -rf -- "$1" || exit 1
}
