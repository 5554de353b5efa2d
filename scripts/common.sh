# Shared by ./demo and ./check: what has to be installed, and long work with a sign of life.
# shellcheck shell=bash

# shellcheck disable=SC2034 # used by those who read this file
build_packages=(g++ cmake ninja-build)
# What the gallery reads and writes pictures with; the library needs none of it.
# shellcheck disable=SC2034
picture_packages=(libpng-dev libjpeg-dev)

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Needs root or sudo. Run next, as root: $*" >&2
        return 1
    fi
}

apt() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 "$@"
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the packages that are missing; says nothing when none is.
install_packages() {
    local package missing=()
    if ! command -v apt-get >/dev/null; then
        echo "No apt-get here: install by hand what stands for these Debian packages: $*" >&2
        return 0
    fi
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing ${missing[*]}"
    apt update >/dev/null || true # an index that can't be had may not be needed
    apt install -y --no-install-recommends "${missing[@]}" >/dev/null
}

# CMake 3.25 is in Debian 12 and in Ubuntu from 23.04 on.
require_cmake() {
    local version
    version=$(cmake --version | sed -n '1s/[^0-9]*//p')
    if [ "$(printf '%s\n' 3.25 "$version" | sort -V | head -n 1)" != 3.25 ]; then
        echo "CMake 3.25 or newer is needed, this is $version. Run next: pip install cmake (or use Debian 12)" >&2
        return 1
    fi
}

# The step that the last line of a log tells of: Ninja's "[12/80] ..." or a test's "3/9 Test #3 ...".
last_step() {
    tail -n 1 "$1" 2>/dev/null | tr -d '\r' | cut -c 1-"$2"
}

# with_progress LOG COMMAND...: output goes to the log; a terminal shows its last line, other outputs a line now and then.
with_progress() {
    local log=$1 seconds=0 worker
    shift
    "$@" >"$log" 2>&1 </dev/null &
    worker=$!
    while kill -0 "$worker" 2>/dev/null; do
        sleep 1
        seconds=$((seconds + 1))
        if [ -t 1 ]; then
            printf '\r  %4d s  %-100s' "$seconds" "$(last_step "$log" 100)"
        elif [ $((seconds % 30)) -eq 0 ]; then
            printf '  %4d s  %s\n' "$seconds" "$(last_step "$log" 100)"
        fi
    done
    if [ -t 1 ]; then printf '\r%-112s\r' ''; fi
    wait "$worker"
}
