# shellcheck shell=bash
# What the scripts of this repository share: its root folder, the number of cores, and how a preset
# is configured. Sourced, never run. Written for the bash 3.2 of macOS as well.

# The folder of the repository, without symbolic links.
root=$(readlink -f -- "${BASH_SOURCE[0]}")
root=${root%/tools/common.sh}

# shellcheck disable=SC2034
cores=$(getconf _NPROCESSORS_ONLN)

if [[ $OSTYPE == darwin* ]]; then
    # Homebrew keeps ICU and LLVM out of the usual places, because the system has its own.
    for prefix in /opt/homebrew /usr/local; do
        [[ -x $prefix/bin/brew ]] || continue
        PATH=$prefix/bin:$PATH:$prefix/opt/llvm/bin
        export ICU_ROOT=$prefix/opt/icu4c
        break
    done
fi

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Whether a preset's build folder is complete and belongs to this place: a folder that was moved, or
# whose configuring failed, is no use.
is_configured() {
    local build=$root/build/$1
    [[ -f $build/build.ninja ]] &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$build/CMakeCache.txt"
}

configure() {
    is_configured "$1" || cmake -S "$root" --preset "$1" --fresh
}

# The files of the repository that match the patterns, tracked or new, one a line. A clone that
# belongs to another user is read all the same: nothing in it is run by this.
repository_files() {
    local file
    git -C "$root" -c safe.directory='*' -c core.quotePath=false \
        ls-files -co --exclude-standard -- "$@" |
        while IFS= read -r file; do
            if [[ -f $root/$file ]]; then echo "$file"; fi
        done
}
