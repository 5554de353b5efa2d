# SPDX-License-Identifier: BSD-2-Clause
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
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0 "$@"
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
    mkdir -p build
    as_root true # asks for a password, if at all, before the progress starts
    with_progress build/apt.log apt update || true # an index that can't be had may not be needed
    if ! with_progress build/apt.log apt install -y --no-install-recommends "${missing[@]}"; then
        tail -n 20 build/apt.log
        echo "Installing failed. Run next, as root: apt-get install ${missing[*]}" >&2
        return 1
    fi
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
    local log=$1 start=$SECONDS told=$SECONDS worker
    shift
    "$@" >"$log" 2>&1 </dev/null &
    worker=$!
    while kill -0 "$worker" 2>/dev/null; do
        sleep 1
        if [ -t 1 ]; then
            printf '\r  %4d s  %-100s' $((SECONDS - start)) "$(last_step "$log" 100)"
        elif [ $((SECONDS - told)) -ge 8 ]; then
            printf '  %4d s  %s\n' $((SECONDS - start)) "$(last_step "$log" 100)"
            told=$SECONDS
        fi
    done
    if [ -t 1 ]; then printf '\r%-112s\r' ''; fi
    wait "$worker"
}

# What went wrong, out of a log of CMake, Ninja, `ctest --verbose` or any other program.
show_failure() { # LOG
    local log=$1
    if grep -aqE '^ *[0-9]+/[0-9]+ Test +#[0-9]+:' "$log"; then
        tr -d '\r' <"$log" | awk -f scripts/failures.awk
    elif grep -aq '^FAILED: ' "$log"; then
        sed -n '/^FAILED: /,$p' "$log" | grep -avE '^(: && )?[^ ]*/(ccache|cc|c\+\+|gcc|g\+\+|clang[^ ]*) ' | head -n 30
    elif grep -aq 'CMake Error' "$log"; then
        sed -n '/CMake Error/,$p' "$log" | head -n 30
    else
        tail -n 30 "$log"
    fi | cut -c 1-240 | sed 's/^/  | /'
}
