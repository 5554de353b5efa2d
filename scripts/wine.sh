# SPDX-License-Identifier: BSD-2-Clause
# Installs Wine for the Windows builds; cmake/wine runs programs with it.
# shellcheck shell=bash

i386_root=${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/pxk/i386-root

provide_wine64() {
    install_packages wine wine64 xvfb
    [ -x /usr/lib/wine/wine64 ] || command -v wine64 >/dev/null
}

# 32-bit packages beside 64-bit ones install only where the archive has both at the same version.
install_wine32() {
    local known=yes
    dpkg --print-foreign-architectures | grep -qx i386 || known=no
    if [ "$known" = no ]; then as_root dpkg --add-architecture i386; fi
    if apt update && apt install -y --no-install-recommends wine wine32:i386; then return 0; fi
    if [ "$known" = no ]; then
        as_root dpkg --remove-architecture i386
        apt update || true
    fi
    return 1
}

# A small i386 system with Wine in it, made aside and put in place when it is complete. About 1.7 GB.
make_i386_root() {
    local root=$i386_root.new
    mkdir -p "$(dirname "$root")"
    # shellcheck disable=SC2016 # expanded by the inner shell
    install_packages debootstrap debian-archive-keyring &&
        as_root rm -rf --one-file-system "$root" &&
        as_root debootstrap --arch=i386 --variant=minbase bookworm "$root" &&
        as_root unshare --mount bash -c '
            set -e
            mount -t proc proc "$1/proc"
            export DEBIAN_FRONTEND=noninteractive
            chroot "$1" apt-get update
            chroot "$1" apt-get install -y --no-install-recommends wine wine32
            chroot "$1" apt-get clean
        ' bash "$root" &&
        as_root mv "$root" "$i386_root"
}

provide_wine32() {
    install_packages xvfb
    if [ -x /usr/lib/wine/wine ] || [ -x "$i386_root/usr/bin/wine" ]; then return 0; fi
    install_wine32 || make_i386_root
}
