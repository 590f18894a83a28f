# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

# shellcheck shell=sh disable=SC2034 # the lists of packages are for those that source this
#
# Sourced from the project's folder by ./run, ./check and the scripts in cmake/: installs what Debian
# has and the machine lacks, configures and builds. Each says what it is about to do and where its log
# is, and nothing where there is nothing to do.

build_packages="g++ cmake ninja-build qtbase5-dev qttools5-dev libdxflib-dev
                libboost-system-dev libxcb1-dev"
test_packages="abigail-tools appstream clang desktop-file-utils libqt5sql5-sqlite pkgconf python3
               python3-ezdxf shared-mime-info xvfb"
attack_packages="clang libclang-rt-14-dev librecad-data llvm openscad-testing-data python3
                 python3-ezdxf"
picture_packages="fonts-dejavu-core python3-pil qttools5-dev-tools xvfb"
reference_packages="doxygen"
packaging_packages="dpkg-dev lintian"
qt6_packages="qt6-base-dev qt6-5compat-dev qt6-tools-dev libqt6opengl6-dev libqt6sql6-sqlite"
ci_packages="ccache"
lint_packages="git clang-format clang-tidy clazy cppcheck librsvg2-bin python3-pil reuse"

# Here are the builds and their logs: in build/, or where that cannot be, in the user's cache.
builds=$PWD/build
if ! mkdir -p "$builds" 2>/dev/null || [ ! -w "$builds" ]; then
    cache=${XDG_CACHE_HOME:-${HOME:-}/.cache}/ovcustomcontrol
    builds=$cache/${PWD##*/}-$(printf '%s' "$PWD" | cksum | cut -d ' ' -f 1)
    if ! mkdir -p "$builds" 2>/dev/null || [ ! -w "$builds" ]; then
        echo "Neither $PWD nor $cache can be written to:" \
            "copy the project into a folder of yours, or name one in XDG_CACHE_HOME." >&2
        exit 1
    fi
fi
export NINJA_STATUS='[%f of %t, %e s] '

# no_arguments ARGUMENT...: ends where there is any.
no_arguments() {
    [ $# -eq 0 ] || {
        echo "usage: $0" >&2
        exit 2
    }
}

# follow LOG: writes there what comes from standard input. A terminal shows the last line meanwhile.
follow() {
    if [ ! -t 1 ] || [ "${TERM:-dumb}" = dumb ]; then
        cat >"$1"
        return
    fi
    : >"$1"
    columns=$(stty size 2>/dev/null </dev/tty | cut -d ' ' -f 2)
    [ "${columns:-0}" -gt 0 ] || columns=80
    while IFS= read -r line; do
        printf '%s\n' "$line" >>"$1"
        printf '\r\033[K%.*s' "$columns" "$line"
    done
    printf '\r\033[K'
}

# logged LOG COMMAND...: ends with the first errors where the command fails.
logged() {
    log=$1
    shift
    { "$@" 2>&1 && echo "Done."; } | follow "$log"
    [ "$(tail -n 1 "$log")" != Done. ] || return 0
    errors=$(sed -n '/^FAILED: /,$p' "$log" | head -n 30 | cut -c 1-200)
    [ -n "$errors" ] || errors=$(tail -n 20 "$log")
    printf '%s\n' "$errors" "That failed. The whole log is $log" >&2
    exit 1
}

# install PACKAGE...: only what is missing.
install() {
    missing=
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
            missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing these Debian packages, and what they need:$missing"
    sudo=
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Installing packages needs root: run as root, or install sudo." >&2
            exit 1
        }
        sudo=sudo
    fi
    log=$builds/packages.log
    logged "$log" $sudo env LC_ALL=C apt-get update
    # That it reaches nothing is no failure to it: the packages are unknown then, or old.
    sed -n 's/^W: Failed to fetch [^ ]* */apt-get cannot fetch the lists of packages: /p' "$log" |
        head -n 1 >&2
    # shellcheck disable=SC2086 # a list of words
    set -- $sudo env LC_ALL=C DEBIAN_FRONTEND=noninteractive \
        apt-get install --no-install-recommends $missing
    "$@" --print-uris --yes 2>/dev/null | grep -E '^(Need to get|After this)' || :
    echo "The log is $log"
    logged "$log" "$@" --yes
}

# steps FOLDER TARGET...: how many are to be done there.
steps() {
    ninja -C "$@" -n | grep -c '^\[' || :
}

# build PRESET [TARGET...]: these targets, or all.
build() {
    preset=$1
    folder=$builds/$preset
    log=$folder.log
    shift
    # A folder that was moved starts anew; with newer presets it is configured again.
    if ! grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
        logged "$log" cmake --fresh --preset "$preset" -B "$folder"
    elif [ -n "$(find CMakePresets.json -newer "$folder/build.ninja" 2>&1)" ]; then
        logged "$log" cmake --preset "$preset" -B "$folder"
    elif [ "$(steps "$folder" build.ninja)" -gt 0 ]; then
        logged "$log" ninja -C "$folder" build.ninja
    fi
    steps=$(steps "$folder" "$@")
    [ "$steps" -gt 0 ] || return 0
    tell_cost "$steps" "${*:-everything}"
    logged "$log" ninja -C "$folder" "$@"
}

# tell_cost STEPS WHAT: roughly. A step takes about this long, and leaves about this much.
tell_cost() {
    case $preset in
        sanitize) milliseconds=1400 kilobytes=1100 ;;
        *) milliseconds=1100 kilobytes=1700 ;;
    esac
    minutes=$((($1 * milliseconds * 2 / $(nproc) + 30000) / 60000))
    case $minutes in
        0) time="less than a minute" ;;
        1) time="about a minute" ;;
        *) time="about $minutes minutes" ;;
    esac
    echo "Building $2 ($preset): $1 steps, $time on $(nproc) processors," \
        "up to $(($1 * kilobytes / 1000)) MB in $folder"
    echo "The log is $log"
}

# run_tests PRESET: of what was built.
run_tests() {
    echo "Running the tests; their log is $builds/$1/Testing/Temporary/LastTest.log"
    ctest --test-dir "$builds/$1" --output-on-failure -j "$(nproc)"
}
