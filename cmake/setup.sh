# Sourced by ./run, ./check and .ci/run from the project's folder: installs what Debian has and the
# machine lacks, configures and builds.

build_packages="g++ cmake ninja-build qtbase5-dev libdxflib-dev
                libboost-system-dev libxcb1-dev"
test_packages="abigail-tools appstream clang desktop-file-utils libqt5sql5-sqlite pkgconf python3
               python3-ezdxf shared-mime-info xvfb x11-utils"
packaging_packages="dpkg-dev lintian"
lint_packages="git clang-format clazy librsvg2-bin python3-pil reuse"

# install PACKAGE...: says what it is about to install, and installs only what is missing.
install() {
    missing=
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
            missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing these Debian packages:$missing"
    sudo=
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Installing packages needs root: run as root, or install sudo." >&2
            exit 1
        }
        sudo=sudo
    fi
    $sudo apt-get update -qq
    # shellcheck disable=SC2086 # a list of words
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -qq --no-install-recommends $missing
}

# build PRESET [CMAKE-ARGUMENT...]: quiet when all is well; the whole log when it is not.
build() {
    preset=$1
    shift
    log=build/$preset.log
    mkdir -p build
    echo "Building ($preset) ..."
    { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1 || {
        cat "$log" >&2
        exit 1
    }
}
