#!/bin/bash
# SPDX-License-Identifier: BSD-2-Clause
# Links pxk_exactness of the release build with musl and the library that preset musl built, all of it statically:
#     scripts/musl.sh PROGRAM
# There is no C++ library for musl in Debian. That of GCC is made for glibc, but musl has what it wants, save for a few
# names in scripts/musl.c.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=/usr/lib/$(uname -m)-linux-musl
begin=$(g++ -print-file-name=crtbeginT.o)
end=$(g++ -print-file-name=crtend.o)
tests=build/release/tests/CMakeFiles
mapfile -t objects < <(find $tests/pxk_exactness.dir $tests/pxk_test_rows.dir -name '*.o')
gcc -O1 -c scripts/musl.c -o "$1.o"
g++ -static -nostdlib -o "$1" "$folder/crt1.o" "$folder/crti.o" "$begin" "${objects[@]}" "$1.o" build/musl/lib/libpxk.a \
    build/release/lib/libpxk_gtest.a -L"$folder" -Wl,--wrap=__newlocale \
    -Wl,--start-group -lstdc++ -lgcc -lgcc_eh -lc -Wl,--end-group "$end" "$folder/crtn.o"
