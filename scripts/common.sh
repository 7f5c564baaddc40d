# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Shared functions of the scripts. To be sourced.
# shellcheck shell=bash

# fail SENTENCE: ends the script with a sentence that names the problem and its solution.
fail() {
    echo "$*" >&2
    exit 1
}

# The comment at the head of the script is its help. The current folder is the checkout.
print_help() {
    awk 'NR > 4 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "scripts/${0##*/}"
}

# need_space FOLDER MEGABYTES WHAT: ends the script if the file system of FOLDER has less free space.
need_space() {
    local free
    free=$(df --output=avail -B 1M "$1" | tail -n 1 | tr -d ' ')
    [ "$free" -ge "$2" ] ||
        fail "The disk is too full: $3 needs $2 MB in $1, $free MB are free;" \
            "please make room and start again."
}

# build PRESET MEGABYTES: configures and builds the preset. MEGABYTES is the size of the finished build.
build() {
    local folder=$PWD/build/$1 log=$PWD/build/$1.log
    { mkdir -p "$folder" && [ -w "$folder" ] && : >"$log"; } 2>/dev/null ||
        fail "$folder cannot be written to: please give it to $(id -un), or move the checkout to a" \
            "place where you may write, then start again."
    [ -e "$folder/build.ninja" ] || need_space "$folder" "$2" "the build"
    echo "== Building in build/$1"
    if ! cmake --preset "$1" >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        need_space "$folder" 50 "the build"
        fail "CMake cannot configure the build, see above: please remove $folder and start again," \
            "and report it with $log if that does not help."
    fi
    if ! cmake --build --preset "$1"; then
        need_space "$folder" 50 "the build"
        fail "The build failed, see above; if you have changed nothing, please report it."
    fi
}
